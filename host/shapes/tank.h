#pragma once

#include "host/shapes/valueshape.h"

class QPainterPath;

/// A vessel with elliptic heads that is filled up to its level.
///
/// "ShowPercent" writes the level into the middle, on a plate of its own so that it reads the same at every level; "--"
/// without a value.
class KORVANE_HOST_EXPORT Tank : public ValueShape
{
public:
    Tank() : ValueShape({90, 130}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

private:
    void drawContent(const ShapePainter& painter, const QRectF& vessel, const QPainterPath& outline) const;
    void drawLimit(const ShapePainter& painter, const QRectF& vessel, double limit) const;
    void drawPercent(const ShapePainter& painter, const QRectF& vessel) const;

    bool m_showsPercent = true;
    int m_fontSize = 14;
};
