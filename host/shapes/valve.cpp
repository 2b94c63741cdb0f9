#include "host/shapes/valve.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

const ShapeClass& Valve::staticClass()
{
    static const ShapeClass self = {
        QLatin1String("Valve"),
        Shape::withCommon(symbolProperties()),
        [] { return std::unique_ptr<Shape>(new Valve); },
    };
    return self;
}

void Valve::drawBody(const ShapePainter& canvas, const QRectF& box, Look look, double line) const
{
    QPainter& painter = canvas.painter();
    const double side = box.width();
    const auto at = [&](double x, double y) { return QPointF(box.left() + x * side, box.top() + y * side); };
    const double edge = line / side; // the lines lie inside the box
    const QPointF joint = at(0.5, 0.66);

    painter.setPen(linePen(look, line));
    if (look != Look::Unknown) {
        painter.drawLine(joint, at(0.5, 0.2));
        const double reach = 0.2 * side;
        const QPointF middle = at(0.5, 0.22);
        const QPointF along = look == Look::Off       ? QPointF(0, reach)
                              : look == Look::Between ? QPointF(reach, -reach) * 0.75
                                                      : QPointF(reach * 1.3, 0);
        painter.setPen(QPen(lineColor(), 2.5 * line, Qt::SolidLine, Qt::FlatCap));
        if (lineColor().isValid())
            painter.drawLine(middle - along, middle + along);
        painter.setPen(linePen(look, line));
    }
    const QPointF left[] = {at(edge, 0.4), joint, at(edge, 0.92)};
    const QPointF right[] = {at(1 - edge, 0.4), joint, at(1 - edge, 0.92)};
    painter.setBrush(firstFill(look));
    painter.drawPolygon(left, 3);
    painter.setBrush(secondFill(look));
    painter.drawPolygon(right, 3);
}
