#include "host/control/controlrules.h"

#include "platform/data/valuemarks.h"
#include "tests/support/operatedplant.h"

#include <QtTest>

#include <limits>

using Command = ScadaOperationMessage::Operation;
using Kind = ControlSetting::Kind;
using Outcome = ScadaOperationMessage::Outcome;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey breaker = OperatedPlant::breaker;
constexpr ObjectKey level = OperatedPlant::level;
constexpr ObjectKey dose = OperatedPlant::dose;
constexpr ObjectKey flow = OperatedPlant::flow;
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// The number that would be sent, or the outcome's name.
QString checked(const OperatedPlant& plant, const ControlOrder& order, const QString& selectedBy = {})
{
    const ControlRules rules(plant.database, plant.users);
    const auto result = rules.check(order, {text("ann"), selectedBy});
    if (result)
        return QString::number(*result);
    return result.error().text.isEmpty() ? text("no text") : OperationNames::nameOf(result.error().outcome);
}

QString checked(const OperatedPlant& plant, Command operation, ObjectKey object, const QVariant& value = {})
{
    return checked(plant, {operation, object, value});
}

} // namespace

Q_DECLARE_METATYPE(ScadaOperationMessage::Operation)
Q_DECLARE_METATYPE(ObjectKey)
Q_DECLARE_METATYPE(AccountRole)

