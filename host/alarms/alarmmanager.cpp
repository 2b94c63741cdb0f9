#include "host/alarms/alarmmanager.h"

#include <algorithm>
#include <utility>

namespace {

using State = ScadaAlarm::State;
using Kind = AlarmTransition::Kind;

bool isSeverity(int severity)
{
    return severity >= ScadaAlarm::lowestSeverity && severity <= ScadaAlarm::highestSeverity;
}

std::size_t placeOf(int severity)
{
    return static_cast<std::size_t>(std::clamp(severity, ScadaAlarm::lowestSeverity, ScadaAlarm::highestSeverity));
}

} // namespace

std::size_t AlarmManager::KeyHash::operator()(const Key& key) const noexcept
{
    const auto id = static_cast<quint64>(static_cast<quint32>(key.object.id));
    const auto type = static_cast<quint64>(static_cast<quint32>(key.object.type));
    const quint64 packed = id << 16 | (type & 0xff) << 8 | static_cast<quint64>(key.cause);
    return qHash(packed, 1);
}

AlarmManager::AlarmManager(Clock clock, QObject* parent)
    : SystemAlarmManagerInterface(parent), m_clock(std::move(clock))
{
}

AlarmManager::~AlarmManager() = default;

bool AlarmManager::isVisible(const ScadaAlarm& alarm)
{
    return alarm.state == State::Acknowledged || alarm.isUnacknowledged();
}

AlarmManager::Occurrence* AlarmManager::find(quint64 id)
{
    const auto found = m_occurrences.find(id);
    return found == m_occurrences.end() ? nullptr : &found->second;
}

const AlarmManager::Occurrence* AlarmManager::find(quint64 id) const
{
    return const_cast<AlarmManager*>(this)->find(id);
}

State AlarmManager::stateOf(const Occurrence& occurrence) const
{
    const bool isShelved = occurrence.shelf.until.isValid();
    const auto excluded = m_exclusions.constFind(occurrence.alarm.object());
    if (excluded != m_exclusions.constEnd()) {
        if (!occurrence.isPresent && !isShelved)
            return State::Normal;
        return excluded->isOutOfService ? State::OutOfService : State::Suppressed;
    }
    if (isShelved)
        return State::Shelved;
    if (occurrence.isPresent)
        return occurrence.isAcknowledged ? State::Acknowledged : State::Unacknowledged;
    return occurrence.isAcknowledged ? State::Normal : State::ReturnedUnacknowledged;
}

void AlarmManager::count(const ScadaAlarm& alarm, int step)
{
    if (!isVisible(alarm))
        return;
    const int waiting = alarm.isUnacknowledged() ? step : 0;
    m_visible[placeOf(alarm.severity)] += step;
    m_unacknowledged[placeOf(alarm.severity)] += waiting;
    const auto countIn = [&](const QString& name) {
        Area& area = m_areas[name];
        if (area.visible == 0)
            area.firstOut = alarm;
        area.visible += step;
        area.unacknowledged += waiting;
        if (area.visible == 0)
            area.firstOut = {};
    };
    countIn({});
    if (!alarm.area.isEmpty())
        countIn(alarm.area);
}

/// What was done to the occurrence: its state follows, everyone hears of it, and a normal one is forgotten.
void AlarmManager::tell(Occurrence& occurrence, const ScadaAlarm& before, AlarmTransition transition)
{
    occurrence.alarm.state = stateOf(occurrence);
    // In this order, so that the last alarm of an area does not look like its first.
    count(occurrence.alarm, 1);
    count(before, -1);
    renewFirstOut(occurrence.alarm);
    transition.alarm = occurrence.alarm;
    if (occurrence.alarm.state == State::Normal) {
        m_byKey.erase({occurrence.alarm.object(), occurrence.alarm.cause});
        m_occurrences.erase(occurrence.alarm.id);
    }
    Q_EMIT transitioned(transition);
}

/// The first alarm of an area is told as it stands now; it may end while others of the area stand.
void AlarmManager::renewFirstOut(const ScadaAlarm& alarm)
{
    for (const QString& name : {QString(), alarm.area}) {
        const auto area = m_areas.find(name);
        if (area != m_areas.end() && area->firstOut.id == alarm.id)
            area->firstOut = alarm;
    }
}

void AlarmManager::awaitOperator(Occurrence& occurrence)
{
    occurrence.isAcknowledged = false;
    occurrence.alarm.acknowledged = {};
    occurrence.alarm.acknowledgedBy.clear();
}

quint64 AlarmManager::raiseAlarm(const ScadaAlarm& alarm)
{
    const QDateTime now = m_clock();
    const quint64 standingId = standing(alarm.object(), alarm.cause);
    ScadaAlarm raised = alarm;
    raised.id = standingId != 0 ? standingId : ++m_lastId;
    raised.severity = static_cast<int>(placeOf(alarm.severity));
    if (!raised.raised.isValid())
        raised.raised = now;
    raised.returned = {};

    Occurrence& occurrence = m_occurrences[raised.id];
    if (standingId != 0 && occurrence.isPresent)
        return standingId;
    const ScadaAlarm before = occurrence.alarm;
    raised.state = before.state;
    occurrence.alarm = raised;
    occurrence.isPresent = true;
    awaitOperator(occurrence);
    m_byKey[{raised.object(), raised.cause}] = raised.id;
    tell(occurrence, before, {0, Kind::Raised, raised.raised, {}, {}, {}, {}});
    return raised.id;
}

