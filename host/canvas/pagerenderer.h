#pragma once

#include "host/hostexport.h"
#include "host/shapes/textpainter.h"

#include <QImage>
#include <QPointF>
#include <QRegion>
#include <QSize>
#include <QTransform>

#include <vector>

class Canvas;
class Shape;

/// Draws a page into an image, and after that only what changed.
///
/// Below lies the plate: the background with all shapes that never change and that nothing beneath them changes. A
/// changed shape costs a copy of its part of the plate and the drawing of what lies over that part, however many shapes
/// the page has. A shape counts as changing when live data drive it, or from the first time that it changed.
///
/// Everything is drawn in device pixels, so it is as crisp at any zoom and on any screen.
class KORVANE_HOST_EXPORT PageRenderer
{
public:
    /// \param canvas not owned, must outlive the renderer
    explicit PageRenderer(Canvas& canvas);
    ~PageRenderer();

    /// What of the page is seen: an image of \p size device pixels, in which the page is \p scale times as large and
    /// its point \p origin lies in the top left corner.
    void setView(QSize size, double scale, QPointF origin);
    /// Has everything drawn anew: to be called when layers, shapes or their order changed.
    void invalidate();

    /// Draws what changed since the last call.
    /// \returns what is different now, in device pixels; empty for nothing.
    QRegion render();

    /// The page as of the last render(); opaque.
    const QImage& image() const { return m_image; }
    /// From the page to device pixels.
    const QTransform& transform() const { return m_transform; }

    /// Shapes drawn since the beginning, for figures.
    quint64 drawnShapes() const { return m_drawnShapes; }

private:
    struct Entry
    {
        Shape* shape = nullptr;
        QRect rect; ///< where it was drawn last, in device pixels
        bool isOnPlate = false;
        quint32 round = 0; ///< of the collection that found it last
    };

    void prepare();
    void planPlate();
    void drawPlate();
    void drawAll();
    void drawChanged(const std::vector<Shape*>& changed, QRegion& region);
    void redraw(QPainter& painter, const QRect& rect);
    void drawShape(QPainter& painter, Shape& shape);
    QRect deviceRect(const Shape& shape) const;
    bool refile(const Shape& shape);
    bool liesUnderPlate(const Entry& entry) const;

    void fileInGrid(int place);
    void removeFromGrid(int place);
    void collect(const QRect& rect);
    QRect cellsOf(const QRect& rect) const;
    std::vector<int>& cellAt(int x, int y)
    {
        return m_grid[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_cells.width()) +
                      static_cast<std::size_t>(x)];
    }

    Canvas& m_canvas;
    TextPainter m_texts;
    QTransform m_transform;
    QImage m_plate;
    QImage m_image;
    std::vector<Entry> m_entries;         ///< all shapes from the bottom up
    std::vector<int> m_lively;            ///< places of those above the plate
    std::vector<std::vector<int>> m_grid; ///< places of those above the plate by cells of the image
    std::vector<int> m_found;
    QSize m_cells;
    quint32 m_round = 0;
    quint64 m_drawnShapes = 0;
    bool m_isPrepared = false;
};
