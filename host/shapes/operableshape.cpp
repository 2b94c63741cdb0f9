#include "host/shapes/operableshape.h"

#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double cornerRadius = 2;
constexpr double activeLine = 3; // width of the frame of what is being written into

} // namespace

std::vector<ShapeProperty> OperableShape::withOperable(const std::vector<ShapeProperty>& own)
{
    using namespace ShapeProperties;
    std::vector<ShapeProperty> all = withCommon(own);
    const ShapeProperty shared[] = {
        of<&OperableShape::m_fontSize, 4, 200>("FontSize"), of<&OperableShape::m_isEnabled>("Enabled"),
        of<&OperableShape::m_textColor>("TextColor"),       of<&OperableShape::m_fillColor>("FillColor"),
        of<&OperableShape::m_lineColor>("LineColor"),
    };
    all.insert(all.end(), std::begin(shared), std::end(shared));
    return all;
}

QColor OperableShape::drawnFill() const
{
    return m_isEnabled || !m_fillColor.isValid() ? m_fillColor : Palette::mixed(m_fillColor, Palette::plate, 0.6);
}

QColor OperableShape::drawnGrey() const
{
    const QColor text = drawnText();
    return text.isValid() && m_fillColor.isValid() ? Palette::mixed(text, m_fillColor, 0.3) : text;
}

void OperableShape::drawGround(const ShapePainter& canvas, bool isActive) const
{
    canvas.drawFrame(geometry(), drawnFill(), isActive ? Palette::value : drawnLine(), isActive ? activeLine : 1,
                     cornerRadius);
}

QRectF OperableShape::drawField(const ShapePainter& canvas, const QString& text, const QString& placeholder) const
{
    drawGround(canvas);
    const QRectF frame = geometry();
    const double side = std::min(inset, frame.width() / 8);
    const double room = std::min({frame.height(), m_fontSize * 2.0, frame.width() / 4});
    const QRectF area = frame.adjusted(side, 0, -room - 1, 0);
    canvas.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, textStyle(), text.isEmpty() ? drawnGrey() : drawnText(),
                    text.isEmpty() ? placeholder : text);
    return {frame.right() - room, frame.top(), room, frame.height()};
}
