// The demo project: it opens without a problem, stands as the page writer writes it, and shows values from each source.

#include "host/actions/canvasactionmanager.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/pagerenderer.h"
#include "host/canvas/pagewriter.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/sourcerecorder.h"
#include "host/shapes/shape.h"
#include "scada/binding/objecttarget.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString projectFolder()
{
    return QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
}

/// The demo project on a machine whose clock the test turns.
struct Demo
{
    explicit Demo(const QString& source = {})
    {
        LiveSystem::Options options;
        options.folder = projectFolder();
        options.source = source;
        options.machineClock = [this] { return machineMs; };
        options.isStored = false;
        auto opened = LiveSystem::open(options);
        if (opened)
            system = std::move(*opened);
        else
            error = opened.error();
    }

    /// Opens a page, and lets so much time pass.
    Page* show(const QString& name, int seconds)
    {
        const auto opened = system->openPage(name);
        if (!opened) {
            error = opened.error();
            return nullptr;
        }
        (*opened)->actions->setShown(true);
        system->start();
        for (int tick = 0; tick < seconds * 20; ++tick) {
            machineMs += 50;
            system->dataService().tick();
        }
        system->dataService().stop();
        return *opened;
    }

    qint64 machineMs = 1'772'500'000'000;
    std::unique_ptr<LiveSystem> system;
    QString error;
};

double number(const Page& page, const QString& shape)
{
    return page.canvas->findShape(shape)->namedProperty(QStringLiteral("Value")).toDouble();
}

} // namespace