bool AlarmManager::returnAlarm(quint64 id, const QDateTime& time)
{
    Occurrence* occurrence = find(id);
    if (!occurrence || !occurrence->isPresent)
        return false;
    const ScadaAlarm before = occurrence->alarm;
    occurrence->isPresent = false;
    occurrence->alarm.returned = time.isValid() ? time : m_clock();
    if (isLatching(before))
        awaitOperator(*occurrence);
    tell(*occurrence, before, {0, Kind::Returned, occurrence->alarm.returned, {}, {}, {}, {}});
    return true;
}

bool AlarmManager::acknowledge(quint64 id, const QString& user)
{
    Occurrence* occurrence = find(id);
    if (!occurrence || !occurrence->alarm.isUnacknowledged())
        return false;
    const ScadaAlarm before = occurrence->alarm;
    occurrence->isAcknowledged = true;
    occurrence->alarm.acknowledged = m_clock();
    occurrence->alarm.acknowledgedBy = user;
    tell(*occurrence, before, {0, Kind::Acknowledged, occurrence->alarm.acknowledged, {}, user, {}, {}});
    return true;
}

bool AlarmManager::shelve(quint64 id, const QDateTime& until, const QString& user, const QString& reason)
{
    const QDateTime now = m_clock();
    Occurrence* occurrence = find(id);
    if (!occurrence || !until.isValid() || until <= now)
        return false;
    if (occurrence->alarm.state != State::Shelved && !isVisible(occurrence->alarm))
        return false;
    const ScadaAlarm before = occurrence->alarm;
    occurrence->shelf = {until.toUTC(), user, reason};
    m_shelfEnds.emplace(occurrence->shelf.until, id);
    tell(*occurrence, before, {0, Kind::Shelved, now, {}, user, reason, occurrence->shelf.until});
    return true;
}

bool AlarmManager::unshelve(quint64 id, const QString& user)
{
    const Occurrence* occurrence = find(id);
    if (!occurrence || occurrence->alarm.state != State::Shelved)
        return false;
    endShelf(id, user, m_clock());
    return true;
}

void AlarmManager::endShelf(quint64 id, const QString& user, const QDateTime& now)
{
    Occurrence& occurrence = *find(id);
    const ScadaAlarm before = occurrence.alarm;
    occurrence.shelf = {};
    // The operator put it away knowing of it: what is gone by now needs nobody any more.
    if (occurrence.isPresent || isLatching(before))
        awaitOperator(occurrence);
    else
        occurrence.isAcknowledged = true;
    tell(occurrence, before, {0, Kind::Unshelved, now, {}, user, {}, {}});
}

void AlarmManager::advance(const QDateTime& now)
{
    while (!m_shelfEnds.empty() && m_shelfEnds.begin()->first <= now) {
        const auto [until, id] = *m_shelfEnds.begin();
        m_shelfEnds.erase(m_shelfEnds.begin());
        // Shelved anew meanwhile, it ends at another time.
        const Occurrence* occurrence = find(id);
        if (occurrence && occurrence->shelf.until == until)
            endShelf(id, {}, until);
    }
}

bool AlarmManager::setSuppressed(ObjectKey object, bool suppressed, const QString& reason)
{
    return setSuppressed(object, suppressed, {}, reason);
}

bool AlarmManager::setSuppressed(ObjectKey object, bool suppressed, const QString& user, const QString& reason)
{
    Exclusion exclusion = m_exclusions.value(object);
    if (!object.isValid() || exclusion.isSuppressed == suppressed)
        return false;
    exclusion.isSuppressed = suppressed;
    exclusion.suppressionReason = suppressed ? reason : QString();
    setExclusion(object, exclusion,
                 {0, suppressed ? Kind::Suppressed : Kind::SuppressionEnded, m_clock(), {}, user, reason, {}});
    return true;
}

bool AlarmManager::setOutOfService(ObjectKey object, bool outOfService, const QString& user, const QString& reason)
{
    Exclusion exclusion = m_exclusions.value(object);
    if (!object.isValid() || exclusion.isOutOfService == outOfService)
        return false;
    exclusion.isOutOfService = outOfService;
    exclusion.serviceReason = outOfService ? reason : QString();
    exclusion.serviceUser = outOfService ? user : QString();
    setExclusion(
        object, exclusion,
        {0, outOfService ? Kind::TakenOutOfService : Kind::PutBackIntoService, m_clock(), {}, user, reason, {}});
    return true;
}

