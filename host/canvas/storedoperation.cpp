#include "host/canvas/storedoperation_p.h"

#include "host/canvas/jsontext_p.h"

#include <QKeySequence>

namespace {

using JsonValues::Writer;
using rapidjson::Value;

constexpr JsonText::Names::value_type knownMembers[] = {"kind", "tag", "value", "input", "key"};

void writeText(Writer& writer, const char* key, const QString& text)
{
    writer.Key(key);
    JsonValues::write(writer, text);
}

tl::unexpected<QString> refused(const char* reason)
{
    return tl::make_unexpected(QString(QLatin1String(reason)));
}

} // namespace

tl::expected<Operation, QString> StoredOperation::read(const Value& stored)
{
    if (!stored.IsObject())
        return refused("is no object");
    Operation operation;
    const Value* kind = JsonText::member(stored, "kind");
    const auto known = kind && kind->IsString() ? Operation::kindOf(JsonText::stringOf(*kind)) : std::nullopt;
    if (!known)
        return refused("has no \"kind\" that is known");
    operation.kind = *known;
    const Value* tag = JsonText::member(stored, "tag");
    if (!tag || !tag->IsString() || tag->GetStringLength() == 0)
        return refused("has no \"tag\"");
    operation.tag = JsonText::stringOf(*tag);
    if (const Value* value = JsonText::member(stored, "value")) {
        if (!value->IsNumber())
            return refused("has a \"value\" that is no number");
        operation.value = value->GetDouble();
    }
    if (const Value* input = JsonText::member(stored, "input")) {
        if (!input->IsObject())
            return refused("has an \"input\" that is no object");
        operation.input.fromStream(QString::fromUtf8(JsonText::textOf(*input)));
    }
    if (const Value* key = JsonText::member(stored, "key")) {
        const QString text = key->IsString() ? JsonText::stringOf(*key) : QString();
        if (QKeySequence(text, QKeySequence::PortableText).toString(QKeySequence::PortableText).isEmpty())
            return refused("has a \"key\" that is none");
        operation.key = text;
    }
    operation.unknown = JsonText::otherMembers(stored, {std::begin(knownMembers), std::end(knownMembers)});
    return operation;
}

void StoredOperation::write(Writer& writer, const Operation& operation)
{
    writeText(writer, "kind", Operation::kindName(operation.kind));
    writeText(writer, "tag", operation.tag);
    if (operation.value) {
        writer.Key("value");
        JsonValues::write(writer, QVariant(*operation.value));
    }
    if (!operation.input.isEmpty()) {
        writer.Key("input");
        // The record's own text holds one of the two only; both are kept here.
        InputInfoParam number;
        number.numberInputParam = operation.input.numberInputParam;
        InputInfoParam choice;
        choice.enumInputParam = operation.input.enumInputParam;
        writer.StartObject();
        for (const InputInfoParam& part : {number, choice}) {
            const auto text = JsonText::parse(part.toStream().toUtf8());
            for (const auto& member : text->root().GetObject()) {
                writer.Key(member.name.GetString(), member.name.GetStringLength());
                member.value.Accept(writer);
            }
        }
        writer.EndObject();
    }
    if (!operation.key.isEmpty())
        writeText(writer, "key", operation.key);
}

tl::expected<PageAccess, QString> StoredOperation::readAccess(const Value& stored)
{
    const Value* isProtected = JsonText::member(stored, "protected");
    const Value* users = JsonText::member(stored, "users");
    if (!isProtected || !isProtected->IsBool() || (users && !users->IsArray()) ||
        !JsonText::otherMembers(stored, {"protected", "users"}).isEmpty())
        return refused("\"access\" is not what says who may open the page");
    PageAccess access;
    access.isProtected = isProtected->GetBool();
    for (rapidjson::SizeType place = 0; users && place < users->Size(); ++place) {
        const Value& user = (*users)[place];
        if (!user.IsInt() || user.GetInt() <= 0)
            return refused("\"access\" names a user by something else than the account's number");
        access.users.append(user.GetInt());
    }
    return access;
}

void StoredOperation::write(Writer& writer, const PageAccess& access)
{
    writer.StartObject();
    writer.Key("protected");
    writer.Bool(access.isProtected);
    writer.Key("users");
    writer.StartArray();
    for (const int user : access.users)
        writer.Int(user);
    writer.EndArray();
    writer.EndObject();
}
