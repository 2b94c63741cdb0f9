#include "host/alarms/alarmdesk.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/scripting/scriptsession_p.h"
#include "platform/data/scadaalarm.h"
#include "scada/hub/korvanescadacoreinterface.h"
#include "scada/hub/systemalarmmanagerinterface.h"

#include <QDateTime>

namespace {

constexpr int longestShelf = 7 * 24 * 60; // minutes

using PythonValues::text;
using PythonValues::toPython;
using ScriptModule::raise;
using ScriptModule::session;

// In the order of ScadaAlarm::State.
constexpr const char* stateNames[] = {"normal",  "unacknowledged", "acknowledged",  "returned unacknowledged",
                                      "shelved", "suppressed",     "out of service"};

template <typename Service>
Service& needed(Service* service)
{
    if (!service)
        raise(PyExc_RuntimeError, QStringLiteral("this system has no alarms"));
    return *service;
}

SystemAlarmManagerInterface& manager()
{
    return needed(session().hub().alarmManager());
}

/// What operators do about alarms needs their rights, by whatever way they do it.
AlarmDesk& deskFor(AlarmDesk::Act act, ObjectKey object)
{
    AlarmDesk& desk = needed(session().alarmDesk);
    if (!desk.permits(act, object))
        raise(PyExc_PermissionError, QStringLiteral("who is logged on may not do that"));
    return desk;
}

py::list active()
{
    py::list found;
    const QList<ScadaAlarm> alarms = manager().activeAlarms();
    for (const ScadaAlarm& alarm : alarms)
        found.append(alarm);
    return found;
}

template <auto member>
py::object memberOf(const ScadaAlarm& alarm)
{
    return toPython(QVariant(alarm.*member));
}

} // namespace

void ScriptModule::defineAlarms(py::module_ alarms)
{
    py::class_<ScadaAlarm>(alarms, "Alarm", "One occurrence of an alarm, as it stood when it was asked for.")
        .def_readonly("id", &ScadaAlarm::id, "Number of the occurrence.")
        .def_property_readonly("tag", &memberOf<&ScadaAlarm::tag>, "Tag of what is watched.")
        .def_property_readonly("area", &memberOf<&ScadaAlarm::area>, "Area of responsibility.")
        .def_readonly("severity", &ScadaAlarm::severity, "0 to 9; 9 is the gravest.")
        .def_property_readonly(
            "state", [](const ScadaAlarm& alarm) { return stateNames[static_cast<int>(alarm.state)]; },
            "\"normal\", \"unacknowledged\", \"acknowledged\", \"returned unacknowledged\", \"shelved\", "
            "\"suppressed\" or "
            "\"out of service\".")
        .def_property_readonly("value", &memberOf<&ScadaAlarm::value>, "The value that raised it.")
        .def_property_readonly("limit", &memberOf<&ScadaAlarm::limit>, "The limit that was crossed; None without one.")
        .def_property_readonly("message", &memberOf<&ScadaAlarm::message>, "Its text.")
        .def_property_readonly("raised", &memberOf<&ScadaAlarm::raised>, "When it was raised, in UTC.");
    alarms.def("active", &active, "active()\n\nEvery alarm that has not returned to normal, newest first.");
    alarms.def(
        "acknowledge",
        [](quint64 id) {
            return deskFor(AlarmDesk::Act::Acknowledge, manager().alarm(id).object()).acknowledge({id}) > 0;
        },
        py::arg("id"),
        "acknowledge(id)\n\nAcknowledges an occurrence for the operator who is logged in; False when there was nothing "
        "to acknowledge. Raises PermissionError when he may not.");
    alarms.def(
        "shelve",
        [](quint64 id, double minutes, const py::str& reason) {
            if (!(minutes > 0 && minutes <= longestShelf))
                raise(PyExc_ValueError, QStringLiteral("minutes must be above 0, at most %1").arg(longestShelf));
            const QDateTime until = session().hub().currentTime().addMSecs(static_cast<qint64>(minutes * 60000));
            return deskFor(AlarmDesk::Act::Shelve, manager().alarm(id).object()).shelve(id, until, text(reason.ptr()));
        },
        py::arg("id"), py::arg("minutes"), py::arg("reason"),
        "shelve(id, minutes, reason)\n\nPuts an occurrence away for some minutes, at most a week; False when it can't "
        "be. Raises PermissionError when the operator may not.");
    alarms.def(
        "suppress",
        [](const py::str& tag, bool suppressed, const py::str& reason) {
            const ObjectKey object = session().tag(tag.ptr()).object;
            AlarmDesk& desk =
                suppressed ? deskFor(AlarmDesk::Act::TakeOutOfService, object) : needed(session().alarmDesk);
            return desk.setSuppressed(object, suppressed, text(reason.ptr()));
        },
        py::arg("tag"), py::arg("suppressed") = true, py::arg("reason") = py::str(),
        "suppress(tag, suppressed=True, reason='')\n\nKeeps the alarms of an object from the operator while a state of "
        "the plant makes them meaningless, or ends that; False when it was so already. Raises PermissionError when who "
        "is logged on is no supervisor, but for ending it.");
    alarms.def(
        "highest_severity", [] { return manager().highestUnacknowledgedSeverity(); },
        "highest_severity()\n\nThe highest severity that waits for an operator; -1 when none does.");
}
