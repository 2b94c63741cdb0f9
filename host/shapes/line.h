#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/pathshape.h"

#include <QColor>

/// A line through points, dashed and with arrows at its ends if wished.
class KORVANE_HOST_EXPORT Line : public PathShape
{
public:
    Line() : PathShape(2) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

protected:
    double reach() const override;

private:
    QColor m_lineColor = Palette::outline;
    bool m_hasArrowAtStart = false;
    bool m_hasArrowAtEnd = false;
    bool m_isDashed = false;
};
