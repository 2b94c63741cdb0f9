#pragma once

#include "platform/data/objectkey.h"
#include "platform/data/scadaalarm.h"
#include "scada/scadaexport.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

/// The alarms of the system, in the terms of IEC 62682. Implemented by the host.
///
/// An alarm that an operation does not find, or that is not in a state for it, stays as it is and gives false.
class KORVANE_SCADA_EXPORT SystemAlarmManagerInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SystemAlarmManagerInterface)

public:
    explicit SystemAlarmManagerInterface(QObject* parent);
    ~SystemAlarmManagerInterface() override;

    /// Takes an alarm whose condition has come.
    /// \returns the number of the occurrence.
    virtual quint64 raiseAlarm(const ScadaAlarm& alarm) = 0;
    /// States that the condition of an occurrence is gone, at a time in UTC.
    virtual bool returnAlarm(quint64 id, const QDateTime& time) = 0;
    /// Acknowledges one occurrence; it ends when its condition is gone too.
    virtual bool acknowledge(quint64 id, const QString& user) = 0;
    /// Shelves an occurrence until a time in UTC.
    virtual bool shelve(quint64 id, const QDateTime& until, const QString& user, const QString& reason) = 0;
    /// Ends shelving before its time.
    virtual bool unshelve(quint64 id, const QString& user) = 0;
    /// Suppresses the alarms of \p object while a state of the plant makes them meaningless, or ends that.
    virtual bool setSuppressed(ObjectKey object, bool suppressed, const QString& reason) = 0;
    /// Takes the alarms of \p object out of service for maintenance, or back.
    virtual bool setOutOfService(ObjectKey object, bool outOfService, const QString& user, const QString& reason) = 0;
    /// An occurrence as it stands; one with number 0 when there is none of that number.
    virtual ScadaAlarm alarm(quint64 id) const = 0;
    /// Every occurrence that has not returned to normal, newest first.
    virtual QList<ScadaAlarm> activeAlarms() const = 0;
    /// The first occurrence since all of an area were normal: what began it. With number 0 when all are.
    virtual ScadaAlarm firstOut(const QString& area) const = 0;
    /// The highest severity that waits for an operator; -1 when none does.
    virtual int highestUnacknowledgedSeverity() const = 0;
};
