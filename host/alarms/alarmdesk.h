#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <utility>
#include <vector>

class AlarmManager;
class CanvasScadaActionManagerInterface;
class KorvaneScadaCoreInterface;
struct ScadaAlarm;

/// What operators do to several alarms at once, and how the rest of the system hears of it.
///
/// Who acknowledges is the hub's runtime manager's current user, without one the machine's user. Each act is told once:
/// acknowledged() here, and on the hub's runtime manager alarmAcked() for one point, alarmSequenceAcked() for a list, a
/// page, an area or all.
class KORVANE_HOST_EXPORT AlarmDesk : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmDesk)

public:
    /// \param manager, hub not owned, must outlive the desk
    AlarmDesk(AlarmManager& manager, KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~AlarmDesk() override;

    /// Acknowledges the alarms of one point; false when none waited.
    bool acknowledgePoint(uint pointId);
    /// Acknowledges the alarms of several points; the number of alarms that waited.
    int acknowledgePoints(const QList<uint>& pointIds);
    /// Acknowledges the occurrences of those numbers; the number that waited.
    int acknowledge(const QList<quint64>& ids);
    /// Acknowledges the alarms of every object that a page shows; the number that waited.
    int acknowledgePage(const CanvasScadaActionManagerInterface& page);
    /// Acknowledges every alarm of an area, of all areas with an empty name; the number that waited.
    int acknowledgeArea(const QString& area);

    /// Shelves an occurrence until a time in UTC; false when it is not there to be shelved.
    bool shelve(quint64 id, const QDateTime& until, const QString& reason);
    bool unshelve(quint64 id);
    /// Takes the alarms of an object out of service, or back; false when they are so already.
    bool setOutOfService(ObjectKey object, bool outOfService, const QString& reason);
    /// Keeps the alarms of an object from the operators while a state of the plant makes them meaningless, or ends that;
    /// false when they are so already.
    bool setSuppressed(ObjectKey object, bool suppressed, const QString& reason);

    /// What an operator does about alarms; suppressing them is taking them out of service.
    enum class Act { Acknowledge, Shelve, TakeOutOfService };
    /// Says whether whoever operates may do that about alarms of an object; everything unless set. What he may not is
    /// left as if it were not there.
    void setPermission(std::function<bool(Act act, ObjectKey object)> permits) { m_permits = std::move(permits); }
    /// Whether whoever operates may do that now.
    bool permits(Act act, ObjectKey object) const { return !m_permits || m_permits(act, object); }

    /// Who operates, as the log states it.
    QString user() const;

Q_SIGNALS:
    /// Alarms of these objects were acknowledged.
    void acknowledged(const QList<ObjectKey>& objects);

private:
    int acknowledgeAll(const std::vector<quint64>& ids, bool isOnePoint);

    AlarmManager& m_manager;
    KorvaneScadaCoreInterface& m_hub;
    std::function<bool(Act, ObjectKey)> m_permits;
};
