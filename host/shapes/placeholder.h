#pragma once

#include "host/shapes/shape.h"

#include <QString>

/// Stands where an object should be that could not be loaded, and says which: a hatched box with a dashed red outline.
///
/// Not among the factory's classes: nobody puts one on a page.
class KORVANE_HOST_EXPORT Placeholder : public Shape
{
public:
    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// Draws the box with \p text into \p rect, for shapes that can't show what they were told to.
    static void drawBox(const ShapePainter& painter, const QRectF& rect, const QString& text);

private:
    QString m_text = QStringLiteral("?");
};
