#include "host/canvas/canvasview.h"

#include "host/canvas/canvas.h"
#include "host/canvas/operatorinput_p.h"

#include <QApplication>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int manyRects = 32;        // a region of more is repainted as a whole
constexpr double stepsADoubling = 4; // of the wheel
constexpr int markWidth = 2;         // of what is selected or has the keyboard
constexpr int markDistance = 3;      // of the keyboard's frame from its shape

// With a modifier a key is somebody's shortcut.
bool isPlain(const QKeyEvent& key)
{
    return !(key.modifiers() & ~Qt::KeypadModifier);
}

} // namespace

CanvasView::CanvasView(Canvas& canvas, QWidget* parent)
    : QAbstractScrollArea(parent), m_canvas(canvas), m_renderer(canvas), m_input(std::make_unique<OperatorInput>(*this))
{
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(&canvas, &Canvas::changed, this, &CanvasView::schedule);
    connect(&canvas, &Canvas::rearranged, this, [this] {
        m_renderer.invalidate();
        m_input->rearrange();
        schedule();
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
    tellZoom();
}

void CanvasView::setZoom(double zoom)
{
    m_isFitted = false;
    m_zoom = zoom > smallestZoom ? std::min(zoom, largestZoom) : smallestZoom; // NaN is the smallest too
    place();
    tellZoom();
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
    m_input->follow();
}

// Pixels that the viewport may touch: where the screen's ratio is no whole number, its edges lie between two.
QSize CanvasView::deviceSize() const
{
    const double ratio = viewport()->devicePixelRatioF();
    return {qCeil(viewport()->width() * ratio), qCeil(viewport()->height() * ratio)};
}

void CanvasView::tellZoom()
{
    if (zoom() == m_toldZoom)
        return;
    m_toldZoom = zoom();
    Q_EMIT zoomChanged();
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
    m_input->prepare();
    showChanged(m_renderer.render());
    m_input->follow();
}

// Has what changed, in device pixels, painted; the frames of selection and keyboard go with their shapes.
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
    constexpr int around = markDistance + markWidth;
    if (m_selected)
        viewport()->update(m_selectionFrame.united(viewportRect(*m_selected)).adjusted(-2, -2, 2, 2));
    if (focusedShape())
        viewport()->update(
            m_focusFrame.united(viewportRect(*focusedShape()).adjusted(-around, -around, around, around)));
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
    drawFrames(painter);
    ++m_paints;
    Q_EMIT painted();
}

void CanvasView::drawFrames(QPainter& painter)
{
    const QColor color = palette().color(QPalette::Highlight);
    if (m_selected) {
        painter.setPen(QPen(color, markWidth));
        m_selectionFrame = viewportRect(*m_selected);
        painter.drawRect(m_selectionFrame);
    }
    if (!focusedShape() || !(hasFocus() || m_input->isEditing()))
        return;
    // Two colours, so that it is seen on any ground.
    const QRect frame =
        viewportRect(*focusedShape()).adjusted(-markDistance, -markDistance, markDistance - 1, markDistance - 1);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Base), markWidth + 2));
    painter.drawRoundedRect(frame, markDistance, markDistance);
    painter.setPen(QPen(color, markWidth));
    painter.drawRoundedRect(frame, markDistance, markDistance);
    m_focusFrame = frame.adjusted(-markWidth, -markWidth, markWidth, markWidth);
}

QRect CanvasView::viewportRect(const ::Shape& shape) const
{
    return viewportRect(shape, shape.boundingRect());
}

QRect CanvasView::viewportRect(const ::Shape& shape, const QRectF& part) const
{
    return viewportRect(shape.mapRectToScene(part));
}

QRect CanvasView::viewportRect(const QRectF& part) const
{
    const double ratio = viewport()->devicePixelRatioF();
    const QRectF device = m_renderer.transform().mapRect(part);
    return QRectF(device.topLeft() / ratio, device.size() / ratio).toAlignedRect();
}

