#include "host/control/operationnames.h"

#include <QtTest>

using Command = ScadaOperationMessage::Operation;
using Outcome = ScadaOperationMessage::Outcome;

class tst_OperationNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logsHoldTheseWords_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("words");
        const auto row = [](Command operation, const char* name, const char* words) {
            QTest::newRow(name) << static_cast<int>(operation) << QString::fromLatin1(name)
                                << QString::fromLatin1(words);
        };
        row(Command::Select, "select", "Select");
        row(Command::Operate, "operate", "Operate");
        row(Command::Cancel, "cancel", "Cancel");
        row(Command::SetPoint, "setPoint", "Setpoint");
        row(Command::Raise, "raise", "Raise");
        row(Command::Lower, "lower", "Lower");
        row(Command::EnterValue, "enterValue", "Enter value");
        row(Command::Substitute, "substitute", "Substitute");
        row(Command::EndSubstitution, "endSubstitution", "End substitution");
        row(Command::Inhibit, "inhibit", "Inhibit");
        row(Command::Tag, "tag", "Information tag");
        row(Command::ChangeLimit, "changeLimit", "Change limit");
        row(Command::ChangeDeadBand, "changeDeadBand", "Change dead band");
        row(Command::Scan, "scan", "Scan");
        row(Command::Reconnect, "reconnect", "Reconnect");
        row(Command::ResetStatistics, "resetStatistics", "Reset statistics");
    }
    void logsHoldTheseWords()
    {
        QFETCH(int, operation);
        QFETCH(QString, name);
        QFETCH(QString, words);
        const auto stated = static_cast<Command>(operation);
        QCOMPARE(OperationNames::nameOf(stated), name);
        QCOMPARE(OperationNames::textOf(stated), words);
        auto read = stated == Command::Select ? Command::Operate : Command::Select;
        QVERIFY(OperationNames::read(name, read));
        QCOMPARE(read, stated);
    }

    void outcomesHaveTheseWords_data()
    {
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("words");
        const auto row = [](Outcome outcome, const char* name, const char* words) {
            QTest::newRow(name) << static_cast<int>(outcome) << QString::fromLatin1(name) << QString::fromLatin1(words);
        };
        row(Outcome::Requested, "requested", "Requested");
        row(Outcome::Sent, "sent", "Sent");
        row(Outcome::Done, "done", "Done");
        row(Outcome::NotPermitted, "notPermitted", "Not permitted");
        row(Outcome::Inhibited, "inhibited", "Inhibited");
        row(Outcome::Interlocked, "interlocked", "Interlocked");
        row(Outcome::NotConfirmed, "notConfirmed", "Not confirmed");
        row(Outcome::NotSelected, "notSelected", "Not selected");
        row(Outcome::OutOfLimits, "outOfLimits", "Out of limits");
        row(Outcome::Refused, "refused", "Refused");
        row(Outcome::TimedOut, "timedOut", "Timed out");
        row(Outcome::Cancelled, "cancelled", "Cancelled");
    }
    void outcomesHaveTheseWords()
    {
        QFETCH(int, outcome);
        QFETCH(QString, name);
        QFETCH(QString, words);
        const auto stated = static_cast<Outcome>(outcome);
        QCOMPARE(OperationNames::nameOf(stated), name);
        QCOMPARE(OperationNames::textOf(stated), words);
        auto read = stated == Outcome::Done ? Outcome::Sent : Outcome::Done;
        QVERIFY(OperationNames::read(name, read));
        QCOMPARE(read, stated);
    }

    void otherWordsAreNoNames()
    {
        Command operation = Command::Scan;
        Outcome outcome = Outcome::TimedOut;
        for (const char* word : {"", "Select", "SELECT", "set point", " done", "Done"}) {
            QVERIFY(!OperationNames::read(QString::fromLatin1(word), operation));
            QVERIFY(!OperationNames::read(QString::fromLatin1(word), outcome));
        }
        QCOMPARE(operation, Command::Scan); // left alone
        QCOMPARE(outcome, Outcome::TimedOut);
    }
};

QTEST_GUILESS_MAIN(tst_OperationNames)
#include "tst_operationnames.moc"
