#include "host/canvas/pagerenderer.h"

#include "host/canvas/canvas.h"
#include "host/canvas/pagepicture.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int cellSize = 64;          // device pixels; a few times a read-out's height
constexpr std::size_t manyRects = 64; // a region of more costs more than it saves

} // namespace

PageRenderer::PageRenderer(Canvas& canvas) : m_canvas(canvas)
{
}

PageRenderer::~PageRenderer() = default;

void PageRenderer::setView(QSize size, double scale, QPointF origin)
{
    const QTransform transform =
        QTransform::fromTranslate(-origin.x(), -origin.y()) * QTransform::fromScale(scale, scale);
    if (size == m_image.size() && transform == m_transform)
        return;
    m_transform = transform;
    if (size != m_image.size()) {
        m_image = QImage(size, QImage::Format_RGB32);
        m_plate = QImage(size, QImage::Format_RGB32);
    }
    invalidate();
}

void PageRenderer::invalidate()
{
    m_isPrepared = false;
}

QRegion PageRenderer::render()
{
    if (m_image.isNull())
        return {};
    const std::vector<Shape*> changed = m_canvas.takeChanged();
    for (Shape* shape : changed) {
        // What was thought to stand still moves: it has to leave the plate.
        if (!shape->isLive()) {
            shape->setLive(true);
            m_isPrepared = false;
        }
    }
    if (!m_isPrepared) {
        prepare();
        return m_image.rect();
    }
    if (changed.empty())
        return {};
    QRegion region;
    if (changed.size() > m_lively.size() / 2 && changed.size() > manyRects) {
        for (const Shape* shape : changed)
            m_isPrepared &= refile(*shape);
        if (!m_isPrepared)
            prepare();
        else
            drawAll();
        return m_image.rect();
    }
    drawChanged(changed, region);
    return region;
}

void PageRenderer::prepare()
{
    m_entries.clear();
    const std::vector<Shape*> shapes = m_canvas.shapes();
    m_entries.reserve(shapes.size());
    for (Shape* shape : shapes) {
        shape->setOrder(static_cast<int>(m_entries.size()));
        m_entries.push_back({shape, deviceRect(*shape), false});
    }
    planPlate();
    drawPlate();
    drawAll();
    m_isPrepared = true;
}

// A shape that stands still may lie on the plate when nothing lively lies beneath it.
void PageRenderer::planPlate()
{
    m_cells = QSize(m_image.width() / cellSize + 1, m_image.height() / cellSize + 1);
    m_grid.assign(static_cast<std::size_t>(m_cells.width()) * static_cast<std::size_t>(m_cells.height()), {});
    m_lively.clear();
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        Entry& entry = m_entries[place];
        entry.isOnPlate = false;
        if (!entry.shape->isLive()) {
            collect(entry.rect);
            entry.isOnPlate = m_found.empty();
        }
        if (entry.isOnPlate)
            continue;
        m_lively.push_back(static_cast<int>(place));
        fileInGrid(static_cast<int>(place));
    }
}

void PageRenderer::drawPlate()
{
    m_plate.fill(m_canvas.background());
    QPainter painter(&m_plate);
    for (const Entry& entry : m_entries) {
        if (entry.isOnPlate && entry.rect.intersects(m_plate.rect()))
            drawShape(painter, *entry.shape);
    }
}

void PageRenderer::drawAll()
{
    QPainter painter(&m_image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, m_plate);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    for (const int place : m_lively) {
        const Entry& entry = m_entries[static_cast<std::size_t>(place)];
        if (entry.rect.intersects(m_image.rect()))
            drawShape(painter, *entry.shape);
    }
}

