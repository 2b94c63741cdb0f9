#pragma once

#include "host/accounts/accountrole.h"
#include "host/hostexport.h"

#include <QString>

#include <chrono>
#include <limits>

/// How commands to an object are given and what must hold for them, as the point list states it.
struct KORVANE_HOST_EXPORT ControlSetting
{
    enum class Kind : quint8 {
        None,        ///< takes no commands
        Direct,      ///< at once
        SelectFirst, ///< in two steps: select, then operate while the selection holds
        Manual,      ///< its value is entered by hand; no source supplies it
    };
    enum class Confirmation : quint8 {
        None,
        User,   ///< the operator, by his password
        Second, ///< a second person besides, by his own
    };

    Kind kind = Kind::None;
    AccountRole role = AccountRole::Operator; ///< lowest that may send commands
    Confirmation confirmation = Confirmation::None;
    bool isReasonNeeded = false;
    /// Bounds of a setpoint in the point's unit; NaN for none.
    double low = std::numeric_limits<double>::quiet_NaN();
    double high = std::numeric_limits<double>::quiet_NaN();
    /// What raise and lower add and take away, in the point's unit; 0 where they can't be sent.
    double step = 0;
    /// Point whose value shows that the command was done; empty for the object itself.
    QString feedback = {};
    double tolerance = 0; ///< how far the feedback may lie from the value sent, in its unit
    /// How long the feedback may take; 0 for the system's own time.
    std::chrono::milliseconds timeout{0};
    /// What must hold for a command to be sent, as Interlock reads it; empty for nothing.
    QString interlock = {};

    bool isControllable() const { return kind != Kind::None; }
    bool isEqual(const ControlSetting& other) const;
};