class tst_ControlRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsFitTheirObject_data()
    {
        QTest::addColumn<Command>("operation");
        QTest::addColumn<ObjectKey>("object");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("result");
        const auto row = [](const char* name, Command operation, ObjectKey object, const QVariant& value,
                            const char* result) {
            QTest::newRow(name) << operation << object << value << text(result);
        };
        row("operate a state", Command::Operate, pump, 1, "1");
        row("operate the other state", Command::Operate, pump, 0, "0");
        row("a state beyond the named ones", Command::Operate, pump, 2, "outOfLimits");
        row("a state below all", Command::Operate, pump, -1, "outOfLimits");
        row("half a state", Command::Operate, pump, 0.5, "outOfLimits");
        row("without names there are two states", Command::EnterValue, dose, 3, "3");
        row("a text that is a number", Command::Operate, pump, text("1"), "1");
        row("a text that is none", Command::Operate, pump, text("on"), "outOfLimits");
        row("yes is a state", Command::Operate, pump, true, "1");
        row("no value", Command::Operate, pump, {}, "outOfLimits");
        row("operate an analog point", Command::Operate, level, 12.5, "12.5");
        row("a setpoint", Command::SetPoint, level, 99.5, "99.5");
        row("a setpoint of a digital point", Command::SetPoint, pump, 1, "refused");
        row("the lowest", Command::SetPoint, level, 0, "0");
        row("the highest", Command::SetPoint, level, 100, "100");
        row("below the lowest", Command::SetPoint, level, -0.001, "outOfLimits");
        row("above the highest", Command::SetPoint, level, 100.001, "outOfLimits");
        row("no number at all", Command::SetPoint, level, noNumber, "outOfLimits");
        row("infinite", Command::SetPoint, level, std::numeric_limits<double>::infinity(), "outOfLimits");
        row("a step up", Command::Raise, level, {}, "55");
        row("a step down", Command::Lower, level, {}, "45");
        row("what a step up is sent with does not count", Command::Raise, level, 7, "55");
        row("a step of a point without steps", Command::Raise, dose, {}, "refused");
        row("a step of a digital point", Command::Lower, pump, {}, "refused");
        row("no commands at all", Command::Operate, flow, 1, "refused");
        row("a setpoint of a point that takes none", Command::SetPoint, flow, 1, "refused");
        row("a unit", Command::Operate, OperatedPlant::unit, 1, "refused");
        row("by hand", Command::EnterValue, dose, 3.5, "3.5");
        row("by hand where a source supplies it", Command::EnterValue, level, 3.5, "refused");
        row("a command to what is entered by hand", Command::SetPoint, dose, 3.5, "refused");
        row("selecting what is entered by hand", Command::Select, dose, {}, "refused");
        row("selecting", Command::Select, breaker, {}, "0");
        row("selecting what needs it not", Command::Select, pump, {}, "refused");
        row("without selecting", Command::Operate, breaker, 1, "notSelected");
        row("an unknown object", Command::Operate, {Korvane::ScadaObjectType::DigitalPoint, 199999}, 1, "refused");
    }
    void commandsFitTheirObject()
    {
        QFETCH(Command, operation);
        QFETCH(ObjectKey, object);
        QFETCH(QVariant, value);
        QFETCH(QString, result);
        OperatedPlant plant;
        plant.say(level, 50);
        QCOMPARE(checked(plant, operation, object, value), result);
    }

    void aPointWithoutBoundsTakesAnyNumber()
    {
        OperatedPlant plant(OperatedPlant::with(level, [](ControlSetting& setting) { setting.low = noNumber; }));
        QCOMPARE(checked(plant, Command::SetPoint, level, -1e9), text("-1e+09"));
        QCOMPARE(checked(plant, Command::SetPoint, level, 101), text("outOfLimits"));
    }

    void statesWithoutNamesAreTwo()
    {
        OperatedPlant plant(OperatedPlant::with(breaker, [](ControlSetting& setting) { setting.kind = Kind::Direct; }));
        QCOMPARE(checked(plant, Command::Operate, breaker, 1), text("1"));
        QCOMPARE(checked(plant, Command::Operate, breaker, 2), text("outOfLimits"));
    }

    void aStepStaysWithinTheBounds_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint32>("quality");
        QTest::addColumn<QString>("raised");
        QTest::addColumn<QString>("lowered");
        const auto row = [](const char* name, double value, qint32 quality, const char* raised, const char* lowered) {
            QTest::newRow(name) << value << quality << text(raised) << text(lowered);
        };
        row("to both ends", 95, 0, "100", "90");
        row("beyond the highest", 95.5, 0, "outOfLimits", "90.5");
        row("to the lowest", 5, 0, "10", "0");
        row("below the lowest", 4.5, 0, "9.5", "outOfLimits");
        row("a substituted value counts", 50, ValueMark::Substituted, "55", "45");
        row("not from an invalid value", 50, ValueMark::Invalid, "refused", "refused");
        row("not from a stale value", 50, ValueMark::Stale, "refused", "refused");
        row("not without communication", 50, ValueMark::CommunicationFailed, "refused", "refused");
    }
    void aStepStaysWithinTheBounds()
    {
        QFETCH(double, value);
        QFETCH(qint32, quality);
        QFETCH(QString, raised);
        QFETCH(QString, lowered);
        OperatedPlant plant;
        QCOMPARE(checked(plant, Command::Raise, level), text("refused")); // no value so far
        plant.say(level, value, quality);
        QCOMPARE(checked(plant, Command::Raise, level), raised);
        QCOMPARE(checked(plant, Command::Lower, level), lowered);
    }

    void whoMaySendIsAMatterOfRoleAndArea_data()
    {
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<AccountRole>("role");
        QTest::addColumn<bool>("may");
        QTest::newRow("nobody") << QByteArray() << AccountRole::Viewer << false;
        QTest::newRow("an operator of the area") << QByteArray("ann") << AccountRole::Operator << true;
        QTest::newRow("an operator of all areas") << QByteArray("bob") << AccountRole::Operator << true;
        QTest::newRow("an operator of another area") << QByteArray("sam") << AccountRole::Operator << false;
        QTest::newRow("a viewer") << QByteArray("vic") << AccountRole::Operator << false;
        QTest::newRow("a viewer, where that is enough") << QByteArray("vic") << AccountRole::Viewer << true;
        QTest::newRow("a supervisor") << QByteArray("sue") << AccountRole::Operator << true;
        QTest::newRow("an operator for a supervisor's command")
            << QByteArray("bob") << AccountRole::Supervisor << false;
        QTest::newRow("a supervisor for his command") << QByteArray("sue") << AccountRole::Supervisor << true;
        QTest::newRow("a supervisor for an engineer's") << QByteArray("sue") << AccountRole::Engineer << false;
    }
    void whoMaySendIsAMatterOfRoleAndArea()
    {
        QFETCH(QByteArray, user);
        QFETCH(AccountRole, role);
        QFETCH(bool, may);
        OperatedPlant plant(OperatedPlant::with(
            pump, [role](ControlSetting& setting) { setting.role = role; }, true));
        if (!user.isEmpty())
            plant.logOn(user);
        QCOMPARE(checked(plant, Command::Operate, pump, 1), may ? text("1") : text("notPermitted"));
        // What is no command has a role of its own.
        ControlOrder act{Command::Inhibit, pump};
        act.act = [](const ScadaOperationMessage&) { return tl::expected<void, QString>(); };
        act.role = role;
        QCOMPARE(checked(plant, act), may ? text("0") : text("notPermitted"));
    }

    void anActNeedsNothingThatACommandNeeds()
    {
        OperatedPlant plant;
        plant.database.setTagMarks(flow, ValueMark::ControlInhibited);
        ControlOrder act{Command::Inhibit, flow};
        act.act = [](const ScadaOperationMessage&) { return tl::expected<void, QString>(); };
        QCOMPARE(checked(plant, act), text("0"));
    }

    void aPageThatMayNotBeOpenedIsNotOperatedFrom()
    {
        OperatedPlant plant;
        ControlRules rules(plant.database, plant.users);
        ControlOrder order{Command::Operate, pump, 1, {}, text("secret")};
        QVERIFY(rules.check(order, {}));
        rules.setPageCheck([](const QString& page) { return page == text("open"); });
        QCOMPARE(rules.check(order, {}).error().outcome, Outcome::NotPermitted);
        QVERIFY(rules.check(order, {}).error().text.contains(text("secret")));
        order.page = text("open");
        QVERIFY(rules.check(order, {}));
        order.page.clear(); // from no page
        QVERIFY(rules.check(order, {}));
        order.page = text("secret");
        order.act = [](const ScadaOperationMessage&) { return tl::expected<void, QString>(); };
        QCOMPARE(rules.check(order, {}).error().outcome, Outcome::NotPermitted);
    }

    void onlyTheMarkForCommandsInhibitsThem()
    {
        OperatedPlant plant;
        plant.database.setTagMarks(pump,
                                   ValueMark::AlarmInhibited | ValueMark::ScanInhibited | ValueMark::InformationTag);
        QCOMPARE(checked(plant, Command::Operate, pump, 1), text("1"));
        plant.database.setTagMarks(pump, ValueMark::ControlInhibited);
        QCOMPARE(checked(plant, Command::Operate, pump, 1), text("inhibited"));
        plant.database.setTagMarks(breaker, ValueMark::ControlInhibited);
        QCOMPARE(checked(plant, Command::Select, breaker), text("inhibited")); // not even selected
    }

    void aSelectionIsNeededAndIsOnesOwn()
    {
        OperatedPlant plant;
        const ControlOrder select{Command::Select, breaker};
        const ControlOrder operate{Command::Operate, breaker, 1};
        QCOMPARE(checked(plant, select, text("ann")), text("0")); // anew
        QCOMPARE(checked(plant, select, text("bob")), text("refused"));
        QCOMPARE(checked(plant, operate, text("ann")), text("1"));
        QCOMPARE(checked(plant, operate, text("bob")), text("notSelected"));
        QCOMPARE(checked(plant, operate), text("notSelected"));
    }

    void aReasonIsMoreThanBlanks()
    {
        OperatedPlant plant(OperatedPlant::with(pump, [](ControlSetting& setting) { setting.isReasonNeeded = true; }));
        ControlOrder order{Command::Operate, pump, 1};
        QCOMPARE(checked(plant, order), text("notConfirmed"));
        order.reason = text(" \t\n");
        QCOMPARE(checked(plant, order), text("notConfirmed"));
        order.reason = text("x");
        QCOMPARE(checked(plant, order), text("1"));
    }

    void anInterlockHoldsOrNothingIsSent_data()
    {
        QTest::addColumn<QByteArray>("interlock");
        QTest::addColumn<QString>("result");
        QTest::newRow("none") << QByteArray() << text("1");
        QTest::newRow("holds") << QByteArray("LEVEL > 20") << text("1");
        QTest::newRow("fails") << QByteArray("LEVEL < 20") << text("interlocked");
        QTest::newRow("of a value that was never seen") << QByteArray("FLOW < 20") << text("interlocked");
        QTest::newRow("of an unknown tag") << QByteArray("NOWHERE < 20") << text("interlocked");
        QTest::newRow("can't be read") << QByteArray("LEVEL >") << text("interlocked");
    }
    void anInterlockHoldsOrNothingIsSent()
    {
        QFETCH(QByteArray, interlock);
        QFETCH(QString, result);
        OperatedPlant plant(OperatedPlant::with(
            pump, [interlock](ControlSetting& setting) { setting.interlock = QString::fromLatin1(interlock); }));
        plant.say(level, 50);
        QCOMPARE(checked(plant, Command::Operate, pump, 1), result);
    }

    // What an operator may not know is not told him by way of another refusal.
    void rightsAreAskedFirst()
    {
        OperatedPlant plant(OperatedPlant::with(
            pump,
            [](ControlSetting& setting) {
                setting.interlock = text("NOWHERE > 1");
                setting.isReasonNeeded = true;
            },
            true));
        plant.database.setTagMarks(pump, ValueMark::ControlInhibited);
        plant.logOn("vic");
        QCOMPARE(checked(plant, Command::Operate, pump, 99), text("notPermitted"));
        plant.logOn("ann");
        QCOMPARE(checked(plant, Command::Operate, pump, 99), text("inhibited"));
    }

    void settingsOfUnknownObjectsTakeNoCommands()
    {
        OperatedPlant plant;
        const ControlRules rules(plant.database, plant.users);
        QCOMPARE(rules.settingOf(breaker).kind, Kind::SelectFirst);
        QVERIFY(!rules.settingOf({Korvane::ScadaObjectType::DigitalPoint, 199999}).isControllable());
    }
};

QTEST_GUILESS_MAIN(tst_ControlRules)
#include "tst_controlrules.moc"
