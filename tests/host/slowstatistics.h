#pragma once

#include "tests/support/slowcalendar.h"

#include <algorithm>
#include <limits>
#include <vector>

/// The statistics of one object worked out from the whole list of what happened to it, anew for each question.
class SlowStatistics
{
public:
    static constexpr qint64 forEver = std::numeric_limits<qint64>::max();

    struct Event
    {
        enum Kind { Value, Unknown, Fails, Returns };
        qint64 ms;
        Kind kind;
        double value;
    };
    struct Figures
    {
        bool isKnown = false;
        double minimum = 0;
        double maximum = 0;
        qint64 minimumTime = 0;
        qint64 maximumTime = 0;
        double integral = 0; // value times seconds
        double knownSeconds = 0;
        double onSeconds = 0;
        int onCount = 0;
        int offCount = 0;
    };

    explicit SlowStatistics(qint64 staleAfterMs) : m_staleAfterMs(staleAfterMs) {}
    void add(const Event& event) { m_events.push_back(event); }

    /// Figures of the time from \p from to \p to; what is known at \p to itself counts if \p withEnd.
    Figures figures(qint64 from, qint64 to, bool withEnd) const
    {
        Figures made;
        for (const Stretch& stretch : stretches()) {
            const qint64 begin = std::max(stretch.from, from);
            const qint64 end = std::min(stretch.to, to);
            const bool isMoment =
                stretch.isSample && stretch.from >= from && stretch.from <= to && (withEnd || stretch.from < to);
            const bool isAtEnd = withEnd && stretch.from <= to && to < stretch.to;
            if (begin < end || isMoment || isAtEnd)
                reach(made, stretch.value, begin);
            if (begin >= end)
                continue;
            const double seconds = double(end - begin) / 1000;
            made.knownSeconds += seconds;
            made.integral += stretch.value * seconds;
            made.onSeconds += stretch.value != 0 ? seconds : 0;
        }
        countChanges(made, from, to, withEnd);
        return made;
    }

    /// The value at \p ms; false when none is known.
    bool valueAt(qint64 ms, double& value) const
    {
        bool isKnown = false;
        for (const Stretch& stretch : stretches()) {
            if (stretch.from <= ms && (ms < stretch.to || (stretch.isSample && stretch.from == ms))) {
                isKnown = true;
                value = stretch.value;
            }
        }
        return isKnown;
    }

private:
    struct Stretch
    {
        qint64 from;
        qint64 to;
        double value;
        bool isSample;
    };

    std::vector<Stretch> stretches() const
    {
        std::vector<Stretch> made;
        bool hasFailed = false;
        bool hasValue = false;
        double value = 0;
        qint64 sampled = 0;
        for (std::size_t i = 0; i < m_events.size(); ++i) {
            const Event& event = m_events[i];
            const bool isSample = event.kind == Event::Value || event.kind == Event::Unknown;
            hasFailed = event.kind == Event::Fails;
            if (isSample) {
                hasValue = event.kind == Event::Value;
                value = event.value;
                sampled = event.ms;
            }
            const qint64 next = i + 1 < m_events.size() ? m_events[i + 1].ms : forEver;
            const qint64 stale = m_staleAfterMs > 0 ? sampled + m_staleAfterMs : forEver;
            const qint64 end = std::min(next, stale);
            if (hasValue && !hasFailed && (isSample || event.ms < end))
                made.push_back({event.ms, end, value, isSample});
        }
        return made;
    }

    void countChanges(Figures& made, qint64 from, qint64 to, bool withEnd) const
    {
        const Event* before = nullptr;
        for (const Event& event : m_events) {
            if (event.kind != Event::Value)
                continue;
            const bool isWithin = event.ms >= from && (event.ms < to || (withEnd && event.ms == to));
            if (isWithin && before && (before->value != 0) != (event.value != 0))
                ++(event.value != 0 ? made.onCount : made.offCount);
            before = &event;
        }
    }

    static void reach(Figures& made, double value, qint64 ms)
    {
        if (!made.isKnown || value < made.minimum) {
            made.minimum = value;
            made.minimumTime = ms;
        }
        if (!made.isKnown || value > made.maximum) {
            made.maximum = value;
            made.maximumTime = ms;
        }
        made.isKnown = true;
    }

    qint64 m_staleAfterMs;
    std::vector<Event> m_events;
};
