// What an operator does on a page and what its shapes show of it: buttons, lists, fields and keys.

#include "host/actions/tagactionfactory.h"
#include "host/canvas/canvasview.h"
#include "host/canvas/page.h"
#include "host/operating/operatorinputdialog.h"
#include "host/operating/pageoperations.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "host/shapes/rectangle.h"
#include "platform/data/valuemarks.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/operatedplant.h"

#include <QtTest>

using Confirmation = ControlSetting::Confirmation;
using Command = Operation;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey level = OperatedPlant::level;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// A plant's page of 400 by 300 in a view of its size: a list of four setpoints of the level (0, 20, 40, 60), a field for the same,
/// a button that starts the pump with F9, and a bare shape.
struct PlantPage : OperatedPlant
{
    explicit PlantPage(const Setup& setup = {}, const QList<QKeySequence>& taken = {}) : OperatedPlant(setup)
    {
        page.fileName = text("pages/loop.pws");
        page.canvas = std::make_unique<Canvas>(text("loop"));
        page.canvas->setSize({400, 300});
        layer = &page.canvas->addLayer(text("layer"));
        page.actions.reset(hub.canvasActionManagerFactory()->createActionManager(page.canvas.get(), nullptr));
        list = &add<Choice>({20, 20, 150, 32}, "list");
        list->setNamedProperty(text("Items"), QStringList{text("a"), text("b"), text("c"), text("d")});
        Command choice{Command::Kind::SetPoint, text("LEVEL")};
        choice.input.enumInputParam = std::make_shared<EnumInputParam>();
        choice.input.enumInputParam->enumValues = {{text("a"), 0}, {text("b"), 20}, {text("c"), 40}, {text("d"), 60}};
        page.operations.set(list, choice);
        field = &add<InputField>({20, 80, 150, 32}, "field");
        page.operations.set(field, Command{Command::Kind::SetPoint, text("LEVEL")});
        button = &add<Rectangle>({20, 140, 100, 40}, "button");
        Command start{Command::Kind::Operate, text("PUMP"), 1.0};
        start.key = text("F9");
        page.operations.set(button, start);
        bare = &add<Rectangle>({200, 140, 100, 40}, "bare");
        source->refusal = text(""); // commands are taken
        takenKeys = taken;
    }
    template <typename ShapeType>
    ShapeType& add(const QRectF& place, const char* name)
    {
        Shape& shape = page.canvas->addShape(*layer, std::make_unique<ShapeType>());
        shape.setPlace(place);
        shape.setName(QString::fromLatin1(name));
        return static_cast<ShapeType&>(shape);
    }
    void bind(Shape& shape, const char* property, const char* tag)
    {
        auto action = TagActionFactory::make(TagAction::Number, &shape);
        action->addTarget(ObjectTarget::fromTagString(QString::fromLatin1(tag)), {});
        action->setSetting(text("Property"), QString::fromLatin1(property));
        page.actions->addAction(action.release());
    }
    void show()
    {
        page.actions->open(&database);
        page.actions->setShown(true);
        data.addPage(page.actions.get());
        view = std::make_unique<CanvasView>(*page.canvas);
        view->resize(400, 300);
        view->setZoom(1);
        operations = new PageOperations(*view, page, {manager, database, {}, takenKeys});
        QObject::connect(operations, &PageOperations::refused, [this](const QString& why) { refusals.append(why); });
        view->show();
        view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view.get()));
        view->setFocus();
        settle();
    }
    ~PlantPage()
    {
        data.removePage(page.actions.get());
        view.reset();
    }
    QPoint middleOf(const Shape& shape) const { return view->viewportRect(shape).center(); }
    void enter(const char* typed) const
    {
        field->beginEditing();
        field->write(QString::fromLatin1(typed));
        field->endEditing();
        field->enter(QString::fromLatin1(typed));
    }
    int requests() const { return told.filter(text("requested")).size(); }

    Page page;
    Layer* layer = nullptr;
    Choice* list = nullptr;
    InputField* field = nullptr;
    Rectangle* button = nullptr;
    Rectangle* bare = nullptr;
    QList<QKeySequence> takenKeys;
    std::unique_ptr<CanvasView> view; ///< goes before the page
    PageOperations* operations = nullptr;
    QStringList refusals;
};

