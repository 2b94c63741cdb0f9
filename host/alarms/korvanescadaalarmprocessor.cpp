#include "host/alarms/korvanescadaalarmprocessor.h"

#include "host/alarms/alarmmanager.h"
#include "host/alarms/alarmtexts.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/valuemarks.h"

#include <cmath>

namespace {

using Cause = ScadaAlarm::Cause;
using Korvane::ScadaObjectType;

constexpr qint32 uselessQuality =
    ValueMark::Invalid | ValueMark::Stale | ValueMark::OutOfRange | ValueMark::Oscillating;

/// An invalid value leaves the marks of limits and states as they are, which are none where no value came before.
bool isSilent(Cause cause, const ObjectMarks& marks)
{
    return cause != Cause::Quality && cause != Cause::Communication && (marks.quality & ValueMark::Invalid) != 0;
}

/// The limit that was crossed; invalid for a cause without one.
QVariant limitOf(const RuntimeDatabase::Limits& limits, double rateLimit, Cause cause)
{
    switch (cause) {
    case Cause::LowLow:
        return limits.lowLow;
    case Cause::Low:
        return limits.low;
    case Cause::High:
        return limits.high;
    case Cause::HighHigh:
        return limits.highHigh;
    case Cause::RateOfChange:
        return rateLimit;
    case Cause::StateChange:
    case Cause::Quality:
    case Cause::Communication:
        return {};
    }
    return {};
}

} // namespace

KorvaneScadaAlarmProcessor::KorvaneScadaAlarmProcessor(RuntimeDatabase& database, AlarmManager& manager,
                                                       QObject* parent)
    : QObject(parent), m_database(database), m_manager(manager)
{
}

KorvaneScadaAlarmProcessor::~KorvaneScadaAlarmProcessor()
{
    m_database.setMarksListener(nullptr);
}

void KorvaneScadaAlarmProcessor::watchAll()
{
    m_database.setMarksListener(this);
    for (const ScadaObjectType family :
         {ScadaObjectType::Point, ScadaObjectType::RtuObject, ScadaObjectType::ChannelObject}) {
        for (const ObjectKey key : m_database.objects(family)) {
            const AlarmSetting& setting = m_database.object(key)->alarm;
            Watched watched{key, static_cast<quint32>(m_conditions.size()), 0, setting.onDelay.count(),
                            setting.offDelay.count()};
            for (std::size_t place = 0; place < AlarmSetting::causeCount; ++place) {
                const auto cause = static_cast<Cause>(place);
                if (!setting.hasAlarm(cause))
                    continue;
                Condition condition;
                condition.cause = cause;
                if (adopt(key, cause))
                    condition.phase = Phase::Raised;
                m_conditions.push_back(condition);
                ++watched.conditionCount;
            }
            if (watched.conditionCount == 0)
                continue;
            m_database.watch(key, static_cast<quint32>(m_watched.size()));
            m_watched.push_back(watched);
        }
    }
    returnUnwatched();
}

/// What stands of an object or a cause that the point list no longer has would never return.
void KorvaneScadaAlarmProcessor::returnUnwatched()
{
    for (const ScadaAlarm& alarm : m_manager.activeAlarms()) {
        const RuntimeDatabase::Object* object = m_database.object(alarm.object());
        if (!object || !object->alarm.hasAlarm(alarm.cause))
            m_manager.returnAlarm(alarm.id, {});
    }
}

/// Whether an alarm of an earlier run goes on. What another object of that id left behind returns.
bool KorvaneScadaAlarmProcessor::adopt(ObjectKey key, Cause cause)
{
    const quint64 id = m_manager.standing(key, cause);
    const ScadaAlarm standing = m_manager.alarm(id);
    if (id == 0 || standing.returned.isValid())
        return false;
    const RuntimeDatabase::Object& object = *m_database.object(key);
    if (standing.tag != Korvane::tagPrefix(key.type) + object.name) {
        m_manager.returnAlarm(id, {});
        return false;
    }
    m_manager.describe(id, object.alarm.severity(cause), object.area);
    return true;
}

bool KorvaneScadaAlarmProcessor::holds(Cause cause, const ObjectMarks& marks)
{
    switch (cause) {
    case Cause::LowLow:
        return (marks.limitMarks & ValueMark::BelowLowLow) != 0;
    case Cause::Low:
        return (marks.limitMarks & ValueMark::BelowLow) != 0;
    case Cause::High:
        return (marks.limitMarks & ValueMark::AboveHigh) != 0;
    case Cause::HighHigh:
        return (marks.limitMarks & ValueMark::AboveHighHigh) != 0;
    case Cause::StateChange:
    case Cause::RateOfChange:
        return (marks.limitMarks & ValueMark::Abnormal) != 0;
    case Cause::Quality:
        return (marks.quality & uselessQuality) != 0;
    case Cause::Communication:
        return (marks.quality & ValueMark::CommunicationFailed) != 0;
    }
    return false;
}

