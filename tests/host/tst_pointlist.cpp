#include "host/runtime/pointlist.h"

#include "tests/support/temporaryfiles.h"

#include <QElapsedTimer>
#include <QtTest>

#include <array>
#include <cmath>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;

class tst_PointList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryColumn()
    {
        const auto list =
            read("\xEF\xBB\xBF# a comment\r\n"
                 "ID;Name;Kind;unit;description;display_name;station;low_low;low;high;high_high;hysteresis;"
                 "decimals;scale_low;scale_high;states;abnormal_state;stale_after;address\r\n"
                 "200001;P101.FLOW;analog;l/min;\"Flow; \"\"main\"\"\";Flow;Loop;-1,5;0;100;150.5;2,5;1;"
                 "-10;200;;;2,5;Volume Flow\r\n"
                 "\r\n"
                 "100001;V101;Digital;;;;;;;;;;;;;Closed|Open;0;;\r\n"
                 "7;RTU1;unit;;;;;;;;;;;;;Down|Up;1;;\r\n"
                 "7;LINE1;line;;;;;;;;;;;;;;;;\r\n");
        QVERIFY2(list, list ? "" : qPrintable(list.error()));
        QCOMPARE(list->problems, QStringList());
        QCOMPARE(list->objects.size(), std::size_t(4));

        const Object& flow = list->objects[0];
        QCOMPARE(flow.type, ScadaObjectType::AnalogPoint);
        QCOMPARE(flow.id, 200001);
        QCOMPARE(flow.name, QStringLiteral("P101.FLOW"));
        QCOMPARE(flow.unit, QStringLiteral("l/min"));
        QCOMPARE(flow.description, QStringLiteral("Flow; \"main\""));
        QCOMPARE(flow.displayName, QStringLiteral("Flow"));
        QCOMPARE(flow.station, QStringLiteral("Loop"));
        QCOMPARE(flow.lowLow, -1.5);
        QCOMPARE(flow.low, 0.0);
        QCOMPARE(flow.high, 100.0);
        QCOMPARE(flow.highHigh, 150.5);
        QCOMPARE(flow.hysteresis, 2.5);
        QCOMPARE(flow.decimals, 1);
        QCOMPARE(flow.scaleLow, -10.0);
        QCOMPARE(flow.scaleHigh, 200.0);
        QCOMPARE(flow.staleAfter.count(), qint64(2500));
        QCOMPARE(flow.address, QStringLiteral("Volume Flow"));

        const Object& valve = list->objects[1];
        QCOMPARE(valve.type, ScadaObjectType::DigitalPoint);
        QCOMPARE(valve.states, (QStringList{QStringLiteral("Closed"), QStringLiteral("Open")}));
        QCOMPARE(valve.abnormalState, 0);
        QVERIFY(std::isnan(valve.low) && std::isnan(valve.highHigh));
        QCOMPARE(valve.decimals, -1);
        QCOMPARE(valve.staleAfter.count(), qint64(0));
        QCOMPARE(list->objects[2].type, ScadaObjectType::RtuObject);
        QCOMPARE(list->objects[3].type, ScadaObjectType::ChannelObject);
        QCOMPARE(list->objects[3].abnormalState, -1);
    }

    void readsEveryColumnOfAlarms()
    {
        const auto list = read(
            "id;name;kind;low_low;low;high;high_high;states;abnormal_state;area;low_low_severity;low_severity;"
            "high_severity;high_high_severity;state_severity;rate_severity;quality_severity;communication_severity;"
            "rate_limit;on_delay;off_delay;latching;alarm_message\n"
            "200001;FLOW;analog;1;2;8;9;;;\xEB\x8F\x99;0;1;2;3;;5;6;7;0,5;1,5;0,25;1;\"Close; \"\"valve\"\" 3\"\n"
            "100001;PUMP;digital;;;;;Off|On|Tripped;2;East;;;;;9;;;;;;;0;\n"
            "7;RTU1;unit;;;;;Down|Up;0;;;;;;4;;8;9;;;;;\n"
            "8;LINE1;line;;;;;;;;;;;;;;0;0;;;;;\n"
            "200002;LEVEL;analog;1;;;9;;;;;;;;;;;;3;;;;\n");
        QVERIFY2(list, list ? "" : qPrintable(list.error()));
        QCOMPARE(list->problems, QStringList());
        QCOMPARE(list->objects.size(), std::size_t(5));
        using Severities = std::array<qint8, AlarmSetting::causeCount>;

        const Object& flow = list->objects[0];
        QCOMPARE(flow.area, QString(QChar(0xB3D9)));
        QCOMPARE(flow.alarm.severities, (Severities{0, 1, 2, 3, -1, 5, 6, 7}));
        QCOMPARE(flow.alarm.rateLimit, 0.5);
        QCOMPARE(flow.alarm.onDelay.count(), qint64(1500));
        QCOMPARE(flow.alarm.offDelay.count(), qint64(250));
        QVERIFY(flow.alarm.isLatching);
        QCOMPARE(flow.alarm.message, QStringLiteral("Close; \"valve\" 3"));
        QVERIFY(flow.alarm.hasAlarm(ScadaAlarm::Cause::LowLow));
        QVERIFY(!flow.alarm.hasAlarm(ScadaAlarm::Cause::StateChange));

        QCOMPARE(list->objects[1].alarm.severities, (Severities{-1, -1, -1, -1, 9, -1, -1, -1}));
        QVERIFY(!list->objects[1].alarm.isLatching);
        QCOMPARE(list->objects[1].area, QStringLiteral("East"));
        QCOMPARE(list->objects[2].alarm.severities, (Severities{-1, -1, -1, -1, 4, -1, 8, 9}));
        QCOMPARE(list->objects[3].alarm.severities, (Severities{-1, -1, -1, -1, -1, -1, 0, 0}));

        const Object& level = list->objects[4]; // limits that only mark the value
        QCOMPARE(level.alarm.severities, (Severities{-1, -1, -1, -1, -1, -1, -1, -1}));
        QCOMPARE(level.alarm.rateLimit, 3.0);
        QCOMPARE(level.alarm.onDelay.count(), qint64(0));
        QCOMPARE(level.alarm.offDelay.count(), qint64(0));
        QVERIFY(!level.alarm.isLatching);
        QVERIFY(level.alarm.message.isEmpty());
        QVERIFY(std::isnan(list->objects[3].alarm.rateLimit));
    }

    void readsEveryColumnOfCommands()
    {
        const auto list =
            read("id;name;kind;parent;control;control_role;control_confirm;control_reason;control_low;control_high;"
                 "control_step;feedback;feedback_tolerance;feedback_timeout;interlock\n"
                 "200001;SETPOINT;analog;RTU1;select;supervisor;second;1;-0,5;100;2,5;POSITION;0,25;1,5;"
                 "\"P101.RUNNING = 1; \xEB\x8F\x99\"\n"
                 "100001;PUMP;digital;12;Direct;Viewer;User;0;;;;;;;\n"
                 "200002;DENSITY;analog;;MANUAL;administrator;None;;5;5;0;;0;3600;\n"
                 "200003;FLOW;analog;;none;engineer;none;;;;;;;0;\n"
                 "7;RTU1;unit;LINE1;;;;;;;;;;;\n"
                 "8;LINE1;line;;;operator;;;;;;;;;\n");
        QVERIFY2(list, list ? "" : qPrintable(list.error()));
        QCOMPARE(list->problems, QStringList());
        QCOMPARE(list->objects.size(), std::size_t(6));

        QCOMPARE(list->objects[0].parent, QStringLiteral("RTU1"));
        const ControlSetting& setpoint = list->objects[0].control;
        QVERIFY(setpoint.kind == ControlSetting::Kind::SelectFirst);
        QVERIFY(setpoint.role == AccountRole::Supervisor);
        QVERIFY(setpoint.confirmation == ControlSetting::Confirmation::Second);
        QVERIFY(setpoint.isReasonNeeded);
        QCOMPARE(setpoint.low, -0.5);
        QCOMPARE(setpoint.high, 100.0);
        QCOMPARE(setpoint.step, 2.5);
        QCOMPARE(setpoint.feedback, QStringLiteral("POSITION"));
        QCOMPARE(setpoint.tolerance, 0.25);
        QCOMPARE(setpoint.timeout.count(), qint64(1500));
        QCOMPARE(setpoint.interlock, QStringLiteral("P101.RUNNING = 1; \uB3D9"));

        QCOMPARE(list->objects[1].parent, QStringLiteral("12")); // which a unit may be called, though no point
        const ControlSetting& pump = list->objects[1].control;
        QVERIFY(pump.kind == ControlSetting::Kind::Direct);
        QVERIFY(pump.role == AccountRole::Viewer);
        QVERIFY(pump.confirmation == ControlSetting::Confirmation::User);
        QVERIFY(!pump.isReasonNeeded);
        QVERIFY(std::isnan(pump.low) && std::isnan(pump.high));

        const ControlSetting& density = list->objects[2].control;
        QVERIFY(density.kind == ControlSetting::Kind::Manual);
        QVERIFY(density.role == AccountRole::Administrator);
        QVERIFY(density.confirmation == ControlSetting::Confirmation::None);
        QCOMPARE(density.low, 5.0);
        QCOMPARE(density.high, 5.0);
        QCOMPARE(density.timeout.count(), qint64(3600000));
        QVERIFY(list->objects[3].control.kind == ControlSetting::Kind::None);
        QVERIFY(list->objects[3].control.role == AccountRole::Engineer);

        const Object& unit = list->objects[4];
        QCOMPARE(unit.parent, QStringLiteral("LINE1"));
        QVERIFY(unit.control.isEqual(ControlSetting()));
        QVERIFY(unit.control.role == AccountRole::Operator);
        QVERIFY(list->objects[5].control.isEqual(ControlSetting()));
    }

    void threeColumnsAreEnough_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("commas") << QByteArray("id,name,kind\n200001,FLOW,analog\n");
        QTest::newRow("semicolons, no last line end") << QByteArray("id;name;kind\n200001;FLOW;analog");
        QTest::newRow("tabs in another order") << QByteArray("kind\tid\tname\nanalog\t200001\tFLOW\n");
        QTest::newRow("padded by a spreadsheet") << QByteArray("id,name,kind,,\n200001,FLOW,analog,,\n");
    }

    void threeColumnsAreEnough()
    {
        QFETCH(QByteArray, bytes);
        const auto list = read(bytes);
        QVERIFY(list);
        QCOMPARE(list->problems, QStringList());
        QCOMPARE(list->objects.size(), std::size_t(1));
        QCOMPARE(list->objects[0].name, QStringLiteral("FLOW"));
    }

    void aBadLineIsToldAndLeftOut_data()
    {
        QTest::addColumn<QByteArray>("columns");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("problem"); // behind the file's name
        const auto row = [](const char* name, const char* columns, const char* line, const char* problem) {
            QTest::newRow(name) << QByteArray(columns) << QByteArray(line) << QString::fromUtf8(problem);
        };
        row("a bad number", "high", "200002,P,analog,1o",
            ", line 3, column 4 (high), object \"P\": \"1o\" is no number");
        row("no number at all", "low", "200002,P,analog,nan",
            ", line 3, column 4 (low), object \"P\": \"nan\" is no number");
        row("a decimal comma where commas separate", "low", "200002,P,analog,\"1,5\"",
            ", line 3, column 4 (low), object \"P\": \"1,5\" is no number");
        row("a digital id of an analog point", "unit", "100001,P,analog,",
            ", line 3, column 1 (id), object \"P\": \"100001\" is no id of kind analog: 200001 to 2999999");
        row("an analog id above its range", "unit", "3000000,P,analog,",
            ", line 3, column 1 (id), object \"P\": \"3000000\" is no id of kind analog: 200001 to 2999999");
        row("a digital id above its range", "unit", "200000,P,digital,",
            ", line 3, column 1 (id), object \"P\": \"200000\" is no id of kind digital: 100001 to 199999");
        row("a unit without a number", "unit", "0,P,unit,",
            ", line 3, column 1 (id), object \"P\": \"0\" is no id of kind unit: from 1 on");
        row("no id", "unit", ",P,line,",
            ", line 3, column 1 (id), object \"P\": \"\" is no id of kind line: from 1 on");
        row("a broken id", "unit", "200002.5,P,analog,",
            ", line 3, column 1 (id), object \"P\": \"200002.5\" is no id of kind analog: 200001 to 2999999");
        row("an unknown kind", "unit", "200002,P,analogue,",
            ", line 3, column 3 (kind), object \"P\": \"analogue\" is no kind: digital, analog, unit or line");
        row("an id that is taken", "unit", "200001,P,analog,",
            ", line 3, column 1 (id), object \"P\": line 2 has this id already");
        row("a name that is taken", "unit", "200002,FIRST,analog,",
            ", line 3, column 2 (name), object \"FIRST\": line 2 has this name already");
        row("a name that a point of another kind has", "unit", "100001,FIRST,digital,",
            ", line 3, column 2 (name), object \"FIRST\": line 2 has this name already");
        row("no name", "unit", "200002,,analog,",
            ", line 3, column 2 (name): no tag could reach this name: it is empty, a number, \"#\" with an id, begins "
            "with \"@\" or ends in \":\" and a field");
        row("a number as a name", "unit", "200002,12,analog,",
            ", line 3, column 2 (name), object \"12\": no tag could reach this name: it is empty, a number, \"#\" with "
            "an "
            "id, begins with \"@\" or ends in \":\" and a field");
        row("low_low above low", "low_low,low", "200002,P,analog,2,1",
            ", line 3, object \"P\": low_low 2 must not be above low 1");
        row("low at high", "low,high", "200002,P,analog,1,1", ", line 3, object \"P\": low 1 must be below high 1");
        row("high above high_high", "high,high_high", "200002,P,analog,2,1",
            ", line 3, object \"P\": high 2 must not be above high_high 1");
        row("low_low at high_high, no others", "low_low,high_high", "200002,P,analog,1,1",
            ", line 3, object \"P\": low_low 1 must be below high_high 1");
        row("low_low at high without low", "low_low,high", "200002,P,analog,3,1",
            ", line 3, object \"P\": low_low 3 must be below high 1");
        row("low at high_high without high", "low,high_high", "200002,P,analog,3,1",
            ", line 3, object \"P\": low 3 must be below high_high 1");
        row("a scale upside down", "scale_low,scale_high", "200002,P,analog,3,1",
            ", line 3, object \"P\": scale_low 3 must not be above scale_high 1");
        row("negative hysteresis", "hysteresis", "200002,P,analog,-1",
            ", line 3, column 4 (hysteresis), object \"P\": the hysteresis is negative");
        row("too many decimals", "decimals", "200002,P,analog,16",
            ", line 3, column 4 (decimals), object \"P\": \"16\" is no whole number from 0 to 15");
        row("a state that is none", "states,abnormal_state", "100001,P,digital,Off|On,2",
            ", line 3, column 5 (abnormal_state), object \"P\": \"2\" is no whole number from 0 to 1");
        row("negative seconds", "stale_after", "200002,P,analog,-1",
            ", line 3, column 4 (stale_after), object \"P\": \"-1\" is not within 0 to 1000000000 seconds");
        row("a severity without the limit low_low", "low_low_severity,low,high,high_high", "200002,P,analog,5,1,2,3",
            ", line 3, column 4 (low_low_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity without the limit low", "low_severity,low_low,high,high_high", "200002,P,analog,5,1,2,3",
            ", line 3, column 4 (low_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity without the limit high", "high_severity,low_low,low,high_high", "200002,P,analog,5,1,2,3",
            ", line 3, column 4 (high_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity without the limit high_high", "high_high_severity,low_low,low,high", "200002,P,analog,5,1,2,3",
            ", line 3, column 4 (high_high_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity of the state of an analog point", "state_severity,abnormal_state", "200002,P,analog,5,1",
            ", line 3, column 4 (state_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity without an abnormal state", "state_severity", "100001,P,digital,5",
            ", line 3, column 4 (state_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity without a rate limit", "rate_severity", "200002,P,analog,5",
            ", line 3, column 4 (rate_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a severity of the rate of a digital point", "rate_severity,rate_limit", "100001,P,digital,5,1",
            ", line 3, column 4 (rate_severity), object \"P\": the object has no limit or abnormal state for this "
            "alarm");
        row("a low_low severity above 9", "low_low_severity", "200002,P,analog,10",
            ", line 3, column 4 (low_low_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a low severity above 9", "low_severity", "200002,P,analog,10",
            ", line 3, column 4 (low_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a high severity above 9", "high_severity", "200002,P,analog,10",
            ", line 3, column 4 (high_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a high_high severity above 9", "high_high_severity", "200002,P,analog,10",
            ", line 3, column 4 (high_high_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a state severity above 9", "state_severity", "200002,P,analog,10",
            ", line 3, column 4 (state_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a rate severity above 9", "rate_severity", "200002,P,analog,10",
            ", line 3, column 4 (rate_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a quality severity above 9", "quality_severity", "200002,P,analog,10",
            ", line 3, column 4 (quality_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a communication severity above 9", "communication_severity", "200002,P,analog,10",
            ", line 3, column 4 (communication_severity), object \"P\": \"10\" is no whole number from 0 to 9");
        row("a severity below 0", "quality_severity", "200002,P,analog,-1",
            ", line 3, column 4 (quality_severity), object \"P\": \"-1\" is no whole number from 0 to 9");
        row("a word as severity", "quality_severity", "200002,P,analog,high",
            ", line 3, column 4 (quality_severity), object \"P\": \"high\" is no whole number from 0 to 9");
        row("a rate limit of nothing", "rate_limit", "200002,P,analog,0",
            ", line 3, column 4 (rate_limit), object \"P\": the rate limit must be above 0");
        row("a negative rate limit", "rate_limit", "200002,P,analog,-1",
            ", line 3, column 4 (rate_limit), object \"P\": the rate limit must be above 0");
        row("a rate limit that is no number", "rate_limit", "200002,P,analog,fast",
            ", line 3, column 4 (rate_limit), object \"P\": \"fast\" is no number");
        row("a negative on delay", "on_delay", "200002,P,analog,-0.1",
            ", line 3, column 4 (on_delay), object \"P\": \"-0.1\" is not within 0 to 1000000000 seconds");
        row("an off delay that is no number", "off_delay", "200002,P,analog,soon",
            ", line 3, column 4 (off_delay), object \"P\": \"soon\" is no number");
        row("an off delay of a century", "off_delay", "200002,P,analog,3000000000",
            ", line 3, column 4 (off_delay), object \"P\": \"3000000000\" is not within 0 to 1000000000 seconds");
        row("latching twice", "latching", "200002,P,analog,2",
            ", line 3, column 4 (latching), object \"P\": \"2\" is no whole number from 0 to 1");
        row("latching by word", "latching", "200002,P,analog,yes",
            ", line 3, column 4 (latching), object \"P\": \"yes\" is no whole number from 0 to 1");
        row("an area that is no UTF-8", "area", "200002,P,analog,\xB0",
            ", line 3, column 4 (area), object \"P\": \"\xEF\xBF\xBD\" is not UTF-8");
        row("an alarm's message that is no UTF-8", "alarm_message", "200002,P,analog,\xB0",
            ", line 3, column 4 (alarm_message), object \"P\": \"\xEF\xBF\xBD\" is not UTF-8");
        row("a parent that no tag could reach", "parent", "200002,P,analog,#7",
            ", line 3, column 4 (parent), object \"P\": \"#7\" can be no unit's name");
        row("a unit's parent that no tag could reach", "parent", "2,P,unit,#12",
            ", line 3, column 4 (parent), object \"P\": \"#12\" can be no line's name");
        row("the parent of a line", "parent", "2,P,line,LINE1",
            ", line 3, column 4 (parent), object \"P\": a line belongs to nothing");
        row("a parent that is no UTF-8", "parent", "200002,P,analog,\xB0",
            ", line 3, column 4 (parent), object \"P\": \"\xEF\xBF\xBD\" is not UTF-8");
        row("an unknown control", "control", "200002,P,analog,selct",
            ", line 3, column 4 (control), object \"P\": \"selct\" is not one of none, direct, select, manual");
        row("a control by number", "control", "200002,P,analog,1",
            ", line 3, column 4 (control), object \"P\": \"1\" is not one of none, direct, select, manual");
        row("an unknown role", "control_role", "200002,P,analog,admin",
            ", line 3, column 4 (control_role), object \"P\": \"admin\" is not one of viewer, operator, supervisor, "
            "engineer, administrator");
        row("an unknown confirmation", "control_confirm", "200002,P,analog,third",
            ", line 3, column 4 (control_confirm), object \"P\": \"third\" is not one of none, user, second");
        row("a reason twice", "control_reason", "200002,P,analog,2",
            ", line 3, column 4 (control_reason), object \"P\": \"2\" is no whole number from 0 to 1");
        row("a lower bound that is no number", "control_low", "200002,P,analog,x",
            ", line 3, column 4 (control_low), object \"P\": \"x\" is no number");
        row("an upper bound that is no number", "control_high", "200002,P,analog,nan",
            ", line 3, column 4 (control_high), object \"P\": \"nan\" is no number");
        row("bounds upside down", "control_high,control_low", "200002,P,analog,1,1.5",
            ", line 3, column 5 (control_low), object \"P\": control_low 1.5 must not be above control_high 1");
        row("a negative step", "control_step", "200002,P,analog,-1",
            ", line 3, column 4 (control_step), object \"P\": \"-1\" is below 0");
        row("a step that is no number", "control_step", "200002,P,analog,inf",
            ", line 3, column 4 (control_step), object \"P\": \"inf\" is no number");
        row("a feedback that no tag could reach", "feedback", "200002,P,analog,12",
            ", line 3, column 4 (feedback), object \"P\": \"12\" can be no point's name");
        row("a feedback that is no UTF-8", "feedback", "200002,P,analog,\xB0",
            ", line 3, column 4 (feedback), object \"P\": \"\xEF\xBF\xBD\" is not UTF-8");
        row("a negative tolerance", "feedback_tolerance", "200002,P,analog,-0.5",
            ", line 3, column 4 (feedback_tolerance), object \"P\": \"-0.5\" is below 0");
        row("a negative timeout", "feedback_timeout", "200002,P,analog,-1",
            ", line 3, column 4 (feedback_timeout), object \"P\": \"-1\" is not within 0 to 3600 seconds");
        row("a timeout of more than an hour", "feedback_timeout", "200002,P,analog,3600.1",
            ", line 3, column 4 (feedback_timeout), object \"P\": \"3600.1\" is not within 0 to 3600 seconds");
        row("an interlock that is no UTF-8", "interlock", "200002,P,analog,\xB0",
            ", line 3, column 4 (interlock), object \"P\": \"\xEF\xBF\xBD\" is not UTF-8");
        row("a column too few", "unit", "200002,P,analog",
            ", line 3, object \"P\": the line has 3 columns, the header 4");
        row("a column too many", "unit", "200002,P,analog,bar,1",
            ", line 3, object \"P\": the line has 5 columns, the header 4");
        row("one field", "unit", "200002", ", line 3: the line has 1 columns, the header 4");
        row("no UTF-8", "unit",
            "200002,P,analog,\xB0"
            "C",
            ", line 3, column 4 (unit), object \"P\": \"\xEF\xBF\xBD"
            "C\" is not UTF-8");
        row("text behind a quote", "unit", "200002,\"P\"Q,analog,", ", line 3: text stands behind a closing quote");
    }

    void aBadLineIsToldAndLeftOut()
    {
        QFETCH(QByteArray, columns);
        QFETCH(QByteArray, line);
        QFETCH(QString, problem);
        const QByteArray none(columns.count(','), ',');
        const auto list = read("id,name,kind," + columns + "\n200001,FIRST,analog," + none + "\n" + line +
                               "\n200009,LAST,analog," + none + "\n");
        QVERIFY(list);
        QCOMPARE(list->problems, QStringList{m_files.path(QStringLiteral("points.csv")) + problem});
        QCOMPARE(list->objects.size(), std::size_t(2));
        QCOMPARE(list->objects[1].name, QStringLiteral("LAST"));
    }

    void limitsMayBeEqualWhereNothingLiesBetween()
    {
        const auto list = read("id,name,kind,low_low,low,high,high_high\n200001,P,analog,1,1,2,2\n");
        QVERIFY(list);
        QCOMPARE(list->problems, QStringList());
    }

    void aLineThatIsLeftOutTakesNeitherIdNorName()
    {
        const auto list = read("id,name,kind,low\n200001,P,analog,x\n200001,P,analog,1\n");
        QVERIFY(list);
        QCOMPARE(list->problems.size(), 1);
        QCOMPARE(list->objects.size(), std::size_t(1));
    }

    void pointsUnitsAndLinesShareNothing()
    {
        const auto list = read("id,name,kind\n200001,A,analog\n200001,A,unit\n200001,A,line\n");
        QVERIFY(list);
        QCOMPARE(list->problems, QStringList());
        QCOMPARE(list->objects.size(), std::size_t(3));
    }

    void columnsWithoutMeaningAreToldOnce()
    {
        const auto list = read("id,name,kind,colour,unit,unit\n200001,P,analog,red,bar,mbar\n200002,Q,analog,red,,\n");
        QVERIFY(list);
        const QString path = m_files.path(QStringLiteral("points.csv"));
        QCOMPARE(list->problems,
                 (QStringList{
                     path + QStringLiteral(
                                ", line 1, column 4 (colour): a list of points has no such column, it is ignored"),
                     path + QStringLiteral(", line 1, column 6 (unit): the column comes twice, this one is ignored")}));
        QCOMPARE(list->objects.size(), std::size_t(2));
        QCOMPARE(list->objects[0].unit, QStringLiteral("bar"));
    }

    void withoutAHeaderThereIsNoList_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("problem");
        QTest::newRow("an empty file") << QByteArray() << QStringLiteral(": has no header line");
        QTest::newRow("comments alone") << QByteArray("# id,name,kind\n\n") << QStringLiteral(": has no header line");
        QTest::newRow("no header") << QByteArray("200001,P,analog\n")
                                   << QStringLiteral(
                                          ", line 1: the header names no column \"id\"; needed are id, name and kind");
        QTest::newRow("a column missing")
            << QByteArray("id,name\n")
            << QStringLiteral(", line 1: the header names no column \"kind\"; needed are id, name and kind");
        QTest::newRow("a broken header") << QByteArray("\"id,name,kind\n")
                                         << QStringLiteral(", line 1: a quote is not closed");
    }

    void withoutAHeaderThereIsNoList()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, problem);
        const auto list = read(bytes);
        QVERIFY(!list);
        QCOMPARE(list.error(), m_files.path(QStringLiteral("points.csv")) + problem);
    }

    void refusesWhatIsNoFile()
    {
        const QString missing = m_files.path(QStringLiteral("missing.csv"));
        QCOMPARE(PointList::read(missing).error(), missing + QStringLiteral(": there is no such file"));
        const QString folder = m_files.path({});
        QCOMPARE(PointList::read(folder).error(), folder + QStringLiteral(": is no regular file"));
#ifdef Q_OS_UNIX
        const QString pipe = m_files.path(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        QCOMPARE(PointList::read(pipe).error(), pipe + QStringLiteral(": is no regular file"));
#endif
    }

    void theDatabaseTakesAHundredThousand()
    {
        QByteArray bytes = "id,name,kind,unit,description,display_name,station,low_low,low,high,high_high,hysteresis,"
                           "decimals,scale_low,scale_high,states,abnormal_state,stale_after,address\n";
        for (int i = 0; i < 100000; ++i) {
            bytes += QStringLiteral("%1,STATION_%2.POINT_%1,analog,bar,Pressure behind pump %2,Pressure,Station %2,-1,"
                                    "0,10.5,12.25,0.5,2,-5,20,,,10,column %1\n")
                         .arg(200001 + i)
                         .arg(i % 100)
                         .toUtf8();
        }
        QElapsedTimer timer;
        timer.start();
        const auto list = read(bytes);
        qInfo("read in %lld ms", timer.elapsed());
        QVERIFY(list);
        QCOMPARE(list->problems, QStringList());
        RuntimeDatabase database;
        for (const Object& object : list->objects)
            QVERIFY(database.add(object));
        QCOMPARE(database.count(ScadaObjectType::Point), std::size_t(100000));
    }

private:
    tl::expected<PointList::Result, QString> read(const QByteArray& bytes) const
    {
        return PointList::read(m_files.write(QStringLiteral("points.csv"), bytes));
    }

    TemporaryFiles m_files;
};

QTEST_APPLESS_MAIN(tst_PointList)
#include "tst_pointlist.moc"
