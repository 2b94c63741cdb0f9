#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>
#include <QString>

/// The look of a push-button: raised, pressed in, or flat and grey where it can't be pushed. What a push does is the
/// page's matter.
class KORVANE_HOST_EXPORT Button : public Shape
{
public:
    Button() : Shape({110, 36}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

protected:
    double overhang() const override { return geometry().height() < lowestForText ? 2 : 0; }

private:
    QString m_text = QStringLiteral("Button");
    int m_fontSize = 14;
    bool m_isBold = false;
    bool m_isPressed = false;
    bool m_isEnabled = true;
    QColor m_fillColor = Palette::plate;
    QColor m_lineColor = Palette::outline;
    QColor m_textColor = Palette::ink;
};
