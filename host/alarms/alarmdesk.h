#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QList>
#include <QObject>
#include <QString>

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

    /// Who operates, as the log states it.
    QString user() const;

Q_SIGNALS:
    /// Alarms of these objects were acknowledged.
    void acknowledged(const QList<ObjectKey>& objects);

private:
    int acknowledgeAll(const std::vector<quint64>& ids, bool isOnePoint);

    AlarmManager& m_manager;
    KorvaneScadaCoreInterface& m_hub;
};
