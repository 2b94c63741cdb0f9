#include "host/summary/summarycolumns.h"

#include "host/alarmview/alarmcells_p.h"
#include "host/inspection/markstext.h"
#include "host/summary/pointmarks_p.h"

#include <QCoreApplication>
#include <QDateTime>

#include <limits>

namespace {

using DataCode::DataField;
using Korvane::ScadaObjectType;

enum class Kind { Text, Value, Time, Marks, Limit, Statistic, Changes, Duration };

struct ColumnInfo
{
    const char* title;
    Kind kind;
    DataField field; ///< of limits and statistics
};

constexpr ColumnInfo columns[SummaryColumns::ColumnCount] = {
    {QT_TRANSLATE_NOOP("SummaryColumns", "Name"), Kind::Text, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Description"), Kind::Text, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Station"), Kind::Text, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Area"), Kind::Text, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Value"), Kind::Value, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Unit"), Kind::Text, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Time"), Kind::Time, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Marks"), Kind::Marks, DataField::Unknown},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Low low"), Kind::Limit, DataField::LowLowLimit},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Low"), Kind::Limit, DataField::LowLimit},
    {QT_TRANSLATE_NOOP("SummaryColumns", "High"), Kind::Limit, DataField::HighLimit},
    {QT_TRANSLATE_NOOP("SummaryColumns", "High high"), Kind::Limit, DataField::HighHighLimit},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Min. today"), Kind::Statistic, DataField::TodayMinimum},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Max. today"), Kind::Statistic, DataField::TodayMaximum},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Mean today"), Kind::Statistic, DataField::TodayMean},
    {QT_TRANSLATE_NOOP("SummaryColumns", "Changes today"), Kind::Changes, DataField::TodayOnCount},
    {QT_TRANSLATE_NOOP("SummaryColumns", "On today"), Kind::Duration, DataField::TodayOnDuration},
};

bool isColumn(int column)
{
    return column >= 0 && column < SummaryColumns::ColumnCount;
}

/// The value as a number; invalid before the first sample.
QVariant presentValue(const RuntimeDatabase& database, ObjectKey point)
{
    const QuorixData record = database.presentRecord(point);
    const QuorixValue* value = record.GetValue("value");
    return value ? value->toVariant() : QVariant();
}

QDateTime presentTime(const RuntimeDatabase& database, ObjectKey point)
{
    const QuorixData record = database.presentRecord(point);
    const QuorixValue* time = record.GetValue("time");
    return time ? time->toVariant().toDateTime() : QDateTime();
}

/// What a limit or a statistic is.
QVariant figure(const RuntimeDatabase& database, ObjectKey point, int column)
{
    const ColumnInfo& info = columns[column];
    QVariant known = database.fieldValue(point, info.field);
    if (info.kind != Kind::Changes || !known.isValid())
        return known;
    return known.toInt() + database.fieldValue(point, DataField::TodayOffCount).toInt();
}

QString durationText(const QVariant& seconds)
{
    const auto whole = static_cast<qint64>(seconds.toDouble());
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString figureText(const RuntimeDatabase::Object& object, Kind kind, const QVariant& known)
{
    if (!known.isValid())
        return {};
    if (kind == Kind::Changes)
        return known.toString();
    if (kind == Kind::Duration)
        return durationText(known);
    return object.decimals < 0 ? AlarmCells::text(known.toDouble())
                               : QString::number(known.toDouble(), 'f', object.decimals);
}

DataField valueField(ObjectKey point)
{
    return point.type == ScadaObjectType::DigitalPoint ? DataField::StatusName : DataField::ValueWithUnit;
}

} // namespace

QString SummaryColumns::title(int column)
{
    return isColumn(column) ? QCoreApplication::translate("SummaryColumns", columns[column].title) : QString();
}

bool SummaryColumns::isText(int column)
{
    return isColumn(column) && columns[column].kind == Kind::Text;
}

bool SummaryColumns::isLive(int column)
{
    return isColumn(column) && !isText(column); // limits too: operators set them
}

bool SummaryColumns::isNumber(int column)
{
    return column == Value || column >= LowLow;
}

QString SummaryColumns::constantText(const RuntimeDatabase::Object& object, int column)
{
    switch (column) {
    case Name:
        return object.name;
    case Description:
        return object.description;
    case Station:
        return object.station;
    case Area:
        return object.area;
    case Unit:
        return object.unit;
    default:
        return {};
    }
}

double SummaryColumns::number(const RuntimeDatabase& database, ObjectKey point, int column)
{
    constexpr double nothing = -std::numeric_limits<double>::infinity();
    if (!isColumn(column) || isText(column))
        return nothing;
    if (column == Marks)
        return PointMarks(database.presentRecord(point)).weight();
    if (column == Time) {
        const QDateTime time = presentTime(database, point);
        return time.isValid() ? static_cast<double>(time.toMSecsSinceEpoch()) : nothing;
    }
    const QVariant known = column == Value ? presentValue(database, point) : figure(database, point, column);
    return known.isValid() ? known.toDouble() : nothing;
}

QVariant SummaryColumns::value(const RuntimeDatabase& database, ObjectKey point, int column)
{
    const RuntimeDatabase::Object* object = database.object(point);
    if (!object || !isColumn(column))
        return {};
    switch (columns[column].kind) {
    case Kind::Text:
        return constantText(*object, column);
    case Kind::Value:
        return point.type == ScadaObjectType::DigitalPoint ? database.fieldValue(point, DataField::StatusName)
                                                           : presentValue(database, point);
    case Kind::Time: {
        const QDateTime time = presentTime(database, point);
        return time.isValid() ? QVariant(time) : QVariant();
    }
    case Kind::Marks:
        return marksText(database.presentRecord(point));
    default:
        return figure(database, point, column);
    }
}

QString SummaryColumns::text(const RuntimeDatabase& database, ObjectKey point, int column, const QTimeZone& zone)
{
    const RuntimeDatabase::Object* object = database.object(point);
    if (!object || !isColumn(column))
        return {};
    switch (columns[column].kind) {
    case Kind::Text:
        return constantText(*object, column).simplified();
    case Kind::Value:
        return database.fieldValue(point, valueField(point)).toString().simplified();
    case Kind::Time: {
        const QDateTime time = presentTime(database, point);
        return time.isValid() ? time.toTimeZone(zone).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")) : QString();
    }
    case Kind::Marks:
        return marksText(database.presentRecord(point));
    default:
        return figureText(*object, columns[column].kind, figure(database, point, column));
    }
}
