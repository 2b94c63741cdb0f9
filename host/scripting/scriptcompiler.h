#pragma once

#include "host/hostexport.h"

#include <QString>

#include <optional>

/// Compiles scripts without running them.
namespace ScriptCompiler {

struct Problem
{
    int line = 0; ///< of the script, from 1; 0 where Python does not say
    QString text;
};

/// \returns nothing for a script that compiles. GUI thread only; starts the interpreter.
KORVANE_HOST_EXPORT std::optional<Problem> check(const QString& script);

} // namespace ScriptCompiler
