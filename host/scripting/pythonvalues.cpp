#include "host/scripting/pythonvalues_p.h"

#include <QColor>
#include <QDateTime>
#include <QPolygonF>
#include <QRectF>
#include <QStringList>

#include <datetime.h>

#include <limits>

namespace {

constexpr int deepestList = 20;

void importDateTime()
{
    if (!PyDateTimeAPI)
        PyDateTime_IMPORT;
    if (!PyDateTimeAPI)
        throw py::error_already_set();
}

// None for no time, and for one that Python has no room for.
py::object timeToPython(const QDateTime& time)
{
    importDateTime();
    const QDateTime utc = time.toUTC();
    const QDate date = utc.date();
    const QTime clock = utc.time();
    if (!utc.isValid() || date.year() < 1 || date.year() > 9999)
        return py::none();
    return py::reinterpret_steal<py::object>(PyDateTimeAPI->DateTime_FromDateAndTime(
        date.year(), date.month(), date.day(), clock.hour(), clock.minute(), clock.second(), clock.msec() * 1000,
        PyDateTime_TimeZone_UTC, PyDateTimeAPI->DateTimeType));
}

// A naive time counts as the machine's own clock's, as everywhere in Python.
QVariant timeFromPython(const py::handle& value)
{
    const double seconds = value.attr("timestamp")().cast<double>();
    return QDateTime::fromMSecsSinceEpoch(qRound64(seconds * 1000), Qt::UTC);
}

py::object pair(double first, double second)
{
    return py::make_tuple(first, second);
}

py::object listToPython(const QVariantList& list)
{
    py::list values;
    for (const QVariant& each : list)
        values.append(PythonValues::toPython(each));
    return values;
}

py::object polygonToPython(const QPolygonF& points)
{
    py::list values;
    for (const QPointF& point : points)
        values.append(pair(point.x(), point.y()));
    return values;
}

QVariant numberFromPython(const py::handle& value)
{
    int isBeyond = 0;
    const long long number = PyLong_AsLongLongAndOverflow(value.ptr(), &isBeyond);
    if (isBeyond != 0)
        throw py::value_error("the number has more than 64 bits");
    const bool isInt = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return isInt ? QVariant(static_cast<int>(number)) : QVariant(static_cast<qlonglong>(number));
}

QVariant fromPythonAt(const py::handle& value, int depth)
{
    PyObject* object = value.ptr();
    if (object == Py_None)
        return {};
    if (PyBool_Check(object))
        return object == Py_True;
    if (PyLong_Check(object))
        return numberFromPython(value);
    if (PyFloat_Check(object))
        return PyFloat_AS_DOUBLE(object);
    if (PyUnicode_Check(object))
        return PythonValues::text(object);
    if (PyList_Check(object) || PyTuple_Check(object)) {
        if (depth == deepestList)
            throw py::value_error("the list is nested too deep");
        QVariantList list;
        for (const py::handle each : py::reinterpret_borrow<py::sequence>(value))
            list.append(fromPythonAt(each, depth + 1));
        return list;
    }
    importDateTime();
    if (PyDateTime_Check(object))
        return timeFromPython(value);
    throw py::type_error(std::string("a ") + Py_TYPE(object)->tp_name + " can't be used here");
}

/// The numbers of a list that has just as many; nothing for any other value.
QVector<double> numbersOf(const QVariant& value, int count)
{
    QVector<double> numbers;
    const QVariantList list = value.toList();
    if (value.userType() != QMetaType::QVariantList || list.size() != count)
        return numbers;
    for (const QVariant& each : list) {
        bool isNumber = false;
        numbers.append(each.toDouble(&isNumber));
        if (!isNumber)
            return {};
    }
    return numbers;
}

QVariant pointsOf(const QVariant& value)
{
    if (value.userType() != QMetaType::QVariantList)
        return value;
    QPolygonF points;
    const QVariantList list = value.toList();
    for (const QVariant& each : list) {
        const QVector<double> numbers = numbersOf(each, 2);
        if (numbers.isEmpty())
            return value;
        points.append({numbers[0], numbers[1]});
    }
    return points;
}

} // namespace

QString PythonValues::text(PyObject* unicode)
{
    if (PyUnicode_IS_COMPACT_ASCII(unicode))
        return QString::fromLatin1(static_cast<const char*>(PyUnicode_DATA(unicode)),
                                   static_cast<int>(PyUnicode_GET_LENGTH(unicode)));
    const auto bytes = py::reinterpret_steal<py::bytes>(
        PyUnicode_AsEncodedString(unicode, "utf-16-le", "surrogatepass")); // halves of pairs stay what they are
    if (!bytes)
        throw py::error_already_set();
    return QString(reinterpret_cast<const QChar*>(PyBytes_AS_STRING(bytes.ptr())),
                   static_cast<int>(PyBytes_GET_SIZE(bytes.ptr()) / 2));
}

py::object PythonValues::toPython(const QString& text)
{
    int byteOrder = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? -1 : 1;
    return py::reinterpret_steal<py::object>(PyUnicode_DecodeUTF16(
        reinterpret_cast<const char*>(text.utf16()), Py_ssize_t(text.size()) * 2, "surrogatepass", &byteOrder));
}

py::object PythonValues::toPython(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return py::bool_(value.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UInt:
        return py::int_(value.toLongLong());
    case QMetaType::ULongLong:
        return py::int_(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return py::float_(value.toDouble());
    case QMetaType::QString:
        return toPython(value.toString());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return listToPython(value.toList());
    case QMetaType::QDateTime:
        return timeToPython(value.toDateTime());
    case QMetaType::QColor: {
        const auto color = value.value<QColor>();
        const bool isOpaque = color.alpha() == 255;
        return toPython(color.isValid() ? color.name(isOpaque ? QColor::HexRgb : QColor::HexArgb) : QString());
    }
    case QMetaType::QPointF:
        return pair(value.toPointF().x(), value.toPointF().y());
    case QMetaType::QSizeF:
        return pair(value.toSizeF().width(), value.toSizeF().height());
    case QMetaType::QRectF: {
        const QRectF rect = value.toRectF();
        return py::make_tuple(rect.x(), rect.y(), rect.width(), rect.height());
    }
    case QMetaType::QPolygonF:
        return polygonToPython(value.value<QPolygonF>());
    default:
        return value.isValid() && value.canConvert<QString>() ? toPython(value.toString()) : py::none();
    }
}

QVariant PythonValues::fromPython(const py::handle& value)
{
    return fromPythonAt(value, 0);
}

QVariant PythonValues::fromPython(const py::handle& value, ShapeProperty::Kind kind)
{
    QVariant plain = fromPython(value);
    switch (kind) {
    case ShapeProperty::Kind::Rect: {
        const QVector<double> numbers = numbersOf(plain, 4);
        return numbers.isEmpty() ? plain : QRectF(numbers[0], numbers[1], numbers[2], numbers[3]);
    }
    case ShapeProperty::Kind::Point: {
        const QVector<double> numbers = numbersOf(plain, 2);
        return numbers.isEmpty() ? plain : QPointF(numbers[0], numbers[1]);
    }
    case ShapeProperty::Kind::Size: {
        const QVector<double> numbers = numbersOf(plain, 2);
        return numbers.isEmpty() ? plain : QSizeF(numbers[0], numbers[1]);
    }
    case ShapeProperty::Kind::Points:
        return pointsOf(plain);
    default:
        return plain;
    }
}
