#pragma once

#include "host/scripting/python_p.h"
#include "host/scripting/scripthandler.h"
#include "host/scripting/scriptmodule_p.h"

#include <QString>

#include <array>
#include <iterator>
#include <utility>

/// The one interpreter of the process: started by the first use (std::runtime_error when it can't be), held by the GUI thread, never ended, since Python's
/// own modules do not survive being started twice.
class PythonRuntime
{
public:
    static PythonRuntime& instance();

    /// A namespace as every page's begins.
    py::dict freshGlobals() const;
    /// A compiled script, and which handlers' names it gives a value to.
    struct Code
    {
        py::object code;
        std::array<bool, scriptHandlerCount> storesHandler{};
    };
    /// \throws py::error_already_set for a script that can't be compiled
    Code compile(const QString& script, const QString& title) const;
    /// Puts the names back that every script finds, whatever one did to them.
    void renewNames(PyObject* globals, PyObject* canvas) const;
    /// Has what is printed come here, whatever a script did to that.
    void renewOutput() const;
    /// After a script was stopped: modules that it was importing.
    void dropHalfImports() const;

    /// What went wrong and where, of an exception that a script raised.
    struct Failure
    {
        int line = 0;    ///< of the innermost script; 0 when none is to blame
        int ownLine = 0; ///< of the script that was run, on the way there
        QString message;
        QString traceback; ///< where more than one line is to blame, else empty; ends in a line feed
    };
    /// May run code of the script, as its exceptions' own texts.
    /// \param title of the script that was run
    Failure describe(const py::error_already_set& error, const QString& title) const;
    /// Why \p function can't be called with that many arguments, as "has no ..."; empty when it can.
    QString checkHandler(const py::object& function, int argumentCount) const;
    /// What the module has to offer: tuples of owner, meaning and a list of (name, call, meaning).
    py::list catalogue() const;
    /// Python's keywords and built-in names, for whoever writes scripts.
    py::list words() const;
    /// Line on which the innermost script is right now; 0 when none runs.
    static int currentLine();

    /// The handler's name as the interpreter keeps it; borrowed.
    PyObject* handlerName(ScriptHandler handler) const { return m_names[static_cast<std::size_t>(handler)]; }
    PyObject* shapeName() const { return m_shape; }
    PyObject* triggerName() const { return m_trigger; }
    PyObject* eventName() const { return m_event; }

private:
    PythonRuntime();

    py::dict m_prelude;
    py::module_ m_module;
    PyObject* m_names[scriptHandlerCount] = {};
    PyObject* m_shape = nullptr;
    PyObject* m_trigger = nullptr;
    PyObject* m_event = nullptr;
    PyObject* m_canvas = nullptr;
    std::array<std::pair<PyObject*, PyObject*>, 2 + std::size(ScriptModule::parts)>
        m_modules{}; ///< what every script finds, by their names
    py::object m_output;
    py::object m_errors;
};
