#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>

/// A filled ellipse with a line around it; a circle where width and height are equal.
class KORVANE_HOST_EXPORT Ellipse : public Shape
{
public:
    Ellipse() : Shape({60, 60}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

private:
    QColor m_fillColor = Palette::plate;
    QColor m_lineColor = Palette::outline;
    double m_lineWidth = 1;
};
