#include "host/shapes/button.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double radius = 4;
constexpr double depth = 3; // by which it stands out until pressed

QColor darker(const QColor& color, double share)
{
    return color.isValid() ? Palette::mixed(color, Palette::ink, share) : color;
}

} // namespace

const ShapeClass& Button::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Button"),
        Shape::withCommon({
            of<&Button::m_text>("Text"),
            of<&Button::m_fontSize, 4, 200>("FontSize"),
            of<&Button::m_isBold>("Bold"),
            of<&Button::m_isPressed>("Pressed", false),
            of<&Button::m_isEnabled>("Enabled"),
            of<&Button::m_fillColor>("FillColor"),
            of<&Button::m_lineColor>("LineColor"),
            of<&Button::m_textColor>("TextColor"),
        }),
        [] { return std::unique_ptr<Shape>(new Button); },
    };
    return self;
}

void Button::draw(const ShapePainter& canvas) const
{
    const bool isPressed = m_isPressed && m_isEnabled;
    const double edge = std::min(depth, geometry().height() / 8);
    const double side = std::min(6.0, geometry().width() / 4);
    QRectF face = geometry();
    QColor textColor = m_textColor;
    if (!m_isEnabled) {
        canvas.drawFrame(face, Palette::paler(m_fillColor), Palette::paler(m_lineColor), 1, radius);
        textColor = Palette::paler(m_textColor);
    } else if (isPressed) {
        canvas.drawFrame(face, darker(m_fillColor, 0.18), darker(m_lineColor, 0.5), 2, radius);
        face.translate(0, edge / 2);
    } else {
        canvas.drawFrame(face, m_lineColor, m_lineColor, 1, radius); // what shows of it below is the edge
        face.setBottom(face.bottom() - edge);
        canvas.drawFrame(face, m_fillColor, m_lineColor, 1, radius);
    }
    canvas.drawText(face.adjusted(side, 0, -side, 0), Qt::AlignCenter, {m_fontSize, m_isBold}, textColor, m_text);
}
