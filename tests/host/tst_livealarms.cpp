// Alarms of a project at work: its properties, its log, and what is left of them by an earlier run.

#include "host/alarms/alarmlog.h"
#include "host/inspection/alarmreport.h"
#include "host/runtime/livesystem.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/testproject.h"

#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};
constexpr qint64 begin = 1'600'000'000'000; // 2020-09-13 12:26:40 UTC

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A plant with alarms of severity 9 (very high) and 5 (high) of a level, and of severity 3 of a pump that stops.
class Plant
{
public:
    Plant()
    {
        m_project.write("project.json",
                        TestProject::json("{'name': 'test plant', 'startPage': 'plant', 'timeZone': 'UTC',"
                                          " 'source': 'simulation'}"));
        m_project.write("points.csv",
                        "id,name,kind,high,high_high,hysteresis,states,abnormal_state,high_severity,"
                        "high_high_severity,state_severity,communication_severity,area,alarm_message,address\n"
                        "200001,LEVEL,analog,80,90,1,,,5,9,,4,North,,LEVEL\n"
                        "100001,PUMP,digital,,,,Stopped|Runs,0,,,3,,,pump stopped,\n");
        m_project.write("pages/plant.pws",
                        TestProject::json("{'format': 'korvane-page', 'version': 1, 'layers': [{'name': 'a', 'shapes':"
                                          " [{'class': 'Label', 'name': 'newest', 'place': [0, 0, 9, 9], 'actions':"
                                          " [{'type': 1, 'targets': [{'tag': '@::NewestAlarm'}]}]}]}]}"));
    }

    void open(const QString& source = {}, bool isStored = true)
    {
        system.reset(); // one at a time has the file
        LiveSystem::Options options;
        options.folder = m_project.folder();
        options.source = source;
        options.machineClock = [this] { return machineMs; };
        options.isStored = isStored;
        auto opened = LiveSystem::open(options);
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        system = std::move(*opened);
    }
    void take(ObjectKey object, double value)
    {
        machineMs += 1000;
        system->database().takeSample({object, machineMs, value, 0});
    }
    /// Has what happened be written and shown.
    void settle() const
    {
        QSignalSpy changed(&system->alarms(), &AlarmSystem::changed);
        if (!changed.wait())
            qFatal("nothing changed");
    }
    QVariant property(const char* name) const { return system->properties().getProperty(QString::fromLatin1(name)); }
    QStringList report() const
    {
        constexpr int plenty = 50;
        return AlarmReport::text(system->alarms(), plenty).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    QString path(const char* name) const { return m_project.path(name); }
    void write(const char* name, const QByteArray& bytes) const { m_project.write(name, bytes); }
    QString recording(const QByteArray& rows) const
    {
        m_project.write("rec.csv", rows);
        return text("recording:") + path("rec.csv");
    }
    /// The sources, without their timers.
    void startSources() const
    {
        system->start();
        system->dataService().stop();
    }
    void tick(int ms)
    {
        for (int passed = 0; passed < ms; passed += 100) {
            machineMs += 100;
            system->dataService().tick();
        }
    }

    qint64 machineMs = begin;

private:
    TestProject m_project;

public:
    std::unique_ptr<LiveSystem> system;
};

} // namespace

