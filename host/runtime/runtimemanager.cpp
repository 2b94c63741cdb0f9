#include "host/runtime/runtimemanager.h"

#include "host/accounts/databasemanager.h"
#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"
#include "host/canvas/canvasmanager.h"
#include "host/control/auditlog.h"
#include "host/control/controlpath.h"
#include "host/control/operatorchanges.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

using Korvane::ScadaObjectType;
using Kind = OperatingState::Kind;

QDateTime utc(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
}

QDateTime utc(const std::optional<qint64>& ms)
{
    return ms ? utc(*ms) : QDateTime();
}

QVariant limitValue(double value)
{
    return std::isnan(value) ? QVariant() : QVariant(value);
}

} // namespace

RuntimeManager::RuntimeManager(const Services& services, const QString& workplace, QObject* parent)
    : KorvaneScadaRuntimManagerInterface(parent), m_services(services), m_workplace(workplace)
{
    connect(&services.path, &ControlPath::progressed, this, &RuntimeManager::remoteControled);
    connect(&services.path, &ControlPath::finished, this, &RuntimeManager::remoteControlFinished);
}

RuntimeManager::~RuntimeManager() = default;

RuntimeManager::Origin::Origin(RuntimeManager& manager, const QString& page)
    : m_manager(manager), m_before(std::exchange(manager.m_origin, page))
{
}

RuntimeManager::Origin::~Origin()
{
    m_manager.m_origin = m_before;
}

quint32 RuntimeManager::command(Operation operation, ObjectKey object, const QVariant& value, const QString& reason)
{
    return m_services.path.begin({operation, object, value, reason, m_origin});
}

template <typename Change>
quint32 RuntimeManager::change(Operation operation, ObjectKey object, const QVariant& value, const QString& reason,
                               Change change)
{
    const AccountRole role = operation == Operation::Tag ? AccountRole::Operator : AccountRole::Supervisor;
    return m_services.path.begin({operation, object, value, reason, m_origin, std::move(change), role});
}

// Control

quint32 RuntimeManager::select(ObjectKey object, const QString& reason)
{
    return command(Operation::Select, object, {}, reason);
}

quint32 RuntimeManager::operate(ObjectKey object, const QVariant& value, const QString& reason)
{
    return command(Operation::Operate, object, value, reason);
}

bool RuntimeManager::cancel(quint32 requestId)
{
    return m_services.path.cancel(requestId);
}

quint32 RuntimeManager::setPoint(ObjectKey object, double value, const QString& reason)
{
    return command(Operation::SetPoint, object, value, reason);
}

quint32 RuntimeManager::raise(ObjectKey object, const QString& reason)
{
    return command(Operation::Raise, object, {}, reason);
}

quint32 RuntimeManager::lower(ObjectKey object, const QString& reason)
{
    return command(Operation::Lower, object, {}, reason);
}

bool RuntimeManager::confirm(quint32 requestId, const QString& secondUser)
{
    return m_services.path.confirm(requestId, secondUser);
}

QDateTime RuntimeManager::selectedUntil(ObjectKey object) const
{
    return m_services.path.selectedUntil(object);
}

QString RuntimeManager::selectedBy(ObjectKey object) const
{
    return m_services.path.selectedBy(object);
}

QList<ScadaOperationMessage> RuntimeManager::pendingRequests() const
{
    return m_services.path.pending();
}

ScadaOperationMessage RuntimeManager::request(quint32 requestId) const
{
    return m_services.path.request(requestId);
}

std::chrono::milliseconds RuntimeManager::feedbackTimeout() const
{
    return m_services.path.feedbackTimeout();
}

void RuntimeManager::setFeedbackTimeout(std::chrono::milliseconds timeout)
{
    m_services.path.setFeedbackTimeout(timeout);
}

// Manual entry and substitution

quint32 RuntimeManager::enterValue(ObjectKey object, const QVariant& value, const QString& reason)
{
    return command(Operation::EnterValue, object, value, reason);
}

