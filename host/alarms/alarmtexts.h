#pragma once

#include "host/alarms/alarmtransition.h"
#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <QString>

/// What alarms are called towards the operator, in the language of the program.
namespace AlarmTexts {

/// Such as "unacknowledged".
KORVANE_HOST_EXPORT QString state(ScadaAlarm::State state);
/// Such as "very low".
KORVANE_HOST_EXPORT QString cause(ScadaAlarm::Cause cause);
/// What happened, such as "raised".
KORVANE_HOST_EXPORT QString kind(AlarmTransition::Kind kind);

/// The tag of what a line is about; of an object without an alarm the tag that its id makes.
KORVANE_HOST_EXPORT QString tag(const ScadaAlarm& alarm);

/// What is told, and spoken, when the alarm is raised: the object's own message, or else its display name (without one,
/// its description or name) and the cause; of an abnormal state the state's name.
KORVANE_HOST_EXPORT QString message(const RuntimeDatabase::Object& object, ScadaAlarm::Cause cause, double value);

} // namespace AlarmTexts
