#include "host/shapes/inputfield.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double inset = 6; // between frame and text
constexpr int mostDecimals = 12;

} // namespace

const ShapeClass& InputField::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("InputField"),
        Shape::withCommon({
            of<&InputField::m_text>("Text", false),
            of<&InputField::m_value>("Value", false),
            of<&InputField::m_decimals, -1, mostDecimals>("Decimals"),
            of<&InputField::m_placeholder>("Placeholder"),
            of<&InputField::m_unit>("Unit"),
            of<&InputField::m_fontSize, 4, 200>("FontSize"),
            of<&InputField::m_isActive>("Active", false),
            of<&InputField::m_textColor>("TextColor"),
            of<&InputField::m_fillColor>("FillColor"),
            of<&InputField::m_lineColor>("LineColor"),
        }),
        [] { return std::unique_ptr<Shape>(new InputField); },
    };
    return self;
}

QString InputField::shownText() const
{
    if (!m_text.isEmpty() || !m_value)
        return m_text;
    return m_decimals < 0 ? QString::number(*m_value, 'g', 6) : QString::number(*m_value, 'f', m_decimals);
}

void InputField::draw(const ShapePainter& canvas) const
{
    const QRectF frame = geometry();
    canvas.drawFrame(frame, m_fillColor, m_isActive ? Palette::value : m_lineColor, m_isActive ? 3 : 1, 2);

    const double side = std::min(inset, frame.width() / 8);
    QRectF area = frame.adjusted(side, 0, -side, 0);
    const TextStyle style{m_fontSize};
    if (!m_unit.isEmpty()) {
        const double unitWidth = std::min(ShapePainter::textWidth(style, m_unit) + 2, area.width() / 2);
        canvas.drawText({area.right() - unitWidth, area.top(), unitWidth, area.height()},
                        Qt::AlignRight | Qt::AlignVCenter, style, m_textColor, m_unit);
        area.setRight(area.right() - unitWidth - side);
        canvas.drawRule({area.right() + side / 2, frame.top() + 5}, {area.right() + side / 2, frame.bottom() - 5},
                        Palette::hairline);
    }

    const QString text = shownText();
    double textEnd = area.left();
    if (!text.isEmpty()) {
        canvas.drawText(area.adjusted(0, 0, -2, 0), Qt::AlignLeft | Qt::AlignVCenter, style, m_textColor, text);
        textEnd += std::min(ShapePainter::textWidth(style, text) + 1, area.width());
    } else if (!m_isActive) {
        const QColor grey = m_textColor.isValid() && m_fillColor.isValid()
                                ? Palette::mixed(m_textColor, m_fillColor, 0.3)
                                : m_textColor;
        canvas.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, style, grey, m_placeholder);
    }
    if (m_isActive) {
        const double half = std::min(m_fontSize * 0.62, frame.height() / 2);
        canvas.drawRule({textEnd, frame.center().y() - half}, {textEnd, frame.center().y() + half}, m_textColor, 1.5);
    }
}
