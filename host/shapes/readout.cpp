#include "host/shapes/readout.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr double widestInset = 5; // between frame and text
constexpr int mostDecimals = 12;

} // namespace

const ShapeClass& ReadOut::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("ReadOut"),
        Shape::withCommon({
            of<&ReadOut::m_value>("Value", false),
            of<&ReadOut::m_text>("Text"),
            of<&ReadOut::m_decimals, -1, mostDecimals>("Decimals"),
            of<&ReadOut::m_prefix>("Prefix"),
            of<&ReadOut::m_unit>("Unit"),
            of<&ReadOut::m_fontSize, 4, 200>("FontSize"),
            of<&ReadOut::m_isBold>("Bold"),
            of<&ReadOut::m_alignment>("Alignment"),
            of<&ReadOut::m_textColor>("TextColor"),
            of<&ReadOut::m_fillColor>("FillColor"),
            of<&ReadOut::m_lineColor>("LineColor"),
        }),
        [] { return std::unique_ptr<Shape>(new ReadOut); },
    };
    return self;
}

QString ReadOut::shownText() const
{
    if (!m_value)
        return m_text;
    const QString number =
        m_decimals < 0 ? QString::number(*m_value, 'g', 6) : QString::number(*m_value, 'f', m_decimals);
    QString shown = m_prefix + number;
    if (!m_unit.isEmpty())
        shown += QLatin1Char(' ') + m_unit;
    return shown;
}

void ReadOut::draw(const ShapePainter& canvas) const
{
    canvas.drawFrame(geometry(), m_fillColor, m_lineColor);
    const double inset = std::min(widestInset, geometry().height() / 5);
    const Qt::Alignment horizontal = Qt::Alignment(m_alignment) & Qt::AlignHorizontal_Mask;
    const double side = std::min(inset, geometry().width() / 4);
    canvas.drawText(geometry().adjusted(side, 0, -side, 0), horizontal | Qt::AlignVCenter, {m_fontSize, m_isBold},
                    m_textColor, shownText());
}
