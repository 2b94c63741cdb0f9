#pragma once

#include "host/hostexport.h"
#include "host/runtime/statisticscalendar.h"
#include "platform/data/datacode.h"
#include "platform/data/valuemarks.h"

#include <QByteArray>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

/// Minima, maxima, means, integrals, counts and durations of one object, over the running hour, day, week, month and
/// year, over all time, and over the hour that ended last.
///
/// A value holds from its sample until the next one, at most for the object's staleAfter. Time for which no value is
/// known is counted nowhere: before the first sample, beyond staleAfter, while the quality is Invalid or
/// CommunicationFailed, after interrupt(). A value that holds into a new period counts in it from the period's start.
///
/// On is any state but 0. A change between on and off counts in the period of the sample that shows it, also when no
/// value was known in between; the very first known state counts as no change.
///
/// A sample costs an update of the hour's figures; the longer periods have their share when the hour ends, and readings
/// add the running hour. All times are milliseconds since 1970-01-01 UTC. One calendar goes with one object for good.
class KORVANE_HOST_EXPORT PointStatistics
{
public:
    enum class Kind : quint8 {
        Analog,
        Digital, ///< states: counts and durations in place of extremes, means and integrals
    };

    /// Longer than any life of a plant, and short enough to be added to any time.
    static constexpr qint64 longestStaleAfterMs = Q_INT64_C(1000) * 366 * 86400 * 1000;

    /// \p staleAfterMs below 1 or above the longest stands for ever.
    explicit PointStatistics(Kind kind, qint64 staleAfterMs = 0);

    /// Counts a sample. \p quality has ValueMark::Quality bits; a value that is not finite counts as Invalid.
    /// \returns false for a sample older than the newest, which is counted nowhere. One of the same time replaces
    /// it; only the extremes that the former reached and the changes that it showed stay.
    bool take(qint64 timeMs, double value, qint32 quality, const StatisticsCalendar& calendar)
    {
        if (timeMs < m_newest)
            return false;
        const qint64 at = std::max(timeMs, m_counted);
        advance(at, calendar);
        m_newest = timeMs;
        m_isFailed = (quality & ValueMark::CommunicationFailed) != 0;
        if (!m_isFailed && (quality & ValueMark::Invalid) == 0 && std::isfinite(value)) {
            countChange(value);
            begin(value, at);
        } else {
            end(at);
        }
        return true;
    }

    /// The object's communication failed at \p timeMs, or came back: then the value before counts again, unless it is
    /// stale by now. A new sample ends a failure too.
    void setFailed(bool failed, qint64 timeMs, const StatisticsCalendar& calendar);

    /// No value is known from \p timeMs until the next sample.
    void interrupt(qint64 timeMs, const StatisticsCalendar& calendar);

    /// A field of the running periods at \p nowMs, or one of the Past... fields, which tell of the hour that ended last
    /// before it. Times are UTC, durations in seconds, integrals in the point's unit times hours.
    /// \returns an invalid variant for a field that the kind lacks, and where nothing is known in the period; a mean
    /// is known once time has passed.
    QVariant fieldValue(DataCode::DataField field, qint64 nowMs, const StatisticsCalendar& calendar) const;

    /// Everything but staleAfter, as bytes of a layout of their own.
    QByteArray toBytes() const;
    /// Takes what toBytes() of the same kind made.
    /// \returns false for other bytes; nothing changes then.
    bool fromBytes(const QByteArray& bytes);

private:
    enum Period { Day, Week, Month, Year, Total, Hour, Past };
    static constexpr std::size_t periodCount = 7;
    static_assert(Day == int(StatisticsCalendar::Day) && Year == int(StatisticsCalendar::Year));

    static constexpr qint64 never = std::numeric_limits<qint64>::min();
    static constexpr qint64 forEver = std::numeric_limits<qint64>::max();
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    static constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

    /// Figures of one period.
    struct Sums
    {
        double minimum = infinity;
        double maximum = -infinity;
        qint64 minimumTime = 0; ///< when it was reached first
        qint64 maximumTime = 0;
        double integral = 0; ///< value times milliseconds; milliseconds on, of a digital object
        qint64 knownMs = 0;
        qint32 onCount = 0;
        qint32 offCount = 0;

        bool isKnown() const { return minimum <= maximum; }
        void extend(double value, qint64 timeMs)
        {
            if (value < minimum) {
                minimum = value;
                minimumTime = timeMs;
            }
            if (value > maximum) {
                maximum = value;
                maximumTime = timeMs;
            }
        }
        void add(double weight, qint64 ms)
        {
            integral += weight * double(ms);
            knownMs += ms;
        }
        void fold(const Sums& hour);
    };

    enum class Quantity {
        Maximum,
        Minimum,
        Mean,
        Accumulated,
        MinimumTime,
        MaximumTime,
        OnCount,
        OffCount,
        OnDuration,
        OffDuration,
        Moment,
    };
    struct FieldOfPeriod
    {
        DataCode::DataField field;
        Period period;
        Quantity quantity;
    };
    static const FieldOfPeriod fields[];

    double weight() const { return m_kind == Kind::Analog ? m_value : double(m_value != 0); }
    qint64 knownUntil() const { return m_staleAfterMs > 0 ? m_newest + m_staleAfterMs : forEver; }

    /// Counts the value before up to \p timeMs, not before m_counted.
    void advance(qint64 timeMs, const StatisticsCalendar& calendar)
    {
        if (timeMs >= m_hourEnd)
            changeHour(timeMs, calendar);
        else
            countTo(timeMs);
    }
    void countTo(qint64 timeMs)
    {
        if (m_knownUntil > m_counted)
            m_sums[Hour].add(weight(), std::min(timeMs, m_knownUntil) - m_counted);
        m_counted = timeMs;
    }
    void countChange(double value)
    {
        const qint8 state = value != 0 ? 1 : 0;
        if (m_kind == Kind::Digital && m_state >= 0 && state != m_state)
            ++(state == 1 ? m_sums[Hour].onCount : m_sums[Hour].offCount);
        m_state = state;
    }
    void begin(double value, qint64 timeMs)
    {
        m_value = value;
        m_knownUntil = knownUntil();
        m_sums[Hour].extend(value, timeMs);
        if (timeMs == m_hourStart)
            m_moment = value;
    }
    void end(qint64 timeMs)
    {
        m_value = unknown;
        m_knownUntil = never;
        if (timeMs == m_hourStart)
            m_moment = unknown;
    }
    void changeHour(qint64 timeMs, const StatisticsCalendar& calendar);
    void addHeld(Sums& sums, qint64 fromMs, qint64 toMs) const;
    QVariant reading(Period period, Quantity quantity) const;

    qint64 m_newest = never;     ///< time of the newest sample
    qint64 m_counted = never;    ///< up to here time is in the sums
    qint64 m_knownUntil = never; ///< the value counts up to here
    qint64 m_hourStart = never;
    qint64 m_hourEnd = never;
    double m_value = unknown;  ///< of the newest sample, if it is known
    double m_moment = unknown; ///< at the start of the hour
    qint64 m_staleAfterMs;
    Kind m_kind;
    bool m_isFailed = false;
    qint8 m_state = -1; ///< the last known one: 1 on, 0 off, -1 none
    std::array<Sums, periodCount> m_sums;
};
