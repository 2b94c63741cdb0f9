#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaoperationmessage.h"

#include <QString>

/// What operations and their outcomes are called: in logs, which keep their words for good, and for the operator.
namespace OperationNames {

using Operation = ScadaOperationMessage::Operation;
using Outcome = ScadaOperationMessage::Outcome;

/// As logs hold it: "setPoint".
KORVANE_HOST_EXPORT QString nameOf(Operation operation);
KORVANE_HOST_EXPORT QString nameOf(Outcome outcome);
/// \returns false for a name that is none.
KORVANE_HOST_EXPORT bool read(const QString& name, Operation& operation);
KORVANE_HOST_EXPORT bool read(const QString& name, Outcome& outcome);

/// For the operator: "Setpoint", "Not permitted".
KORVANE_HOST_EXPORT QString textOf(Operation operation);
KORVANE_HOST_EXPORT QString textOf(Outcome outcome);

} // namespace OperationNames
