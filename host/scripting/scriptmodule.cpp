#include "host/scripting/scriptmodule_p.h"

#include "host/core/propertymanager.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptsession_p.h"
#include "platform/core/korvanecoreinterface.h"
#include "platform/core/kvcanvasinterface.h"
#include "platform/core/kvcanvasmanagerinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QDateTime>
#include <QMetaMethod>
#include <QThread>

#include <cmath>

namespace {

using PythonValues::text;
using PythonValues::toPython;
using ScriptModule::raise;
using ScriptModule::session;

/// What stands in for Python's standard output and standard error.
struct Output
{
    bool isError = false;
};

void writeOutput(const Output& output, const py::str& written)
{
    ScriptSession* running = ScriptSession::running();
    if (running && QThread::currentThread() == running->engine().thread())
        running->write(text(written.ptr()), output.isError); // else nobody's script says it
}

void defineOutput(py::module_& module)
{
    py::class_<Output>(module, "_Output")
        .def("write",
             [](const Output& output, const py::str& written) {
                 writeOutput(output, written);
                 return py::len(written);
             })
        .def("writelines",
             [](const Output& output, const py::iterable& lines) {
                 for (const py::handle line : lines)
                     writeOutput(output, py::str(line));
             })
        .def_property_readonly("closed", [](const Output&) { return false; })
        .def("flush", [](const Output&) {})
        .def("isatty", [](const Output&) { return false; })
        .def_property_readonly("encoding", [](const Output&) { return "utf-8"; })
        .def_property_readonly("errors", [](const Output&) { return "surrogatepass"; });
    module.attr("_output") = Output{false};
    module.attr("_errors") = Output{true};
}

AppPropertyManager& properties()
{
    AppPropertyManager* manager = session().hub().propertyManager();
    if (!manager)
        raise(PyExc_RuntimeError, QStringLiteral("this system has no application properties"));
    return *manager;
}

void defineProperties(py::module_& module)
{
    module.def(
        "property", [](const py::str& name) { return toPython(properties().getProperty(text(name.ptr()))); },
        py::arg("name"),
        "property(name)\n\nThe property of the application of that name, as tags reach it behind \"@::\"; None when "
        "there is "
        "none.");
    module.def(
        "set_property",
        [](const py::str& name, const py::object& value) {
            auto* manager = dynamic_cast<PropertyManager*>(&properties());
            if (!manager)
                raise(PyExc_RuntimeError, QStringLiteral("this system's application properties can't be set"));
            manager->setValue(text(name.ptr()), PythonValues::fromPython(value));
        },
        py::arg("name"), py::arg("value"),
        "set_property(name, value)\n\nSets a property of the application; shapes bound to \"@::name\" show it at once. "
        "None "
        "takes the property away.");
    module.def(
        "now", [] { return toPython(QVariant(session().hub().currentTime())); },
        "now()\n\nThe system's time in UTC, as an aware datetime: the recording's while a recording is played.");
}

struct TriggerName
{
    const char* name;
    Korvane::TriggerType trigger;
};

constexpr TriggerName triggerNames[] = {
    {"MOUSE_PRESS", Korvane::TriggerType::MousePress},
    {"MOUSE_RELEASE", Korvane::TriggerType::MouseRelease},
    {"MOUSE_DOUBLE_CLICK", Korvane::TriggerType::MouseDoubleClick},
    {"MOUSE_RIGHT_BUTTON_RELEASE", Korvane::TriggerType::MouseRightButtonRelease},
    {"MOUSE_HOVER", Korvane::TriggerType::MouseHover},
    {"MOUSE_LEAVE", Korvane::TriggerType::MouseLeave},
    {"KEY_PRESS", Korvane::TriggerType::KeyPress},
    {"CANVAS_LOAD", Korvane::TriggerType::CanvasLoad},
    {"CANVAS_UNLOAD", Korvane::TriggerType::CanvasUnload},
    {"OBJECT_LOADING", Korvane::TriggerType::ObjectLoading},
};

KVCanvasInterface& pageOf(const py::object& name)
{
    KVCanvasInterface* page = session().runningCanvas();
    if (!name.is_none()) {
        KVCanvasManagerInterface* pages = session().hub().core()->canvasManager();
        page = pages ? pages->findCanvas(text(py::str(name).ptr())) : nullptr;
        if (!page)
            raise(PyExc_LookupError, QStringLiteral("page \"%1\" is not open").arg(text(py::str(name).ptr())));
    }
    if (!page)
        raise(PyExc_RuntimeError, QStringLiteral("a script without a page has to name one"));
    return *page;
}

// Pages are opened, closed and zoomed by whoever shows them, after the script has ended.
template <typename Signal>
void needWindow(Signal signal)
{
    if (!session().engine().isWatched(QMetaMethod::fromSignal(signal)))
        raise(PyExc_RuntimeError, QStringLiteral("there is no window here that shows pages"));
}

void openPage(const py::str& name)
{
    const QString page = text(name.ptr());
    const QStringList names = session().pageNames ? session().pageNames() : QStringList();
    if (!names.contains(page))
        raise(PyExc_LookupError, QStringLiteral("there is no page \"%1\"").arg(page));
    needWindow(&ScriptEngine::pageRequested);
    session().later([&engine = session().engine(), page] { Q_EMIT engine.pageRequested(page); });
}

void closePage(const py::object& name)
{
    const QString page = pageOf(name).canvasName();
    needWindow(&ScriptEngine::closeRequested);
    session().later([&engine = session().engine(), page] { Q_EMIT engine.closeRequested(page); });
}

void zoomPage(double factor, const py::object& name)
{
    const QString page = pageOf(name).canvasName();
    needWindow(&ScriptEngine::zoomRequested);
    session().later([&engine = session().engine(), page, factor] { Q_EMIT engine.zoomRequested(page, factor); });
}

} // namespace

