#include "host/scripting/scriptcompiler.h"

#include "host/scripting/pythonruntime_p.h"

#include <stdexcept>

std::optional<ScriptCompiler::Problem> ScriptCompiler::check(const QString& script)
{
    const QString title = QStringLiteral("<script>");
    try {
        const PythonRuntime& python = PythonRuntime::instance();
        try {
            python.compile(script, title);
        } catch (const py::error_already_set& error) {
            const PythonRuntime::Failure failure = python.describe(error, title);
            return Problem{failure.line, failure.message};
        }
    } catch (const std::runtime_error& error) {
        return Problem{0, QString::fromUtf8(error.what())};
    }
    return std::nullopt;
}
