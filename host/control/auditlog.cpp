#include "host/control/auditlog.h"

#include "host/control/operationnames.h"
#include "host/runtime/sql_p.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

using Operation = ScadaOperationMessage::Operation;
using Outcome = ScadaOperationMessage::Outcome;

constexpr const char* noHash = ""; // in front of the first line

// Members in the order of their names, so that the same line gives the same text.
QByteArray entryOf(const ScadaOperationMessage& message, const QString& workplace)
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
    return QJsonDocument(entry).toJson(QJsonDocument::Compact);
}

ScadaOperationMessage messageOf(const QByteArray& text)
{
    const QJsonObject entry = QJsonDocument::fromJson(text).object();
    const auto textOf = [&entry](const char* name) { return entry.value(QLatin1String(name)).toString(); };
    ScadaOperationMessage message;
    message.requestId = static_cast<quint32>(entry.value(QLatin1String("request")).toDouble());
    OperationNames::read(textOf("operation"), message.operation);
    OperationNames::read(textOf("outcome"), message.outcome);
    message.objectType = static_cast<Korvane::ScadaObjectType>(entry.value(QLatin1String("objectType")).toInt());
    message.objectId = entry.value(QLatin1String("objectId")).toInt();
    message.tag = textOf("tag");
    message.user = textOf("user");
    message.secondUser = textOf("secondUser");
    message.reason = textOf("reason");
    message.text = textOf("text");
    message.value = entry.value(QLatin1String("value")).toVariant();
    message.before = entry.value(QLatin1String("before")).toVariant();
    message.time =
        QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(entry.value(QLatin1String("timeMs")).toDouble()), Qt::UTC);
    return message;
}

QByteArray hashOf(const QByteArray& before, qint64 line, const QByteArray& entry)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(before);
    hash.addData(QByteArray::number(line));
    hash.addData(entry);
    return hash.result().toHex();
}

QStringList schema()
{
    const QString refusal =
        QStringLiteral("CREATE TRIGGER IF NOT EXISTS audit_log_keeps_on_%1 BEFORE %1 ON audit_log "
                       "BEGIN SELECT RAISE(ABORT, 'lines of the audit log are never changed'); END");
    return {
        QStringLiteral("CREATE TABLE IF NOT EXISTS audit_log (line INTEGER PRIMARY KEY, time_ms INTEGER NOT NULL, "
                       "entry TEXT NOT NULL, hash TEXT NOT NULL)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS audit_log_by_time ON audit_log (time_ms)"),
        // What was last, apart from the lines: what was cut off would not be missed otherwise.
        QStringLiteral("CREATE TABLE IF NOT EXISTS audit_end (place INTEGER PRIMARY KEY CHECK (place = 1), "
                       "line INTEGER NOT NULL, hash TEXT NOT NULL)"),
        QStringLiteral("INSERT OR IGNORE INTO audit_end VALUES (1, 0, '')"),
        refusal.arg(QStringLiteral("update")),
        refusal.arg(QStringLiteral("delete")),
        // A line that replaces another one is no change and no deletion to SQLite.
        QStringLiteral("CREATE TRIGGER IF NOT EXISTS audit_log_keeps_on_insert BEFORE INSERT ON audit_log "
                       "WHEN EXISTS (SELECT 1 FROM audit_log WHERE line = NEW.line) "
                       "BEGIN SELECT RAISE(ABORT, 'lines of the audit log are never changed'); END"),
    };
}

} // namespace

AuditLog::~AuditLog()
{
    close();
}

tl::unexpected<QString> AuditLog::failure(const QString& what) const
{
    return tl::make_unexpected(QStringLiteral("%1: the audit log %2").arg(m_fileName, what));
}

tl::expected<void, QString> AuditLog::open(const QString& fileName)
{
    close();
    m_connection = newConnectionName("audit");
    m_fileName = QDir::toNativeSeparators(fileName);
    // No copy of the connection may live on when it is closed.
    const auto prepared =
        openSqlite(m_connection, fileName).and_then([this](const QSqlDatabase&) { return prepare(); });
    if (prepared)
        return {};
    const auto refused = failure(QStringLiteral("can't be used: %1").arg(prepared.error()));
    close();
    return refused;
}

