// What is edited on a page besides its scripts: bindings, read-outs, operations, access; undone, redone and saved.

#include "host/actions/tagaction.h"
#include "host/runtime/livesystem.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/readout.h"
#include "platform/data/broweriteminfo.h"
#include "tests/support/designdesk.h"

#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(Shape*)
Q_DECLARE_METATYPE(const Shape*)

namespace {

using Desk = DesignDesk;
using Korvane::ScadaObjectType;
using Korvane::TriggerType;

const QByteArray points = "id,name,kind,unit,decimals,scale_low,scale_high,states,display_name,description\n"
                          "200001,FLOW,analog,l/min,1,0,150,,Flow,Flow through the loop\n"
                          "200002,LEVEL,analog,m,2,0,4,,Level,\n"
                          "200003,BARE,analog,,,,,,,\n"
                          "100001,PUMP,digital,,,,,Stopped|Running,,\n"
                          "100002,DOOR,digital,,,,,Closed|Open|Blocked by something in its way,,\n"
                          "100003,CONTACT,digital,,,,,,,\n";

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A page of 400 by 200 with these shapes on a layer of its own.
QByteArray pageOf(const QByteArray& shapes)
{
    return TestProject::json("{'format':'korvane-page','version':1,'size':[400,200],'layers':[{'name':'a','shapes':[" +
                             shapes + "]}]}");
}
QByteArray shapeOf(const char* className, const QByteArray& more = {})
{
    return QByteArray("{'class':'") + className + "','name':'it','place':[20,20,100,60]" +
           (more.isEmpty() ? more : "," + more) + "}";
}
QByteArray number(const char* tag)
{
    return QByteArray("'actions':[{'type':2,'targets':[{'tag':'") + tag + "','by':'hand'}]}]";
}

Korvane::BrowerItemInfo item(const char* name, ScadaObjectType type = ScadaObjectType::AnalogPoint, int number = 200001)
{
    return {type, number, text(name), text(name), {}, {}};
}

struct Edits : Desk
{
    explicit Edits(const QByteArray& page = TestProject::plantPage()) : Desk(page, points) {}
    QUndoStack& undo() const { return document->undoStack(); }
    Shape& it() const { return *shape("it"); }
    QVariant property(const char* name) const { return it().namedProperty(text(name)); }
    QVariantMap settings(std::size_t place = 0) const { return document->bindings(it()).at(place).action->settings(); }
    int shapes() const { return static_cast<int>(document->canvas().shapeCount()); }
};

} // namespace

