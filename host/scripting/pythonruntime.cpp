#include "host/scripting/pythonruntime_p.h"

#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"

#include <cstdlib>
#include <string>

namespace {

/// What is easier said in Python. Runs once, in a namespace that no script sees.
constexpr const char* preludeText = R"PY(
import linecache
import os
import sys
import time
import traceback

# A sleep that is woken up by the limit of time: Python's own comes back only when it is over.
_sleep = time.sleep
def _sleep_in_slices(seconds):
    end = time.monotonic() + seconds
    left = seconds
    while left > 0:
        _sleep(min(left, 0.01))
        left = end - time.monotonic()
    if seconds < 0:
        raise ValueError('sleep length must be non-negative')
_sleep_in_slices.__name__ = 'sleep'
time.sleep = _sleep_in_slices

def _refuse(*arguments):
    raise RuntimeError('a script can\'t end the program')
os._exit = os.abort = os.kill = os.fork = os.execv = os.execve = _refuse
sys.stdin = None

def is_script(filename):
    return filename.startswith('<script')

def remember(title, text):
    linecache.cache[title] = (len(text), None, text.splitlines(True), title)

def describe(error, title):
    frames = traceback.extract_tb(error.__traceback__)
    line = own = 0
    for frame in frames:
        if is_script(frame.filename):
            line = frame.lineno
        if frame.filename == title:
            own = frame.lineno
    if isinstance(error, SyntaxError) and is_script(error.filename or ''):
        line = error.lineno or 0
        own = line if error.filename == title else own
        return line, own, '%s: %s' % (type(error).__name__, error.msg), ''
    if isinstance(error, SystemExit):
        message = 'the script wanted to exit, which ends scripts only'
    else:
        message = ''.join(traceback.format_exception_only(type(error), error)).strip()
    return line, own, message, ''.join(traceback.format_list(frames)) if len(frames) > 1 else ''

def check_handler(function, count):
    if not callable(function):
        return 'is no function'
    code = getattr(function, '__code__', None)
    if code is None:
        return ''
    least = code.co_argcount - len(function.__defaults__ or ())
    most = code.co_argcount
    required = set(code.co_varnames[most:most + code.co_kwonlyargcount]) - set(function.__kwdefaults__ or ())
    if least <= count and (count <= most or code.co_flags & 0x04) and not required:
        return ''
    return 'is defined with (%s)' % ','.join(code.co_varnames[:most + code.co_kwonlyargcount])

def _entries(owner):
    for name, member in vars(owner).items():
        doc = getattr(member, '__doc__', None) or ''
        if isinstance(member, property):
            yield name, name, doc
        elif isinstance(member, int):
            yield name, name, ''
        elif callable(member) and '\n\n' in doc:
            call, _, meaning = doc.partition('\n\n')
            yield name, call, meaning

def words():
    import builtins
    import keyword
    return keyword.kwlist + [name for name in dir(builtins) if not name.startswith('_')]

def catalogue(module, parts):
    owners = []
    def add(name, owner):
        owners.append((name, owner.__doc__, list(_entries(owner))))
        prefix = '' if owner is module else name + '.'
        for each in vars(owner).values():
            if isinstance(each, type) and not each.__name__.startswith('_'):
                add(prefix + each.__name__, each)
    add(module.__name__, module)
    for part in parts:
        add(part, getattr(module, part))
    return owners
)PY";

PyObject* interned(const char* name)
{
    return PyUnicode_InternFromString(name);
}

/// Without what the user's environment says: a project's scripts run alike on every machine.
void startInterpreter()
{
    PyConfig config;
    PyConfig_InitIsolatedConfig(&config);
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    config.write_bytecode = 0;
    const PyStatus status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    if (PyStatus_Exception(status) != 0)
        qFatal("Python can't be started: %s", status.err_msg);
}

} // namespace

PythonRuntime& PythonRuntime::instance()
{
    static auto* const runtime = new PythonRuntime; // lives as long as the interpreter: to the end of the process
    return *runtime;
}

PythonRuntime::PythonRuntime() : m_prelude((startInterpreter(), py::dict()))
{
    m_prelude["__builtins__"] = py::module_::import("builtins");
    const auto code = py::reinterpret_steal<py::object>(Py_CompileString(preludeText, "<prelude>", Py_file_input));
    if (!code || !PyEval_EvalCode(code.ptr(), m_prelude.ptr(), m_prelude.ptr()))
        throw py::error_already_set();
    m_module = ScriptModule::create();
    for (int place = 0; place < scriptHandlerCount; ++place)
        m_names[place] = interned(scriptHandlerInfo(static_cast<ScriptHandler>(place)).name.data());
    m_shape = interned("shape");
    m_trigger = interned("trigger");
    m_event = interned("event");
}

py::dict PythonRuntime::freshGlobals() const
{
    py::dict globals;
    globals["__builtins__"] = py::module_::import("builtins");
    globals["__name__"] = "__korvane__";
    globals["korvane"] = m_module;
    for (const char* part : ScriptModule::parts)
        globals[part] = m_module.attr(part);
    for (const char* absent : {"canvas", "shape", "event"})
        globals[absent] = py::none();
    globals["trigger"] = 0;
    return globals;
}

py::object PythonRuntime::compile(const QString& script, const QString& title) const
{
    const py::object text = PythonValues::toPython(script);
    const py::object name = PythonValues::toPython(title);
    m_prelude["remember"](name, text);
    return py::module_::import("builtins").attr("compile")(text, name, "exec");
}

PythonRuntime::Failure PythonRuntime::describe(const py::error_already_set& error, const QString& title) const
{
    if (error.trace())
        PyException_SetTraceback(error.value().ptr(), error.trace().ptr());
    const py::tuple parts = m_prelude["describe"](error.value(), PythonValues::toPython(title));
    return {parts[0].cast<int>(), parts[1].cast<int>(), PythonValues::text(py::object(parts[2]).ptr()),
            PythonValues::text(py::object(parts[3]).ptr())};
}

QString PythonRuntime::checkHandler(const py::object& function, int argumentCount) const
{
    const py::object problem = m_prelude["check_handler"](function, argumentCount);
    return PythonValues::text(problem.ptr());
}

py::list PythonRuntime::catalogue() const
{
    py::list parts;
    for (const char* part : ScriptModule::parts)
        parts.append(part);
    return m_prelude["catalogue"](m_module, parts);
}

py::list PythonRuntime::words() const
{
    return m_prelude["words"]();
}

int PythonRuntime::currentLine()
{
    auto frame = py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(PyEval_GetFrame()));
    while (frame && !frame.is_none()) {
        auto* const raw = reinterpret_cast<PyFrameObject*>(frame.ptr());
        const auto code = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(PyFrame_GetCode(raw)));
        if (code.attr("co_filename").cast<std::string>().rfind("<script", 0) == 0)
            return PyFrame_GetLineNumber(raw);
        frame = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(PyFrame_GetBack(raw)));
    }
    return 0;
}
