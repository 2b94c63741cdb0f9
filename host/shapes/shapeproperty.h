#pragma once

#include "host/shapes/shape.h"

#include <QColor>
#include <QLatin1String>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <optional>
#include <type_traits>

/// One named property of a class of shapes: how it is read, set, stored and edited.
struct ShapeProperty
{
    enum class Kind { Number, Integer, Boolean, Text, TextList, Color, Rect, Point, Size, Points };

    QLatin1String name;
    Kind kind = Kind::Text;
    QVariant (*read)(const Shape& shape) = nullptr;
    /// False, with nothing changed, for a value that the property can't hold.
    bool (*write)(Shape& shape, const QVariant& value) = nullptr;
    /// Whether page files hold it. What is derived from others, or only ever set by live data, is not stored.
    bool isStored = true;
};

namespace ShapeProperties {

template <typename Value>
constexpr ShapeProperty::Kind kindOf()
{
    if constexpr (std::is_same_v<Value, bool>)
        return ShapeProperty::Kind::Boolean;
    else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>)
        return ShapeProperty::Kind::Integer;
    else if constexpr (std::is_floating_point_v<Value> || std::is_same_v<Value, std::optional<double>>)
        return ShapeProperty::Kind::Number;
    else if constexpr (std::is_same_v<Value, QColor>)
        return ShapeProperty::Kind::Color;
    else if constexpr (std::is_same_v<Value, QRectF>)
        return ShapeProperty::Kind::Rect;
    else if constexpr (std::is_same_v<Value, QPointF>)
        return ShapeProperty::Kind::Point;
    else if constexpr (std::is_same_v<Value, QPolygonF>)
        return ShapeProperty::Kind::Points;
    else if constexpr (std::is_same_v<Value, QStringList>)
        return ShapeProperty::Kind::TextList;
    else
        return ShapeProperty::Kind::Text;
}

/// The value as another type; false when it is none of it. Texts that are whole numbers count as numbers; NaN and
/// infinities count as values that a number can't hold, since nothing could be drawn from them.
inline bool convert(const QVariant& value, double& out)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return false;
    out = number;
    return true;
}
/// A number or, as an invalid value, none.
inline bool convert(const QVariant& value, std::optional<double>& out)
{
    double number = 0;
    const bool isNumber = convert(value, number);
    if (!isNumber && value.isValid())
        return false;
    out = isNumber ? std::optional(number) : std::nullopt;
    return true;
}
inline bool convert(const QVariant& value, int& out)
{
    double number = 0;
    if (!convert(value, number) || std::abs(number) > 2147483647.0)
        return false;
    out = static_cast<int>(std::lround(number));
    return true;
}
inline bool convert(const QVariant& value, bool& out)
{
    if (value.userType() == QMetaType::Bool) {
        out = value.toBool();
        return true;
    }
    double number = 0;
    if (!convert(value, number))
        return false;
    out = number != 0;
    return true;
}
inline bool convert(const QVariant& value, QString& out)
{
    if (!value.canConvert<QString>())
        return false;
    out = value.toString();
    return true;
}
inline bool convert(const QVariant& value, QStringList& out)
{
    if (value.userType() == QMetaType::QVariantList) { // as JSON gives it
        const QVariantList list = value.toList();
        const bool isText = std::all_of(list.begin(), list.end(),
                                        [](const QVariant& each) { return each.userType() == QMetaType::QString; });
        if (isText)
            out = value.toStringList();
        return isText;
    }
    if (value.userType() != QMetaType::QStringList)
        return false;
    out = value.toStringList();
    return true;
}
/// A colour or its name as QColor reads it ("#rrggbb", "#aarrggbb", "steelblue"); "" is no colour: nothing is drawn.
inline bool convert(const QVariant& value, QColor& out)
{
    if (value.userType() == QMetaType::QColor) {
        out = value.value<QColor>();
        return true;
    }
    if (value.userType() != QMetaType::QString)
        return false;
    const QString text = value.toString();
    if (!text.isEmpty() && !QColor::isValidColor(text))
        return false;
    out = text.isEmpty() ? QColor() : QColor(text);
    return true;
}
inline bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}
inline bool convert(const QVariant& value, QRectF& out)
{
    const QRectF rect = value.toRectF();
    if (!value.canConvert<QRectF>() || !isFinite(rect.topLeft()) || !isFinite(rect.bottomRight()))
        return false;
    out = rect;
    return true;
}
inline bool convert(const QVariant& value, QPointF& out)
{
    const QPointF point = value.toPointF();
    if (!value.canConvert<QPointF>() || !isFinite(point))
        return false;
    out = point;
    return true;
}
inline bool convert(const QVariant& value, QSizeF& out)
{
    const QSizeF size = value.toSizeF();
    if (!value.canConvert<QSizeF>() || !std::isfinite(size.width()) || !std::isfinite(size.height()))
        return false;
    out = size;
    return true;
}
inline bool convert(const QVariant& value, QPolygonF& out)
{
    if (value.userType() != QMetaType::QPolygonF)
        return false;
    const auto points = value.value<QPolygonF>();
    if (!std::all_of(points.begin(), points.end(), isFinite))
        return false;
    out = points;
    return true;
}

template <typename Value>
QVariant toVariant(const Value& value)
{
    return QVariant::fromValue(value);
}
inline QVariant toVariant(const std::optional<double>& value)
{
    return value ? QVariant(*value) : QVariant();
}

template <auto member>
struct MemberOf;
template <typename ShapeType, typename Value, Value ShapeType::*member>
struct MemberOf<member>
{
    static QVariant read(const Shape& shape) { return toVariant(static_cast<const ShapeType&>(shape).*member); }
    static bool write(Shape& shape, const QVariant& value)
    {
        Value converted{};
        return convert(value, converted) && assign(shape, converted);
    }
    template <int low, int high>
    static bool writeBetween(Shape& shape, const QVariant& value)
    {
        Value converted{};
        return convert(value, converted) &&
               assign(shape, std::clamp(converted, static_cast<Value>(low), static_cast<Value>(high)));
    }
    static constexpr ShapeProperty::Kind kind = kindOf<Value>();

private:
    static bool assign(Shape& shape, const Value& value)
    {
        Value& held = static_cast<ShapeType&>(shape).*member;
        if (held == value)
            return true;
        held = value;
        shape.changed();
        return true;
    }
};

/// A property that is a member of the shape; setting it to another value has the shape drawn anew.
template <auto member>
constexpr ShapeProperty of(const char* name, bool isStored = true)
{
    using Member = MemberOf<member>;
    return {QLatin1String(name), Member::kind, &Member::read, &Member::write, isStored};
}

/// The same for a number that is kept between \p low and \p high: what is set beyond them becomes the nearer one.
template <auto member, int low, int high>
constexpr ShapeProperty of(const char* name, bool isStored = true)
{
    using Member = MemberOf<member>;
    return {QLatin1String(name), Member::kind, &Member::read, &Member::template writeBetween<low, high>, isStored};
}

} // namespace ShapeProperties
