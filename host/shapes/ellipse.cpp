#include "host/shapes/ellipse.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

const ShapeClass& Ellipse::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Ellipse"),
        Shape::withCommon({
            of<&Ellipse::m_fillColor>("FillColor"),
            of<&Ellipse::m_lineColor>("LineColor"),
            of<&Ellipse::m_lineWidth, 0, 64>("LineWidth"),
        }),
        [] { return std::unique_ptr<Shape>(new Ellipse); },
    };
    return self;
}

void Ellipse::draw(const ShapePainter& canvas) const
{
    QPainter& painter = canvas.painter();
    const double widest = std::min(geometry().width(), geometry().height());
    const double width = m_lineColor.isValid() ? std::min(canvas.crispWidth(m_lineWidth), widest) : 0;
    painter.setPen(width > 0 ? QPen(m_lineColor, width) : QPen(Qt::NoPen));
    painter.setBrush(m_fillColor.isValid() ? QBrush(m_fillColor) : QBrush(Qt::NoBrush));
    painter.drawEllipse(geometry().adjusted(width / 2, width / 2, -width / 2, -width / 2));
}
