#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/pathshape.h"

#include <QColor>

/// A pipe through points, with mitred bends. Chevrons along it show that something flows, and which way.
class KORVANE_HOST_EXPORT Pipe : public PathShape
{
public:
    Pipe() : PathShape(12) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

protected:
    double reach() const override;

private:
    void drawChevrons(const ShapePainter& painter, const QPolygonF& points) const;

    QColor m_fillColor = Palette::plate;
    QColor m_lineColor = Palette::outline;
    double m_flow = 0; ///< above 0 from the first point to the last, below 0 back, 0 not at all
};
