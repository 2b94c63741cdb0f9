#pragma once

#include "host/hostexport.h"
#include "host/shapes/shapepainter.h"

#include <QColor>
#include <QRectF>
#include <QString>

#include <vector>

/// What says which curve is which: a legend, and the curves' numbers at their ends.
namespace CurveLegend {

struct Entry
{
    QString name;
    QColor color;
};

/// Draws number, mark and name of each curve at the top of \p area, in columns of equal width; names for which there is
/// no room are elided. At most half of what \p kept leaves of the area's height is used.
/// \returns what is left of \p area
KORVANE_HOST_EXPORT QRectF draw(const ShapePainter& painter, const QRectF& area, const std::vector<Entry>& entries,
                                int fontSize, const QColor& textColor, double kept);

/// A curve's number where it ends.
struct Badge
{
    int curve;
    double y;
    QColor color;
};

/// Width and height of a badge.
KORVANE_HOST_EXPORT double badgeSize(int fontSize);
/// Draws \p badges one below the other along the left edge of \p column, each as near to its y as the others allow.
KORVANE_HOST_EXPORT void drawBadges(const ShapePainter& painter, const QRectF& column, std::vector<Badge> badges,
                                    int fontSize);

} // namespace CurveLegend
