#pragma once

#include "host/shapes/valueshape.h"

/// A bar that grows with its value, upright or lying, with a scale beside it and marks at its limits.
///
/// "Orientation" takes the numbers of Qt::Orientation. A value outside the range fills the bar or leaves it empty, and
/// an arrow at that end says that it goes on; a bar without a value is crossed out.
class KORVANE_HOST_EXPORT Bar : public ValueShape
{
public:
    Bar() : ValueShape({70, 160}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

private:
    struct Layout;
    Layout layout() const;
    void drawScale(const ShapePainter& painter, const Layout& layout) const;
    void drawLimit(const ShapePainter& painter, const Layout& layout, double limit) const;
    void drawOverrun(const ShapePainter& painter, const Layout& layout) const;

    int m_orientation = Qt::Vertical;
    bool m_showsScale = true;
    int m_fontSize = 11;
};
