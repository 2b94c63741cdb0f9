#include "host/runtime/runtimedatabase.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/scripting/scriptsession_p.h"
#include "platform/data/apppropertymanager.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <utility>

namespace {

using Korvane::ScadaObjectType;
using PythonValues::text;
using PythonValues::toPython;
using ScriptModule::raise;
using ScriptModule::session;

struct Marks
{
    qint32 tag = 0;
    qint32 limit = 0;
    qint32 quality = 0;
};

QuorixData recordOf(const ScriptSession::Tag& tag)
{
    return session().database()->presentRecord(tag.object);
}

py::object memberOf(const QuorixData& record, const char* name)
{
    const QuorixValue* value = record.GetValue(name);
    return value ? toPython(value->toVariant()) : py::object(py::none());
}

py::object readTag(const py::str& name)
{
    const ScriptSession::Tag tag = session().tag(name.ptr());
    if (tag.object.type == ScadaObjectType::ApplicationProperty) {
        AppPropertyManager* properties = session().hub().propertyManager();
        return properties ? toPython(properties->getProperty(tag.name)) : py::object(py::none());
    }
    if (!tag.field)
        return memberOf(recordOf(tag), DataFieldInfo::currentValueMember);
    switch (tag.field->supplier()) {
    case DataFieldInfo::Supplier::Record:
        return memberOf(recordOf(tag), tag.field->recordMember);
    case DataFieldInfo::Supplier::RuntimeDatabase:
        return toPython(session().database()->fieldValue(tag.object, tag.field->field));
    case DataFieldInfo::Supplier::History:
        break;
    }
    DataServiceInterface* history = session().hub().controller();
    return history ? toPython(history->historyValue(tag.object, tag.field->field)) : py::object(py::none());
}

QuorixData presentRecord(const py::str& name)
{
    const ScriptSession::Tag tag = session().tag(name.ptr());
    if (tag.object.type == ScadaObjectType::ApplicationProperty)
        raise(PyExc_LookupError, QStringLiteral("an application property has neither marks nor a time"));
    return recordOf(tag);
}

qint32 numberOf(const QuorixData& record, const char* member)
{
    const QuorixValue* value = record.GetValue(member);
    return value ? value->toInt32() : 0;
}

Marks marks(const py::str& name)
{
    const QuorixData record = presentRecord(name);
    return {numberOf(record, "tag"), numberOf(record, "limit"), numberOf(record, "quality")};
}

py::object fields(const py::str& name)
{
    const ScriptSession::Tag tag = session().tag(name.ptr());
    QStringList names;
    for (const DataFieldInfo* field : DataFieldInfo::all()) {
        if (field->isFieldOf(tag.object.type))
            names.append(QLatin1String(field->name));
    }
    return toPython(QVariant(names));
}

py::object names(const py::object& station)
{
    QStringList found;
    RuntimeDatabase* database = session().database();
    if (!database)
        return toPython(QVariant(found));
    const bool isAny = station.is_none();
    const QString wanted = isAny ? QString() : text(py::str(station).ptr());
    for (const PointDirectory::Station& each : database->stations()) {
        if (!isAny && each.name != wanted)
            continue;
        for (const PointDirectory::Entry& entry : each.objects)
            found.append(Korvane::tagPrefix(entry.key.type) + entry.name);
    }
    return toPython(QVariant(found));
}

py::object stations()
{
    QStringList found;
    if (RuntimeDatabase* database = session().database()) {
        for (const PointDirectory::Station& each : database->stations())
            found.append(each.name);
    }
    return toPython(QVariant(found));
}

constexpr std::pair<const char*, qint32> bits[] = {
    {"CONTROL_INHIBITED", ValueMark::ControlInhibited},
    {"ALARM_INHIBITED", ValueMark::AlarmInhibited},
    {"SCAN_INHIBITED", ValueMark::ScanInhibited},
    {"INFORMATION_TAG", ValueMark::InformationTag},
    {"BELOW_LOW", ValueMark::BelowLow},
    {"ABOVE_HIGH", ValueMark::AboveHigh},
    {"BELOW_LOW_LOW", ValueMark::BelowLowLow},
    {"ABOVE_HIGH_HIGH", ValueMark::AboveHighHigh},
    {"ABNORMAL", ValueMark::Abnormal},
    {"INVALID", ValueMark::Invalid},
    {"SUBSTITUTED", ValueMark::Substituted},
    {"STALE", ValueMark::Stale},
    {"COMMUNICATION_FAILED", ValueMark::CommunicationFailed},
    {"ESTIMATED", ValueMark::Estimated},
    {"OUT_OF_RANGE", ValueMark::OutOfRange},
    {"OSCILLATING", ValueMark::Oscillating},
    {"TEST", ValueMark::Test},
};

} // namespace

void ScriptModule::defineTags(py::module_ tags)
{
    py::class_<Marks>(tags, "Marks", "The marks that a value carries, each as a number of bits.")
        .def_readonly("tag", &Marks::tag,
                      "CONTROL_INHIBITED, ALARM_INHIBITED, SCAN_INHIBITED and INFORMATION_TAG: what operators set.")
        .def_readonly("limit", &Marks::limit,
                      "BELOW_LOW, ABOVE_HIGH, BELOW_LOW_LOW and ABOVE_HIGH_HIGH; ABNORMAL for a state.")
        .def_readonly(
            "quality", &Marks::quality,
            "INVALID, SUBSTITUTED, STALE, COMMUNICATION_FAILED, ESTIMATED, OUT_OF_RANGE, OSCILLATING and TEST.");
    tags.def("read", &readTag, py::arg("tag"),
             "read(tag)\n\nThe present value of a tag, or the value of the field that it names: a float of an analog "
             "point, an int of a digital one, a text, an aware datetime. None where there is no value yet. A value is "
             "given however bad its quality is. Raises LookupError for a tag that names nothing.");
    tags.def("marks", &marks, py::arg("tag"), "marks(tag)\n\nThe marks of the present value.");
    tags.def(
        "is_good", [](const py::str& name) { return (marks(name).quality & ValueMark::unreliable) == 0; },
        py::arg("tag"),
        "is_good(tag)\n\nWhether the present value can be relied on: it is there, and neither INVALID, STALE nor "
        "COMMUNICATION_FAILED.");
    tags.def(
        "time", [](const py::str& name) { return memberOf(presentRecord(name), "time"); }, py::arg("tag"),
        "time(tag)\n\nWhen the present value was taken, as an aware datetime in UTC; None before the first.");
    tags.def("fields", &fields, py::arg("tag"),
             "fields(tag)\n\nNames of the fields that the tag's object has, to be read as \"NAME:Field\".");
    tags.def("names", &names, py::arg("station") = py::none(),
             "names(station=None)\n\nThe tags of all points, units and lines, or of those of one station.");
    tags.def("stations", &stations, "stations()\n\nNames of the stations, in the order of the point list.");
    for (const auto& [name, bit] : bits)
        tags.attr(name) = bit;
}
