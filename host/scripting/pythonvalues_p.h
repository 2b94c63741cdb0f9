#pragma once

#include "host/scripting/python_p.h"
#include "host/shapes/shapeproperty.h"

#include <QString>
#include <QVariant>

/// Values of the host as Python's and back. Need the interpreter running.
///
/// Invalid variants are None, points in time are aware datetimes in UTC, colours are their names ("#rrggbb"), points and
/// sizes are pairs, rectangles are (x, y, width, height).
namespace PythonValues {

QString text(PyObject* unicode);
py::object toPython(const QString& text);
py::object toPython(const QVariant& value);

/// \throws py::type_error for a value of another kind than the above, py::value_error for a number beyond 64 bits or a
/// list nested too deep.
QVariant fromPython(const py::handle& value);
/// The same as a property of that kind takes it: sequences of numbers as what they stand for.
QVariant fromPython(const py::handle& value, ShapeProperty::Kind kind);

} // namespace PythonValues
