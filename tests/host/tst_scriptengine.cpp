#include "host/canvas/canvas.h"
#include "host/core/korvanecore.h"
#include "host/core/propertymanager.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/shapefactory.h"
#include "platform/data/valuemarks.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

using Korvane::ScadaObjectType;
using Korvane::TriggerType;

constexpr qint64 now = 1700000000000;

/// An engine with a page, some points, and what its scripts say.
struct Plant
{
    Plant() : core([] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); }), engine(*core.scadaCoreInterface())
    {
        core.scadaCoreInterface()->setScadaRuntime(&database);
        core.scadaCoreInterface()->setAppPropertyManager(&properties);
        database.setClock([] { return now; });
        RuntimeDatabase::Object level{ScadaObjectType::AnalogPoint, 200001, QStringLiteral("LT-1")};
        level.station = QStringLiteral("Intake");
        level.high = 80;
        add(level);
        add({ScadaObjectType::DigitalPoint, 100001, QStringLiteral("P-1")});
        add({ScadaObjectType::RtuObject, 1, QStringLiteral("PLC1")});
        Layer& layer = canvas.addLayer(QStringLiteral("all"));
        for (const char* name : {"first", "second"}) {
            auto shape = ShapeFactory::create(QStringLiteral("Label"));
            shape->setName(QLatin1String(name));
            canvas.addShape(layer, std::move(shape));
        }
        QObject::connect(&engine, &ScriptEngine::stdOut, [this](const QString& text) { out += text; });
        QObject::connect(&engine, &ScriptEngine::stdErr, [this](const QString& text) { err += text; });
    }
    void add(const RuntimeDatabase::Object& object)
    {
        if (const auto added = database.add(object); !added)
            qFatal("%s", qPrintable(added.error()));
    }
    void take(ScadaObjectType type, qint32 id, double value, qint32 quality = 0)
    {
        database.takeSample({{type, id}, now - 1000, value, quality});
    }
    QString run(const QString& script)
    {
        out.clear();
        err.clear();
        engine.runForCanvas(&canvas, script);
        return out;
    }
    QString run(const char* script) { return run(QString::fromUtf8(script)); }
    Shape* shape(const char* name) { return canvas.findShape(QLatin1String(name)); }

    RuntimeDatabase database;
    PropertyManager properties;
    Canvas canvas{QStringLiteral("overview")};
    KorvaneCore core;
    ScriptEngine engine;
    QString out;
    QString err;
};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_ScriptEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsPieceByPiece()
    {
        Plant plant;
        QSignalSpy pieces(&plant.engine, &ScriptEngine::stdOut);
        plant.run("print('a', 1)");
        QVERIFY(pieces.size() > 1);
        QCOMPARE(plant.out, text("a 1\n"));
        QCOMPARE(plant.err, QString());
        QCOMPARE(plant.engine.lastError(), QString());
    }

    void endlessLoopsAreStopped_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("line");
        QTest::newRow("a bare loop") << text("x = 1\nwhile True:\n    pass\n") << -1;
        QTest::newRow("one that catches everything") << text("while True:\n    try:\n        while True:\n            "
                                                             "pass\n    except BaseException:\n        pass\n")
                                                     << -1;
        QTest::newRow("one that goes on in finally")
            << text("def f():\n    try:\n        while True: pass\n    finally:\n        f()\nf()\n") << -1;
        QTest::newRow("one that sleeps") << text("import time\ntime.sleep(1000)\n") << 2;
        QTest::newRow("one that waits in a library")
            << text("import threading\nwhile not threading.Event().wait(0.01): pass\n") << -1;
        QTest::newRow("one that takes the trace away") << text("import sys\nwhile True:\n    try:\n        while True: "
                                                               "pass\n    except:\n        sys.settrace(None)\n")
                                                       << -1;
        QTest::newRow("a generator that catches everything")
            << text("def g():\n    while True:\n        try:\n            yield 1\n        except BaseException:\n     "
                    "       "
                    "pass\nfor x in g(): pass\n")
            << -1;
        QTest::newRow("an exception whose text never ends")
            << text("class E(Exception):\n    def __str__(self):\n        while True: pass\nraise E()\n") << -1;
    }

    void endlessLoopsAreStopped()
    {
        QFETCH(QString, script);
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(100)});
        plant.run(script);
        QVERIFY2(plant.engine.lastError().contains(text("stopped: it ran longer than 100 ms")),
                 qPrintable(plant.engine.lastError()));
        QCOMPARE(plant.run("print(1)"), text("1\n")); // the next one runs as ever
        QCOMPARE(plant.engine.lastError(), QString());
    }

    void aStoppedEventIsNotRunAgain()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        const QString script = text("print('once')\nwhile True: pass");
        plant.engine.runAction(&plant.canvas, plant.shape("first"), script, TriggerType::MouseHover);
        QVERIFY(plant.engine.lastError().startsWith(text(
            "page \"overview\", shape \"first\", event \"Mouse Hover\", line 2: stopped: it ran longer than 50 ms")));
        plant.engine.runAction(&plant.canvas, plant.shape("first"), script, TriggerType::MouseHover);
        QCOMPARE(plant.out, text("once\n"));
        // Another object's, and another event's, are scripts of their own.
        plant.engine.runAction(&plant.canvas, plant.shape("second"), text("print('second')"), TriggerType::MouseHover);
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("print('press')"), TriggerType::MousePress);
        QCOMPARE(plant.out, text("once\nsecond\npress\n"));
        plant.engine.forgetCanvas(&plant.canvas);
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("print('anew')"), TriggerType::MouseHover);
        QVERIFY(plant.out.endsWith(text("anew\n")));
    }

    void aStoppedHandlerIsNotCalledAgain()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        plant.run("def onClick():\n    print('once')\n    while True: pass");
        QVERIFY(!plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QVERIFY(plant.engine.lastError().startsWith(text("page \"overview\", handler \"onClick\", line 3: stopped")));
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QVERIFY(!plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QCOMPARE(plant.out, text("once\n"));
    }

    void whatIsOddOnTheWayEndsNothing_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("the limit passes in one long step") << text("def onClick(): pass\nx = 3 ** 6000000\n");
        QTest::newRow("a trace of its own that raises")
            << text("import sys\ndef f(*a): raise ValueError('x')\nsys.settrace(f)\ndef g(): pass\ng()\n");
        QTest::newRow("a syntax error made up") << text("raise SyntaxError('x', ('<script>', 'one', 1, 't'))\n");
        QTest::newRow("a line beyond all lines") << text("raise SyntaxError('x', ('<script>', 10 ** 30, 1, 't'))\n");
        QTest::newRow("a message without end") << text("raise ValueError('x' * 100000000)\n");
        QTest::newRow("a file name that is half a pair") << text("exec(compile('1/0', '\\ud800', 'exec'))\n");
        QTest::newRow("no builtins") << text("globals()['__builtins__'] = 5\nprint(1)\n");
        QTest::newRow("no modules") << text(
            "import sys\nkept = dict(sys.modules)\nsys.modules.pop('builtins')\ntry:\n    1/0\nfinally:\n    "
            "sys.modules.update(kept)\n");
        QTest::newRow("output that is gone") << text("import sys\nsys.stdout = sys.stderr = None\nprint('x')\n1/0\n");
        QTest::newRow("recursion without measure")
            << text("import sys\nsys.setrecursionlimit(10 ** 9)\nclass C:\n    def __getattr__(self, name): return "
                    "getattr(self, name + 'x')\nC().a\n");
        QTest::newRow("names of its own for what scripts find")
            << text("tags = pages = log = alarms = korvane = canvas = None\n");
        QTest::newRow("switching that waits") << text("import sys\nsys.setswitchinterval(3600)\n");
        QTest::newRow("a fork") << text("import os\nos.fork()\n");
        QTest::newRow("an end of itself by a signal") << text("import os\nos.kill(os.getpid(), 9)\n");
    }

    void whatIsOddOnTheWayEndsNothing()
    {
        QFETCH(QString, script);
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(200), 1000000});
        plant.run(script);
        QVERIFY(plant.engine.lastError().size() < 20000);
        QCOMPARE(plant.run("print(tags.names()[0], canvas.name, korvane.now().year)"), text("LT-1 overview 2023\n"));
        QCOMPARE(plant.engine.lastError(), QString());
    }

    void thatALimitIsPassedIsToldWhereAHandlerIsDefinedToo()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        plant.run("def onClick(): pass\nx = 3 ** 6000000\n");
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::Click) ||
                plant.engine.lastError().isEmpty());
    }

    void endlessLogsAreStopped()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::seconds(60), 100000});
        int longest = 0;
        QObject::connect(&plant.engine, &ScriptEngine::logged, [&longest](ScriptEngine::Severity, const QString& line) {
            longest = std::max(longest, line.size());
        });
        plant.run("while True: log.info('x' * 20000)");
        QVERIFY(plant.engine.lastError().contains(text("stopped: it printed more than 100000 characters")));
        QCOMPARE(longest, 10000);
    }

    void aPageThatIsClosedMayNotLoopEither()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(100)});
        plant.run("class C:\n    def __del__(self):\n        while True: pass\nkept = C()");
        plant.engine.forgetCanvas(&plant.canvas);
        QCOMPARE(plant.run("print(1)"), text("1\n"));
    }

    void anImportThatIsStoppedLeavesNoHalf()
    {
        const QTemporaryDir folder;
        QFile module(folder.filePath(text("slowmodule.py")));
        QVERIFY(module.open(QIODevice::WriteOnly));
        module.write("import time\nFIRST = 1\ntime.sleep(0.3)\nLAST = 1\n");
        module.close();
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(100)});
        const QString import = text("import sys\nsys.path.insert(0, %1)\nimport slowmodule\nprint(slowmodule.LAST)")
                                   .arg(QLatin1Char('\'') + folder.path() + QLatin1Char('\''));
        plant.run(import);
        QVERIFY(plant.engine.lastError().contains(text("stopped")));
        plant.engine.setLimits({std::chrono::seconds(5)});
        QCOMPARE(plant.run(import), text("1\n"));
    }

    void printsComeBackAfterAStopInsideARedirection()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        plant.run("import contextlib, io\nwith contextlib.redirect_stdout(io.StringIO()):\n    while True: pass");
        QCOMPARE(plant.run("print(1)"), text("1\n"));
    }

    void scriptsOfShapesOfOneNameAreApart()
    {
        Plant plant;
        plant.shape("second")->setName(text("first"));
        Shape* first = plant.canvas.shapes()[0];
        Shape* second = plant.canvas.shapes()[1];
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        plant.engine.runAction(&plant.canvas, first, text("while True: pass"), TriggerType::ObjectLoading);
        plant.engine.runAction(&plant.canvas, second, text("print('runs')"), TriggerType::ObjectLoading);
        QCOMPARE(plant.out, text("runs\n"));
        plant.engine.runAction(&plant.canvas, second, text("def f():\n    1/0\nf()"), TriggerType::MousePress);
        plant.engine.runAction(&plant.canvas, first, text("def g():\n    2/0\ng()"), TriggerType::MousePress);
        QVERIFY(plant.engine.lastError().contains(text("2/0")));
        QVERIFY(plant.engine.lastError().contains(text("no. 2")));
    }

    void aDescriptionThatLoopsBlocksItsScript()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        const QString script =
            text("print('once')\nclass E(Exception):\n    def __str__(self):\n        while True: pass\nraise E()");
        plant.engine.runAction(&plant.canvas, nullptr, script, TriggerType::MousePress);
        plant.engine.runAction(&plant.canvas, nullptr, script, TriggerType::MousePress);
        QCOMPARE(plant.out, text("once\n"));
    }

    void oneFunctionServesSeveralOwners()
    {
        Plant plant;
        plant.run("def shared(): print(shape.name)");
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("onClick = shared"),
                               TriggerType::ObjectLoading);
        plant.engine.runAction(&plant.canvas, plant.shape("second"), text("onClick = shared"),
                               TriggerType::ObjectLoading);
        QVERIFY(plant.engine.callHandler(&plant.canvas, plant.shape("first"), ScriptHandler::Click));
        QVERIFY(plant.engine.callHandler(&plant.canvas, plant.shape("second"), ScriptHandler::Click));
        QCOMPARE(plant.out, text("first\nsecond\n"));
    }

    void aScriptThatFailsHalfWayKeepsItsHandlers()
    {
        Plant plant;
        plant.run("def onClick(): print('clicked')\n1/0");
        QVERIFY(plant.engine.lastError().contains(text("ZeroDivisionError")));
        QVERIFY(plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
    }

    void aFailureWithoutAnybodysDoingIsToldOnce()
    {
        Plant plant;
        plant.run("def onPointValueChanged(name, value): 1 / value\ndef onClick(): 1/0");
        QSignalSpy failures(&plant.engine, &ScriptEngine::failed);
        for (int time = 0; time < 3; ++time)
            plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::PointValueChanged, {text("LT-1"), 0});
        QCOMPARE(failures.size(), 1);
        QVERIFY(plant.engine.lastError().contains(text("ZeroDivisionError")));
        plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::PointValueChanged, {text("LT-1"), text("x")});
        QCOMPARE(failures.size(), 2);
        for (int time = 0; time < 2; ++time)
            plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click);
        QCOMPARE(failures.size(), 4);
    }

    void childrenCanBeEnded()
    {
        Plant plant;
        QCOMPARE(
            plant.run("import subprocess\np = subprocess.Popen(['sleep', '60'])\np.terminate()\nprint(p.wait() != 0)"),
            text("True\n"));
    }

    void textsAreUtf8Everywhere()
    {
        Plant plant;
        QCOMPARE(plant.run(
                     "import sys, locale\nprint(sys.flags.utf8_mode, open(__import__('os').devnull).encoding.lower())"),
                 text("1 utf-8\n"));
    }

    void endlessPrintsAreStopped()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::seconds(60), 1000});
        plant.run("while True:\n    try:\n        print('x' * 99)\n    except BaseException:\n        pass");
        QCOMPARE(plant.out.size(), 1000);
        QVERIFY2(plant.engine.lastError().contains(text("line 3: stopped: it printed more than 1000 characters")),
                 qPrintable(plant.engine.lastError()));
        QCOMPARE(plant.run("print('y' * 998)").size(), 999); // each script has the whole limit
        QCOMPARE(plant.engine.lastError(), QString());
    }

    void failuresNamePageObjectEventAndLine_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("failure");
        QTest::newRow("an exception") << text("x = 1\n1 / 0\n")
                                      << text(", line 2: ZeroDivisionError: division by zero");
        QTest::newRow("an unknown name") << text("nothing")
                                         << text(", line 1: NameError: name 'nothing' is not defined");
        QTest::newRow("no Python") << text("x = 1\nif x\n  y") << text(", line 2: SyntaxError: expected ':'");
        QTest::newRow("a tab among blanks")
            << text("if 1:\n    x = 1\n\ty = 1\n")
            << text(", line 3: TabError: inconsistent use of tabs and spaces in indentation");
        QTest::newRow("an exit") << text("import sys\nsys.exit(3)")
                                 << text(", line 2: the script wanted to exit, which ends scripts only");
        QTest::newRow("an exit by name") << text("exit()")
                                         << text(", line 1: the script wanted to exit, which ends scripts only");
        QTest::newRow("a hard exit") << text("import os\nos._exit(3)")
                                     << text(", line 2: RuntimeError: a script can't end the program");
        QTest::newRow("a deep recursion")
            << text("def f(): f()\nf()") << text(", line 1: RecursionError: maximum recursion depth exceeded");
        QTest::newRow("a NUL") << QString(QLatin1String("x\0y", 3))
                               << text(": ValueError: source code string cannot contain null bytes");
        QTest::newRow("half a surrogate pair")
            << QString(QLatin1String("x = '")) + QChar(0xD800) + QLatin1Char('\'') << text(": UnicodeEncodeError");
        QTest::newRow("input from nowhere")
            << text("input()") << text(", line 1: RuntimeError: input(): lost sys.stdin");
        QTest::newRow("an unknown tag") << text("tags.read('XX-1')")
                                        << text(", line 1: LookupError: there is no \"XX-1\"");
        QTest::newRow("a number for a tag")
            << text("tags.read('12.5')") << text(", line 1: LookupError: \"12.5\" names nothing");
        QTest::newRow("a field that others have")
            << text("tags.read('P-1:HighLimit')") << text(", line 1: LookupError: \"P-1\" has no field \"HighLimit\"");
        QTest::newRow("an unknown shape")
            << text("canvas['third']") << text(", line 1: LookupError: page \"overview\" has no shape \"third\"");
        QTest::newRow("an unknown property")
            << text("shape['Colour'] = 'red'")
            << text(", line 1: LookupError: shape \"first\" has no property \"Colour\"");
        QTest::newRow("a value that can't be") << text("shape['FontSize'] = 'large'")
                                               << text(", line 1: ValueError: property \"FontSize\" can't be 'large'");
        QTest::newRow("an unknown page") << text("pages.open('nowhere')")
                                         << text(", line 1: LookupError: there is no page \"nowhere\"");
        QTest::newRow("a page where none can be shown")
            << text("pages.open('overview')")
            << text(", line 1: RuntimeError: there is no window here that shows pages");
        QTest::newRow("alarms of a system without")
            << text("alarms.active()") << text(", line 1: RuntimeError: this system has no alarms");
    }

    void failuresNamePageObjectEventAndLine()
    {
        QFETCH(QString, script);
        QFETCH(QString, failure);
        Plant plant;
        plant.engine.setPageNames([] { return QStringList(text("overview")); });
        QSignalSpy failures(&plant.engine, &ScriptEngine::failed);
        plant.engine.runAction(&plant.canvas, plant.shape("first"), script, TriggerType::MousePress);
        const QString where = text("page \"overview\", shape \"first\", event \"Mouse Press\"");
        QVERIFY2(plant.engine.lastError().startsWith(where + failure), qPrintable(plant.engine.lastError()));
        QCOMPARE(plant.err, plant.engine.lastError() + QLatin1Char('\n'));
        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures[0][0].toString(), plant.engine.lastError());
        QCOMPARE(plant.run("print(1)"), text("1\n"));
        QCOMPARE(plant.engine.lastError(), QString());
    }

    void aScriptByItselfHasNoPage()
    {
        Plant plant;
        plant.engine.run(text("print(canvas, shape, trigger, event)\n1/0"));
        QCOMPARE(plant.out, text("None None 0 None\n"));
        QCOMPARE(plant.engine.lastError(), text("line 2: ZeroDivisionError: division by zero"));
        plant.engine.run(text("pages.close()"));
        QVERIFY(plant.engine.lastError().contains(text("a script without a page has to name one")));
    }

    void aTracebackShowsTheWayThere()
    {
        Plant plant;
        plant.run("def inner():\n    raise ValueError('bad')\ndef outer():\n    inner()\nouter()");
        QVERIFY(plant.engine.lastError().startsWith(text("page \"overview\", line 2: ValueError: bad\n")));
        QVERIFY(plant.engine.lastError().contains(text("line 4, in outer\n    inner()")));
    }

    void errorOutputIsApart()
    {
        Plant plant;
        plant.run("import sys\nsys.stderr.write('to err')\nprint('to out', file=sys.stderr)\nprint('x')");
        QCOMPARE(plant.err, text("to errto out\n"));
        QCOMPARE(plant.out, text("x\n"));
    }

    void aPagesScriptsShareANamespace()
    {
        Plant plant;
        plant.run("count = 1\ndef double(x): return 2 * x");
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("count = double(count)"),
                               TriggerType::MousePress);
        QCOMPARE(plant.run("print(count)"), text("2\n"));
        Canvas other(text("other"));
        plant.engine.runForCanvas(&other, text("print(count)"));
        QVERIFY(plant.engine.lastError().contains(text("NameError")));
        plant.engine.forgetCanvas(&plant.canvas);
        plant.run("print(count)");
        QVERIFY(plant.engine.lastError().contains(text("NameError")));
        plant.engine.forgetCanvas(&other);
    }

    void aScriptFindsItsOccasion()
    {
        Plant plant;
        ScriptEvent event;
        event.position = {12.5, 30};
        event.button = Qt::LeftButton;
        event.modifiers = Qt::ShiftModifier | Qt::ControlModifier;
        plant.engine.setEvent(event);
        plant.engine.runAction(
            &plant.canvas, plant.shape("first"),
            text("print(canvas.name, shape.name, shape.kind, trigger == korvane.MOUSE_PRESS, event.x, "
                 "event.y, event.button, event.modifiers, event.key)"),
            TriggerType::MousePress);
        QCOMPARE(plant.out, text("overview first Label True 12.5 30.0 left ['shift', 'ctrl'] None\n"));
        event = {};
        event.key = Qt::Key_F5;
        plant.engine.setEvent(event);
        QCOMPARE(plant.run("print(event.key, repr(event.text), event.button, shape, trigger)"),
                 text("F5 '' None None 0\n"));
        plant.engine.setEvent(std::nullopt);
        QCOMPARE(plant.run("print(event)"), text("None\n"));
    }

    void propertiesAreReadAndSet()
    {
        Plant plant;
        QCOMPARE(plant.run(
                     "first = canvas['first']\nfirst['Text'] = 'on'\nfirst['TextColor'] = 'red'\n"
                     "first['Position'] = (10, 20.5)\nfirst['Visible'] = False\n"
                     "print(first['Text'], first['TextColor'], first['Position'], first['Visible'], 'first' in canvas, "
                     "'x' in canvas, canvas.shapes(), first is canvas.shape('first'))"),
                 text("on #ff0000 (10.0, 20.5) False True False ['first', 'second'] True\n"));
        QCOMPARE(plant.shape("first")->namedProperty(text("Text")).toString(), text("on"));
        QCOMPARE(plant.shape("first")->pos(), QPointF(10, 20.5));
        QVERIFY(!plant.shape("first")->isVisible());
        QVERIFY(plant.run("print(canvas['second'].properties())").contains(text("'Text'")));
    }

    void propertiesOfTheApplication()
    {
        Plant plant;
        QCOMPARE(
            plant.run("print(korvane.property('Shift'))\nkorvane.set_property('Shift', 3)\n"
                      "print(korvane.property('Shift'), tags.read('@::Shift'))\nkorvane.set_property('Shift', None)\n"
                      "print(tags.read('@::Shift'))\nkorvane.set_property('List', [1, 'a', [True]])\n"
                      "print(korvane.property('List'))"),
            text("None\n3 3\nNone\n[1, 'a', [True]]\n"));
        QCOMPARE(plant.properties.names(), QStringList(text("List")));
        plant.run("x = []\nx.append(x)\nkorvane.set_property('Endless', x)");
        QVERIFY(plant.engine.lastError().contains(text("ValueError: the list is nested too deep")));
        plant.run("korvane.set_property('Big', 2 ** 64)");
        QVERIFY(plant.engine.lastError().contains(text("ValueError: the number has more than 64 bits")));
        plant.run("korvane.set_property('Odd', object())");
        QVERIFY(plant.engine.lastError().contains(text("TypeError: a object can't be used here")));
    }

    void whatIsGoneIsSaidToBeGone()
    {
        Plant plant;
        plant.run(
            "import korvane as kept\nkept.shape = canvas['first']\nkept.page = canvas\nprint(kept.shape, kept.page)");
        QCOMPARE(plant.out, text("<shape \"first\"> <page \"overview\">\n"));
        plant.engine.forgetShape(&plant.canvas, plant.shape("first"));
        plant.run("print(korvane.shape)\nkorvane.shape['Text']");
        QCOMPARE(plant.out, text("<shape that is gone>\n"));
        QVERIFY(plant.engine.lastError().contains(text("ReferenceError: the shape is gone")));
        plant.engine.forgetCanvas(&plant.canvas);
        plant.engine.run(text("print(korvane.page)\nkorvane.page.name"));
        QVERIFY(plant.out.contains(text("<page that is closed>")));
        QVERIFY(plant.engine.lastError().contains(text("ReferenceError: the page is closed")));
        plant.engine.run(text("del korvane.page, korvane.shape")); // the module is every test's
    }

    void deletingWhatItRunsOnHarmsNothing()
    {
        Plant plant;
        plant.engine.runAction(&plant.canvas, plant.shape("first"),
                               text("del shape, canvas, trigger, event, korvane, tags"), TriggerType::MousePress);
        QCOMPARE(plant.engine.lastError(), QString());
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("globals().clear()\nprint(1)"),
                               TriggerType::MouseRelease);
        plant.run("x = 1\nprint(shape)");
        QVERIFY(plant.out.endsWith(text("None\n")));
    }

    void handlersBelongToWhoDefinesThem()
    {
        Plant plant;
        Shape* first = plant.shape("first");
        Shape* second = plant.shape("second");
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, first, ScriptHandler::TextChanged));
        plant.engine.runAction(&plant.canvas, first, text("def onTextChanged(obj, text): print('own', obj.name, text)"),
                               TriggerType::ObjectLoading);
        QVERIFY(plant.engine.hasHandler(&plant.canvas, first, ScriptHandler::TextChanged));
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, second, ScriptHandler::TextChanged));
        plant.engine.runAction(&plant.canvas, nullptr,
                               text("def onTextChanged(obj, text): print('page', obj.name, text)"),
                               TriggerType::CanvasLoad);
        QVERIFY(plant.engine.callHandler(&plant.canvas, first, ScriptHandler::TextChanged, {text("a")}));
        QVERIFY(plant.engine.callHandler(&plant.canvas, second, ScriptHandler::TextChanged, {text("b")}));
        QCOMPARE(plant.out, text("own first a\npage second b\n"));
        plant.engine.forgetShape(&plant.canvas, first);
        plant.engine.callHandler(&plant.canvas, first, ScriptHandler::TextChanged, {text("c")});
        QVERIFY(plant.out.endsWith(text("page first c\n")));
    }

    void aPagesClickIsNotItsShapes()
    {
        Plant plant;
        plant.run("def onClick(): print('page', shape)");
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, plant.shape("first"), ScriptHandler::Click));
        QVERIFY(plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QCOMPARE(plant.out, text("page None\n"));
    }

    void someHandlersReachEveryone()
    {
        Plant plant;
        plant.engine.runAction(&plant.canvas, plant.shape("first"),
                               text("def onPointValueChanged(name, value): print('shape', name, value)"),
                               TriggerType::ObjectLoading);
        plant.run("def onPointValueChanged(name, value): print('page', name, value)");
        QVERIFY(
            plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::PointValueChanged, {text("LT-1"), 1.5}));
        QVERIFY(plant.out.contains(text("shape LT-1 1.5\n")));
        QVERIFY(plant.out.contains(text("page LT-1 1.5\n")));
    }

    void everyHandlerIsCalledAsItsStubSays()
    {
        for (int place = 0; place < scriptHandlerCount; ++place) {
            const auto handler = static_cast<ScriptHandler>(place);
            const ScriptHandlerInfo& info = scriptHandlerInfo(handler);
            Plant plant;
            Shape* owner = info.subject == ScriptHandlerInfo::Subject::Shape ? plant.shape("first") : nullptr;
            const QString arguments = QLatin1String(info.arguments);
            plant.engine.runAction(&plant.canvas, owner, text("def %1(%2):\n\tprint([%2])\n").arg(info.name, arguments),
                                   TriggerType::CanvasLoad);
            QCOMPARE(plant.engine.lastError(), QString());
            QCOMPARE(arguments.isEmpty() ? 0 : arguments.count(QLatin1Char(',')) + 1, info.argumentCount);
            QVariantList values;
            const int subject = info.subject == ScriptHandlerInfo::Subject::None ? 0 : 1;
            for (int number = subject; number < info.argumentCount; ++number)
                values.append(number);
            QVERIFY2(plant.engine.callHandler(&plant.canvas, owner, handler, values), qPrintable(info.name));
            QCOMPARE(plant.out.count(QLatin1Char(',')) + (info.argumentCount > 0 ? 1 : 0), info.argumentCount);
            QVERIFY(scriptHandlerOf(info.name) == handler);
        }
        QVERIFY(!scriptHandlerOf(text("onclick")));
    }

    void wrongParametersAreReportedByName_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("problem");
        QTest::newRow("too few")
            << text("def onTextChanged(obj): pass")
            << text("onTextChanged is defined with (obj), but is called as onTextChanged(obj,text)");
        QTest::newRow("too many") << text("def onTextChanged(a, b, c): pass") << text("is defined with (a, b, c)");
        QTest::newRow("one that only names can give")
            << text("def onTextChanged(a, b, *, c): pass") << text("is defined with (a, b, *, c)");
        QTest::newRow("no function") << text("onTextChanged = 5") << text("onTextChanged is no function");
        QTest::newRow("defaults are fine") << text("def onTextChanged(a, b=1, c=2): pass") << QString();
        QTest::newRow("a starred one is fine") << text("def onTextChanged(*all): pass") << QString();
        QTest::newRow("a lambda is fine") << text("onTextChanged = lambda a, b: None") << QString();
        QTest::newRow("a method is fine")
            << text("class C:\n    def act(self, a, b): pass\nonTextChanged = C().act") << QString();
        QTest::newRow("a method with one too few")
            << text("class C:\n    def act(self, a): pass\nonTextChanged = C().act") << text("is defined with (a)");
        QTest::newRow("an object that lies about its code")
            << text("class C:\n    __code__ = 1\n    def __call__(self, a, b): pass\nonTextChanged = C()") << QString();
        QTest::newRow("a builtin is fine") << text("onTextChanged = print") << QString();
    }

    void wrongParametersAreReportedByName()
    {
        QFETCH(QString, script);
        QFETCH(QString, problem);
        Plant plant;
        plant.run(script);
        QVERIFY2(plant.engine.lastError().contains(problem), qPrintable(plant.engine.lastError()));
        QCOMPARE(plant.engine.lastError().isEmpty(), problem.isEmpty());
        QCOMPARE(plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::TextChanged), problem.isEmpty());
    }

    void aHandlerThatIsDeletedEnds()
    {
        Plant plant;
        plant.run("def onClick(): pass");
        QVERIFY(plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        plant.run("del onClick");
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::Click));
    }

    void rowsAreFilledIn()
    {
        Plant plant;
        QCOMPARE(plant.engine.requestRow(&plant.canvas, plant.shape("first"), 0), QStringList());
        plant.run(
            "def onRowDataRequest(obj, row, values):\n\tvalues.append(row)\n\tvalues += ['x', 1.5, object(), None]");
        QCOMPARE(plant.engine.requestRow(&plant.canvas, plant.shape("first"), 7),
                 QStringList({text("7"), text("x"), text("1.5"), QString(), QString()}));
    }

    void scriptsThatRunEachOtherEnd()
    {
        Plant plant;
        plant.run("def onTextChanged(obj, text):\n\tlog.info('again')\n");
        int calls = 0;
        QObject::connect(&plant.engine, &ScriptEngine::logged, [&] {
            ++calls;
            plant.engine.callHandler(&plant.canvas, plant.shape("first"), ScriptHandler::TextChanged, {QString()});
        });
        plant.engine.callHandler(&plant.canvas, plant.shape("first"), ScriptHandler::TextChanged, {QString()});
        QCOMPARE(calls, 16);
        QVERIFY(plant.err.contains(text("not run, since 16 scripts run each other already")));
    }

    void anInnerScriptLeavesTheOuterOnesOccasion()
    {
        Plant plant;
        plant.run("def onTextChanged(obj, text): print('inner', shape.name, trigger)");
        QObject::connect(&plant.engine, &ScriptEngine::logged, [&] {
            plant.engine.callHandler(&plant.canvas, plant.shape("second"), ScriptHandler::TextChanged, {QString()});
        });
        plant.engine.runAction(&plant.canvas, plant.shape("first"), text("log.info('')\nprint(shape.name, trigger)"),
                               TriggerType::MousePress);
        QCOMPARE(plant.out, text("inner second 0\nfirst 8\n"));
    }

    void anInnerLoopStopsTheOuterScriptToo()
    {
        Plant plant;
        plant.engine.setLimits({std::chrono::milliseconds(50)});
        plant.run("def onTextChanged(obj, text):\n\twhile True: pass");
        QObject::connect(&plant.engine, &ScriptEngine::logged, [&] {
            plant.engine.callHandler(&plant.canvas, plant.shape("second"), ScriptHandler::TextChanged, {QString()});
        });
        QSignalSpy failures(&plant.engine, &ScriptEngine::failed);
        plant.run("log.info('')\nprint('not reached')");
        QCOMPARE(plant.out, QString());
        QCOMPARE(failures.size(), 1);
        QVERIFY(plant.engine.lastError().contains(text("stopped: it ran longer than 50 ms")));
    }

    void aPageMayBeForgottenWhileItsScriptRuns()
    {
        Plant plant;
        QObject::connect(&plant.engine, &ScriptEngine::logged, [&] { plant.engine.forgetCanvas(&plant.canvas); });
        plant.run("log.info('')\nx = 1\nprint(x)\ncanvas.shapes()");
        QCOMPARE(plant.out, text("1\n"));
        QVERIFY(plant.engine.lastError().contains(text("ReferenceError: the page is closed")));
    }

    void pagesAreAskedForWhenTheScriptHasEnded()
    {
        Plant plant;
        plant.engine.setPageNames([] { return QStringList({text("overview"), text("pumps")}); });
        QSignalSpy opened(&plant.engine, &ScriptEngine::pageRequested);
        QSignalSpy closed(&plant.engine, &ScriptEngine::closeRequested);
        QSignalSpy zoomed(&plant.engine, &ScriptEngine::zoomRequested);
        plant.run("pages.open('pumps')\npages.close()\npages.zoom(2)\npages.zoom_to_fit()\nprint(pages.names())");
        QCOMPARE(plant.err, QString());
        QCOMPARE(plant.out, text("['overview', 'pumps']\n"));
        QCOMPARE(opened.size() + closed.size() + zoomed.size(), 0);
        QTRY_COMPARE(zoomed.size(), 2);
        QCOMPARE(opened, QList<QList<QVariant>>({{text("pumps")}}));
        QCOMPARE(closed, QList<QList<QVariant>>({{text("overview")}}));
        QCOMPARE(zoomed, QList<QList<QVariant>>({{text("overview"), 2.0}, {text("overview"), 0.0}}));
        for (const char* factor : {"0", "-1", "float('nan')", "float('inf')"}) {
            plant.run(text("pages.zoom(%1)").arg(QLatin1String(factor)));
            QVERIFY(plant.engine.lastError().contains(text("ValueError: a zoom is a number above 0")));
        }
    }

    void untrustedScriptsDoNotRun()
    {
        Plant plant;
        plant.run("def onClick(): print('clicked')");
        plant.engine.setEnabled(false);
        plant.engine.runAction(&plant.canvas, nullptr, text("print(1)"), TriggerType::CanvasLoad);
        QCOMPARE(plant.engine.lastError(), QString());
        QVERIFY(!plant.engine.hasHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QVERIFY(!plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QCOMPARE(plant.out, QString());
        plant.run("print(1)"); // by hand, which is answered
        QCOMPARE(plant.out, QString());
        QCOMPARE(plant.err, text("not run: the project's scripts are not trusted\n"));
        plant.engine.setEnabled(true);
        QVERIFY(plant.engine.callHandler(&plant.canvas, nullptr, ScriptHandler::Click));
        QCOMPARE(plant.out, text("clicked\n"));
    }

    void otherThreadsAreRefused()
    {
        Plant plant;
        QCOMPARE(plant.run("import threading\nsaid = []\ndef work():\n    try:\n        tags.read('LT-1')\n    except "
                           "RuntimeError as error:\n        said.append(str(error))\n    print('from a thread')\n"
                           "t = threading.Thread(target=work)\nt.start()\nt.join()\nprint(said)"),
                 text("['only a running script can do this, on its own thread']\n"));
    }

    void anEngineMayEndWhileScriptsHoldItsPages()
    {
        {
            Plant plant;
            plant.run("import korvane\nkorvane.kept = canvas\ndef onClick(): pass\nkorvane.function = onClick");
        }
        Plant plant;
        plant.run("print(korvane.kept)\ndel korvane.kept, korvane.function");
        QCOMPARE(plant.out, text("<page that is closed>\n"));
    }

    void readsTags()
    {
        Plant plant;
        QCOMPARE(plant.run("print(tags.read('LT-1'), tags.read('P-1'), tags.is_good('LT-1'))"),
                 text("None None False\n"));
        plant.take(ScadaObjectType::AnalogPoint, 200001, 42.5);
        plant.take(ScadaObjectType::DigitalPoint, 100001, 1, ValueMark::Substituted);
        QCOMPARE(
            plant.run(
                "print(tags.read('LT-1'), tags.read('P-1'), tags.read('LT-1:HighLimit'), tags.marks('P-1').quality)"),
            text("42.5 1 80.0 2\n"));
        QCOMPARE(plant.run("print(tags.time('LT-1'))"), text("2023-11-14 22:13:19+00:00\n"));
    }
};

QTEST_MAIN(tst_ScriptEngine)
#include "tst_scriptengine.moc"
