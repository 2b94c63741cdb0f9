#include "host/scripting/pythonruntime_p.h"

#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"

#include <QFileInfo>

#include <stdexcept>
#include <string>

namespace {

/// What is easier said in Python. Runs once, in a namespace that no script sees.
constexpr const char* preludeText = R"PY(
import dis
import inspect
import linecache
import os
import sys
import time
import traceback

# A sleep that is woken up by the limit of time: Python's own comes back only when it is over.
_sleep = time.sleep
def sleep(seconds):
    end = time.monotonic() + seconds
    left = seconds
    while left > 0:
        _sleep(min(left, 0.01))
        left = end - time.monotonic()
    if seconds < 0:
        raise ValueError('sleep length must be non-negative')
time.sleep = sleep

def _refuse(*arguments):
    raise RuntimeError('a script can\'t end the program, nor split it')
os._exit = os.abort = os.fork = os.execv = os.execve = _refuse

_kill = os.kill
def kill(pid, signal):
    if pid <= 0 or pid == os.getpid():
        _refuse()
    _kill(pid, signal)
os.kill = kill

# The limit of time needs Python's own pace, and the program its stack.
def setswitchinterval(interval):
    raise RuntimeError('a script can\'t change how Python switches threads')
sys.setswitchinterval = setswitchinterval

_set_recursion_limit = sys.setrecursionlimit
def setrecursionlimit(limit):
    _set_recursion_limit(min(limit, 5000))
sys.setrecursionlimit = setrecursionlimit

# A connection that does not answer would hold the program for ever.
import socket
socket.setdefaulttimeout(1)
sys.stdin = None

def is_script(filename):
    return filename.startswith('<script')

def remember(title, text):
    linecache.cache[title] = (len(text), None, text.splitlines(True), title)

def describe(error, title):
    most = 4000
    def number(line):
        return line if isinstance(line, int) and 0 < line < 1000000000 else 0
    frames = traceback.extract_tb(error.__traceback__)
    line = own = 0
    for frame in frames:
        if is_script(frame.filename):
            line = frame.lineno
        if frame.filename == title:
            own = frame.lineno
    if isinstance(error, SyntaxError) and isinstance(error.filename, str) and is_script(error.filename):
        line = number(error.lineno)
        own = line if error.filename == title else own
        return line, own, ('%s: %s' % (type(error).__name__, error.msg))[:most], ''
    if isinstance(error, SystemExit):
        message = 'the script wanted to exit, which ends scripts only'
    else:
        message = ''.join(traceback.format_exception_only(type(error), error))[:most].strip()
    return line, own, message, ''.join(traceback.format_list(frames))[:most] if len(frames) > 1 else ''

def check_handler(function, count):
    if not callable(function):
        return 'is no function'
    try:
        signature = inspect.signature(function)
    except (TypeError, ValueError):
        return '' # some of Python's own don't say
    try:
        signature.bind(*[None] * count)
        return ''
    except TypeError:
        return 'is defined with %s' % signature

# Names that the script itself gives a value to, be it by def, by assignment or by import.
def stored_names(code):
    return {step.argval for step in dis.get_instructions(code) if step.opname in ('STORE_NAME', 'STORE_GLOBAL')}

# A stopped import leaves half a module behind, which the next import would take for the whole.
def drop_half_imports():
    for name, module in list(sys.modules.items()):
        if getattr(getattr(module, '__spec__', None), '_initializing', False):
            del sys.modules[name]

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

[[noreturn]] void refuse(const PyStatus& status)
{
    throw std::runtime_error(std::string("Python can't be started: ") +
                             (status.err_msg ? status.err_msg : "no reason"));
}

/// Without what the user's environment says, and with UTF-8 everywhere: a project's scripts run alike on every machine.
void startInterpreter()
{
    PyPreConfig before;
    PyPreConfig_InitIsolatedConfig(&before);
    before.utf8_mode = 1;
    if (const PyStatus status = Py_PreInitialize(&before); PyStatus_Exception(status) != 0)
        refuse(status);
    PyConfig config;
    PyConfig_InitIsolatedConfig(&config);
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    config.write_bytecode = 0;
    // The interpreter that this program was built for, where it is; not one that stands first on some PATH.
    PyStatus status = PyStatus_Ok();
    if (QFileInfo::exists(QStringLiteral(KORVANE_PYTHON)))
        status = PyConfig_SetBytesString(&config, &config.executable, KORVANE_PYTHON);
    if (PyStatus_Exception(status) == 0)
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    if (PyStatus_Exception(status) != 0)
        refuse(status);
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
    m_canvas = interned("canvas");
    m_modules[0] = {interned("__builtins__"), py::module_::import("builtins").release().ptr()};
    m_modules[1] = {interned("korvane"), m_module.ptr()};
    for (std::size_t place = 2; place < m_modules.size(); ++place) {
        const char* part = ScriptModule::parts[place - 2];
        m_modules[place] = {interned(part), py::object(m_module.attr(part)).release().ptr()};
    }
    m_output = m_module.attr("_output");
    m_errors = m_module.attr("_errors");
}

void PythonRuntime::renewNames(PyObject* globals, PyObject* canvas) const
{
    PyDict_SetItem(globals, m_canvas, canvas);
    for (const auto& [name, module] : m_modules)
        PyDict_SetItem(globals, name, module);
}

void PythonRuntime::renewOutput() const
{
    PySys_SetObject("stdout", m_output.ptr());
    PySys_SetObject("stderr", m_errors.ptr());
}

void PythonRuntime::dropHalfImports() const
{
    m_prelude["drop_half_imports"]();
}

PythonRuntime::Code PythonRuntime::compile(const QString& script, const QString& title) const
{
    const py::object text = PythonValues::toPython(script);
    const py::object name = PythonValues::toPython(title);
    m_prelude["remember"](name, text);
    Code made;
    made.code = py::module_::import("builtins").attr("compile")(text, name, "exec");
    const py::set stored = m_prelude["stored_names"](made.code);
    for (int place = 0; place < scriptHandlerCount; ++place)
        made.storesHandler[std::size_t(place)] = stored.contains(py::handle(m_names[place]));
    return made;
}

py::dict PythonRuntime::freshGlobals() const
{
    py::dict globals;
    globals["__builtins__"] = py::module_::import("builtins");
    globals["__name__"] = "__korvane__";
    return globals;
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
        const auto name = py::reinterpret_steal<py::object>(PyObject_GetAttrString(code.ptr(), "co_filename"));
        if (name && PyUnicode_Check(name.ptr()) && PythonValues::text(name.ptr()).startsWith(QLatin1String("<script")))
            return PyFrame_GetLineNumber(raw);
        frame = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(PyFrame_GetBack(raw)));
    }
    return 0;
}
