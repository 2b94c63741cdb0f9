#include "host/scripting/scriptobjects_p.h"

#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptevent.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/scripting/scriptnamespace_p.h"
#include "host/shapes/shape.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/table.h"
#include "platform/core/kvcanvasinterface.h"

#include <QKeySequence>

#include <utility>

namespace {

using PythonValues::text;
using PythonValues::toPython;
using ScriptModule::raise;

TesselInterface& live(const ShapeHandle& handle)
{
    if (!handle.shape)
        raise(PyExc_ReferenceError, QStringLiteral("the shape is gone, or its page is closed"));
    return *handle.shape;
}

const CanvasHandle& live(const CanvasHandle& handle)
{
    if (!handle.canvas)
        raise(PyExc_ReferenceError, QStringLiteral("the page is closed"));
    return handle;
}

QString nameOf(const TesselInterface& shape)
{
    const auto* drawn = dynamic_cast<const Shape*>(&shape);
    return drawn ? drawn->name() : QString();
}

const ShapeProperty& propertyOf(const TesselInterface& shape, const QString& name)
{
    const auto* drawn = dynamic_cast<const Shape*>(&shape);
    const ShapeProperty* property = drawn ? drawn->shapeClass().find(name) : nullptr;
    if (!property)
        raise(PyExc_LookupError, QStringLiteral("shape \"%1\" has no property \"%2\"").arg(nameOf(shape), name));
    return *property;
}

py::object readProperty(const ShapeHandle& handle, const py::str& name)
{
    const TesselInterface& shape = live(handle);
    propertyOf(shape, text(name.ptr()));
    return toPython(shape.namedProperty(text(name.ptr())));
}

void writeProperty(const ShapeHandle& handle, const py::str& name, const py::object& value)
{
    TesselInterface& shape = live(handle);
    const QString wanted = text(name.ptr());
    const ShapeProperty& property = propertyOf(shape, wanted);
    if (!shape.setNamedProperty(wanted, PythonValues::fromPython(value, property.kind))) {
        raise(PyExc_ValueError, QStringLiteral("property \"%1\" can't be %2").arg(wanted, text(py::repr(value).ptr())));
    }
}

QStringList propertyNames(const ShapeHandle& handle)
{
    QStringList names;
    if (const auto* drawn = dynamic_cast<const Shape*>(&live(handle))) {
        for (const ShapeProperty& property : drawn->shapeClass().properties)
            names.append(property.name);
    }
    return names;
}

void refreshRows(const ShapeHandle& handle)
{
    auto* table = dynamic_cast<Table*>(&live(handle));
    if (!table)
        raise(PyExc_TypeError, QStringLiteral("shape \"%1\" is no table").arg(nameOf(live(handle))));
    table->invalidateRows();
}

QString className(const ShapeHandle& handle)
{
    const auto* drawn = dynamic_cast<const Shape*>(&live(handle));
    return drawn ? QString(drawn->shapeClass().name) : QString();
}

py::object shapeNamed(const CanvasHandle& handle, const py::str& name)
{
    const CanvasHandle& page = live(handle);
    TesselInterface* shape = page.canvas->shapeNamed(text(name.ptr()));
    if (!shape) {
        raise(PyExc_LookupError,
              QStringLiteral("page \"%1\" has no shape \"%2\"").arg(page.canvas->canvasName(), text(name.ptr())));
    }
    return page.space->shapeObject(shape);
}

const char* buttonName(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return "left";
    case Qt::RightButton:
        return "right";
    case Qt::MiddleButton:
        return "middle";
    default:
        return nullptr;
    }
}

py::object keyName(int key)
{
    return key == 0 ? py::object(py::none()) : toPython(QKeySequence(key).toString(QKeySequence::PortableText));
}

py::object modifierNames(Qt::KeyboardModifiers modifiers)
{
    py::list names;
    for (const auto& [modifier, name] : {std::pair(Qt::ShiftModifier, "shift"), std::pair(Qt::ControlModifier, "ctrl"),
                                         std::pair(Qt::AltModifier, "alt"), std::pair(Qt::MetaModifier, "meta")}) {
        if (modifiers & modifier)
            names.append(py::str(name));
    }
    return std::move(names);
}

