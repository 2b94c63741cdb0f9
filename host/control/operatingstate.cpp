#include "host/control/operatingstate.h"

#include "host/runtime/sql_p.h"

#include <QDir>

OperatingState::~OperatingState()
{
    close();
}

tl::expected<void, QString> OperatingState::open(const QString& fileName)
{
    close();
    m_connection = newConnectionName("operating");
    m_fileName = QDir::toNativeSeparators(fileName);
    tl::expected<void, QString> done;
    if (const auto opened = openSqlite(m_connection, fileName); !opened)
        done = tl::make_unexpected(opened.error());
    else
        done = prepare().and_then([this] { return load(); });
    if (done)
        return {};
    close();
    return tl::make_unexpected(
        QStringLiteral("%1: what operators changed can't be kept: %2").arg(m_fileName, done.error()));
}

tl::expected<void, QString> OperatingState::openInMemory()
{
    return open(QStringLiteral(":memory:"));
}

void OperatingState::close()
{
    m_entries.clear();
    if (m_connection.isEmpty())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
}

tl::expected<void, QString> OperatingState::prepare()
{
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    for (const char* statement :
         {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL",
          "CREATE TABLE IF NOT EXISTS operating_state (object_type INTEGER NOT NULL, object_id INTEGER NOT NULL, "
          "kind INTEGER NOT NULL, value TEXT NOT NULL, user TEXT NOT NULL, reason TEXT NOT NULL, "
          "time_ms INTEGER NOT NULL, PRIMARY KEY (object_type, object_id, kind))"}) {
        if (auto executed = execute(database, QLatin1String(statement)); !executed)
            return executed;
    }
    return {};
}

tl::expected<void, QString> OperatingState::load()
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    if (!query.exec(
            QStringLiteral("SELECT object_type, object_id, kind, value, user, reason, time_ms FROM operating_state")))
        return tl::make_unexpected(reasonOf(query));
    while (query.next()) {
        const ObjectKey object{static_cast<Korvane::ScadaObjectType>(query.value(0).toInt()), query.value(1).toInt()};
        m_entries[object][static_cast<Kind>(query.value(2).toInt())] = {
            query.value(3).toString(), query.value(4).toString(), query.value(5).toString(),
            QDateTime::fromMSecsSinceEpoch(query.value(6).toLongLong(), Qt::UTC)};
    }
    return {};
}

tl::expected<void, QString> OperatingState::set(ObjectKey object, Kind kind, const Entry& entry)
{
    if (m_connection.isEmpty())
        return tl::make_unexpected(QStringLiteral("what operators change is kept nowhere: no file is open"));
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO operating_state VALUES (?, ?, ?, ?, ?, ?, ?)"));
    query.addBindValue(static_cast<int>(object.type));
    query.addBindValue(object.id);
    query.addBindValue(static_cast<int>(kind));
    for (const QString& text : {entry.value, entry.user, entry.reason})
        query.addBindValue(text.isNull() ? QStringLiteral("") : text);
    query.addBindValue(entry.time.toMSecsSinceEpoch());
    if (!query.exec())
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(m_fileName, reasonOf(query)));
    m_entries[object][kind] = entry;
    return {};
}

tl::expected<void, QString> OperatingState::remove(ObjectKey object, Kind first, Kind last)
{
    const auto found = m_entries.find(object);
    if (found == m_entries.end())
        return {};
    std::map<Kind, Entry>& entries = *found;
    const auto begin = entries.lower_bound(first);
    const auto end = entries.upper_bound(last);
    if (begin == end)
        return {};
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.prepare(
        QStringLiteral("DELETE FROM operating_state WHERE object_type = ? AND object_id = ? AND kind BETWEEN ? AND ?"));
    query.addBindValue(static_cast<int>(object.type));
    query.addBindValue(object.id);
    query.addBindValue(static_cast<int>(first));
    query.addBindValue(static_cast<int>(last));
    if (!query.exec())
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(m_fileName, reasonOf(query)));
    entries.erase(begin, end);
    if (entries.empty())
        m_entries.erase(found);
    return {};
}

std::optional<OperatingState::Entry> OperatingState::find(ObjectKey object, Kind kind) const
{
    const auto entries = m_entries.constFind(object);
    if (entries == m_entries.constEnd())
        return std::nullopt;
    const auto found = entries->find(kind);
    return found == entries->end() ? std::nullopt : std::optional(found->second);
}

QList<ObjectKey> OperatingState::objects(Kind kind) const
{
    QList<ObjectKey> found;
    for (auto entries = m_entries.constBegin(); entries != m_entries.constEnd(); ++entries) {
        if (entries->count(kind) > 0)
            found.append(entries.key());
    }
    return found;
}