/// A way to a command that comes to nothing: how the plant is made, what is done before, and what behind it.
struct Way
{
    OperatedPlant::Setup setup = {};
    std::function<void(PlantPage&)> before = {};
    std::function<void(PlantPage&)> after = {};
};

void dismiss(PlantPage& plant)
{
    for (auto* dialog : plant.view->findChildren<OperatorInputDialog*>()) {
        if (dialog->isVisible()) // the one before is on its way out
            dialog->reject();
    }
}

} // namespace

Q_DECLARE_METATYPE(Way)

class tst_PageOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    // What lists and fields show

    void whatCameToNothingIsNotShown_data()
    {
        QTest::addColumn<Way>("way");
        QTest::newRow("inhibited") << Way{
            {}, [](PlantPage& plant) { plant.database.setTagMarks(level, ValueMark::ControlInhibited); }, {}};
        QTest::newRow("refused by the source")
            << Way{{}, [](PlantPage& plant) { plant.source->refusal = text("the valve is stuck"); }, {}};
        QTest::newRow("never done") << Way{{}, {}, [](PlantPage& plant) { plant.pass(10000); }};
        QTest::newRow("not confirmed") << Way{
            OperatedPlant::with(level, [](ControlSetting& set) { set.confirmation = Confirmation::User; }), {}, {}};
        QTest::newRow("without the reason that it needs")
            << Way{OperatedPlant::with(level, [](ControlSetting& set) { set.isReasonNeeded = true; }), {}, &dismiss};
        QTest::newRow("of an object that there is not")
            << Way{{},
                   [](PlantPage& plant) {
                       for (const Shape* shape : {static_cast<Shape*>(plant.list), static_cast<Shape*>(plant.field)})
                           plant.page.operations.set(shape, Command{Command::Kind::SetPoint, text("NOWHERE")});
                   },
                   {}};
    }
    void whatCameToNothingIsNotShown()
    {
        QFETCH(Way, way);
        PlantPage plant(way.setup);
        plant.bind(*plant.field, "Value", "LEVEL");
        plant.list->setNamedProperty(text("Index"), 3);
        plant.show();
        plant.say(level, 55);
        if (way.before)
            way.before(plant);
        plant.list->choose(1);
        OperatedPlant::settle();
        if (way.after)
            way.after(plant);
        OperatedPlant::settle();
        QCOMPARE(plant.list->index(), 3);
        plant.enter("20");
        OperatedPlant::settle();
        if (way.after)
            way.after(plant);
        OperatedPlant::settle();
        QCOMPARE(plant.field->shownText(), text("55"));
        QCOMPARE(plant.valueOf(level), QVariant(55.0));
    }

    void whatIsDoneStays()
    {
        PlantPage plant;
        plant.bind(*plant.field, "Value", "LEVEL");
        auto& other = plant.add<InputField>({200, 80, 150, 32}, "other");
        plant.page.operations.set(&other, Command{Command::Kind::SetPoint, text("LEVEL")});
        plant.show();
        plant.list->choose(1);
        OperatedPlant::settle();
        QCOMPARE(plant.list->index(), 1); // while it is under way, too
        plant.say(level, 20);
        QCOMPARE(plant.told.last(), text("done 1"));
        QCOMPARE(plant.list->index(), 1);
        plant.enter("30");
        OperatedPlant::settle();
        QCOMPARE(plant.field->shownText(), text("30"));
        plant.say(level, 30);
        plant.say(level, 31.5); // and it goes on showing the process
        QCOMPARE(plant.field->shownText(), text("31.5"));
        other.beginEditing();
        other.write(text("40"));
        other.endEditing();
        other.enter(text("40"));
        OperatedPlant::settle();
        plant.say(level, 40);
        QCOMPARE(plant.told.last(), text("done 3"));
        QCOMPARE(other.shownText(), text("40")); // it has nothing else to show
    }

    void ofSeveralCommandsEachTakesBackItsOwn()
    {
        PlantPage plant;
        plant.list->setNamedProperty(text("Index"), 3);
        plant.show();
        plant.list->choose(1);
        OperatedPlant::settle();
        plant.list->choose(2); // another command is under way
        OperatedPlant::settle();
        QCOMPARE(plant.told.last(), text("refused 2"));
        QCOMPARE(plant.list->index(), 1);
        plant.pass(10000);
        QCOMPARE(plant.told.last(), text("timedOut 1"));
        QCOMPARE(plant.list->index(), 3);
        plant.list->choose(1);
        plant.list->choose(2);
        QVERIFY(plant.manager.cancel(3)); // the older one ends first
        OperatedPlant::settle();
        QCOMPARE(plant.list->index(), 2);
        plant.pass(10000);
        QCOMPARE(plant.list->index(), 3);
    }

    void whatAScriptShowsMeanwhileStays()
    {
        PlantPage plant;
        plant.list->setNamedProperty(text("Index"), 3);
        plant.show();
        plant.list->choose(1);
        OperatedPlant::settle();
        plant.list->setNamedProperty(text("Index"), 0);
        plant.list->choose(2); // another command is under way
        OperatedPlant::settle();
        QCOMPARE(plant.told.last(), text("refused 2"));
        QCOMPARE(plant.list->index(), 0);
        plant.pass(10000);
        QCOMPARE(plant.told.last(), text("timedOut 1"));
        QCOMPARE(plant.list->index(), 0);
    }

    void whatAScriptShowsWhileTheReasonIsAskedForStays()
    {
        PlantPage plant(OperatedPlant::with(level, [](ControlSetting& set) { set.isReasonNeeded = true; }));
        plant.list->setNamedProperty(text("Index"), 3);
        plant.show();
        plant.list->choose(1);
        OperatedPlant::settle();
        plant.list->setNamedProperty(text("Index"), 2);
        dismiss(plant);
        OperatedPlant::settle();
        QCOMPARE(plant.list->index(), 2);
    }

    void whatTheProcessHasByNowGoesFirst()
    {
        PlantPage plant;
        plant.bind(*plant.list, "Index", "PUMP");
        plant.show();
        plant.say(pump, 0);
        plant.list->choose(1);
        OperatedPlant::settle();
        plant.say(pump, 1); // the process comes to what was chosen, though the command does not
        plant.pass(10000);
        QCOMPARE(plant.told.last(), text("timedOut 1"));
        QCOMPARE(plant.list->index(), 1);
        plant.list->choose(2);
        OperatedPlant::settle();
        plant.say(pump, 0); // to something else
        QCOMPARE(plant.list->index(), 0);
        plant.pass(10000);
        QCOMPARE(plant.list->index(), 0);
    }

    void whatIsBeingWrittenStays()
    {
        PlantPage plant;
        plant.bind(*plant.field, "Value", "LEVEL");
        plant.show();
        plant.say(level, 55);
        plant.enter("20");
        OperatedPlant::settle();
        plant.field->beginEditing();
        plant.field->write(text("3"));
        plant.pass(10000);
        QCOMPARE(plant.told.last(), text("timedOut 1"));
        QCOMPARE(plant.field->shownText(), text("3"));
        plant.field->takeBack(); // not to what was refused
        plant.field->endEditing();
        QCOMPARE(plant.field->shownText(), text("55"));
    }

    void whatIsNoNumberGoes()
    {
        PlantPage plant;
        plant.bind(*plant.field, "Value", "LEVEL");
        plant.show();
        plant.say(level, 55);
        plant.enter("much");
        QCOMPARE(plant.field->shownText(), text("55"));
        QCOMPARE(plant.refusals, QStringList(text("LEVEL: what was entered is no number")));
        QCOMPARE(plant.requests(), 0);
    }

    void aShapeThatIsGoneIsLeftAlone()
    {
        PlantPage plant;
        plant.show();
        plant.list->choose(1);
        OperatedPlant::settle();
        plant.page.operations.set(plant.list, std::nullopt);
        const auto gone = plant.page.canvas->takeShape(*plant.list);
        plant.pass(10000);
        QCOMPARE(plant.told.last(), text("timedOut 1"));
        QCOMPARE(plant.list->index(), 1); // off the page
    }

    // Pushing

    void whatCantBeSeenGivesNoCommand_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"hidden", "on a hidden layer"})
            QTest::newRow(way) << text(way);
    }
    void whatCantBeSeenGivesNoCommand()
    {
        QFETCH(QString, way);
        PlantPage plant;
        plant.show();
        const QPoint place = plant.middleOf(*plant.button);
        if (way == text("hidden"))
            plant.button->setNamedProperty(text("Visible"), false);
        else
            plant.page.canvas->setLayerVisible(*plant.layer, false);
        OperatedPlant::settle();
        QTest::mouseClick(plant.view->viewport(), Qt::LeftButton, {}, place);
        QTest::keyClick(plant.view.get(), Qt::Key_F9);
        OperatedPlant::settle();
        QCOMPARE(plant.requests(), 0);
        plant.button->setNamedProperty(text("Visible"), true);
        plant.page.canvas->setLayerVisible(*plant.layer, true);
        OperatedPlant::settle();
        QTest::keyClick(plant.view.get(), Qt::Key_F9);
        OperatedPlant::settle();
        QCOMPARE(plant.requests(), 1);
    }

    void aKeyThatIsHeldGivesOneCommand()
    {
        PlantPage plant;
        plant.show();
        const auto press = [&plant](bool isRepeated) {
            QTest::simulateEvent(plant.view.get(), true, Qt::Key_F9, Qt::NoModifier, QString(), isRepeated);
            OperatedPlant::settle();
        };
        press(false);
        press(true);
        press(true);
        QCOMPARE(plant.requests(), 1);
        QTest::simulateEvent(plant.view.get(), false, Qt::Key_F9, Qt::NoModifier, QString(), false);
        press(false);
        QCOMPARE(plant.requests(), 2);
    }

    void aPushEndsWhereItBegan()
    {
        PlantPage plant;
        plant.show();
        const auto drag = [&plant](const Shape& from, const Shape& to) {
            QTest::mousePress(plant.view->viewport(), Qt::LeftButton, {}, plant.middleOf(from));
            QTest::mouseRelease(plant.view->viewport(), Qt::LeftButton, {}, plant.middleOf(to));
            OperatedPlant::settle();
        };
        drag(*plant.bare, *plant.button);
        drag(*plant.button, *plant.bare);
        QCOMPARE(plant.requests(), 0);
        drag(*plant.button, *plant.button);
        QCOMPARE(plant.requests(), 1);
    }

    // Keys

    void aKeyOfTheWindowIsTold_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("the same") << text("F9") << true;
        QTest::newRow("the first of several") << text("F9, F2") << true;
        QTest::newRow("another one") << text("Shift+F9") << false;
    }
    void aKeyOfTheWindowIsTold()
    {
        QFETCH(QString, key);
        QFETCH(bool, isTaken);
        PlantPage plant({}, {QKeySequence(text("F1")), QKeySequence(key)});
        plant.show();
        QStringList expected;
        if (isTaken)
            expected.append(text("pages/loop.pws: \"button\": its key does nothing: F9 is a key of the window"));
        QCOMPARE(plant.operations->problems(), expected);
        QTest::keyClick(plant.view.get(), Qt::Key_F9);
        OperatedPlant::settle();
        QCOMPARE(plant.requests(), isTaken ? 0 : 1);
    }

    void ofTwoShapesWithOneKeyTheFirstHasIt()
    {
        PlantPage plant;
        Command stop{Command::Kind::Operate, text("PUMP"), 0.0};
        stop.key = text("F9");
        plant.page.operations.set(plant.bare, stop);
        plant.show();
        QCOMPARE(plant.operations->problems(),
                 QStringList(text("pages/loop.pws: \"bare\": its key does nothing: F9 is that of \"button\"")));
        QTest::keyClick(plant.view.get(), Qt::Key_F9);
        OperatedPlant::settle();
        QCOMPARE(plant.requests(), 1);
        QCOMPARE(plant.source->written.at(0).value, 1.0);
    }
};

QTEST_MAIN(tst_PageOperations)
#include "tst_pageoperations.moc"
