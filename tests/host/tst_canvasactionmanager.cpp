#include "host/actions/canvasactionmanager.h"
#include "host/actions/colouraction.h"
#include "host/actions/numberaction.h"
#include "host/actions/tagactionfactory.h"
#include "host/canvas/canvas.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/readout.h"
#include "host/shapes/rectangle.h"
#include "platform/data/logdatainfo.h"
#include "platform/data/valuemarks.h"
#include "scada/binding/tlqgraphicsitem.h"
#include "tests/support/testaction.h"
#include "tests/support/testhub.h"
#include "tests/support/testproperties.h"

#include <QSignalSpy>
#include <QtTest>

#include <rapidcheck.h>

#include <cmath>

using Korvane::ScadaObjectType;

namespace {

/// A page of read-outs, one an action; the manager under test owns the actions.
struct TestPage
{
    explicit TestPage(int count = 4)
    {
        for (int number = 0; number < count; ++number) {
            const auto added =
                database.add({ScadaObjectType::AnalogPoint, 200001 + number, QStringLiteral("P%1").arg(number)});
            Q_ASSERT(added);
        }
        const auto unit = database.add({ScadaObjectType::RtuObject, 7, QStringLiteral("UNIT")});
        Q_ASSERT(unit);
        hub.setScadaRuntime(&database);
        hub.setAppPropertyManager(&properties);
        hub.setDataServiceInterface(nullptr);
        manager = std::make_unique<CanvasActionManager>(&canvas, &hub);
        layer = &canvas.addLayer(QStringLiteral("layer"));
    }

    Shape& addReadOut() { return canvas.addShape(*layer, std::make_unique<ReadOut>()); }
    NumberAction* addNumber(Shape& shape, const QStringList& tags)
    {
        auto* action = new NumberAction(&shape);
        action->setTags(tags);
        manager->addAction(action);
        return action;
    }

    RuntimeDatabase database;
    TestHub hub;
    TestProperties properties;
    Canvas canvas{QStringLiteral("page")};
    Layer* layer = nullptr;
    std::unique_ptr<CanvasActionManager> manager;
};

MwDataDepartment batchOf(std::initializer_list<std::pair<quint32, double>> values)
{
    MwDataDepartment batch;
    for (const auto& [id, value] : values)
        batch.points.emplace(id, testRecord(value));
    return batch;
}

int overlaysOf(Shape& shape)
{
    return shape.childItems().size();
}

/// The tags of two conditions joined by a link.
ActionRule ruleOf(std::vector<ConditionData> conditions, const QVariantMap& set)
{
    ActionRule rule;
    for (const ConditionData& data : conditions)
        rule.conditions.emplace_back(data);
    rule.set = set;
    return rule;
}

} // namespace

