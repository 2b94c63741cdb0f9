// What the module "korvane" gives scripts: tags, alarms, the log, the time.

#include "host/alarms/alarmdesk.h"
#include "host/alarms/alarmmanager.h"
#include "host/runtime/dataservice.h"
#include "platform/data/valuemarks.h"
#include "tests/support/scriptpage.h"
#include "tests/support/testservices.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

using Korvane::ScadaObjectType;
using Korvane::TriggerType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

constexpr qint64 hourBegin = 1699999200000; // 2023-11-14 22:00 UTC; now is 22:13:20

/// Points of two stations, a unit and a line, beside those without a station.
struct Plant : ScriptPage
{
    Plant() : service(database, *core.scadaCoreInterface())
    {
        core.scadaCoreInterface()->setDataServiceInterface(&service);
        RuntimeDatabase::Object level{ScadaObjectType::AnalogPoint, 200011, text("LT-1"), text("Intake")};
        level.description = text("Level of the basin");
        level.displayName = text("Level");
        level.low = 10;
        level.high = 80;
        level.unit = text("m");
        level.decimals = 1;
        add(level);
        RuntimeDatabase::Object pump{ScadaObjectType::DigitalPoint, 100011, text("P-1"), text("Works")};
        pump.states = QStringList{text("off"), text("on")};
        pump.abnormalState = 1;
        add(pump);
        add({ScadaObjectType::RtuObject, 2, text("PLC2"), text("Works")});
        add({ScadaObjectType::ChannelObject, 1, text("LINE1"), text("Works")});
    }
    void takeAt(ScadaObjectType type, qint32 id, qint64 timeMs, double value, qint32 quality = 0)
    {
        database.takeSample({{type, id}, timeMs, value, quality});
    }
    void takeLevelAt(qint64 timeMs, double value, qint32 quality = 0)
    {
        takeAt(ScadaObjectType::AnalogPoint, 200011, timeMs, value, quality);
    }

    DataService service;
};

/// An alarm manager with two occurrences.
class Alarms : public TestSystemAlarmManager
{
public:
    Alarms() : TestSystemAlarmManager(nullptr)
    {
        ScadaAlarm high;
        high.id = 7;
        high.tag = text("LT-1");
        high.area = text("North");
        high.severity = 9;
        high.state = ScadaAlarm::State::Unacknowledged;
        high.value = 81.5;
        high.limit = 80.0;
        high.message = text("too high");
        high.raised = QDateTime({2024, 1, 2}, {3, 4, 5}, Qt::UTC);
        ScadaAlarm change;
        change.id = 6;
        change.tag = text("P-1");
        change.state = ScadaAlarm::State::Acknowledged;
        change.value = 1;
        alarms = {high, change};
    }
    QList<ScadaAlarm> activeAlarms() const override { return alarms; }
    int highestUnacknowledgedSeverity() const override { return 9; }

    QList<ScadaAlarm> alarms;
};

class Session : public TestScadaRuntimManager
{
public:
    Session() : TestScadaRuntimManager(nullptr) {}
    QString currentUser() const override { return text("anna"); }
};

/// A plant's alarms at work, where anna is logged on: one of LT-1 waits. What is done about it is kept, as "2 by anna".
struct WatchedAlarms
{
    static constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200011};

    explicit WatchedAlarms(Plant& plant)
        : manager([&plant] { return plant.core.scadaCoreInterface()->currentTime(); }),
          desk(manager, *plant.core.scadaCoreInterface())
    {
        plant.core.scadaCoreInterface()->setAlarmManager(&manager);
        plant.core.scadaCoreInterface()->setRuntimeManager(&session);
        plant.engine.setAlarmDesk(&desk);
        ScadaAlarm alarm;
        alarm.objectType = level.type;
        alarm.objectId = level.id;
        alarm.raised = plant.core.scadaCoreInterface()->currentTime();
        high = manager.raiseAlarm(alarm);
        QObject::connect(&manager, &AlarmManager::transitioned, [this](const AlarmTransition& line) {
            told.append(text("%1 by %2").arg(int(line.kind)).arg(line.user));
        });
    }

    Session session;
    AlarmManager manager;
    AlarmDesk desk;
    quint64 high = 0;
    QStringList told;
};

} // namespace

