#pragma once

#include "host/shapes/statesymbol.h"

/// A valve in a horizontal pipe: two triangles tip to tip (ISO 10628-2), and a lever over them.
///
/// State 0 closed: filled dark, the lever across the pipe; 1 open: light, the lever along the pipe; 2 travelling: one
/// triangle dark, the lever slanted; 3 fault.
class KORVANE_HOST_EXPORT Valve : public StateSymbol
{
public:
    Valve() : StateSymbol({48, 48}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }

protected:
    void drawBody(const ShapePainter& painter, const QRectF& box, Look look, double line) const override;
};
