#include "host/canvas/canvasview.h"

#include "host/canvas/canvas.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int manyRects = 32;        // a region of more is repainted as a whole
constexpr double stepsADoubling = 4; // of the wheel
constexpr int wheelStep = 120;       // Qt's unit of a wheel's notch

} // namespace

CanvasView::CanvasView(Canvas& canvas, QWidget* parent)
    : QAbstractScrollArea(parent), m_canvas(canvas), m_renderer(canvas)
{
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(&canvas, &Canvas::changed, this, &CanvasView::schedule);
    connect(&canvas, &Canvas::rearranged, this, [this] {
        m_renderer.invalidate();
        place();
    });
}

CanvasView::~CanvasView() = default;

QSize CanvasView::sizeHint() const
{
    return m_canvas.size().toSize();
}

double CanvasView::fittingZoom() const
{
    const QSizeF page = m_canvas.size();
    const QSizeF room = maximumViewportSize();
    if (page.isEmpty() || room.isEmpty())
        return 1;
    return std::clamp(std::min(room.width() / page.width(), room.height() / page.height()), smallestZoom, largestZoom);
}

double CanvasView::zoom() const
{
    return m_isFitted ? fittingZoom() : m_zoom;
}

void CanvasView::zoomToFit()
{
    m_isFitted = true;
    place();
    Q_EMIT zoomChanged();
}

void CanvasView::setZoom(double zoom)
{
    m_isFitted = false;
    m_zoom = zoom > smallestZoom ? std::min(zoom, largestZoom) : smallestZoom; // NaN is the smallest too
    place();
    Q_EMIT zoomChanged();
}

void CanvasView::setSelected(::Shape* shape)
{
    if (shape == m_selected)
        return;
    m_selected = shape;
    viewport()->update();
}

// Places the page in the view: its zoom, the scroll bars, the part that is seen.
void CanvasView::place()
{
    const double scale = zoom();
    const QSizeF page = m_canvas.size() * scale;
    const QSize room = viewport()->size();
    horizontalScrollBar()->setRange(0, m_isFitted ? 0 : std::max(0, qCeil(page.width()) - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    verticalScrollBar()->setRange(0, m_isFitted ? 0 : std::max(0, qCeil(page.height()) - room.height()));
    verticalScrollBar()->setPageStep(room.height());

    // A page smaller than the view lies in its middle, on whole pixels.
    const QPointF middle(std::floor(std::max(0.0, (room.width() - page.width()) / 2)),
                         std::floor(std::max(0.0, (room.height() - page.height()) / 2)));
    const QPointF origin = (QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value()) - middle) / scale;
    const double ratio = viewport()->devicePixelRatioF();
    m_renderer.setView(deviceSize(), scale * ratio, origin);
    viewport()->update();
}

// Pixels that the viewport may touch: where the screen's ratio is no whole number, its edges lie between two.
QSize CanvasView::deviceSize() const
{
    const double ratio = viewport()->devicePixelRatioF();
    return {qCeil(viewport()->width() * ratio), qCeil(viewport()->height() * ratio)};
}

void CanvasView::schedule()
{
    if (m_isScheduled || !isVisible())
        return;
    m_isScheduled = true;
    QMetaObject::invokeMethod(
        this, [this] { refresh(); }, Qt::QueuedConnection);
}

void CanvasView::refresh()
{
    m_isScheduled = false;
    if (!isVisible())
        return;
    showChanged(m_renderer.render());
}

// Has what changed, in device pixels, painted; the frame of a selected shape goes with it.
void CanvasView::showChanged(const QRegion& changed)
{
    if (changed.isEmpty())
        return;
    if (changed.rectCount() > manyRects) {
        viewport()->update();
        return;
    }
    const double ratio = viewport()->devicePixelRatioF();
    for (const QRect& rect : changed) {
        const QRectF logical(QPointF(rect.topLeft()) / ratio, QSizeF(rect.size()) / ratio);
        viewport()->update(logical.toAlignedRect());
    }
    if (m_selected)
        viewport()->update(m_selectionFrame.united(viewportRect(*m_selected)).adjusted(-2, -2, 2, 2));
}

void CanvasView::paintEvent(QPaintEvent* event)
{
    const double ratio = viewport()->devicePixelRatioF();
    if (m_renderer.image().size() != deviceSize())
        place(); // the window came to a screen of other pixels
    // What changed since this painting was asked for may lie outside of what is painted now.
    const QRegion late = m_renderer.render();
    if (!late.isEmpty() && event->region() != QRegion(viewport()->rect()))
        showChanged(late);
    QPainter painter(viewport());
    const QImage& image = m_renderer.image();
    if (ratio == 1) {
        for (const QRect& rect : event->region())
            painter.drawImage(rect.topLeft(), image, rect);
    } else {
        QImage scaled = image; // shares the pixels
        scaled.setDevicePixelRatio(ratio);
        painter.drawImage(0, 0, scaled);
    }
    if (m_selected) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        m_selectionFrame = viewportRect(*m_selected);
        painter.drawRect(m_selectionFrame);
    }
    ++m_paints;
    Q_EMIT painted();
}

QRect CanvasView::viewportRect(const ::Shape& shape) const
{
    const double ratio = viewport()->devicePixelRatioF();
    const QRectF device = m_renderer.transform().mapRect(shape.mapRectToScene(shape.boundingRect()));
    return QRectF(device.topLeft() / ratio, device.size() / ratio).toAlignedRect();
}

QPointF CanvasView::toPage(QPoint viewportPosition) const
{
    const double ratio = viewport()->devicePixelRatioF();
    return m_renderer.transform().inverted().map(QPointF(viewportPosition) * ratio);
}

void CanvasView::resizeEvent(QResizeEvent*)
{
    place();
    if (m_isFitted)
        Q_EMIT zoomChanged();
}

void CanvasView::scrollContentsBy(int, int)
{
    place();
}

void CanvasView::mousePressEvent(QMouseEvent* event)
{
    m_pressedAt = event->pos();
    m_draggedFrom = event->pos();
    m_isDragging = false;
}

// The page is dragged with the left or middle button where it is larger than the view.
void CanvasView::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & (Qt::LeftButton | Qt::MiddleButton)))
        return;
    if (!m_isDragging && (event->pos() - m_pressedAt).manhattanLength() < QApplication::startDragDistance())
        return;
    m_isDragging = true;
    const QPoint moved = event->pos() - m_draggedFrom;
    m_draggedFrom = event->pos();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !m_isDragging)
        Q_EMIT clicked(m_canvas.shapeAt(toPage(event->pos())));
    m_isDragging = false;
}

// With Ctrl the wheel zooms, and what lies under the pointer stays there.
void CanvasView::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const QPoint pointer = event->position().toPoint();
    const QPointF held = toPage(pointer);
    setZoom(zoom() * std::exp2(event->angleDelta().y() / (wheelStep * stepsADoubling)));
    horizontalScrollBar()->setValue(qRound(held.x() * zoom()) - pointer.x());
    verticalScrollBar()->setValue(qRound(held.y() * zoom()) - pointer.y());
}

bool CanvasView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const ::Shape* shape = m_canvas.shapeAt(toPage(help->pos()));
        if (shape && !shape->toolTip().isEmpty())
            QToolTip::showText(help->globalPos(), shape->toolTip(), viewport());
        else
            QToolTip::hideText();
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}
