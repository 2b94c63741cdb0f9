#include "host/checking/operationcheck.h"

#include <QtTest>

using Control = ControlSetting::Kind;
using Korvane::ScadaObjectType;
using Kind = Operation::Kind;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

RuntimeDatabase::Object object(ScadaObjectType type, Control control)
{
    RuntimeDatabase::Object made{type, 1, text("P")};
    made.control.kind = control;
    made.control.low = 0;
    made.control.high = 50;
    return made;
}

QString codes(const Operation& operation, const RuntimeDatabase::Object& object)
{
    QStringList found;
    for (const OperationCheck::Found& each : OperationCheck::ofOperation(operation, object))
        found.append(QLatin1String(each.code));
    return found.join(QLatin1Char(' '));
}

} // namespace

class tst_OperationCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsHaveToFit_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("isDigital");
        QTest::addColumn<int>("control");
        QTest::addColumn<double>("step");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* name, Kind kind, bool isDigital, Control control, double step,
                            const char* found) {
            QTest::newRow(name) << int(kind) << isDigital << int(control) << step << text(found);
        };
        row("a command to what takes none", Kind::Operate, true, Control::None, 0, "not-controllable");
        row("an entry into what takes no commands", Kind::EnterValue, false, Control::None, 0, "not-controllable");
        row("a switch", Kind::Operate, true, Control::Direct, 0, "");
        row("a setpoint", Kind::SetPoint, false, Control::Direct, 0, "");
        row("a setpoint of a digital point", Kind::SetPoint, true, Control::Direct, 0, "unfit-command");
        row("raise by a step", Kind::Raise, false, Control::Direct, 2, "");
        row("raise without a step", Kind::Raise, false, Control::Direct, 0, "unfit-command");
        row("lower without a step", Kind::Lower, false, Control::SelectFirst, 0, "unfit-command");
        row("lower a digital point", Kind::Lower, true, Control::Direct, 2, "unfit-command");
        row("a selection", Kind::Select, true, Control::SelectFirst, 0, "");
        row("a selection of what needs none", Kind::Select, true, Control::Direct, 0, "unfit-command");
        row("an entry by hand", Kind::EnterValue, false, Control::Manual, 0, "");
        row("an entry into what has a source", Kind::EnterValue, false, Control::Direct, 0, "unfit-command");
        row("a setpoint of what is entered by hand", Kind::SetPoint, false, Control::Manual, 0, "unfit-command");
    }
    void commandsHaveToFit()
    {
        QFETCH(const int, kind);
        QFETCH(const bool, isDigital);
        QFETCH(const int, control);
        QFETCH(const double, step);
        QFETCH(const QString, found);
        auto made = object(isDigital ? ScadaObjectType::DigitalPoint : ScadaObjectType::AnalogPoint,
                           static_cast<Control>(control));
        made.control.step = step;
        Operation operation;
        operation.kind = static_cast<Kind>(kind);
        QCOMPARE(codes(operation, made), found);
    }

    void valuesHaveToLieWithinTheControlLimits_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<bool>("isWithin");
        QTest::newRow("the limits themselves") << 0.0 << 50.0 << true;
        QTest::newRow("below") << -1.0 << 50.0 << false;
        QTest::newRow("above") << 0.0 << 50.5 << false;
    }
    void valuesHaveToLieWithinTheControlLimits()
    {
        QFETCH(const double, low);
        QFETCH(const double, high);
        QFETCH(const bool, isWithin);
        const QString wanted = isWithin ? QString() : text("beyond-limits");
        auto point = object(ScadaObjectType::AnalogPoint, Control::Direct);
        Operation entered;
        entered.kind = Kind::SetPoint;
        NumberInputParam number;
        number.minValue = low;
        number.maxValue = high;
        entered.input.setNumberInputParam(number);
        QCOMPARE(codes(entered, point), wanted);
        Operation chosen;
        chosen.kind = Kind::SetPoint;
        EnumInputParam choice;
        choice.enumValues = {{text("low"), low}, {text("high"), high}};
        chosen.input.setEnumInputParam(choice);
        QCOMPARE(codes(chosen, point), wanted);
        Operation fixed;
        fixed.kind = Kind::SetPoint;
        fixed.value = low < 0 ? low : high;
        QCOMPARE(codes(fixed, point), wanted);
        point.control.low = point.control.high = qQNaN();
        QCOMPARE(codes(entered, point), QString());
        QCOMPARE(codes(fixed, point), QString());
    }

    void anythingInTheWayIsAGuard()
    {
        auto point = object(ScadaObjectType::AnalogPoint, Control::Direct);
        QVERIFY(OperationCheck::isUnguarded(point));
        auto guarded = point;
        guarded.control.role = AccountRole::Supervisor;
        QVERIFY(!OperationCheck::isUnguarded(guarded));
        guarded = point;
        guarded.control.confirmation = ControlSetting::Confirmation::User;
        QVERIFY(!OperationCheck::isUnguarded(guarded));
        guarded = point;
        guarded.control.interlock = text("A > 1");
        QVERIFY(!OperationCheck::isUnguarded(guarded));
        QVERIFY(!OperationCheck::isUnguarded(object(ScadaObjectType::AnalogPoint, Control::None)));
    }
};

QTEST_GUILESS_MAIN(tst_OperationCheck)
#include "tst_operationcheck.moc"
