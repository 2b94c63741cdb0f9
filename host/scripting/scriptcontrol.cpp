#include "host/control/operationnames.h"
#include "host/runtime/runtimemanager.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/scripting/scriptsession_p.h"
#include "platform/core/kvcanvasinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <optional>

namespace {

using Manager = KorvaneScadaRuntimManagerInterface;
using PythonValues::text;
using PythonValues::toPython;
using ScriptModule::raise;
using ScriptModule::session;

Manager& manager()
{
    Manager* runtime = session().hub().runtimeManager();
    if (!runtime)
        raise(PyExc_RuntimeError, QStringLiteral("this system takes no commands"));
    return *runtime;
}

/// Makes a request as the page whose script runs, which its operator must be permitted to open.
template <typename Ask>
quint32 request(const py::str& tag, Ask ask)
{
    Manager& runtime = manager();
    const ObjectKey object = session().tag(tag.ptr()).object;
    std::optional<RuntimeManager::Origin> origin;
    auto* known = qobject_cast<RuntimeManager*>(&runtime);
    if (const KVCanvasInterface* page = session().runningCanvas(); page && known)
        origin.emplace(*known, page->canvasName());
    const quint32 number = ask(runtime, object);
    if (number == 0)
        raise(PyExc_LookupError, QStringLiteral("\"%1\" takes no commands").arg(text(tag.ptr())));
    return number;
}

template <auto member>
py::object memberOf(const ScadaOperationMessage& message)
{
    return toPython(QVariant(message.*member));
}

ScadaOperationMessage stateOf(quint32 number)
{
    ScadaOperationMessage message = manager().request(number);
    if (message.requestId == 0)
        raise(PyExc_LookupError, QStringLiteral("there is no request %1").arg(number));
    return message;
}

void defineRequest(py::module_& control)
{
    py::class_<ScadaOperationMessage>(control, "Request", "A request as it stood when it was asked for.")
        .def_readonly("number", &ScadaOperationMessage::requestId, "Its number.")
        .def_property_readonly("tag", &memberOf<&ScadaOperationMessage::tag>, "Tag of what it goes to.")
        .def_property_readonly("value", &memberOf<&ScadaOperationMessage::value>, "What is sent; None without a value.")
        .def_property_readonly("user", &memberOf<&ScadaOperationMessage::user>, "Who operates.")
        .def_property_readonly("text", &memberOf<&ScadaOperationMessage::text>, "Why it stands as it does.")
        .def_property_readonly(
            "outcome",
            [](const ScadaOperationMessage& message) {
                return toPython(QVariant(OperationNames::nameOf(message.outcome)));
            },
            "\"requested\" and \"sent\" while it goes on; \"done\", \"notPermitted\", \"inhibited\", \"interlocked\", "
            "\"notConfirmed\", \"notSelected\", \"outOfLimits\", \"refused\", \"timedOut\" or \"cancelled\" at its "
            "end.")
        .def_property_readonly("finished", &ScadaOperationMessage::isFinished, "Whether nothing more will come of it.");
}

} // namespace

void ScriptModule::defineControl(py::module_ control)
{
    defineRequest(control);
    control.def(
        "operate",
        [](const py::str& tag, double value, const py::str& reason) {
            return request(tag, [&](Manager& runtime, ObjectKey object) {
                return runtime.operate(object, value, text(reason.ptr()));
            });
        },
        py::arg("tag"), py::arg("value"), py::arg("reason") = py::str(),
        "operate(tag, value, reason='')\n\nRequests a command for the operator who is logged on, with every check and "
        "confirmation that a command has; gives the request's number. It goes on once the script has ended.");
    control.def(
        "set_point",
        [](const py::str& tag, double value, const py::str& reason) {
            return request(tag, [&](Manager& runtime, ObjectKey object) {
                return runtime.setPoint(object, value, text(reason.ptr()));
            });
        },
        py::arg("tag"), py::arg("value"), py::arg("reason") = py::str(),
        "set_point(tag, value, reason='')\n\nRequests a setpoint in the point's unit; likewise.");
    control.def(
        "enter",
        [](const py::str& tag, double value, const py::str& reason) {
            return request(tag, [&](Manager& runtime, ObjectKey object) {
                return runtime.enterValue(object, value, text(reason.ptr()));
            });
        },
        py::arg("tag"), py::arg("value"), py::arg("reason") = py::str(),
        "enter(tag, value, reason='')\n\nRequests the value of a point that is entered by hand; likewise.");
    const auto defineStep = [&control](const char* name, auto member, const char* doc) {
        control.def(
            name,
            [member](const py::str& tag, const py::str& reason) {
                return request(tag, [&](Manager& runtime, ObjectKey object) {
                    return (runtime.*member)(object, text(reason.ptr()));
                });
            },
            py::arg("tag"), py::arg("reason") = py::str(), doc);
    };
    defineStep(
        "select", &Manager::select,
        "select(tag, reason='')\n\nRequests the selection of an object that is operated in two steps; likewise.");
    defineStep("step_up", &Manager::raise, "step_up(tag, reason='')\n\nRequests one step up; likewise.");
    defineStep("step_down", &Manager::lower, "step_down(tag, reason='')\n\nRequests one step down; likewise.");
    control.def(
        "cancel", [](quint32 number) { return manager().cancel(number); }, py::arg("number"),
        "cancel(number)\n\nGives up a selection, or a request that was not sent yet; False when it can't be.");
    control.def("request", &stateOf, py::arg("number"),
                "request(number)\n\nA request of this session as it stands. Raises LookupError.");
}
