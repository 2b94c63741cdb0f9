#pragma once

#include "host/alarms/alarmsetting.h"
#include "host/alarms/alarmtransition.h"
#include "host/hostexport.h"
#include "scada/hub/systemalarmmanagerinterface.h"

#include <QHash>

#include <tsl/robin_map.h>

#include <array>
#include <functional>
#include <map>
#include <vector>

/// The reference host's alarm manager: every alarm that stands, its state, and what operators did about it.
///
/// Each object has one alarm a cause, so an alarm that is raised while it stands goes on as the same occurrence. Its
/// state follows from what is known of it, the first that holds: its object is out of service or suppressed; it is
/// shelved; its condition holds, acknowledged or not; its condition is gone and it was not acknowledged. Otherwise it is
/// normal, and forgotten here. A latching alarm waits for an operator once more when its condition is gone.
///
/// While the object is out of service or suppressed, its alarms come and go without an operator; what stands when that
/// ends is announced as new. A shelved alarm stays shelved until its time whether its condition holds or not; then it is
/// announced as new, or normal.
///
/// Every change is one transitioned(). Times of operators' acts are the clock's, those of conditions the samples'.
class KORVANE_HOST_EXPORT AlarmManager : public SystemAlarmManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmManager)

public:
    using Clock = std::function<QDateTime()>;
    using IsLatching = std::function<bool(ObjectKey)>;

    /// Why an object's alarms are kept from the operator.
    struct Exclusion
    {
        bool isSuppressed = false;
        bool isOutOfService = false;
        QString suppressionReason = {};
        QString serviceReason = {};
        QString serviceUser = {};
    };

    struct Shelf
    {
        QDateTime until; ///< UTC
        QString user = {};
        QString reason = {};
    };

    /// \param clock gives the present time in UTC
    explicit AlarmManager(Clock clock, QObject* parent = nullptr);
    ~AlarmManager() override;

    /// Says which objects' alarms latch; none unless set.
    void setLatching(IsLatching isLatching) { m_isLatching = std::move(isLatching); }

    quint64 raiseAlarm(const ScadaAlarm& alarm) override;
    bool returnAlarm(quint64 id, const QDateTime& time) override;
    bool acknowledge(quint64 id, const QString& user) override;
    bool shelve(quint64 id, const QDateTime& until, const QString& user, const QString& reason) override;
    bool unshelve(quint64 id, const QString& user) override;
    bool setSuppressed(ObjectKey object, bool suppressed, const QString& reason) override;
    /// The same, done by \p user.
    bool setSuppressed(ObjectKey object, bool suppressed, const QString& user, const QString& reason);
    bool setOutOfService(ObjectKey object, bool outOfService, const QString& user, const QString& reason) override;
    ScadaAlarm alarm(quint64 id) const override;
    QList<ScadaAlarm> activeAlarms() const override;
    ScadaAlarm firstOut(const QString& area) const override;
    int highestUnacknowledgedSeverity() const override;

    /// The occurrence that stands for that object and cause; 0 for none.
    quint64 standing(ObjectKey object, ScadaAlarm::Cause cause) const;
    /// The occurrences that stand for \p object, ascending.
    std::vector<quint64> standingOf(ObjectKey object) const;
    /// The occurrences that wait for an operator in an area, ascending; in all areas with an empty name.
    std::vector<quint64> waiting(const QString& area) const;
    /// How an occurrence is shelved; with an invalid time when it is not.
    Shelf shelf(quint64 id) const;
    Exclusion exclusion(ObjectKey object) const { return m_exclusions.value(object); }
    /// Every object that is suppressed or out of service.
    QList<ObjectKey> excludedObjects() const { return m_exclusions.keys(); }
    /// How many occurrences stand, in whatever state.
    std::size_t count() const { return m_occurrences.size(); }
    /// How many of a severity an operator sees: unacknowledged, acknowledged or returned unacknowledged.
    int visibleCount(int severity) const;
    /// How many of a severity wait for an operator.
    int waitingCount(int severity) const;
    /// How many of an area wait for an operator; of all areas with an empty name.
    int unacknowledgedCount(const QString& area) const;

    /// Ends the shelving whose time has come.
    void advance(const QDateTime& now);

    /// Takes what the list of points says of a standing alarm now; no transition follows.
    void describe(quint64 id, int severity, const QString& area);

    /// Takes over an occurrence as an earlier run of the program left it; no transition follows. Its condition counts
    /// as holding unless it has returned.
    void restore(const ScadaAlarm& alarm, const Shelf& shelf);
    void restoreExclusion(ObjectKey object, const Exclusion& exclusion);
    /// Occurrences made from now on have higher numbers than \p id.
    void setLastId(quint64 id) { m_lastId = id; }

Q_SIGNALS:
    /// An alarm changed. It may be changed further by whoever hears of it; but it comes from amid a batch of samples, so
    /// nobody may turn the event loop.
    void transitioned(const AlarmTransition& transition);
    /// Another object is suppressed or out of service, or one no longer is.
    void exclusionChanged(ObjectKey object);

private:
    struct Key
    {
        ObjectKey object;
        ScadaAlarm::Cause cause;
        friend bool operator==(const Key& a, const Key& b) { return a.object == b.object && a.cause == b.cause; }
    };
    struct KeyHash
    {
        std::size_t operator()(const Key& key) const noexcept;
    };
    struct Occurrence
    {
        ScadaAlarm alarm;
        bool isPresent = true; ///< the condition holds
        bool isAcknowledged = false;
        Shelf shelf;
    };
    /// What stands in one area, or in all.
    struct Area
    {
        int visible = 0;
        int unacknowledged = 0;
        ScadaAlarm firstOut; ///< with number 0 while nothing is visible
    };

    static bool isVisible(const ScadaAlarm& alarm);
    Occurrence* find(quint64 id);
    const Occurrence* find(quint64 id) const;
    ScadaAlarm::State stateOf(const Occurrence& occurrence) const;
    bool isLatching(const ScadaAlarm& alarm) const;
    void count(const ScadaAlarm& alarm, int step);
    void tell(Occurrence& occurrence, const ScadaAlarm& before, AlarmTransition transition);
    void renewFirstOut(const ScadaAlarm& alarm);
    static void awaitOperator(Occurrence& occurrence);
    void endShelf(quint64 id, const QString& user, const QDateTime& now);
    void setExclusion(ObjectKey object, const Exclusion& exclusion, AlarmTransition transition);

    Clock m_clock;
    IsLatching m_isLatching;
    quint64 m_lastId = 0;
    std::map<quint64, Occurrence> m_occurrences;
    tsl::robin_map<Key, quint64, KeyHash> m_byKey;
    QHash<ObjectKey, Exclusion> m_exclusions;
    std::multimap<QDateTime, quint64> m_shelfEnds; ///< of some that were shelved anew or ended meanwhile, too
    std::array<int, ScadaAlarm::highestSeverity + 1> m_visible = {};
    std::array<int, ScadaAlarm::highestSeverity + 1> m_unacknowledged = {};
    QHash<QString, Area> m_areas; ///< all of them under the empty name
};
