#include "host/shapes/breaker.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

const ShapeClass& Breaker::staticClass()
{
    static const ShapeClass self = {
        QLatin1String("Breaker"),
        Shape::withCommon(symbolProperties()),
        [] { return std::unique_ptr<Shape>(new Breaker); },
    };
    return self;
}

void Breaker::drawBody(const ShapePainter& canvas, const QRectF& box, Look look, double line) const
{
    QPainter& painter = canvas.painter();
    const double side = box.width();
    const auto at = [&](double x, double y) { return QPointF(box.left() + x * side, box.top() + y * side); };
    const QRectF square(at(0.14, 0.14), at(0.86, 0.86));

    if (look == Look::Unknown) {
        canvas.drawFrame(square, firstFill(look), QColor());
        painter.setPen(linePen(look, line));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(square.adjusted(line / 2, line / 2, -line / 2, -line / 2));
    } else {
        canvas.drawFrame(square, firstFill(look), QColor());
        if (look == Look::Between)
            canvas.drawFrame({at(0.5, 0.14), at(0.86, 0.86)}, secondFill(look), QColor());
        canvas.drawFrame(square, QColor(), lineColor(), line);
    }
    canvas.drawRule(at(0.5, 0), at(0.5, 0.14), lineColor(), 2 * line);
    canvas.drawRule(at(0.5, 0.86), at(0.5, 1), lineColor(), 2 * line);
    if (look == Look::Unknown)
        return;

    const QPointF contact = at(0.5, 0.28);
    const QPointF pivot = at(0.5, 0.72);
    const QPointF tip = look == Look::Off ? at(0.26, 0.36) : look == Look::Between ? at(0.37, 0.31) : contact;
    const auto drawBlade = [&](const QColor& color, double width) {
        canvas.drawRule(pivot, at(0.5, 0.86), color, width);
        canvas.drawRule(at(0.5, 0.14), contact, color, width);
        if (!color.isValid())
            return;
        painter.setPen(QPen(color, canvas.crispWidth(width), Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(canvas.crisp(pivot, width), canvas.crisp(tip, width));
    };
    if (look == Look::Between)
        drawBlade(onColor(), 4 * line); // or else it could not be seen before the dark half
    drawBlade(look == Look::Off ? Palette::readableOn(offColor()) : lineColor(), 2 * line);
}
