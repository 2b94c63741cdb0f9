#include "host/inspection/pointreport.h"

#include "host/inspection/markstext.h"
#include "host/runtime/runtimedatabase.h"

#include <QDateTime>

#include <algorithm>
#include <vector>

namespace {

using DataCode::DataField;

QString number(const QVariant& value, int decimals)
{
    if (!value.isValid())
        return QStringLiteral("-");
    const double real = value.toDouble();
    return decimals < 0 ? QString::number(real, 'g', 6) : QString::number(real, 'f', decimals);
}

QString duration(const QVariant& seconds)
{
    if (!seconds.isValid())
        return QStringLiteral("-");
    const auto whole = static_cast<qint64>(seconds.toDouble());
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString statistics(const RuntimeDatabase& database, const RuntimeDatabase::Object& object, ObjectKey key)
{
    const auto field = [&](DataField code) { return database.fieldValue(key, code); };
    if (object.type == Korvane::ScadaObjectType::DigitalPoint) {
        return QStringLiteral("on %1x %2, off %3x %4")
            .arg(field(DataField::TodayOnCount).toInt())
            .arg(duration(field(DataField::TodayOnDuration)))
            .arg(field(DataField::TodayOffCount).toInt())
            .arg(duration(field(DataField::TodayOffDuration)));
    }
    return QStringLiteral("min %1, mean %2, max %3")
        .arg(number(field(DataField::TodayMinimum), object.decimals),
             number(field(DataField::TodayMean), object.decimals),
             number(field(DataField::TodayMaximum), object.decimals));
}

} // namespace

QStringList PointReport::header()
{
    return {QStringLiteral("name"),    QStringLiteral("value"), QStringLiteral("unit"),
            QStringLiteral("quality"), QStringLiteral("time"),  QStringLiteral("today")};
}

QStringList PointReport::row(const RuntimeDatabase& database, ObjectKey point)
{
    const RuntimeDatabase::Object* object = database.object(point);
    if (!object)
        return {};
    const QuorixData record = database.presentRecord(point);
    const QuorixValue* value = record.GetValue("value");
    const QuorixValue* time = record.GetValue("time");
    QString shown = QStringLiteral("-");
    if (value && object->type == Korvane::ScadaObjectType::DigitalPoint)
        shown = database.fieldValue(point, DataField::StatusName).toString();
    else if (value)
        shown = number(value->toVariant(), object->decimals);
    return {object->name,
            shown,
            object->unit,
            marksText(record),
            time ? time->toVariant().toDateTime().toString(Qt::ISODateWithMs) : QStringLiteral("-"),
            statistics(database, *object, point)};
}

QString PointReport::text(const RuntimeDatabase& database)
{
    std::vector<QStringList> rows{header()};
    for (const ObjectKey point : database.objects(Korvane::ScadaObjectType::Point))
        rows.push_back(row(database, point));
    std::vector<int> widths(static_cast<std::size_t>(header().size()), 0);
    for (const QStringList& cells : rows) {
        for (int column = 0; column < cells.size(); ++column) {
            int& width = widths[static_cast<std::size_t>(column)];
            width = std::max(width, cells.at(column).size());
        }
    }
    QString text;
    for (const QStringList& cells : rows) {
        QString line;
        for (int column = 0; column < cells.size(); ++column)
            line += cells.at(column).leftJustified(widths[static_cast<std::size_t>(column)] + 2);
        text += line.trimmed() + QLatin1Char('\n');
    }
    return text;
}
