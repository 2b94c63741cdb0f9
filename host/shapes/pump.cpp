#include "host/shapes/pump.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

const ShapeClass& Pump::staticClass()
{
    static const ShapeClass self = {
        QLatin1String("Pump"),
        Shape::withCommon(symbolProperties()),
        [] { return std::unique_ptr<Shape>(new Pump); },
    };
    return self;
}

void Pump::drawBody(const ShapePainter& canvas, const QRectF& box, Look look, double line) const
{
    QPainter& painter = canvas.painter();
    const QRectF circle = box.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const double radius = circle.width() / 2;
    const QPointF center = circle.center();

    painter.setPen(Qt::NoPen);
    painter.setBrush(firstFill(look));
    painter.drawEllipse(circle);
    if (look == Look::Between) {
        painter.setBrush(secondFill(look));
        painter.drawChord(circle, 0, 180 * 16);
    }
    painter.setPen(linePen(look, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(circle);
    if (look == Look::Unknown)
        return;

    const auto at = [&](double x, double y) { return center + QPointF(x, y) * radius; };
    const QPointF triangle[] = {at(-0.45, -0.75), at(0.86, 0), at(-0.45, 0.75)};
    if (look == Look::On)
        painter.setBrush(lineColor());
    else if (look == Look::Off)
        painter.setPen(
            QPen(Palette::readableOn(firstFill(look)), 1.5 * line, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    else if (look == Look::Between)
        painter.setBrush(onColor());
    painter.drawPolygon(triangle, 3);
}
