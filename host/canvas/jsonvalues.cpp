#include "host/canvas/jsonvalues_p.h"

#include "host/canvas/jsontext_p.h"

#include <QSizeF>

#include <array>
#include <cmath>

namespace {

using rapidjson::Value;

template <std::size_t count>
std::optional<std::array<double, count>> numbers(const Value& stored)
{
    if (!stored.IsArray() || stored.Size() != count)
        return {};
    std::array<double, count> read{};
    for (std::size_t place = 0; place < count; ++place) {
        const Value& number = stored[static_cast<rapidjson::SizeType>(place)];
        if (!number.IsNumber() || !std::isfinite(number.GetDouble()))
            return {};
        read[place] = number.GetDouble();
    }
    return read;
}

QVariant readTexts(const Value& stored)
{
    if (!stored.IsArray())
        return {};
    QStringList texts;
    for (const Value& text : stored.GetArray()) {
        if (!text.IsString())
            return {};
        texts.append(JsonText::stringOf(text));
    }
    return texts;
}

QVariant readPoints(const Value& stored)
{
    if (!stored.IsArray())
        return {};
    QPolygonF points;
    for (const Value& point : stored.GetArray()) {
        const auto pair = numbers<2>(point);
        if (!pair)
            return {};
        points.append(QPointF((*pair)[0], (*pair)[1]));
    }
    return points;
}

QVariant readColor(const Value& stored)
{
    QColor color;
    if (!stored.IsString() || !ShapeProperties::convert(QVariant(JsonText::stringOf(stored)), color))
        return {};
    return color;
}

} // namespace

QVariant JsonValues::read(const Value& stored, ShapeProperty::Kind kind)
{
    using Kind = ShapeProperty::Kind;
    switch (kind) {
    case Kind::Number:
        return stored.IsNumber() ? QVariant(stored.GetDouble()) : QVariant();
    case Kind::Integer:
        return stored.IsInt() ? QVariant(stored.GetInt()) : QVariant();
    case Kind::Boolean:
        return stored.IsBool() ? QVariant(stored.GetBool()) : QVariant();
    case Kind::Text:
        return stored.IsString() ? QVariant(JsonText::stringOf(stored)) : QVariant();
    case Kind::TextList:
        return readTexts(stored);
    case Kind::Color:
        return readColor(stored);
    case Kind::Points:
        return readPoints(stored);
    case Kind::Point:
        if (const auto pair = numbers<2>(stored))
            return QPointF((*pair)[0], (*pair)[1]);
        return {};
    case Kind::Size:
        if (const auto pair = numbers<2>(stored))
            return QSizeF((*pair)[0], (*pair)[1]);
        return {};
    case Kind::Rect:
        if (const auto four = numbers<4>(stored))
            return QRectF((*four)[0], (*four)[1], (*four)[2], (*four)[3]);
        return {};
    }
    return {};
}

QVariant JsonValues::readAny(const Value& stored)
{
    if (stored.IsBool())
        return stored.GetBool();
    if (stored.IsInt())
        return stored.GetInt();
    if (stored.IsNumber())
        return stored.GetDouble();
    if (stored.IsString())
        return JsonText::stringOf(stored);
    return readTexts(stored);
}

QVariantMap JsonValues::readMap(const Value& object)
{
    QVariantMap values;
    for (const auto& member : object.GetObject())
        values.insert(JsonText::stringOf(member.name), readAny(member.value));
    return values;
}

void JsonValues::write(Writer& writer, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

void JsonValues::write(Writer& writer, double number)
{
    constexpr double exact = 9007199254740992.0; // 2^53: beyond it not every whole number is a double
    if (number == std::floor(number) && std::abs(number) < exact)
        writer.Int64(static_cast<int64_t>(number));
    else
        writer.Double(number);
}

void JsonValues::write(Writer& writer, const QVariant& value)
{
    const auto list = [&writer](std::initializer_list<double> all) {
        writer.StartArray();
        for (const double number : all)
            write(writer, number);
        writer.EndArray();
    };
    switch (value.userType()) {
    case QMetaType::Bool:
        writer.Bool(value.toBool());
        break;
    case QMetaType::Int:
        writer.Int(value.toInt());
        break;
    case QMetaType::Double:
        write(writer, value.toDouble());
        break;
    case QMetaType::QColor: {
        const QColor color = value.value<QColor>();
        write(writer,
              !color.isValid() ? QString() : color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb));
        break;
    }
    case QMetaType::QPointF:
        list({value.toPointF().x(), value.toPointF().y()});
        break;
    case QMetaType::QSizeF:
        list({value.toSizeF().width(), value.toSizeF().height()});
        break;
    case QMetaType::QRectF:
        list({value.toRectF().x(), value.toRectF().y(), value.toRectF().width(), value.toRectF().height()});
        break;
    case QMetaType::QPolygonF:
        writer.StartArray();
        for (const QPointF& point : value.value<QPolygonF>())
            list({point.x(), point.y()});
        writer.EndArray();
        break;
    case QMetaType::QStringList:
        writer.StartArray();
        for (const QString& text : value.toStringList())
            write(writer, text);
        writer.EndArray();
        break;
    default:
        write(writer, value.toString());
    }
}

std::optional<Korvane::OpType> JsonValues::operatorOf(const QString& text)
{
    static constexpr const char* texts[] = {"==", "<", "<=", ">", ">=", "!="};
    for (int number = 0; number < static_cast<int>(std::size(texts)); ++number) {
        if (text == QLatin1String(texts[number]))
            return static_cast<Korvane::OpType>(number);
    }
    return {};
}

Korvane::LogicType JsonValues::linkOf(const QString& text)
{
    if (text == QLatin1String("&&"))
        return Korvane::LogicType::And;
    return text == QLatin1String("||") ? Korvane::LogicType::Or : Korvane::LogicType::None;
}
