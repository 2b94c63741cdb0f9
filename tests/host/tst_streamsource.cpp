#include "host/sources/streamsource.h"

#include "tests/support/sourcelistener.h"
#include "tests/support/temporaryfiles.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

using Korvane::ScadaObjectType;
using State = ValueSource::State;
using Times = SourceAddress::Times;

#ifdef Q_OS_UNIX

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 1};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 2};

std::vector<SourcePoint> points()
{
    return {{flow, QStringLiteral("FLOW"), {}}, {level, QStringLiteral("LEVEL"), {}}};
}

RecordingOptions options(Times times)
{
    RecordingOptions options;
    options.times = times;
    return options;
}

/// A pipe between two ends of the test.
class Pipe
{
public:
    Pipe()
    {
        int ends[2];
        if (pipe(ends) != 0)
            qFatal("no pipe");
        m_readEnd = ends[0];
        m_writeEnd = ends[1];
        // Writing more than the pipe holds would wait for the reader, which is the same thread.
        fcntl(m_writeEnd, F_SETFL, O_NONBLOCK);
    }
    ~Pipe()
    {
        closeWriteEnd();
        close(m_readEnd);
    }
    Q_DISABLE_COPY(Pipe)

    int readEnd() const { return m_readEnd; }

    /// Writes all of it, letting the event loop read meanwhile.
    void write(const QByteArray& bytes)
    {
        for (int at = 0; at < bytes.size();) {
            const ssize_t count = ::write(m_writeEnd, bytes.constData() + at, std::size_t(bytes.size() - at));
            if (count > 0)
                at += int(count);
            else
                QCoreApplication::processEvents();
        }
    }

    void closeWriteEnd()
    {
        if (m_writeEnd >= 0)
            close(m_writeEnd);
        m_writeEnd = -1;
    }

private:
    int m_readEnd = -1;
    int m_writeEnd = -1;
};

} // namespace