class tst_CanvasActionManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBatchReachesTheShapes()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        NumberAction* action = page.addNumber(shape, {QStringLiteral("P1")});
        page.manager->takeBatch(batchOf({{200002, 1}})); // not opened yet
        QVERIFY(!shape.namedProperty(QStringLiteral("Value")).isValid());
        QVERIFY(!page.manager->isOpen());
        page.manager->open(&page.database);
        QVERIFY(page.manager->isOpen());
        QVERIFY(!page.manager->lastBatchTime().isValid());
        page.manager->takeBatch(batchOf({{200002, 12.5}}));
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(12.5));
        QCOMPARE(page.manager->changeCount(action), quint64(2)); // once at the opening
        QCOMPARE(page.manager->lastChange(action).batch, quint64(1));
        QVERIFY(page.manager->lastBatchTime().isValid());
        page.manager->takeBatch(batchOf({{200002, 12.5}}));
        QCOMPARE(page.manager->changeCount(action), quint64(2));
        page.manager->close();
        page.manager->takeBatch(batchOf({{200002, 3}}));
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(12.5));
        QVERIFY(!page.manager->isOpen());
    }

    void aPageOutOfSightIsBroughtUpToDate()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("P0")});
        std::vector<MwDataDepartment> present{batchOf({{200001, 42}})};
        QList<ObjectKey> asked;
        page.manager->setPresentRecords([&](const QList<ObjectKey>& objects) {
            asked = objects;
            return present;
        });
        page.manager->setShown(false);
        page.manager->open(&page.database);
        page.manager->takeBatch(batchOf({{200001, 1}}));
        QVERIFY(!shape.namedProperty(QStringLiteral("Value")).isValid());
        QVERIFY(!page.manager->isShown());
        page.manager->setShown(true);
        QVERIFY(page.manager->isShown());
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(42.0));
        QCOMPARE(asked, QList<ObjectKey>({{ScadaObjectType::AnalogPoint, 200001}}));
        present.emplace_back(); // the source has failed meanwhile
        page.manager->setShown(false);
        page.manager->setShown(true);
        QVERIFY(page.manager->isSourceFailed());
        QCOMPARE(overlaysOf(shape), 1);
    }

    void actionsAreTheManagers()
    {
        TestPage page;
        Shape& first = page.addReadOut();
        Shape& second = page.addReadOut();
        NumberAction* a = page.addNumber(first, {QStringLiteral("P0")});
        NumberAction* b = page.addNumber(second, {QStringLiteral("P1"), QStringLiteral("P0")});
        NumberAction* c = page.addNumber(first, {QStringLiteral("P1:HighLimit")});
        using List = QList<ScadaTagActionInterface*>;
        CanvasActionManager& manager = *page.manager;
        QCOMPARE(manager.canvas(), static_cast<KVCanvasInterface*>(&page.canvas));
        QCOMPARE(manager.actions(), (List{a, b, c}));
        manager.addAction(a); // twice is once
        QCOMPARE(manager.actions().size(), 3);
        QCOMPARE(manager.actionsOf(&first), (List{a, c}));
        QVERIFY(manager.moveAction(&first, 0, 1));
        QCOMPARE(manager.actionsOf(&first), (List{c, a}));
        QVERIFY(!manager.moveAction(&first, 0, 2));
        QVERIFY(!manager.moveAction(&first, -1, 0));
        QCOMPARE(manager.actionsNaming(QStringLiteral("P1:HighLimit")), List{c});
        manager.open(&page.database);
        QCOMPARE(manager.actionsBoundTo({ScadaObjectType::AnalogPoint, 200001}), (List{b, a}));
        QCOMPARE(manager.boundObjects().size(), 2);
        QCOMPARE(manager.targets().size(), 4);
        QStringList tags = manager.tagStrings();
        tags.sort();
        QCOMPARE(tags, (QStringList{QStringLiteral("P0"), QStringLiteral("P1")}));
        QVERIFY(manager.takeAction(b));
        QVERIFY(!manager.takeAction(b));
        QVERIFY(!manager.takeAction(nullptr));
        delete b;
        manager.removeActionsOf(&first);
        QVERIFY(manager.actions().isEmpty());
        page.addNumber(second, {QStringLiteral("P0")});
        manager.clear();
        QVERIFY(manager.actions().isEmpty());
    }

    void actionsAreFoundByTheirObjectWithOrWithoutAnIndex_data()
    {
        QTest::addColumn<bool>("isIndexed");
        QTest::newRow("before the first batch") << false;
        QTest::newRow("behind a batch") << true;
    }
    void actionsAreFoundByTheirObjectWithOrWithoutAnIndex()
    {
        QFETCH(bool, isIndexed);
        TestPage page;
        Shape& shape = page.addReadOut();
        NumberAction* a = page.addNumber(shape, {QStringLiteral("P0")});
        NumberAction* b = page.addNumber(shape, {QStringLiteral("P1"), QStringLiteral("P0")});
        NumberAction* c = page.addNumber(shape, {QStringLiteral("P1:HighLimit"), QStringLiteral("P1")}); // twice
        NumberAction* unit = page.addNumber(shape, {QStringLiteral("@R::UNIT")});
        NumberAction* property = page.addNumber(shape, {QStringLiteral("@::speed")});
        auto* foreign = new TestAction(&shape); // another host's, whose targets may be others every time
        foreign->add(QStringLiteral("P0"));
        page.manager->addAction(foreign);
        std::deque<ObjectTarget> others; // of the foreign one, bound before the index is made
        others.push_back(ObjectTarget::fromTagString(QStringLiteral("P3")));
        others.back().resolve(&page.database);
        page.manager->open(&page.database);
        const auto settle = [&] {
            if (isIndexed)
                page.manager->takeBatch(batchOf({{200001, 1}}));
        };
        using List = QList<ScadaTagActionInterface*>;
        const auto boundTo = [&](ScadaObjectType type, int id) { return page.manager->actionsBoundTo({type, id}); };
        const ScadaObjectType analog = ScadaObjectType::AnalogPoint;
        settle();
        QCOMPARE(boundTo(analog, 200001), (List{a, b, foreign}));
        QCOMPARE(boundTo(analog, 200002), (List{b, c}));
        QCOMPARE(boundTo(analog, 200004), List());
        QCOMPARE(boundTo(analog, 7), List());
        QCOMPARE(boundTo(ScadaObjectType::DigitalPoint, 200001), List());
        QCOMPARE(boundTo(ScadaObjectType::RtuObject, 7), List{unit});
        QCOMPARE(boundTo(ScadaObjectType::ChannelObject, 7), List());
        QCOMPARE(boundTo(ScadaObjectType::NoObject, 0), List());
        QVERIFY(!boundTo(ScadaObjectType::ApplicationProperty, 7).contains(property));

        foreign->targets.swap(others);
        QCOMPARE(boundTo(analog, 200001), (List{a, b}));
        QCOMPARE(boundTo(analog, 200004), List{foreign});
        settle();
        QCOMPARE(boundTo(analog, 200004), List{foreign});

        a->setTags({QStringLiteral("P2")}); // bound anew
        a->resolve(&page.database);
        QCOMPARE(boundTo(analog, 200001), List{b});
        QCOMPARE(boundTo(analog, 200003), List{a});
        settle();
        QCOMPARE(boundTo(analog, 200003), List{a});
        QVERIFY(page.manager->moveAction(&shape, 1, 2));
        QCOMPARE(boundTo(analog, 200002), (List{c, b}));
        settle();
        QCOMPARE(boundTo(analog, 200002), (List{c, b}));
        QVERIFY(page.manager->takeAction(c));
        delete c;
        QCOMPARE(boundTo(analog, 200002), List{b});
        settle();
        NumberAction* late = page.addNumber(shape, {QStringLiteral("P1")});
        late->resolve(&page.database);
        QCOMPARE(boundTo(analog, 200002), (List{b, late}));
        settle();
        QCOMPARE(boundTo(analog, 200002), (List{b, late}));
    }

    void overlaysGoWithTheirActions()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        NumberAction* action = page.addNumber(shape, {QStringLiteral("P0")});
        page.manager->open(&page.database);
        page.manager->takeBatch({});
        QCOMPARE(overlaysOf(shape), 1);
        QVERIFY(page.manager->takeAction(action));
        QCOMPARE(overlaysOf(shape), 0);
        page.manager->addAction(action);
        page.manager->takeBatch({});
        QCOMPARE(overlaysOf(shape), 1);
        page.manager->clear();
        QCOMPARE(overlaysOf(shape), 0);
    }

    void tagsAreReplacedAndRenamed()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        NumberAction* action = page.addNumber(shape, {QStringLiteral("P0:HighLimit")});
        QCOMPARE(page.manager->replaceText(QStringLiteral("p0"), QStringLiteral("P1")), 0);
        QCOMPARE(page.manager->replaceText(QStringLiteral("P0"), QStringLiteral("P1")), 1);
        QCOMPARE(action->tags(), QStringList{QStringLiteral("P1:HighLimit")});
        // The stored tag string is the one of the beginning: renaming starts from there.
        QCOMPARE(page.manager->replacePointNames({{QStringLiteral("P0"), QStringLiteral("P2")}}), 1);
        QCOMPARE(action->tags(), QStringList{QStringLiteral("P2:HighLimit")});
        QCOMPARE(page.manager->replacePointNames({}), 0);
    }

    void unknownNamesAreToldApart()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("P0"), QStringLiteral("NOWHERE"), QStringLiteral("12.5"),
                               QStringLiteral("@::user"), QStringLiteral("@R::UNIT")});
        page.manager->open(&page.database);
        const QList<ObjectTarget*> unresolved = page.manager->unresolvedTargets();
        QCOMPARE(unresolved.size(), 1);
        QCOMPARE(unresolved.first()->getTagString(), QStringLiteral("NOWHERE"));
    }

    void aSingleRecordIsShownAtOnce()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        NumberAction* action = page.addNumber(shape, {QStringLiteral("P0")});
        page.manager->open(&page.database);
        QuorixData record = testRecord(5.0, 0x100, 0, 0);
        page.manager->takeRecord({ScadaObjectType::AnalogPoint, 200001}, record);
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(5.0));
        QCOMPARE(page.manager->changeCount(action), quint64(2));
        QCOMPARE(overlaysOf(shape), 1);                  // with nothing to show
        page.manager->takeBatch(batchOf({{200004, 1}})); // does not name the point, and still ends the overlay
        QCOMPARE(overlaysOf(shape), 0);
    }

    void propertiesReachTheActionsThatNameThem()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("@::speed")});
        page.manager->open(&page.database);
        page.manager->takeProperty(QStringLiteral("speed"), 3);
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(3.0));
        page.properties.values.insert(QStringLiteral("speed"), 4);
        page.manager->takeBatch(batchOf({{200001, 1}})); // a batch that holds nothing of the action
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(4.0));
    }

    void refreshingPushesEveryValue()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("P0")});
        page.manager->open(&page.database);
        page.manager->takeBatch(batchOf({{200001, 1}}));
        shape.setNamedProperty(QStringLiteral("Value"), 99.0);
        page.manager->refreshAll();
        QCOMPARE(shape.namedProperty(QStringLiteral("Value")), QVariant(1.0));
    }

    void overlaysAreKeptAndShownAsAsked()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("P0")});
        page.manager->open(&page.database);
        QVERIFY(page.manager->isOverlayKept());
        page.manager->setOverlayKept(false);
        QVERIFY(!page.manager->isOverlayKept());
        page.manager->takeBatch({});
        QCOMPARE(overlaysOf(shape), 0);
        page.manager->setOverlayKept(true);
        page.manager->takeBatch({});
        QCOMPARE(overlaysOf(shape), 1);
        page.canvas.takeChanged();
        page.manager->setOverlayShown(false);
        QVERIFY(!shape.childItems().first()->isVisible());
        QVERIFY(shape.isChanged());
        page.manager->setOverlayShown(true);
        QVERIFY(shape.childItems().first()->isVisible());
    }

    void aMarkThatChangesIsDrawn()
    {
        TestPage page;
        Shape& shape = page.addReadOut();
        page.addNumber(shape, {QStringLiteral("P0")});
        page.manager->open(&page.database);
        MwDataDepartment batch;
        batch.points.emplace(200001, testRecord(1.0, 0, ValueMark::AboveHigh, 0));
        page.manager->takeBatch(batch);
        page.canvas.takeChanged();
        batch.points.clear();
        batch.points.emplace(200001, testRecord(1.0, 0, ValueMark::AboveHigh, ValueMark::Stale));
        page.manager->takeBatch(batch);
        QVERIFY(shape.isChanged());
        page.canvas.takeChanged();
        page.manager->takeBatch(batch);
        QVERIFY(!shape.isChanged());
    }

    void conditionsAreUndoneWhileTheSourceFails()
    {
        TestPage page;
        auto& shape = page.canvas.addShape(*page.layer, std::make_unique<Rectangle>());
        const QColor drawn(Qt::gray);
        shape.setNamedProperty(QStringLiteral("FillColor"), drawn);
        auto* action = new ColourAction(&shape);
        action->setRules({ruleOf({{QStringLiteral("P0"), QStringLiteral("10"), Korvane::OpType::Greater}},
                                 {{QStringLiteral("FillColor"), QColor(Qt::red)}})});
        page.manager->addAction(action);
        page.manager->open(&page.database);
        const auto fill = [&shape] { return shape.namedProperty(QStringLiteral("FillColor")).value<QColor>(); };
        page.manager->takeBatch(batchOf({{200001, 11}}));
        QCOMPARE(fill(), QColor(Qt::red));
        QCOMPARE(action->matchedCondition(), QStringLiteral("P0 > 10"));
        page.manager->takeBatch({});
        QVERIFY(page.manager->isSourceFailed());
        QCOMPARE(fill(), drawn);
        QCOMPARE(action->matchedCondition(), QString());
        page.manager->takeBatch(batchOf({{200004, 0}})); // back, without a word about P0
        QVERIFY(!page.manager->isSourceFailed());
        QCOMPARE(fill(), QColor(Qt::red));
        MwDataDepartment batch;
        batch.points.emplace(200001, testRecord(11.0, 0, 0, ValueMark::CommunicationFailed)); // one of several sources
        page.manager->takeBatch(batch);
        QCOMPARE(fill(), drawn);
        page.manager->takeBatch(batchOf({{200001, 11}}));
        QCOMPARE(fill(), QColor(Qt::red));
        page.manager->takeBatch(batchOf({{200001, 10}}));
        QCOMPARE(fill(), drawn);
    }

    void aFailedSourceUndoesConditionsOfEveryField()
    {
        TestPage page;
        auto& shape = page.canvas.addShape(*page.layer, std::make_unique<Rectangle>());
        const QVariant drawn = shape.namedProperty(QStringLiteral("FillColor"));
        auto* action = new ColourAction(&shape);
        action->setRules({ruleOf({{QStringLiteral("P0:PointName"), QStringLiteral("1"), Korvane::OpType::NotEqual}},
                                 {{QStringLiteral("FillColor"), QColor(Qt::red)}})});
        page.manager->addAction(action);
        page.manager->open(&page.database);
        page.manager->takeBatch(batchOf({{200001, 1}}));
        QCOMPARE(shape.namedProperty(QStringLiteral("FillColor")), QVariant(QColor(Qt::red)));
        MwDataDepartment batch;
        batch.points.emplace(200001, testRecord(1.0, 0, 0, ValueMark::CommunicationFailed));
        page.manager->takeBatch(batch);
        QCOMPARE(shape.namedProperty(QStringLiteral("FillColor")), drawn);
    }

    void aRuleThatDoesNotHoldLeavesTheShapeToOthers()
    {
        TestPage page;
        auto& shape = page.canvas.addShape(*page.layer, std::make_unique<Rectangle>());
        for (const char* tag : {"P0", "P1"}) {
            auto* action = new ColourAction(&shape);
            action->setRules({ruleOf({{QString::fromLatin1(tag), QStringLiteral("10"), Korvane::OpType::Greater}},
                                     {{QStringLiteral("FillColor"), QColor(Qt::red)}})});
            page.manager->addAction(action);
        }
        page.manager->open(&page.database);
        page.manager->takeBatch(batchOf({{200001, 11}}));
        page.manager->takeBatch(batchOf({{200002, 5}}));
        QCOMPARE(shape.namedProperty(QStringLiteral("FillColor")), QVariant(QColor(Qt::red)));
    }

    void refreshingIsNoChange()
    {
        TestPage page;
        NumberAction* action = page.addNumber(page.addReadOut(), {QStringLiteral("P0")});
        page.manager->open(&page.database);
        page.manager->takeBatch(batchOf({{200001, 1}}));
        page.manager->takeBatch(batchOf({{200002, 1}}));
        page.manager->refreshAll();
        QCOMPARE(page.manager->lastChange(action).batch, quint64(1));
    }

    void blinkingColoursChangePlaces()
    {
        TestPage page;
        auto& shape = page.canvas.addShape(*page.layer, std::make_unique<Rectangle>());
        auto* action = new ColourAction(&shape);
        action->setRules({ruleOf({{QStringLiteral("P0"), QStringLiteral("10"), Korvane::OpType::Greater}},
                                 {{QStringLiteral("LineColor"), QColor(Qt::red)}, {QStringLiteral("Blink"), true}})});
        page.manager->addAction(action);
        page.manager->open(&page.database);
        const auto line = [&shape] { return shape.namedProperty(QStringLiteral("LineColor")).value<QColor>(); };
        const QColor drawn = line();
        page.manager->timeOut();
        QCOMPARE(line(), drawn);
        page.manager->timeOut();
        page.manager->takeBatch(batchOf({{200001, 11}}));
        QCOMPARE(line(), QColor(Qt::red));
        page.manager->timeOut();
        QCOMPARE(line(), drawn);
        page.manager->timeOut();
        QCOMPARE(line(), QColor(Qt::red));
        page.manager->takeBatch(batchOf({{200001, 1}}));
        QCOMPARE(line(), drawn);
        page.manager->timeOut();
        page.manager->timeOut();
        QCOMPARE(line(), drawn);
    }

    void otherHostsActionsGetEveryBatchAndTheMouse()
    {
        struct Interactive : TestAction
        {
            using TestAction::TestAction;
            bool interactMouseEvent() override { return true; }
            void geometryChanged(const QTransform& transform) override { seen = transform; }
            void timeOut() override { ++timeOuts; }
            QTransform seen;
            int timeOuts = 0;
        };
        TestPage page;
        Shape& shape = page.addReadOut();
        auto* action = new Interactive(&shape);
        page.manager->addAction(action);
        page.manager->open(&page.database);
        QVERIFY(page.manager->takesMouse(&shape));
        QVERIFY(!page.manager->takesMouse(nullptr));
        page.manager->geometryChanged(&shape, QTransform::fromScale(2, 2));
        QCOMPARE(action->seen, QTransform::fromScale(2, 2));
        page.manager->timeOut();
        QCOMPARE(action->timeOuts, 1);
    }

    void alarmsWaitForTheirResult()
    {
        TestPage page;
        CanvasActionManager& manager = *page.manager;
        QSignalSpy requested(&manager, &CanvasScadaActionManagerInterface::alarmRequested);
        QSignalSpy processed(&manager, &CanvasScadaActionManagerInterface::alarmProcessed);
        QSignalSpy finished(&manager, &CanvasScadaActionManagerInterface::alarmProcessFinished);
        manager.setAlarmResult(1);
        QCOMPARE(processed.count(), 0);
        ScadaAlarm alarm;
        alarm.objectId = 200001;
        manager.requestAlarm(alarm, {});
        alarm.objectId = 200002;
        manager.requestAlarm(alarm, {});
        QCOMPARE(requested.count(), 2);
        QCOMPARE(manager.pendingAlarms().size(), 2);
        QCOMPARE(manager.pendingAlarms().first().objectId, 200001);
        manager.setAlarmResult(2);
        QCOMPARE(processed.count(), 1);
        QCOMPARE(processed.first().first().toInt(), 2);
        QCOMPARE(finished.count(), 0);
        manager.setAlarmResult(1);
        QCOMPARE(finished.count(), 1);
        QVERIFY(manager.pendingAlarms().isEmpty());
    }

    // Skipping actions must not show: the same batches, passed to every action one by one, give the same page.
    void skippingIsAsGoodAsPassingToAll()
    {
        const bool isGood = rc::check("as if to every action", [] { compareWithPassingToAll(); });
        QVERIFY(isGood);
    }

