#pragma once

#include "host/shapes/shape.h"
#include "host/shapes/shapeproperty.h"

#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>

/// What runs along points: lines and pipes.
///
/// The points are in the shape's own coordinates and may lie outside its geometry; boundingRect() holds them too. No
/// points at all, as well as a single one, stand for a horizontal line through the middle of the geometry.
class KORVANE_HOST_EXPORT PathShape : public Shape
{
public:
    QRectF boundingRect() const final;
    /// What a click must hit: the line and a little beside it.
    QPainterPath shape() const final;

protected:
    /// \param width the stroke's width
    explicit PathShape(double width) : m_width(width) {}

    /// The properties "Points" and, between \p low and \p high, the stroke's width under a name of the subclass's.
    /// Coordinates beyond 100,000 units become that.
    static ShapeProperty pointsProperty();
    template <int low, int high>
    static ShapeProperty widthProperty(const char* name)
    {
        return {QLatin1String(name), ShapeProperty::Kind::Number, readWidth, writeWidth<low, high>};
    }

    /// The points that are drawn, two at least.
    QPolygonF shownPoints() const;
    double width() const { return m_width; }
    /// How far from the points, beyond the margin, something is drawn.
    virtual double reach() const = 0;

private:
    static QVariant readPoints(const Shape& shape);
    static bool writePoints(Shape& shape, const QVariant& value);
    static QVariant readWidth(const Shape& shape);
    template <int low, int high>
    static bool writeWidth(Shape& shape, const QVariant& value)
    {
        double width = 0;
        if (!ShapeProperties::convert(value, width))
            return false;
        static_cast<PathShape&>(shape).setWidth(std::clamp(width, double(low), double(high)));
        return true;
    }
    void setWidth(double width);

    QPolygonF m_points;
    double m_width;
};