ScriptSession& ScriptModule::session()
{
    ScriptSession* running = ScriptSession::running();
    if (!running || QThread::currentThread() != running->engine().thread())
        raise(PyExc_RuntimeError, QStringLiteral("only a running script can do this, on its own thread"));
    return *running;
}

void ScriptModule::raise(PyObject* type, const QString& reason)
{
    PyErr_SetObject(type, toPython(reason).ptr());
    throw py::error_already_set();
}

void ScriptModule::definePages(py::module_ pages)
{
    pages.def(
        "names", [] { return toPython(QVariant(session().pageNames ? session().pageNames() : QStringList())); },
        "names()\n\nNames of the project's pages, in alphabetical order.");
    pages.def(
        "current",
        [] {
            KVCanvasManagerInterface* manager = session().hub().core()->canvasManager();
            const KVCanvasInterface* front = manager ? manager->currentCanvas() : nullptr;
            return front ? toPython(front->canvasName()) : py::object(py::none());
        },
        "current()\n\nName of the page in front; None when none is open.");
    pages.def(
        "is_open",
        [](const py::str& name) {
            KVCanvasManagerInterface* manager = session().hub().core()->canvasManager();
            return manager && manager->findCanvas(text(name.ptr())) != nullptr;
        },
        py::arg("name"), "is_open(name)\n\nWhether the page of that name is open.");
    pages.def(
        "open", &openPage, py::arg("name"),
        "open(name)\n\nOpens a page, or brings it to the front, once the script has ended. Raises LookupError for a "
        "page that the project does not have.");
    pages.def("close", &closePage, py::arg("name") = py::none(),
              "close(name=None)\n\nCloses an open page, by default the script's own, once the script has ended.");
    pages.def(
        "zoom",
        [](double factor, const py::object& name) {
            if (!(factor > 0) || !std::isfinite(factor))
                raise(PyExc_ValueError, QStringLiteral("a zoom is a number above 0; 1 is the page's own size"));
            zoomPage(factor, name);
        },
        py::arg("factor"), py::arg("name") = py::none(),
        "zoom(factor, name=None)\n\nShows an open page, by default the script's own, at a zoom; 1 is the page's own "
        "size. It "
        "is held to what views can show (0.05 to 8).");
    pages.def(
        "zoom_to_fit", [](const py::object& name) { zoomPage(0, name); }, py::arg("name") = py::none(),
        "zoom_to_fit(name=None)\n\nShows an open page, by default the script's own, as large as fits.");
}

void ScriptModule::defineLog(py::module_ log)
{
    struct Level
    {
        const char* name;
        ScriptEngine::Severity severity;
        const char* doc;
    };
    for (const Level& level : {
             Level{"info", ScriptEngine::Severity::Information,
                   "info(text)\n\nWrites a line to the log, for whoever wants to know."},
             Level{"warning", ScriptEngine::Severity::Warning,
                   "warning(text)\n\nWrites a line to the log about something that should not be."},
             Level{"error", ScriptEngine::Severity::Error,
                   "error(text)\n\nWrites a line to the log about something that did not work; the operator sees it."},
         }) {
        log.def(
            level.name,
            [severity = level.severity](const py::object& written) {
                constexpr int longestLine = 10000;
                const QString line = text(py::str(written).ptr());
                session().count(line.size());
                Q_EMIT session().engine().logged(severity, line.left(longestLine));
            },
            py::arg("text"), level.doc);
    }
}

py::module_ ScriptModule::create()
{
    py::options options;
    options.disable_function_signatures();
    // Modules live as long as the interpreter, and so do their definitions.
    auto module = py::module_::create_extension_module("korvane", nullptr, new py::module_::module_def);
    module.doc() = "What scripts can do with the plant, its pages and its alarms.";
    module.attr("__path__") = py::list(); // parts can be imported
    const auto part = [&module](const char* name, const char* doc) { return module.def_submodule(name, doc); };
    defineOutput(module);
    defineObjects(module);
    defineProperties(module);
    defineTags(part("tags",
                    "Values of the plant. A tag is written as in bindings: \"FT-101\", \"FT-101:HighLimit\", "
                    "\"@R::PLC1\" for a unit, \"@C::LINE1\" for a line, \"@::Name\" for an application property."));
    definePages(
        part("pages", "The pages of the project. What is opened, closed or zoomed happens once the script has ended."));
    defineAlarms(part("alarms", "The alarms of the system."));
    defineControl(part("control", "Commands to the process, on behalf of the operator who is logged on."));
    defineSound(part("sound", "Sounds of the project's own."));
    defineSpeech(part("speech", "The voice that speaks messages."));
    defineLog(part("log", "The log that the program keeps."));
    for (const TriggerName& each : triggerNames)
        module.attr(each.name) = static_cast<int>(each.trigger);
    auto modules = py::module_::import("sys").attr("modules");
    modules["korvane"] = module;
    for (const char* name : parts)
        modules[(std::string("korvane.") + name).c_str()] = module.attr(name);
    return module;
}
