#pragma once

#include "host/canvas/pagerenderer.h"
#include "host/hostexport.h"

#include <QAbstractScrollArea>

#include <memory>

class Canvas;
class OperatorInput;
class Shape;

/// Shows a page: fitted into the view or at a zoom, drawn only where it changed, at the screen's own resolution.
///
/// The operator works with its shapes: by clicks and the wheel, or by Tab and keys alone. A frame shows which shape has
/// the keyboard; Return, Space, F2 or a click opens the editor of one that can be edited.
class KORVANE_HOST_EXPORT CanvasView : public QAbstractScrollArea
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasView)

public:
    static constexpr double smallestZoom = 0.05;
    static constexpr double largestZoom = 8;

    /// \param canvas not owned, must outlive the view
    explicit CanvasView(Canvas& canvas, QWidget* parent = nullptr);
    ~CanvasView() override;

    Canvas& canvas() const { return m_canvas; }

    /// Whether the page is kept as large as fits; so at first.
    bool isFitted() const { return m_isFitted; }
    void zoomToFit();
    /// Shows the page at \p zoom, 1 for its own size, held to the bounds above; no longer fitted.
    void setZoom(double zoom);
    double zoom() const;

    /// The shape that is marked as selected; null for none.
    void setSelected(::Shape* shape);
    ::Shape* selected() const { return m_selected; }

    /// Where a place of the viewport lies on the page.
    QPointF toPage(QPoint viewportPosition) const;
    /// Where a shape lies in the viewport, with what is drawn around it.
    QRect viewportRect(const ::Shape& shape) const;
    /// The same for a part of it, in the shape's own coordinates.
    QRect viewportRect(const ::Shape& shape, const QRectF& part) const;
    /// Where a part of the page lies in the viewport.
    QRect viewportRect(const QRectF& part) const;
    /// Scrolls as little as brings the shape into sight.
    void ensureSeen(const ::Shape& shape);

    /// Whether shapes can be worked with; true at first. Where pages are edited they can't.
    void setOperated(bool operated);
    /// The shape that the operator's keys go to; null for none.
    ::Shape* focusedShape() const;

    /// Draws what changed at once, instead of with the next turn of the event loop.
    void refresh();

    /// Frames painted so far.
    quint64 paints() const { return m_paints; }
    const PageRenderer& renderer() const { return m_renderer; }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// A frame is on its way to the screen.
    void painted();
    /// The left button was pressed and released over the same shape; null for the page's background.
    void clicked(::Shape* shape);
    /// zoom() is another than before.
    void zoomChanged();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void schedule();
    void place();
    void showChanged(const QRegion& changed);
    void drawFrames(QPainter& painter);
    void press(const QMouseEvent& event, bool isSecond);
    double fittingZoom() const;
    void tellZoom();
    QSize deviceSize() const;

    Canvas& m_canvas;
    PageRenderer m_renderer;
    ::Shape* m_selected = nullptr;
    QRect m_selectionFrame;
    QRect m_focusFrame;
    QPoint m_pressedAt;
    const ::Shape* m_pressedShape = nullptr; ///< to be compared only: it may be gone
    QPoint m_draggedFrom;
    double m_zoom = 1; ///< while not fitted
    double m_toldZoom = 0;
    quint64 m_paints = 0;
    bool m_isFitted = true;
    bool m_isScheduled = false;
    bool m_isPressed = false; ///< the left button went down over the page
    bool m_isDragging = false;
    bool m_isOperated = true;
    const std::unique_ptr<OperatorInput> m_input;
};
