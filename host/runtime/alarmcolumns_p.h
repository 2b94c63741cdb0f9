#pragma once

#include "host/runtime/pointline_p.h"
#include "host/runtime/runtimedatabase.h"

/// Reads what a list of points says of an object's alarms; its limits and states must have been read.
PointLine::Refused readAlarmColumns(const PointLine& line, RuntimeDatabase::Object& object);
