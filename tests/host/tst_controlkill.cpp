#include "tests/support/operatedplant.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <cstdio>

using Command = ControlPath::Operation;
using Outcome = ControlPath::Outcome;

namespace {

constexpr int requests = 1000;

/// Makes requests one after another on a plant in that folder, and says of each that it has ended.
int operate(const QString& folder)
{
    OperatedPlant plant({false, folder, {}});
    for (int count = 0; count < requests; ++count) {
        plant.nowMs += 10;
        const quint32 id =
            plant.order(Command::SetPoint, OperatedPlant::level, count % 100, QStringLiteral("request %1").arg(count));
        plant.say(OperatedPlant::level, count % 100);
        const ScadaOperationMessage ended = plant.path.request(id);
        if (ended.outcome != Outcome::Done)
            return 1;
        std::printf("%u\n", id);
        std::fflush(stdout);
    }
    return 0;
}

QList<quint32> wholeLines(const QByteArray& output)
{
    QList<quint32> numbers;
    for (const QByteArray& line : output.left(output.lastIndexOf('\n') + 1).split('\n')) {
        if (!line.isEmpty())
            numbers.append(line.toUInt());
    }
    return numbers;
}

} // namespace

class tst_ControlKill : public QObject
{
    Q_OBJECT

private:
    /// \returns the requests whose end the program told before it was killed, or before it ended.
    static QList<quint32> operateUntil(const QString& folder, int killedAfter)
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--operate"), folder});
        QByteArray output;
        while (output.count('\n') < killedAfter) {
            if (!process.waitForReadyRead(30000))
                break;
            output += process.readAllStandardOutput();
        }
        process.kill(); // SIGKILL
        if (!process.waitForFinished(30000))
            return {};
        output += process.readAllStandardOutput();
        return wholeLines(output);
    }

private Q_SLOTS:
    void whatWasToldIsInTheLog_data()
    {
        QTest::addColumn<int>("killedAfter");
        for (int round = 1; round <= 5; ++round)
            QTest::addRow("round %d", round) << int(QRandomGenerator::global()->bounded(1, requests));
        QTest::newRow("at the last") << requests;
    }
    void whatWasToldIsInTheLog()
    {
        QFETCH(int, killedAfter);
        TemporaryFiles files;
        const QString folder = files.path(QString());
        const QList<quint32> ended = operateUntil(folder, killedAfter);
        QVERIFY2(ended.size() >= killedAfter,
                 qPrintable(QStringLiteral("%1 of %2").arg(ended.size()).arg(killedAfter)));

        AuditLog log;
        const auto opened = log.open(folder + QStringLiteral("/operating.db"));
        QVERIFY2(opened, opened ? "" : qPrintable(opened.error()));
        const auto verified = log.verify();
        QVERIFY2(verified, verified ? "" : qPrintable(verified.error()));
        const auto lines = log.read(OperatedPlant::utc(0), OperatedPlant::utc(2 * OperatedPlant::begin), 10 * requests);
        QCOMPARE(qint64(lines->size()), *verified);
        QHash<quint32, QList<Outcome>> outcomes; // newest first
        for (const ScadaOperationMessage& line : *lines)
            outcomes[line.requestId].append(line.outcome);
        for (const quint32 id : ended)
            QCOMPARE(outcomes.value(id), (QList<Outcome>{Outcome::Done, Outcome::Sent}));
        // At most the one that was under way knows no end.
        int open = 0;
        for (const QList<Outcome>& each : qAsConst(outcomes))
            open += each.contains(Outcome::Done) ? 0 : 1;
        QVERIFY(open <= 1);

        ScadaOperationMessage next;
        next.time = OperatedPlant::utc(OperatedPlant::begin);
        QVERIFY(log.append(next, {})); // and it goes on
        QCOMPARE(log.verify().value_or(-1), *verified + 1);
    }
};

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const QStringList given = QCoreApplication::arguments();
    if (given.size() == 3 && given[1] == QStringLiteral("--operate"))
        return operate(given[2]);
    tst_ControlKill test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "tst_controlkill.moc"
