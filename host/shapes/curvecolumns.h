#pragma once

#include "host/hostexport.h"

#include <QImage>
#include <QPointF>

#include <vector>

class QColor;
class QPainter;

/// Draws a dense curve a column of pixels at a time: in time that grows with the plot's area, not with the way that the
/// line takes up and down, which makes stroking a noisy curve slow.
///
/// All in device pixels. Filled is what a round brush touches that is led along the line, column by column; edges are
/// smooth upwards and downwards.
class KORVANE_HOST_EXPORT CurveColumns
{
public:
    /// Begins anew, with \p count columns from \p left on.
    void reset(int left, int count);
    /// Adds the line through \p points, which go from left to right; parts outside the columns are left out.
    void add(const QPointF* points, int count);
    /// Draws all lines added since reset() with a brush \p width across, between the rows \p top and \p bottom. The
    /// painter's unit must be a device pixel.
    void draw(QPainter& painter, double width, const QColor& color, int top, int bottom);

private:
    struct Extent
    {
        float top;
        float bottom; ///< above top, that is less, while nothing lies in the column
    };
    void addStretch(const QPointF& from, const QPointF& to);
    /// What the brush touches in each column.
    void lead(double width);

    int m_left = 0;
    std::vector<Extent> m_columns;
    std::vector<Extent> m_touched;
    QImage m_band; ///< some rows, drawn one after the other
};
