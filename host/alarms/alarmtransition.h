#pragma once

#include "platform/data/scadaalarm.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

/// One change of an alarm, or an event of the system: a line of the log.
struct AlarmTransition
{
    enum class Kind : qint32 {
        Raised,             ///< the condition came
        Returned,           ///< the condition is gone
        Acknowledged,       ///< by an operator
        Shelved,            ///< by an operator, until a time
        Unshelved,          ///< by an operator, or since its time came
        Suppressed,         ///< by a state of the plant
        SuppressionEnded,   ///< the state of the plant is gone
        TakenOutOfService,  ///< for maintenance
        PutBackIntoService, ///< maintenance is over
        Event,              ///< none of an alarm: the alarm's message says what
    };

    quint64 number = 0; ///< of the line, ascending; 0 before the log has it
    Kind kind = Kind::Event;
    QDateTime time;      ///< UTC
    ScadaAlarm alarm;    ///< as it stands now; with state Normal it has left the list. Its number is 0 for an event.
    QString user = {};   ///< empty for what no operator did
    QString reason = {}; ///< as the operator stated it
    QDateTime until;     ///< end of shelving, UTC; invalid for any other kind

    /// Whether the alarm is news for an operator: it came, or nothing keeps it from him any more.
    bool isAnnouncement() const { return alarm.id != 0 && alarm.isUnacknowledged() && kind != Kind::Returned; }
};

Q_DECLARE_METATYPE(AlarmTransition)
