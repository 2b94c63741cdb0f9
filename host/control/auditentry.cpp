#include "host/control/auditentry_p.h"

#include "host/control/operationnames.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

using Outcome = ScadaOperationMessage::Outcome;

QByteArray textOf(const QJsonObject& entry)
{
    return QJsonDocument(entry).toJson(QJsonDocument::Compact); // members in the order of their names
}

QJsonObject objectOf(const QByteArray& entry)
{
    return QJsonDocument::fromJson(entry).object();
}

QDateTime timeOf(const QJsonObject& entry)
{
    const double ms = entry.value(QLatin1String("timeMs")).toDouble();
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::UTC);
}

} // namespace

QByteArray AuditEntry::of(const ScadaOperationMessage& message, const QString& workplace)
{
    QJsonObject entry{
        {QStringLiteral("request"), static_cast<double>(message.requestId)},
        {QStringLiteral("operation"), OperationNames::nameOf(message.operation)},
        {QStringLiteral("outcome"), OperationNames::nameOf(message.outcome)},
        {QStringLiteral("objectType"), static_cast<int>(message.objectType)},
        {QStringLiteral("objectId"), message.objectId},
        {QStringLiteral("tag"), message.tag},
        {QStringLiteral("user"), message.user},
        {QStringLiteral("secondUser"), message.secondUser},
        {QStringLiteral("reason"), message.reason},
        {QStringLiteral("text"), message.text},
        {QStringLiteral("workplace"), workplace},
        {QStringLiteral("timeMs"), static_cast<double>(message.time.toMSecsSinceEpoch())},
    };
    if (message.value.isValid())
        entry.insert(QStringLiteral("value"), QJsonValue::fromVariant(message.value));
    if (message.before.isValid())
        entry.insert(QStringLiteral("before"), QJsonValue::fromVariant(message.before));
    return textOf(entry);
}

QByteArray AuditEntry::of(const AccountEvent& event, const QString& workplace, const QDateTime& time)
{
    QJsonObject entry{
        {QStringLiteral("operation"), AccountEvent::nameOf(event.kind)},
        {QStringLiteral("outcome"), OperationNames::nameOf(event.isDone ? Outcome::Done : Outcome::Refused)},
        {QStringLiteral("account"), event.account},
        {QStringLiteral("user"), event.user},
        {QStringLiteral("text"), event.text},
        {QStringLiteral("workplace"), workplace},
        {QStringLiteral("timeMs"), static_cast<double>(time.toMSecsSinceEpoch())},
    };
    if (event.number != 0)
        entry.insert(QStringLiteral("accountNumber"), event.number);
    if (!event.after.isEmpty())
        entry.insert(QStringLiteral("value"), event.after);
    if (!event.before.isEmpty())
        entry.insert(QStringLiteral("before"), event.before);
    return textOf(entry);
}

std::optional<ScadaOperationMessage> AuditEntry::message(const QByteArray& text)
{
    const QJsonObject entry = objectOf(text);
    const auto member = [&entry](const char* name) { return entry.value(QLatin1String(name)).toString(); };
    ScadaOperationMessage message;
    if (!OperationNames::read(member("operation"), message.operation))
        return std::nullopt;
    OperationNames::read(member("outcome"), message.outcome);
    message.requestId = static_cast<quint32>(entry.value(QLatin1String("request")).toDouble());
    message.objectType = static_cast<Korvane::ScadaObjectType>(entry.value(QLatin1String("objectType")).toInt());
    message.objectId = entry.value(QLatin1String("objectId")).toInt();
    message.tag = member("tag");
    message.user = member("user");
    message.secondUser = member("secondUser");
    message.reason = member("reason");
    message.text = member("text");
    message.value = entry.value(QLatin1String("value")).toVariant();
    message.before = entry.value(QLatin1String("before")).toVariant();
    message.time = timeOf(entry);
    return message;
}

AuditLine AuditEntry::line(const QByteArray& text)
{
    const QJsonObject entry = objectOf(text);
    const auto member = [&entry](const char* name) { return entry.value(QLatin1String(name)); };
    AuditLine line;
    line.time = timeOf(entry);
    line.workplace = member("workplace").toString();
    line.user = member("user").toString();
    line.secondUser = member("secondUser").toString();
    line.operation = member("operation").toString();
    line.subject = member(entry.contains(QLatin1String("account")) ? "account" : "tag").toString();
    line.before = member("before").toVariant();
    line.value = member("value").toVariant();
    line.outcome = member("outcome").toString();
    line.reason = member("reason").toString();
    line.text = member("text").toString();
    return line;
}

QDateTime AuditEntry::time(const QByteArray& entry)
{
    return timeOf(objectOf(entry));
}
