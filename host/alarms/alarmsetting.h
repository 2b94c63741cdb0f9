#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaalarm.h"

#include <QString>

#include <array>
#include <chrono>
#include <limits>

/// Which alarms an object has, as the point list states it. An alarm exists where its cause has a severity: a limit
/// without one only marks the value.
struct KORVANE_HOST_EXPORT AlarmSetting
{
    static constexpr std::size_t causeCount = 8;
    static constexpr qint8 noAlarm = -1;

    /// By ScadaAlarm::Cause; 0 to 9, or noAlarm.
    std::array<qint8, causeCount> severities = {noAlarm, noAlarm, noAlarm, noAlarm, noAlarm, noAlarm, noAlarm, noAlarm};
    /// Change of an analog point, either way, in its unit per second; NaN for no such limit.
    double rateLimit = std::numeric_limits<double>::quiet_NaN();
    /// How long the condition must hold before the alarm is raised, and must be gone before it returns.
    std::chrono::milliseconds onDelay{0};
    std::chrono::milliseconds offDelay{0};
    /// A latching alarm waits for an operator once its condition is gone, even if it was acknowledged before.
    bool isLatching = false;
    /// What the operator is told; empty for the object's name and its cause.
    QString message = {};

    static constexpr std::size_t placeOf(ScadaAlarm::Cause cause) { return static_cast<std::size_t>(cause); }
    int severity(ScadaAlarm::Cause cause) const { return severities[placeOf(cause)]; }
    bool hasAlarm(ScadaAlarm::Cause cause) const { return severity(cause) != noAlarm; }
};
