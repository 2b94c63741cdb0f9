#pragma once

#include "platform/data/scadaobjecttype.h"
#include "platform/platformexport.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>

/// An operator's action on the process: what was asked, by whom, and what became of it. The terms are those of the
/// control model of IEC 61850-7-2.
struct KORVANE_PLATFORM_EXPORT ScadaOperationMessage
{
    enum class Operation : qint32 {
        Select,
        Operate,
        Cancel,
        SetPoint,
        Raise,
        Lower,
        EnterValue,
        Substitute,
        EndSubstitution,
        Inhibit, ///< commands, alarms or scan, or allow them again
        Tag,     ///< hang an information tag on, or take it off
        ChangeLimit,
        ChangeDeadBand,
        Scan,      ///< start or stop asking a unit
        Reconnect, ///< a line
        ResetStatistics,
    };

    /// How far the request has come; everything behind Sent is its end.
    enum class Outcome : qint32 {
        Requested,    ///< waits for the checks
        Sent,         ///< waits for the source's answer and the read-back
        Done,         ///< confirmed by the read-back
        NotPermitted, ///< role, area or page
        Inhibited,    ///< the point's inhibit mark
        Interlocked,  ///< the interlock condition did not hold
        NotConfirmed, ///< the operator, or the second person, did not confirm
        NotSelected,  ///< operate without select, or the selection has run out
        OutOfLimits,  ///< the value
        Refused,      ///< by the source
        TimedOut,     ///< no answer, or no read-back, within the limit
        Cancelled,
    };

    quint32 requestId = 0; ///< ascending; 0 for a message that no request stands behind
    Operation operation = Operation::Operate;
    Outcome outcome = Outcome::Requested;
    Korvane::ScadaObjectType objectType = Korvane::ScadaObjectType::NoObject;
    qint32 objectId = 0;
    QString tag;
    QVariant value;  ///< asked for; invalid where the operation has none
    QVariant before; ///< the value that stood before
    QString user;
    QString secondUser; ///< who confirmed beside the user; empty where nobody had to
    QString reason;
    QString text;   ///< why it ended as it did, for an operator's eyes
    QDateTime time; ///< UTC, of this state of the message

    /// Whether nothing more will come of the request.
    bool isFinished() const { return outcome != Outcome::Requested && outcome != Outcome::Sent; }

    bool isEqual(const ScadaOperationMessage& other) const;
};

Q_DECLARE_METATYPE(ScadaOperationMessage)
