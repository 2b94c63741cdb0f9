#pragma once

#include "host/shapes/statesymbol.h"

/// A circuit-breaker in a vertical conductor: a square with a contact in it, whose blade stands as in IEC 60617.
///
/// State 0 open: filled dark, the blade off its contact; 1 closed: light, the blade in line with the conductor;
/// 2 intermediate: the left half dark, the blade halfway; 3 fault.
class KORVANE_HOST_EXPORT Breaker : public StateSymbol
{
public:
    Breaker() : StateSymbol({48, 48}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }

protected:
    void drawBody(const ShapePainter& painter, const QRectF& box, Look look, double line) const override;
};