class tst_StreamSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cannotBeOpenedAgain()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        source.start(0);
        const auto reconnected = source.reconnect(0);
        QVERIFY(!reconnected);
        QCOMPARE(reconnected.error(),
                 QStringLiteral("recording from standard input has no connection that could be opened again"));
        QCOMPARE(source.state(), State::Running);
    }

    void deliversWhatCame()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        QCOMPARE(source.description(), QStringLiteral("recording from standard input"));
        source.start(0);
        QCOMPARE(source.state(), State::Running);
        m_nowMs = 5000;
        pipe.write("time;FLOW;LEVEL\n2020-01-01 00:00:00;1;2\n2020-01-01 00:00:01;3;4\n2020-01");
        QTRY_COMPARE(heard.samples.size(), std::size_t(4));
        QCOMPARE(heard.takeSamples(), QStringLiteral("5000:1=1 5000:2=2 5000:1=3 5000:2=4"));
        QCOMPARE(heard.batches.size(), std::size_t(1));
        QCOMPARE(source.objects(), (std::vector<ObjectKey>{flow, level}));
        m_nowMs = 6000;
        pipe.write("-01 00:00:02;5;");
        pipe.write("\n2020-01-01 00:00:03;6;7");
        QTRY_COMPARE(heard.samples.size(), std::size_t(1));
        QCOMPARE(heard.takeSamples(), QStringLiteral("6000:1=5"));
        m_nowMs = 7000;
        pipe.closeWriteEnd();
        QTRY_COMPARE(source.state(), State::Ended);
        QCOMPARE(heard.takeSamples(), QStringLiteral("7000:1=6 7000:2=7"));
        QCOMPARE(heard.problems, QStringList());
        QCOMPARE(heard.states, (std::vector<State>{State::Running, State::Ended}));
    }

    void timesMayBeTheRows()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Row), [this] { return m_nowMs; });
        SourceListener heard(source);
        source.start(0);
        pipe.write("time;name;value;quality\n1;FLOW;2;\n2;LEVEL;3;4\n1;FLOW;9;\n");
        pipe.closeWriteEnd();
        QTRY_COMPARE(source.state(), State::Ended);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1000:1=2 2000:2=3/4"));
        QCOMPARE(heard.problems,
                 QStringList{QStringLiteral("standard input, line 4, column 1 (time): the time \"1\" goes back")});
        QCOMPARE(source.problemCount(), qint64(1));
    }

    void changesAloneNeedNoTime()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        m_nowMs = 1;
        source.start(0);
        pipe.write("name,value\nFLOW,2\nNONE,1\nNONE,1\nFLOW,x\n");
        pipe.closeWriteEnd();
        QTRY_COMPARE(source.state(), State::Ended);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1:1=2"));
        QCOMPARE(heard.problems,
                 (QStringList{QStringLiteral("standard input, line 3: the name \"NONE\" belongs to no point"),
                              QStringLiteral("standard input, line 5, column 2 (value): \"x\" is no number")}));
    }

    void linesBeforeTheHeaderAreDropped()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        m_nowMs = 1;
        source.start(0);
        pipe.write("connected to plant; waiting\n");
        QTRY_COMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), QStringLiteral("standard input, line 1: no column is called datetime, time or "
                                                  "timestamp, or like a point"));
        pipe.write("FLOW,other\n1,2\n");
        QTRY_COMPARE(source.state(), State::Running);
        QCOMPARE(heard.takeSamples(), QStringLiteral("1:1=1"));
        QCOMPARE(heard.problems,
                 QStringList{QStringLiteral("standard input, line 2: column \"other\" belongs to no point")});
    }

    void anEndWithoutAHeaderIsAFailure()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        source.start(0);
        pipe.closeWriteEnd();
        QTRY_COMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), QStringLiteral("standard input: ended before a header line"));
    }

    void aLineOfMoreThanOneMegabyteIsLeftOut()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        m_nowMs = 1;
        source.start(0);
        pipe.write("time;FLOW\n;1\n" + QByteArray(3000000, '7') + "\n;2\n");
        QTRY_COMPARE(heard.samples.size(), std::size_t(2));
        QCOMPARE(heard.takeSamples(), QStringLiteral("1:1=1 1:1=2"));
        QCOMPARE(heard.problems, QStringList{QStringLiteral("standard input, line 3: the line is longer than 1 MB")});
    }

    void twentyProblemsAreTold()
    {
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        source.start(0);
        pipe.write("time;FLOW\n");
        for (int i = 0; i < 30; ++i)
            pipe.write(";x\n");
        pipe.closeWriteEnd();
        QTRY_COMPARE(source.state(), State::Ended);
        QCOMPARE(source.problemCount(), qint64(30));
        QCOMPARE(heard.problems.size(), 21);
        QCOMPARE(heard.problems.last(), QStringLiteral("standard input: further malformed rows are only counted"));
    }

    void aMapThatComesLateIsWaitedFor()
    {
        const TemporaryFiles files;
        RecordingOptions mapped = options(Times::Arrival);
        mapped.map = files.path(QStringLiteral("map.csv"));
        Pipe pipe;
        StreamSource source(pipe.readEnd(), points(), mapped, [this] { return m_nowMs; });
        SourceListener heard(source);
        m_nowMs = 1;
        pipe.write("raw\n2\n");
        source.start(0);
        QCOMPARE(source.state(), State::Failed);
        QCOMPARE(source.failure(), mapped.map + QStringLiteral(": there is no such file"));
        QCoreApplication::processEvents();
        files.write(QStringLiteral("map.csv"), "raw;FLOW;10\n");
        source.advance(0);
        QTRY_COMPARE(heard.samples.size(), std::size_t(1));
        QCOMPARE(heard.takeSamples(), QStringLiteral("1:1=20"));
    }

    void fiveThousandColumnsComeWhole()
    {
        std::vector<SourcePoint> many;
        QByteArray header = "time";
        QByteArray values;
        for (int i = 0; i < 5000; ++i) {
            many.push_back({{ScadaObjectType::AnalogPoint, 200001 + i}, QStringLiteral("POINT_%1").arg(i), {}});
            header += ";POINT_" + QByteArray::number(i);
            values += ';' + QByteArray::number(i + 0.25);
        }
        Pipe pipe;
        StreamSource source(pipe.readEnd(), many, options(Times::Arrival), [this] { return m_nowMs; });
        SourceListener heard(source);
        source.start(0);
        pipe.write(header + '\n');
        for (int row = 0; row < 20; ++row)
            pipe.write("2020-01-01 00:00:00" + values + '\n');
        QTRY_COMPARE(heard.samples.size(), std::size_t(100000));
        for (std::size_t i = 0; i < heard.samples.size(); ++i) {
            QCOMPARE(heard.samples[i].object.id, qint32(200001 + i % 5000));
            QCOMPARE(heard.samples[i].value, double(i % 5000) + 0.25);
        }
        QVERIFY(heard.batches.size() < 100);
    }

private:
    qint64 m_nowMs = 0;
};

#else

class tst_StreamSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failsWherePipesCannotBeWaitedFor()
    {
        StreamSource source(StreamSource::standardInput, {}, {}, [] { return qint64(0); });
        source.start(0);
        QCOMPARE(source.state(), State::Failed);
    }
};

#endif

QTEST_GUILESS_MAIN(tst_StreamSource)
#include "tst_streamsource.moc"
