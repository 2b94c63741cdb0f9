#include "host/shapes/label.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double inset = 5;           // between frame and text
constexpr double lineDistance = 1.25; // in font sizes

} // namespace

const ShapeClass& Label::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Label"),
        Shape::withCommon({
            of<&Label::m_text>("Text"),
            of<&Label::m_fontSize, 4, 200>("FontSize"),
            of<&Label::m_isBold>("Bold"),
            of<&Label::m_alignment>("Alignment"),
            of<&Label::m_textColor>("TextColor"),
            of<&Label::m_fillColor>("FillColor"),
            of<&Label::m_lineColor>("LineColor"),
        }),
        [] { return std::unique_ptr<Shape>(new Label); },
    };
    return self;
}

void Label::draw(const ShapePainter& canvas) const
{
    canvas.drawFrame(geometry(), m_fillColor, m_lineColor);

    const bool hasPlate = m_fillColor.isValid() || m_lineColor.isValid();
    const double side = hasPlate ? std::min(inset, geometry().width() / 4) : 0;
    const QRectF area = geometry().adjusted(side, 0, -side, 0);
    const Qt::Alignment alignment = Qt::Alignment(m_alignment);
    const Qt::Alignment horizontal = alignment & Qt::AlignHorizontal_Mask;
    const int lines = m_text.count(QLatin1Char('\n')) + 1;
    if (lines == 1) {
        canvas.drawText(area, horizontal | (alignment & Qt::AlignVertical_Mask), {m_fontSize, m_isBold}, m_textColor,
                        m_text);
        return;
    }

    // Lines that would not fit one below the other come closer and smaller, so that none is lost.
    const double height = std::min(m_fontSize * lineDistance, area.height() / lines);
    const int fontSize = std::min(m_fontSize, std::max(1, static_cast<int>(height / lineDistance)));
    double top = area.top();
    if (alignment & Qt::AlignBottom)
        top = area.bottom() - lines * height;
    else if (alignment & Qt::AlignVCenter)
        top = area.center().y() - lines * height / 2;
    for (int begin = 0, line = 0; line < lines; ++line) {
        const int end = m_text.indexOf(QLatin1Char('\n'), begin);
        canvas.drawText({area.left(), top + line * height, area.width(), height}, horizontal | Qt::AlignVCenter,
                        {fontSize, m_isBold}, m_textColor, m_text.mid(begin, end < 0 ? -1 : end - begin));
        begin = end + 1;
    }
}