tl::expected<void, QString> AuditLog::openInMemory()
{
    return open(QStringLiteral(":memory:"));
}

void AuditLog::close()
{
    if (!isOpen())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
}

tl::expected<void, QString> AuditLog::prepare()
{
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    QStringList statements = {QStringLiteral("PRAGMA journal_mode = WAL"), QStringLiteral("PRAGMA synchronous = FULL")};
    for (const QString& statement : statements + schema()) {
        if (auto done = execute(database, statement); !done)
            return done;
    }
    return {};
}

tl::expected<void, QString> AuditLog::append(const ScadaOperationMessage& message, const QString& workplace)
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    Transaction transaction(database);
    // Another program may have written since: its line is the one before. Writing first waits for it; a reader that would
    // write is turned away at once.
    if (const auto locked = execute(database, QStringLiteral("UPDATE audit_end SET line = line")); !locked)
        return failure(QStringLiteral("can't be written: %1").arg(locked.error()));
    QSqlQuery end(database);
    if (!transaction.isOpen() || !end.exec(QStringLiteral("SELECT line, hash FROM audit_end")) || !end.next())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(end)));
    const qint64 line = end.value(0).toLongLong() + 1;
    const QByteArray entry = entryOf(message, workplace);
    const QByteArray hash = hashOf(end.value(1).toByteArray(), line, entry);
    end.finish();

    QSqlQuery insert(database);
    insert.prepare(QStringLiteral("INSERT INTO audit_log (line, time_ms, entry, hash) VALUES (?, ?, ?, ?)"));
    insert.addBindValue(line);
    insert.addBindValue(message.time.toMSecsSinceEpoch());
    insert.addBindValue(QString::fromUtf8(entry));
    insert.addBindValue(QString::fromLatin1(hash));
    QSqlQuery update(database);
    update.prepare(QStringLiteral("UPDATE audit_end SET line = ?, hash = ?"));
    update.addBindValue(line);
    update.addBindValue(QString::fromLatin1(hash));
    if (!insert.exec())
        return failure(QStringLiteral("can't be written: %1").arg(reasonOf(insert)));
    if (!update.exec())
        return failure(QStringLiteral("can't be written: %1").arg(reasonOf(update)));
    if (const auto committed = transaction.commit(); !committed)
        return failure(QStringLiteral("can't be written: %1").arg(committed.error()));
    return {};
}

tl::expected<QList<ScadaOperationMessage>, QString> AuditLog::read(const QDateTime& from, const QDateTime& to,
                                                                   int most) const
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT entry FROM audit_log WHERE time_ms BETWEEN ? AND ? "
                                 "ORDER BY line DESC LIMIT ?"));
    query.addBindValue(from.toMSecsSinceEpoch());
    query.addBindValue(to.toMSecsSinceEpoch());
    query.addBindValue(std::max(most, 0));
    if (!query.exec())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(query)));
    QList<ScadaOperationMessage> messages;
    while (query.next())
        messages.append(messageOf(query.value(0).toByteArray()));
    return messages;
}

tl::expected<qint64, QString> AuditLog::verify() const
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    const QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT line, time_ms, entry, hash FROM audit_log ORDER BY line")))
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(query)));
    qint64 line = 0;
    QByteArray hash = noHash;
    while (query.next()) {
        ++line;
        const QByteArray entry = query.value(2).toByteArray();
        const QByteArray expected = hashOf(hash, line, entry);
        if (query.value(0).toLongLong() != line)
            return failure(QStringLiteral("lacks line %1").arg(line));
        if (query.value(3).toByteArray() != expected ||
            query.value(1).toLongLong() != messageOf(entry).time.toMSecsSinceEpoch())
            return failure(QStringLiteral("was changed at or before line %1").arg(line));
        hash = expected;
    }
    QSqlQuery end(database);
    if (!end.exec(QStringLiteral("SELECT line, hash FROM audit_end")) || !end.next())
        return failure(QStringLiteral("lacks its end: %1").arg(reasonOf(end)));
    if (end.value(0).toLongLong() != line || end.value(1).toByteArray() != hash)
        return failure(QStringLiteral("ends with line %1 and should with %2").arg(line).arg(end.value(0).toLongLong()));
    return line;
}
