#pragma once

#include "platform/data/objectkey.h"
#include "platform/platformexport.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>

/// One occurrence of an alarm, in the terms of IEC 62682.
struct KORVANE_PLATFORM_EXPORT ScadaAlarm
{
    /// What the alarm waits for.
    enum class State : qint32 {
        Normal,                 ///< for its condition to come
        Unacknowledged,         ///< for an operator, its condition holds
        Acknowledged,           ///< for its condition to go
        ReturnedUnacknowledged, ///< for an operator, its condition is gone
        Shelved,                ///< for the end of the time an operator set
        Suppressed,             ///< for the plant state that suppresses it to end
        OutOfService,           ///< for maintenance to end
    };

    /// What the alarm watches.
    enum class Cause : qint32 { LowLow, Low, High, HighHigh, StateChange, RateOfChange, Quality, Communication };

    static constexpr int lowestSeverity = 0;
    static constexpr int highestSeverity = 9;

    quint64 id = 0; ///< of this occurrence, ascending; 0 before the alarm manager has taken it
    Korvane::ScadaObjectType objectType = Korvane::ScadaObjectType::NoObject;
    qint32 objectId = 0;
    QString tag;  ///< tag string of what is watched
    QString area; ///< area of responsibility
    int severity = lowestSeverity;
    State state = State::Normal;
    Cause cause = Cause::StateChange;
    QVariant value; ///< that raised it
    QVariant limit; ///< that was crossed; invalid for a cause without one
    QString message;
    QDateTime raised;       ///< UTC, when its condition had held for the alarm's on delay
    QDateTime returned;     ///< UTC; invalid while the condition holds
    QDateTime acknowledged; ///< UTC; invalid before
    QString acknowledgedBy;

    ObjectKey object() const { return {objectType, objectId}; }
    /// Whether an operator has yet to acknowledge it.
    bool isUnacknowledged() const { return state == State::Unacknowledged || state == State::ReturnedUnacknowledged; }

    bool isEqual(const ScadaAlarm& other) const;
};

Q_DECLARE_METATYPE(ScadaAlarm)
