#include "host/actions/canvasactionmanager.h"
#include "host/actions/numberaction.h"
#include "host/canvas/canvas.h"
#include "host/core/korvanecore.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/readout.h"
#include "host/sources/manualsource.h"
#include "platform/data/valuemarks.h"

#include <QSignalSpy>
#include <QtTest>

using Korvane::ScadaObjectType;

namespace {

constexpr qint64 begin = 1'600'000'000'000;

/// A source that delivers what the test gives it.
class TestSource : public ValueSource
{
public:
    explicit TestSource(std::vector<ObjectKey> objects) : m_objects(std::move(objects)) {}
    QString description() const override { return QStringLiteral("test source"); }
    std::vector<ObjectKey> objects() const override { return m_objects; }
    void start(qint64) override { setState(State::Running); }
    void advance(qint64 nowMs) override { advancedTo = nowMs; }
    void deliver(const std::vector<Sample>& samples) { Q_EMIT delivered(samples); }
    void fail() { setState(State::Failed, QStringLiteral("the line is dead")); }
    void recover() { setState(State::Running); }
    void end() { setState(State::Ended); }

    qint64 advancedTo = 0;

private:
    std::vector<ObjectKey> m_objects;
};

struct TestSystem
{
    TestSystem()
    {
        for (int number = 0; number < 3; ++number) {
            RuntimeDatabase::Object object{ScadaObjectType::AnalogPoint, 200001 + number,
                                           QStringLiteral("P%1").arg(number)};
            object.staleAfter = std::chrono::seconds(10);
            const auto added = database.add(object);
            Q_ASSERT(added);
        }
        const auto unit = database.add({ScadaObjectType::RtuObject, 7, QStringLiteral("UNIT")});
        Q_ASSERT(unit);
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now; });
        hub().setScadaRuntime(&database);
        page = std::make_unique<CanvasActionManager>(&canvas, &hub());
        for (int number = 0; number < 3; ++number) {
            Shape& shape = canvas.addShape(canvas.layers().empty() ? canvas.addLayer({}) : *canvas.layers()[0],
                                           std::make_unique<ReadOut>());
            auto* action = new NumberAction(&shape);
            action->setTags({QStringLiteral("P%1").arg(number)});
            page->addAction(action);
            shapes.push_back(&shape);
        }
        page->open(&database);
        service.addPage(page.get());
    }

    KorvaneScadaCoreInterface& hub() { return *core.scadaCoreInterface(); }
    TestSource& addSource(std::vector<ObjectKey> objects)
    {
        auto source = std::make_unique<TestSource>(std::move(objects));
        TestSource& added = *source;
        service.addSource(std::move(source));
        added.start(now);
        return added;
    }
    static ObjectKey point(int number) { return {ScadaObjectType::AnalogPoint, 200001 + number}; }
    QVariant shown(int number) const { return shapes[std::size_t(number)]->namedProperty(QStringLiteral("Value")); }
    qint32 quality(int number) const { return database.presentRecord(point(number)).GetValue("quality")->toInt32(); }

    qint64 now = begin;
    RuntimeDatabase database;
    KorvaneCore core{[this] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); }};
    Canvas canvas{QStringLiteral("page")};
    std::unique_ptr<CanvasActionManager> page;
    std::vector<Shape*> shapes;
    DataService service{database, hub()};
};

} // namespace