void PageRenderer::drawChanged(const std::vector<Shape*>& changed, QRegion& region)
{
    QPainter painter(&m_image);
    const bool isWhole = changed.size() > manyRects;
    const auto renew = [&](const QRect& rect) {
        const QRect seen = rect & m_image.rect();
        if (seen.isEmpty())
            return;
        redraw(painter, seen);
        if (!isWhole)
            region += seen;
    };
    bool isPlanSound = true;
    for (Shape* shape : changed) {
        const Entry& entry = m_entries[static_cast<std::size_t>(shape->order())];
        const QRect before = entry.rect;
        isPlanSound &= refile(*shape);
        if (entry.rect != before)
            renew(before);
        renew(entry.rect);
    }
    if (!isPlanSound) {
        painter.end();
        prepare();
    }
    if (isWhole || !isPlanSound)
        region = m_image.rect();
}

// Files a shape where it lies now. \returns whether the plate is still right.
bool PageRenderer::refile(const Shape& shape)
{
    Entry& entry = m_entries[static_cast<std::size_t>(shape.order())];
    const QRect rect = deviceRect(shape);
    if (rect == entry.rect)
        return true;
    removeFromGrid(shape.order());
    entry.rect = rect;
    fileInGrid(shape.order());
    return !liesUnderPlate(entry);
}

// Moving shapes are few: looking through all that stand still is cheaper than keeping another grid.
bool PageRenderer::liesUnderPlate(const Entry& entry) const
{
    const auto above = m_entries.begin() + entry.shape->order() + 1;
    return std::any_of(above, m_entries.end(),
                       [&entry](const Entry& other) { return other.isOnPlate && other.rect.intersects(entry.rect); });
}

void PageRenderer::redraw(QPainter& painter, const QRect& rect)
{
    painter.setWorldTransform({});
    painter.setOpacity(1);
    painter.setClipRect(rect);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(rect.topLeft(), m_plate, rect);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    collect(rect);
    for (const int place : m_found)
        drawShape(painter, *m_entries[static_cast<std::size_t>(place)].shape);
}

void PageRenderer::drawShape(QPainter& painter, Shape& shape)
{
    const StratelInterface* layer = shape.layer();
    if (!shape.isVisible() || (layer && !layer->isVisible()))
        return;
    ++m_drawnShapes;
    PagePicture::drawShape(painter, shape, m_transform, &m_texts);
}

QRect PageRenderer::deviceRect(const Shape& shape) const
{
    const QRectF bounds = shape.boundingRect();
    const QRectF onPage = shape.rotation() == 0 ? bounds.translated(shape.pos()) : shape.mapRectToScene(bounds);
    const QRect rect = m_transform.mapRect(onPage).toAlignedRect();
    // Strokes of marks are as thin as the device can draw, so they end beyond their shape by its pixels, not the page's.
    return shape.childItems().isEmpty() ? rect : rect.adjusted(-1, -1, 1, 1);
}

QRect PageRenderer::cellsOf(const QRect& rect) const
{
    const QRect seen = rect & m_image.rect();
    if (seen.isEmpty())
        return {};
    return {QPoint(seen.left() / cellSize, seen.top() / cellSize),
            QPoint(seen.right() / cellSize, seen.bottom() / cellSize)};
}

void PageRenderer::fileInGrid(int place)
{
    const QRect cells = cellsOf(m_entries[static_cast<std::size_t>(place)].rect);
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x)
            cellAt(x, y).push_back(place);
    }
}

void PageRenderer::removeFromGrid(int place)
{
    const QRect cells = cellsOf(m_entries[static_cast<std::size_t>(place)].rect);
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x) {
            std::vector<int>& cell = cellAt(x, y);
            cell.erase(std::remove(cell.begin(), cell.end(), place), cell.end());
        }
    }
}

// Collects the places of the lively shapes that touch rect, from the bottom up.
void PageRenderer::collect(const QRect& rect)
{
    m_found.clear();
    ++m_round;
    const QRect cells = cellsOf(rect);
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x) {
            for (const int place : cellAt(x, y)) {
                Entry& entry = m_entries[static_cast<std::size_t>(place)];
                if (entry.round == m_round || !entry.rect.intersects(rect))
                    continue;
                entry.round = m_round;
                m_found.push_back(place);
            }
        }
    }
    std::sort(m_found.begin(), m_found.end());
}
