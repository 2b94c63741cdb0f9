#include "platform/data/valuemarks.h"
#include "tests/support/operatedplant.h"

#include <QtTest>

using Confirmation = ControlSetting::Confirmation;
using Command = ControlPath::Operation;
using Outcome = ControlPath::Outcome;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey level = OperatedPlant::level;
constexpr ObjectKey flow = OperatedPlant::flow;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// What happens while the operator is asked.
using Happening = std::function<void(OperatedPlant&)>;

} // namespace

Q_DECLARE_METATYPE(Happening)
Q_DECLARE_METATYPE(ScadaOperationMessage::Outcome)

class tst_ControlConfirmation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The operator

    void withoutAConfirmerNobodyConfirms()
    {
        OperatedPlant plant(OperatedPlant::with(
            pump, [](ControlSetting& setting) { setting.confirmation = Confirmation::User; }, false));
        plant.path.setConfirmer(nullptr);
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, pump, 1)), Outcome::NotConfirmed);
        QVERIFY(plant.source->written.empty());
    }

    void withoutSecurityTheOperatorsYesIsEnough()
    {
        OperatedPlant plant(OperatedPlant::with(
            pump, [](ControlSetting& setting) { setting.confirmation = Confirmation::Second; }, false));
        const quint32 refused = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(refused), Outcome::NotConfirmed);
        plant.confirmer.answer = [](const ScadaOperationMessage&) { return true; };
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, pump, 1)), Outcome::Sent);
    }

    void aYesIsBelievedWithThePasswordOnly_data()
    {
        QTest::addColumn<QString>("given"); // whose right password is given meanwhile; "wrong" for a wrong one
        QTest::addColumn<bool>("before");
        QTest::addColumn<bool>("yes");
        QTest::addColumn<Outcome>("outcome");
        QTest::newRow("his own") << text("ann") << false << true << Outcome::Sent;
        QTest::newRow("none") << QString() << false << true << Outcome::NotConfirmed;
        QTest::newRow("a wrong one") << text("wrong") << false << true << Outcome::NotConfirmed;
        QTest::newRow("somebody else's") << text("bob") << false << true << Outcome::NotConfirmed;
        QTest::newRow("his own, before he was asked") << text("ann") << true << true << Outcome::NotConfirmed;
        QTest::newRow("his own, and he said no") << text("ann") << false << false << Outcome::NotConfirmed;
    }
    void aYesIsBelievedWithThePasswordOnly()
    {
        QFETCH(QString, given);
        QFETCH(bool, before);
        QFETCH(bool, yes);
        QFETCH(Outcome, outcome);
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User));
        plant.logOn("ann");
        const auto give = [&] {
            if (given == text("wrong"))
                plant.givePassword("ann", text("wrong password"));
            else if (!given.isEmpty())
                plant.givePassword(given.toLatin1());
        };
        if (before)
            give();
        plant.confirmer.answer = [&](const ScadaOperationMessage&) {
            if (!before)
                give();
            return yes;
        };
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(id), outcome);
        QCOMPARE(plant.source->written.size(), std::size_t(outcome == Outcome::Sent ? 1 : 0));
    }

    void onePasswordConfirmsOneRequest()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User, level));
        plant.logOn("ann");
        quint32 inner = 0;
        plant.confirmer.answer = [&](const ScadaOperationMessage& request) {
            if (request.value == QVariant(1)) { // while this one is asked, another request is made and asked
                inner = plant.order(Command::SetPoint, level, 2);
                return true; // the password was for the other one
            }
            return plant.givePassword("ann");
        };
        const quint32 outer = plant.order(Command::SetPoint, level, 1);
        QCOMPARE(plant.outcomeOf(inner), Outcome::Sent);
        QCOMPARE(plant.outcomeOf(outer), Outcome::NotConfirmed);
    }

    void aQuestionWaitsForTheOneBefore()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User, level));
        plant.logOn("ann");
        quint32 later = 0;
        QList<quint32> askedMeanwhile;
        plant.confirmer.answer = [&](const ScadaOperationMessage& request) {
            if (request.value != QVariant(1))
                return true; // by the password that was given for the other one
            later = plant.order(Command::SetPoint, level, 2);
            askedMeanwhile = plant.confirmer.asked;
            return plant.givePassword("ann");
        };
        const quint32 first = plant.order(Command::SetPoint, level, 1);
        QCOMPARE(askedMeanwhile, QList<quint32>{first});
        QCOMPARE(plant.confirmer.asked, (QList<quint32>{first, later}));
        QCOMPARE(plant.outcomeOf(first), Outcome::Sent);
        QCOMPARE(plant.outcomeOf(later), Outcome::NotConfirmed);
        QCOMPARE(plant.source->written.size(), std::size_t(1));
        QCOMPARE(plant.source->written[0].value, 1.0);
    }

    void whatChangesMeanwhileIsSeen_data()
    {
        QTest::addColumn<Happening>("happening");
        QTest::addColumn<Outcome>("outcome");
        const auto row = [](const char* name, const Happening& happening, Outcome outcome) {
            QTest::newRow(name) << happening << outcome;
        };
        row(
            "nothing", [](OperatedPlant&) {}, Outcome::Sent);
        row(
            "another user", [](OperatedPlant& plant) { plant.logOn("bob"); }, Outcome::NotPermitted);
        row(
            "nobody is logged on", [](OperatedPlant& plant) { plant.users.logOff(); }, Outcome::NotPermitted);
        row(
            "commands are inhibited",
            [](OperatedPlant& plant) { plant.database.setTagMarks(level, ValueMark::ControlInhibited); },
            Outcome::Inhibited);
        row(
            "the interlock", [](OperatedPlant& plant) { plant.say(flow, 99); }, Outcome::Interlocked);
        row(
            "the value, so that a step leads beyond the limit", [](OperatedPlant& plant) { plant.say(level, 96); },
            Outcome::OutOfLimits);
        row(
            "the value is gone", [](OperatedPlant& plant) { plant.say(level, 50, ValueMark::Invalid); },
            Outcome::Refused);
        row(
            "the session has ended", [](OperatedPlant& plant) { plant.manager.endSession(); }, Outcome::Requested);
    }
    void whatChangesMeanwhileIsSeen()
    {
        QFETCH(Happening, happening);
        QFETCH(Outcome, outcome);
        OperatedPlant plant(OperatedPlant::with(
            level,
            [](ControlSetting& setting) {
                setting.confirmation = Confirmation::User;
                setting.interlock = text("FLOW < 50");
            },
            true));
        plant.logOn("ann");
        plant.say(level, 50);
        plant.say(flow, 10);
        plant.confirmer.answer = [&](const ScadaOperationMessage&) {
            const bool isRight = plant.givePassword("ann");
            happening(plant);
            return isRight;
        };
        const quint32 id = plant.order(Command::Raise, level);
        QCOMPARE(plant.outcomeOf(id), outcome); // one that is forgotten reads as requested
        QCOMPARE(plant.source->written.size(), std::size_t(outcome == Outcome::Sent ? 1 : 0));
    }

    void aStepIsTakenFromTheValueThatStandsWhenItIsSent()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User, level));
        plant.logOn("ann");
        plant.say(level, 50);
        plant.confirmer.answer = [&](const ScadaOperationMessage&) {
            plant.say(level, 60);
            return plant.givePassword("ann");
        };
        const quint32 id = plant.order(Command::Lower, level);
        QCOMPARE(plant.source->written[0].value, 55.0);
        QCOMPARE(plant.path.request(id).value, QVariant(55.0));
    }

    // The second person

    void aSecondPersonConfirms()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.confirmer.askedSecond, QList<quint32>{id});
        QVERIFY(plant.source->written.empty());
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.path.confirm(id, text("bob")));
        QVERIFY(plant.source->written.empty()); // not before confirm() has returned
        QVERIFY(!plant.path.confirm(id, text("bob")));
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        QCOMPARE(plant.path.request(id).secondUser, text("bob"));
        const auto lines = plant.audit.read(OperatedPlant::utc(0), OperatedPlant::utc(plant.nowMs), 1);
        QCOMPARE(lines->first().secondUser, text("bob"));
        QCOMPARE(lines->first().user, text("ann"));
    }

    void theWrongSecondPersonIsRefused_data()
    {
        QTest::addColumn<QByteArray>("user");
        QTest::newRow("the operator himself") << QByteArray("ann");
        QTest::newRow("a viewer") << QByteArray("vic");
        QTest::newRow("an operator of another area") << QByteArray("sam");
        QTest::newRow("nobody") << QByteArray();
        QTest::newRow("no account") << QByteArray("eve");
    }
    void theWrongSecondPersonIsRefused()
    {
        QFETCH(QByteArray, user);
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.givePassword(user);
        QVERIFY(!plant.path.confirm(id, QString::fromLatin1(user)));
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Requested); // goes on waiting
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.path.confirm(id, text("bob")));
    }

    void aSecondPersonsPasswordCountsOnceAndFromThenOn()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second, level));
        plant.logOn("ann");
        plant.confirmer.answer = [&plant](const ScadaOperationMessage&) {
            return plant.givePassword("ann") && plant.givePassword("bob");
        };
        const quint32 first = plant.order(Command::SetPoint, level, 1);
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 second = plant.order(Command::SetPoint, level, 2);
        QVERIFY(!plant.path.confirm(first, text("bob"))); // he gave it before it was his turn
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(!plant.path.confirm(first + 7, text("bob")));
        QVERIFY(plant.path.confirm(first, text("bob")));
        QVERIFY(!plant.path.confirm(second, text("bob"))); // one password, one confirmation
        OperatedPlant::settle();
        QCOMPARE(plant.source->written.size(), std::size_t(1));
        QCOMPARE(plant.source->written[0].requestId, first);
    }

    void everyPasswordStandsForItsOwnUser()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second, level));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 first = plant.order(Command::SetPoint, level, 1);
        const quint32 second = plant.order(Command::SetPoint, level, 2);
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.givePassword("sue"));
        QVERIFY(plant.path.confirm(second, text("sue")));
        QVERIFY(plant.path.confirm(first, text("bob"))); // hers has not used up his
    }

    void aSecondPersonHasTwoMinutes()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.pass(119999);
        QCOMPARE(plant.outcomeOf(id), Outcome::Requested);
        plant.pass(1);
        QCOMPARE(plant.outcomeOf(id), Outcome::NotConfirmed);
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(!plant.path.confirm(id, text("bob")));
        QVERIFY(plant.source->written.empty());
    }

    void theChecksAreMadeAgainBehindTheSecondPerson()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.path.confirm(id, text("bob")));
        plant.database.setTagMarks(pump, ValueMark::ControlInhibited);
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Inhibited);
        QVERIFY(plant.source->written.empty());
    }

    // Whatever a script or another part of the program does, without a password nothing is sent.
    void nothingLeadsAroundTheSecondPerson()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        for (const char* name : {"bob", "sue", "ann", "vic"}) {
            QVERIFY(!plant.manager.confirm(id, text(name)));
            QVERIFY(!plant.givePassword(name, text("guessed")));
            QVERIFY(!plant.manager.confirm(id, text(name)));
        }
        plant.source->answer(id, {});
        QCoreApplication::postEvent(&plant.path, new QEvent(QEvent::User));
        OperatedPlant::settle();
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Requested);
        QVERIFY(plant.source->written.empty());
    }
};

QTEST_GUILESS_MAIN(tst_ControlConfirmation)
#include "tst_controlconfirmation.moc"
