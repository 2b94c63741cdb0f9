#include "host/control/operatorchanges.h"

#include "host/alarms/alarmsystem.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QLocale>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

using Korvane::ScadaObjectType;
using Kind = OperatorChanges::Kind;
using Limit = OperatorChanges::Limit;

constexpr double noLimit = std::numeric_limits<double>::quiet_NaN();

constexpr std::pair<Kind, double RuntimeDatabase::Limits::*> limitKinds[] = {
    {Kind::LowLowLimit, &RuntimeDatabase::Limits::lowLow},
    {Kind::LowLimit, &RuntimeDatabase::Limits::low},
    {Kind::HighLimit, &RuntimeDatabase::Limits::high},
    {Kind::HighHighLimit, &RuntimeDatabase::Limits::highHigh},
};

Kind kindOf(Limit limit)
{
    return limitKinds[static_cast<std::size_t>(limit)].first;
}

QString textOf(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

OperatorChanges::OperatorChanges(RuntimeDatabase& database, DataService& data, AlarmSystem& alarms,
                                 OperatingState& state, KorvaneScadaCoreInterface& hub, QObject* parent)
    : QObject(parent), m_database(database), m_data(data), m_alarms(alarms), m_state(state), m_hub(hub)
{
    // The list of alarms takes objects out of service too.
    connect(&alarms.manager(), &AlarmManager::exclusionChanged, this, &OperatorChanges::showMarks);
}

OperatorChanges::~OperatorChanges() = default;

QStringList OperatorChanges::restore()
{
    QStringList problems;
    for (const ObjectKey object : m_state.objects())
        restoreObject(object, problems);
    for (const ObjectKey object : m_alarms.manager().excludedObjects())
        showMarks(object);
    return problems;
}

void OperatorChanges::restoreObject(ObjectKey object, QStringList& problems)
{
    const RuntimeDatabase::Object* found = m_database.object(object);
    if (!found)
        return; // its changes wait for its return to the point list
    if (const auto limited = applyLimits(object); !limited) {
        problems.append(
            tr("%1: the limits that an operator changed are not in force: %2").arg(found->name, limited.error()));
    }
    if (const auto deadBand = m_state.find(object, Kind::DeadBand)) {
        if (const auto set = m_database.setHysteresis(object, deadBand->value.toDouble()); !set) {
            problems.append(
                tr("%1: the dead band that an operator changed is not in force: %2").arg(found->name, set.error()));
        }
    }
    if (m_state.find(object, Kind::ScanInhibited))
        holdBack(object, true);
    if (const auto substitution = m_state.find(object, Kind::Substitution)) {
        m_data.hold(object);
        enterSubstitute(object, substitution->value.toDouble());
    }
    if (const auto reset = m_state.find(object, Kind::StatisticsReset)) {
        const qint64 resetMs = reset->value.toLongLong();
        // The program ended before the new statistics were written.
        if (m_database.statisticsSinceMs(object).value_or(resetMs) < resetMs)
            m_database.resetStatistics(object, resetMs);
    }
    showMarks(object);
}

void OperatorChanges::renewSubstitutes()
{
    for (const ObjectKey object : m_state.objects(Kind::Substitution)) {
        if (m_database.object(object))
            enterSubstitute(object, m_state.find(object, Kind::Substitution)->value.toDouble());
    }
}

OperatorChanges::Done OperatorChanges::keep(ObjectKey object, Kind kind, const QString& value,
                                            const ScadaOperationMessage& by)
{
    return m_state.set(object, kind, {value, by.user, by.reason, m_hub.currentTime()});
}

OperatorChanges::Done OperatorChanges::setFlag(ObjectKey object, Kind kind, bool isSet, const ScadaOperationMessage& by)
{
    Done kept = isSet ? keep(object, kind, {}, by) : m_state.remove(object, kind);
    if (kept)
        showMarks(object);
    return kept;
}

void OperatorChanges::showMarks(ObjectKey object)
{
    qint32 marks = 0;
    const auto add = [&](Kind kind, qint32 mark) { marks |= m_state.find(object, kind) ? mark : 0; };
    add(Kind::ControlInhibited, ValueMark::ControlInhibited);
    add(Kind::ScanInhibited, ValueMark::ScanInhibited);
    add(Kind::InformationTag, ValueMark::InformationTag);
    if (m_alarms.manager().exclusion(object).isOutOfService)
        marks |= ValueMark::AlarmInhibited;
    if (m_database.setTagMarks(object, marks))
        m_data.noteChanged(object);
}

OperatorChanges::Done OperatorChanges::setControlInhibited(ObjectKey object, bool inhibited,
                                                           const ScadaOperationMessage& by)
{
    return setFlag(object, Kind::ControlInhibited, inhibited, by);
}

OperatorChanges::Done OperatorChanges::setAlarmInhibited(ObjectKey object, bool inhibited,
                                                         const ScadaOperationMessage& by)
{
    if (!m_alarms.manager().setOutOfService(object, inhibited, by.user, by.reason))
        return tl::make_unexpected(inhibited ? tr("alarms of this object are inhibited already")
                                             : tr("alarms of this object are not inhibited"));
    return {};
}

OperatorChanges::Done OperatorChanges::setScanInhibited(ObjectKey object, bool inhibited,
                                                        const ScadaOperationMessage& by)
{
    if (object.type == ScadaObjectType::ChannelObject)
        return tl::make_unexpected(tr("a line is not scanned"));
    if (m_state.find(object, Kind::ScanInhibited).has_value() == inhibited)
        return tl::make_unexpected(inhibited ? tr("this object is not scanned already")
                                             : tr("this object is scanned already"));
    Done kept = setFlag(object, Kind::ScanInhibited, inhibited, by);
    if (kept)
        holdBack(object, inhibited);
    return kept;
}

void OperatorChanges::holdBack(ObjectKey object, bool held)
{
    const QList<ObjectKey> points =
        object.type == ScadaObjectType::RtuObject ? pointsOf(object) : QList<ObjectKey>{object};
    for (const ObjectKey point : points) {
        if (!held) {
            m_data.release(point);
            continue;
        }
        m_data.hold(point);
        const bool isSubstituted = m_state.find(point, Kind::Substitution).has_value();
        if (!isSubstituted && m_database.setStale(point, m_database.now()))
            m_data.noteChanged(point);
    }
}

QList<ObjectKey> OperatorChanges::pointsOf(ObjectKey unit) const
{
    QList<ObjectKey> points;
    const RuntimeDatabase::Object* found = m_database.object(unit);
    for (const ObjectKey point : m_database.objects(ScadaObjectType::Point)) {
        if (found && m_database.object(point)->parent == found->name)
            points.append(point);
    }
    return points;
}

OperatorChanges::Done OperatorChanges::setInformationTag(ObjectKey object, const QString& text,
                                                         const ScadaOperationMessage& by)
{
    Done kept =
        text.isEmpty() ? m_state.remove(object, Kind::InformationTag) : keep(object, Kind::InformationTag, text, by);
    if (kept)
        showMarks(object);
    return kept;
}

OperatorChanges::Done OperatorChanges::substitute(ObjectKey object, double value, const ScadaOperationMessage& by)
{
    const bool isAnalog = object.type == ScadaObjectType::AnalogPoint;
    if (!Korvane::isPointObjectType(object.type))
        return tl::make_unexpected(tr("only the value of a point can be substituted"));
    const bool isState = value == std::trunc(value) && value >= 0 && value <= std::numeric_limits<qint32>::max();
    if (!std::isfinite(value) || (!isAnalog && !isState))
        return tl::make_unexpected(tr("the value does not fit the point"));
    const bool wasSubstituted = m_state.find(object, Kind::Substitution).has_value();
    Done kept = keep(object, Kind::Substitution, textOf(value), by);
    if (!kept)
        return kept;
    if (!wasSubstituted)
        m_data.hold(object);
    enterSubstitute(object, value);
    return {};
}

void OperatorChanges::enterSubstitute(ObjectKey object, double value)
{
    m_database.setHeldByHand(object, true);
    m_data.enter({object, m_database.now(), value, ValueMark::Substituted});
}

OperatorChanges::Done OperatorChanges::endSubstitution(ObjectKey object)
{
    if (!m_state.find(object, Kind::Substitution))
        return tl::make_unexpected(tr("this value is not substituted"));
    Done removed = m_state.remove(object, Kind::Substitution);
    if (!removed)
        return removed;
    m_database.setHeldByHand(object, false);
    // Until the source says something, what was put there by hand says nothing about the process.
    if (m_database.setStale(object, m_database.now()))
        m_data.noteChanged(object);
    m_data.release(object);
    return {};
}

OperatorChanges::Done OperatorChanges::applyLimits(ObjectKey object)
{
    const RuntimeDatabase::Object& stated = *m_database.object(object);
    RuntimeDatabase::Limits limits{stated.lowLow, stated.low, stated.high, stated.highHigh};
    bool isChanged = false;
    for (const auto& [kind, member] : limitKinds) {
        const auto changed = m_state.find(object, kind);
        if (!changed)
            continue;
        limits.*member = changed->value.isEmpty() ? noLimit : changed->value.toDouble();
        isChanged = true;
    }
    if (!isChanged && object.type != ScadaObjectType::AnalogPoint)
        return {};
    return m_database.setLimits(object, limits);
}

OperatorChanges::Done OperatorChanges::setLimit(ObjectKey object, Limit limit, std::optional<double> value,
                                                const ScadaOperationMessage& by)
{
    RuntimeDatabase::Limits limits = m_database.limits(object);
    limits.*limitKinds[static_cast<std::size_t>(limit)].second = value.value_or(noLimit);
    if (value && !std::isfinite(*value))
        return tl::make_unexpected(tr("a limit must be a number"));
    if (auto checked = m_database.checkLimits(object, limits); !checked)
        return checked;
    if (Done kept = keep(object, kindOf(limit), value ? textOf(*value) : QString(), by); !kept)
        return kept;
    m_data.noteChanged(object);
    return m_database.setLimits(object, limits);
}

OperatorChanges::Done OperatorChanges::resetLimits(ObjectKey object)
{
    if (Done removed = m_state.remove(object, Kind::LowLowLimit, Kind::DeadBand); !removed)
        return removed;
    if (auto set = m_database.setHysteresis(object, std::max(m_database.object(object)->hysteresis, 0.0)); !set)
        return set;
    Done applied = applyLimits(object);
    m_data.noteChanged(object);
    return applied;
}

OperatorChanges::Done OperatorChanges::setDeadBand(ObjectKey object, double deadBand, const ScadaOperationMessage& by)
{
    if (object.type != ScadaObjectType::AnalogPoint || !std::isfinite(deadBand) || deadBand < 0)
        return tl::make_unexpected(tr("a dead band is a number from 0 on, of an analog point"));
    if (Done kept = keep(object, Kind::DeadBand, textOf(deadBand), by); !kept)
        return kept;
    m_data.noteChanged(object);
    return m_database.setHysteresis(object, deadBand);
}

OperatorChanges::Done OperatorChanges::resetStatistics(ObjectKey object, const ScadaOperationMessage& by)
{
    if (!m_database.hasStatistics(object))
        return tl::make_unexpected(tr("this object has no statistics so far"));
    const qint64 now = m_database.now();
    if (Done kept = keep(object, Kind::StatisticsReset, QString::number(now), by); !kept)
        return kept;
    m_database.resetStatistics(object, now);
    m_data.noteChanged(object);
    return {};
}

QList<ObjectKey> OperatorChanges::objectsMarked(qint32 mark) const
{
    const QList<ObjectKey> candidates = m_state.objects() + m_alarms.manager().excludedObjects();
    const QSet<ObjectKey> each(candidates.begin(), candidates.end());
    QList<ObjectKey> found;
    for (const ObjectKey object : each) {
        if ((m_database.tagMarks(object) & mark) != 0)
            found.append(object);
    }
    return found;
}
