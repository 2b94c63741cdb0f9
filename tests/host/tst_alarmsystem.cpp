#include "host/actions/canvasactionmanager.h"
#include "host/actions/numberaction.h"
#include "host/alarms/alarmsystem.h"
#include "host/alarms/alarmtexts.h"
#include "host/canvas/canvas.h"
#include "host/runtime/livesystem.h"
#include "host/shapes/readout.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/testhub.h"
#include "tests/support/testproject.h"
#include "tests/support/testproperties.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <memory>

using Cause = ScadaAlarm::Cause;
using Kind = AlarmTransition::Kind;
using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr qint64 begin = Q_INT64_C(1600000000000); // 2020-09-13T12:26:40Z
constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200002};

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

QDateTime at(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(begin + ms, Qt::UTC);
}

/// A hub whose clock is turned by hand.
class ClockedHub : public TestHub
{
public:
    QDateTime currentTime() const override { return now; }

    QDateTime now = at(0);
};

/// FLOW and LEVEL with an alarm above 80, their alarms at work on a log.
struct Plant
{
    Plant()
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return hub.now.toMSecsSinceEpoch(); });
        for (const auto& [key, name] : {std::pair(flow, "FLOW"), std::pair(level, "LEVEL")}) {
            RuntimeDatabase::Object object{key.type, key.id, text(name)};
            object.high = 80;
            object.alarm.severities[AlarmSetting::placeOf(Cause::High)] = 5;
            object.alarm.isLatching = key == level;
            object.alarm.offDelay = std::chrono::seconds(key == level ? 5 : 0);
            if (!database.add(object))
                qFatal("a point was refused");
        }
        hub.setScadaRuntime(&database);
        hub.setAppPropertyManager(&properties);
        hub.setDataServiceInterface(nullptr);
        system = std::make_unique<AlarmSystem>(database, hub);
        QObject::connect(system.get(), &AlarmSystem::problemFound, system.get(),
                         [this](const QString& problem) { problems.append(problem); });
        QObject::connect(system.get(), &AlarmSystem::logged, system.get(), [this] { ++logged; });
    }
    void take(ObjectKey key, qint64 ms, double value)
    {
        hub.now = at(ms);
        if (!database.takeSample({key, begin + ms, value, 0}))
            qFatal("a sample was ignored");
    }
    void advance(qint64 ms)
    {
        hub.now = at(ms);
        system->advance();
    }
    State stateOf(ObjectKey key) const
    {
        return system->manager().alarm(system->manager().standing(key, Cause::High)).state;
    }
    /// The log's kinds, newest first, or the events' texts.
    QString lines() const
    {
        QStringList all;
        const auto read = system->log().read({});
        if (!read)
            qFatal("%s", qPrintable(read.error()));
        for (const AlarmTransition& line : *read)
            all.append(line.kind == Kind::Event ? line.alarm.message : AlarmTexts::kind(line.kind));
        return all.join(QStringLiteral(", "));
    }

    ClockedHub hub;
    TestProperties properties;
    RuntimeDatabase database;
    QStringList problems;
    int logged = 0;
    std::unique_ptr<AlarmSystem> system;
};

/// A page with one read-out an action, and what its alarms told: "page requested 1 by 2 actions", "page processed 1",
/// "page finished".
struct ShownPage
{
    ShownPage(Plant& plant, const char* name, const QStringList& tags, QStringList& told)
        : actions(std::make_unique<CanvasActionManager>(&canvas, &plant.hub)), title(text(name))
    {
        Layer& layer = canvas.addLayer(QStringLiteral("layer"));
        for (const QString& tag : tags) {
            auto* action = new NumberAction(&canvas.addShape(layer, std::make_unique<ReadOut>()));
            action->setTags({tag});
            actions->addAction(action);
        }
        actions->open(&plant.database);
        using Manager = CanvasScadaActionManagerInterface;
        QObject::connect(actions.get(), &Manager::alarmRequested, actions.get(),
                         [this, &told](const QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>& request) {
                             told.append(QStringLiteral("%1 requested %2 by %3 actions")
                                             .arg(title)
                                             .arg(request.first.id)
                                             .arg(request.second.size()));
                         });
        QObject::connect(actions.get(), &Manager::alarmProcessed, actions.get(), [this, &told](int result) {
            told.append(QStringLiteral("%1 processed %2").arg(title).arg(result));
        });
        QObject::connect(actions.get(), &Manager::alarmProcessFinished, actions.get(),
                         [this, &told] { told.append(title + QStringLiteral(" finished")); });
    }

    Canvas canvas{QStringLiteral("page")};
    std::unique_ptr<CanvasActionManager> actions;
    QString title;
};