void KorvaneScadaAlarmProcessor::marksChanged(const ObjectMarks& marks)
{
    ++m_evaluations;
    const Watched watched = m_watched[marks.handle];
    for (quint32 place = 0; place < watched.conditionCount; ++place)
        take(marks.handle, watched.firstCondition + place, marks);
}

void KorvaneScadaAlarmProcessor::take(quint32 watched, quint32 place, const ObjectMarks& marks)
{
    Condition& condition = m_conditions[place];
    // Samples of a batch may be younger than the delay's end, which no tick has seen yet.
    finishDelay(watched, condition, marks.timeMs);
    if (isSilent(condition.cause, marks))
        return;
    const bool isThere = holds(condition.cause, marks);
    switch (condition.phase) {
    case Phase::Normal:
        if (!isThere)
            return;
        condition.phase = Phase::Coming;
        condition.sinceMs = marks.timeMs;
        condition.value = marks.value;
        break;
    case Phase::Coming:
        if (!isThere)
            condition.phase = Phase::Normal;
        return;
    case Phase::Raised:
        if (isThere)
            return;
        condition.phase = Phase::Leaving;
        condition.sinceMs = marks.timeMs;
        break;
    case Phase::Leaving:
        if (isThere)
            condition.phase = Phase::Raised;
        return;
    }
    finishDelay(watched, condition, marks.timeMs);
    if (condition.phase == Phase::Coming || condition.phase == Phase::Leaving)
        wait(watched, place);
}

qint64 KorvaneScadaAlarmProcessor::delayEnd(const Watched& watched, const Condition& condition) const
{
    return condition.sinceMs + (condition.phase == Phase::Coming ? watched.onDelayMs : watched.offDelayMs);
}

void KorvaneScadaAlarmProcessor::finishDelay(quint32 watched, Condition& condition, qint64 nowMs)
{
    if (condition.phase != Phase::Coming && condition.phase != Phase::Leaving)
        return;
    const qint64 endMs = delayEnd(m_watched[watched], condition);
    if (endMs > nowMs)
        return;
    if (condition.phase == Phase::Coming)
        raise(watched, condition, endMs);
    else
        end(watched, condition, endMs);
}

void KorvaneScadaAlarmProcessor::wait(quint32 watched, quint32 place)
{
    Condition& condition = m_conditions[place];
    if (condition.isQueued)
        return;
    condition.isQueued = true;
    m_deadlines.push({delayEnd(m_watched[watched], condition), watched, place});
}

void KorvaneScadaAlarmProcessor::advance(qint64 nowMs)
{
    while (!m_deadlines.empty() && m_deadlines.top().timeMs <= nowMs) {
        const Deadline due = m_deadlines.top();
        m_deadlines.pop();
        Condition& condition = m_conditions[due.condition];
        condition.isQueued = false;
        finishDelay(due.watched, condition, nowMs);
        if (condition.phase == Phase::Coming || condition.phase == Phase::Leaving)
            wait(due.watched, due.condition);
    }
}

void KorvaneScadaAlarmProcessor::raise(quint32 watched, Condition& condition, qint64 timeMs)
{
    condition.phase = Phase::Raised;
    const ObjectKey key = m_watched[watched].object;
    const RuntimeDatabase::Object& object = *m_database.object(key);
    ScadaAlarm alarm;
    alarm.objectType = key.type;
    alarm.objectId = key.id;
    alarm.tag = Korvane::tagPrefix(key.type) + object.name;
    alarm.area = object.area;
    alarm.severity = object.alarm.severity(condition.cause);
    alarm.cause = condition.cause;
    if (std::isfinite(condition.value))
        alarm.value = key.type == ScadaObjectType::AnalogPoint ? QVariant(condition.value)
                                                               : QVariant(static_cast<qint32>(condition.value));
    alarm.limit = limitOf(m_database.limits({object.type, object.id}), object.alarm.rateLimit, condition.cause);
    alarm.message = AlarmTexts::message(object, condition.cause, condition.value);
    alarm.raised = QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC);
    m_manager.raiseAlarm(alarm);
}

void KorvaneScadaAlarmProcessor::end(quint32 watched, Condition& condition, qint64 timeMs)
{
    condition.phase = Phase::Normal;
    m_manager.returnAlarm(m_manager.standing(m_watched[watched].object, condition.cause),
                          QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC));
}
