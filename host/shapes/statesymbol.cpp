#include "host/shapes/statesymbol.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double labelHeight = 1.25; // in font sizes

void drawCross(QPainter& painter, const QRectF& box, const QColor& color, double line)
{
    const QRectF cross = box.adjusted(line * 1.5, line * 1.5, -line * 1.5, -line * 1.5);
    for (const auto& [strokeColor, width] : {std::pair(Palette::paper, 4 * line), std::pair(color, 2.2 * line)}) {
        painter.setPen(QPen(strokeColor, width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.bottomLeft(), cross.topRight());
    }
}

} // namespace

std::vector<ShapeProperty> StateSymbol::symbolProperties()
{
    using namespace ShapeProperties;
    return {
        of<&StateSymbol::m_state>("State"),         of<&StateSymbol::m_onColor>("OnColor"),
        of<&StateSymbol::m_offColor>("OffColor"),   of<&StateSymbol::m_faultColor>("FaultColor"),
        of<&StateSymbol::m_lineColor>("LineColor"), of<&StateSymbol::m_label>("Label"),
        of<&StateSymbol::m_textColor>("TextColor"), of<&StateSymbol::m_fontSize, 4, 200>("FontSize"),
    };
}

StateSymbol::Look StateSymbol::look() const
{
    switch (m_state) {
    case 0:
        return Look::Off;
    case 1:
        return Look::On;
    case 2:
        return Look::Between;
    case 3:
        return Look::Fault;
    default:
        return Look::Unknown;
    }
}

QColor StateSymbol::firstFill(Look look) const
{
    if (look == Look::Unknown)
        return Palette::plate;
    return look == Look::Off || look == Look::Between ? m_offColor : m_onColor;
}

QColor StateSymbol::secondFill(Look look) const
{
    return look == Look::Between ? m_onColor : firstFill(look);
}

QPen StateSymbol::linePen(Look look, double line) const
{
    if (!m_lineColor.isValid())
        return Qt::NoPen;
    QPen pen(m_lineColor, line, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    if (look == Look::Unknown)
        pen.setDashPattern({2.5, 1.5});
    return pen;
}

void StateSymbol::draw(const ShapePainter& canvas) const
{
    const QRectF area = geometry();
    const double labelRoom = m_label.isEmpty() ? 0 : std::min(m_fontSize * labelHeight, area.height() / 2);
    const double side = std::min(area.width(), area.height() - labelRoom);
    const QRectF box(area.center().x() - side / 2, area.top() + (area.height() - labelRoom - side) / 2, side, side);
    const double line = canvas.crispWidth(std::clamp(side / 26, 1.0, 6.0));
    const Look shown = look();

    drawBody(canvas, box, shown, line);
    if (shown == Look::Fault)
        drawCross(canvas.painter(), box, m_faultColor, line);
    if (shown == Look::Unknown) {
        canvas.painter().setPen(Qt::NoPen);
        canvas.painter().setBrush(Palette::paper);
        canvas.painter().drawEllipse(box.center(), side * 0.3, side * 0.3);
        canvas.drawText(box, Qt::AlignCenter, {std::clamp(static_cast<int>(side * 0.5), 1, 200), true}, m_textColor,
                        QStringLiteral("?"));
    }
    if (labelRoom > 0)
        canvas.drawText({area.left(), area.bottom() - labelRoom, area.width(), labelRoom}, Qt::AlignCenter,
                        {m_fontSize}, m_textColor, m_label);
}
