#include "host/canvas/storedevents_p.h"

#include "host/canvas/jsontext_p.h"
#include "platform/data/scadaeventactionstream.h"

#include <QDataStream>
#include <QStringList>

#include <optional>

namespace {

using rapidjson::Value;
using Data = tl::expected<QByteArray, QString>;

QByteArray dataOf(const QString& script)
{
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out << script;
    return data;
}

// The script in a script action's data, where its lines as UTF-8 say the same.
std::optional<QString> scriptIn(const QByteArray& data)
{
    QString script;
    QDataStream in(data);
    in >> script;
    const bool isWhole = in.status() == QDataStream::Ok && dataOf(script) == data;
    const QByteArray utf8 = script.toUtf8();
    return isWhole && QString::fromUtf8(utf8.constData(), utf8.size()) == script ? std::optional(script) : std::nullopt;
}

Data readScript(const Value& stored)
{
    if (stored.IsString())
        return dataOf(JsonText::stringOf(stored));
    QStringList lines;
    for (rapidjson::SizeType place = 0; stored.IsArray() && place < stored.Size(); ++place) {
        if (!stored[place].IsString())
            return tl::make_unexpected(QStringLiteral("\"script\" has a line that is no text"));
        lines.append(JsonText::stringOf(stored[place]));
    }
    if (!stored.IsArray())
        return tl::make_unexpected(QStringLiteral("\"script\" is neither lines nor a text"));
    return dataOf(lines.join(QLatin1Char('\n')));
}

Data readData(const Value& stored)
{
    if (const Value* script = JsonText::member(stored, "script"))
        return readScript(*script);
    const Value* data = JsonText::member(stored, "data");
    if (!data)
        return tl::make_unexpected(QStringLiteral("has neither \"script\" nor \"data\""));
    const QByteArray base64 = data->IsString() ? JsonText::stringOf(*data).toUtf8() : QByteArray("!");
    const auto decoded = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return tl::make_unexpected(QStringLiteral("\"data\" is no base64"));
    return decoded.decoded;
}

tl::expected<std::unique_ptr<ScadaEventActionInterface>, QString> readAction(const Value& stored)
{
    const Value* trigger = JsonText::member(stored, "trigger");
    const Value* type = JsonText::member(stored, "type");
    if (!trigger || !trigger->IsInt())
        return tl::make_unexpected(QStringLiteral("\"trigger\" is no whole number"));
    const int number = type && type->IsInt() ? type->GetInt() : -1;
    auto action = EventActions::make(number);
    if (!action)
        return tl::make_unexpected(QStringLiteral("unknown type of event action"));
    const Data data = readData(stored);
    if (!data)
        return tl::make_unexpected(data.error());
    ScadaEventActionStream stream;
    stream.setTrigger(static_cast<Korvane::TriggerType>(trigger->GetInt()));
    stream.setType(number);
    stream.setData(*data);
    action->fromStream(stream);
    ScadaEventActionStream written;
    action->toStream(written);
    if (written.data() != stream.data())
        return tl::make_unexpected(QStringLiteral("\"data\" is not what the action writes"));
    return action;
}

} // namespace

StoredEvents::Read StoredEvents::read(const Value& stored)
{
    auto action = readAction(stored);
    if (!action)
        return {{nullptr, JsonText::textOf(stored)},
                action.error() + QStringLiteral(": the event action does nothing")};
    return {{std::move(*action), JsonText::otherMembers(stored, {"trigger", "type", "script", "data"})}, {}};
}

void StoredEvents::writeMembers(JsonValues::Writer& writer, const ScadaEventActionInterface& action)
{
    ScadaEventActionStream stream;
    action.toStream(stream);
    writer.Key("trigger");
    writer.Int(static_cast<int>(stream.trigger()));
    writer.Key("type");
    writer.Int(stream.type());
    const std::optional<QString> script = scriptIn(stream.data());
    if (!script) {
        const QByteArray base64 = stream.data().toBase64();
        writer.Key("data");
        writer.String(base64.constData(), static_cast<rapidjson::SizeType>(base64.size()));
        return;
    }
    // One line of the file for each line of the script.
    writer.SetFormatOptions(rapidjson::kFormatDefault);
    writer.Key("script");
    writer.StartArray();
    const QStringList lines = script->split(QLatin1Char('\n'));
    for (const QString& line : lines)
        JsonValues::write(writer, line);
    writer.EndArray();
    writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
}