class tst_DataService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesGetTheNewestRecordOncePerTick()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0), TestSystem::point(1)});
        source.deliver({{TestSystem::point(0), begin, 1}, {TestSystem::point(0), begin + 1, 2}});
        source.deliver({{TestSystem::point(0), begin + 2, 3}});
        QVERIFY(!system.shown(0).isValid());
        system.now = begin + 50;
        system.service.tick();
        QCOMPARE(source.advancedTo, begin + 50);
        QCOMPARE(system.shown(0), QVariant(3.0));
        QCOMPARE(system.page->batchCount(), quint64(1));
        QCOMPARE(system.service.figures().samples, quint64(3)); // every one of them counts
        QCOMPARE(system.service.figures().records, quint64(1));
        QCOMPARE(system.service.figures().newestSampleMs, begin + 2);
        system.service.tick(); // without values nothing is sent
        QCOMPARE(system.page->batchCount(), quint64(1));
    }

    void samplesOfUnknownObjectsAreCounted()
    {
        TestSystem system;
        TestSource& source = system.addSource({});
        source.deliver({{{ScadaObjectType::AnalogPoint, 299999}, begin, 1}});
        QCOMPARE(system.service.figures().ignoredSamples, quint64(1));
        QCOMPARE(system.service.figures().samples, quint64(0));
    }

    void recordsOfUnitsWaitForPointValues()
    {
        TestSystem system;
        const ObjectKey unit{ScadaObjectType::RtuObject, 7};
        TestSource& source = system.addSource({unit, TestSystem::point(0)});
        source.deliver({{unit, begin, 1}});
        system.service.tick();
        QCOMPARE(system.page->batchCount(), quint64(0)); // an empty point map would say that the source failed
        source.deliver({{TestSystem::point(0), begin, 1}});
        system.service.tick();
        QCOMPARE(system.service.figures().records, quint64(2));
    }

    void theFailureOfOneSourceMarksItsPoints()
    {
        TestSystem system;
        TestSource& first = system.addSource({TestSystem::point(0)});
        TestSource& second = system.addSource({TestSystem::point(1)});
        QSignalSpy problems(&system.service, &DataService::problemFound);
        first.deliver({{TestSystem::point(0), begin, 1}});
        second.deliver({{TestSystem::point(1), begin, 2}});
        system.service.tick();
        first.fail();
        QCOMPARE(problems.count(), 1);
        QCOMPARE(problems.first().first().toString(), QStringLiteral("test source: the line is dead"));
        system.service.tick();
        QVERIFY(!system.service.isFailed());
        QVERIFY(!system.page->isSourceFailed());
        QCOMPARE(system.quality(0), qint32(ValueMark::CommunicationFailed));
        QCOMPARE(system.quality(1), 0);
        QCOMPARE(system.service.failedPoints(), 2); // P2 was never seen
        QVERIFY(system.shapes[0]->overlayState() != 0);
        QCOMPARE(system.shapes[1]->overlayState(), 0);
        first.recover();
        system.service.tick();
        QCOMPARE(system.quality(0), 0);
        QCOMPARE(system.shapes[0]->overlayState(), 0);
    }

    void theFailureOfAllSourcesIsOneEmptyBatch()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0)});
        source.deliver({{TestSystem::point(0), begin, 1}});
        system.service.tick();
        source.fail();
        QVERIFY(system.service.isFailed());
        system.service.tick();
        system.service.tick();
        QCOMPARE(system.page->batchCount(), quint64(2));
        QVERIFY(system.page->isSourceFailed());
        QVERIFY(system.shapes[1]->overlayState() != 0); // every shape says so
        const auto present = system.service.presentRecords({TestSystem::point(0)});
        QCOMPARE(present.size(), std::size_t(2));
        QVERIFY(present.back().points.empty());

        source.recover();
        source.deliver({{TestSystem::point(0), begin + 1, 5}});
        system.service.tick();
        QVERIFY(!system.page->isSourceFailed());
        QCOMPARE(system.shown(0), QVariant(5.0));
        QCOMPARE(system.shapes[0]->overlayState(), 0);
        QCOMPARE(system.shapes[1]->overlayState(), 0);
        source.fail();
        system.service.tick();
        QVERIFY(system.page->isSourceFailed()); // told again
    }

    void theEndOfARecordingIsNoFailure()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0)});
        source.deliver({{TestSystem::point(0), begin, 1}});
        source.end();
        system.service.tick();
        QVERIFY(!system.service.isFailed());
        QCOMPARE(system.quality(0), 0);
        system.now = begin + 9'999;
        system.service.tick();
        QCOMPARE(system.quality(0), 0);
        QCOMPARE(system.page->batchCount(), quint64(1));
        system.now = begin + 10'000;
        system.service.tick();
        QCOMPARE(system.quality(0), qint32(ValueMark::Stale));
        QCOMPARE(system.shown(0), QVariant(1.0)); // the value holds
        QVERIFY(system.shapes[0]->overlayState() != 0);
    }

    void aPageWithoutPointsIsNotToldOfAFailure()
    {
        TestSystem system;
        const auto present = system.service.presentRecords({});
        QCOMPARE(present.size(), std::size_t(1));
        QVERIFY(!present.front().points.empty());
    }

    void removedPagesGetNothing()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0)});
        system.service.removePage(system.page.get());
        source.deliver({{TestSystem::point(0), begin, 1}});
        system.service.tick();
        QCOMPARE(system.page->batchCount(), quint64(0));
    }

    void whatIsHeldBackComesWithItsRelease()
    {
        TestSystem system;
        const ObjectKey held = TestSystem::point(0);
        TestSource& source = system.addSource({held, TestSystem::point(1)});
        source.deliver({{held, begin, 1}});
        system.service.hold(held);
        system.service.hold(held); // for two reasons
        QVERIFY(system.service.isHeld(held));
        QVERIFY(!system.service.isHeld(TestSystem::point(1)));
        source.deliver({{held, begin + 1, 2}, {TestSystem::point(1), begin + 1, 7}, {held, begin + 2, 3}});
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 1.0);
        QCOMPARE(system.database.presentRecord(TestSystem::point(1)).GetValue("value")->toDouble(), 7.0);
        system.service.release(held);
        QVERIFY(system.service.isHeld(held));
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 1.0);
        system.service.release(held);
        QVERIFY(!system.service.isHeld(held));
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 3.0); // the newest
        system.service.release(held);                                                     // nothing is held
        source.deliver({{held, begin + 3, 4}});
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 4.0);
    }

    void whatIsEnteredStandsBeforeWhatWasHeldBack()
    {
        TestSystem system;
        const ObjectKey held = TestSystem::point(0);
        TestSource& source = system.addSource({held});
        source.deliver({{held, begin, 1}});
        system.service.hold(held);
        source.deliver({{held, begin + 100, 2}});
        system.now = begin + 5000;
        system.service.enter({held, system.now, 9, ValueMark::Substituted});
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 9.0);
        system.now = begin + 6000;
        system.service.release(held); // older than what was entered, and yet the source's
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 2.0);
        system.service.enter({held, begin - 1, 8, 0}); // never as too old
        QCOMPARE(system.database.presentRecord(held).GetValue("value")->toDouble(), 8.0);
    }

    void sourcesHaveTheirFigures()
    {
        TestSystem system;
        TestSource& first = system.addSource({TestSystem::point(0)});
        TestSource& second = system.addSource({TestSystem::point(1)});
        first.deliver({{TestSystem::point(0), begin + 5, 1}, {TestSystem::point(0), begin + 3, 1}});
        QCOMPARE(system.service.sourceFigures(0).samples, quint64(2));
        QCOMPARE(system.service.sourceFigures(0).newestMs, begin + 5);
        QCOMPARE(system.service.sourceFigures(1).samples, quint64(0));
        QCOMPARE(system.service.sourceFigures(1).newestMs, qint64(0));
        second.fail();
        QCOMPARE(system.service.sourceFigures(1).errors, quint64(1));
        QCOMPARE(system.service.sourceFigures(1).lastError, QStringLiteral("the line is dead"));
        QCOMPARE(system.service.sourceFigures(0).errors, quint64(0));
        second.recover();
        QCOMPARE(system.service.sourceFigures(1).errors, quint64(1)); // its return is none
    }

    void objectsKnowTheirSource()
    {
        TestSystem system;
        TestSource& first = system.addSource({TestSystem::point(0)});
        TestSource& second = system.addSource({TestSystem::point(0), TestSystem::point(1)});
        QCOMPARE(system.service.sourceOf(TestSystem::point(0)), &first);
        QCOMPARE(system.service.sourceOf(TestSystem::point(1)), &second);
        QVERIFY(!system.service.sourceOf(TestSystem::point(2)));
        QVERIFY(!system.service.commandSource(TestSystem::point(0))); // takes none
    }

    void listenersHearWhatChanged()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0), TestSystem::point(1)});
        std::vector<std::vector<ObjectKey>> told;
        connect(&system.service, &DataService::objectsChanged, this,
                [&told](const std::vector<ObjectKey>& objects) { told.push_back(objects); });
        source.deliver({{TestSystem::point(1), begin, 1}, {TestSystem::point(1), begin + 1, 2}});
        system.service.tick();
        system.service.tick();
        QCOMPARE(told.size(), std::size_t(1));
        QCOMPARE(told[0], std::vector<ObjectKey>{TestSystem::point(1)}); // once
        const ObjectKey unit{ScadaObjectType::RtuObject, 7};
        system.service.noteChanged(unit);
        system.service.noteChanged(unit);
        system.service.noteChanged(TestSystem::point(0));
        system.service.tick();
        QCOMPARE(told.size(), std::size_t(2));
        QCOMPARE(told[1], (std::vector<ObjectKey>{TestSystem::point(0), unit}));
    }

    void aManualSourceDoesNotHideThatAllDataFailed()
    {
        TestSystem system;
        TestSource& source = system.addSource({TestSystem::point(0)});
        system.service.addSource(std::make_unique<ManualSource>(std::vector<ObjectKey>{TestSystem::point(1)},
                                                                [&system] { return system.now; }));
        system.service.sources()[1]->start(begin);
        source.fail();
        QVERIFY(system.service.isFailed());
        source.recover();
        QVERIFY(!system.service.isFailed());
    }

    void aManualSourceAloneNeverFails()
    {
        TestSystem system;
        system.service.addSource(std::make_unique<ManualSource>(std::vector<ObjectKey>{TestSystem::point(1)},
                                                                [&system] { return system.now; }));
        system.service.sources()[0]->start(begin);
        QVERIFY(!system.service.isFailed());
    }

    void ticksStayInTheirBounds_data()
    {
        QTest::addColumn<int>("asked");
        QTest::addColumn<int>("kept");
        QTest::newRow("the shortest") << 10 << 10;
        QTest::newRow("shorter") << 9 << 10;
        QTest::newRow("the longest") << 1000 << 1000;
        QTest::newRow("longer") << 1001 << 1000;
    }
    void ticksStayInTheirBounds()
    {
        QFETCH(int, asked);
        QFETCH(int, kept);
        TestSystem system;
        QCOMPARE(int(system.service.tickInterval().count()), 50);
        system.service.setTick(std::chrono::milliseconds(asked));
        QCOMPARE(int(system.service.tickInterval().count()), kept);
    }

    void theTimerTicks()
    {
        TestSystem system;
        QSignalSpy ticked(&system.service, &DataService::ticked);
        system.service.setTick(std::chrono::milliseconds(10));
        system.service.start();
        QVERIFY(ticked.wait());
        system.service.stop();
        QVERIFY(!system.service.isRunning());
    }
};

QTEST_MAIN(tst_DataService)
#include "tst_dataservice.moc"
