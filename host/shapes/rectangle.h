#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>

/// A filled rectangle with a line around it, its corners rounded if wished.
class KORVANE_HOST_EXPORT Rectangle : public Shape
{
public:
    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

protected:
    double overhang() const override { return 0; }

private:
    QColor m_fillColor = Palette::plate;
    QColor m_lineColor = Palette::outline;
    double m_lineWidth = 1;
    double m_radius = 0;
};
