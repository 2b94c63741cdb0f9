#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <vector>

/// The ends of hours, days and so on of a short time, found by looking at the local clock once a minute: slow, and as
/// simple as the rule reads.
class SlowCalendar
{
public:
    enum Period { Hour, Day, Week, Month, Year };

    SlowCalendar(const QTimeZone& zone, qint64 fromMs, qint64 toMs) : m_begin(fromMs)
    {
        constexpr qint64 minute = 60000;
        QDateTime before = at(zone, fromMs - fromMs % minute - minute);
        for (qint64 ms = fromMs - fromMs % minute; ms <= toMs; ms += minute) {
            const QDateTime local = at(zone, ms);
            if (local.time().minute() == 0 || local.offsetFromUtc() != before.offsetFromUtc())
                m_bounds.push_back({ms, changes(before.date(), local.date())});
            before = local;
        }
    }

    /// Beginning of the period that \p ms lies in; the beginning of the time looked at if it lies before.
    qint64 start(Period period, qint64 ms) const
    {
        qint64 found = m_begin;
        for (const Bound& bound : m_bounds) {
            if (bound.ms <= ms && (bound.ends & (1U << period)) != 0)
                found = bound.ms;
        }
        return found;
    }

    struct Bound
    {
        qint64 ms;
        unsigned ends; ///< bits of the periods
    };
    const std::vector<Bound>& bounds() const { return m_bounds; }

private:
    static QDateTime at(const QTimeZone& zone, qint64 ms)
    {
        return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toTimeZone(zone);
    }
    static unsigned changes(QDate before, QDate date)
    {
        unsigned ends = 1U << Hour;
        int yearBefore = 0;
        int year = 0;
        const int weekBefore = before.weekNumber(&yearBefore);
        const int week = date.weekNumber(&year);
        ends |= before != date ? 1U << Day : 0U;
        ends |= weekBefore != week || yearBefore != year ? 1U << Week : 0U;
        ends |= before.month() != date.month() || before.year() != date.year() ? 1U << Month : 0U;
        ends |= before.year() != date.year() ? 1U << Year : 0U;
        return ends;
    }

    qint64 m_begin;
    std::vector<Bound> m_bounds;
};
