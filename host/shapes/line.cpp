#include "host/shapes/line.h"

#include "host/shapes/shapepainter.h"

#include <QLineF>

namespace {

constexpr double miterLimit = 2; // a corner sharper than 60 degrees is cut off, so that it does not stand out far

/// Draws an arrow's head whose tip is \p tip.
/// \returns where the line that ends there has to stop, so as not to show beside the tip.
QPointF drawHead(QPainter& painter, const QPointF& tip, const QPointF& previous, double length)
{
    QLineF back(tip, previous);
    if (back.length() <= 0)
        return tip;
    const double towards = std::min(length, back.length());
    back.setLength(length);
    const QLineF across = QLineF(back.p2(), back.p1()).normalVector().unitVector();
    const QPointF aside(across.dx() * length * 0.4, across.dy() * length * 0.4);
    painter.drawPolygon(QVector<QPointF>{tip, back.p2() + aside, back.p2() - aside});
    back.setLength(towards * 0.9);
    return back.p2();
}

} // namespace

const ShapeClass& Line::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Line"),
        Shape::withCommon({
            pointsProperty(),
            of<&Line::m_lineColor>("LineColor"),
            widthProperty<0, 64>("LineWidth"),
            of<&Line::m_hasArrowAtStart>("ArrowStart"),
            of<&Line::m_hasArrowAtEnd>("ArrowEnd"),
            of<&Line::m_isDashed>("Dashed"),
        }),
        [] { return std::unique_ptr<Shape>(new Line); },
    };
    return self;
}

double Line::reach() const
{
    return width() * 2 + 4;
}

void Line::draw(const ShapePainter& canvas) const
{
    if (!m_lineColor.isValid() || width() <= 0)
        return;
    QPainter& painter = canvas.painter();
    const double wide = canvas.crispWidth(width());
    QPolygonF points = shownPoints();
    for (QPointF& point : points)
        point = canvas.crisp(point, width());

    const double headLength = 3 * wide + 6;
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_lineColor);
    const QPointF start = points.first();
    if (m_hasArrowAtStart)
        points.first() = drawHead(painter, start, points.at(1), headLength);
    if (m_hasArrowAtEnd)
        points.last() =
            drawHead(painter, points.last(), points.size() > 2 ? points.at(points.size() - 2) : start, headLength);

    QPen pen(m_lineColor, wide, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
    pen.setMiterLimit(miterLimit);
    if (m_isDashed)
        pen.setDashPattern({4, 3});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points);
}
