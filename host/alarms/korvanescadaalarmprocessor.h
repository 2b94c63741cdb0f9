#pragma once

#include "host/hostexport.h"
#include "host/runtime/markslistener.h"
#include "platform/data/objectkey.h"
#include "platform/data/scadaalarm.h"

#include <QObject>

#include <functional>
#include <queue>
#include <vector>

class AlarmManager;
class RuntimeDatabase;

/// The reference host's alarm processor: makes alarms of the marks that samples leave on the objects of the runtime
/// database.
///
/// A condition is a mark: one of the four limits, with their hysteresis as dead band; an abnormal state; a change beyond
/// the rate limit; a quality that makes the value useless (invalid, stale, out of range, oscillating); failed
/// communication. It counts once it has held for the on delay, and is gone once it has been gone for the off delay, by
/// the times of the samples: how samples are batched does not matter.
class KORVANE_HOST_EXPORT KorvaneScadaAlarmProcessor : public QObject, public MarksListener
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScadaAlarmProcessor)

public:
    /// \param database, manager not owned, must outlive the processor
    KorvaneScadaAlarmProcessor(RuntimeDatabase& database, AlarmManager& manager, QObject* parent = nullptr);
    ~KorvaneScadaAlarmProcessor() override;

    /// Watches every object of the database that has an alarm. What stands already goes on, and returns with the first
    /// sample that does not uphold it; what stands of an object or cause without an alarm returns at once. To be called
    /// once, when all objects were added.
    void watchAll();

    void marksChanged(const ObjectMarks& marks) override;

    /// Ends delays whose time has come.
    /// \param nowMs milliseconds since 1970-01-01 UTC
    void advance(qint64 nowMs);

    /// How many conditions are watched.
    std::size_t conditionCount() const { return m_conditions.size(); }
    /// How often marks were looked at.
    quint64 evaluationCount() const { return m_evaluations; }

private:
    enum class Phase : quint8 {
        Normal,  ///< for the condition
        Coming,  ///< for the on delay
        Raised,  ///< for the condition to go
        Leaving, ///< for the off delay
    };
    struct Condition
    {
        ScadaAlarm::Cause cause = ScadaAlarm::Cause::LowLow;
        Phase phase = Phase::Normal;
        bool isQueued = false; ///< in m_deadlines
        qint64 sinceMs = 0;    ///< when the condition came or went; of Coming and Leaving
        double value = 0;      ///< with which it came
    };
    struct Watched
    {
        ObjectKey object;
        quint32 firstCondition = 0;
        quint32 conditionCount = 0;
        qint64 onDelayMs = 0;
        qint64 offDelayMs = 0;
    };
    /// Moment at which a delay may end; looked at when it is due, and queued again if it began anew meanwhile.
    struct Deadline
    {
        qint64 timeMs;
        quint32 watched;
        quint32 condition;
        friend bool operator>(const Deadline& a, const Deadline& b) { return a.timeMs > b.timeMs; }
    };

    void returnUnwatched();
    bool adopt(ObjectKey key, ScadaAlarm::Cause cause);
    static bool holds(ScadaAlarm::Cause cause, const ObjectMarks& marks);
    void finishDelay(quint32 watched, Condition& condition, qint64 nowMs);
    void take(quint32 watched, quint32 condition, const ObjectMarks& marks);
    void wait(quint32 watched, quint32 condition);
    void raise(quint32 watched, Condition& condition, qint64 timeMs);
    void end(quint32 watched, Condition& condition, qint64 timeMs);
    qint64 delayEnd(const Watched& watched, const Condition& condition) const;

    RuntimeDatabase& m_database;
    AlarmManager& m_manager;
    std::vector<Watched> m_watched;
    std::vector<Condition> m_conditions; ///< those of an object side by side
    std::priority_queue<Deadline, std::vector<Deadline>, std::greater<>> m_deadlines;
    quint64 m_evaluations = 0;
};