quint32 RuntimeManager::substitute(ObjectKey object, const QVariant& value, const QString& reason)
{
    return change(Operation::Substitute, object, value, reason, [this, object](const ScadaOperationMessage& by) {
        bool isNumber = false;
        const double number = by.value.toDouble(&isNumber);
        return m_services.changes.substitute(object, isNumber ? number : std::nan(""), by);
    });
}

quint32 RuntimeManager::endSubstitution(ObjectKey object, const QString& reason)
{
    return change(Operation::EndSubstitution, object, {}, reason,
                  [this, object](const ScadaOperationMessage&) { return m_services.changes.endSubstitution(object); });
}

QString RuntimeManager::substitutedBy(ObjectKey object) const
{
    const auto entry = m_services.changes.state().find(object, Kind::Substitution);
    return entry ? entry->user : QString();
}

QList<ObjectKey> RuntimeManager::substitutedObjects() const
{
    QList<ObjectKey> known;
    for (const ObjectKey object : m_services.changes.state().objects(Kind::Substitution)) {
        if (m_services.database.object(object)) // others wait for their return to the point list
            known.append(object);
    }
    return known;
}

// Marks and inhibits

quint32 RuntimeManager::inhibit(ObjectKey object, bool inhibited, const QString& reason, Inhibit set)
{
    return change(Operation::Inhibit, object, inhibited, reason,
                  [this, object, inhibited, set](const ScadaOperationMessage& by) {
                      return (m_services.changes.*set)(object, inhibited, by);
                  });
}

quint32 RuntimeManager::setControlInhibited(ObjectKey object, bool inhibited, const QString& reason)
{
    return inhibit(object, inhibited, reason, &OperatorChanges::setControlInhibited);
}

quint32 RuntimeManager::setAlarmInhibited(ObjectKey object, bool inhibited, const QString& reason)
{
    return inhibit(object, inhibited, reason, &OperatorChanges::setAlarmInhibited);
}

quint32 RuntimeManager::setScanInhibited(ObjectKey object, bool inhibited, const QString& reason)
{
    return inhibit(object, inhibited, reason, &OperatorChanges::setScanInhibited);
}

quint32 RuntimeManager::setInformationTag(ObjectKey object, const QString& text)
{
    return change(Operation::Tag, object, text, {}, [this, object, text](const ScadaOperationMessage& by) {
        return m_services.changes.setInformationTag(object, text, by);
    });
}

QString RuntimeManager::informationTag(ObjectKey object) const
{
    const auto entry = m_services.changes.state().find(object, Kind::InformationTag);
    return entry ? entry->value : QString();
}

qint32 RuntimeManager::tagMarks(ObjectKey object) const
{
    return m_services.database.tagMarks(object);
}

QList<ObjectKey> RuntimeManager::objectsMarked(ValueMark::Tag mark) const
{
    return m_services.changes.objectsMarked(mark);
}

// Limits

QVariant RuntimeManager::statedLimit(ObjectKey object, LimitKind kind) const
{
    const RuntimeDatabase::Object* found = m_services.database.object(object);
    if (!found)
        return {};
    switch (kind) {
    case LimitKind::LowLow:
        return limitValue(found->lowLow);
    case LimitKind::Low:
        return limitValue(found->low);
    case LimitKind::High:
        return limitValue(found->high);
    case LimitKind::HighHigh:
        return limitValue(found->highHigh);
    }
    return {};
}

quint32 RuntimeManager::setLimit(ObjectKey object, LimitKind kind, const QVariant& value, const QString& reason)
{
    return change(Operation::ChangeLimit, object, value, reason, [this, object, kind](const ScadaOperationMessage& by) {
        bool isNumber = false;
        const double number = by.value.toDouble(&isNumber);
        std::optional<double> limit;
        if (by.value.isValid())
            limit = isNumber ? number : std::nan("");
        return m_services.changes.setLimit(object, kind, limit, by);
    });
}

quint32 RuntimeManager::resetLimits(ObjectKey object, const QString& reason)
{
    return change(Operation::ChangeLimit, object, {}, reason,
                  [this, object](const ScadaOperationMessage&) { return m_services.changes.resetLimits(object); });
}

double RuntimeManager::deadBand(ObjectKey object) const
{
    return m_services.database.hysteresis(object);
}

