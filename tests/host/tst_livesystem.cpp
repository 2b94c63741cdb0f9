#include "host/actions/canvasactionmanager.h"
#include "host/inspection/pointreport.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/sourcerecorder.h"
#include "platform/data/valuemarks.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

constexpr qint64 begin = 1'600'000'000'000; // 2020-09-13 12:26:40 UTC
constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};

const QByteArray pointList = "id,name,kind,unit,address\n"
                             "200001,FLOW,analog,l/min,P101.FLOW\n"
                             "200002,LEVEL,analog,m,\n";

const QByteArray recording = "time;FLOW;LEVEL\n"
                             "1600000000;10;1\n"
                             "1600000001;20;2\n"
                             "1600000002;30;3\n";

/// JSON written with single quotes, for the eye.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

const QByteArray page = json("{'format': 'korvane-page', 'version': 1,\n"
                             " 'layers': [{'name': 'values', 'shapes': [\n"
                             "  {'class': 'ReadOut', 'name': 'flow', 'place': [0, 0, 90, 24],\n"
                             "   'actions': [{'type': 2, 'version': 911, 'targets': [{'tag': 'FLOW'}]}]},\n"
                             "  {'class': 'Label', 'name': 'plant', 'place': [0, 30, 90, 24],\n"
                             "   'actions': [{'type': 1, 'version': 911, 'targets': [{'tag': '@::Project'}]}]}\n"
                             " ]}]}\n");

/// A project in a folder of its own, and a machine whose clock the test turns.
class TestProject
{
public:
    TestProject()
    {
        const bool isMade = QDir().mkpath(path(QStringLiteral("pages")));
        Q_ASSERT(isMade);
        writeSettings("");
        write("points.csv", pointList);
        write("rec.csv", recording);
        write("pages/plant.pws", page);
    }

    QString folder() const { return m_files.path(QStringLiteral("project")); }
    QString path(const QString& name) const { return folder() + QLatin1Char('/') + name; }
    void write(const char* name, const QByteArray& bytes) const
    {
        m_files.write(QStringLiteral("project/") + QString::fromLatin1(name), bytes);
    }
    void writeSettings(const char* source, const QByteArray& more = {}) const
    {
        write("project.json",
              json(QByteArray("{'name': 'test plant', 'startPage': 'plant', 'timeZone': 'UTC', 'source': '") + source +
                   "'" + more + "}"));
    }

    std::unique_ptr<LiveSystem> open(const QString& source = {}, bool isStored = true)
    {
        LiveSystem::Options options;
        options.folder = folder();
        options.source = source;
        options.machineClock = [this] { return machineMs; };
        options.isStored = isStored;
        auto opened = LiveSystem::open(options);
        error = opened ? QString() : opened.error();
        return opened ? std::move(*opened) : nullptr;
    }
    /// A page "scripted" with scripts of its own and of its label "s"; the label shows FLOW and the property "Shift".
    void writeScripts(const QByteArray& load, const QByteArray& unload, const QByteArray& shape) const
    {
        const auto event = [](int trigger, const QByteArray& script) {
            return "{\"trigger\":" + QByteArray::number(trigger) + ",\"type\":1001,\"script\":\"" + script + "\"}";
        };
        write("pages/scripted.pws", "{\"format\":\"korvane-page\",\"version\":1,\"events\":[" + event(6, load) + "," +
                                        event(7, unload) +
                                        json("],'layers':[{'name':'a','shapes':[{'class':'Label','name':'s',"
                                             "'place':[0,0,9,9],'actions':[{'type':2,'targets':[{'tag':'FLOW'}]},"
                                             "{'type':1,'targets':[{'tag':'@::Shift'}]}],'events':[") +
                                        event(13, shape) + "]}]}]}");
    }
    std::unique_ptr<LiveSystem> openScripted(bool areTrusted)
    {
        LiveSystem::Options options;
        options.folder = folder();
        options.source = QStringLiteral("recording:") + path(QStringLiteral("rec.csv"));
        options.machineClock = [this] { return machineMs; };
        options.isStored = false;
        options.areScriptsTrusted = areTrusted;
        auto opened = LiveSystem::open(options);
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        QObject::connect(&(*opened)->scripts(), &ScriptEngine::stdOut,
                         [this](const QString& text) { printed += text; });
        return std::move(*opened);
    }
    std::unique_ptr<LiveSystem> play(const QString& parameters = {})
    {
        return open(QStringLiteral("recording:%1%2").arg(path(QStringLiteral("rec.csv")), parameters));
    }
    /// Lets so much of the machine's time pass, with a tick each tenth of a second.
    void run(LiveSystem& system, int ms)
    {
        for (int passed = 0; passed < ms; passed += 100) {
            machineMs += 100;
            system.dataService().tick();
        }
    }
    /// The sources of \p system, without its timers.
    static void startSources(LiveSystem& system)
    {
        system.start();
        system.dataService().stop();
    }

