// Scripts: calling a handler, beside Python's own call of the same function, and reading tags, beside a plain loop in
// Python over a dict.

#include "bench/support/manypoints.h"
#include "bench/support/ratioreport.h"
#include "host/canvas/canvas.h"
#include "host/core/korvanecore.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/shapefactory.h"

#include <pybind11/embed.h>

#include <QCoreApplication>

namespace {

namespace py = pybind11;

constexpr std::size_t points = 10000;

/// An engine with a page of one shape and many points that have values.
struct Plant
{
    Plant() : engine(*core.scadaCoreInterface())
    {
        addPoints(database, points);
        core.scadaCoreInterface()->setScadaRuntime(&database);
        for (const ObjectKey point : database.objects(Korvane::ScadaObjectType::Point))
            database.takeSample({point, 1000, 1.5});
        shape = &canvas.addShape(canvas.addLayer(QString()), ShapeFactory::create(QStringLiteral("Label")));
        engine.setLimits({std::chrono::minutes(1)});
        run("def onClick(): pass\ndef onTextChanged(obj, text): pass\ncounts = {}\n"
            "names = tags.names()\nplain = dict((name, 1.5) for name in names)\n"
            "def onDoubleClick():\n\tread = tags.read\n\tfor name in names:\n\t\tread(name)\n"
            "def onMouseEnter():\n\tread = plain.__getitem__\n\tfor name in names:\n\t\tread(name)\n"
            "korvane.bench_click = onClick\nkorvane.bench_text = onTextChanged\nkorvane.bench_shape = canvas\n");
        if (!engine.lastError().isEmpty())
            qFatal("%s", qPrintable(engine.lastError()));
    }
    void run(const char* script) { engine.runForCanvas(&canvas, QString::fromLatin1(script)); }

    RuntimeDatabase database;
    KorvaneCore core;
    Canvas canvas{QStringLiteral("bench")};
    ScriptEngine engine;
    Shape* shape = nullptr;
};

Plant& plant()
{
    static Plant made;
    return made;
}

void handler(benchmark::State& state)
{
    Plant& made = plant();
    for (auto _ : state)
        made.engine.callHandler(&made.canvas, nullptr, ScriptHandler::Click);
    korvaneItems(state, 1);
}
BENCHMARK(handler)->Name("call a handler without arguments");

void plainCall(benchmark::State& state)
{
    plant();
    const py::object function = py::module_::import("korvane").attr("bench_click");
    for (auto _ : state)
        Py_DECREF(PyObject_Vectorcall(function.ptr(), nullptr, 0, nullptr));
    korvaneItems(state, 1);
}
BENCHMARK(plainCall)->Name("call a handler without arguments (plain)");

void textHandler(benchmark::State& state)
{
    Plant& made = plant();
    const QVariantList arguments = {QStringLiteral("some text")};
    for (auto _ : state)
        made.engine.callHandler(&made.canvas, made.shape, ScriptHandler::TextChanged, arguments);
    korvaneItems(state, 1);
}
BENCHMARK(textHandler)->Name("call a handler with an object and a text");

void plainTextCall(benchmark::State& state)
{
    plant();
    const py::object function = py::module_::import("korvane").attr("bench_text");
    const py::object shape = py::module_::import("korvane").attr("bench_shape");
    for (auto _ : state) {
        PyObject* text = PyUnicode_FromString("some text");
        PyObject* arguments[] = {shape.ptr(), text};
        Py_DECREF(PyObject_Vectorcall(function.ptr(), arguments, 2, nullptr));
        Py_DECREF(text);
    }
    korvaneItems(state, 1);
}
BENCHMARK(plainTextCall)->Name("call a handler with an object and a text (plain)");

void readTags(benchmark::State& state)
{
    Plant& made = plant();
    for (auto _ : state)
        made.engine.callHandler(&made.canvas, nullptr, ScriptHandler::DoubleClick);
    korvaneItems(state, points);
}
BENCHMARK(readTags)->Name("read 10,000 tags");

void readDict(benchmark::State& state)
{
    Plant& made = plant();
    for (auto _ : state)
        made.engine.callHandler(&made.canvas, nullptr, ScriptHandler::MouseEnter);
    korvaneItems(state, points);
}
BENCHMARK(readDict)->Name("read 10,000 tags (plain)");

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    return korvaneBenchmarkMain(argc, argv);
}
