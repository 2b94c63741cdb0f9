#pragma once

#include "host/hostexport.h"
#include "host/shapes/shapepainter.h"

#include <QColor>
#include <QPointF>
#include <QRectF>

/// What tells curves apart without their colours: a mark of its own for each of eight, and a number on a badge.
namespace CurveMark {

constexpr int count = 8;
constexpr double size = 7; ///< of a mark, across

/// Draws the mark of curve \p index (0 to 7) around \p center, with a paper-coloured rim.
KORVANE_HOST_EXPORT void draw(QPainter& painter, int index, const QPointF& center, const QColor& color);
/// Draws the number of curve \p index, which is one more, on a badge of its colour that fills \p rect.
KORVANE_HOST_EXPORT void drawBadge(const ShapePainter& painter, int index, const QRectF& rect, int fontSize,
                                   const QColor& color);

} // namespace CurveMark
