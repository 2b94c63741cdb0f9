#pragma once

#include "host/shapes/statesymbol.h"

/// A pump that delivers to the right: a circle with a triangle in it (ISO 10628-2).
///
/// State 0 stopped: filled dark, the triangle an outline; 1 running: light, the triangle filled; 2 starting: the lower
/// half dark, the triangle an outline; 3 fault.
class KORVANE_HOST_EXPORT Pump : public StateSymbol
{
public:
    Pump() : StateSymbol({48, 48}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }

protected:
    void drawBody(const ShapePainter& painter, const QRectF& box, Look look, double line) const override;
};
