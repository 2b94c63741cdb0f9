#pragma once

#include "host/scripting/python_p.h"

#include <QString>
#include <QStringList>

class ScriptSession;

/// The module "korvane": what scripts can reach of the host. Its functions serve the session whose script runs.
///
/// A docstring's first line is the call, as completion and the reference show it.
namespace ScriptModule {

/// The module's parts, which are names of every script's namespace too.
constexpr const char* parts[] = {"tags", "pages", "alarms", "control", "sound", "speech", "log"};

/// Makes the module and makes it known to "import".
py::module_ create();

/// \throws py::error_already_set when no script runs, or on another thread than the scripts'
ScriptSession& session();

[[noreturn]] void raise(PyObject* type, const QString& reason);

void defineObjects(py::module_& module);
void defineTags(py::module_ tags);
void definePages(py::module_ pages);
void defineAlarms(py::module_ alarms);
void defineControl(py::module_ control);
void defineSound(py::module_ sound);
void defineSpeech(py::module_ speech);
void defineLog(py::module_ log);

} // namespace ScriptModule
