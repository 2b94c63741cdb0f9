#include "host/sources/recordingsource.h"

#include "host/control/commandgate.h"
#include "host/core/replayclock.h"
#include "tests/support/sourcelistener.h"
#include "tests/support/temporaryfiles.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using Korvane::ScadaObjectType;
using State = ValueSource::State;
using Times = SourceAddress::Times;

Q_DECLARE_METATYPE(SourceAddress::Times)

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 1};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 2};
constexpr qint64 ever = 1000000000000000;

std::vector<SourcePoint> points()
{
    return {{flow, QStringLiteral("FLOW"), {}}, {level, QStringLiteral("LEVEL"), {}}};
}

RecordingOptions options(Times times, bool isLooped = false)
{
    RecordingOptions options;
    options.times = times;
    options.isLooped = isLooped;
    return options;
}

} // namespace

class tst_RecordingSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowIsDueAtItsTime()
    {
        RecordingSource source(write("time;FLOW\n100;1\n102;2\n105;3\n"), points(), options(Times::Row));
        SourceListener heard(source);
        QCOMPARE(source.firstTimeMs().value(), qint64(100000));
        QCOMPARE(source.objects(), std::vector<ObjectKey>{flow});
        QCOMPARE(source.description(), QStringLiteral("recording recording.csv"));
        QCOMPARE(source.state(), State::Stopped);
        source.advance(ever);
        QVERIFY2(heard.samples.empty(), "not before the start");

        source.start(100000);
        QCOMPARE(source.state(), State::Running);
        QVERIFY2(heard.samples.empty(), "not before the first tick");
        source.advance(100000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("100000:1=1"));
        source.advance(101999);
        QCOMPARE(heard.takeSamples(), QString());
        source.advance(105000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("102000:1=2 105000:1=3"));
        QCOMPARE(heard.batches.size(), std::size_t(2));
        QCOMPARE(source.state(), State::Ended);
        QCOMPARE(source.failure(), QString());
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QString());
        QCOMPARE(heard.states, (std::vector<State>{State::Running, State::Ended}));

        source.start(100000);
        source.advance(103000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("100000:1=1 102000:1=2"));
        QCOMPARE(source.state(), State::Running);
    }

    void byArrivalTimeCountsFromTheStart()
    {
        RecordingSource source(write("time;FLOW\n100;1\n102;2\n"), points(), options(Times::Arrival));
        SourceListener heard(source);
        source.start(7000000);
        source.advance(7001999);
        QCOMPARE(heard.takeSamples(), QStringLiteral("7000000:1=1"));
        source.advance(7002000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("7002000:1=2"));
        QCOMPARE(source.state(), State::Ended);
        source.start(8000000);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("8000000:1=1 8002000:1=2"));
    }

    void beginsAgainInTime_data()
    {
        QTest::addColumn<Times>("times");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("by row, at the distance of the last two rows")
            << Times::Row << QByteArray("time;FLOW\n100;1\n101;2\n103;3\n")
            << QStringLiteral("100000:1=1 101000:1=2 103000:1=3 105000:1=1 106000:1=2 108000:1=3 110000:1=1");
        QTest::newRow("by arrival") << Times::Arrival << QByteArray("time;FLOW\n50;1\n51;2\n53;3\n")
                                    << QStringLiteral("100000:1=1 101000:1=2 103000:1=3 105000:1=1 106000:1=2 "
                                                      "108000:1=3 110000:1=1");
        QTest::newRow("rows of one time") << Times::Row << QByteArray("time;FLOW\n100;1\n104;2\n104;3\n")
                                          << QStringLiteral("100000:1=1 104000:1=2 104000:1=3 108000:1=1");
        QTest::newRow("one row, a second later") << Times::Row << QByteArray("time;FLOW\n107;1\n")
                                                 << QStringLiteral("107000:1=1 108000:1=1 109000:1=1 110000:1=1");
    }

    void beginsAgainInTime()
    {
        QFETCH(Times, times);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        RecordingSource source(write(bytes), points(), options(times, true));
        SourceListener heard(source);
        source.start(100000);
        for (qint64 now = 100000; now <= 110000; now += 700)
            source.advance(now);
        source.advance(110000);
        QCOMPARE(heard.takeSamples(), expected);
        QCOMPARE(source.state(), State::Running);
        QCOMPARE(heard.problems, QStringList());
    }

    void malformedRowsAreToldAndLeftOut()
    {
        const QString path =
            write("time;FLOW;note;LEVEL\n1;1;a;x\n2;1;a\n3;1;a;1\nnow;1;a;1\n2;1;a;1\n4;\"1;a;1\n5;;a;5\n");
        RecordingSource source(path, points(), options(Times::Row, true));
        SourceListener heard(source);
        QCOMPARE(source.firstTimeMs().value(), qint64(3000));
        QVERIFY2(heard.problems.isEmpty(), "told from the start on");
        source.start(3000);
        const QStringList first{path + QStringLiteral(", line 1: column \"note\" belongs to no point"),
                                path + QStringLiteral(", line 2, column 4 (LEVEL): \"x\" is no number"),
                                path + QStringLiteral(", line 3: the row has 3 columns, the header 4")};
        QCOMPARE(heard.problems, first);
        source.advance(3000);
        QCOMPARE(source.problemCount(), qint64(5));
        QCOMPARE(heard.problems,
                 first + (QStringList{path + QStringLiteral(", line 5, column 1 (time): \"now\" is no time"),
                                      path + QStringLiteral(", line 6, column 1 (time): the time \"2\" goes back"),
                                      path + QStringLiteral(", line 7: a quote is not closed")}));
        source.advance(8000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("3000:1=1 3000:2=1 5000:2=5 7000:1=1 7000:2=1"));
        QCOMPARE(source.problemCount(), qint64(5)); // the same lines once more
        QCOMPARE(heard.problems.size(), 6);
    }

    void twentyProblemsAreTold()
    {
        QByteArray bytes = "time;FLOW\n1;1\n";
        for (int i = 0; i < 50; ++i)
            bytes += "2;x\n";
        const QString path = write(bytes + "3;3\n");
        RecordingSource source(path, points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=1 3000:1=3"));
        QCOMPARE(source.problemCount(), qint64(50));
        QCOMPARE(heard.problems.size(), 21);
        QCOMPARE(heard.problems[19], path + QStringLiteral(", line 22, column 2 (FLOW): \"x\" is no number"));
        QCOMPARE(heard.problems[20], path + QStringLiteral(": further malformed rows are only counted"));
    }

    void namesOfNoPointAreToldOnce()
    {
        const QString path = write("time;name;value;quality\n1;A;1;\n1;FLOW;1;4\n2;A;1;\n2;B;1;\n");
        RecordingSource source(path, points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=1/4"));
        QCOMPARE(heard.problems, (QStringList{path + QStringLiteral(", line 2: the name \"A\" belongs to no point"),
                                              path + QStringLiteral(", line 5: the name \"B\" belongs to no point")}));
        QCOMPARE(source.problemCount(), qint64(0));
        QCOMPARE(source.state(), State::Ended);
    }

    void aMapSaysTheColumns()
    {
        RecordingOptions mapped = options(Times::Row);
        mapped.map = m_files.write(QStringLiteral("map.csv"), "flow raw;FLOW;0,1;-5\nx;NONE\n");
        RecordingSource source(write("time;flow raw;LEVEL\n1;100;2\n"), points(), mapped);
        SourceListener heard(source);
        source.start(0);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=5"));
        QCOMPARE(heard.problems,
                 (QStringList{mapped.map + QStringLiteral(", line 2, column 2 (point): there is no point \"NONE\""),
                              m_files.path(QStringLiteral("recording.csv")) +
                                  QStringLiteral(", line 1: column \"LEVEL\" belongs to no point")}));
    }

    void aMapThatIsMissingIsAFailure()
    {
        RecordingOptions mapped = options(Times::Row);
        mapped.map = m_files.path(QStringLiteral("missing map.csv"));
        RecordingSource source(write("time;FLOW\n1;100\n"), points(), mapped);
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), mapped.map + QStringLiteral(": there is no such file"));
        m_files.write(QStringLiteral("missing map.csv"), "FLOW;FLOW;2");
        SourceListener heard(source);
        source.start(0);
        QCOMPARE(source.state(), State::Running);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=200"));
    }

    void localTimesAreThoseOfTheZone()
    {
        RecordingOptions seoul = options(Times::Row);
        seoul.zone = QTimeZone("Asia/Seoul");
        RecordingSource source(write("datetime;FLOW\n1970-01-01 09:00:01;1\n"), points(), seoul);
        QCOMPARE(source.firstTimeMs().value(), qint64(1000));
    }

    void whatCannotBePlayedIsAFailure_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("failure");
        QTest::newRow("an empty file") << QByteArray() << QStringLiteral(": has no header line");
        QTest::newRow("no time column") << QByteArray("FLOW;LEVEL\n1;2\n")
                                        << QStringLiteral(", line 1: no column is called datetime, time or timestamp");
        QTest::newRow("a broken header") << QByteArray("# x\n\"time;FLOW\n1;2\n")
                                         << QStringLiteral(", line 2: a quote is not closed");
    }

    void whatCannotBePlayedIsAFailure()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, failure);
        const QString path = write(bytes);
        RecordingSource source(path, points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(1000);
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), path + failure);
        QVERIFY(!source.firstTimeMs());
        QVERIFY(source.objects().empty());
        write("time;FLOW\n1;2\n");
        source.advance(1000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=2"));
        QCOMPARE(source.failure(), QString());
    }

    void aRecordingWithoutRowsEnds()
    {
        const QString path = write("time;FLOW\n1;x\n");
        RecordingSource source(path, points(), options(Times::Row, true));
        SourceListener heard(source);
        QVERIFY(!source.firstTimeMs());
        source.start(0);
        source.advance(0);
        QCOMPARE(source.state(), State::Ended);
        QCOMPARE(heard.problems, (QStringList{path + QStringLiteral(": has no row to play"),
                                              path + QStringLiteral(", line 2, column 2 (FLOW): \"x\" is no number")}));
    }

    void aPipeIsRefusedAtOnce()
    {
#ifdef Q_OS_UNIX
        const QString pipe = m_files.path(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const RecordingSource source(pipe, points(), options(Times::Row));
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), pipe + QStringLiteral(": is no regular file"));
#else
        QSKIP("no pipes in folders on this system");