class tst_DemoProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesStandAsTheyAreWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("alarms") << QStringLiteral("alarms");
        QTest::newRow("overview") << QStringLiteral("overview");
        QTest::newRow("statistics") << QStringLiteral("statistics");
    }
    // With KORVANE_REWRITE set, the pages are written instead: for whoever edited one by hand.
    void pagesStandAsTheyAreWritten()
    {
        QFETCH(QString, name);
        Demo demo;
        QVERIFY2(demo.system, qPrintable(demo.error));
        const PageReader reader(*demo.system->core().scadaCoreInterface()->canvasActionManagerFactory(),
                                &demo.system->database());
        const QString fileName = demo.system->project().pageFile(name);
        const auto page = reader.readFile(fileName);
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        if (qEnvironmentVariableIsSet("KORVANE_REWRITE"))
            QVERIFY(PageWriter::writeFile(*page, fileName));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(PageWriter::write(*page), file.readAll());
    }

    void itOpensWithoutAProblem()
    {
        Demo demo;
        QVERIFY2(demo.system, qPrintable(demo.error));
        const Page* page = demo.show(demo.system->project().startPage, 10);
        QVERIFY2(page, qPrintable(demo.error));
        QCOMPARE(demo.system->problems(), QStringList());
        QCOMPARE(demo.system->dataService().failedPoints(), 0);
        QVERIFY(number(*page, QStringLiteral("flow")) > 100);
        QCOMPARE(page->canvas->findShape(QStringLiteral("pump"))->namedProperty(QStringLiteral("State")), QVariant(1));
    }

    // Points that are missing are problems of the page.
    void everyPropertyOfItsPagesIsThere()
    {
        const Demo demo;
        QVERIFY2(demo.system, qPrintable(demo.error));
        int count = 0;
        for (const QString& name : demo.system->project().pages()) {
            const auto page = demo.system->openPage(name);
            QVERIFY2(page, page ? "" : qPrintable(page.error()));
            for (const ObjectTarget* target : dynamic_cast<const CanvasActionManager&>(*(*page)->actions).targets()) {
                if (target->objectKindType() != Korvane::ScadaObjectType::ApplicationProperty)
                    continue;
                ++count;
                QVERIFY2(demo.system->properties().getProperty(target->getTagString()).isValid(),
                         qPrintable(target->getTagString()));
            }
        }
        QVERIFY(count >= 5); // those of the alarms
        QCOMPARE(demo.system->problems(), QStringList());
    }

    void itsAlarmsCanBeHeard()
    {
        const Demo demo;
        QVERIFY2(demo.system, qPrintable(demo.error));
        const AlarmDataInfo& severities = demo.system->project().alarms.severities;
        for (int severity = 1; severity <= ScadaAlarm::highestSeverity; ++severity) {
            const QString sound = severities.severityData(severity).soundPath;
            QVERIFY2(sound.startsWith(projectFolder() + QStringLiteral("/sounds/")), qPrintable(sound));
            QVERIFY2(QFileInfo(sound).isFile(), qPrintable(sound));
            QCOMPARE(bool(severities.severityData(severity).usePopup), severity >= 8);
        }
        QCOMPARE(severities.severityData(0).soundPath, QString()); // the one that asks for nothing
    }

    void itsAreasAreThoseOfItsPoints()
    {
        const Demo demo;
        QVERIFY2(demo.system, qPrintable(demo.error));
        QSet<QString> areas;
        for (const ObjectKey point : demo.system->database().objects(Korvane::ScadaObjectType::Point))
            areas.insert(demo.system->database().object(point)->area);
        const QStringList& stated = demo.system->project().alarms.areas;
        QCOMPARE(areas, QSet<QString>(stated.begin(), stated.end()));
    }

    void theRecordingIsTheSimulations()
    {
        QTemporaryDir folder;
        LiveSystem::Options options;
        options.folder = projectFolder();
        options.source = QStringLiteral("simulation?seed=1");
        const QString fileName = folder.filePath(QStringLiteral("again.csv"));
        const auto samples = recordSource(options, fileName, std::chrono::minutes(25));
        QVERIFY2(samples, samples ? "" : qPrintable(samples.error()));
        QFile again(fileName);
        QFile shipped(projectFolder() + QStringLiteral("/recordings/loop.csv"));
        QVERIFY(again.open(QIODevice::ReadOnly) && shipped.open(QIODevice::ReadOnly));
        QCOMPARE(again.readAll(), shipped.readAll());
    }

    void theSimulationDrivesEveryPoint()
    {
        Demo demo(QStringLiteral("simulation?seed=4"));
        QVERIFY2(demo.system, qPrintable(demo.error));
        const Page* page = demo.show(QStringLiteral("overview"), 10);
        QVERIFY(page);
        QCOMPARE(demo.system->dataService().failedPoints(), 0);
        QVERIFY(number(*page, QStringLiteral("flow")) > 100);
    }

    void aClosingValveIsShown()
    {
        Demo demo(QStringLiteral("recording:%1/recordings/loop.csv?speed=60").arg(projectFolder()));
        QVERIFY2(demo.system, qPrintable(demo.error));
        const Page* page = demo.show(QStringLiteral("overview"), 2); // two minutes: the inlet valve is closing
        QVERIFY(page);
        QVERIFY(number(*page, QStringLiteral("flow")) < 80);
        const auto property = [page](const char* shape, const char* name) {
            return page->canvas->findShape(QString::fromLatin1(shape))->namedProperty(QString::fromLatin1(name));
        };
        QCOMPARE(property("flow", "FillColor").value<QColor>(), QColor(0xc0, 0x39, 0x2b));
        QCOMPARE(property("cavitation", "Visible"), QVariant(true));
        QCOMPARE(property("inlet_valve", "State"), QVariant(0));
        QVERIFY(page->canvas->findShape(QStringLiteral("flow"))->overlayState() != 0); // below its low limit
        QCOMPARE(property("outlet_valve", "State"), QVariant(1));
    }

    void realRecordingsPlayThroughTheSamePage_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<double>("flow");
        QTest::newRow("normal") << QStringLiteral("normal.csv") << 122.0;
        QTest::newRow("inlet valve closing") << QStringLiteral("inlet-valve-closing.csv") << 32.0;
        QTest::newRow("sudden water increase") << QStringLiteral("sudden-water-increase.csv") << 127.0;
    }
    void realRecordingsPlayThroughTheSamePage()
    {
        QFETCH(QString, file);
        QFETCH(double, flow);
        const QString fileName = QStringLiteral(KORVANE_SOURCE_DIR "/../shared/recordings/water-loop/") + file;
        if (!QFile::exists(fileName))
            QSKIP("the recordings of the test bed are not beside the project");
        Demo demo(QStringLiteral("recording:%1?speed=10").arg(fileName));
        QVERIFY2(demo.system, qPrintable(demo.error));
        const Page* page = demo.show(QStringLiteral("overview"), 3);
        QVERIFY(page);
        QVERIFY(qAbs(number(*page, QStringLiteral("flow")) - flow) < 2);
        QVERIFY(demo.system->dataService().figures().samples >= 8 * 28);
    }

    void pagesOutOfSightTakeNothing()
    {
        Demo demo;
        const auto overview = demo.system->openPage(QStringLiteral("overview"));
        const Page* statistics = demo.show(QStringLiteral("statistics"), 5);
        QVERIFY(overview && statistics);
        QVERIFY(!number(**overview, QStringLiteral("flow")));
        QVERIFY(number(*statistics, QStringLiteral("HourMean_0")) > 100);
        (*overview)->actions->setShown(true);
        QVERIFY(number(**overview, QStringLiteral("flow")) > 100);
    }

    void whatCantBeRunSaysWhy_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no such recording")
            << QStringLiteral("recording:nowhere.csv") << QStringLiteral("nowhere.csv: there is no such recording");
        QTest::newRow("an unknown kind of source")
            << QStringLiteral("telepathy") << QStringLiteral("source \"telepathy\": ");
    }
    void whatCantBeRunSaysWhy()
    {
        QFETCH(QString, source);
        QFETCH(QString, reason);
        Demo demo(source);
        QVERIFY(!demo.system);
        QVERIFY2(demo.error.startsWith(reason), qPrintable(demo.error));
    }

    void aPageThatThereIsNotIsRefused()
    {
        Demo demo;
        QVERIFY(!demo.system->openPage(QStringLiteral("nowhere")));
        QVERIFY(!demo.system->openPage(QStringLiteral("../points")));
        QVERIFY(demo.system->pages().pages().empty());
    }

    void aClosedPageGivesItsMemoryBack()
    {
        Demo demo;
        QVERIFY(demo.show(QStringLiteral("overview"), 2));
        QVERIFY(demo.system->pages().close(QStringLiteral("overview")));
        QVERIFY(!demo.system->pages().close(QStringLiteral("overview")));
        QVERIFY(!demo.system->pages().currentCanvas());
        demo.machineMs += 5000;
        demo.system->dataService().tick(); // nobody listens any more
        QVERIFY(demo.show(QStringLiteral("overview"), 2));
    }
};

QTEST_MAIN(tst_DemoProject)
#include "tst_demoproject.moc"