class tst_DesignEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<Shape*>();
        qRegisterMetaType<const Shape*>();
    }

    void aReadOutIsAddedForAnAnalogPoint()
    {
        const Edits edits;
        Shape& added = edits.document->addReadOut(text("FLOW"), {200, 150});
        QVERIFY(dynamic_cast<ReadOut*>(&added));
        QCOMPARE(added.name(), text("FLOW"));
        QCOMPARE(added.namedProperty(text("Unit")), QVariant(text("l/min")));
        QCOMPARE(added.namedProperty(text("Decimals")), QVariant(1));
        QCOMPARE(edits.bindings(&added), text("Number FLOW"));
        QVERIFY(QRectF(140, 130, 120, 40).contains(added.place()));
        QVERIFY(added.place().contains(QPointF(200, 150)));
        QCOMPARE(edits.document->canvas().layers().back()->shapes().back().get(), &added); // on top
        QVERIFY(edits.document->isModified());
    }

    void aReadOutOfADigitalPointShowsItsStates()
    {
        const Edits edits;
        Shape& added = edits.document->addReadOut(text("PUMP"), {200, 150});
        QCOMPARE(edits.bindings(&added), text("Text PUMP"));
        const QVariantMap settings = edits.document->bindings(added).at(0).action->settings();
        QCOMPARE(settings.value(text("Texts")).toStringList(), QStringList({text("Stopped"), text("Running")}));
        const Shape& wide = edits.document->addReadOut(text("DOOR"), {200, 100});
        QVERIFY(wide.place().width() > added.place().width() + 50);
        const Shape& bare = edits.document->addReadOut(text("CONTACT"), {200, 50});
        QCOMPARE(edits.bindings(&bare), text("Number CONTACT"));
        QCOMPARE(bare.namedProperty(text("Decimals")), QVariant(0));
    }

    void aReadOutOfATextFieldShowsText()
    {
        const Edits edits;
        QCOMPARE(edits.bindings(&edits.document->addReadOut(text("FLOW:FullName"), {200, 150})),
                 text("Text FLOW:FullName"));
        QCOMPARE(edits.bindings(&edits.document->addReadOut(text("FLOW:TodayMean"), {200, 50})),
                 text("Number FLOW:TodayMean"));
    }

    void readOutsHaveNamesOfTheirOwn()
    {
        const Edits edits;
        QCOMPARE(edits.document->addReadOut(text("FLOW"), {50, 50}).name(), text("FLOW"));
        QCOMPARE(edits.document->addReadOut(text("FLOW"), {50, 90}).name(), text("FLOW 2"));
        QCOMPARE(edits.document->addReadOut(text("FLOW:TodayMean"), {50, 150}).name(), text("FLOW 3"));
    }

    void aReadOutStaysOnThePage_data()
    {
        QTest::addColumn<QPointF>("middle");
        QTest::newRow("at the top left") << QPointF(0, 0);
        QTest::newRow("at the bottom right") << QPointF(400, 200);
    }
    void aReadOutStaysOnThePage()
    {
        QFETCH(QPointF, middle);
        const Edits edits;
        const QRectF place = edits.document->readOutPlace(text("FLOW"), middle);
        QVERIFY(QRectF(0, 0, 400, 200).contains(place));
        QCOMPARE(edits.document->addReadOut(text("FLOW"), middle).place(), place);
    }

    void aPageWithoutAVisibleLayerGetsOne()
    {
        Edits edits;
        edits.reopen("empty");
        const Canvas& canvas = edits.document->canvas();
        QCOMPARE(canvas.layers().size(), std::size_t(0));
        edits.document->addReadOut(text("FLOW"), {50, 50});
        edits.document->addReadOut(text("LEVEL"), {50, 90});
        QCOMPARE(canvas.layers().size(), std::size_t(1));
        QCOMPARE(edits.shapes(), 2);
        edits.undo().undo();
        edits.undo().undo();
        QCOMPARE(canvas.layers().size(), std::size_t(0));
        edits.undo().redo();
        edits.undo().redo();
        QCOMPARE(edits.shapes(), 2);
        QVERIFY(edits.shape("LEVEL"));

        Edits hidden(TestProject::plantPage().replace("\"visible\": true", "\"visible\": false"));
        Shape& added = hidden.document->addReadOut(text("FLOW"), {50, 50});
        QCOMPARE(hidden.document->canvas().layers().size(), std::size_t(3));
        QCOMPARE(added.layer(), hidden.document->canvas().layers().back().get());
    }

    void addingIsUndoneAndRedone()
    {
        const Edits edits;
        const QSignalSpy added(edits.document.get(), &DesignDocument::shapeAdded);
        const QSignalSpy gone(edits.document.get(), &DesignDocument::shapeGone);
        Shape* shape = &edits.document->addReadOut(text("FLOW"), {200, 150});
        QCOMPARE(edits.shapes(), 4);
        edits.undo().undo();
        QCOMPARE(edits.shapes(), 3);
        QVERIFY(!edits.document->isModified());
        QVERIFY(edits.document->save());
        QCOMPARE(edits.file(), TestProject::plantPage());
        edits.undo().redo();
        QCOMPARE(edits.shape("FLOW"), shape);
        QCOMPARE(edits.bindings(shape), text("Number FLOW"));
        QCOMPARE(added.size(), 2);
        QCOMPARE(gone.size(), 1);
    }

    void scriptsOfAShapeThatIsTakenBackComeAgainWithIt()
    {
        const Edits edits;
        const Shape& added = edits.document->addReadOut(text("FLOW"), {200, 150});
        edits.set(&added, TriggerType::MousePress, "kept");
        edits.undo().undo();
        QVERIFY(edits.document->isModified()); // a script is no matter of the stack
        edits.undo().redo();
        QCOMPARE(edits.scripts(edits.shape("FLOW")), text("8: kept"));
        edits.undo().undo();
        edits.document->addReadOut(text("LEVEL"), {200, 150}); // the first one can't come again
        QVERIFY(edits.document->page().events.of(&added).empty());
        QVERIFY(edits.document->save());
        QVERIFY(!edits.file().contains("kept"));
    }

    void whatIsAddedCanBeTriedByScripts()
    {
        const Edits edits;
        ScriptEngine& scripts = edits.system->scripts();
        Canvas& trial = edits.document->trialCanvas();
        edits.document->addReadOut(text("FLOW"), {200, 150});
        scripts.runForCanvas(&trial, text("canvas['FLOW']['Unit'] = 'tried'"));
        QCOMPARE(scripts.lastError(), QString());
        QCOMPARE(edits.shape("FLOW")->namedProperty(text("Unit")), QVariant(text("l/min")));
        edits.undo().undo();
        scripts.runForCanvas(&trial, text("canvas['FLOW']"));
        QVERIFY(scripts.lastError().contains(text("no shape \"FLOW\"")));
        QCOMPARE(trial.shapeNames(), edits.document->canvas().shapeNames());
    }

    void anUnboundShapeGetsWhatSuitsIt_data()
    {
        QTest::addColumn<QByteArray>("className");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("bindings"); // empty for none that suits
        const auto row = [](const char* className, const char* tag, const char* bindings) {
            QTest::addRow("%s for %s", className, tag) << QByteArray(className) << text(tag) << text(bindings);
        };
        row("ReadOut", "FLOW", "Number FLOW");
        row("ReadOut", "PUMP", "Text PUMP");
        row("Label", "FLOW", "Text FLOW");
        row("Bar", "FLOW", "Number FLOW");
        row("Tank", "LEVEL", "Number LEVEL");
        row("RoundGauge", "FLOW", "Number FLOW");
        row("InputField", "FLOW", "Number FLOW");
        row("Pump", "PUMP", "State PUMP");
        row("Valve", "DOOR", "State DOOR");
        row("Breaker", "PUMP", "State PUMP");
        row("SvgSymbol", "PUMP", "State PUMP");
        row("Pipe", "FLOW", "Number FLOW");
        row("Choice", "DOOR", "Number DOOR");
        row("Trend", "FLOW", "Trend FLOW");
        for (const char* plain : {"Rectangle", "Ellipse", "Line", "Button", "Table", "DateField"})
            row(plain, "FLOW", "");
    }
    void anUnboundShapeGetsWhatSuitsIt()
    {
        QFETCH(QByteArray, className);
        QFETCH(QString, tag);
        QFETCH(QString, bindings);
        const Edits edits(pageOf(shapeOf(className.constData())));
        QCOMPARE(edits.document->canBind(edits.it()), !bindings.isEmpty());
        if (bindings.isEmpty())
            return;
        edits.document->addBinding(edits.it(), tag);
        QCOMPARE(edits.bindings(&edits.it()), bindings);
        edits.undo().undo();
        QCOMPARE(edits.bindings(&edits.it()), QString());
    }

    void theActionSetsTheShapesOwnProperty()
    {
        const Edits pipe(pageOf(shapeOf("Pipe")));
        pipe.document->addBinding(pipe.it(), text("FLOW"));
        QCOMPARE(pipe.settings().value(text("Property")), QVariant(text("Flow")));
        const Edits choice(pageOf(shapeOf("Choice")));
        choice.document->addBinding(choice.it(), text("DOOR"));
        QCOMPARE(choice.settings().value(text("Property")), QVariant(text("Index")));
        const Edits label(pageOf(shapeOf("Label")));
        label.document->addBinding(label.it(), text("LEVEL"));
        QCOMPARE(label.settings().value(text("Format")), QVariant(text("%1 m")));
        QCOMPARE(label.settings().value(text("Decimals")), QVariant(2));
    }

    void aNewBindingBringsThePointsScale()
    {
        const Edits fresh(pageOf(shapeOf("RoundGauge")));
        fresh.document->addBinding(fresh.it(), text("FLOW"));
        QCOMPARE(fresh.property("Maximum"), QVariant(150.0));
        QCOMPARE(fresh.property("Unit"), QVariant(text("l/min")));
        fresh.undo().undo();
        QCOMPARE(fresh.property("Maximum"), QVariant(100.0));
        QCOMPARE(fresh.property("Unit"), QVariant(QString()));

        const Edits drawn(pageOf(shapeOf("RoundGauge", "'properties':{'Maximum':7}"))); // as somebody wants it
        drawn.document->addBinding(drawn.it(), text("FLOW"));
        QCOMPARE(drawn.property("Maximum"), QVariant(7.0));
        QCOMPARE(drawn.property("Unit"), QVariant(text("l/min")));
    }

    void anotherPointTakesThePlaceOfTheOne()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", "'properties':{'Unit':'l/min','Decimals':1}," + number("FLOW"))));
        const QSignalSpy changed(edits.document.get(), &DesignDocument::bindingsChanged);
        edits.document->replaceObject(edits.it(), text("FLOW"), item("LEVEL"));
        QCOMPARE(edits.bindings(&edits.it()), text("Number LEVEL"));
        QCOMPARE(edits.property("Unit"), QVariant(text("m")));
        QCOMPARE(edits.property("Decimals"), QVariant(2));
        QCOMPARE(changed.size(), 1);
        QVERIFY(edits.document->save());
        QVERIFY(edits.file().contains("\"LEVEL\"") && !edits.file().contains("\"FLOW\""));
        QVERIFY(edits.file().contains("\"by\": \"hand\"")); // what is stored with the tag
        edits.undo().undo();
        QCOMPARE(edits.bindings(&edits.it()), text("Number FLOW"));
        QCOMPARE(edits.property("Unit"), QVariant(text("l/min")));
        QVERIFY(edits.document->isModified()); // saved was the other
    }

    void whatWasDrawnOtherwiseStays()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", "'properties':{'Unit':'litres','Decimals':1}," + number("FLOW"))));
        edits.document->replaceObject(edits.it(), text("FLOW"), item("LEVEL"));
        QCOMPARE(edits.property("Unit"), QVariant(text("litres")));
        QCOMPARE(edits.property("Decimals"), QVariant(2));
    }

    void aReadOutThatShowsAnotherKindOfPointShowsItAsThat()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", number("FLOW"))));
        edits.document->replaceObject(edits.it(), text("FLOW"), item("PUMP", ScadaObjectType::DigitalPoint, 100001));
        QCOMPARE(edits.bindings(&edits.it()), text("Text PUMP"));
        edits.document->replaceObject(edits.it(), text("PUMP"), item("DOOR", ScadaObjectType::DigitalPoint, 100002));
        QCOMPARE(edits.settings().value(text("Texts")).toStringList().value(2),
                 text("Blocked by something in its way"));
        edits.undo().undo();
        edits.undo().undo();
        QCOMPARE(edits.bindings(&edits.it()), text("Number FLOW"));
    }

    void anActionWithSettingsOfItsOwnKeepsThem()
    {
        const Edits edits(
            pageOf(shapeOf("ReadOut", "'actions':[{'type':2,'targets':[{'tag':'FLOW'}],'settings':{'Factor':60}}]")));
        edits.document->replaceObject(edits.it(), text("FLOW"), item("PUMP", ScadaObjectType::DigitalPoint, 100001));
        QCOMPARE(edits.bindings(&edits.it()), text("Number PUMP"));
        QCOMPARE(edits.settings().value(text("Factor")), QVariant(60.0));
    }

    void aFieldStaysWhereTheOtherObjectHasIt()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", number("FLOW:TodayMean"))));
        edits.document->replaceObject(edits.it(), text("FLOW"), item("LEVEL"));
        QCOMPARE(edits.bindings(&edits.it()), text("Number LEVEL:TodayMean"));
        Korvane::BrowerItemInfo withField = item("BARE");
        withField.property = text("TodayMaximum");
        edits.document->replaceObject(edits.it(), text("LEVEL"), withField);
        QCOMPARE(edits.bindings(&edits.it()), text("Number BARE:TodayMaximum"));
        edits.document->replaceObject(edits.it(), text("BARE"), item("PUMP", ScadaObjectType::DigitalPoint, 100001));
        QVERIFY(!edits.bindings(&edits.it()).contains(text("TodayMaximum"))); // contacts have none
    }

    void allBindingsToAnObjectFollowAsOneEdit()
    {
        const QByteArray rule =
            "{'type':4,'rules':[{'when':[{'tag':'FLOW','operator':'>','bound':'10'}],"
            "'set':{'TextColor':'#ff0000'},'why':'high'},"
            "{'when':[{'tag':'FLOW','operator':'<','bound':'LEVEL'}],'set':{'TextColor':'#00ff00'}}]}";
        const Edits edits(pageOf(shapeOf("ReadOut", "'actions':[{'type':2,'targets':[{'tag':'FLOW'}]}," + rule + "]")));
        QCOMPARE(edits.document->boundObjects(edits.it()), QStringList({text("FLOW"), text("LEVEL")}));
        QVERIFY(edits.document->save());
        const QByteArray before = edits.file();
        edits.document->replaceObject(edits.it(), text("FLOW"), item("BARE"));
        QCOMPARE(edits.bindings(&edits.it()), text("Number BARE | Colour, condition BARE | Colour, condition LEVEL"));
        QVERIFY(edits.document->save());
        QVERIFY(edits.file().contains("\"why\": \"high\"") && !edits.file().contains("\"FLOW\""));
        edits.undo().undo(); // both
        QVERIFY(edits.document->save());
        QCOMPARE(edits.file(), before);
    }

    void theSamePointChangesNothing()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", number("FLOW:TodayMean"))));
        edits.document->replaceObject(edits.it(), text("FLOW"), item("FLOW"));
        edits.document->setBinding(edits.document->bindings(edits.it()).at(0), text("FLOW:TodayMean"));
        QCOMPARE(edits.undo().count(), 0);
    }

    void aTrendHasACurveEach()
    {
        const Edits edits(pageOf(shapeOf("Trend")));
        edits.document->addBinding(edits.it(), text("FLOW"));
        edits.document->addBinding(edits.it(), text("LEVEL"));
        QCOMPARE(edits.bindings(&edits.it()), text("Trend, value 1 FLOW | Trend, value 2 LEVEL"));
        QCOMPARE(edits.property("CurveNames").toStringList(), QStringList({text("Flow"), text("Level")}));
        edits.document->replaceObject(edits.it(), text("LEVEL"), item("BARE"));
        QCOMPARE(edits.property("CurveNames").toStringList(), QStringList({text("Flow"), text("BARE")}));
        for (int more = 2; more < 8; ++more)
            edits.document->addBinding(edits.it(), text("LEVEL"));
        QVERIFY(!edits.document->canAddBinding(edits.it())); // it draws no more
        QVERIFY(edits.document->canBind(edits.it()));
        while (edits.undo().canUndo())
            edits.undo().undo();
        QCOMPARE(edits.bindings(&edits.it()), QString());
        QCOMPARE(edits.property("CurveNames").toStringList(), QStringList());
    }

    void aBindingIsTakenAway()
    {
        const Edits edits(pageOf(shapeOf("ReadOut", "'actions':[{'type':2,'targets':[{'tag':'FLOW'}]},"
                                                    "{'type':5,'rules':[{'when':[{'tag':'PUMP','operator':'==','bound':"
                                                    "'1'}],'set':{'Visible':false}}]}]")));
        const auto binding = [&edits](std::size_t place) { return edits.document->bindings(edits.it()).at(place); };
        QVERIFY(!edits.document->removeBinding(binding(1)));
        QVERIFY(edits.document->removeBinding(binding(0)));
        QCOMPARE(edits.bindings(&edits.it()), text("Visibility, condition PUMP"));
        edits.undo().undo();
        QCOMPARE(edits.bindings(&edits.it()), text("Number FLOW | Visibility, condition PUMP")); // in their order
    }

    void whatCouldNotBeLoadedIsLeftAlone()
    {
        const QByteArray page = pageOf(shapeOf("Hologram", number("FLOW")));
        const Edits edits(page);
        QVERIFY(dynamic_cast<Placeholder*>(&edits.it()));
        QVERIFY(!edits.document->canBind(edits.it()));
        edits.document->setOperation(edits.it(), Operation());
        QCOMPARE(edits.undo().count(), 0);
    }

    void anOperationIsSetUndoneAndSaved()
    {
        Edits edits(pageOf(shapeOf("Button")));
        const QSignalSpy changed(edits.document.get(), &DesignDocument::operationChanged);
        QVERIFY(!edits.document->operation(edits.it()));
        Operation operation;
        operation.kind = Operation::Kind::SetPoint;
        operation.tag = text("FLOW");
        operation.key = text("F7");
        NumberInputParam limits;
        limits.minValue = 5;
        limits.maxValue = 90;
        operation.input.setNumberInputParam(limits);
        edits.document->setOperation(edits.it(), operation);
        edits.document->setOperation(edits.it(), operation); // the same again
        QCOMPARE(edits.undo().count(), 1);
        QCOMPARE(changed.size(), 1);
        Operation other = operation;
        limits.maxValue = 91;
        other.input.setNumberInputParam(limits);
        edits.document->setOperation(edits.it(), other);
        QCOMPARE(edits.undo().count(), 2);
        edits.undo().undo();
        QVERIFY(edits.document->save());
        edits.reopen();
        QVERIFY(edits.document->operation(edits.it())->isEqual(operation));
        edits.document->setOperation(edits.it(), std::nullopt);
        QVERIFY(edits.document->save());
        QVERIFY(!edits.file().contains("operation"));
        edits.undo().undo();
        QVERIFY(edits.document->operation(edits.it())->isEqual(operation));
    }

    void anOperationThatCantBeReadComesBackWithUndo()
    {
        const Edits edits(pageOf(shapeOf("Button", "'operation':'press it'")));
        QVERIFY(edits.document->save());
        const QByteArray before = edits.file();
        Operation operation;
        operation.tag = text("PUMP");
        edits.document->setOperation(edits.it(), operation);
        QVERIFY(edits.document->save());
        QVERIFY(!edits.file().contains("press it"));
        edits.undo().undo();
        QVERIFY(edits.document->save());
        QCOMPARE(edits.file(), before);
    }

    void accessIsSetUndoneAndSaved()
    {
        Edits edits;
        const QSignalSpy changed(edits.document.get(), &DesignDocument::accessChanged);
        edits.document->setAccess({true, {3, 5}});
        edits.document->setAccess({true, {3, 5}});
        QCOMPARE(edits.undo().count(), 1);
        QCOMPARE(changed.size(), 1);
        QVERIFY(edits.document->save());
        edits.undo().undo();
        QVERIFY(!edits.document->page().access.isProtected);
        edits.reopen();
        QVERIFY(edits.document->page().access.isEqual({true, {3, 5}}));
    }

    void modifiedIsWhatDiffersFromTheFile()
    {
        const Edits edits;
        QSignalSpy modified(edits.document.get(), &DesignDocument::modifiedChanged);
        edits.document->addReadOut(text("FLOW"), {200, 150});
        edits.undo().undo();
        edits.undo().redo();
        QCOMPARE(modified, QList<QVariantList>({{true}, {false}, {true}}));
        QVERIFY(edits.document->save());
        QVERIFY(!edits.document->isModified());
        edits.undo().undo();
        QVERIFY(edits.document->isModified());
        edits.set(nullptr, TriggerType::KeyPress, "x");
        edits.undo().redo();
        QVERIFY(edits.document->isModified()); // by the script alone
        QCOMPARE(modified.size(), 5);
    }

    void theRuntimeShowsWhatWasDesigned()
    {
        TestProject project;
        qint64 machineMs = 1600000100000;
        project.write("points.csv", points);
        project.write("rec.csv", "time;FLOW;PUMP\n1600000000;12.34;0\n1600000001;56.78;1\n");
        {
            auto system = DesignSystem::open(project.folder());
            QVERIFY(system);
            auto document = (*system)->openPage(text("plant"));
            (*document)->addReadOut(text("FLOW"), {200, 150});
            (*document)->addReadOut(text("PUMP"), {300, 150});
            (*document)->addBinding(*(*document)->canvas().findShape(text("text")), text("FLOW"));
            QVERIFY((*document)->save());
        }
        LiveSystem::Options options;
        options.folder = project.folder();
        options.source = text("recording:") + project.path("rec.csv");
        options.machineClock = [&machineMs] { return machineMs; };
        options.isStored = false;
        auto live = LiveSystem::open(options);
        QVERIFY2(live, live ? "" : qPrintable(live.error()));
        QCOMPARE((*live)->problems(), QStringList());
        const auto page = (*live)->openPage(text("plant"));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        (*page)->actions->setShown(true);
        (*live)->start();
        (*live)->dataService().stop();
        for (int tick = 0; tick < 20; ++tick) {
            machineMs += 100;
            (*live)->dataService().tick();
        }
        const auto shape = [&page](const char* name) { return (*page)->canvas->findShape(text(name)); };
        QCOMPARE(dynamic_cast<ReadOut*>(shape("FLOW"))->shownText(), text("56.8 l/min"));
        QCOMPARE(dynamic_cast<ReadOut*>(shape("PUMP"))->shownText(), text("Running"));
        QCOMPARE(shape("text")->namedProperty(text("Text")), QVariant(text("56.8 l/min")));
    }
};

QTEST_MAIN(tst_DesignEdits)
#include "tst_designedits.moc"