QSqlDatabase connectionOfLog()
{
    const QStringList names = QSqlDatabase::connectionNames().filter(QStringLiteral("AlarmLog"));
    if (names.size() != 1)
        qFatal("%d logs are open", names.size());
    return QSqlDatabase::database(names.first());
}

void setPages(const char* count)
{
    QSqlQuery query(connectionOfLog());
    if (!query.exec(QStringLiteral("PRAGMA max_page_count = %1").arg(QLatin1String(count))))
        qFatal("the pages can't be limited");
}

} // namespace

class tst_AlarmSystem : public QObject
{
    Q_OBJECT

private:
    TemporaryFiles m_files;
    QStringList m_told; ///< by pages
    int m_logs = 0;

    QString newFile() { return m_files.path(QStringLiteral("log%1.db").arg(++m_logs)); }

private Q_SLOTS:
    void init() { m_told.clear(); }

    void theHubHasItsServices()
    {
        Plant plant;
        QCOMPARE(plant.hub.alarmManager(), static_cast<SystemAlarmManagerInterface*>(&plant.system->manager()));
        QCOMPARE(plant.hub.alarmProcessor(), &plant.system->processor());
        plant.system.reset();
        QCOMPARE(plant.hub.alarmManager(), static_cast<SystemAlarmManagerInterface*>(nullptr));
        QVERIFY(!plant.hub.alarmProcessor());
        QVERIFY(plant.database.takeSample({flow, begin, 99, 0})); // nobody listens any more
    }

    void pagesHearOfTheirAlarms()
    {
        Plant plant;
        QVERIFY(plant.system->start({}));
        ShownPage both(plant, "both", {text("FLOW"), text("LEVEL"), text("FLOW:HighLimit")}, m_told);
        ShownPage other(plant, "other", {text("LEVEL")}, m_told);
        for (ShownPage* page : {&both, &other, &both}) // twice is once
            plant.system->addPage(page->actions.get());
        QList<ScadaTagActionInterface*> concerned;
        ScadaAlarm alarm;
        connect(both.actions.get(), &CanvasScadaActionManagerInterface::alarmRequested, this,
                [&](const QPair<ScadaAlarm, QList<ScadaTagActionInterface*>>& request) {
                    alarm = request.first;
                    concerned = request.second;
                });
        plant.take(flow, 0, 81);
        QCOMPARE(m_told,
                 (QStringList{text("both requested 1 by 2 actions"), text("both processed 1"), text("both finished")}));
        const QList<ScadaTagActionInterface*> actions = both.actions->actions();
        QCOMPARE(concerned, (QList<ScadaTagActionInterface*>{actions[0], actions[2]}));
        QVERIFY(alarm.isEqual(plant.system->manager().alarm(1)));
        m_told.clear();
        QVERIFY(plant.system->manager().acknowledge(1, {}));
        plant.take(flow, 1, 50);
        QCOMPARE(m_told, QStringList()); // only what comes is told
        plant.take(level, 1, 81);
        QCOMPARE(m_told, (QStringList{text("both requested 2 by 1 actions"), text("both processed 1"),
                                      text("both finished"), text("other requested 2 by 1 actions"),
                                      text("other processed 1"), text("other finished")}));
        QVERIFY(both.actions->pendingAlarms().isEmpty());
        m_told.clear();
        plant.system->removePage(both.actions.get());
        plant.system->removePage(both.actions.get());
        plant.take(flow, 2, 81);
        QCOMPARE(m_told, QStringList());
    }

    void aPageIsToldTheStateThatAnAlarmWasLeftIn()
    {
        Plant plant;
        QVERIFY(plant.system->start({}));
        ShownPage page(plant, "page", {text("FLOW")}, m_told);
        plant.system->addPage(page.actions.get());
        AlarmManager& manager = plant.system->manager();
        connect(page.actions.get(), &CanvasScadaActionManagerInterface::alarmRequested, this,
                [&] { manager.acknowledge(manager.standing(flow, Cause::High), text("robot")); });
        plant.take(flow, 0, 81);
        QCOMPARE(m_told.mid(1), (QStringList{text("page processed 2"), text("page finished")}));
        m_told.clear();
        plant.take(flow, 1, 50);
        QVERIFY(manager.setSuppressed(flow, true, {}));
        plant.take(flow, 2, 81);
        QCOMPARE(m_told, QStringList()); // kept from the operator
        plant.system->commit();
        QCOMPARE(plant.lines(), text("raised, suppressed, returned, acknowledged, raised")); // as it happened
    }