private:
    struct Pair
    {
        TagAction* managed;
        std::unique_ptr<TagAction> single;
        Shape* managedShape;
        std::unique_ptr<Shape> singleShape;
    };

    static void compareWithPassingToAll()
    {
        TestPage page(6);
        std::vector<Pair> pairs;
        const int count = *rc::gen::inRange(1, 8);
        const QStringList tags = {QStringLiteral("P0"),       QStringLiteral("P1"),
                                  QStringLiteral("P2"),       QStringLiteral("P3"),
                                  QStringLiteral("@::speed"), QStringLiteral("@R::UNIT:CommState"),
                                  QStringLiteral("5"),        QStringLiteral("P1:PointName")};
        for (int number = 0; number < count; ++number) {
            QStringList chosen;
            const int size = *rc::gen::inRange(0, 4);
            for (int tag = 0; tag < size; ++tag)
                chosen.append(tags.at(*rc::gen::inRange(0, tags.size())));
            Shape& shape = page.addReadOut();
            auto other = std::make_unique<ReadOut>();
            NumberAction* managed = page.addNumber(shape, chosen);
            auto single = std::make_unique<NumberAction>(other.get());
            single->setTags(chosen);
            if (*rc::gen::inRange(0, 5) == 0 && !chosen.isEmpty()) {
                for (TagAction* action : {static_cast<TagAction*>(managed), static_cast<TagAction*>(single.get())}) {
                    QList<ObjectTarget*> targets;
                    action->collectTargets(targets);
                    targets.first()->setLogDataInfo({});
                }
            }
            pairs.push_back({managed, std::move(single), &shape, std::move(other)});
        }
        page.manager->open(&page.database);
        for (Pair& pair : pairs) {
            pair.single->resolve(&page.database);
            pair.single->updateDatatoTarget(true);
        }
        bool isKept = true;
        const int steps = *rc::gen::inRange(1, 25);
        for (int step = 0; step < steps; ++step)
            takeStep(page, pairs, isKept);
        for (Pair& pair : pairs)
            pair.single->updateTLQ(QuorixData()); // the overlay goes before its shape
    }

    static void takeStep(TestPage& page, std::vector<Pair>& pairs, bool& isKept)
    {
        const int kind = *rc::gen::inRange(0, 10);
        if (kind == 0) {
            isKept = !isKept;
            page.manager->setOverlayKept(isKept);
        } else if (kind == 1) {
            page.properties.values.insert(QStringLiteral("speed"), *rc::gen::inRange(0, 3));
        } else if (kind == 2) {
            QuorixData record = testRecord(double(*rc::gen::inRange(0, 3)), *rc::gen::element(0, 1, 0x100));
            const ObjectKey object{ScadaObjectType::AnalogPoint, 200001 + *rc::gen::inRange(0, 4)};
            const QList<ScadaTagActionInterface*> concerned = page.manager->actionsBoundTo(object);
            page.manager->takeRecord(object, record);
            for (Pair& pair : pairs) {
                if (concerned.contains(pair.managed))
                    pair.single->updateRTValue(record, object.type, static_cast<unsigned>(object.id), isKept ? 1 : 0);
            }
        } else {
            MwDataDepartment batch;
            const int size = *rc::gen::inRange(0, 4);
            for (int number = 0; number < size; ++number) {
                batch.points[static_cast<quint32>(200001 + *rc::gen::inRange(0, 6))] =
                    testRecord(*rc::gen::element(0.0, 1.0, 2.0, std::nan("")), *rc::gen::element(0, 0, 1, 0x100), 0,
                               *rc::gen::element(0, 0, 1, 2));
            }
            if (*rc::gen::inRange(0, 3) == 0) {
                QuorixData record = testRecord(1);
                record.setMember("commState", *rc::gen::inRange(0, 3));
                batch.rtus.emplace(7, record);
            }
            page.manager->takeBatch(batch);
            for (Pair& pair : pairs) {
                pair.single->readDataFromSource(&page.hub, batch, isKept ? 1 : 0);
                pair.single->updateDatatoTarget(false);
            }
        }
        for (Pair& pair : pairs)
            compare(pair);
    }

    // NaN is like NaN here, though not the same.
    static bool isAlike(const QVariant& a, const QVariant& b)
    {
        return a == b || (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
    }

    static void compare(Pair& pair)
    {
        RC_ASSERT(pair.managedShape->namedProperty(QStringLiteral("Value")) ==
                  pair.singleShape->namedProperty(QStringLiteral("Value")));
        RC_ASSERT(overlaysOf(*pair.managedShape) == overlaysOf(*pair.singleShape));
        RC_ASSERT(pair.managedShape->overlayState() == pair.singleShape->overlayState());
        QList<ObjectTarget*> managed;
        QList<ObjectTarget*> single;
        pair.managed->collectTargets(managed);
        pair.single->collectTargets(single);
        for (int place = 0; place < managed.size(); ++place)
            RC_ASSERT(isAlike(managed.at(place)->value(), single.at(place)->value()));
    }
};

QTEST_MAIN(tst_CanvasActionManager)
#include "tst_canvasactionmanager.moc"
