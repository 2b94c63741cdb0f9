#include "platform/data/scadaalarm.h"
#include "platform/data/scadaoperationmessage.h"

#include <QtTest>

#include <functional>

class tst_ScadaRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMemberOfAnAlarmCounts()
    {
        using Change = std::function<void(ScadaAlarm&)>;
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(1, Qt::UTC);
        const QList<Change> changes = {
            [](ScadaAlarm& a) { a.id = 1; },
            [](ScadaAlarm& a) { a.objectType = Korvane::ScadaObjectType::AnalogPoint; },
            [](ScadaAlarm& a) { a.objectId = 1; },
            [](ScadaAlarm& a) { a.tag = QStringLiteral("x"); },
            [](ScadaAlarm& a) { a.area = QStringLiteral("x"); },
            [](ScadaAlarm& a) { a.severity = 9; },
            [](ScadaAlarm& a) { a.state = ScadaAlarm::State::Shelved; },
            [](ScadaAlarm& a) { a.cause = ScadaAlarm::Cause::High; },
            [](ScadaAlarm& a) { a.value = 1; },
            [](ScadaAlarm& a) { a.limit = 1; },
            [](ScadaAlarm& a) { a.message = QStringLiteral("x"); },
            [time](ScadaAlarm& a) { a.raised = time; },
            [time](ScadaAlarm& a) { a.returned = time; },
            [time](ScadaAlarm& a) { a.acknowledged = time; },
            [](ScadaAlarm& a) { a.acknowledgedBy = QStringLiteral("x"); },
        };
        QVERIFY(ScadaAlarm().isEqual(ScadaAlarm()));
        for (const Change& change : changes) {
            ScadaAlarm changed;
            change(changed);
            QVERIFY(!changed.isEqual(ScadaAlarm()));
            QVERIFY(changed.isEqual(ScadaAlarm(changed)));
        }
    }

    void twoStatesWaitForAnOperator()
    {
        using State = ScadaAlarm::State;
        QList<State> waiting;
        for (const State state :
             {State::Normal, State::Unacknowledged, State::Acknowledged, State::ReturnedUnacknowledged, State::Shelved,
              State::Suppressed, State::OutOfService}) {
            ScadaAlarm alarm;
            alarm.state = state;
            if (alarm.isUnacknowledged())
                waiting.append(state);
        }
        QCOMPARE(waiting, (QList<State>{State::Unacknowledged, State::ReturnedUnacknowledged}));
    }

    void everyMemberOfAnOperationCounts()
    {
        using Change = std::function<void(ScadaOperationMessage&)>;
        const QList<Change> changes = {
            [](ScadaOperationMessage& m) { m.requestId = 1; },
            [](ScadaOperationMessage& m) { m.operation = ScadaOperationMessage::Operation::Raise; },
            [](ScadaOperationMessage& m) { m.outcome = ScadaOperationMessage::Outcome::Done; },
            [](ScadaOperationMessage& m) { m.objectType = Korvane::ScadaObjectType::AnalogPoint; },
            [](ScadaOperationMessage& m) { m.objectId = 1; },
            [](ScadaOperationMessage& m) { m.tag = QStringLiteral("x"); },
            [](ScadaOperationMessage& m) { m.value = 1; },
            [](ScadaOperationMessage& m) { m.before = 1; },
            [](ScadaOperationMessage& m) { m.user = QStringLiteral("x"); },
            [](ScadaOperationMessage& m) { m.secondUser = QStringLiteral("x"); },
            [](ScadaOperationMessage& m) { m.reason = QStringLiteral("x"); },
            [](ScadaOperationMessage& m) { m.text = QStringLiteral("x"); },
            [](ScadaOperationMessage& m) { m.time = QDateTime::fromMSecsSinceEpoch(1, Qt::UTC); },
        };
        QVERIFY(ScadaOperationMessage().isEqual(ScadaOperationMessage()));
        for (const Change& change : changes) {
            ScadaOperationMessage changed;
            change(changed);
            QVERIFY(!changed.isEqual(ScadaOperationMessage()));
            QVERIFY(changed.isEqual(ScadaOperationMessage(changed)));
        }
    }

    void onlyWhatIsRequestedOrSentIsNotFinished()
    {
        using Outcome = ScadaOperationMessage::Outcome;
        for (qint32 outcome = 0; outcome <= static_cast<qint32>(Outcome::Cancelled); ++outcome) {
            ScadaOperationMessage message;
            message.outcome = Outcome(outcome);
            QCOMPARE(message.isFinished(), outcome > static_cast<qint32>(Outcome::Sent));
        }
    }
};

QTEST_GUILESS_MAIN(tst_ScadaRecords)
#include "tst_scadarecords.moc"
