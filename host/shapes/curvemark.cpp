#include "host/shapes/curvemark.h"

#include "host/shapes/palette.h"

#include <array>
#include <vector>

namespace {

/// The outlines but for the circles', from -1 to 1; the signs of plus and cross are twelve-cornered.
const std::vector<QPointF>& outline(int index)
{
    constexpr double arm = 0.4; // half as wide as the arms of plus and cross
    static const std::array<std::vector<QPointF>, CurveMark::count> outlines = {{
        {},
        {{-0.85, -0.85}, {0.85, -0.85}, {0.85, 0.85}, {-0.85, 0.85}},
        {{0, -1}, {1, 0.85}, {-1, 0.85}},
        {{0, -1.15}, {1.15, 0}, {0, 1.15}, {-1.15, 0}},
        {{0, 1}, {1, -0.85}, {-1, -0.85}},
        {{0, -arm},
         {0.7, -arm - 0.7},
         {arm + 0.7, -0.7},
         {arm, 0},
         {arm + 0.7, 0.7},
         {0.7, arm + 0.7},
         {0, arm},
         {-0.7, arm + 0.7},
         {-arm - 0.7, 0.7},
         {-arm, 0},
         {-arm - 0.7, -0.7},
         {-0.7, -arm - 0.7}},
        {{-arm, -1.2},
         {arm, -1.2},
         {arm, -arm},
         {1.2, -arm},
         {1.2, arm},
         {arm, arm},
         {arm, 1.2},
         {-arm, 1.2},
         {-arm, arm},
         {-1.2, arm},
         {-1.2, -arm},
         {-arm, -arm}},
        {},
    }};
    return outlines[std::size_t(index % CurveMark::count)];
}

} // namespace

void CurveMark::draw(QPainter& painter, int index, const QPointF& center, const QColor& color)
{
    const double half = size / 2;
    painter.setPen(QPen(Palette::paper, size / 8));
    painter.setBrush(color);
    const std::vector<QPointF>& corners = outline(index);
    if (corners.empty()) {
        painter.drawEllipse(center, half, half);
        if (index % count != 0) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Palette::paper);
            painter.drawEllipse(center, half * 0.5, half * 0.5);
        }
        return;
    }
    std::array<QPointF, 12> points;
    for (std::size_t i = 0; i < corners.size(); ++i)
        points[i] = center + corners[i] * half;
    painter.drawPolygon(points.data(), static_cast<int>(corners.size()));
}

void CurveMark::drawBadge(const ShapePainter& canvas, int index, const QRectF& rect, int fontSize, const QColor& color)
{
    canvas.drawFrame(rect, color, QColor(), 0, 2);
    canvas.drawText(rect, Qt::AlignCenter, {fontSize, true}, Palette::readableOn(color), QString::number(index + 1));
}