class tst_ScriptModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsAreListed()
    {
        Plant plant;
        QCOMPARE(plant.run("print(tags.stations())"), text("['', 'Intake', 'Works']"));
        QCOMPARE(plant.run("print(tags.names())"),
                 text("['FLOW', 'LEVEL', '@R::PLC1', 'LT-1', 'P-1', '@R::PLC2', '@C::LINE1']"));
        QCOMPARE(plant.run("print(tags.names('Works'))"), text("['P-1', '@R::PLC2', '@C::LINE1']"));
        QCOMPARE(plant.run("print(tags.names(station='Intake'))"), text("['LT-1']"));
        QCOMPARE(plant.run("print(tags.names(''))"), text("['FLOW', 'LEVEL', '@R::PLC1']"));
        QCOMPARE(plant.run("print(tags.names('Nowhere'))"), text("[]"));
        QCOMPARE(plant.run("for name in tags.names():\n\ttags.read(name)"), QString()); // each can be read
    }

    void fieldsAreListedAndCanBeRead()
    {
        Plant plant;
        QCOMPARE(plant.run("print(tags.fields('@C::LINE1'))"),
                 text("['CommState', 'CommOnlineTime', 'CommOfflineTime', 'DriverState']"));
        QVERIFY(plant.run("print(tags.fields('P-1'))").startsWith(text("['Value', 'PointName', 'StatusName', ")));
        QCOMPARE(plant.run("print('HighLimit' in tags.fields('LT-1'), 'HighLimit' in tags.fields('P-1'))"),
                 text("True False"));
        QCOMPARE(plant.run("print(tags.fields('@::Shift'))"), text("[]"));
        plant.takeLevelAt(ScriptPage::now, 5);
        QCOMPARE(plant.run(
                     "for name in tags.names():\n\tfor field in tags.fields(name):\n\t\ttags.read(name + ':' + field)"),
                 QString());
    }

    void fieldsAreRead_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("read");
        const auto row = [](const char* tag, const char* read) { QTest::newRow(tag) << text(tag) << text(read); };
        row("LT-1", "55.25");
        row("LT-1:Value", "55.25");
        row("LT-1:ValueWithUnit", "'55.3 m'");
        row("LT-1:PointName", "'LT-1'");
        row("LT-1:StationName", "'Intake'");
        row("LT-1:FullName", "'Intake.LT-1'");
        row("LT-1:Description", "'Level of the basin'");
        row("LT-1:DisplayName", "'Level'");
        row("LT-1:LowLimit", "10.0");
        row("LT-1:HighHighLimit", "None");
        row("LT-1:UpdateTime", "datetime.datetime(2023, 11, 14, 22, 10, tzinfo=datetime.timezone.utc)");
        row("LT-1:HourMaximum", "60.0");
        row("LT-1:HourMaximumTime", "datetime.datetime(2023, 11, 14, 22, 5, tzinfo=datetime.timezone.utc)");
        row("LT-1:TodayMinimum", "20.0");
        row("LT-1:PastMaximum", "30.0");
        row("LT-1:PastMoment", "30.0");
        row("#200011", "55.25");
        row("#200011:HighLimit", "80.0");
        row("P-1", "1");
        row("P-1:StatusName", "'on'");
        row("P-1:HourOnCount", "1");
        row("P-1:PastMoment", "None");
        row("@R::PLC2", "1");
        row("@R::PLC2:CommState", "1");
        row("@R::PLC2:ScanState", "1");
        row("@C::LINE1:DriverState", "None");
        row("@::Shift", "'night'");
        row("@::Nothing", "None");
        row("FLOW", "None");
        row("FLOW:HourMaximum", "None");
    }
    void fieldsAreRead()
    {
        QFETCH(QString, tag);
        QFETCH(QString, read);
        Plant plant;
        plant.database.setTimeZone(QTimeZone::utc());
        plant.takeLevelAt(hourBegin - 1800000, 20);
        plant.takeLevelAt(hourBegin - 600000, 30);
        plant.takeLevelAt(hourBegin + 300000, 60);
        plant.takeLevelAt(hourBegin + 600000, 55.25);
        plant.takeAt(ScadaObjectType::DigitalPoint, 100011, hourBegin + 1000, 0);
        plant.takeAt(ScadaObjectType::DigitalPoint, 100011, hourBegin + 2000, 1);
        plant.takeAt(ScadaObjectType::RtuObject, 2, hourBegin, 1);
        plant.properties.setValue(text("Shift"), text("night"));
        QCOMPARE(plant.run(text("print(repr(tags.read('%1')))").arg(tag)), read);
    }

    void tagsThatNameNothingAreRefused_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("failure");
        const auto row = [](const char* call, const char* failure) {
            QTest::newRow(call) << text(call) << text(failure);
        };
        row("tags.read('XX')", "LookupError: there is no \"XX\"");
        row("tags.read('PLC2')", "LookupError: there is no \"PLC2\""); // a unit has a prefix
        row("tags.read('@R::LT-1')", "LookupError: there is no \"@R::LT-1\"");
        row("tags.read('#200099')", "LookupError: there is no \"#200099\"");
        row("tags.read('')", "LookupError: \"\" names nothing");
        row("tags.read('1e5')", "LookupError: \"1e5\" names nothing");
        row("tags.read('LT-1:Colour')", "LookupError: there is no \"LT-1:Colour\"");
        row("tags.read('@R::PLC2:HighLimit')", "LookupError: \"PLC2\" has no field \"HighLimit\"");
        row("tags.marks('XX')", "LookupError: there is no \"XX\"");
        row("tags.time('XX')", "LookupError: there is no \"XX\"");
        row("tags.is_good('XX')", "LookupError: there is no \"XX\"");
        row("tags.fields('XX')", "LookupError: there is no \"XX\"");
        row("tags.marks('@::Shift')", "LookupError: an application property has neither marks nor a time");
        row("tags.time('@::Shift')", "LookupError: an application property has neither marks nor a time");
        row("tags.is_good('@::Shift')", "LookupError: an application property has neither marks nor a time");
    }
    void tagsThatNameNothingAreRefused()
    {
        QFETCH(QString, call);
        QFETCH(QString, failure);
        Plant plant;
        QCOMPARE(plant.run(call), text("page \"overview\", line 1: ") + failure);
        QCOMPARE(plant.run(text("try: %1\nexcept LookupError as error: print('caught')").arg(call)), text("caught"));
    }

    void tagsThatAreNoTextsAreRefused()
    {
        Plant plant;
        for (const char* call : {"tags.read(5)", "tags.read(None)", "tags.read(b'LT-1')", "tags.read()"})
            QVERIFY2(plant.run(call).contains(text("TypeError")), call);
    }

    void marksAreRead()
    {
        Plant plant;
        QCOMPARE(plant.run("m = tags.marks('LT-1')\nprint(m.tag, m.limit, m.quality == tags.INVALID)"),
                 text("0 0 True"));
        plant.takeLevelAt(ScriptPage::now - 3000, 81, ValueMark::Estimated | ValueMark::OutOfRange);
        QCOMPARE(plant.run("m = tags.marks('LT-1')\nprint(m.limit == tags.ABOVE_HIGH, m.quality == tags.ESTIMATED | "
                           "tags.OUT_OF_RANGE)"),
                 text("True True"));
        plant.takeAt(ScadaObjectType::DigitalPoint, 100011, ScriptPage::now, 1);
        QCOMPARE(plant.run("print(tags.marks('P-1').limit == tags.ABNORMAL)"), text("True"));
    }

    void aValueIsGoodUnlessItCantBeReliedOn_data()
    {
        QTest::addColumn<int>("quality");
        QTest::addColumn<bool>("isGood");
        QTest::newRow("without a mark") << 0 << true;
        QTest::newRow("invalid") << int(ValueMark::Invalid) << false;
        QTest::newRow("stale") << int(ValueMark::Stale) << false;
        QTest::newRow("communication failed") << int(ValueMark::CommunicationFailed) << false;
        QTest::newRow("one of several") << int(ValueMark::Stale | ValueMark::Test) << false;
        QTest::newRow("substituted by hand") << int(ValueMark::Substituted) << true;
        QTest::newRow("estimated") << int(ValueMark::Estimated) << true;
        QTest::newRow("out of range") << int(ValueMark::OutOfRange) << true;
        QTest::newRow("oscillating") << int(ValueMark::Oscillating) << true;
        QTest::newRow("a test") << int(ValueMark::Test) << true;
    }
    void aValueIsGoodUnlessItCantBeReliedOn()
    {
        QFETCH(int, quality);
        QFETCH(bool, isGood);
        Plant plant;
        plant.takeLevelAt(ScriptPage::now, 5, quality);
        QCOMPARE(plant.run("print(tags.is_good('LT-1'))"), isGood ? text("True") : text("False"));
        QCOMPARE(plant.run("print(tags.is_good('LT-1:HighLimit'))"),
                 isGood ? text("True") : text("False")); // the point's
    }

    void constantsOfMarksAreThoseOfValues()
    {
        Plant plant;
        QCOMPARE(
            plant.run("print(tags.CONTROL_INHIBITED, tags.ALARM_INHIBITED, tags.SCAN_INHIBITED, tags.INFORMATION_TAG)"),
            text("1 2 4 8"));
        QCOMPARE(plant.run(
                     "print(tags.BELOW_LOW, tags.ABOVE_HIGH, tags.BELOW_LOW_LOW, tags.ABOVE_HIGH_HIGH, tags.ABNORMAL)"),
                 text("1 2 4 8 16"));
        QCOMPARE(
            plant.run("print(tags.INVALID, tags.SUBSTITUTED, tags.STALE, tags.COMMUNICATION_FAILED, tags.ESTIMATED, "
                      "tags.OUT_OF_RANGE, tags.OSCILLATING, tags.TEST)"),
            text("1 2 4 8 16 32 64 128"));
        QCOMPARE(plant.run("print(korvane.MOUSE_RELEASE, korvane.MOUSE_DOUBLE_CLICK, korvane.MOUSE_HOVER, "
                           "korvane.MOUSE_LEAVE, korvane.KEY_PRESS, korvane.CANVAS_LOAD, korvane.CANVAS_UNLOAD, "
                           "korvane.MOUSE_PRESS, korvane.MOUSE_RIGHT_BUTTON_RELEASE, korvane.OBJECT_LOADING)"),
                 text("1 2 3 4 5 6 7 8 10 13"));
    }

    void theTimeOfAValueIsRead()
    {
        Plant plant;
        QCOMPARE(plant.run("print(tags.time('LT-1'))"), text("None"));
        plant.takeLevelAt(ScriptPage::now - 1, 5);
        QCOMPARE(plant.run("print(tags.time('LT-1'), tags.time('LT-1:HighLimit') == tags.time('LT-1'))"),
                 text("2023-11-14 22:13:19.999000+00:00 True"));
        QCOMPARE(plant.run("print(korvane.now() - tags.time('LT-1'))"), text("0:00:00.001000"));
    }

    void theTimeIsTheSystems()
    {
        Plant plant;
        QCOMPARE(plant.run("print(korvane.now(), korvane.now().tzinfo)"), text("2023-11-14 22:13:20+00:00 UTC"));
    }

    void itsPartsCanBeImported()
    {
        Plant plant;
        QCOMPARE(plant.run("import korvane as k, korvane.tags as t\nfrom korvane import pages, log as l\n"
                           "from korvane.alarms import active\nprint(k is korvane, t is tags, l is korvane.log, "
                           "active is alarms.active)"),
                 text("True True True True"));
        QVERIFY(plant.run("import korvane.nothing").contains(text("ModuleNotFoundError")));
    }

    void linesOfTheLogAreTold()
    {
        Plant plant;
        QList<QPair<ScriptEngine::Severity, QString>> lines;
        connect(&plant.engine, &ScriptEngine::logged, this,
                [&lines](ScriptEngine::Severity severity, const QString& line) {
                    lines.append({severity, line});
                });
        QCOMPARE(plant.run("log.info('a')\nlog.warning(text='b')\nlog.error(1.5)\nlog.info(None)\nlog.info('\\ud83d')"),
                 QString());
        QCOMPARE(lines, (QList<QPair<ScriptEngine::Severity, QString>>{
                            {ScriptEngine::Severity::Information, text("a")},
                            {ScriptEngine::Severity::Warning, text("b")},
                            {ScriptEngine::Severity::Error, text("1.5")},
                            {ScriptEngine::Severity::Information, text("None")},
                            {ScriptEngine::Severity::Information, QString(QChar(0xd83d))},
                        }));
        QVERIFY(
            plant.run("class Bad:\n\tdef __str__(self): 1 / 0\nlog.info(Bad())").contains(text("ZeroDivisionError")));
        QCOMPARE(lines.size(), 5);
    }

    void alarmsAreRead()
    {
        Plant plant;
        Alarms manager;
        plant.core.scadaCoreInterface()->setAlarmManager(&manager);
        QCOMPARE(
            plant.run(
                "for a in alarms.active():\n\tprint(a.id, a.tag, repr(a.area), a.severity, a.state, a.value, a.limit, "
                "repr(a.message), a.raised)"),
            text("7 LT-1 'North' 9 unacknowledged 81.5 80.0 'too high' 2024-01-02 03:04:05+00:00, "
                 "6 P-1 '' 0 acknowledged 1 None '' None"));
        QCOMPARE(plant.run("print(alarms.highest_severity())"), text("9"));
        QCOMPARE(plant.run("kept = alarms.active()[0]"), QString());
        manager.alarms.clear();
        QCOMPARE(plant.run("print(alarms.active(), kept.tag)"), text("[] LT-1")); // as it stood
        QVERIFY(plant.run("kept.severity = 1").contains(text("AttributeError")));
    }

    void statesOfAlarmsAreNamed_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("name");
        using State = ScadaAlarm::State;
        const auto row = [](State state, const char* name) {
            QTest::newRow(name) << static_cast<int>(state) << text(name);
        };
        row(State::Normal, "normal");
        row(State::Unacknowledged, "unacknowledged");
        row(State::Acknowledged, "acknowledged");
        row(State::ReturnedUnacknowledged, "returned unacknowledged");
        row(State::Shelved, "shelved");
        row(State::Suppressed, "suppressed");
        row(State::OutOfService, "out of service");
    }
    void statesOfAlarmsAreNamed()
    {
        QFETCH(int, state);
        QFETCH(QString, name);
        Plant plant;
        Alarms manager;
        manager.alarms[0].state = static_cast<ScadaAlarm::State>(state);
        plant.core.scadaCoreInterface()->setAlarmManager(&manager);
        QCOMPARE(plant.run("print(alarms.active()[0].state)"), name);
    }

    void alarmsAreAcknowledgedForWhoIsLoggedIn()
    {
        Plant plant;
        const WatchedAlarms watched(plant);
        const quint64 id = watched.high;
        QCOMPARE(
            plant.run(text("print(alarms.acknowledge(%1), alarms.acknowledge(id=%1), alarms.acknowledge(99))").arg(id)),
            text("True False False"));
        QCOMPARE(watched.manager.alarm(id).acknowledgedBy, text("anna"));
        QVERIFY(plant.run("alarms.acknowledge('7')").contains(text("TypeError")));
        QVERIFY(plant.run("alarms.acknowledge(-1)").contains(text("TypeError")));
    }

    void alarmsAreShelvedAndSuppressed()
    {
        Plant plant;
        const WatchedAlarms watched(plant);
        const quint64 id = watched.high;
        for (const char* minutes : {"0", "-1", "10081", "float('nan')"}) {
            const QString said = plant.run(text("alarms.shelve(%1, %2, 'x')").arg(id).arg(text(minutes)));
            QVERIFY2(said.contains(text("ValueError: minutes must be above 0, at most 10080")), qPrintable(said));
        }
        const QDateTime until = plant.core.scadaCoreInterface()->currentTime().addSecs(90);
        QCOMPARE(
            plant.run(
                text("print(alarms.shelve(%1, 1.5, 'known'), alarms.shelve(id=99, minutes=1.5, reason=''))").arg(id)),
            text("True False"));
        QCOMPARE(watched.manager.shelf(id).until, until);
        QCOMPARE(watched.manager.shelf(id).user, text("anna"));
        QCOMPARE(watched.manager.shelf(id).reason, text("known"));
        QCOMPARE(plant.run("print(alarms.suppress('LT-1', reason='cleaning'), alarms.suppress('LT-1', True))"),
                 text("True False"));
        QVERIFY(watched.manager.exclusion(WatchedAlarms::level).isSuppressed);
        QCOMPARE(watched.manager.exclusion(WatchedAlarms::level).suppressionReason, text("cleaning"));
        QCOMPARE(plant.run("print(alarms.suppress('LT-1', False))"), text("True"));
        QVERIFY(!watched.manager.exclusion(WatchedAlarms::level).isSuppressed);
        QCOMPARE(watched.told.filter(text(" by anna")).size(), watched.told.size());
        QVERIFY(plant.run("alarms.suppress('nowhere')").contains(text("LookupError")));
    }

    void whatIsNotPermittedIsRefused_data()
    {
        QTest::addColumn<int>("act");
        QTest::addColumn<QString>("call");
        using Act = AlarmDesk::Act;
        QTest::newRow("acknowledge") << int(Act::Acknowledge) << text("alarms.acknowledge(%1)");
        QTest::newRow("shelve") << int(Act::Shelve) << text("alarms.shelve(%1, 5, 'known')");
        QTest::newRow("suppress") << int(Act::TakeOutOfService) << text("alarms.suppress('LT-1')");
    }
    void whatIsNotPermittedIsRefused()
    {
        QFETCH(int, act);
        QFETCH(QString, call);
        Plant plant;
        WatchedAlarms watched(plant);
        bool isPermitted = false;
        watched.desk.setPermission([&](AlarmDesk::Act asked, ObjectKey object) {
            return isPermitted || int(asked) != act || !(object == WatchedAlarms::level);
        });
        const QString script = call.contains(QLatin1Char('%')) ? call.arg(watched.high) : call;
        const QString said = plant.run(script);
        QVERIFY2(said.contains(text("PermissionError: who is logged on may not do that")), qPrintable(said));
        QCOMPARE(watched.told, QStringList());
        isPermitted = true;
        QCOMPARE(plant.run(text("print(") + script + QLatin1Char(')')), text("True"));
        QVERIFY(!watched.told.isEmpty());
    }

    void whoeverIsThereASuppressionMayEnd()
    {
        Plant plant;
        WatchedAlarms watched(plant);
        QCOMPARE(plant.run("print(alarms.suppress('LT-1'))"), text("True"));
        watched.desk.setPermission([](AlarmDesk::Act, ObjectKey) { return false; });
        QVERIFY(plant.run("alarms.suppress('LT-1')").contains(text("PermissionError")));
        QCOMPARE(plant.run("print(alarms.suppress('LT-1', False))"), text("True"));
        QVERIFY(!watched.manager.exclusion(WatchedAlarms::level).isSuppressed);
    }

    void aSystemWithoutServicesSaysSo()
    {
        Plant plant;
        for (const char* call : {"alarms.active()", "alarms.acknowledge(1)", "alarms.shelve(1, 5, '')",
                                 "alarms.suppress('LT-1')", "alarms.highest_severity()"})
            QVERIFY2(plant.run(call).contains(text("RuntimeError: this system has no alarms")), call);
        plant.core.scadaCoreInterface()->setAppPropertyManager(nullptr);
        for (const char* call : {"korvane.property('a')", "korvane.set_property('a', 1)"})
            QVERIFY2(plant.run(call).contains(text("RuntimeError: this system has no application properties")), call);
        QCOMPARE(plant.run("print(tags.read('@::a'))"), text("None"));
        plant.core.scadaCoreInterface()->setDataServiceInterface(nullptr);
        QCOMPARE(plant.run("print(tags.read('LT-1:PastMean'))"), text("None"));
        plant.core.scadaCoreInterface()->setScadaRuntime(nullptr);
        QVERIFY(plant.run("tags.read('LT-1')").contains(text("LookupError: there is no \"LT-1\"")));
        QCOMPARE(plant.run("print(tags.names(), tags.stations())"), text("[] []"));
    }

    void pagesThatAreNotOpenCantBeClosedOrZoomed()
    {
        Plant plant;
        plant.engine.setPageNames([] { return QStringList(text("other")); });
        QSignalSpy closed(&plant.engine, &ScriptEngine::closeRequested);
        QSignalSpy zoomed(&plant.engine, &ScriptEngine::zoomRequested);
        for (const char* call : {"pages.close('other')", "pages.zoom(2, 'other')", "pages.zoom_to_fit('other')"})
            QVERIFY2(plant.run(call).contains(text("LookupError: page \"other\" is not open")), call);
        QCOMPARE(plant.run("print(pages.current(), pages.is_open('other'))"), text("None False"));
        QCoreApplication::processEvents();
        QCOMPARE(closed.size() + zoomed.size(), 0);
    }

    void keysHaveNames_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("name");
        const auto row = [](int key, const char* name) { QTest::newRow(name) << key << text(name); };
        row(Qt::Key_A, "A");
        row(Qt::Key_Return, "Return");
        row(Qt::Key_Enter, "Enter");
        row(Qt::Key_Escape, "Esc");
        row(Qt::Key_F12, "F12");
        row(Qt::Key_PageUp, "PgUp");
        row(Qt::Key_Left, "Left");
        row(Qt::Key_Plus, "+");
        row(Qt::Key_Comma, ",");
        row(Qt::Key_Adiaeresis, "\xc3\x84");
    }
    void keysHaveNames()
    {
        QFETCH(int, key);
        QFETCH(QString, name);
        Plant plant;
        ScriptEvent event;
        event.key = key;
        plant.engine.setEvent(event);
        QCOMPARE(plant.run("print(event.key)"), name);
    }

    void buttonsHaveNames()
    {
        Plant plant;
        const auto named = [&plant](Qt::MouseButton button) {
            ScriptEvent event;
            event.button = button;
            plant.engine.setEvent(event);
            return plant.run("print(event.button)");
        };
        QCOMPARE(named(Qt::LeftButton), text("left"));
        QCOMPARE(named(Qt::RightButton), text("right"));
        QCOMPARE(named(Qt::MiddleButton), text("middle"));
        QCOMPARE(named(Qt::NoButton), text("None"));
        QCOMPARE(named(Qt::ExtraButton1), text("None"));
    }
};

QTEST_MAIN(tst_ScriptModule)
#include "tst_scriptmodule.moc"