    void aPageMayLeaveWhileItIsTold_data()
    {
        QTest::addColumn<bool>("isGone"); // not only removed
        QTest::addColumn<bool>("isAtTheEnd");
        QTest::newRow("removed when the alarm comes") << false << false;
        QTest::newRow("removed when the alarm was processed") << false << true;
        QTest::newRow("closed when the alarm comes") << true << false;
        QTest::newRow("closed when the alarm was processed") << true << true;
    }
    void aPageMayLeaveWhileItIsTold()
    {
        QFETCH(bool, isGone);
        QFETCH(bool, isAtTheEnd);
        Plant plant;
        QVERIFY(plant.system->start({}));
        ShownPage first(plant, "first", {text("FLOW")}, m_told);
        ShownPage second(plant, "second", {text("FLOW")}, m_told);
        for (ShownPage* page : {&first, &second})
            plant.system->addPage(page->actions.get());
        const auto leave = [&] {
            plant.system->removePage(first.actions.get());
            if (isGone)
                first.actions.reset();
        };
        using Manager = CanvasScadaActionManagerInterface;
        if (isAtTheEnd)
            connect(first.actions.get(), &Manager::alarmProcessed, this, leave);
        else
            connect(first.actions.get(), &Manager::alarmRequested, this, leave);
        plant.take(flow, 0, 81);
        QStringList expected{text("first requested 1 by 1 actions")};
        if (isAtTheEnd)
            expected.append(text("first processed 1"));
        if (isAtTheEnd && !isGone)
            expected.append(text("first finished"));
        expected += {text("second requested 1 by 1 actions"), text("second processed 1"), text("second finished")};
        QCOMPARE(m_told, expected);
    }

    void aPageMayRemoveAnother()
    {
        Plant plant;
        QVERIFY(plant.system->start({}));
        ShownPage first(plant, "first", {text("FLOW")}, m_told);
        ShownPage second(plant, "second", {text("FLOW")}, m_told);
        for (ShownPage* page : {&first, &second})
            plant.system->addPage(page->actions.get());
        connect(first.actions.get(), &CanvasScadaActionManagerInterface::alarmRequested, this, [&] {
            plant.system->removePage(second.actions.get());
            second.actions.reset();
        });
        plant.take(flow, 0, 81);
        QCOMPARE(m_told, (QStringList{text("first requested 1 by 1 actions"), text("first processed 1"),
                                      text("first finished")}));
    }

    void anAlarmThatAPageRaisesIsToldBehindThisOne()
    {
        Plant plant;
        QVERIFY(plant.system->start({}));
        ShownPage page(plant, "page", {text("FLOW"), text("LEVEL")}, m_told);
        plant.system->addPage(page.actions.get());
        AlarmManager& manager = plant.system->manager();
        connect(page.actions.get(), &CanvasScadaActionManagerInterface::alarmRequested, this, [&] {
            if (manager.standing(level, Cause::Quality) != 0)
                return;
            ScadaAlarm more;
            more.objectType = level.type;
            more.objectId = level.id;
            more.cause = Cause::Quality;
            manager.acknowledge(manager.raiseAlarm(more), {});
        });
        plant.take(flow, 0, 81);
        QCOMPARE(m_told,
                 (QStringList{text("page requested 1 by 1 actions"), text("page processed 1"), text("page finished"),
                              text("page requested 2 by 1 actions"), text("page processed 2"), text("page finished")}));
    }

    void changesAreLoggedByThemselves()
    {
        Plant plant;
        QVERIFY(plant.system->start(newFile()));
        plant.take(flow, 0, 81);
        plant.take(level, 0, 81);
        QVERIFY(plant.system->manager().setOutOfService(flow, true, text("ann"), text("repair")));
        QCOMPARE(plant.lines(), QString());
        QTRY_COMPARE(plant.logged, 1); // with one commit
        QCOMPARE(plant.lines(), text("taken out of service, taken out of service, raised, raised"));
        plant.system->commit();
        QCOMPARE(plant.logged, 1); // nothing waits
    }

    void eventsAreLogged()
    {
        Plant plant;
        QVERIFY(plant.system->start({}));
        plant.hub.now = at(1234);
        plant.system->addEvent(text("someone logged in"), text("ann"));
        plant.system->addEvent(text("started"));
        QTRY_COMPARE(plant.logged, 1);
        const auto lines = plant.system->log().read({});
        QCOMPARE(lines->size(), std::size_t(2));
        const AlarmTransition& line = lines->back();
        QCOMPARE(line.kind, Kind::Event);
        QCOMPARE(line.alarm.message, text("someone logged in"));
        QCOMPARE(line.user, text("ann"));
        QCOMPARE(line.time, at(1234));
        QCOMPARE(line.alarm.id, quint64(0));
        QCOMPARE(lines->front().user, QString());
    }

