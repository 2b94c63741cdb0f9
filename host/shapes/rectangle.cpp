#include "host/shapes/rectangle.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

const ShapeClass& Rectangle::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Rectangle"),
        Shape::withCommon({
            of<&Rectangle::m_fillColor>("FillColor"),
            of<&Rectangle::m_lineColor>("LineColor"),
            of<&Rectangle::m_lineWidth, 0, 64>("LineWidth"),
            of<&Rectangle::m_radius, 0, 1000>("Radius"),
        }),
        [] { return std::unique_ptr<Shape>(new Rectangle); },
    };
    return self;
}

void Rectangle::draw(const ShapePainter& canvas) const
{
    canvas.drawFrame(geometry(), m_fillColor, m_lineColor, m_lineWidth, m_radius);
}
