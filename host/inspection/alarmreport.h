#pragma once

#include "host/hostexport.h"

#include <QString>

class AlarmSystem;

/// What happened to the alarms, and how they stand.
namespace AlarmReport {

/// The log's newest lines up to \p most, the oldest of them first, and a line that counts; times are UTC.
KORVANE_HOST_EXPORT QString text(AlarmSystem& alarms, int most);

} // namespace AlarmReport
