#include "host/alarmview/alarmfilter.h"

namespace {

using State = ScadaAlarm::State;

std::size_t placeOf(State state)
{
    return static_cast<std::size_t>(state);
}

} // namespace

AlarmFilter::States AlarmFilter::statesOf(std::initializer_list<State> states)
{
    States all;
    for (const State state : states)
        all.set(placeOf(state));
    return all;
}

AlarmFilter::States AlarmFilter::standing()
{
    return statesOf({State::Unacknowledged, State::Acknowledged, State::ReturnedUnacknowledged});
}

bool AlarmFilter::accepts(const ScadaAlarm& alarm, int area) const
{
    return states.test(placeOf(alarm.state)) && acceptsInAnyState(alarm, area);
}

bool AlarmFilter::acceptsInAnyState(const ScadaAlarm& alarm, int area) const
{
    if (!severities.isEmpty() && !severities.contains(alarm.severity))
        return false;
    if (!areas.isEmpty() && !areas.contains(area))
        return false;
    if (userAreas && !alarm.area.isEmpty() && !userAreas->contains(alarm.area))
        return false;
    return text.isEmpty() || alarm.tag.contains(text, Qt::CaseInsensitive) ||
           alarm.message.contains(text, Qt::CaseInsensitive);
}
