#include "host/shapes/inputfield.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr int mostDecimals = 12;

} // namespace

const ShapeClass& InputField::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("InputField"),
        withOperable({
            of<&InputField::m_text>("Text", false),
            of<&InputField::m_value>("Value", false),
            of<&InputField::m_decimals, -1, mostDecimals>("Decimals"),
            of<&InputField::m_placeholder>("Placeholder"),
            of<&InputField::m_unit>("Unit"),
            of<&InputField::m_isActive>("Active", false),
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

QRectF InputField::textArea() const
{
    const double side = std::min(inset, geometry().width() / 8);
    QRectF area = geometry().adjusted(side, 0, -side, 0);
    if (!m_unit.isEmpty())
        area.setRight(area.right() - side -
                      std::min(ShapePainter::textWidth(textStyle(), m_unit) + 2, area.width() / 2));
    return area;
}

void InputField::draw(const ShapePainter& canvas) const
{
    const QRectF frame = geometry();
    const bool isActive = m_isActive || m_isEdited;
    drawGround(canvas, isActive);
    const QRectF area = textArea();
    if (!m_unit.isEmpty()) {
        const double side = std::min(inset, frame.width() / 8);
        canvas.drawText({area.right() + side, frame.top(), frame.right() - area.right() - 2 * side, frame.height()},
                        Qt::AlignRight | Qt::AlignVCenter, textStyle(), drawnText(), m_unit);
        canvas.drawRule({area.right() + side / 2, frame.top() + 5}, {area.right() + side / 2, frame.bottom() - 5},
                        Palette::hairline);
    }
    if (m_isEdited) // the editor shows the text
        return;

    const QString text = shownText();
    double textEnd = area.left();
    if (!text.isEmpty()) {
        canvas.drawText(area.adjusted(0, 0, -2, 0), Qt::AlignLeft | Qt::AlignVCenter, textStyle(), drawnText(), text);
        textEnd += std::min(ShapePainter::textWidth(textStyle(), text) + 1, area.width());
    } else if (!isActive) {
        canvas.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, textStyle(), drawnGrey(), m_placeholder);
    }
    if (isActive) {
        const double half = std::min(fontSize() * 0.62, frame.height() / 2);
        canvas.drawRule({textEnd, frame.center().y() - half}, {textEnd, frame.center().y() + half}, drawnText(), 1.5);
    }
}

void InputField::beginEditing()
{
    m_textBefore = m_text;
    m_isTyped = false;
    m_isEdited = true;
    changed();
}

void InputField::endEditing()
{
    m_isEdited = false;
    changed();
}

void InputField::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    changed();
}

void InputField::write(const QString& text)
{
    m_isTyped = true;
    setText(text);
    act(QStringLiteral("onTextChanged"), {text});
}

void InputField::takeBack()
{
    if (m_isTyped && m_text != m_textBefore)
        write(m_textBefore);
}

void InputField::replace(const QString& entered, const QString& text)
{
    if (m_textBefore == entered)
        m_textBefore = text; // what taking back leads to
    const bool isBeingWritten = m_isEdited && m_isTyped;
    if (m_text == entered && !isBeingWritten)
        setText(text);
}

void InputField::enter(const QString& text)
{
    if (m_isTyped) // else the live value goes on showing
        setText(text);
    act(QStringLiteral("onReturnPressed"));
}
