#include "host/shapes/choice.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <algorithm>

namespace {

constexpr int mostItems = 1000000; // beyond any list, and what an index is held to

void drawChevron(QPainter& painter, const QRectF& room, const QColor& color)
{
    if (!color.isValid())
        return;
    const double half = std::min(room.width(), room.height()) * 0.2;
    const QPointF middle = room.center();
    const QPointF points[] = {{middle.x() - half, middle.y() - half / 2},
                              {middle.x(), middle.y() + half / 2},
                              {middle.x() + half, middle.y() - half / 2}};
    painter.setPen(QPen(color, std::min(2.0, half / 2), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(points, 3);
}

} // namespace

const ShapeClass& Choice::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Choice"),
        withOperable({
            of<&Choice::m_items>("Items"),
            of<&Choice::m_index, -1, mostItems>("Index"),
        }),
        [] { return std::unique_ptr<Shape>(new Choice); },
    };
    return self;
}

void Choice::draw(const ShapePainter& canvas) const
{
    drawChevron(canvas.painter(), drawField(canvas, m_items.value(m_index)), drawnText());
}

void Choice::choose(int index)
{
    if (index == m_index || index < 0 || index >= m_items.size())
        return;
    m_indexBefore = m_index;
    m_index = index;
    changed();
    act(QStringLiteral("onCurrentIndexChanged"), {index});
}

void Choice::replace(int chosen, int index)
{
    if (m_index != chosen || m_index == index)
        return;
    m_index = index;
    changed();
}