/// Tells of the object itself first, since it may have no alarm now, then of each alarm whose state that changes.
void AlarmManager::setExclusion(ObjectKey object, const Exclusion& exclusion, AlarmTransition transition)
{
    if (exclusion.isSuppressed || exclusion.isOutOfService)
        m_exclusions[object] = exclusion;
    else
        m_exclusions.remove(object);
    Q_EMIT exclusionChanged(object);
    transition.alarm = {};
    transition.alarm.objectType = object.type;
    transition.alarm.objectId = object.id;
    Q_EMIT transitioned(transition);
    for (const quint64 id : standingOf(object)) {
        Occurrence* occurrence = find(id);
        if (!occurrence || stateOf(*occurrence) == occurrence->alarm.state)
            continue;
        const ScadaAlarm before = occurrence->alarm;
        if (!m_exclusions.contains(object))
            awaitOperator(*occurrence);
        tell(*occurrence, before, transition);
    }
}

ScadaAlarm AlarmManager::alarm(quint64 id) const
{
    const Occurrence* occurrence = find(id);
    return occurrence ? occurrence->alarm : ScadaAlarm();
}

QList<ScadaAlarm> AlarmManager::activeAlarms() const
{
    QList<ScadaAlarm> alarms;
    alarms.reserve(static_cast<int>(m_occurrences.size()));
    for (auto each = m_occurrences.rbegin(); each != m_occurrences.rend(); ++each)
        alarms.append(each->second.alarm);
    // One that was raised again is as new as its newest condition.
    std::stable_sort(alarms.begin(), alarms.end(),
                     [](const ScadaAlarm& a, const ScadaAlarm& b) { return a.raised > b.raised; });
    return alarms;
}

ScadaAlarm AlarmManager::firstOut(const QString& area) const
{
    return m_areas.value(area).firstOut;
}

int AlarmManager::highestUnacknowledgedSeverity() const
{
    for (int severity = ScadaAlarm::highestSeverity; severity >= ScadaAlarm::lowestSeverity; --severity) {
        if (m_unacknowledged[placeOf(severity)] > 0)
            return severity;
    }
    return -1;
}

quint64 AlarmManager::standing(ObjectKey object, ScadaAlarm::Cause cause) const
{
    const auto found = m_byKey.find({object, cause});
    return found == m_byKey.end() ? 0 : found->second;
}

std::vector<quint64> AlarmManager::standingOf(ObjectKey object) const
{
    std::vector<quint64> ids;
    for (std::size_t place = 0; place < AlarmSetting::causeCount; ++place) {
        if (const quint64 id = standing(object, static_cast<ScadaAlarm::Cause>(place)))
            ids.push_back(id);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<quint64> AlarmManager::waiting(const QString& area) const
{
    std::vector<quint64> ids;
    for (const auto& [id, occurrence] : m_occurrences) {
        if (occurrence.alarm.isUnacknowledged() && (area.isEmpty() || occurrence.alarm.area == area))
            ids.push_back(id);
    }
    return ids;
}

void AlarmManager::describe(quint64 id, int severity, const QString& area)
{
    Occurrence* occurrence = find(id);
    if (!occurrence)
        return;
    const ScadaAlarm before = occurrence->alarm;
    occurrence->alarm.severity = static_cast<int>(placeOf(severity));
    occurrence->alarm.area = area;
    count(occurrence->alarm, 1);
    count(before, -1);
}

AlarmManager::Shelf AlarmManager::shelf(quint64 id) const
{
    const Occurrence* occurrence = find(id);
    return occurrence ? occurrence->shelf : Shelf();
}

int AlarmManager::visibleCount(int severity) const
{
    return isSeverity(severity) ? m_visible[placeOf(severity)] : 0;
}

int AlarmManager::waitingCount(int severity) const
{
    return isSeverity(severity) ? m_unacknowledged[placeOf(severity)] : 0;
}

int AlarmManager::unacknowledgedCount(const QString& area) const
{
    return m_areas.value(area).unacknowledged;
}

bool AlarmManager::isLatching(const ScadaAlarm& alarm) const
{
    return m_isLatching && m_isLatching(alarm.object());
}

void AlarmManager::restore(const ScadaAlarm& alarm, const Shelf& shelf)
{
    Occurrence occurrence;
    occurrence.alarm = alarm;
    occurrence.isPresent = !alarm.returned.isValid();
    occurrence.isAcknowledged = alarm.acknowledged.isValid() && alarm.state != State::ReturnedUnacknowledged;
    occurrence.shelf = shelf;
    occurrence.alarm.state = stateOf(occurrence);
    m_lastId = std::max(m_lastId, alarm.id);
    if (occurrence.alarm.state == State::Normal)
        return;
    count(occurrence.alarm, 1);
    if (shelf.until.isValid())
        m_shelfEnds.emplace(shelf.until, alarm.id);
    m_byKey[{alarm.object(), alarm.cause}] = alarm.id;
    m_occurrences[alarm.id] = occurrence;
}

void AlarmManager::restoreExclusion(ObjectKey object, const Exclusion& exclusion)
{
    m_exclusions[object] = exclusion;
}
