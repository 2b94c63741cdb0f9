#include "host/shapes/pathshape.h"

#include <QPainterPathStroker>

namespace {

constexpr double farthest = 100000; // coordinates that painting can count in
constexpr double pickDistance = 4;  // beside a line, where clicks still hit it

} // namespace

ShapeProperty PathShape::pointsProperty()
{
    return {QLatin1String("Points"), ShapeProperty::Kind::Points, readPoints, writePoints};
}

QVariant PathShape::readPoints(const Shape& shape)
{
    return static_cast<const PathShape&>(shape).m_points;
}

bool PathShape::writePoints(Shape& shape, const QVariant& value)
{
    QPolygonF points;
    if (!ShapeProperties::convert(value, points))
        return false;
    for (QPointF& point : points)
        point = {std::clamp(point.x(), -farthest, farthest), std::clamp(point.y(), -farthest, farthest)};
    auto& self = static_cast<PathShape&>(shape);
    if (points == self.m_points)
        return true;
    self.prepareGeometryChange();
    self.m_points = points;
    self.changed();
    return true;
}

QVariant PathShape::readWidth(const Shape& shape)
{
    return static_cast<const PathShape&>(shape).m_width;
}

void PathShape::setWidth(double width)
{
    if (width == m_width)
        return;
    prepareGeometryChange();
    m_width = width;
    changed();
}

QPolygonF PathShape::shownPoints() const
{
    if (m_points.size() > 1)
        return m_points;
    const double middle = geometry().center().y();
    return QVector<QPointF>{{geometry().left(), middle}, {geometry().right(), middle}};
}

QRectF PathShape::boundingRect() const
{
    const double around = reach() + margin;
    return Shape::boundingRect() | shownPoints().boundingRect().adjusted(-around, -around, around, around);
}

QPainterPath PathShape::shape() const
{
    QPainterPath path;
    path.addPolygon(shownPoints());
    QPainterPathStroker stroker;
    stroker.setWidth(m_width + 2 * pickDistance);
    return stroker.createStroke(path);
}
