#include "host/runtime/pointstatistics.h"

#include "host/runtime/bytes_p.h"

#include <QDateTime>

#include <iterator>
#include <utility>

namespace {

using DataCode::DataField;

constexpr double msOfHour = 3600000;
constexpr quint8 layout = 1;

QVariant utc(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

} // namespace

// clang-format off
const PointStatistics::FieldOfPeriod PointStatistics::fields[] = {
    {DataField::TodayOnCount, Day, Quantity::OnCount},
    {DataField::TodayOffCount, Day, Quantity::OffCount},
    {DataField::TodayOnDuration, Day, Quantity::OnDuration},
    {DataField::TodayOffDuration, Day, Quantity::OffDuration},
    {DataField::TotalOnCount, Total, Quantity::OnCount},
    {DataField::TotalOffCount, Total, Quantity::OffCount},
    {DataField::TotalOnDuration, Total, Quantity::OnDuration},
    {DataField::TotalOffDuration, Total, Quantity::OffDuration},
    {DataField::MonthOnCount, Month, Quantity::OnCount},
    {DataField::MonthOffCount, Month, Quantity::OffCount},
    {DataField::MonthOnDuration, Month, Quantity::OnDuration},
    {DataField::MonthOffDuration, Month, Quantity::OffDuration},
    {DataField::HourMaximum, Hour, Quantity::Maximum},
    {DataField::HourMinimum, Hour, Quantity::Minimum},
    {DataField::HourMean, Hour, Quantity::Mean},
    {DataField::HourAccumulated, Hour, Quantity::Accumulated},
    {DataField::HourMinimumTime, Hour, Quantity::MinimumTime},
    {DataField::HourMaximumTime, Hour, Quantity::MaximumTime},
    {DataField::TodayMaximum, Day, Quantity::Maximum},
    {DataField::TodayMinimum, Day, Quantity::Minimum},
    {DataField::TodayMean, Day, Quantity::Mean},
    {DataField::TodayAccumulated, Day, Quantity::Accumulated},
    {DataField::TodayMinimumTime, Day, Quantity::MinimumTime},
    {DataField::TodayMaximumTime, Day, Quantity::MaximumTime},
    {DataField::MonthMaximum, Month, Quantity::Maximum},
    {DataField::MonthMinimum, Month, Quantity::Minimum},
    {DataField::MonthMean, Month, Quantity::Mean},
    {DataField::MonthAccumulated, Month, Quantity::Accumulated},
    {DataField::MonthMinimumTime, Month, Quantity::MinimumTime},
    {DataField::MonthMaximumTime, Month, Quantity::MaximumTime},
    {DataField::TotalMaximum, Total, Quantity::Maximum},
    {DataField::TotalMinimum, Total, Quantity::Minimum},
    {DataField::TotalMean, Total, Quantity::Mean},
    {DataField::TotalAccumulated, Total, Quantity::Accumulated},
    {DataField::TotalMinimumTime, Total, Quantity::MinimumTime},
    {DataField::TotalMaximumTime, Total, Quantity::MaximumTime},
    {DataField::HourOnCount, Hour, Quantity::OnCount},
    {DataField::HourOffCount, Hour, Quantity::OffCount},
    {DataField::HourOnDuration, Hour, Quantity::OnDuration},
    {DataField::HourOffDuration, Hour, Quantity::OffDuration},
    {DataField::WeekMaximum, Week, Quantity::Maximum},
    {DataField::WeekMinimum, Week, Quantity::Minimum},
    {DataField::WeekMean, Week, Quantity::Mean},
    {DataField::WeekAccumulated, Week, Quantity::Accumulated},
    {DataField::WeekMinimumTime, Week, Quantity::MinimumTime},
    {DataField::WeekMaximumTime, Week, Quantity::MaximumTime},
    {DataField::YearMaximum, Year, Quantity::Maximum},
    {DataField::YearMinimum, Year, Quantity::Minimum},
    {DataField::YearMean, Year, Quantity::Mean},
    {DataField::YearAccumulated, Year, Quantity::Accumulated},
    {DataField::YearMinimumTime, Year, Quantity::MinimumTime},
    {DataField::YearMaximumTime, Year, Quantity::MaximumTime},
    {DataField::YearOnCount, Year, Quantity::OnCount},
    {DataField::YearOffCount, Year, Quantity::OffCount},
    {DataField::YearOnDuration, Year, Quantity::OnDuration},
    {DataField::YearOffDuration, Year, Quantity::OffDuration},
    {DataField::PastMaximum, Past, Quantity::Maximum},
    {DataField::PastMinimum, Past, Quantity::Minimum},
    {DataField::PastMean, Past, Quantity::Mean},
    {DataField::PastAccumulated, Past, Quantity::Accumulated},
    {DataField::PastMoment, Past, Quantity::Moment},
};
// clang-format on

PointStatistics::PointStatistics(Kind kind, qint64 staleAfterMs)
    : m_staleAfterMs(staleAfterMs > longestStaleAfterMs ? 0 : staleAfterMs), m_kind(kind)
{
}

void PointStatistics::Sums::fold(const Sums& hour)
{
    // An unknown hour has infinite extremes, which extend nothing.
    if (hour.minimum < minimum) {
        minimum = hour.minimum;
        minimumTime = hour.minimumTime;
    }
    if (hour.maximum > maximum) {
        maximum = hour.maximum;
        maximumTime = hour.maximumTime;
    }
    integral += hour.integral;
    knownMs += hour.knownMs;
    onCount += hour.onCount;
    offCount += hour.offCount;
}

/// Counts the value before over the part of a period that lies behind the closed hour.
void PointStatistics::addHeld(Sums& sums, qint64 fromMs, qint64 toMs) const
{
    const qint64 end = std::min(toMs, m_knownUntil);
    if (fromMs >= end)
        return;
    sums.extend(m_value, fromMs);
    sums.add(weight(), end - fromMs);
}

void PointStatistics::changeHour(qint64 timeMs, const StatisticsCalendar& calendar)
{
    countTo(m_hourEnd);
    const qint64 closed = m_hourEnd;
    const Sums closedHour = std::exchange(m_sums[Hour], {});
    const StatisticsCalendar::Hour hour = calendar.hour(timeMs);
    for (const Period period : {Day, Week, Month, Year, Total}) {
        Sums& sums = m_sums[period];
        const qint64 start = period == Total ? never : hour.periodStart[period];
        if (start >= closed && period != Total)
            sums = {};
        else
            sums.fold(closedHour);
        // The hours in between, of which no sample told; they may be many years.
        addHeld(sums, std::max(start, closed), hour.start);
    }
    if (hour.start == closed) {
        m_sums[Past] = closedHour;
    } else {
        m_sums[Past] = {};
        if (m_knownUntil > closed)
            addHeld(m_sums[Past], calendar.hourStart(hour.start - 1), hour.start);
    }
    m_moment = m_knownUntil > hour.start ? m_value : unknown;
    addHeld(m_sums[Hour], hour.start, timeMs);
    m_hourStart = hour.start;
    m_hourEnd = hour.end;
    m_counted = timeMs;
}

void PointStatistics::setFailed(bool failed, qint64 timeMs, const StatisticsCalendar& calendar)
{
    if (failed == m_isFailed)
        return;
    m_isFailed = failed;
    const qint64 at = std::max(timeMs, m_counted);
    if (failed) {
        // Nothing is counted ahead: a sample that was under way may still come with an earlier time.
        m_knownUntil = std::min(m_knownUntil, at);
        return;
    }
    advance(at, calendar);
    if (std::isfinite(m_value) && knownUntil() > at)
        begin(m_value, at);
}

void PointStatistics::interrupt(qint64 timeMs, const StatisticsCalendar& calendar)
{
    if (!std::isfinite(m_value))
        return;
    const qint64 at = std::max(timeMs, m_counted);
    advance(at, calendar);
    end(at);
}

QVariant PointStatistics::fieldValue(DataField field, qint64 nowMs, const StatisticsCalendar& calendar) const
{
    const auto* found = std::lower_bound(std::begin(fields), std::end(fields), field,
                                         [](const FieldOfPeriod& entry, DataField code) { return entry.field < code; });
    if (found == std::end(fields) || found->field != field || m_newest == never)
        return {};
    PointStatistics atNow(*this);
    atNow.advance(std::max(nowMs, m_counted), calendar);
    // At the very start of an hour the value before counts, although none of the hour has passed.
    if (atNow.m_knownUntil > atNow.m_counted)
        atNow.m_sums[Hour].extend(m_value, atNow.m_counted);
    for (const Period period : {Day, Week, Month, Year, Total})
        atNow.m_sums[period].fold(atNow.m_sums[Hour]);
    return atNow.reading(found->period, found->quantity);
}

/// A figure of a period that has the running hour in it already.
QVariant PointStatistics::reading(Period period, Quantity quantity) const
{
    const Sums& sums = m_sums[period];
    if (quantity == Quantity::Moment) {
        if (!std::isfinite(m_moment))
            return {};
        return m_kind == Kind::Analog ? QVariant(m_moment) : QVariant(static_cast<qint32>(m_moment));
    }
    const bool isOfAnalog = quantity < Quantity::OnCount;
    if (isOfAnalog != (m_kind == Kind::Analog) || !sums.isKnown())
        return {};
    switch (quantity) {
    case Quantity::Maximum:
        return sums.maximum;
    case Quantity::Minimum:
        return sums.minimum;
    case Quantity::Mean:
        return sums.knownMs > 0 ? QVariant(sums.integral / double(sums.knownMs)) : QVariant();
    case Quantity::Accumulated:
        return sums.integral / msOfHour;
    case Quantity::MinimumTime:
        return utc(sums.minimumTime);
    case Quantity::MaximumTime:
        return utc(sums.maximumTime);
    case Quantity::OnCount:
        return sums.onCount;
    case Quantity::OffCount:
        return sums.offCount;
    case Quantity::OnDuration:
        return sums.integral / 1000;
    case Quantity::OffDuration:
        return (double(sums.knownMs) - sums.integral) / 1000;
    case Quantity::Moment:
        break;
    }
    return {};
}

QByteArray PointStatistics::toBytes() const
{
    QByteArray bytes;
    bytes.reserve(int(sizeof(PointStatistics)));
    ByteWriter writer(bytes);
    quint8 known = 0;
    for (std::size_t period = 0; period < periodCount; ++period)
        known = quint8(known | (m_sums[period].isKnown() ? 1U << period : 0U));
    writer.put(layout).put(quint8(m_kind)).put(quint8(m_isFailed)).put(m_state).put(known);
    writer.put(m_newest).put(m_counted).put(m_knownUntil).put(m_hourStart).put(m_hourEnd).put(m_value).put(m_moment);
    for (const Sums& sums : m_sums) {
        if (!sums.isKnown())
            continue;
        writer.put(sums.integral).put(sums.knownMs);
        if (m_kind == Kind::Analog)
            writer.put(sums.minimum).put(sums.maximum).put(sums.minimumTime).put(sums.maximumTime);
        else
            writer.put(sums.onCount).put(sums.offCount);
    }
    return bytes;
}

bool PointStatistics::fromBytes(const QByteArray& bytes)
{
    ByteReader reader(bytes);
    if (reader.take<quint8>() != layout || reader.take<quint8>() != quint8(m_kind))
        return false;
    PointStatistics read(m_kind, m_staleAfterMs);
    read.m_isFailed = reader.take<quint8>() != 0;
    read.m_state = reader.take<qint8>();
    const auto known = reader.take<quint8>();
    for (qint64* time : {&read.m_newest, &read.m_counted, &read.m_knownUntil, &read.m_hourStart, &read.m_hourEnd})
        *time = reader.take<qint64>();
    read.m_value = reader.take<double>();
    read.m_moment = reader.take<double>();
    for (std::size_t period = 0; period < periodCount; ++period) {
        Sums& sums = read.m_sums[period];
        if ((known & (1U << period)) == 0)
            continue;
        sums.integral = reader.take<double>();
        sums.knownMs = reader.take<qint64>();
        if (m_kind == Kind::Analog) {
            sums.minimum = reader.take<double>();
            sums.maximum = reader.take<double>();
            sums.minimumTime = reader.take<qint64>();
            sums.maximumTime = reader.take<qint64>();
        } else {
            sums.minimum = sums.maximum = 0;
            sums.onCount = reader.take<qint32>();
            sums.offCount = reader.take<qint32>();
        }
    }
    if (!reader.isAtEnd())
        return false;
    *this = read;
    return true;
}
