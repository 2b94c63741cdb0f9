#pragma once

#include "host/runtime/pointline_p.h"
#include "host/runtime/runtimedatabase.h"

/// Reads what a list of points says of an object's parent and of commands to it.
PointLine::Refused readControlColumns(const PointLine& line, RuntimeDatabase::Object& object);
