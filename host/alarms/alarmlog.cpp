#include "host/alarms/alarmlog.h"

#include "host/runtime/sql_p.h"

#include <QDir>

#include <algorithm>
#include <iterator>

namespace {

using State = ScadaAlarm::State;

QVariant stored(const QDateTime& time)
{
    return time.isValid() ? QVariant(time.toMSecsSinceEpoch()) : QVariant(QVariant::LongLong);
}

QDateTime timeOf(const QVariant& value)
{
    return value.isNull() ? QDateTime() : QDateTime::fromMSecsSinceEpoch(value.toLongLong(), Qt::UTC);
}

/// SQLite's whole numbers have 64 bits, those of states 32.
QVariant valueOf(const QVariant& stored)
{
    if (stored.isNull())
        return {};
    const qlonglong number = stored.toLongLong();
    const bool isState = stored.type() == QVariant::LongLong && static_cast<qint32>(number) == number;
    return isState ? QVariant(static_cast<qint32>(number)) : stored;
}

/// A column of the log, and how a line's part goes into it and comes back.
struct Column
{
    const char* name;
    const char* type;
    QVariant (*get)(const AlarmTransition& line);
    void (*set)(AlarmTransition& line, const QVariant& value);
};

template <auto member>
constexpr Column textColumn(const char* name)
{
    return {name, "TEXT", [](const AlarmTransition& line) { return QVariant(line.*member); },
            [](AlarmTransition& line, const QVariant& value) { line.*member = value.toString(); }};
}

template <auto member>
constexpr Column alarmTextColumn(const char* name)
{
    return {name, "TEXT", [](const AlarmTransition& line) { return QVariant(line.alarm.*member); },
            [](AlarmTransition& line, const QVariant& value) { line.alarm.*member = value.toString(); }};
}

template <auto member>
constexpr Column alarmTimeColumn(const char* name)
{
    return {name, "INTEGER", [](const AlarmTransition& line) { return stored(line.alarm.*member); },
            [](AlarmTransition& line, const QVariant& value) { line.alarm.*member = timeOf(value); }};
}

template <auto member>
constexpr Column alarmNumberColumn(const char* name)
{
    using Number = std::remove_reference_t<decltype(std::declval<ScadaAlarm>().*member)>;
    return {name, "INTEGER",
            [](const AlarmTransition& line) { return QVariant(static_cast<qlonglong>(line.alarm.*member)); },
            [](AlarmTransition& line, const QVariant& value) {
                line.alarm.*member = static_cast<Number>(value.toLongLong());
            }};
}

template <auto member>
constexpr Column alarmValueColumn(const char* name)
{
    // Without a type, so that whole numbers, fractions and texts come back as what they were.
    return {name, "", [](const AlarmTransition& line) { return line.alarm.*member; },
            [](AlarmTransition& line, const QVariant& value) { line.alarm.*member = valueOf(value); }};
}

constexpr Column columns[] = {
    {"kind", "INTEGER NOT NULL", [](const AlarmTransition& line) { return QVariant(static_cast<int>(line.kind)); },
     [](AlarmTransition& line, const QVariant& value) { line.kind = AlarmTransition::Kind(value.toInt()); }},
    {"time_ms", "INTEGER NOT NULL", [](const AlarmTransition& line) { return stored(line.time); },
     [](AlarmTransition& line, const QVariant& value) { line.time = timeOf(value); }},
    alarmNumberColumn<&ScadaAlarm::id>("occurrence"),
    alarmNumberColumn<&ScadaAlarm::objectType>("object_type"),
    alarmNumberColumn<&ScadaAlarm::objectId>("object_id"),
    alarmTextColumn<&ScadaAlarm::tag>("tag"),
    alarmTextColumn<&ScadaAlarm::area>("area"),
    alarmNumberColumn<&ScadaAlarm::severity>("severity"),
    alarmNumberColumn<&ScadaAlarm::state>("state"),
    alarmNumberColumn<&ScadaAlarm::cause>("cause"),
    alarmValueColumn<&ScadaAlarm::value>("value"),
    alarmValueColumn<&ScadaAlarm::limit>("limit_value"),
    alarmTextColumn<&ScadaAlarm::message>("message"),
    alarmTimeColumn<&ScadaAlarm::raised>("raised_ms"),
    alarmTimeColumn<&ScadaAlarm::returned>("returned_ms"),
    alarmTimeColumn<&ScadaAlarm::acknowledged>("acknowledged_ms"),
    alarmTextColumn<&ScadaAlarm::acknowledgedBy>("acknowledged_by"),
    textColumn<&AlarmTransition::user>("user"),
    textColumn<&AlarmTransition::reason>("reason"),
    {"until_ms", "INTEGER", [](const AlarmTransition& line) { return stored(line.until); },
     [](AlarmTransition& line, const QVariant& value) { line.until = timeOf(value); }},
};

/// The columns' names, each behind \p prefix.
QString names(const QString& prefix)
{
    QStringList list;
    for (const Column& column : columns)
        list.append(prefix + QLatin1String(column.name));
    return list.join(QLatin1String(", "));
}

QStringList schema()
{
    QString log = QStringLiteral("CREATE TABLE IF NOT EXISTS alarm_log (line INTEGER PRIMARY KEY AUTOINCREMENT");
    for (const Column& column : columns)
        log += QStringLiteral(", %1 %2").arg(QLatin1String(column.name), QLatin1String(column.type));
    // "INSERT OR REPLACE" takes a line away without asking the trigger of "DELETE".
    const QString refusal =
        QStringLiteral("CREATE TRIGGER IF NOT EXISTS alarm_log_keeps_on_%1 BEFORE %1 ON alarm_log %2"
                       "BEGIN SELECT RAISE(ABORT, 'lines of the alarm log are never changed'); END");
    const QString ofKnownLine = QStringLiteral("WHEN EXISTS (SELECT 1 FROM alarm_log WHERE line = NEW.line) ");
    return {
        log + QLatin1Char(')'),
        QStringLiteral("CREATE INDEX IF NOT EXISTS alarm_log_by_time ON alarm_log (time_ms)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS alarm_log_by_object ON alarm_log (object_type, object_id, time_ms)"),
        refusal.arg(QStringLiteral("update"), QString()),
        refusal.arg(QStringLiteral("delete"), QString()),
        refusal.arg(QStringLiteral("insert"), ofKnownLine),
        QStringLiteral("CREATE TABLE IF NOT EXISTS standing_alarms (occurrence INTEGER PRIMARY KEY, "
                       "line INTEGER NOT NULL, shelf_line INTEGER)"),
        QStringLiteral(
            "CREATE TABLE IF NOT EXISTS excluded_objects (object_type INTEGER NOT NULL, "
            "object_id INTEGER NOT NULL, is_suppressed INTEGER NOT NULL, is_out_of_service INTEGER NOT NULL, "
            "suppression_reason TEXT, service_reason TEXT, service_user TEXT, "
            "PRIMARY KEY (object_type, object_id))"),
    };
}

AlarmTransition lineOf(const QSqlQuery& query, int firstColumn)
{
    AlarmTransition line;
    line.number = query.value(firstColumn).toULongLong();
    int place = firstColumn + 1;
    for (const Column& column : columns)
        column.set(line, query.value(place++));
    return line;
}

tl::expected<void, QString> run(QSqlQuery& query, std::initializer_list<QVariant> values)
{
    int place = 0;
    for (const QVariant& value : values)
        query.bindValue(place++, value);
    if (!query.exec())
        return tl::make_unexpected(reasonOf(query));
    return {};
}

} // namespace

