#include "scada/records/jsonreading_p.h"

#include "platform/utility/jsontexts.h"

#include <algorithm>
#include <limits>

namespace {

constexpr unsigned parseFlags =
    rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag; // no stack, however deep

} // namespace

rapidjson::Document JsonReading::parseObject(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    rapidjson::Document document;
    document.Parse<parseFlags>(utf8.constData());
    if (document.HasParseError() || !document.IsObject())
        document.SetObject();
    return document;
}

qint32 JsonReading::integerOf(const rapidjson::Value& value)
{
    using Limits = std::numeric_limits<qint32>;
    if (value.IsUint64())
        return static_cast<qint32>(static_cast<quint32>(value.GetUint64()));
    if (value.IsInt64())
        return static_cast<qint32>(static_cast<quint32>(value.GetInt64()));
    if (!value.IsDouble())
        return 0;
    return static_cast<qint32>(std::clamp<double>(value.GetDouble(), Limits::min(), Limits::max()));
}

double JsonReading::numberOf(const rapidjson::Value& value)
{
    return value.IsNumber() ? value.GetDouble() : 0;
}

qint8 JsonReading::lowByteOf(const rapidjson::Value& value)
{
    return static_cast<qint8>(static_cast<quint8>(integerOf(value)));
}

qint32 JsonReading::numberOfName(const rapidjson::Value& name)
{
    return Korvane::getJsonString(name).toInt();
}