quint32 RuntimeManager::setDeadBand(ObjectKey object, double deadBand, const QString& reason)
{
    return change(Operation::ChangeDeadBand, object, deadBand, reason,
                  [this, object, deadBand](const ScadaOperationMessage& by) {
                      return m_services.changes.setDeadBand(object, deadBand, by);
                  });
}

// Acknowledgement

bool RuntimeManager::acknowledgePoint(uint pointId)
{
    return m_services.alarms.desk().acknowledgePoint(pointId);
}

int RuntimeManager::acknowledgePoints(const QList<uint>& pointIds)
{
    return m_services.alarms.desk().acknowledgePoints(pointIds);
}

int RuntimeManager::acknowledgePage(const KVCanvasInterface* canvas)
{
    for (const auto& page : m_services.pages.pages()) {
        if (page->canvas.get() == canvas)
            return m_services.alarms.desk().acknowledgePage(*page->actions);
    }
    return 0;
}

int RuntimeManager::acknowledgeArea(const QString& area)
{
    return m_services.alarms.desk().acknowledgeArea(area);
}

bool RuntimeManager::shelve(ObjectKey object, const QDateTime& until, const QString& reason)
{
    bool isShelved = false;
    for (const quint64 id : m_services.alarms.manager().standingOf(object))
        isShelved |= m_services.alarms.desk().shelve(id, until, reason);
    return isShelved;
}

bool RuntimeManager::unshelve(ObjectKey object, const QString&)
{
    bool isBack = false;
    for (const quint64 id : m_services.alarms.manager().standingOf(object))
        isBack |= m_services.alarms.desk().unshelve(id);
    return isBack;
}

void RuntimeManager::silence()
{
    Q_EMIT silenced();
}

// Scan and communication of units and lines

quint32 RuntimeManager::setScanning(ObjectKey unit, bool scanning, const QString& reason)
{
    return change(Operation::Scan, unit, scanning, reason, [this, unit, scanning](const ScadaOperationMessage& by) {
        if (unit.type != ScadaObjectType::RtuObject)
            return OperatorChanges::Done(tl::make_unexpected(tr("only a unit is scanned")));
        return m_services.changes.setScanInhibited(unit, !scanning, by);
    });
}

quint32 RuntimeManager::startScan(ObjectKey unit, const QString& reason)
{
    return setScanning(unit, true, reason);
}

quint32 RuntimeManager::stopScan(ObjectKey unit, const QString& reason)
{
    return setScanning(unit, false, reason);
}

bool RuntimeManager::isScanning(ObjectKey unit) const
{
    return unit.type == ScadaObjectType::RtuObject && m_services.database.object(unit) &&
           (tagMarks(unit) & ValueMark::ScanInhibited) == 0;
}

// A line is reached through whatever delivers it, its units or their points.
ValueSource* RuntimeManager::sourceOfLine(ObjectKey line) const
{
    const RuntimeDatabase& database = m_services.database;
    const auto isBelow = [&database, line](ObjectKey object) {
        if (Korvane::isPointObjectType(object.type)) {
            const RuntimeDatabase::Object* point = database.object(object);
            object = point ? database.findByName(ScadaObjectType::RtuObject, point->parent) : ObjectKey();
        }
        const RuntimeDatabase::Object* unit =
            object.type == ScadaObjectType::RtuObject ? database.object(object) : nullptr;
        return object == line || (unit && database.findByName(ScadaObjectType::ChannelObject, unit->parent) == line);
    };
    for (const auto& source : m_services.data.sources()) {
        const std::vector<ObjectKey> objects = source->objects();
        if (std::any_of(objects.begin(), objects.end(), isBelow))
            return source.get();
    }
    return nullptr;
}

quint32 RuntimeManager::reconnect(ObjectKey line, const QString& reason)
{
    return change(Operation::Reconnect, line, {}, reason, [this, line](const ScadaOperationMessage&) {
        ValueSource* source = line.type == ScadaObjectType::ChannelObject ? sourceOfLine(line) : nullptr;
        if (!source)
            return OperatorChanges::Done(tl::make_unexpected(tr("no source is known for this line")));
        return source->reconnect(m_services.database.now());
    });
}

