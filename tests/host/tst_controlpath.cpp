#include "host/control/commandgate.h"
#include "host/sources/manualsource.h"
#include "host/sources/recordingsource.h"
#include "host/sources/simulationsource.h"
#include "host/sources/streamsource.h"
#include "platform/data/valuemarks.h"
#include "tests/support/operatedplant.h"

#include <QDirIterator>
#include <QtTest>

#include <type_traits>

using Confirmation = ControlSetting::Confirmation;
using Command = ControlPath::Operation;
using Outcome = ControlPath::Outcome;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey breaker = OperatedPlant::breaker;
constexpr ObjectKey level = OperatedPlant::level;
constexpr ObjectKey flow = OperatedPlant::flow;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

template <typename Source, typename = void>
struct IsWritable : std::false_type
{
};
template <typename Source>
struct IsWritable<Source, std::void_t<decltype(std::declval<Source&>().write(ValueSource::Command()))>> : std::true_type
{
};

/// A way to an end: what is done, and the request it is done with.
struct Way
{
    OperatedPlant::Setup setup = {};
    std::function<quint32(OperatedPlant&)> go = {};
};

} // namespace

Q_DECLARE_METATYPE(Way)
Q_DECLARE_METATYPE(ScadaOperationMessage::Outcome)

class tst_ControlPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCommandIsSentAndEndsWithItsFeedback()
    {
        OperatedPlant plant;
        plant.say(pump, 0);
        const quint32 id = plant.path.begin({Command::Operate, pump, 1, text("inspection")});
        QCOMPARE(id, quint32(1));
        QCOMPARE(plant.told, QStringList()); // nothing before begin() has returned
        QVERIFY(plant.source->written.empty());
        QCOMPARE(plant.path.pending().size(), 1);
        OperatedPlant::settle();
        QCOMPARE(plant.told, (QStringList{text("requested 1"), text("sent 1")}));
        QCOMPARE(plant.source->written.size(), std::size_t(1));
        QCOMPARE(plant.source->written[0].requestId, id);
        QCOMPARE(plant.source->written[0].object, pump);
        QCOMPARE(plant.source->written[0].value, 1.0);
        plant.source->answer(id, {});
        plant.pass(1000);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent); // taken is not done
        plant.say(pump, 1);
        QCOMPARE(plant.told.last(), text("done 1"));
        QVERIFY(plant.path.pending().isEmpty());
        QCOMPARE(plant.auditOf(id), text("sent done"));

        const ScadaOperationMessage message = plant.path.request(id);
        QCOMPARE(message.operation, Command::Operate);
        QCOMPARE(message.tag, text("PUMP"));
        QCOMPARE(message.user, plant.path.user());
        QCOMPARE(message.reason, text("inspection"));
        QCOMPARE(message.value, QVariant(1.0));
        QCOMPARE(message.before, QVariant(0));
        QCOMPARE(message.time, OperatedPlant::utc(OperatedPlant::begin + 1000));
    }

    void anEndIsReached_data()
    {
        QTest::addColumn<Way>("way");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<bool>("isWritten");
        const auto row = [](const char* name, const Way& way, Outcome outcome, bool isWritten) {
            QTest::newRow(name) << way << outcome << isWritten;
        };
        const auto operate = [](OperatedPlant& plant) { return plant.order(Command::Operate, pump, 1); };
        row("nobody is logged on", {{true, {}, {}}, operate}, Outcome::NotPermitted, false);
        row("commands are inhibited",
            {{},
             [operate](OperatedPlant& plant) {
                 plant.database.setTagMarks(pump, ValueMark::ControlInhibited);
                 return operate(plant);
             }},
            Outcome::Inhibited, false);
        const auto interlocked = [](ControlSetting& setting) { setting.interlock = text("LEVEL > 20"); };
        row("the interlock does not hold", {OperatedPlant::with(pump, interlocked), operate}, Outcome::Interlocked,
            false);
        const auto reasoned = [](ControlSetting& setting) { setting.isReasonNeeded = true; };
        row("no reason is given", {OperatedPlant::with(pump, reasoned), operate}, Outcome::NotConfirmed, false);
        row("it was not selected", {{}, [](OperatedPlant& plant) { return plant.order(Command::Operate, breaker, 1); }},
            Outcome::NotSelected, false);
        row("a state that there is not",
            {{}, [](OperatedPlant& plant) { return plant.order(Command::Operate, pump, 2); }}, Outcome::OutOfLimits,
            false);
        row("it takes no commands", {{}, [](OperatedPlant& plant) { return plant.order(Command::SetPoint, flow, 2); }},
            Outcome::Refused, false);
        row("its source takes none",
            {{},
             [operate](OperatedPlant& plant) {
                 plant.source->takesAny = false;
                 return operate(plant);
             }},
            Outcome::Refused, false);
        row("its feedback is not known",
            {OperatedPlant::with(pump, [](ControlSetting& setting) { setting.feedback = text("NOWHERE"); }), operate},
            Outcome::Refused, false);
        row("the source refuses before write() has returned",
            {{},
             [operate](OperatedPlant& plant) {
                 plant.source->refusal = text("the valve is stuck");
                 return operate(plant);
             }},
            Outcome::Refused, true);
        row("the source refuses later",
            {{},
             [operate](OperatedPlant& plant) {
                 const quint32 id = operate(plant);
                 plant.pass(2000);
                 plant.source->answer(id, text("the valve is stuck"));
                 return id;
             }},
            Outcome::Refused, true);
        row("no feedback comes",
            {{},
             [operate](OperatedPlant& plant) {
                 const quint32 id = operate(plant);
                 plant.pass(10000);
                 return id;
             }},
            Outcome::TimedOut, true);
        row("it is done",
            {{},
             [operate](OperatedPlant& plant) {
                 const quint32 id = operate(plant);
                 plant.say(pump, 1);
                 return id;
             }},
            Outcome::Done, true);
    }
    void anEndIsReached()
    {
        QFETCH(Way, way);
        QFETCH(Outcome, outcome);
        QFETCH(bool, isWritten);
        OperatedPlant plant(way.setup);
        const quint32 id = way.go(plant);
        QCOMPARE(plant.outcomeOf(id), outcome);
        QCOMPARE(plant.source->written.empty(), !isWritten);
        QCOMPARE(plant.told.count(QStringLiteral("%1 %2").arg(OperationNames::nameOf(outcome)).arg(id)), 1);
        QCOMPARE(plant.path.request(id).text.isEmpty(), outcome == Outcome::Done); // says why
        QCOMPARE(plant.auditOf(id), (isWritten ? text("sent ") : QString()) + OperationNames::nameOf(outcome));
        plant.source->answer(id, text("too late"));
        plant.say(pump, 1);
        plant.pass(60000);
        QCOMPARE(plant.outcomeOf(id), outcome); // an end is an end
    }

    void anUnknownObjectMakesNoRequest()
    {
        OperatedPlant plant;
        QCOMPARE(plant.path.begin({Command::Operate, {Korvane::ScadaObjectType::DigitalPoint, 199999}, 1}), quint32(0));
        OperatedPlant::settle();
        QCOMPARE(plant.told, QStringList());
        QCOMPARE(plant.path.request(0).requestId, quint32(0));
        QCOMPARE(plant.path.request(17).requestId, quint32(0));
    }

    // Cancelling

    void whatIsCancelledAtOnceIsNeverSent()
    {
        OperatedPlant plant;
        const quint32 id = plant.path.begin({Command::Operate, pump, 1});
        QVERIFY(plant.path.cancel(id));
        QCOMPARE(plant.told, QStringList()); // its end comes behind cancel()
        QVERIFY(!plant.path.cancel(id));
        OperatedPlant::settle();
        QVERIFY(plant.source->written.empty());
        QCOMPARE(plant.told, QStringList{text("cancelled 1")});
        QCOMPARE(plant.auditOf(id), text("cancelled"));
    }

    void cancelledWhileTheOperatorIsAsked()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User));
        plant.logOn("ann");
        plant.confirmer.answer = [&plant](const ScadaOperationMessage& request) {
            return plant.path.cancel(request.requestId) && plant.givePassword("ann");
        };
        const quint32 id = plant.order(Command::Operate, pump, 1);
        OperatedPlant::settle();
        QCOMPARE(plant.confirmer.asked, QList<quint32>{id});
        QVERIFY(plant.source->written.empty());
        QCOMPARE(plant.outcomeOf(id), Outcome::Cancelled);
    }

    void cancelledAndEndedWhileTheOperatorIsAsked()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::User));
        plant.logOn("ann");
        plant.confirmer.answer = [&plant](const ScadaOperationMessage& request) {
            const bool isCancelled = plant.path.cancel(request.requestId);
            OperatedPlant::settle(); // the request is gone before the answer comes
            return isCancelled && plant.givePassword("ann");
        };
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QVERIFY(plant.source->written.empty());
        QCOMPARE(plant.outcomeOf(id), Outcome::Cancelled);
        QCOMPARE(plant.auditOf(id), text("cancelled"));
    }

    void cancelledWhileASecondPersonIsAwaited()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QVERIFY(plant.path.cancel(id));
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(!plant.path.confirm(id, text("bob"))); // cancelled, although its end has not come yet
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Cancelled);
        QVERIFY(plant.source->written.empty());
    }

    void cancelledBehindTheSecondPersonsYes()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.path.confirm(id, text("bob")));
        QVERIFY(plant.path.cancel(id));
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Cancelled);
        QVERIFY(plant.source->written.empty());
    }

    void whatWasSentOrHasEndedCantBeCancelled()
    {
        OperatedPlant plant;
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QVERIFY(!plant.path.cancel(id));
        plant.say(pump, 1);
        QVERIFY(!plant.path.cancel(id));
        QVERIFY(!plant.path.cancel(99));
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
    }

    void aRequestIsCancelledByItsOwnerOnly()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.logOn("bob");
        QVERIFY(!plant.path.cancel(id));
        plant.logOn("ann");
        QVERIFY(plant.path.cancel(id));
    }

    // Selecting

    void aSelectionIsGoodForOneCommand()
    {
        OperatedPlant plant;
        const quint32 selecting = plant.order(Command::Select, breaker);
        QCOMPARE(plant.outcomeOf(selecting), Outcome::Done);
        QCOMPARE(plant.path.selectedBy(breaker), plant.path.user());
        QVERIFY(!plant.path.user().isEmpty());
        QCOMPARE(plant.path.selectedUntil(breaker), OperatedPlant::utc(OperatedPlant::begin + 30000));
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 7)), Outcome::OutOfLimits);
        const quint32 id = plant.order(Command::Operate, breaker, 1); // what was refused has not used it up
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        QVERIFY(plant.path.selectedBy(breaker).isEmpty());
        QVERIFY(!plant.path.selectedUntil(breaker).isValid());
        plant.say(breaker, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 0)), Outcome::NotSelected);
    }

    void aSelectionRunsOut()
    {
        OperatedPlant plant;
        plant.order(Command::Select, breaker);
        plant.pass(29999);
        QVERIFY(!plant.path.selectedBy(breaker).isEmpty());
        plant.pass(1);
        QVERIFY(plant.path.selectedBy(breaker).isEmpty());
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 1)), Outcome::NotSelected);
        plant.order(Command::Select, breaker);
        plant.pass(20000);
        plant.order(Command::Select, breaker); // anew
        plant.pass(20000);
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 1)), Outcome::Sent);
    }

    void aSelectionIsItsOwners()
    {
        OperatedPlant plant({true, {}, {}});
        plant.logOn("ann");
        const quint32 selecting = plant.order(Command::Select, breaker);
        plant.logOn("bob");
        const quint32 selectingToo = plant.order(Command::Select, breaker);
        QCOMPARE(plant.outcomeOf(selectingToo), Outcome::Refused);
        QVERIFY(plant.path.request(selectingToo).text.contains(text("ann")));
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 1)), Outcome::NotSelected);
        QVERIFY(!plant.path.cancel(selecting));
        QCOMPARE(plant.path.selectedBy(breaker), text("ann"));
        plant.logOn("ann");
        QVERIFY(plant.path.cancel(selecting));
        QVERIFY(!plant.path.cancel(selecting));
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, breaker, 1)), Outcome::NotSelected);
    }

    void withoutAnyNameOfTheUserASelectionIsStillSomebodys()
    {
        const QByteArray before = qgetenv("USER");
        qunsetenv("USER");
        OperatedPlant plant;
        plant.order(Command::Select, breaker);
        const Outcome outcome = plant.outcomeOf(plant.order(Command::Operate, breaker, 1));
        qputenv("USER", before);
        QCOMPARE(outcome, Outcome::Sent);
    }

    void oneCommandAtATimeToAnObject()
    {
        OperatedPlant plant;
        const quint32 first = plant.order(Command::Operate, pump, 1);
        const quint32 second = plant.order(Command::Operate, pump, 0);
        const quint32 elsewhere = plant.order(Command::SetPoint, level, 5);
        QCOMPARE(plant.outcomeOf(first), Outcome::Sent);
        QCOMPARE(plant.outcomeOf(second), Outcome::Refused);
        QCOMPARE(plant.outcomeOf(elsewhere), Outcome::Sent);
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, pump, 0)), Outcome::Sent);
    }

    // Feedback

    void feedbackIsTheValueThatTheSourceSaysAfterTheCommand()
    {
        OperatedPlant plant(OperatedPlant::with(level, [](ControlSetting& setting) { setting.tolerance = 0.5; }));
        plant.say(level, 50);
        plant.pass(100);
        const quint32 id = plant.order(Command::SetPoint, level, 50);
        plant.pass(10);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent); // it stood there before
        plant.say(level, 50.75);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent); // too far away
        plant.say(level, 50.25, ValueMark::Invalid);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(level, 50.25, ValueMark::Stale);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(level, 50.25, ValueMark::CommunicationFailed);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(level, 49.5);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
    }

    void anOldSampleIsNoFeedback()
    {
        OperatedPlant plant;
        plant.pass(1000);
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.source->deliver({{pump, plant.nowMs - 1, 1, 0}}); // was measured before
        plant.data.tick();
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
    }

    void anotherPointMayBeTheFeedback()
    {
        OperatedPlant plant(OperatedPlant::with(pump, [](ControlSetting& setting) {
            setting.feedback = text("FLOW");
            setting.tolerance = 0.25;
        }));
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(flow, 1.25);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
    }

    void whatWasPutThereByHandIsNoFeedback()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        const quint32 id = plant.order(Command::SetPoint, level, 60);
        plant.pass(10);
        QVERIFY(plant.changes.substitute(level, 60, {}));
        plant.pass(10);
        QCOMPARE(plant.valueOf(level), QVariant(60.0));
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.pass(10000);
        QCOMPARE(plant.outcomeOf(id), Outcome::TimedOut);
    }

    void theTimeForFeedbackIsThePointsOrTheSystems()
    {
        OperatedPlant plant(
            OperatedPlant::with(level, [](ControlSetting& setting) { setting.timeout = std::chrono::seconds(3); }));
        QCOMPARE(plant.path.feedbackTimeout(), std::chrono::milliseconds(10000));
        const quint32 own = plant.order(Command::SetPoint, level, 5);
        const quint32 before = plant.path.begin({Command::Operate, pump, 1});
        plant.path.setFeedbackTimeout(std::chrono::milliseconds(5000)); // for requests made from now on
        plant.path.setFeedbackTimeout(std::chrono::milliseconds(0));
        plant.path.setFeedbackTimeout(std::chrono::milliseconds(-1));
        QCOMPARE(plant.path.feedbackTimeout(), std::chrono::milliseconds(5000));
        plant.order(Command::Select, breaker);
        const quint32 after = plant.order(Command::Operate, breaker, 1);
        plant.pass(2999);
        QCOMPARE(plant.outcomeOf(own), Outcome::Sent);
        plant.pass(1);
        QCOMPARE(plant.outcomeOf(own), Outcome::TimedOut);
        plant.pass(1999);
        QCOMPARE(plant.outcomeOf(after), Outcome::Sent);
        plant.pass(1);
        QCOMPARE(plant.outcomeOf(after), Outcome::TimedOut);
        plant.pass(4999);
        QCOMPARE(plant.outcomeOf(before), Outcome::Sent);
        plant.pass(1);
        QCOMPARE(plant.outcomeOf(before), Outcome::TimedOut);
    }

    void aClockThatIsSetHurriesNothing()
    {
        OperatedPlant plant;
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.order(Command::Select, breaker);
        plant.nowMs += 3600000; // by hand; no time has passed
        plant.data.tick();
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        QVERIFY(!plant.path.selectedBy(breaker).isEmpty());
    }

    void aSourceThatAnswersWithTheValueAtOnceIsHeard()
    {
        OperatedPlant plant;
        plant.source->refusal = text(""); // taken
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
    }

    // A source that fails

    void aSourceThatComesBackInTimeEndsItsCommands()
    {
        OperatedPlant plant;
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.source->fail();
        plant.pass(1000);
        QCOMPARE(plant.outcomeOf(id), Outcome::Sent);
        plant.source->recover();
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, pump, 0)), Outcome::Refused); // not two at a time
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
        QCOMPARE(plant.outcomeOf(plant.order(Command::Operate, pump, 0)), Outcome::Sent);
        QCOMPARE(plant.source->written.size(), std::size_t(2));
    }

    void aSourceThatStaysAwayHoldsNoCommand()
    {
        OperatedPlant plant;
        const quint32 id = plant.order(Command::Operate, pump, 1);
        plant.source->fail();
        plant.pass(10000);
        QCOMPARE(plant.outcomeOf(id), Outcome::TimedOut);
        plant.source->recover();
        plant.pass(1000);
        QCOMPARE(plant.source->written.size(), std::size_t(1)); // not once more by itself
        const quint32 next = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(next), Outcome::Sent);
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(next), Outcome::Done);
        QCOMPARE(plant.outcomeOf(id), Outcome::TimedOut);
    }

    // The audit log

    void whatCantBeAccountedForIsNotSent()
    {
        OperatedPlant plant;
        plant.audit.close();
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::Refused);
        QVERIFY(plant.source->written.empty());
        QVERIFY(!plant.problems.isEmpty());
        QVERIFY(plant.problems.first().contains(text("the audit log is not open")));
    }

    void whatCantBeAccountedForIsNotDone()
    {
        OperatedPlant plant;
        plant.audit.close();
        bool isDone = false;
        const quint32 id =
            plant.path.begin({Command::Inhibit, pump, {}, {}, {}, [&isDone](const ScadaOperationMessage&) {
                                  isDone = true;
                                  return tl::expected<void, QString>();
                              }});
        OperatedPlant::settle();
        QCOMPARE(plant.outcomeOf(id), Outcome::Refused);
        QVERIFY(!isDone);
    }

    void anEndThatCantBeWrittenIsToldAndWrittenLater()
    {
        const TemporaryFiles files;
        OperatedPlant plant({false, files.path(QString()), {}});
        const quint32 first = plant.order(Command::Operate, pump, 1);
        const quint32 second = plant.order(Command::SetPoint, level, 5);
        plant.audit.close();
        plant.say(pump, 1);
        QCOMPARE(plant.outcomeOf(first), Outcome::Done);
        QCOMPARE(plant.problems.size(), 1);
        QVERIFY(plant.problems.first().contains(text("operating.db: the audit log is not open")));
        plant.say(level, 5);
        plant.pass(60000);
        QVERIFY(plant.audit.open(files.path(text("operating.db"))));
        QCOMPARE(plant.auditOf(first), text("sent"));
        plant.pass(1000);
        QCOMPARE(plant.auditOf(first), text("sent done"));
        QCOMPARE(plant.auditOf(second), text("sent done"));
        QVERIFY(plant.audit.verify());
    }

    void anEndThatIsNeverWrittenIsNamed()
    {
        QStringList told;
        {
            OperatedPlant plant;
            connect(&plant.path, &ControlPath::problemFound, this, [&told](const QString& each) { told.append(each); });
            plant.order(Command::Operate, pump, 1);
            plant.audit.close();
            plant.say(pump, 1);
            told.clear();
        }
        QCOMPARE(told, QStringList(text("1 end(s) of requests are missing in the audit log, from that of PUMP "
                                        "(2020-09-13T12:26:40.000Z) on")));
    }

    void anEndIsWrittenAtTheLastChance()
    {
        const TemporaryFiles files;
        const QString name = files.path(text("operating.db"));
        {
            OperatedPlant plant({false, files.path(QString()), {}});
            plant.order(Command::Operate, pump, 1);
            plant.audit.close();
            plant.say(pump, 1);
            plant.pass(10); // tried in vain, and not due again so soon
            QVERIFY(plant.audit.open(name));
        }
        AuditLog log;
        QVERIFY(log.open(name));
        QCOMPARE(log.verify().value_or(0), qint64(2)); // sent, done
    }

    void whatIsDoneInPlaceOfACommandEndsAsItWent()
    {
        OperatedPlant plant;
        const auto act = [&plant](const tl::expected<void, QString>& result) {
            const quint32 id = plant.path.begin(
                {Command::Inhibit, pump, true, {}, {}, [result](const ScadaOperationMessage&) { return result; }});
            OperatedPlant::settle();
            return plant.path.request(id);
        };
        QCOMPARE(act({}).outcome, Outcome::Done);
        const ScadaOperationMessage refused = act(tl::make_unexpected(text("no room")));
        QCOMPARE(refused.outcome, Outcome::Refused);
        QCOMPARE(refused.text, text("no room"));
        QVERIFY(plant.source->written.empty());
    }

    // Sessions

    void theEndOfASessionLeavesWhatWasSent()
    {
        OperatedPlant plant(OperatedPlant::confirmedBy(Confirmation::Second));
        plant.logOn("ann");
        plant.confirmer.answer = plant.passwordOf("ann");
        const quint32 ended = plant.order(Command::Operate, pump, 9);
        const quint32 waiting = plant.order(Command::Operate, pump, 1);
        const quint32 sent = plant.order(Command::SetPoint, level, 5);
        plant.order(Command::Select, breaker);
        QVERIFY(plant.path.request(ended).isFinished());
        plant.path.endSession(text("bob")); // somebody else's
        QCOMPARE(plant.outcomeOf(waiting), Outcome::Requested);
        QCOMPARE(plant.path.selectedBy(breaker), text("ann"));
        plant.path.endSession(text("ann"));
        QVERIFY(plant.told.contains(QStringLiteral("cancelled %1").arg(waiting)));
        QCOMPARE(plant.auditOf(waiting), text("cancelled"));
        QVERIFY(plant.path.selectedBy(breaker).isEmpty());
        QCOMPARE(plant.path.request(ended).requestId, quint32(0)); // forgotten
        QCOMPARE(plant.path.request(waiting).requestId, quint32(0));
        QCOMPARE(plant.outcomeOf(sent), Outcome::Sent);
        plant.say(level, 5);
        QCOMPARE(plant.outcomeOf(sent), Outcome::Done);
    }

    void whoeverIsToldThatItIsSentMayTakeHisTime()
    {
        OperatedPlant plant;
        connect(&plant.path, &ControlPath::progressed, this, [&plant](const ScadaOperationMessage& request) {
            if (request.outcome == Outcome::Sent)
                plant.pass(10000); // until it is over
        });
        const quint32 id = plant.order(Command::Operate, pump, 1);
        QCOMPARE(plant.outcomeOf(id), Outcome::TimedOut);
        QVERIFY(plant.source->written.empty()); // what has ended is not sent
    }

    void pendingRequestsAreInTheirOrder()
    {
        OperatedPlant plant;
        plant.path.begin({Command::Operate, pump, 1});
        plant.path.begin({Command::SetPoint, level, 1.0});
        plant.path.begin({Command::Operate, pump, 0});
        const auto pending = plant.path.pending();
        QCOMPARE(pending.size(), 3);
        for (int place = 0; place < 3; ++place)
            QCOMPARE(pending[place].requestId, quint32(place + 1));
    }

    void tooManyEndedRequestsForgetTheOldest()
    {
        OperatedPlant plant;
        plant.told.reserve(2 * ControlPath::mostEnded);
        for (int count = 0; count <= ControlPath::mostEnded; ++count)
            plant.path.begin({Command::Operate, pump, 9});
        OperatedPlant::settle();
        QCOMPARE(plant.path.request(1).requestId, quint32(0));
        QCOMPARE(plant.path.request(2).requestId, quint32(2));
        QCOMPARE(plant.path.request(ControlPath::mostEnded + 1).outcome, Outcome::OutOfLimits);
    }

    // The one way

    void nobodyElseCanWriteToASource()
    {
        QVERIFY(!IsWritable<ValueSource>::value);
        QVERIFY(!IsWritable<ManualSource>::value);
        QVERIFY(!IsWritable<RecordingSource>::value);
        QVERIFY(!IsWritable<SimulationSource>::value);
        QVERIFY(!IsWritable<StreamSource>::value);
    }

    void onlyTheControlPathUsesTheGate()
    {
        QStringList users;
        QStringList friends;
        int files = 0;
        for (const char* floor : {"platform", "scada", "host", "apps"}) {
            QDirIterator each(text(KORVANE_SOURCE_DIR "/") + text(floor), {text("*.h"), text("*.cpp")}, QDir::Files,
                              QDirIterator::Subdirectories);
            while (each.hasNext()) {
                QFile file(each.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                const QByteArray code = file.readAll();
                ++files;
                if (code.contains("CommandGate::") || code.contains("commandgate.h"))
                    users.append(each.fileName());
                if (code.contains("friend class CommandGate"))
                    friends.append(each.fileName());
            }
        }
        QVERIFY(files > 100);
        users.sort();
        QCOMPARE(users, (QStringList{text("commandgate.cpp"), text("controlpath.cpp")}));
        QCOMPARE(friends, QStringList{text("valuesource.h")});
    }
};

QTEST_GUILESS_MAIN(tst_ControlPath)
#include "tst_controlpath.moc"
