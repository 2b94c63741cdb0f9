#include "host/runtime/journalrow_p.h"
#include "host/runtime/pointtable_p.h"
#include "host/runtime/sql_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <chrono>
#include <cmath>
#include <iterator>
#include <limits>
#include <type_traits>

#include <tsl/robin_map.h>

namespace {

using Object = RuntimeDatabase::Object;

/// A column, and how an object's part goes into it and comes back.
struct Column
{
    const char* name;
    const char* type;
    QVariant (*get)(const Object& object);
    void (*set)(Object& object, const QVariant& value);
};

/// What a chain of members leads to.
template <auto... members, typename Owner>
constexpr auto& partOf(Owner& object)
{
    return (object.*....*members);
}

template <auto... members>
constexpr Column textColumn(const char* name)
{
    return {name, "TEXT", [](const Object& object) { return QVariant(partOf<members...>(object)); },
            [](Object& object, const QVariant& value) { partOf<members...>(object) = value.toString(); }};
}

/// NaN is stored as NULL.
template <auto... members>
constexpr Column realColumn(const char* name)
{
    return {name, "REAL",
            [](const Object& object) {
                const double number = partOf<members...>(object);
                return std::isnan(number) ? QVariant(QVariant::Double) : QVariant(number);
            },
            [](Object& object, const QVariant& value) {
                partOf<members...>(object) =
                    value.isNull() ? std::numeric_limits<double>::quiet_NaN() : value.toDouble();
            }};
}

/// A number that is 0 in rows of before the column was there.
template <auto... members>
constexpr Column amountColumn(const char* name)
{
    return {name, "REAL", [](const Object& object) { return QVariant(partOf<members...>(object)); },
            [](Object& object, const QVariant& value) { partOf<members...>(object) = value.toDouble(); }};
}

/// A whole number, a flag or a choice's place.
template <auto... members>
constexpr Column numberColumn(const char* name)
{
    return {name, "INTEGER",
            [](const Object& object) { return QVariant(static_cast<int>(partOf<members...>(object))); },
            [](Object& object, const QVariant& value) {
                auto& part = partOf<members...>(object);
                part = static_cast<std::decay_t<decltype(part)>>(value.toInt());
            }};
}

template <auto... members>
constexpr Column durationColumn(const char* name)
{
    return {name, "INTEGER",
            [](const Object& object) { return QVariant(qlonglong(partOf<members...>(object).count())); },
            [](Object& object, const QVariant& value) {
                partOf<members...>(object) = std::chrono::milliseconds(value.toLongLong());
            }};
}

QVariant statesText(const Object& object)
{
    if (object.states.isEmpty())
        return QVariant(QVariant::String);
    const QJsonDocument json(QJsonArray::fromStringList(object.states));
    return QString::fromUtf8(json.toJson(QJsonDocument::Compact));
}

void setStates(Object& object, const QVariant& value)
{
    object.states.clear();
    const QJsonArray states = QJsonDocument::fromJson(value.toString().toUtf8()).array();
    for (const QJsonValue& state : states)
        object.states.append(state.toString());
}

/// The severities by cause, joined by blanks; NULL for an object without alarms.
QVariant severitiesText(const Object& object)
{
    QStringList numbers;
    bool hasAny = false;
    for (const qint8 severity : object.alarm.severities) {
        numbers.append(QString::number(severity));
        hasAny |= severity != AlarmSetting::noAlarm;
    }
    return hasAny ? QVariant(numbers.join(QLatin1Char(' '))) : QVariant(QVariant::String);
}

void setSeverities(Object& object, const QVariant& value)
{
    const QStringList numbers = value.toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int place = 0; place < numbers.size() && place < int(AlarmSetting::causeCount); ++place)
        object.alarm.severities[std::size_t(place)] = static_cast<qint8>(numbers[place].toInt());
}

/// A role that can't be read is the highest: nobody below may send commands then.
void setRole(Object& object, const QVariant& value)
{
    if (!value.isNull())
        object.control.role = accountRoleOf(value.toString()).value_or(AccountRole::Administrator);
}

