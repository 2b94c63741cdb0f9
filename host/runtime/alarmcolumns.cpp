#include "host/runtime/alarmcolumns_p.h"

#include <cmath>

namespace {

using namespace PointColumns;
using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;

/// Whether values of the object can be the cause of an alarm.
bool canCause(const Object& object, ScadaAlarm::Cause cause)
{
    switch (cause) {
    case ScadaAlarm::Cause::LowLow:
        return !std::isnan(object.lowLow);
    case ScadaAlarm::Cause::Low:
        return !std::isnan(object.low);
    case ScadaAlarm::Cause::High:
        return !std::isnan(object.high);
    case ScadaAlarm::Cause::HighHigh:
        return !std::isnan(object.highHigh);
    case ScadaAlarm::Cause::StateChange:
        return object.type != ScadaObjectType::AnalogPoint && object.abnormalState >= 0;
    case ScadaAlarm::Cause::RateOfChange:
        return object.type == ScadaObjectType::AnalogPoint && !std::isnan(object.alarm.rateLimit);
    case ScadaAlarm::Cause::Quality:
    case ScadaAlarm::Cause::Communication:
        return true;
    }
    return false;
}

PointLine::Refused readSeverities(const PointLine& line, Object& object)
{
    for (std::size_t place = 0; place < AlarmSetting::causeCount; ++place) {
        const auto column = static_cast<Column>(LowLowSeverityColumn + place);
        int severity = -1;
        if (auto refused = line.readInteger(column, ScadaAlarm::highestSeverity, severity))
            return refused;
        if (severity >= 0 && !canCause(object, static_cast<ScadaAlarm::Cause>(place)))
            return line.refusal(column, QStringLiteral("the object has no limit or abnormal state for this alarm"));
        if (severity >= 0)
            object.alarm.severities[place] = static_cast<qint8>(severity);
    }
    return std::nullopt;
}

} // namespace

PointLine::Refused readAlarmColumns(const PointLine& line, Object& object)
{
    AlarmSetting& alarm = object.alarm;
    if (auto refused = line.readNumber(RateLimitColumn, alarm.rateLimit))
        return refused;
    if (alarm.rateLimit <= 0)
        return line.refusal(RateLimitColumn, QStringLiteral("the rate limit must be above 0"));
    if (auto refused = line.readDuration(OnDelayColumn, alarm.onDelay))
        return refused;
    if (auto refused = line.readDuration(OffDelayColumn, alarm.offDelay))
        return refused;
    if (auto refused = line.readFlag(LatchingColumn, alarm.isLatching))
        return refused;
    if (auto refused = line.readText(AlarmMessageColumn, alarm.message))
        return refused;
    return readSeverities(line, object);
}