bool RuntimeManager::isCommunicating(ObjectKey unitOrLine) const
{
    const QuorixData data = record(unitOrLine);
    const QuorixValue* quality = data.GetValue("quality");
    const QuorixValue* state = data.GetValue("commState");
    return state && quality && state->toInt32() != 0 && (quality->toInt32() & ValueMark::unreliable) == 0;
}

QDateTime RuntimeManager::lastCommunicationChange(ObjectKey unitOrLine, bool onLine) const
{
    const auto field = onLine ? DataCode::DataField::CommOnlineTime : DataCode::DataField::CommOfflineTime;
    return m_services.database.fieldValue(unitOrLine, field).toDateTime();
}

// Values and fields read back

QVariant RuntimeManager::value(ObjectKey object) const
{
    const QuorixData data = record(object);
    const QuorixValue* value = data.GetValue(DataFieldInfo::currentValueMember);
    return value ? value->toVariant() : QVariant();
}

QuorixData RuntimeManager::record(ObjectKey object) const
{
    return m_services.database.presentRecord(object);
}

QVariant RuntimeManager::fieldValue(ObjectKey object, DataCode::DataField field) const
{
    const DataFieldInfo* info = DataFieldInfo::find(field);
    if (!info || !info->isFieldOf(object.type))
        return {};
    switch (info->supplier()) {
    case DataFieldInfo::Supplier::Record: {
        const QuorixData data = record(object);
        const QuorixValue* value = data.GetValue(info->recordMember);
        return value ? value->toVariant() : QVariant();
    }
    case DataFieldInfo::Supplier::RuntimeDatabase:
        return m_services.database.fieldValue(object, field);
    case DataFieldInfo::Supplier::History:
        return m_services.data.historyValue(object, field);
    }
    return {};
}

QDateTime RuntimeManager::lastChange(ObjectKey object) const
{
    return utc(m_services.database.lastChangeMs(object));
}

bool RuntimeManager::readAgain(ObjectKey object)
{
    ValueSource* source = m_services.data.sourceOf(object);
    return source && source->readAgain(object);
}

// Statistics

quint32 RuntimeManager::resetStatistics(ObjectKey object, const QString& reason)
{
    return change(Operation::ResetStatistics, object, {}, reason, [this, object](const ScadaOperationMessage& by) {
        return m_services.changes.resetStatistics(object, by);
    });
}

QDateTime RuntimeManager::statisticsStart(ObjectKey object) const
{
    return utc(m_services.database.statisticsSinceMs(object));
}

// Histories and events

QList<RuntimeManager::Sample> RuntimeManager::history(ObjectKey object, const QDateTime& from, const QDateTime& to,
                                                      int mostSamples) const
{
    const bool isAnalog = object.type == ScadaObjectType::AnalogPoint;
    QList<Sample> samples;
    for (const SampleHistory::Value& value :
         m_services.data.history().read(object, from.toMSecsSinceEpoch(), to.toMSecsSinceEpoch(),
                                        static_cast<std::size_t>(std::max(mostSamples, 0))))
        samples.append({utc(value.timeMs),
                        isAnalog ? QVariant(value.value) : QVariant(static_cast<qint32>(value.value)), value.quality});
    return samples;
}

QList<RuntimeManager::Event> RuntimeManager::events(ObjectKey object, const QDateTime& from, const QDateTime& to,
                                                    int most) const
{
    QList<Event> events;
    const auto lines =
        m_services.alarms.log().read({from.toMSecsSinceEpoch(), to.toMSecsSinceEpoch(), object, std::max(most, 0)});
    if (!lines)
        return events;
    for (const AlarmTransition& line : *lines) {
        const bool isEvent = line.kind == AlarmTransition::Kind::Event;
        const QString text =
            isEvent ? line.alarm.message : tr("%1: %2").arg(AlarmTexts::kind(line.kind), line.alarm.message);
        events.append({line.time, line.alarm.object(), text, line.user});
    }
    return events;
}

QList<ScadaOperationMessage> RuntimeManager::operations(const QDateTime& from, const QDateTime& to, int most) const
{
    return m_services.audit.read(from, to, most).value_or(QList<ScadaOperationMessage>());
}

