#include "host/shapes/tank.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double wall = 2;

/// Half as high as half of the vessel's width.
double headHeight(const QRectF& vessel)
{
    return std::min(vessel.width() * 0.25, vessel.height() * 0.5);
}

/// A cylinder seen from the side: half an ellipse above, half an ellipse below.
QPainterPath vesselOutline(const QRectF& vessel)
{
    const double head = headHeight(vessel);
    const QRectF top(vessel.left(), vessel.top(), vessel.width(), 2 * head);
    const QRectF bottom(vessel.left(), vessel.bottom() - 2 * head, vessel.width(), 2 * head);
    QPainterPath outline;
    outline.arcMoveTo(top, 180);
    outline.arcTo(top, 180, -180);
    outline.arcTo(bottom, 0, -180);
    outline.closeSubpath();
    return outline;
}

} // namespace

const ShapeClass& Tank::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = [] {
        std::vector<ShapeProperty> own = valueProperties();
        own.push_back(of<&Tank::m_showsPercent>("ShowPercent"));
        own.push_back(of<&Tank::m_fontSize, 4, 200>("FontSize"));
        return ShapeClass{QLatin1String("Tank"), Shape::withCommon(own),
                          [] { return std::unique_ptr<Shape>(new Tank); }};
    }();
    return self;
}

void Tank::draw(const ShapePainter& canvas) const
{
    QPainter& painter = canvas.painter();
    const double line = canvas.crispWidth(std::min(wall, std::min(geometry().width(), geometry().height()) / 4));
    const QRectF vessel = geometry().adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const QPainterPath outline = vesselOutline(vessel);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Palette::light);
    painter.drawPath(outline);
    if (value())
        drawContent(canvas, vessel, outline);
    if (lineColor().isValid()) {
        painter.setPen(QPen(lineColor(), line));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(outline);
    }
    if (hasLimits()) {
        drawLimit(canvas, vessel, lowLimit());
        drawLimit(canvas, vessel, highLimit());
    }
    if (m_showsPercent)
        drawPercent(canvas, vessel);
}

void Tank::drawContent(const ShapePainter& canvas, const QRectF& vessel, const QPainterPath& outline) const
{
    const double share = std::clamp(this->share(), 0.0, 1.0);
    if (share <= 0 || !shownFill().isValid())
        return;
    QPainter& painter = canvas.painter();
    QRectF content = vessel;
    content.setTop(canvas.crisp({0, vessel.bottom() - share * vessel.height()}, 0).y());
    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    painter.fillRect(content, shownFill());
    canvas.drawRule(content.topLeft(), content.topRight(), Palette::mixed(shownFill(), Palette::ink, 0.5), 2);
    painter.restore();
}

void Tank::drawLimit(const ShapePainter& canvas, const QRectF& vessel, double limit) const
{
    const double share = shareOf(limit);
    if (share < 0 || share > 1)
        return;
    const double y = vessel.bottom() - share * vessel.height();
    const double size = std::min({8.0, vessel.width() / 6, vessel.height() / 6});
    const double fromEnd = std::min(y - vessel.top(), vessel.bottom() - y);
    const double head = headHeight(vessel);
    const double curve = fromEnd < head ? 1 - fromEnd / head : 0; // 0 where the wall is straight, 1 at the very end
    const double aside = (1 - std::sqrt(1 - curve * curve)) * (vessel.width() / 2 - size);
    const double left = vessel.left() + aside;
    const double right = vessel.right() - aside;
    QPainter& painter = canvas.painter();
    painter.setPen(QPen(Palette::paper, 1)); // so that they stand out from content and wall alike
    painter.setBrush(alarmColor());
    const QPointF leftMark[] = {{left + size, y}, {left, y - size / 2}, {left, y + size / 2}};
    const QPointF rightMark[] = {{right - size, y}, {right, y - size / 2}, {right, y + size / 2}};
    painter.drawPolygon(leftMark, 3);
    painter.drawPolygon(rightMark, 3);
}

void Tank::drawPercent(const ShapePainter& canvas, const QRectF& vessel) const
{
    const QString text = value() ? QString::number(share() * 100, 'f', 0) + QStringLiteral(" %") : QStringLiteral("--");
    const QString widest = QStringLiteral("-100 %");
    const double room = vessel.width() - 8;
    const double wanted = ShapePainter::textWidth({m_fontSize}, widest);
    const int fontSize = wanted > room ? std::max(4, static_cast<int>(m_fontSize * room / wanted)) : m_fontSize;
    const double width = std::min(ShapePainter::textWidth({fontSize}, widest) + 4, vessel.width() - 4);
    const double height = std::min(fontSize * 1.4, vessel.height());
    if (width <= 0)
        return;
    const QRectF plate(vessel.center().x() - width / 2, vessel.center().y() - height / 2, width, height);
    canvas.drawFrame(plate, Palette::paper, Palette::hairline, 1, 2);
    canvas.drawText(plate.adjusted(1, 0, -1, 0), Qt::AlignCenter, {fontSize}, textColor(), text);
}