void defineShape(py::module_& module)
{
    py::class_<ShapeHandle, std::shared_ptr<ShapeHandle>>(
        module, "Shape",
        "A shape of a page. Its properties are read and set by name: shape[\"Text\"] = \"on\". Points and sizes are "
        "pairs, "
        "rectangles four numbers, colours their names (\"#rrggbb\", \"steelblue\", \"\" for none).")
        .def_property_readonly(
            "name", [](const ShapeHandle& handle) { return toPython(nameOf(live(handle))); },
            "The shape's name on its page; may be empty.")
        .def_property_readonly(
            "kind", [](const ShapeHandle& handle) { return toPython(className(handle)); },
            "The class of the shape, as \"Tank\".")
        .def(
            "properties", [](const ShapeHandle& handle) { return toPython(QVariant(propertyNames(handle))); },
            "properties()\n\nNames of the properties that the shape has.")
        .def("refresh_rows", &refreshRows,
             "refresh_rows()\n\nHas a table ask onRowDataRequest for its rows once more. Raises TypeError for other "
             "shapes.")
        .def("__getitem__", &readProperty,
             "shape[name]\n\nA property's value. Raises LookupError for one that the shape does not have.")
        .def("__setitem__", &writeProperty,
             "shape[name] = value\n\nSets a property until live data or a script set it again; page files are never "
             "changed. Raises ValueError for a value that the property can't have.")
        .def("__repr__", [](const ShapeHandle& handle) {
            return handle.shape ? toPython(QStringLiteral("<shape \"%1\">").arg(nameOf(*handle.shape)))
                                : py::str("<shape that is gone>");
        });
}

void defineCanvas(py::module_& module)
{
    py::class_<CanvasHandle, std::shared_ptr<CanvasHandle>>(module, "Canvas", "An open page.")
        .def_property_readonly(
            "name", [](const CanvasHandle& handle) { return toPython(live(handle).canvas->canvasName()); },
            "The page's name.")
        .def(
            "shapes", [](const CanvasHandle& handle) { return toPython(QVariant(live(handle).canvas->shapeNames())); },
            "shapes()\n\nNames of the page's shapes, from the bottom up.")
        .def("shape", &shapeNamed, py::arg("name"),
             "shape(name)\n\nThe shape of that name. Raises LookupError when there is none.")
        .def("__getitem__", &shapeNamed, "canvas[name]\n\nThe same as canvas.shape(name).")
        .def(
            "__contains__",
            [](const CanvasHandle& handle, const py::str& name) {
                return live(handle).canvas->shapeNamed(text(name.ptr())) != nullptr;
            },
            "name in canvas\n\nWhether the page has a shape of that name.")
        .def("__repr__", [](const CanvasHandle& handle) {
            return handle.canvas ? toPython(QStringLiteral("<page \"%1\">").arg(handle.canvas->canvasName()))
                                 : py::str("<page that is closed>");
        });
}

void defineEvent(py::module_& module)
{
    py::class_<ScriptEvent>(module, "Event", "What the event that runs a script brings along, beyond its trigger.")
        .def_property_readonly(
            "x", [](const ScriptEvent& event) { return event.position.x(); },
            "Where the pointer was, in units of the page from its left edge; 0 for a key.")
        .def_property_readonly(
            "y", [](const ScriptEvent& event) { return event.position.y(); }, "Likewise from its top edge.")
        .def_property_readonly(
            "button",
            [](const ScriptEvent& event) -> py::object {
                const char* name = buttonName(event.button);
                return name ? py::object(py::str(name)) : py::none();
            },
            "\"left\", \"middle\" or \"right\"; None for an event without a button.")
        .def_property_readonly(
            "key", [](const ScriptEvent& event) { return keyName(event.key); },
            "Name of the key, as \"A\", \"F5\" or \"Return\"; None for an event without one.")
        .def_property_readonly(
            "text", [](const ScriptEvent& event) { return toPython(event.text); },
            "The text that the key types; may be empty.")
        .def_property_readonly(
            "modifiers", [](const ScriptEvent& event) { return modifierNames(event.modifiers); },
            "The keys held down beside: any of \"shift\", \"ctrl\", \"alt\", \"meta\".");
}

} // namespace

void ScriptModule::defineObjects(py::module_& module)
{
    defineShape(module);
    defineCanvas(module);
    defineEvent(module);
}