#endif
    }

    void aFileThatComesBackIsReadOn_data()
    {
        QTest::addColumn<Times>("times");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("behind");
        QTest::newRow("by row") << Times::Row << "1000:1=1 2000:1=2"
                                << "3000:1=3 4000:1=4";
        QTest::newRow("by arrival") << Times::Arrival << "0:1=1 1000:1=2"
                                    << "2000:1=3 3000:1=4";
    }

    void aFileThatComesBackIsReadOn()
    {
        QFETCH(Times, times);
        QFETCH(QString, before);
        QFETCH(QString, behind);
        const QByteArray bytes = "time;FLOW;other\n1;1;\n1;x;\n2;2;\n3;3;\n4;4;\n";
        const QString path = write(bytes);
        RecordingSource source(path, points(), options(times));
        SourceListener heard(source);
        source.start(0);
        source.advance(times == Times::Row ? 2000 : 1000);
        QCOMPARE(heard.takeSamples(), before);

        QVERIFY(QFile::remove(path));
        source.advance(ever);
        source.advance(ever);
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), path + QStringLiteral(": there is no such file"));
        QCOMPARE(heard.takeSamples(), QString());

        write(bytes);
        source.advance(2000);
        QCOMPARE(source.state(), State::Running);
        QCOMPARE(source.failure(), QString());
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), behind);
        QCOMPARE(heard.states, (std::vector<State>{State::Running, State::Failed, State::Running, State::Ended}));
        QCOMPARE(heard.problems.size(), 2); // the column and the row, once
    }

    void aFileThatIsMissingAtTheStartIsPlayedWhenItComes()
    {
        const QString path = m_files.path(QStringLiteral("late.csv"));
        RecordingSource source(path, points(), options(Times::Arrival));
        SourceListener heard(source);
        QCOMPARE(source.state(), State::Failed);
        source.start(5000);
        source.advance(6000);
        QCOMPARE(source.failure(), path + QStringLiteral(": there is no such file"));
        m_files.write(QStringLiteral("late.csv"), "time;FLOW\n1;1\n3;2\n9;3\n");
        source.advance(7000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("5000:1=1 7000:1=2"));
        QCOMPARE(source.state(), State::Running);
    }

    void oneTickReadsABoundedNumberOfRows()
    {
        QByteArray bytes = "time;FLOW\n";
        for (int i = 0; i < 2 * RecordingSource::mostRows; ++i)
            bytes += QByteArray::number(i) + ";1\n";
        RecordingSource source(write(bytes), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        for (int ticks = 1; source.state() == State::Running; ++ticks) {
            const std::size_t before = heard.samples.size();
            source.advance(ever);
            QVERIFY(heard.samples.size() - before <= std::size_t(RecordingSource::mostRows) + 1);
            QVERIFY(ticks < 5);
        }
        QCOMPARE(heard.samples.size(), std::size_t(2) * RecordingSource::mostRows);
        QVERIFY(heard.isInOrderOfTime());
    }

    void oneTickReadsABoundedNumberOfFields()
    {
        QByteArray header = "time;FLOW";
        QByteArray values = ";1";
        for (int i = 0; i < 9998; ++i) {
            header += ";x";
            values += ";1";
        }
        QByteArray bytes = header + '\n';
        for (int i = 0; i < 250; ++i)
            bytes += QByteArray::number(i) + values + '\n';
        RecordingSource source(write(bytes), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(ever);
        QCOMPARE(heard.samples.size(), std::size_t(101)); // one was read before
        source.advance(ever);
        source.advance(ever);
        QCOMPARE(heard.samples.size(), std::size_t(250));
        QCOMPARE(source.state(), State::Ended);
    }

    void malformedRowsAreBoundedToo()
    {
        QByteArray bytes = "time;FLOW\n";
        for (int i = 0; i < RecordingSource::mostRows * 5 / 2; ++i)
            bytes += "1;x\n";
        RecordingSource source(write(bytes + "1;1\n"), points(), options(Times::Row));
        SourceListener heard(source);
        QVERIFY(!source.firstTimeMs());
        source.start(0);
        source.advance(ever);
        QCOMPARE(source.state(), State::Running);
        source.advance(ever);
        QCOMPARE(source.state(), State::Ended);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=1"));
        QCOMPARE(source.problemCount(), qint64(RecordingSource::mostRows) * 5 / 2);
    }

    void theClockSaysHowFast()
    {
        RecordingSource source(write("time;FLOW\n100;1\n101;2\n120;3\n"), points(), options(Times::Row));
        SourceListener heard(source);
        qint64 baseMs = 0;
        ReplayClock clock(source.firstTimeMs().value(), 10, [&baseMs] { return baseMs; });
        source.start(clock.nowMs());
        source.advance(clock.nowMs());
        QCOMPARE(heard.takeSamples(), QStringLiteral("100000:1=1"));
        baseMs = 99;
        source.advance(clock.nowMs());
        QCOMPARE(heard.takeSamples(), QString());
        baseMs = 100;
        source.advance(clock.nowMs());
        QCOMPARE(heard.takeSamples(), QStringLiteral("101000:1=2"));
        baseMs = 2000;
        source.advance(clock.nowMs());
        QCOMPARE(heard.takeSamples(), QStringLiteral("120000:1=3"));
    }

    void takesNoCommands()
    {
        RecordingSource source(write("time;FLOW\n1;1\n"), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        QVERIFY(!source.takesCommands(flow));
        QVERIFY(!source.readAgain(flow));
        CommandGate::write(source, {3, flow, 1});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("3 recording recording.csv takes no commands")));
        source.advance(0);
        QVERIFY(heard.samples.empty());
    }

    void goesToATime_data()
    {
        QTest::addColumn<bool>("isLooped");
        QTest::addColumn<qint64>("playedMs"); // before
        QTest::addColumn<qint64>("soughtMs");
        QTest::addColumn<QString>("expected"); // up to 125 s
        const auto row = [](const char* name, bool isLooped, qint64 playedMs, qint64 soughtMs, const char* expected) {
            QTest::newRow(name) << isLooped << playedMs << soughtMs << QString::fromLatin1(expected);
        };
        // Rows at 100, 101, 101 and 104 s, again 107, 108, 108, 111; 114, 115, 115, 118; ...
        row("ahead, to a row's time", false, 100000, 104000, "104000:1=4");
        row("ahead, between two rows", false, 100000, 101001, "104000:1=4");
        row("ahead, to the first of two rows of one time", false, 100000, 100001, "101000:1=2 101000:1=3 104000:1=4");
        row("to the row that waits, the first of two", false, 100500, 101000, "101000:1=2 101000:1=3 104000:1=4");
        row("before anything was played", false, 0, 104000, "104000:1=4");
        row("behind the last row", false, 100000, 104001, "");
        row("back to the beginning", false, 104000, 0, "100000:1=1 101000:1=2 101000:1=3 104000:1=4");
        row("back, from the end", false, 130000, 101000, "101000:1=2 101000:1=3 104000:1=4");
        row("back, from the end to the last row", false, 130000, 104000, "104000:1=4");
        row("back, to the row played last", false, 101000, 101000, "101000:1=2 101000:1=3 104000:1=4");
        row("looped, ahead in the same pass", true, 107000, 109000,
            "111000:1=4 114000:1=1 115000:1=2 115000:1=3 118000:1=4 121000:1=1 122000:1=2 122000:1=3 125000:1=4");
        row("looped, ahead to the next pass", true, 100000, 115000,
            "115000:1=2 115000:1=3 118000:1=4 121000:1=1 122000:1=2 122000:1=3 125000:1=4");
        row("looped, to a pass's beginning", true, 100000, 121000, "121000:1=1 122000:1=2 122000:1=3 125000:1=4");
        row("looped, between two passes", true, 100000, 118001, "121000:1=1 122000:1=2 122000:1=3 125000:1=4");
        row("looped, back to the pass before", true, 119000, 118000,
            "118000:1=4 121000:1=1 122000:1=2 122000:1=3 125000:1=4");
        row("looped, back to the first pass", true, 125000, 104000,
            "104000:1=4 107000:1=1 108000:1=2 108000:1=3 111000:1=4 114000:1=1 115000:1=2 115000:1=3 118000:1=4 "
            "121000:1=1 122000:1=2 122000:1=3 125000:1=4");
    }

    void goesToATime()
    {
        QFETCH(bool, isLooped);
        QFETCH(qint64, playedMs);
        QFETCH(qint64, soughtMs);
        QFETCH(QString, expected);
        RecordingSource source(write("time;FLOW\n100;1\n101;2\n101;x\n101;3\n104;4\n"), points(),
                               options(Times::Row, isLooped));
        SourceListener heard(source);
        source.start(0);
        source.advance(playedMs);
        heard.takeSamples();
        QVERIFY(source.seek(soughtMs));
        QVERIFY(heard.samples.empty());
        source.advance(soughtMs - 1);
        QCOMPARE(heard.takeSamples(), QString());
        source.advance(125000);
        QCOMPARE(heard.takeSamples(), expected);
        QCOMPARE(source.state(), isLooped ? State::Running : State::Ended);
        QCOMPARE(source.problemCount(), qint64(1)); // the row that is no number, once
    }

    void manyPassesAreNotRead()
    {
        RecordingSource source(write("time;FLOW\n0;1\n1;2\n"), points(), options(Times::Row, true));
        SourceListener heard(source);
        source.start(0);
        constexpr qint64 farMs = Q_INT64_C(253402300799000); // the year 9999, an odd second
        QVERIFY(source.seek(farMs));
        source.advance(farMs); // bounded by RecordingSource::mostRows
        QCOMPARE(heard.takeSamples(), QStringLiteral("%1:1=2").arg(farMs));
        QVERIFY(!source.seek(farMs + 1000));
        source.advance(farMs + 1000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("%1:1=1").arg(farMs + 1000));
    }

    void oneTickLeavesOutABoundedNumberOfRows()
    {
        constexpr int rows = RecordingSource::mostRows * 3 / 2;
        QByteArray bytes = "time;FLOW\n";
        for (int i = 0; i <= rows; ++i)
            bytes += QByteArray::number(i) + ";1\n";
        RecordingSource source(write(bytes), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        constexpr qint64 soughtMs = qint64(rows) * 1000;
        QVERIFY(source.seek(soughtMs));
        source.advance(soughtMs);
        QCOMPARE(heard.takeSamples(), QString());
        QCOMPARE(source.state(), State::Running);
        source.advance(soughtMs);
        QCOMPARE(heard.takeSamples(), QStringLiteral("%1:1=1").arg(soughtMs));
    }

    void whatHasNoTimesOfItsOwnGoesNowhere()
    {
        const QString path = write("time;FLOW\n100;1\n102;2\n");
        RecordingSource byArrival(path, points(), options(Times::Arrival));
        SourceListener heard(byArrival);
        byArrival.start(0);
        QVERIFY(!byArrival.seek(102000));
        byArrival.advance(2000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("0:1=1 2000:1=2"));
        RecordingSource unstarted(path, points(), options(Times::Row));
        QVERIFY(!unstarted.seek(102000));
    }

    void aNewStartForgetsTheTimeSought()
    {
        RecordingSource source(write("time;FLOW\n100;1\n102;2\n"), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        QVERIFY(source.seek(102000));
        source.start(0);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("100000:1=1 102000:1=2"));
    }

    void opensTheFileAgain()
    {
        const QString path = write("time;FLOW\n1;1\n2;x\n3;3\n4;4\n");
        RecordingSource source(path, points(), options(Times::Row));
        SourceListener heard(source);
        const auto early = source.reconnect(0);
        QVERIFY(!early);
        QCOMPARE(early.error(), QStringLiteral("recording recording.csv was not started"));
        QCOMPARE(source.state(), State::Stopped);
        source.start(0);
        source.advance(1000);
        QVERIFY(source.reconnect(1000));
        source.advance(3000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=1 3000:1=3"));
        QVERIFY(QFile::remove(path));
        const auto gone = source.reconnect(3000);
        QVERIFY(!gone);
        QCOMPARE(gone.error(), path + QStringLiteral(": there is no such file"));
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), gone.error());
        // Another file of that name, which an open one would not see.
        write("time;FLOW\n1;1\n2;x\n3;3\n4;4\n5;5\n");
        QVERIFY(source.reconnect(3000));
        QCOMPARE(source.state(), State::Running);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("4000:1=4 5000:1=5"));
        QCOMPARE(heard.problems.size(), 1);
    }

    void anotherFileIsReadAtOnceAfterAReconnection()
    {
        const QString path = write("time;FLOW\n1;1\n2;2\n3;3\n");
        RecordingSource source(path, points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(1000); // the second row was read and waits
        QVERIFY(QFile::rename(path, path + QStringLiteral(".old")));
        write("time;LEVEL\n1;10\n2;20\n3;30\n");
        QVERIFY(source.reconnect(1000));
        source.advance(3000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=1 2000:1=2 3000:2=30"));
    }

    void whatCameBehindTheEndIsPlayedAfterAReconnection()
    {
        write("time;FLOW\n1;1\n2;2\n");
        RecordingSource source(m_files.path(QStringLiteral("recording.csv")), points(), options(Times::Row));
        SourceListener heard(source);
        source.start(0);
        source.advance(ever);
        QCOMPARE(source.state(), State::Ended);
        heard.takeSamples();
        QVERIFY(source.reconnect(ever));
        source.advance(ever);
        QCOMPARE(source.state(), State::Ended);
        QCOMPARE(heard.takeSamples(), QString());
        write("time;FLOW\n1;1\n2;2\n3;3\n");
        QVERIFY(source.reconnect(ever));
        QCOMPARE(source.state(), State::Running);
        source.advance(ever);
        QCOMPARE(heard.takeSamples(), QStringLiteral("3000:1=3"));
        QCOMPARE(source.state(), State::Ended);
    }

    void aLoopedRecordingGoesOnInItsPassAfterAReconnection()
    {
        RecordingSource source(write("time;FLOW\n0;1\n1;2\n2;3\n"), points(), options(Times::Row, true));
        SourceListener heard(source);
        source.start(0);
        source.advance(4000);
        heard.takeSamples();
        QVERIFY(source.reconnect(4000));
        source.advance(7000);
        QCOMPARE(heard.takeSamples(), QStringLiteral("5000:1=3 6000:1=1 7000:1=2"));
    }

private:
    QString write(const QByteArray& bytes) const
    {
        return m_files.write(QStringLiteral("recording.csv"), bytes);
    }

    TemporaryFiles m_files;
};

QTEST_GUILESS_MAIN(tst_RecordingSource)
#include "tst_recordingsource.moc"