    void whatStoodGoesOnAfterARestart()
    {
        const QString file = newFile();
        {
            Plant plant;
            QVERIFY(plant.system->start(file));
            plant.take(flow, 0, 81);
            plant.take(level, 0, 81);
            QVERIFY(plant.system->manager().shelve(1, at(60000), text("ann"), {}));
            QVERIFY(plant.system->manager().acknowledge(2, text("ann")));
        } // the end writes what waits
        Plant plant;
        QVERIFY(plant.system->start(file));
        QCOMPARE(plant.stateOf(flow), State::Shelved);
        QCOMPARE(plant.stateOf(level), State::Acknowledged);
        QCOMPARE(plant.system->manager().alarm(2).acknowledgedBy, text("ann"));
        plant.advance(60000);
        QCOMPARE(plant.stateOf(flow), State::Unacknowledged);
        plant.take(level, 61000, 50);
        QCOMPARE(plant.stateOf(level), State::Acknowledged); // for its off delay
        plant.advance(65999);
        QCOMPARE(plant.stateOf(level), State::Acknowledged);
        plant.advance(66000);
        QCOMPARE(plant.stateOf(level), State::ReturnedUnacknowledged); // it latches
        QVERIFY(plant.system->manager().acknowledge(1, {}));
        plant.take(flow, 67000, 50);
        QCOMPARE(plant.stateOf(flow), State::Normal); // it does not
    }

    void withoutAFileTheLogIsInMemory_data()
    {
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("a folder in its place") << true;
        QTest::newRow("a damaged file in its place") << false;
    }
    void withoutAFileTheLogIsInMemory()
    {
        QFETCH(bool, isFolder);
        const QString file = isFolder ? m_files.path({}) : m_files.write(text("damaged.db"), QByteArray(5000, 'x'));
        Plant plant;
        const auto started = plant.system->start(file);
        QVERIFY(!started);
        QVERIFY2(started.error().startsWith(QDir::toNativeSeparators(file) + text(": can't be used as alarm log: ")),
                 qPrintable(started.error()));
        plant.take(flow, 0, 81);
        QTRY_COMPARE(plant.logged, 1);
        QCOMPARE(plant.lines(), text("raised"));
        QCOMPARE(plant.problems, QStringList());
    }

    void aLogThatCannotBeRestoredIsLeftAlone()
    {
        const QString file = newFile();
        {
            AlarmLog log;
            QVERIFY(log.open(file));
            QVERIFY(QSqlQuery(connectionOfLog()).exec(text("DROP TABLE excluded_objects")));
            QVERIFY(QSqlQuery(connectionOfLog()).exec(text("CREATE VIEW excluded_objects AS SELECT * FROM nowhere")));
        }
        Plant plant;
        const auto started = plant.system->start(file);
        QVERIFY(!started);
        QVERIFY2(started.error().contains(text("the alarms that stood could not be read: ")),
                 qPrintable(started.error()));
        plant.take(flow, 0, 81);
        plant.system->commit();
        QCOMPARE(plant.lines(), text("raised"));
    }

    void aProblemIsToldOnceAndTheLogWrittenLater()
    {
        Plant plant;
        QVERIFY(plant.system->start(newFile()));
        setPages("1");
        plant.system->addEvent(QString(200000, QLatin1Char('x')));
        QTRY_COMPARE(plant.problems.size(), 1);
        QVERIFY2(plant.problems.first().endsWith(text("the alarm log could not be written: database or disk is full")),
                 qPrintable(plant.problems.first()));
        plant.take(flow, 0, 81);
        plant.system->commit();
        plant.advance(100);
        QCOMPARE(plant.problems.size(), 1);
        QCOMPARE(plant.logged, 0);
        setPages("100000");
        QTRY_COMPARE(plant.logged, 1); // though nothing changes
        QCOMPARE(plant.lines(), text("raised, ") + QString(200000, QLatin1Char('x')));
        QCOMPARE(plant.system->log().waiting(), std::size_t(0));
        setPages("1");
        plant.system->addEvent(QString(200000, QLatin1Char('x')));
        plant.system->commit();
        QCOMPARE(plant.problems.size(), 2); // it went well in between
    }