    qint64 machineMs = begin + 86'400'000;
    QString error;
    QString printed; ///< by scripts

private:
    TemporaryFiles m_files;
};

QVariant shapeProperty(const Page& shown, const char* shape, const char* name)
{
    return shown.canvas->findShape(QString::fromLatin1(shape))->namedProperty(QString::fromLatin1(name));
}

qint32 qualityOf(LiveSystem& system, ObjectKey key)
{
    return system.database().presentRecord(key).GetValue("quality")->toInt32();
}

} // namespace

class tst_LiveSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCantBeRunSaysWhy_data()
    {
        QTest::addColumn<QString>("file"); // %1 stands for the project's folder with its slash
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* file, const QByteArray& bytes, const char* source,
                            const char* reason) {
            QTest::newRow(name) << QString::fromLatin1(file) << bytes << QString::fromLatin1(source)
                                << QString::fromLatin1(reason);
        };
        row("no list of points", "points.csv", {}, "", "%1points.csv: there is no such file");
        row("a list of points without a kind", "points.csv", "id,name\n200001,FLOW\n", "",
            "%1points.csv, line 1: the header names no column \"kind\"; needed are id, name and kind");
        row("no settings", "project.json", {}, "",
            "%1project.json: there is no such file, so the folder is no project");
        row("settings that are no JSON", "project.json", "{\n", "", "%1project.json: line 2: unterminated object");
        row("an unknown kind of source", "", {}, "telepathy", "source \"telepathy\": ");
        row("no such recording", "rec.csv", {}, "recording:%1rec.csv", "%1rec.csv: there is no such recording");
        row("a folder is no recording", "", {}, "recording:%1pages", "%1pages: there is no such recording");
        row("a recording without a row", "rec.csv", "time;FLOW\n", "recording:%1rec.csv",
            "%1rec.csv: has no row that could be played");
        row("a recording whose map is missing", "", {}, "recording:%1rec.csv?map=%1map.csv",
            "%1map.csv: there is no such file");
    }
    void whatCantBeRunSaysWhy()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, source);
        QFETCH(QString, reason);
        TestProject project;
        if (!file.isEmpty())
            QVERIFY(QFile::remove(project.path(file)));
        if (!bytes.isNull())
            project.write(file.toLatin1(), bytes);
        QVERIFY(!project.open(source.replace(QStringLiteral("%1"), project.path({}))));
        QVERIFY2(project.error.startsWith(reason.replace(QStringLiteral("%1"), project.path({}))),
                 qPrintable(project.error));
    }

    void noProjectAtAll()
    {
        const TestProject project;
        LiveSystem::Options options;
        options.folder = project.path(QStringLiteral("nowhere"));
        const auto opened = LiveSystem::open(options);
        QVERIFY(!opened);
        QCOMPARE(opened.error(), project.path(QStringLiteral("nowhere: there is no such project folder")));
    }

    void badLinesOfTheListAreLeftOutAndTold()
    {
        TestProject project;
        project.write("points.csv", "id,name,kind\n200001,FLOW,analog\n200001,OTHER,analog\n200003,FLOW,analog\n"
                                    "200004,LEVEL,sideways\n200005,SPEED,analog\n");
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        const QStringList& problems = system->problems();
        QCOMPARE(problems.size(), 3);
        const QString list = project.path(QStringLiteral("points.csv"));
        QCOMPARE(problems[0],
                 list + QStringLiteral(", line 3, column 1 (id), object \"OTHER\": line 2 has this id already"));
        QCOMPARE(problems[1],
                 list + QStringLiteral(", line 4, column 2 (name), object \"FLOW\": line 2 has this name already"));
        QVERIFY2(problems[2].startsWith(list + QStringLiteral(", line 5, column 3 (kind), object \"LEVEL\": ")),
                 qPrintable(problems[2]));
        QCOMPARE(system->database().count(ScadaObjectType::Point), std::size_t(2));
    }

    void itsServicesAreTheHubs()
    {
        TestProject project;
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        QCOMPARE(system->project().name, QStringLiteral("test plant"));
        QCOMPARE(PointDirectory::registered(), static_cast<const PointDirectory*>(&system->database()));
        KorvaneScadaCoreInterface& hub = *system->core().scadaCoreInterface();
        QVERIFY(hub.isOpen());
        QCOMPARE(hub.missingServices(), QStringList());
        QCOMPARE(hub.scadaRuntime(), static_cast<ScadaRuntimeInterface*>(&system->database()));
        QCOMPARE(system->dataService().tickInterval(), std::chrono::milliseconds(50));
        QCOMPARE(system->speed(), 1.0);
        QCOMPARE(system->nowMs(), project.machineMs);
        QCOMPARE(hub.currentTime(), QDateTime::fromMSecsSinceEpoch(project.machineMs, Qt::UTC));
        QCOMPARE(system->sourceDescription(), QStringLiteral("simulation of a water loop, seed 1, 1 points"));
    }

    void nothingIsLeftOfASystemThatWent()
    {
        TestProject project;
        auto system = project.open();
        QVERIFY(system->openPage(QStringLiteral("plant")));
        system->start();
        system.reset();
        QCOMPARE(PointDirectory::registered(), nullptr);
        QVERIFY(project.open()); // another may follow
    }

    void aPageShowsValues()
    {
        TestProject project;
        const auto system = project.play();
        QVERIFY2(system, qPrintable(project.error));
        const auto opened = system->openPage(QStringLiteral("plant"));
        QVERIFY2(opened, opened ? "" : qPrintable(opened.error()));
        Page& shown = **opened;
        shown.actions->setShown(true);
        QCOMPARE(shapeProperty(shown, "plant", "Text"), QVariant(QStringLiteral("test plant")));
        TestProject::startSources(*system);
        project.run(*system, 1000);
        QCOMPARE(shapeProperty(shown, "flow", "Value"), QVariant(20.0));
        QCOMPARE(system->nowMs(), begin + 1000); // the recording's time
        system->properties().setValue(QStringLiteral("Project"), QStringLiteral("another"));
        QCOMPARE(shapeProperty(shown, "plant", "Text"), QVariant(QStringLiteral("another")));
        QCOMPARE(system->problems(), QStringList());
    }

    void aRecordingPlaysAtItsSpeed()
    {
        TestProject project;
        const auto system = project.play(QStringLiteral("?speed=10"));
        QVERIFY2(system, qPrintable(project.error));
        QCOMPARE(system->speed(), 10.0);
        QCOMPARE(system->nowMs(), begin);
        TestProject::startSources(*system);
        project.run(*system, 200);
        QCOMPARE(system->nowMs(), begin + 2000);
        QCOMPARE(system->dataService().figures().samples, quint64(6));
        QCOMPARE(system->sourceDescription(), QStringLiteral("recording rec.csv"));
    }

    void aRecordingByArrivalHasTheMachinesTime()
    {
        TestProject project;
        const auto system = project.play(QStringLiteral("?times=arrival"));
        QVERIFY2(system, qPrintable(project.error));
        TestProject::startSources(*system);
        const qint64 started = project.machineMs;
        project.run(*system, 1000);
        QCOMPARE(system->database().presentRecord(flow).GetValue("time")->toVariant().toDateTime().toMSecsSinceEpoch(),
                 started + 1000);
    }

    void aRecordingEndsWithoutAFailure()
    {
        TestProject project;
        const auto system = project.play();
        TestProject::startSources(*system);
        project.run(*system, 60'000);
        QCOMPARE(system->dataService().figures().samples, quint64(6));
        QVERIFY(!system->dataService().isFailed());
        QCOMPARE(system->dataService().failedPoints(), 0);
        QCOMPARE(system->problems(), QStringList());
    }

    void aLoopGoesOn()
    {
        TestProject project;
        const auto system = project.play(QStringLiteral("?loop=1"));
        TestProject::startSources(*system);
        project.run(*system, 4000); // 10 20 30, and a second later 10 20
        QCOMPARE(system->dataService().figures().samples, quint64(10));
        QCOMPARE(system->database().presentRecord(flow).GetValue("value")->toDouble(), 20.0);
        QCOMPARE(system->database().presentRecord(flow).GetValue("time")->toVariant().toDateTime().toMSecsSinceEpoch(),
                 begin + 4000);
        QCOMPARE(system->dataService().figures().ignoredSamples, quint64(0));
    }

    void theProjectsOwnSourceLiesInTheProject()
    {
        TestProject project;
        project.writeSettings("recording:rec.csv");
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        QCOMPARE(system->sourceDescription(), QStringLiteral("recording rec.csv"));
    }

    void theMapOfTheProjectsOwnSourceLiesInTheProject()
    {
        TestProject project;
        project.write("map.csv", "column;point\nLEVEL;FLOW\n");
        project.writeSettings("recording:rec.csv?map=map.csv");
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        TestProject::startSources(*system);
        project.run(*system, 100);
        QCOMPARE(system->database().presentRecord(flow).GetValue("value")->toDouble(), 1.0);
    }

    void aRecordingThatGoesAwayIsShown()
    {
        TestProject project;
        const auto system = project.play();
        const auto opened = system->openPage(QStringLiteral("plant"));
        Page& shown = **opened;
        shown.actions->setShown(true);
        TestProject::startSources(*system);
        project.run(*system, 500);
        QCOMPARE(shapeProperty(shown, "flow", "Value"), QVariant(10.0));
        QCOMPARE(shown.canvas->findShape(QStringLiteral("flow"))->overlayState(), 0);
        QSignalSpy told(system.get(), &LiveSystem::problemFound);

        const QString file = project.path(QStringLiteral("rec.csv"));
        QVERIFY(QFile::remove(file));
        project.run(*system, 1000);
        const QString problem = QStringLiteral("recording rec.csv: %1: the file is gone").arg(file);
        QVERIFY(shown.actions->isSourceFailed());
        QCOMPARE(shapeProperty(shown, "flow", "Value"), QVariant(10.0)); // the last one
        QVERIFY(shown.canvas->findShape(QStringLiteral("flow"))->overlayState() != 0);
        QCOMPARE(qualityOf(*system, flow), qint32(ValueMark::CommunicationFailed));
        QCOMPARE(system->dataService().failedPoints(), 2);
        QCOMPARE(system->problems().value(0), problem);
        QCOMPARE(told.value(0).value(0).toString(), problem);

        project.write("rec.csv", recording);
        project.run(*system, 500); // 12:26:42
        QVERIFY(!shown.actions->isSourceFailed());
        QCOMPARE(shapeProperty(shown, "flow", "Value"), QVariant(30.0));
        QCOMPARE(shown.canvas->findShape(QStringLiteral("flow"))->overlayState(), 0);
        QCOMPARE(system->dataService().failedPoints(), 0);
    }

    void aPageThatIsOpenedWhileTheSourceHasFailedSaysSo()
    {
        TestProject project;
        const auto system = project.play();
        TestProject::startSources(*system);
        project.run(*system, 500);
        QVERIFY(QFile::remove(project.path(QStringLiteral("rec.csv"))));
        project.run(*system, 500);
        const auto opened = system->openPage(QStringLiteral("plant"));
        (*opened)->actions->setShown(true);
        QVERIFY((*opened)->actions->isSourceFailed());
        QCOMPARE(shapeProperty(**opened, "flow", "Value"), QVariant(10.0));
        QVERIFY((*opened)->canvas->findShape(QStringLiteral("plant"))->overlayState() != 0);
    }

    void whatAPageCantShowIsTold()
    {
        TestProject project;
        QByteArray text = page;
        project.write("pages/plant.pws", text.replace("\"FLOW\"", "\"FLOWW\"").replace("\"Label\"", "\"Hologram\""));
        const auto system = project.play();
        QSignalSpy told(system.get(), &LiveSystem::problemFound);
        const auto opened = system->openPage(QStringLiteral("plant"));
        QVERIFY2(opened, opened ? "" : qPrintable(opened.error()));
        const QString file = system->project().pageFile(QStringLiteral("plant"));
        QCOMPARE(system->problems(),
                 QStringList({file + QStringLiteral(":4: shape \"flow\": tag \"FLOWW\" names no known object"),
                              file + QStringLiteral(":5: shape \"plant\": unknown class \"Hologram\"; a placeholder "
                                                    "stands in its place")}));
        QCOMPARE(told.count(), 2);
        TestProject::startSources(*system);
        project.run(*system, 1000); // the rest runs
        QCOMPARE(system->dataService().figures().samples, quint64(4));
    }

    void aProblemIsToldOnceHoweverOftenThePageIsCalled()
    {
        TestProject project;
        QByteArray text = page;
        project.write("pages/plant.pws", text.replace("\"FLOW\"", "\"FLOWW\""));
        const auto system = project.play();
        const auto first = system->openPage(QStringLiteral("plant"));
        const auto second = system->openPage(QStringLiteral("plant"));
        QVERIFY(first && second);
        QCOMPARE(*first, *second);
        QCOMPARE(system->problems().size(), 1);
    }

    void aPageThatIsNotThereIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no such page") << QStringLiteral("nowhere") << QStringLiteral("%1: there is no such page");
        QTest::newRow("a path is no name")
            << QStringLiteral("../pages/plant") << QStringLiteral("\"../pages/plant\" is no name of a page");
        QTest::newRow("nor is nothing") << QString() << QStringLiteral("\"\" is no name of a page");
    }
    void aPageThatIsNotThereIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        TestProject project;
        const auto system = project.play();
        const auto opened = system->openPage(name);
        QVERIFY(!opened);
        QCOMPARE(opened.error(),
                 reason.replace(QStringLiteral("%1"), system->project().pageFile(QStringLiteral("nowhere"))));
        QCOMPARE(system->problems(), QStringList(opened.error()));
    }

    void aClosedPageTakesNothing()
    {
        TestProject project;
        const auto system = project.play();
        QVERIFY(system->openPage(QStringLiteral("plant")));
        TestProject::startSources(*system);
        project.run(*system, 100);
        QVERIFY(system->pages().close(QStringLiteral("plant")));
        project.run(*system, 2000);
        QCOMPARE(system->dataService().figures().samples, quint64(6));
        QVERIFY(system->openPage(QStringLiteral("plant")));
    }

    void statisticsOutliveTheSystem()
    {
        TestProject project;
        QList<QVariant> before;
        const auto statistics = [](LiveSystem& system) {
            QList<QVariant> values;
            for (const DataField field : {DataField::TodayMinimum, DataField::TodayMean, DataField::TodayMaximum,
                                          DataField::TodayAccumulated, DataField::HourMean})
                values.append(system.database().fieldValue(flow, field));
            return values;
        };
        double last = 0;
        {
            const auto system = project.open();
            QVERIFY2(system, qPrintable(project.error));
            QCOMPARE(system->problems(), QStringList());
            TestProject::startSources(*system);
            project.run(*system, 30'000);
            QVERIFY(system->dataService().figures().samples > 10);
            before = statistics(*system);
            last = system->database().presentRecord(flow).GetValue("value")->toDouble();
        }
        QVERIFY(QFile::exists(project.path(QStringLiteral("runtime.db"))));
        for (const QVariant& value : before)
            QVERIFY(value.isValid());
        project.machineMs += 600'000; // ten minutes that no one saw
        const auto again = project.open();
        QVERIFY2(again, qPrintable(project.error));
        QCOMPARE(again->problems(), QStringList());
        QCOMPARE(statistics(*again), before);
        QCOMPARE(again->database().presentRecord(flow).GetValue("value")->toDouble(), last);
        QVERIFY(qualityOf(*again, flow) & ValueMark::Stale);
        TestProject::startSources(*again);
        project.run(*again, 1000);
        QVERIFY(!(qualityOf(*again, flow) & ValueMark::Stale));
        const auto accumulated = again->database().fieldValue(flow, DataField::TodayAccumulated).toDouble();
        QVERIFY(accumulated > before[3].toDouble());
        QVERIFY(accumulated < before[3].toDouble() * 1.2); // and not ten minutes more
    }

    void statisticsOfARecordingAreNotKept()
    {
        TestProject project;
        {
            const auto system = project.play();
            TestProject::startSources(*system);
            project.run(*system, 5000);
            QCOMPARE(system->database().fieldValue(flow, DataField::TodayMaximum), QVariant(30.0));
        }
        QVERIFY(!QFile::exists(project.path(QStringLiteral("runtime.db"))));
        const auto again = project.open();
        QVERIFY(!again->database().fieldValue(flow, DataField::TodayMaximum).isValid());
    }

    void statisticsAreNotKeptForWhoDoesNotWantThem()
    {
        TestProject project;
        {
            const auto system = project.open({}, false);
            TestProject::startSources(*system);
            project.run(*system, 1000);
        }
        QVERIFY(!QFile::exists(project.path(QStringLiteral("runtime.db"))));
    }

    void withoutADatabaseFileItRunsAsWell_data()
    {
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("a folder stands in its place") << true;
        QTest::newRow("it is no database") << false;
    }
    void withoutADatabaseFileItRunsAsWell()
    {
        QFETCH(bool, isFolder);
        TestProject project;
        if (isFolder)
            QVERIFY(QDir().mkpath(project.path(QStringLiteral("runtime.db"))));
        else
            project.write("runtime.db", QByteArray(5000, 'x'));
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        QCOMPARE(system->problems().size(), 1);
        const QString problem = system->problems().constFirst();
        QVERIFY2(problem.startsWith(project.path(QStringLiteral("runtime.db: can't be used as runtime store: "))),
                 qPrintable(problem));
        QVERIFY2(problem.endsWith(
                     QStringLiteral("; statistics and the alarm log are not kept beyond the end of this program")),
                 qPrintable(problem));
        TestProject::startSources(*system);
        project.run(*system, 1000);
        QVERIFY(system->database().fieldValue(flow, DataField::TodayMaximum).isValid());
        QCOMPARE(system->problems().size(), 1);
    }

    void aFolderThatCantBeWrittenIsAProblem()
    {
        TestProject project;
        const auto writable = QFile::permissions(project.folder());
        QVERIFY(QFile::setPermissions(project.folder(), QFile::ReadOwner | QFile::ExeOwner));
        const auto restore = qScopeGuard([&] { QFile::setPermissions(project.folder(), writable); });
        if (QFileInfo(project.folder()).isWritable())
            QSKIP("this user may write everywhere");
        const auto system = project.open();
        QVERIFY2(system, qPrintable(project.error));
        QCOMPARE(system->problems().size(), 1);
        TestProject::startSources(*system);
        project.run(*system, 1000);
        QVERIFY(system->database().fieldValue(flow, DataField::TodayMaximum).isValid());
    }

    void statisticsFollowTheProjectsZone()
    {
        TestProject project;
        project.write("project.json", json("{'timeZone': 'Asia/Seoul'}"));
        project.write("rec.csv", "time;FLOW\n1600000000;10\n1600009199;20\n1600009200;30\n"); // 15:00 UTC: midnight
        const auto system = project.play();
        QVERIFY2(system, qPrintable(project.error));
        TestProject::startSources(*system);
        project.machineMs += 9'199'000;
        system->dataService().tick();
        QCOMPARE(system->database().fieldValue(flow, DataField::TodayMinimum), QVariant(10.0));
        project.machineMs += 2000;
        system->dataService().tick();
        QCOMPARE(system->database().fieldValue(flow, DataField::TodayMinimum), QVariant(30.0));
    }

    void theTickIsTheProjects()
    {
        TestProject project;
        project.writeSettings("", json(", 'tickMs': 250"));
        const auto system = project.open();
        QCOMPARE(system->dataService().tickInterval(), std::chrono::milliseconds(250));
    }

    void aSourceIsRecordedInATimeOfItsOwn()
    {
        TestProject project;
        LiveSystem::Options options;
        options.folder = project.folder();
        const QString file = project.path(QStringLiteral("made.csv"));
        const auto samples = recordSource(options, file, std::chrono::seconds(10));
        QVERIFY2(samples, samples ? "" : qPrintable(samples.error()));
        QVERIFY(!QFile::exists(project.path(QStringLiteral("runtime.db"))));
        const auto system = project.open(QStringLiteral("recording:") + file);
        QVERIFY2(system, qPrintable(project.error));
        TestProject::startSources(*system);
        project.run(*system, 20'000);
        QCOMPARE(*samples, quint64(20));                                // one each half second
        QCOMPARE(system->dataService().figures().samples, quint64(11)); // a row each whole second, 0 to 10
    }

    void whatCantBeRecordedSaysWhy()
    {
        TestProject project;
        LiveSystem::Options options;
        options.folder = project.folder();
        const auto nowhere =
            recordSource(options, project.path(QStringLiteral("nowhere/made.csv")), std::chrono::seconds(1));
        QVERIFY(!nowhere);
        QVERIFY2(nowhere.error().startsWith(project.path(QStringLiteral("nowhere/made.csv"))),
                 qPrintable(nowhere.error()));
        options.folder = project.path(QStringLiteral("nowhere"));
        const auto noProject = recordSource(options, project.path(QStringLiteral("made.csv")), std::chrono::seconds(1));
        QVERIFY(!noProject);
        QVERIFY(noProject.error().endsWith(QStringLiteral("there is no such project folder")));
        QVERIFY(!QFile::exists(project.path(QStringLiteral("made.csv"))));
    }

    void trustedScriptsRunWhenAPageOpensAndCloses()
    {
        TestProject project;
        project.writeScripts("print('page', pages.names(), pages.current())", "print('unload')", "print(shape.name)");
        const auto system = project.openScripted(true);
        QVERIFY(system->scripts().isEnabled());
        const auto opened = system->openPage(QStringLiteral("scripted"));
        QCOMPARE(project.printed, QStringLiteral("s\npage ['plant', 'scripted'] scripted\n"));
        QVERIFY(!system->hasUntrustedScripts());
        QVERIFY(system->scriptsOf(**opened));
        QCOMPARE(&system->scriptsOf(**opened)->page(), *opened);
        QVERIFY(system->openPage(QStringLiteral("scripted"))); // is open already
        system->trustScripts();                                // and loaded
        project.printed.clear();
        QVERIFY(system->pages().close(QStringLiteral("scripted")));
        QCOMPARE(project.printed, QStringLiteral("unload\n"));
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        QVERIFY(project.printed.contains(QStringLiteral("page [")));
        QCOMPARE(system->problems(), QStringList());
    }

    void scriptsOfPagesThatAreOpenAtTheEndRunTheirLast()
    {
        TestProject project;
        project.writeScripts("pass", "print('unload', tags.read('FLOW'))", "pass");
        auto system = project.openScripted(true);
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        TestProject::startSources(*system);
        project.run(*system, 100);
        system.reset();
        QCOMPARE(project.printed, QStringLiteral("unload 10.0\n"));
    }

    void untrustedScriptsWaitUntilTheyAreTrusted()
    {
        TestProject project;
        project.writeScripts("print('page')", "print('unload')", "print(shape.name)");
        const auto system = project.openScripted(false);
        QVERIFY(!system->hasUntrustedScripts()); // no page is open
        QVERIFY(system->openPage(QStringLiteral("plant")));
        QVERIFY(!system->hasUntrustedScripts()); // one without scripts
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        QVERIFY(system->hasUntrustedScripts());
        QVERIFY(system->pages().close(QStringLiteral("scripted")));
        QVERIFY(!system->hasUntrustedScripts());
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        QCOMPARE(project.printed, QString());
        system->trustScripts();
        QCOMPARE(project.printed, QStringLiteral("s\npage\n"));
        QVERIFY(!system->hasUntrustedScripts());
        system->trustScripts();
        QCOMPARE(project.printed, QStringLiteral("s\npage\n")); // once
        QCOMPARE(system->problems(), QStringList());
    }

    void whatScriptsFailWithIsAProblem()
    {
        TestProject project;
        project.writeScripts("log.info('info')\\nlog.warning('warning')\\nlog.error('error')", "pass", "nothing");
        const auto system = project.openScripted(true);
        QSignalSpy told(system.get(), &LiveSystem::problemFound);
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        QCOMPARE(system->problems(),
                 QStringList({QStringLiteral("page \"scripted\", shape \"s\", event \"On Object Loading\", line 1: "
                                             "NameError: name 'nothing' is not defined"),
                              QStringLiteral("error")}));
        QCOMPARE(told.count(), 2);
    }

    void theLimitOfScriptsIsTheProjects()
    {
        TestProject project;
        project.writeSettings("", json(", 'scriptLimitMs': 30"));
        project.writeScripts("while True: pass", "pass", "pass");
        const auto system = project.openScripted(true);
        QVERIFY(system->scripts().limits().time == std::chrono::milliseconds(30));
        QVERIFY(system->openPage(QStringLiteral("scripted")));
        QVERIFY2(system->problems().value(0).contains(QStringLiteral("stopped: it ran longer than 30 ms")),
                 qPrintable(system->problems().value(0)));
    }

    void scriptsHearOfValuesAndSeeTheRecordingsTime()
    {
        TestProject project;
        project.writeScripts("def onPointValueChanged(name, value): print(name, value, korvane.now().second)", "pass",
                             "def onDataLoaded(obj): print('loaded', obj.name)");
        const auto system = project.openScripted(true);
        const auto opened = system->openPage(QStringLiteral("scripted"));
        TestProject::startSources(*system);
        project.run(*system, 2000); // 12:26:40 to 42; also while the page is out of sight
        QCOMPARE(project.printed, QStringLiteral("FLOW 10.0 40\nloaded s\nFLOW 20.0 41\nFLOW 30.0 42\n"));
        QVERIFY(system->pages().close(QStringLiteral("scripted")));
        project.printed.clear();
        project.run(*system, 1000);
        QCOMPARE(project.printed, QString());
    }

    void propertiesThatScriptsSetAreShown()
    {
        TestProject project;
        project.writeScripts("korvane.set_property('Shift', 'night')", "pass", "pass");
        const auto system = project.openScripted(true);
        const auto opened = system->openPage(QStringLiteral("scripted"));
        (*opened)->actions->setShown(true);
        QCOMPARE(shapeProperty(**opened, "s", "Text"), QVariant(QStringLiteral("night")));
        system->scripts().runForCanvas((*opened)->canvas.get(), QStringLiteral("korvane.set_property('Shift', 'day')"));
        QCOMPARE(shapeProperty(**opened, "s", "Text"), QVariant(QStringLiteral("day")));
    }

    void aPageThatIsNotOpenHasNoScripts()
    {
        TestProject project;
        const auto system = project.openScripted(true);
        const Page other;
        QVERIFY(!system->scriptsOf(other));
    }
};

QTEST_MAIN(tst_LiveSystem)
#include "tst_livesystem.moc"
