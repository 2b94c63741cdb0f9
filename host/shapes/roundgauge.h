#pragma once

#include "host/shapes/valueshape.h"

#include <QString>

/// A dial of 240 degrees with a needle; beneath it the number with its unit, and a name.
///
/// The stretches beyond the limits are drawn thick along the rim. The needle of a value outside the range stands a
/// little beyond the scale's end; without a value there is no needle, and the number reads "--".
class KORVANE_HOST_EXPORT RoundGauge : public ValueShape
{
public:
    RoundGauge() : ValueShape({150, 140}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

private:
    struct Dial;
    void drawRim(const ShapePainter& painter, const Dial& dial) const;
    void drawScale(const ShapePainter& painter, const Dial& dial) const;
    void drawNeedle(const ShapePainter& painter, const Dial& dial) const;
    QString shownValue() const;

    QString m_text;
    QString m_unit;
    int m_decimals = 1;
    int m_fontSize = 12;
};
