#include "platform/data/scadaalarm.h"

#include <tuple>

bool ScadaAlarm::isEqual(const ScadaAlarm& other) const
{
    const auto members = [](const ScadaAlarm& alarm) {
        return std::tie(alarm.id, alarm.objectType, alarm.objectId, alarm.tag, alarm.area, alarm.severity, alarm.state,
                        alarm.cause, alarm.value, alarm.limit, alarm.message, alarm.raised, alarm.returned,
                        alarm.acknowledged, alarm.acknowledgedBy);
    };
    return members(*this) == members(other);
}