void CanvasView::ensureSeen(const ::Shape& shape)
{
    constexpr int around = markDistance + markWidth;
    const QRect place = viewportRect(shape).adjusted(-around, -around, around, around);
    const QSize room = viewport()->size();
    const auto scroll = [](QScrollBar* bar, int low, int high, int length) {
        if (low < 0 || high - low > length) // of what has no room the beginning
            bar->setValue(bar->value() + low);
        else if (high > length)
            bar->setValue(bar->value() + high - length);
    };
    scroll(horizontalScrollBar(), place.left(), place.right() + 1, room.width());
    scroll(verticalScrollBar(), place.top(), place.bottom() + 1, room.height());
}

void CanvasView::setOperated(bool operated)
{
    m_isOperated = operated;
    m_input->endEditing();
    m_input->setFocused(nullptr);
}

::Shape* CanvasView::focusedShape() const
{
    return m_input->focused();
}

QPointF CanvasView::toPage(QPoint viewportPosition) const
{
    const double ratio = viewport()->devicePixelRatioF();
    return m_renderer.transform().inverted().map(QPointF(viewportPosition) * ratio);
}

void CanvasView::resizeEvent(QResizeEvent*)
{
    place();
    tellZoom();
}

void CanvasView::scrollContentsBy(int, int)
{
    place();
}

bool CanvasView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<const QKeyEvent*>(event);
        if (isPlain(*key) && m_input->wantsKey(key->key())) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

// From shape to shape, and behind the last one on to what else there is in the window.
bool CanvasView::focusNextPrevChild(bool next)
{
    if (!m_isOperated)
        return QAbstractScrollArea::focusNextPrevChild(next);
    if (m_input->moveFocus(next) || QAbstractScrollArea::focusNextPrevChild(next))
        return true;
    m_input->enter(next);
    return focusedShape();
}

void CanvasView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    const bool isByTab = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (m_isOperated && isByTab)
        m_input->enter(event->reason() == Qt::TabFocusReason);
    viewport()->update();
}

void CanvasView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void CanvasView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    schedule(); // while it was hidden no shape was asked what it needs
}

void CanvasView::hideEvent(QHideEvent* event)
{
    m_input->endEditing();
    QAbstractScrollArea::hideEvent(event);
}

void CanvasView::keyPressEvent(QKeyEvent* event)
{
    if (!isPlain(*event) || !m_input->pressKey(event->key(), event->isAutoRepeat()))
        QAbstractScrollArea::keyPressEvent(event);
}

void CanvasView::press(const QMouseEvent& event, bool isSecond)
{
    m_pressedAt = event.pos();
    m_pressedShape = m_canvas.shapeAt(toPage(event.pos()));
    m_draggedFrom = event.pos();
    m_isDragging = false;
    m_isPressed = event.button() == Qt::LeftButton;
    if (!m_isPressed || !m_isOperated)
        return;
    const QPointF page = toPage(event.pos());
    m_input->press(m_canvas.shapeAt(page), isSecond, page);
}

void CanvasView::mousePressEvent(QMouseEvent* event)
{
    press(*event, false);
}

void CanvasView::mouseDoubleClickEvent(QMouseEvent* event)
{
    press(*event, true);
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
    const bool wasDragging = std::exchange(m_isDragging, false);
    if (event->button() != Qt::LeftButton || !std::exchange(m_isPressed, false) || wasDragging)
        return;
    const QPointF page = toPage(event->pos());
    ::Shape* shape = m_canvas.shapeAt(page);
    if (m_isOperated)
        m_input->release(shape, page);
    // What came under the pointer meanwhile was not meant.
    if (shape == m_pressedShape)
        Q_EMIT clicked(shape);
}

// With Ctrl the wheel zooms, and what lies under the pointer stays there.
void CanvasView::wheelEvent(QWheelEvent* event)
{
    const QPoint pointer = event->position().toPoint();
    if (!(event->modifiers() & Qt::ControlModifier)) {
        if (!m_isOperated || !m_input->turnWheel(m_canvas.shapeAt(toPage(pointer)), event->angleDelta().y()))
            QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const QPointF held = toPage(pointer);
    setZoom(zoom() * std::exp2(event->angleDelta().y() / (QWheelEvent::DefaultDeltasPerStep * stepsADoubling)));
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
