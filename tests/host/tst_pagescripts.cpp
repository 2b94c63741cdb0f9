#include "host/scripting/pagescripts.h"
#include "tests/support/scriptpage.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

using Korvane::TriggerType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

ScriptEvent at(double x, double y)
{
    ScriptEvent event;
    event.position = {x, y};
    return event;
}

} // namespace

Q_DECLARE_METATYPE(Korvane::TriggerType)

class tst_PageScripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingHappensBeforeThePageIsLoaded()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.bind(shape, "FLOW");
        for (const TriggerType trigger : {TriggerType::ObjectLoading, TriggerType::MousePress})
            plant.addScript(&shape, trigger, "print('ran')\ndef onClick(): print('clicked')");
        plant.addScript(nullptr, TriggerType::CanvasUnload, "print('unloaded')");
        PageScripts& scripts = plant.start();
        // What a script that the user ran by hand has defined.
        plant.engine.runForCanvas(plant.page.canvas.get(), text("def onClick(): print('clicked')\n"
                                                                "def onTextChanged(obj, text): print('text')\n"
                                                                "def onZoomLevelChanged(canvas, zoom): print('zoom')\n"
                                                                "def onDataLoaded(obj): print('data')\n"
                                                                "def onPointValueChanged(n, v): print('value')"));
        plant.takeFlow(1);
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        scripts.click(nullptr, at(1, 1));
        scripts.noteZoom(2);
        scripts.noteValues();
        shape.act(text("onTextChanged"), {text("a")});
        scripts.unload();
        QCOMPARE(plant.printed(), QString());
    }

    void loadsFromTheBottomUpThenThePage()
    {
        ScriptPage plant;
        // The order in which shapes come onto the page is not that of their layers.
        Shape& top = plant.addShape("top", {0, 0, 9, 9}, 1);
        Shape& second = plant.addShape("second");
        Shape& silent = plant.addShape("silent");
        Shape& third = plant.addShape("third");
        plant.addScript(nullptr, TriggerType::CanvasLoad, "def onLoad(): print('page handler', shape)\nprint('page')");
        for (Shape* shape : {&third, &top, &second})
            plant.addScript(shape, TriggerType::ObjectLoading,
                            "name = shape.name\nprint(name)\ndef onLoad(): print(shape.name, 'handler')");
        plant.addScript(&silent, TriggerType::MousePress, "print('not yet')");
        plant.addScript(&top, TriggerType::CanvasLoad, "print('the page\\'s event alone')");
        plant.addScript(nullptr, TriggerType::ObjectLoading, "print('the shapes\\' event alone')");
        PageScripts& scripts = plant.start();
        QCOMPARE(plant.printed(), QString());
        scripts.load();
        QCOMPARE(plant.printed(), text("second, second handler, third, third handler, top, top handler, page, page "
                                       "handler None"));
        scripts.load();
        QCOMPARE(plant.printed(), QString());
        QCOMPARE(plant.failures, QStringList());
    }

    void eventsRunTheirScriptsThenTheirHandler_data()
    {
        QTest::addColumn<TriggerType>("trigger");
        QTest::addColumn<QString>("handler"); // empty for none
        QTest::newRow("a press") << TriggerType::MousePress << QString();
        QTest::newRow("a release") << TriggerType::MouseRelease << QString();
        QTest::newRow("a double click") << TriggerType::MouseDoubleClick << text("onDoubleClick");
        QTest::newRow("a release of the right button") << TriggerType::MouseRightButtonRelease << QString();
        QTest::newRow("the pointer comes") << TriggerType::MouseHover << text("onMouseEnter");
        QTest::newRow("the pointer goes") << TriggerType::MouseLeave << text("onMouseLeave");
        QTest::newRow("a key") << TriggerType::KeyPress << QString();
    }
    void eventsRunTheirScriptsThenTheirHandler()
    {
        QFETCH(TriggerType, trigger);
        QFETCH(QString, handler);
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        Shape& other = plant.addShape("other", {50, 50, 20, 20});
        const char* const define =
            "for each in ('onLoad', 'onClick', 'onDoubleClick', 'onMouseEnter', 'onMouseLeave'):\n"
            "    exec('def %s(): print(\"%s\", shape and shape.name, trigger)' % (each, each))";
        for (Shape* owner : {&shape, &other})
            plant.addScript(owner, TriggerType::ObjectLoading, define);
        plant.addScript(nullptr, TriggerType::CanvasLoad, define);
        for (const TriggerType each : {TriggerType::MousePress, TriggerType::MouseRelease,
                                       TriggerType::MouseDoubleClick, TriggerType::MouseRightButtonRelease,
                                       TriggerType::MouseHover, TriggerType::MouseLeave, TriggerType::KeyPress}) {
            plant.addScript(&shape, each, "print('first', shape.name, trigger, event.x)");
            plant.addScript(&shape, each, "print('second', shape.name, trigger, event.x)");
            plant.addScript(nullptr, each, "print('page', shape, trigger, event.x)");
        }
        PageScripts& scripts = plant.load();
        const int number = static_cast<int>(trigger);
        scripts.fire(trigger, &shape, at(2, 3));
        QString expected = text("first s %1 2.0, second s %1 2.0").arg(number);
        if (!handler.isEmpty())
            expected += text(", %1 s 0").arg(handler);
        QCOMPARE(plant.printed(), expected);
        scripts.fire(trigger, nullptr, at(4, 5));
        expected = text("page None %1 4.0").arg(number);
        if (!handler.isEmpty())
            expected += text(", %1 None 0").arg(handler);
        QCOMPARE(plant.printed(), expected);
        QCOMPARE(plant.failures, QStringList());
    }

    void anotherShapesHandlersAndThePagesStayQuiet()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        Shape& other = plant.addShape("other");
        plant.addScript(&other, TriggerType::ObjectLoading, "def onDoubleClick(): print('other')");
        plant.addScript(&shape, TriggerType::MousePress, "pass");
        plant.addScript(nullptr, TriggerType::CanvasLoad,
                        "def onDoubleClick(): print('page')\ndef onClick(): print('page click')");
        PageScripts& scripts = plant.load();
        scripts.fire(TriggerType::MouseDoubleClick, &shape, at(1, 1));
        scripts.click(&shape, at(1, 1));
        QCOMPARE(plant.printed(), QString());
        scripts.click(nullptr, at(1, 1));
        QCOMPARE(plant.printed(), text("page click"));
    }

    void aClickCallsAHandlerAlone()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading,
                        "def onClick(): print('clicked', shape.name, trigger, event.x, event.y, event.button)");
        for (const TriggerType trigger : {TriggerType::MousePress, TriggerType::MouseRelease})
            plant.addScript(&shape, trigger, "print('no event of its own')");
        PageScripts& scripts = plant.load();
        ScriptEvent event = at(7, 8);
        event.button = Qt::LeftButton;
        scripts.click(&shape, event);
        QCOMPARE(plant.printed(), text("clicked s 0 7.0 8.0 left"));
        plant.engine.runForCanvas(plant.page.canvas.get(), text("print(event)")); // it is over
        QCOMPARE(plant.printed(), text("None"));
    }

    void anEventIsForItsScriptsAlone()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::MousePress, "print(event.x, event.y, event.button, event.modifiers)");
        PageScripts& scripts = plant.load();
        ScriptEvent event = at(1.5, 2.5);
        event.button = Qt::RightButton;
        event.modifiers = Qt::AltModifier | Qt::MetaModifier;
        scripts.fire(TriggerType::MousePress, &shape, event);
        QCOMPARE(plant.printed(), text("1.5 2.5 right ['alt', 'meta']"));
        plant.engine.runForCanvas(plant.page.canvas.get(), text("print(event)"));
        QCOMPARE(plant.printed(), text("None"));
    }

    void whatNobodyDoesHasNoEvent()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading, "print(event)\ndef onLoad(): print(event)");
        plant.addScript(nullptr, TriggerType::CanvasLoad, "print(event)");
        plant.addScript(nullptr, TriggerType::CanvasUnload, "print(event)");
        PageScripts& scripts = plant.start();
        scripts.load();
        scripts.unload();
        QCOMPARE(plant.printed(), text("None, None, None, None"));
    }

    void aScriptThatFailsLeavesThePageGoing()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading, "1 / 0");
        plant.addScript(nullptr, TriggerType::CanvasLoad, "print('loaded')\ndef onDoubleClick(): print('page')");
        plant.addScript(&shape, TriggerType::MouseDoubleClick, "nothing");
        plant.addScript(&shape, TriggerType::MouseDoubleClick,
                        "print('second')\ndef onDoubleClick(): print('handler')");
        PageScripts& scripts = plant.start();
        scripts.load();
        QCOMPARE(plant.printed(), text("loaded"));
        scripts.fire(TriggerType::MouseDoubleClick, &shape, at(1, 1));
        QCOMPARE(plant.printed(), text("second, handler"));
        QCOMPARE(plant.failures.size(), 2);
        QVERIFY2(
            plant.failures[0].startsWith(text("page \"overview\", shape \"s\", event \"On Object Loading\", line 1: "
                                              "ZeroDivisionError")),
            qPrintable(plant.failures[0]));
        QVERIFY2(
            plant.failures[1].startsWith(text("page \"overview\", shape \"s\", event \"Mouse Double Click\", line 1: "
                                              "NameError")),
            qPrintable(plant.failures[1]));
    }

    void aPageThatIsClosedRunsItsUnloadingScriptOnce()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(nullptr, TriggerType::CanvasUnload, "print('unload', shape, trigger)");
        plant.addScript(&shape, TriggerType::CanvasUnload, "print('the page\\'s event alone')");
        plant.addScript(&shape, TriggerType::MousePress, "print('press')");
        PageScripts& scripts = plant.load();
        scripts.unload();
        QCOMPARE(plant.printed(), text("unload None 7"));
        scripts.unload();
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        QCOMPARE(plant.printed(), QString());
    }

    void itsEndEndsTheNamespace()
    {
        ScriptPage plant;
        plant.addScript(nullptr, TriggerType::CanvasLoad, "def onClick(): print('clicked')");
        plant.load();
        QVERIFY(plant.engine.hasHandler(plant.page.canvas.get(), nullptr, ScriptHandler::Click));
        plant.scripts.reset();
        QVERIFY(!plant.engine.hasHandler(plant.page.canvas.get(), nullptr, ScriptHandler::Click));
        plant.engine.runForCanvas(plant.page.canvas.get(), text("onClick()"));
        QVERIFY(plant.failures.value(0).contains(text("NameError")));
    }

    void whereScriptsAreNotTrustedNothingRuns()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading, "print('loaded')");
        plant.addScript(&shape, TriggerType::MousePress, "print('pressed')");
        plant.engine.setEnabled(false);
        PageScripts& scripts = plant.start();
        scripts.load();
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        QCOMPARE(plant.printed(), QString());
        QCOMPARE(plant.failures, QStringList());
        plant.engine.setEnabled(true);
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        QCOMPARE(plant.printed(), text("pressed"));
    }

    void eventsComeToTheTopmostShapeWithScripts()
    {
        ScriptPage plant;
        Shape& lower = plant.addShape("lower", {100, 50, 100, 100});
        Shape& upper = plant.addShape("upper", {150, 50, 100, 100});
        plant.addShape("silent", {0, 0, 400, 200});
        Shape& above = plant.addShape("above", {180, 50, 10, 10}, 1);
        for (Shape* shape : {&above, &upper, &lower})
            plant.addScript(shape, TriggerType::MousePress, "pass");
        const PageScripts& scripts = plant.start();
        QCOMPARE(scripts.targetAt({110, 100}), &lower);
        QCOMPARE(scripts.targetAt({175, 100}), &upper); // both are there
        QCOMPARE(scripts.targetAt({240, 100}), &upper);
        QCOMPARE(scripts.targetAt({185, 55}), &above);
        QCOMPARE(scripts.targetAt({20, 20}), nullptr); // a shape without scripts lets it through
        QCOMPARE(scripts.targetAt({-5, -5}), nullptr);
        upper.setNamedProperty(text("Visible"), false);
        QCOMPARE(scripts.targetAt({175, 100}), &lower);
        QCOMPARE(scripts.targetAt({240, 100}), nullptr);
        plant.page.canvas->setLayerVisible(*plant.page.canvas->layers()[1], false);
        QCOMPARE(scripts.targetAt({185, 55}), &lower);
        upper.setNamedProperty(text("Visible"), true);
        QCOMPARE(scripts.targetAt({185, 55}), &upper);
        plant.page.canvas->setLayerVisible(*plant.page.canvas->layers()[0], false);
        QCOMPARE(scripts.targetAt({185, 55}), nullptr);
    }

    void aRotatedShapeIsHitWhereItLies()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s", {100, 90, 100, 20});
        plant.addScript(&shape, TriggerType::MousePress, "pass");
        const PageScripts& scripts = plant.start();
        QCOMPARE(scripts.targetAt({110, 100}), &shape);
        QCOMPARE(scripts.targetAt({150, 60}), nullptr);
        shape.setNamedProperty(text("Rotation"), 90.0); // upright around its middle, 150, 100
        QCOMPARE(scripts.targetAt({110, 100}), nullptr);
        QCOMPARE(scripts.targetAt({150, 60}), &shape);
        shape.setNamedProperty(text("Position"), QPointF(200, 90));
        QCOMPARE(scripts.targetAt({150, 60}), nullptr);
        QCOMPARE(scripts.targetAt({250, 60}), &shape);
    }

    void anActionThatCouldNotBeLoadedTakesNothing()
    {
        ScriptPage plant;
        Shape& lower = plant.addShape("lower");
        Shape& broken = plant.addShape("broken");
        plant.addScript(&lower, TriggerType::MousePress, "print('pressed')");
        plant.page.events.add(&broken, {nullptr, "{\"type\":99}"});
        plant.page.events.add(&lower, {nullptr, "{\"type\":99}"});
        PageScripts& scripts = plant.load();
        QCOMPARE(scripts.targetAt({10, 10}), &lower);
        scripts.fire(TriggerType::MousePress, &lower, at(10, 10));
        scripts.fire(TriggerType::MousePress, &broken, at(10, 10));
        QCOMPARE(plant.printed(), text("pressed"));
    }

    void theZoomIsToldToEveryone()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading,
                        "def onZoomLevelChanged(page, zoom): print('shape', shape.name, page.name, zoom)");
        plant.addScript(nullptr, TriggerType::CanvasLoad,
                        "def onZoomLevelChanged(page, zoom): print('page', shape, page is canvas, zoom)");
        PageScripts& scripts = plant.load();
        scripts.noteZoom(1.25);
        QStringList lines = plant.printed().split(text(", "));
        lines.sort();
        QCOMPARE(lines, QStringList({text("page None True 1.25"), text("shape s overview 1.25")}));
    }

    void changesOfPointsAreTold()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        for (const char* tag : {"FLOW", "LEVEL", "FLOW:HighLimit"})
            plant.bind(shape, tag);
        plant.takeLevel(7);
        plant.addScript(nullptr, TriggerType::CanvasLoad, "def onPointValueChanged(name, value): print(name, value)");
        PageScripts& scripts = plant.load();
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString()); // as they were
        plant.takeFlow(1.5);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("FLOW 1.5")); // its first one
        plant.takeFlow(1.5);
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
        plant.takeFlow(2);
        plant.takeFlow(3);
        plant.takeLevel(8);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("FLOW 3.0, LEVEL 8.0")); // once a batch
        plant.takeFlow(4);
        plant.takeFlow(3);
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
    }

    void changesOfUnitsHaveTagsThatCanBeRead()
    {
        ScriptPage plant;
        plant.bind(plant.addShape("s"), "@R::PLC1");
        plant.addScript(nullptr, TriggerType::CanvasLoad,
                        "def onPointValueChanged(name, value): print(name, value, tags.read(name))");
        PageScripts& scripts = plant.load();
        plant.take(Korvane::ScadaObjectType::RtuObject, 1, 2);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("@R::PLC1 2 2"));
        QCOMPARE(plant.failures, QStringList());
    }

    void pointsThatThePageIsNotBoundToAreNoNews()
    {
        ScriptPage plant;
        plant.bind(plant.addShape("s"), "LEVEL");
        plant.addScript(nullptr, TriggerType::CanvasLoad, "def onPointValueChanged(name, value): print(name, value)");
        PageScripts& scripts = plant.load();
        plant.takeFlow(1);
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
    }

    void whatChangedBeforeThereWasAHandlerIsNoNews()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.bind(shape, "FLOW");
        plant.addScript(&shape, TriggerType::MousePress,
                        "def onPointValueChanged(name, value): print(shape.name, value)");
        plant.addScript(&shape, TriggerType::MouseRelease, "del onPointValueChanged");
        PageScripts& scripts = plant.load();
        plant.takeFlow(1);
        scripts.noteValues();
        plant.takeFlow(2); // with the next batch
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
        plant.takeFlow(3);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("s 3.0"));
        scripts.fire(TriggerType::MouseRelease, &shape, at(1, 1));
        plant.takeFlow(4);
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
        scripts.fire(TriggerType::MousePress, &shape, at(1, 1));
        plant.takeFlow(5); // the first batch since
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("s 5.0"));
    }

    void everyOwnerHearsOfChanges()
    {
        ScriptPage plant;
        for (const char* name : {"a", "b"}) {
            Shape& shape = plant.addShape(name);
            plant.bind(shape, "FLOW");
            plant.addScript(&shape, TriggerType::ObjectLoading,
                            "def onPointValueChanged(name, value): print(shape.name, name, value)");
        }
        plant.addScript(nullptr, TriggerType::CanvasLoad,
                        "def onPointValueChanged(name, value): print('page', name, value)");
        PageScripts& scripts = plant.load();
        plant.takeFlow(2);
        scripts.noteValues();
        QStringList lines = plant.printed().split(text(", "));
        lines.sort();
        QCOMPARE(lines, QStringList({text("a FLOW 2.0"), text("b FLOW 2.0"), text("page FLOW 2.0")}));
    }

    void aShapeWithAllItsValuesIsToldOnce()
    {
        ScriptPage plant;
        Shape& both = plant.addShape("both");
        plant.bind(both, "FLOW");
        plant.bind(both, "LEVEL:Description");
        Shape& one = plant.addShape("one");
        plant.bind(one, "FLOW");
        Shape& unbound = plant.addShape("unbound");
        Shape& lost = plant.addShape("lost");
        plant.bind(lost, "NOWHERE");
        for (Shape* shape : {&both, &unbound, &lost})
            plant.addScript(shape, TriggerType::ObjectLoading,
                            "def onDataLoaded(obj): print('own', obj.name, obj is shape)");
        plant.addScript(nullptr, TriggerType::CanvasLoad, "def onDataLoaded(obj): print('page', obj.name, shape.name)");
        PageScripts& scripts = plant.load();
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
        plant.takeFlow(1);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("page one one"));
        plant.takeLevel(1);
        plant.takeFlow(2);
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("own both True"));
        plant.takeFlow(3);
        plant.takeLevel(4);
        scripts.noteValues();
        QCOMPARE(plant.printed(), QString());
    }

    void valuesThatAreThereAlreadyAreToldWithTheNextBatch()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.bind(shape, "FLOW");
        plant.addScript(&shape, TriggerType::ObjectLoading, "def onDataLoaded(obj): print(obj.name)");
        plant.takeFlow(1);
        PageScripts& scripts = plant.load();
        scripts.noteValues();
        QCOMPARE(plant.printed(), text("s"));
    }

    void whatOperatorsDoWithShapesComesToHandlers()
    {
        ScriptPage plant;
        Shape& own = plant.addShape("own");
        Shape& other = plant.addShape("other");
        plant.addScript(&own, TriggerType::ObjectLoading,
                        "def onTextChanged(obj, text): print('own', obj.name, shape.name, text, trigger, event)");
        plant.addScript(nullptr, TriggerType::CanvasLoad,
                        "def onTextChanged(obj, text): print('page', obj.name, shape.name, text)\n"
                        "def onGraphClicked(obj, index, x, y): print(obj.name, index, x, y)\n"
                        "def onClick(): print('page click')");
        plant.load();
        own.act(text("onTextChanged"), {text("a")});
        QCOMPARE(plant.printed(), text("own own own a 0 None"));
        other.act(text("onTextChanged"), {text("b")}); // a shape without any script of its own
        QCOMPARE(plant.printed(), text("page other other b"));
        other.act(text("onGraphClicked"), {3, 1.5, -2.0});
        QCOMPARE(plant.printed(), text("other 3 1.5 -2.0"));
        other.act(text("onReturnPressed"));            // nobody has one
        other.act(text("onTextchanged"), {text("c")}); // no handler at all
        other.act(text("onClick"));                    // not the page's affair
        QCOMPARE(plant.printed(), QString());
        QCOMPARE(plant.failures, QStringList());
    }

    void aPageMayBeClosedFromItsOwnScript()
    {
        ScriptPage plant;
        Shape& shape = plant.addShape("s");
        plant.addScript(&shape, TriggerType::ObjectLoading, "def onDoubleClick(): print('handler', canvas.name)");
        plant.addScript(&shape, TriggerType::MouseDoubleClick, "pages.close()\nprint('closing', canvas.name)");
        plant.addScript(&shape, TriggerType::MouseDoubleClick, "print('still', canvas.name)");
        plant.addScript(nullptr, TriggerType::CanvasUnload, "print('unload', canvas.name)");
        PageScripts& scripts = plant.load();
        QSignalSpy closed(&plant.engine, &ScriptEngine::closeRequested);
        QObject::connect(&plant.engine, &ScriptEngine::closeRequested, [&plant] {
            plant.scripts->unload();
            plant.scripts.reset();
            plant.page.canvas.reset();
        });
        scripts.fire(TriggerType::MouseDoubleClick, &shape, at(1, 1));
        QCOMPARE(plant.printed(), text("closing overview, still overview, handler overview"));
        QCOMPARE(closed.size(), 0);
        QTRY_COMPARE(closed.size(), 1);
        QCOMPARE(plant.printed(), text("unload overview"));
        QCOMPARE(plant.failures, QStringList());
    }
};

QTEST_MAIN(tst_PageScripts)
#include "tst_pagescripts.moc"
