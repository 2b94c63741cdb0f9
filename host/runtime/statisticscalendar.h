#pragma once

#include "host/hostexport.h"

#include <QTimeZone>
#include <QtGlobal>

#include <array>
#include <vector>

/// The hours, days, weeks, months and years by the clock of one time zone.
///
/// An hour ends when the local clock shows a full hour and when it is put forward or back, so an hour may be shorter
/// than sixty minutes, never longer. A day ends at the end of the hour behind which the local date is another one;
/// weeks (from Monday), months and years likewise. This holds where the clock skips midnight, too; where it is put back
/// across midnight, the day before begins a second time. All times are milliseconds since 1970-01-01 UTC, of the years
/// 1 to 9999.
///
/// Hours once asked for are kept: times within the same hour cost two comparisons. So copies may be used by several
/// threads, but not one object.
class KORVANE_HOST_EXPORT StatisticsCalendar
{
public:
    /// The periods that consist of hours.
    enum Period { Day, Week, Month, Year };
    static constexpr std::size_t periodCount = 4;

    struct Hour
    {
        qint64 start = 0;                                 ///< belongs to the hour
        qint64 end = 0;                                   ///< does not
        std::array<qint64, periodCount> periodStart = {}; ///< beginning of the day, ... that the hour belongs to
    };

    /// An invalid zone stands for UTC.
    explicit StatisticsCalendar(const QTimeZone& zone = QTimeZone::systemTimeZone());

    QTimeZone timeZone() const { return m_zone; }

    /// The hour that \p timeMs lies in. The reference holds until the next call of any function.
    const Hour& hour(qint64 timeMs) const
    {
        if (timeMs < m_hour.start || timeMs >= m_hour.end)
            changeHour(timeMs);
        return m_hour;
    }
    qint64 hourStart(qint64 timeMs) const { return hour(timeMs).start; }
    qint64 hourEnd(qint64 timeMs) const { return hour(timeMs).end; }

    /// Beginning of the \p period that \p timeMs lies in.
    qint64 periodStart(Period period, qint64 timeMs) const { return hour(timeMs).periodStart[period]; }

    /// Whether a \p period ends together with the hour that ends at \p hourEnd.
    bool endsWithHour(Period period, qint64 hourEnd) const { return periodStart(period, hourEnd) == hourEnd; }

private:
    /// Time over which the local clock runs without being put forward or back.
    struct Span
    {
        qint64 start;
        qint64 end;
        qint64 offsetMs; ///< local time less UTC
    };

    void changeHour(qint64 timeMs) const;
    Hour makeHour(qint64 timeMs) const;
    qint64 findPeriodStart(Period period, qint64 timeMs) const;
    Span spanAt(qint64 timeMs) const;
    Span makeSpan(qint64 timeMs) const;
    qint64 offsetAt(qint64 timeMs) const;

    QTimeZone m_zone;
    mutable Hour m_hour;
    mutable Hour m_otherHour;          ///< points cross the end of an hour one by one, back and forth
    mutable std::vector<Span> m_spans; ///< those asked for up to now, in order
};
