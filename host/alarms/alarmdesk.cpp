#include "host/alarms/alarmdesk.h"

#include "host/alarms/alarmmanager.h"
#include "host/core/machineuser.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"
#include "scada/hub/korvanescadaruntimmanagerinterface.h"

#include <QSet>

namespace {

ObjectKey pointOf(uint id)
{
    const auto signedId = static_cast<qint32>(id);
    return {Korvane::pointTypeOfId(signedId), signedId};
}

} // namespace

AlarmDesk::AlarmDesk(AlarmManager& manager, KorvaneScadaCoreInterface& hub, QObject* parent)
    : QObject(parent), m_manager(manager), m_hub(hub)
{
}

AlarmDesk::~AlarmDesk() = default;

QString AlarmDesk::user() const
{
    const KorvaneScadaRuntimManagerInterface* runtime = m_hub.runtimeManager();
    return runtime ? runtime->currentUser() : machineUser(); // without sessions, whoever uses the machine
}

int AlarmDesk::acknowledgeAll(const std::vector<quint64>& ids, bool isOnePoint)
{
    QList<ObjectKey> objects;
    QList<uint> points;
    QSet<ObjectKey> known;
    int count = 0;
    const QString operatorName = user();
    for (const quint64 id : ids) {
        const ScadaAlarm alarm = m_manager.alarm(id);
        if (!permits(Act::Acknowledge, alarm.object()) || !m_manager.acknowledge(id, operatorName))
            continue;
        ++count;
        const ObjectKey object = alarm.object();
        if (known.contains(object))
            continue;
        known.insert(object);
        objects.append(object);
        if (Korvane::isPointObjectType(object.type))
            points.append(static_cast<uint>(object.id));
    }
    if (count == 0)
        return 0;
    Q_EMIT acknowledged(objects);
    KorvaneScadaRuntimManagerInterface* runtime = m_hub.runtimeManager();
    if (!runtime || points.isEmpty())
        return count;
    if (isOnePoint)
        Q_EMIT runtime->alarmAcked(points.constFirst());
    else
        Q_EMIT runtime->alarmSequenceAcked(points);
    return count;
}

bool AlarmDesk::acknowledgePoint(uint pointId)
{
    return acknowledgeAll(m_manager.standingOf(pointOf(pointId)), true) > 0;
}

int AlarmDesk::acknowledgePoints(const QList<uint>& pointIds)
{
    std::vector<quint64> ids;
    for (const uint id : pointIds) {
        const std::vector<quint64> standing = m_manager.standingOf(pointOf(id));
        ids.insert(ids.end(), standing.begin(), standing.end());
    }
    return acknowledgeAll(ids, false);
}

int AlarmDesk::acknowledge(const QList<quint64>& ids)
{
    return acknowledgeAll(std::vector<quint64>(ids.begin(), ids.end()), false);
}

int AlarmDesk::acknowledgePage(const CanvasScadaActionManagerInterface& page)
{
    std::vector<quint64> ids;
    for (const ObjectKey object : page.boundObjects()) {
        const std::vector<quint64> standing = m_manager.standingOf(object);
        ids.insert(ids.end(), standing.begin(), standing.end());
    }
    return acknowledgeAll(ids, false);
}

int AlarmDesk::acknowledgeArea(const QString& area)
{
    return acknowledgeAll(m_manager.waiting(area), false);
}

bool AlarmDesk::shelve(quint64 id, const QDateTime& until, const QString& reason)
{
    return permits(Act::Shelve, m_manager.alarm(id).object()) && m_manager.shelve(id, until, user(), reason);
}

bool AlarmDesk::unshelve(quint64 id)
{
    return permits(Act::Shelve, m_manager.alarm(id).object()) && m_manager.unshelve(id, user());
}

bool AlarmDesk::setOutOfService(ObjectKey object, bool outOfService, const QString& reason)
{
    return permits(Act::TakeOutOfService, object) && m_manager.setOutOfService(object, outOfService, user(), reason);
}

bool AlarmDesk::setSuppressed(ObjectKey object, bool suppressed, const QString& reason)
{
    const bool isPermitted = !suppressed || permits(Act::TakeOutOfService, object); // nothing is hidden by ending it
    return isPermitted && m_manager.setSuppressed(object, suppressed, user(), reason);
}
