#pragma once

#include "host/canvas/operation.h"
#include "host/checking/finding.h"
#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <vector>

/// Whether commands fit the objects that they go to, and are guarded.
namespace OperationCheck {

struct Found
{
    Finding::Severity severity = Finding::Severity::Error;
    const char* code = "";
    QString text;
};

/// Of a shape's operation on \p object.
KORVANE_HOST_EXPORT std::vector<Found> ofOperation(const Operation& operation, const RuntimeDatabase::Object& object);
/// Whether an object takes commands from any operator without anything in their way.
KORVANE_HOST_EXPORT bool isUnguarded(const RuntimeDatabase::Object& object);

} // namespace OperationCheck
