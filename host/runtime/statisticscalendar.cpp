#include "host/runtime/statisticscalendar.h"

#include <QDate>
#include <QDateTime>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr qint64 msOfHour = 3600000;
constexpr qint64 msOfDay = 24 * msOfHour;
constexpr qint64 julianDayOf1970 = 2440588;
constexpr qint64 daysIntoWeekOf1970 = 3; // 1970-01-01 was a Thursday

qint64 roundedDown(qint64 value, qint64 step)
{
    const qint64 rest = value % step;
    return value - rest - (rest < 0 ? step : 0);
}

/// Where the period of a clock that shows \p localMs begins, by the same clock.
qint64 localPeriodStart(StatisticsCalendar::Period period, qint64 localMs)
{
    const qint64 midnight = roundedDown(localMs, msOfDay);
    if (period == StatisticsCalendar::Day)
        return midnight;
    if (period == StatisticsCalendar::Week) {
        const qint64 shift = daysIntoWeekOf1970 * msOfDay;
        return roundedDown(midnight + shift, 7 * msOfDay) - shift;
    }
    const QDate date = QDate::fromJulianDay(midnight / msOfDay + julianDayOf1970);
    const QDate first(date.year(), period == StatisticsCalendar::Month ? date.month() : 1, 1);
    return (first.toJulianDay() - julianDayOf1970) * msOfDay;
}

} // namespace

StatisticsCalendar::StatisticsCalendar(const QTimeZone& zone) : m_zone(zone)
{
}

void StatisticsCalendar::changeHour(qint64 timeMs) const
{
    std::swap(m_hour, m_otherHour);
    if (timeMs < m_hour.start || timeMs >= m_hour.end)
        m_hour = makeHour(timeMs);
}

StatisticsCalendar::Hour StatisticsCalendar::makeHour(qint64 timeMs) const
{
    const Span span = spanAt(timeMs);
    const qint64 fullHour = roundedDown(timeMs + span.offsetMs, msOfHour) - span.offsetMs;
    Hour made;
    made.start = std::max(fullHour, span.start);
    made.end = std::min(fullHour + msOfHour, span.end);
    for (const Period period : {Day, Week, Month, Year})
        made.periodStart[period] = findPeriodStart(period, timeMs);
    return made;
}

qint64 StatisticsCalendar::findPeriodStart(Period period, qint64 timeMs) const
{
    Span span = spanAt(timeMs);
    const qint64 localStart = localPeriodStart(period, timeMs + span.offsetMs);
    while (localStart - span.offsetMs <= span.start) {
        const Span before = spanAt(span.start - 1);
        if (localPeriodStart(period, span.start - 1 + before.offsetMs) != localStart)
            return span.start;
        span = before;
    }
    return localStart - span.offsetMs;
}

StatisticsCalendar::Span StatisticsCalendar::spanAt(qint64 timeMs) const
{
    auto place = std::upper_bound(m_spans.begin(), m_spans.end(), timeMs,
                                  [](qint64 time, const Span& span) { return time < span.end; });
    if (place == m_spans.end() || timeMs < place->start)
        place = m_spans.insert(place, makeSpan(timeMs));
    return *place;
}

StatisticsCalendar::Span StatisticsCalendar::makeSpan(qint64 timeMs) const
{
    Span span{std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(), offsetAt(timeMs)};
    if (!m_zone.hasTransitions())
        return span;
    // A transition may change the name of the time alone; the clock runs on then.
    const auto at = [](const QTimeZone::OffsetData& transition) { return transition.atUtc.toMSecsSinceEpoch(); };
    auto transition = m_zone.previousTransition(QDateTime::fromMSecsSinceEpoch(timeMs + 1, Qt::UTC));
    while (transition.atUtc.isValid() && offsetAt(at(transition) - 1) == span.offsetMs)
        transition = m_zone.previousTransition(transition.atUtc);
    if (transition.atUtc.isValid())
        span.start = at(transition);
    transition = m_zone.nextTransition(QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC));
    while (transition.atUtc.isValid() && offsetAt(at(transition)) == span.offsetMs)
        transition = m_zone.nextTransition(transition.atUtc);
    if (transition.atUtc.isValid())
        span.end = at(transition);
    return span;
}

qint64 StatisticsCalendar::offsetAt(qint64 timeMs) const
{
    return qint64(1000) * m_zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC));
}