AlarmLog::~AlarmLog()
{
    close();
}

tl::unexpected<QString> AlarmLog::failure(const QString& what) const
{
    return tl::make_unexpected(QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_fileName), what));
}

tl::expected<void, QString> AlarmLog::open(const QString& fileName)
{
    close();
    m_fileName = fileName;
    m_connection = newConnectionName("AlarmLog");
    const auto prepared = prepare();
    if (prepared)
        return {};
    const auto failed = failure(QStringLiteral("can't be used as alarm log: %1").arg(prepared.error()));
    close();
    return failed;
}

tl::expected<void, QString> AlarmLog::openInMemory()
{
    return open(QStringLiteral(":memory:"));
}

tl::expected<void, QString> AlarmLog::prepare()
{
    auto opened = openSqlite(m_connection, m_fileName);
    if (!opened)
        return tl::make_unexpected(opened.error());
    QSqlDatabase& database = *opened;
    for (const char* setting : {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL"}) {
        if (auto set = execute(database, QLatin1String(setting)); !set)
            return set;
    }
    Transaction transaction(database);
    for (const QString& statement : schema()) {
        if (auto made = execute(database, statement); !made)
            return made;
    }
    return transaction.commit();
}

void AlarmLog::close()
{
    if (m_connection.isEmpty())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
    m_fileName.clear();
    m_lines.clear();
    m_exclusions.clear();
}

void AlarmLog::append(const AlarmTransition& transition)
{
    if (isOpen())
        m_lines.push_back(transition);
}

void AlarmLog::appendExclusion(ObjectKey object, const AlarmManager::Exclusion& exclusion)
{
    if (isOpen())
        m_exclusions.emplace_back(object, exclusion);
}

tl::expected<void, QString> AlarmLog::commit(std::size_t mostLines)
{
    if (waiting() == 0)
        return {};
    QSqlDatabase database = QSqlDatabase::database(m_connection);
    Transaction transaction(database);
    if (!transaction.isOpen())
        return failure(QStringLiteral("the alarm log could not be written: %1").arg(reasonOf(database.lastError())));
    const std::size_t count = std::min(mostLines, m_lines.size());
    const auto written =
        writeLines(count).and_then([this] { return writeExclusions(); }).and_then([&] { return transaction.commit(); });
    if (!written)
        return failure(QStringLiteral("the alarm log could not be written: %1").arg(written.error()));
    m_lines.erase(m_lines.begin(), m_lines.begin() + static_cast<std::ptrdiff_t>(count));
    m_exclusions.clear();
    return {};
}

tl::expected<void, QString> AlarmLog::writeLines(std::size_t count)
{
    const QSqlDatabase database = QSqlDatabase::database(m_connection);
    QSqlQuery insert(database);
    QSqlQuery stands(database);
    QSqlQuery ends(database);
    const bool isReady =
        insert.prepare(QStringLiteral("INSERT INTO alarm_log (%1) VALUES (?%2)")
                           .arg(names({}), QStringLiteral(", ?").repeated(int(std::size(columns)) - 1))) &&
        // A shelf lasts while other things happen to the alarm: its line is kept beside the newest.
        stands.prepare(QStringLiteral("INSERT INTO standing_alarms (occurrence, line, shelf_line) VALUES (?, ?, ?) "
                                      "ON CONFLICT (occurrence) DO UPDATE SET line = excluded.line, "
                                      "shelf_line = CASE WHEN ? THEN excluded.shelf_line ELSE shelf_line END")) &&
        ends.prepare(QStringLiteral("DELETE FROM standing_alarms WHERE occurrence = ?"));
    if (!isReady)
        return tl::make_unexpected(reasonOf(database.lastError()));
    for (std::size_t waiting = 0; waiting < count; ++waiting) {
        const AlarmTransition& line = m_lines[waiting];
        int place = 0;
        for (const Column& column : columns)
            insert.bindValue(place++, column.get(line));
        if (!insert.exec())
            return tl::make_unexpected(reasonOf(insert));
        if (line.alarm.id == 0)
            continue;
        const QVariant occurrence = static_cast<qlonglong>(line.alarm.id);
        const QVariant number = insert.lastInsertId();
        const bool isShelved = line.kind == AlarmTransition::Kind::Shelved;
        const bool changesShelf = isShelved || line.kind == AlarmTransition::Kind::Unshelved;
        auto kept = line.alarm.state == State::Normal
                        ? run(ends, {occurrence})
                        : run(stands, {occurrence, number, isShelved ? number : QVariant(QVariant::LongLong),
                                       changesShelf ? 1 : 0});
        if (!kept)
            return kept;
    }
    return {};
}

tl::expected<void, QString> AlarmLog::writeExclusions()
{
    const QSqlDatabase database = QSqlDatabase::database(m_connection);
    for (const auto& [object, exclusion] : m_exclusions) {
        QSqlQuery query(database);
        const QVariant type = static_cast<int>(object.type);
        const bool isExcluded = exclusion.isSuppressed || exclusion.isOutOfService;
        query.prepare(isExcluded
                          ? QStringLiteral("INSERT OR REPLACE INTO excluded_objects VALUES (?, ?, ?, ?, ?, ?, ?)")
                          : QStringLiteral("DELETE FROM excluded_objects WHERE object_type = ? AND object_id = ?"));
        auto done = isExcluded
                        ? run(query, {type, object.id, int(exclusion.isSuppressed), int(exclusion.isOutOfService),
                                      exclusion.suppressionReason, exclusion.serviceReason, exclusion.serviceUser})
                        : run(query, {type, object.id});
        if (!done)
            return done;
    }
    return {};
}

tl::expected<std::vector<AlarmTransition>, QString> AlarmLog::read(const Query& query) const
{
    std::vector<AlarmTransition> lines;
    if (!isOpen())
        return lines;
    QSqlQuery select(QSqlDatabase::database(m_connection));
    select.setForwardOnly(true);
    QString text = QStringLiteral("SELECT line, %1 FROM alarm_log WHERE time_ms BETWEEN ? AND ?").arg(names({}));
    if (query.object.isValid())
        text += QStringLiteral(" AND object_type = ? AND object_id = ?");
    select.prepare(text + QStringLiteral(" ORDER BY time_ms DESC, line DESC LIMIT ?"));
    select.addBindValue(query.fromMs);
    select.addBindValue(query.toMs);
    if (query.object.isValid()) {
        select.addBindValue(static_cast<int>(query.object.type));
        select.addBindValue(query.object.id);
    }
    select.addBindValue(query.most);
    if (!select.exec())
        return failure(QStringLiteral("the alarm log could not be read: %1").arg(reasonOf(select)));
    while (select.next())
        lines.push_back(lineOf(select, 0));
    if (select.lastError().isValid())
        return failure(QStringLiteral("the alarm log could not be read: %1").arg(reasonOf(select)));
    return lines;
}

tl::expected<void, QString> AlarmLog::restore(AlarmManager& manager) const
{
    const QSqlDatabase database = QSqlDatabase::database(m_connection);
    const auto failed = [this](const QSqlQuery& query) {
        return failure(QStringLiteral("the alarms that stood could not be read: %1").arg(reasonOf(query)));
    };
    QSqlQuery last(database);
    if (!last.exec(QStringLiteral("SELECT max(occurrence) FROM alarm_log")) || !last.next())
        return failed(last);
    manager.setLastId(last.value(0).toULongLong());

    QSqlQuery excluded(database);
    if (!excluded.exec(QStringLiteral("SELECT * FROM excluded_objects")))
        return failed(excluded);
    while (excluded.next()) {
        manager.restoreExclusion({Korvane::ScadaObjectType(excluded.value(0).toInt()), excluded.value(1).toInt()},
                                 {excluded.value(2).toBool(), excluded.value(3).toBool(), excluded.value(4).toString(),
                                  excluded.value(5).toString(), excluded.value(6).toString()});
    }

    if (excluded.lastError().isValid())
        return failed(excluded);

    QSqlQuery standing(database);
    standing.setForwardOnly(true);
    if (!standing.exec(QStringLiteral("SELECT shelves.until_ms, shelves.user, shelves.reason, log.line, %1 "
                                      "FROM standing_alarms JOIN alarm_log AS log USING (line) "
                                      "LEFT JOIN alarm_log AS shelves ON shelves.line = shelf_line "
                                      "ORDER BY standing_alarms.occurrence")
                           .arg(names(QStringLiteral("log.")))))
        return failed(standing);
    while (standing.next()) {
        manager.restore(lineOf(standing, 3).alarm,
                        {timeOf(standing.value(0)), standing.value(1).toString(), standing.value(2).toString()});
    }
    if (standing.lastError().isValid())
        return failed(standing);
    return {};
}
