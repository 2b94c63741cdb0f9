#include "host/control/controlsetting.h"

#include <cmath>

namespace {

// No limit equals no limit.
bool areSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

bool ControlSetting::isEqual(const ControlSetting& other) const
{
    return kind == other.kind && role == other.role && confirmation == other.confirmation &&
           isReasonNeeded == other.isReasonNeeded && areSame(low, other.low) && areSame(high, other.high) &&
           step == other.step && feedback == other.feedback && tolerance == other.tolerance &&
           timeout == other.timeout && interlock == other.interlock;
}