class tst_LiveAlarms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesFollow()
    {
        Plant plant;
        plant.open();
        const auto compare = [&plant](int standing, int unacknowledged, int severity, const char* newest,
                                      const char* first) {
            QCOMPARE(plant.property("AlarmsStanding"), QVariant(standing));
            QCOMPARE(plant.property("AlarmsUnacknowledged"), QVariant(unacknowledged));
            QCOMPARE(plant.property("AlarmsHighestSeverity"), QVariant(severity));
            QCOMPARE(plant.property("NewestAlarm"), QVariant(text(newest)));
            QCOMPARE(plant.property("FirstAlarm"), QVariant(text(first)));
        };
        compare(0, 0, -1, "", "");
        plant.take(pump, 0);
        plant.settle();
        compare(1, 1, 3, "pump stopped", "pump stopped");
        plant.take(level, 85);
        plant.settle();
        compare(2, 2, 5, "LEVEL high", "pump stopped");
        plant.take(level, 95);
        plant.settle();
        compare(3, 3, 9, "LEVEL very high", "pump stopped");
        QCOMPARE(plant.system->alarms().desk().acknowledgeArea(text("North")), 2);
        plant.settle();
        compare(3, 1, 3, "LEVEL very high", "pump stopped");
        plant.take(level, 50);
        plant.settle();
        compare(1, 1, 3, "LEVEL very high", "pump stopped");
        plant.take(pump, 1);
        plant.system->alarms().desk().acknowledgeArea({});
        plant.settle();
        compare(0, 0, -1, "LEVEL very high", "");
    }

    void pagesShowThem()
    {
        Plant plant;
        plant.open();
        const auto page = plant.system->openPage(text("plant"));
        QVERIFY(page);
        plant.take(pump, 0);
        plant.settle();
        QCOMPARE((*page)->canvas->findShape(text("newest"))->namedProperty(text("Text")),
                 QVariant(text("pump stopped")));
    }

    void theLogLiesInTheDatabaseFile()
    {
        Plant plant;
        plant.open();
        plant.take(level, 85);
        plant.settle();
        AlarmLog log; // another reader of the file, while the system runs
        QVERIFY(log.open(plant.path("runtime.db")));
        const auto lines = log.read({});
        QVERIFY2(lines, lines ? "" : qPrintable(lines.error()));
        QCOMPARE(lines->size(), std::size_t(1));
        const AlarmTransition& line = lines->front();
        QVERIFY(line.kind == AlarmTransition::Kind::Raised);
        QCOMPARE(line.time, QDateTime::fromMSecsSinceEpoch(begin + 1000, Qt::UTC));
        QCOMPARE(line.alarm.tag, text("LEVEL"));
        QCOMPARE(line.alarm.area, text("North"));
        QCOMPARE(line.alarm.severity, 5);
        QCOMPARE(line.alarm.message, text("LEVEL high"));
        QCOMPARE(plant.system->problems(), QStringList());
    }

    void whatStoodGoesOn()
    {
        Plant plant;
        plant.open();
        plant.take(pump, 0);
        plant.take(level, 85);
        const quint64 acknowledged = plant.system->alarms().manager().standing(level, ScadaAlarm::Cause::High);
        const quint64 waiting = plant.system->alarms().manager().standing(pump, ScadaAlarm::Cause::StateChange);
        QVERIFY(plant.system->alarms().manager().acknowledge(acknowledged, text("kim")));

        plant.open(); // what the end of the first found waiting is written
        const AlarmManager& manager = plant.system->alarms().manager();
        QCOMPARE(manager.count(), std::size_t(2));
        QCOMPARE(manager.alarm(acknowledged).state, State::Acknowledged);
        QCOMPARE(manager.alarm(acknowledged).acknowledgedBy, text("kim"));
        QCOMPARE(manager.alarm(waiting).state, State::Unacknowledged);
        QCOMPARE(plant.property("AlarmsStanding"), QVariant(2)); // from the start
        QCOMPARE(plant.property("AlarmsUnacknowledged"), QVariant(1));
        QCOMPARE(plant.property("AlarmsHighestSeverity"), QVariant(3));
        QCOMPARE(plant.property("FirstAlarm"), QVariant(text("pump stopped")));

        plant.take(level, 86); // the same occurrence
        plant.take(level, 50);
        plant.take(pump, 1);
        QCOMPARE(manager.count(), std::size_t(1));
        QCOMPARE(manager.alarm(waiting).state, State::ReturnedUnacknowledged);
        plant.take(pump, 0);
        QCOMPARE(manager.alarm(waiting).state, State::Unacknowledged);
        plant.take(level, 85);
        QVERIFY(manager.standing(level, ScadaAlarm::Cause::High) > acknowledged); // numbers go on too
    }

    void withoutAStoreNothingIsKept()
    {
        Plant plant;
        plant.open({}, false);
        plant.take(pump, 0);
        QCOMPARE(plant.report(),
                 (QStringList{text("2020-09-13 12:26:41.000  raised  3  PUMP  pump stopped (unacknowledged)"),
                              text("1 alarms stand, 1 of them unacknowledged")}));
        QVERIFY(!QFile::exists(plant.path("runtime.db")));
        plant.open({}, false);
        QCOMPARE(plant.report(), QStringList{text("0 alarms stand, 0 of them unacknowledged")});
    }

    void aReplayKeepsItsLogInMemory()
    {
        Plant plant;
        plant.open();
        plant.take(pump, 0); // of the plant itself
        plant.open(plant.recording("time;LEVEL\n1500000000;10\n1500000001;95\n1500000005;95\n"));
        QCOMPARE(plant.system->alarms().manager().count(), std::size_t(0)); // that is no alarm of the recording
        plant.startSources();
        plant.tick(3000);
        QVERIFY2(plant.report().contains(text("2017-07-14 02:40:01.000  raised  9  LEVEL  LEVEL very high "
                                              "(unacknowledged)")),
                 qPrintable(plant.report().join(QLatin1Char('\n'))));
        QCOMPARE(plant.report().constLast(), text("2 alarms stand, 2 of them unacknowledged"));

        plant.open();
        QCOMPARE(plant.report(),
                 (QStringList{text("2020-09-13 12:26:41.000  raised  3  PUMP  pump stopped (unacknowledged)"),
                              text("1 alarms stand, 1 of them unacknowledged")}));
    }

    void startAndEndAreEvents()
    {
        Plant plant;
        plant.open();
        plant.system->start();
        plant.machineMs += 5000;
        plant.open(); // ends the first
        QCOMPARE(plant.report(),
                 (QStringList{text("2020-09-13 12:26:40.000  test plant started: simulation of a water loop, seed 1, "
                                   "0 points"),
                              text("2020-09-13 12:26:45.000  test plant ended"),
                              text("0 alarms stand, 0 of them unacknowledged")}));
        plant.open(); // one that never started has no end
        QCOMPARE(plant.report().size(), 3);
    }

    void aSourceThatFailsIsAnEventAndAnAlarm()
    {
        Plant plant;
        plant.open(plant.recording("time;LEVEL\n1500000000;10\n1500000001;20\n1500000003;20\n"));
        QVERIFY(QFile::remove(plant.path("rec.csv")));
        plant.startSources();
        plant.tick(3000);
        const QStringList report = plant.report();
        const QString failure = plant.path("rec.csv") + text(": the file is gone");
        const auto isTold = [&failure](const QStringList& lines) {
            return std::count_if(lines.begin(), lines.end(),
                                 [&failure](const QString& line) { return line.endsWith(failure); });
        };
        QVERIFY2(isTold(report) == 1, qPrintable(report.join(QLatin1Char('\n'))));
        QCOMPARE(isTold(plant.system->problems()), 1);
        QVERIFY2(report.contains(
                     text("2017-07-14 02:40:00.000  raised  4  LEVEL  LEVEL communication failed (unacknowledged)")),
                 qPrintable(report.join(QLatin1Char('\n'))));
    }

    void aDatabaseThatCantBeUsedIsTold()
    {
        Plant plant;
        plant.write("runtime.db", "this is no database, however long one looks at it");
        plant.open();
        const QStringList& problems = plant.system->problems();
        QVERIFY2(!problems.isEmpty() && problems.constLast().startsWith(plant.path("runtime.db")),
                 qPrintable(problems.join(QLatin1Char('\n'))));
        plant.take(pump, 0);
        plant.settle();
        QCOMPARE(plant.property("AlarmsStanding"), QVariant(1)); // in memory
        QCOMPARE(plant.report().size(), 2);
    }
};

QTEST_MAIN(tst_LiveAlarms)
#include "tst_livealarms.moc"
