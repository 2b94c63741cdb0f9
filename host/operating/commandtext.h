#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/scadaoperationmessage.h"

#include <QString>
#include <QVariant>

/// How commands and their ends read for an operator.
namespace CommandText {

/// A value of \p object as pages show it: with unit, or a state's name.
KORVANE_HOST_EXPORT QString valueText(const RuntimeDatabase::Object& object, const QVariant& value);
/// What is asked for: "Feed pump (P101.RUNNING): Operate Running".
KORVANE_HOST_EXPORT QString command(const ScadaOperationMessage& message, const RuntimeDatabase& database);
/// What became of it: "Done", "Interlocked: ...".
KORVANE_HOST_EXPORT QString outcome(const ScadaOperationMessage& message);

} // namespace CommandText