// Alarms counted

int RuntimeManager::alarmCount(int severity) const
{
    int count = 0;
    for (const ScadaAlarm& alarm : m_services.alarms.manager().activeAlarms())
        count += alarm.severity == severity && !alarm.returned.isValid() ? 1 : 0;
    return count;
}

int RuntimeManager::unacknowledgedCount(const QString& area) const
{
    return m_services.alarms.manager().unacknowledgedCount(area);
}

// Stations and areas

QStringList RuntimeManager::stations() const
{
    QStringList names;
    for (const PointDirectory::Station& station : m_services.database.stations())
        names.append(station.name);
    return names;
}

QList<ObjectKey> RuntimeManager::objectsOf(const QString& station) const
{
    QList<ObjectKey> objects;
    for (const PointDirectory::Station& each : m_services.database.stations()) {
        for (const PointDirectory::Entry& entry : each.objects) {
            if (each.name == station)
                objects.append(entry.key);
        }
    }
    return objects;
}

QStringList RuntimeManager::areas() const
{
    QStringList names;
    const auto& account = m_services.users.currentAccount();
    if (account && !account->areas.isEmpty())
        return account->areas;
    if (m_services.users.isSecured() && !account)
        return names;
    QSet<QString> known;
    for (const ScadaObjectType family :
         {ScadaObjectType::Point, ScadaObjectType::RtuObject, ScadaObjectType::ChannelObject}) {
        for (const ObjectKey object : m_services.database.objects(family)) {
            const QString& area = m_services.database.object(object)->area;
            if (!area.isEmpty() && !known.contains(area))
                names.append(area);
            known.insert(area);
        }
    }
    return names;
}

QString RuntimeManager::areaOf(ObjectKey object) const
{
    const RuntimeDatabase::Object* found = m_services.database.object(object);
    return found ? found->area : QString();
}

// Session and rights

QString RuntimeManager::currentUser() const
{
    return m_services.path.user();
}

QString RuntimeManager::workplace() const
{
    return m_workplace;
}

bool RuntimeManager::mayControl(ObjectKey object) const
{
    const RuntimeDatabase::Object* found = m_services.database.object(object);
    return found && found->control.isControllable() && m_services.users.may(found->control.role, found->area);
}

bool RuntimeManager::mayOpenPage(const QString& page) const
{
    return !m_mayOpenPage || m_mayOpenPage(page);
}

void RuntimeManager::endSession()
{
    const QString leaving = currentUser();
    m_services.users.logOff();
    m_services.path.endSession(leaving);
}

// Time, simulation and replay

bool RuntimeManager::isReplay() const
{
    return m_isSimulated || m_replay.speed;
}

double RuntimeManager::replaySpeed() const
{
    return m_replay.speed ? m_replay.speed() : 1;
}

bool RuntimeManager::setReplaySpeed(double speed)
{
    return m_replay.setSpeed && speed >= 0 && std::isfinite(speed) && m_replay.setSpeed(speed);
}

bool RuntimeManager::seekReplay(const QDateTime& time)
{
    return m_replay.seek && time.isValid() && m_replay.seek(time.toMSecsSinceEpoch());
}

// Health of the sources

QList<RuntimeManager::SourceHealth> RuntimeManager::sources() const
{
    QList<SourceHealth> health;
    const auto& sources = m_services.data.sources();
    for (std::size_t place = 0; place < sources.size(); ++place) {
        const ValueSource& source = *sources[place];
        const DataService::SourceFigures& figures = m_services.data.sourceFigures(place);
        const bool isConnected =
            source.state() == ValueSource::State::Running || source.state() == ValueSource::State::Ended;
        health.append({source.description(), isConnected, figures.newestMs > 0 ? utc(figures.newestMs) : QDateTime(),
                       figures.samples, figures.errors, figures.lastError});
    }
    return health;
}

bool RuntimeManager::isHealthy() const
{
    const auto& sources = m_services.data.sources();
    return !sources.empty() && std::all_of(sources.begin(), sources.end(), [](const auto& source) {
        return source->state() == ValueSource::State::Running;
    });
}