    void aProjectsAlarmsComeAndGoWithItsSource()
    {
        TestProject project;
        project.write("points.csv", "id,name,kind,high,high_severity,area,alarm_message,on_delay\n"
                                    "200001,FLOW,analog,15,7,East,Flow is high,0.5\n");
        project.write("rec.csv", "time;FLOW\n1600000000;10\n1600000001;20\n1600000003;10\n1600000004;10\n");
        project.write("pages/plant.pws",
                      TestProject::json("{'format': 'korvane-page', 'version': 1, 'layers': [{'name': 'a', 'shapes': ["
                                        "{'class': 'ReadOut', 'name': 'flow', 'place': [0, 0, 90, 24], 'actions': "
                                        "[{'type': 2, 'version': 911, 'targets': [{'tag': 'FLOW'}]}]}]}]}"));
        qint64 machineMs = begin;
        LiveSystem::Options options;
        options.folder = project.folder();
        options.source = QStringLiteral("recording:") + project.path("rec.csv");
        options.machineClock = [&] { return machineMs; };
        const auto opened = LiveSystem::open(options);
        QVERIFY2(opened, opened ? "" : qPrintable(opened.error()));
        LiveSystem& system = **opened;
        QStringList story;
        connect(&system.alarms().manager(), &AlarmManager::transitioned, this, [&](const AlarmTransition& line) {
            story.append(QStringLiteral("%1 %2").arg(line.time.toMSecsSinceEpoch() - begin).arg(int(line.alarm.state)));
        });
        const auto page = system.openPage(QStringLiteral("plant"));
        QVERIFY(page);
        (*page)->actions->setShown(true);
        connect((*page)->actions.get(), &CanvasScadaActionManagerInterface::alarmProcessed, this,
                [&](int result) { story.append(QStringLiteral("page %1").arg(result)); });
        system.start();
        system.dataService().stop();
        for (int i = 0; i < 40; ++i) {
            machineMs += 100;
            system.dataService().tick();
        }
        QCOMPARE(story, (QStringList{text("page 1"), text("1500 1"), text("3000 3")}));
        QCOMPARE(system.alarms().manager().firstOut(text("East")).message, text("Flow is high"));
        QVERIFY(system.pages().close(QStringLiteral("plant")));
        QCOMPARE(system.alarms().desk().acknowledgeArea(text("East")), 1);
        QCOMPARE(system.alarms().manager().count(), std::size_t(0));
        QVERIFY(!QFile::exists(project.path("runtime.db"))); // a recording's history is not this plant's
        QCOMPARE(system.problems(), QStringList());
    }

    void aProjectsAlarmsOutliveIt()
    {
        TestProject project;
        project.write("points.csv", "id,name,kind,high,high_severity,latching\n200001,FLOW,analog,15,7,1\n");
        LiveSystem::Options options;
        options.folder = project.folder();
        qint64 machineMs = begin;
        options.machineClock = [&] { return machineMs; };
        for (int run = 0; run < 3; ++run) {
            const auto opened = LiveSystem::open(options);
            QVERIFY2(opened, opened ? "" : qPrintable(opened.error()));
            LiveSystem& system = **opened;
            QCOMPARE(system.problems(), QStringList());
            AlarmManager& manager = system.alarms().manager();
            QCOMPARE(manager.count(), std::size_t(run == 0 ? 0 : 1));
            const quint64 id = manager.standing(flow, Cause::High);
            machineMs += 1000;
            if (run == 0) {
                QVERIFY(system.database().takeSample({flow, machineMs, 20, 0}));
            } else if (run == 1) {
                QCOMPARE(manager.alarm(id).state, State::Unacknowledged);
                QVERIFY(manager.acknowledge(id, text("ann")));
                QVERIFY(system.database().takeSample({flow, machineMs, 10, 0}));
                QCOMPARE(manager.alarm(id).state, State::ReturnedUnacknowledged);
            } else {
                QCOMPARE(manager.alarm(id).state, State::ReturnedUnacknowledged);
            }
        }
    }

    void aProjectWhoseStoreCannotBeUsedRuns()
    {
        TestProject project;
        project.write("points.csv", "id,name,kind,high,high_severity\n200001,FLOW,analog,15,7\n");
        QVERIFY(QDir().mkpath(project.path("runtime.db")));
        LiveSystem::Options options;
        options.folder = project.folder();
        options.machineClock = [] { return begin; };
        const auto opened = LiveSystem::open(options);
        QVERIFY(opened);
        QCOMPARE((*opened)->problems().size(), 1); // the store's; the log is in memory without another word
        QVERIFY((*opened)->database().takeSample({flow, begin, 20, 0}));
        (*opened)->alarms().commit();
        QCOMPARE((*opened)->alarms().log().read({})->size(), std::size_t(1));
    }
};

QTEST_MAIN(tst_AlarmSystem)
#include "tst_alarmsystem.moc"