constexpr Column columns[] = {
    {"kind", "INTEGER NOT NULL", [](const Object& object) { return QVariant(static_cast<int>(object.type)); },
     [](Object& object, const QVariant& value) { object.type = Korvane::ScadaObjectType(value.toInt()); }},
    numberColumn<&Object::id>("id"),
    textColumn<&Object::name>("name"),
    textColumn<&Object::station>("station"),
    textColumn<&Object::description>("description"),
    textColumn<&Object::displayName>("display_name"),
    realColumn<&Object::lowLow>("low_low"),
    realColumn<&Object::low>("low"),
    realColumn<&Object::high>("high"),
    realColumn<&Object::highHigh>("high_high"),
    realColumn<&Object::hysteresis>("hysteresis"),
    textColumn<&Object::unit>("unit"),
    numberColumn<&Object::decimals>("decimals"),
    realColumn<&Object::scaleLow>("scale_low"),
    realColumn<&Object::scaleHigh>("scale_high"),
    {"states", "TEXT", statesText, setStates},
    numberColumn<&Object::abnormalState>("abnormal_state"),
    durationColumn<&Object::staleAfter>("stale_after_ms"),
    textColumn<&Object::address>("address"),
    textColumn<&Object::area>("area"),
    {"severities", "TEXT", severitiesText, setSeverities},
    realColumn<&Object::alarm, &AlarmSetting::rateLimit>("rate_limit"),
    durationColumn<&Object::alarm, &AlarmSetting::onDelay>("on_delay_ms"),
    durationColumn<&Object::alarm, &AlarmSetting::offDelay>("off_delay_ms"),
    numberColumn<&Object::alarm, &AlarmSetting::isLatching>("latching"),
    textColumn<&Object::alarm, &AlarmSetting::message>("alarm_message"),
    textColumn<&Object::parent>("parent"),
    numberColumn<&Object::control, &ControlSetting::kind>("control"),
    {"control_role", "TEXT", [](const Object& object) { return QVariant(accountRoleName(object.control.role)); },
     setRole},
    numberColumn<&Object::control, &ControlSetting::confirmation>("control_confirm"),
    numberColumn<&Object::control, &ControlSetting::isReasonNeeded>("control_reason"),
    realColumn<&Object::control, &ControlSetting::low>("control_low"),
    realColumn<&Object::control, &ControlSetting::high>("control_high"),
    amountColumn<&Object::control, &ControlSetting::step>("control_step"),
    textColumn<&Object::control, &ControlSetting::feedback>("feedback"),
    amountColumn<&Object::control, &ControlSetting::tolerance>("feedback_tolerance"),
    durationColumn<&Object::control, &ControlSetting::timeout>("feedback_timeout_ms"),
    textColumn<&Object::control, &ControlSetting::interlock>("interlock"),
};

/// The columns' names, each behind \p prefix.
QString names(const char* prefix)
{
    QStringList list{QLatin1String(prefix) + QLatin1String("place")};
    for (const Column& column : columns)
        list.append(QLatin1String(prefix) + QLatin1String(column.name));
    return list.join(QLatin1String(", "));
}

/// Inserts a row, or replaces one that is not the same.
QString insertion()
{
    QStringList changes{QStringLiteral("place = excluded.place")};
    for (const Column& column : columns)
        changes.append(QStringLiteral("%1 = excluded.%1").arg(QLatin1String(column.name)));
    return QStringLiteral("INSERT INTO points (object, %1) VALUES (?%2) ON CONFLICT (object) DO UPDATE SET %3 "
                          "WHERE (%4) IS NOT (%5)")
        .arg(names(""), QStringLiteral(", ?").repeated(int(std::size(columns)) + 1), changes.join(QLatin1String(", ")),
             names("points."), names("excluded."));
}

} // namespace

tl::expected<void, QString> createPointTable(QSqlDatabase& database)
{
    QString text = QStringLiteral("CREATE TABLE points (object INTEGER PRIMARY KEY, place INTEGER NOT NULL");
    for (const Column& column : columns)
        text += QStringLiteral(", %1 %2").arg(QLatin1String(column.name), QLatin1String(column.type));
    return execute(database, text + QLatin1Char(')'));
}

tl::expected<void, QString> completePointTable(QSqlDatabase& database)
{
    for (const Column& column : columns) {
        const auto count =
            ask(database, QStringLiteral("SELECT count(*) FROM pragma_table_info('points') WHERE name = '%1'")
                              .arg(QLatin1String(column.name)));
        if (!count)
            return tl::make_unexpected(count.error());
        if (count->toInt() > 0)
            continue;
        if (auto added = execute(database, QStringLiteral("ALTER TABLE points ADD COLUMN %1 %2")
                                               .arg(QLatin1String(column.name), QLatin1String(column.type)));
            !added)
            return added;
    }
    return {};
}

tl::expected<void, QString> writePoints(QSqlDatabase& database, const std::vector<Object>& points)
{
    tsl::robin_map<qint64, bool> leaving;
    QSqlQuery known(database);
    known.setForwardOnly(true);
    if (!known.exec(QStringLiteral("SELECT object FROM points")))
        return tl::make_unexpected(reasonOf(known));
    while (known.next())
        leaving[known.value(0).toLongLong()] = true;

    QSqlQuery insert(database);
    if (!insert.prepare(insertion()))
        return tl::make_unexpected(reasonOf(insert));
    qlonglong place = 0;
    for (const Object& object : points) {
        const auto key = qint64(storedKey({object.type, object.id}));
        leaving.erase(key);
        int bound = 0;
        insert.bindValue(bound++, key);
        insert.bindValue(bound++, place++);
        for (const Column& column : columns)
            insert.bindValue(bound++, column.get(object));
        if (!insert.exec())
            return tl::make_unexpected(reasonOf(insert));
    }

    QSqlQuery remove(database);
    if (!remove.prepare(QStringLiteral("DELETE FROM points WHERE object = ?")))
        return tl::make_unexpected(reasonOf(remove));
    for (const auto& [key, isLeaving] : leaving) {
        remove.bindValue(0, key);
        if (!remove.exec())
            return tl::make_unexpected(reasonOf(remove));
    }
    return {};
}

tl::expected<std::vector<Object>, QString> readPoints(const QSqlDatabase& database)
{
    std::vector<Object> points;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT %1 FROM points ORDER BY place").arg(names(""))))
        return tl::make_unexpected(reasonOf(query));
    while (query.next()) {
        Object object;
        int column = 1; // behind the place
        for (const Column& each : columns)
            each.set(object, query.value(column++));
        points.push_back(std::move(object));
    }
    if (query.lastError().isValid())
        return tl::make_unexpected(reasonOf(query));
    return points;
}
