#include "host/sources/recordingwriter.h"

#include "host/sources/recordingsource.h"
#include "host/sources/simulationsource.h"
#include "platform/data/valuemarks.h"
#include "tests/support/sourcelistener.h"
#include "tests/support/temporaryfiles.h"

#include <QtTest>

#include <cmath>
#include <map>

using Korvane::ScadaObjectType;

Q_DECLARE_METATYPE(std::vector<Sample>)

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 2};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 1};
constexpr ObjectKey other{ScadaObjectType::DigitalPoint, 1};

std::vector<SourcePoint> points()
{
    return {{flow, QStringLiteral("FLOW"), QStringLiteral("address")}, {level, QStringLiteral("LEVEL; \"1\""), {}}};
}

} // namespace

class tst_RecordingWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesRows_data()
    {
        QTest::addColumn<std::vector<Sample>>("samples");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const std::vector<Sample>& samples, const QByteArray& expected) {
            QTest::newRow(name) << samples << "datetime;\"FLOW\";\"LEVEL; \"\"1\"\"\"\n" + expected;
        };
        row("nothing", {}, "");
        row("at whole seconds", {{flow, 1000, 1.5}, {level, 1000, 2}, {flow, 2000, 3}, {level, 2000, 4}},
            "1970-01-01 00:00:01;1.5;2\n1970-01-01 00:00:02;3;4\n");
        row("the newest value of the second", {{flow, 1001, 1}, {flow, 1500, 2}, {flow, 2000, 3}, {flow, 2001, 4}},
            "1970-01-01 00:00:02;3;\n1970-01-01 00:00:03;4;\n");
        row("a value stays until a newer one comes", {{flow, 1000, 1}, {level, 2000, 2}},
            "1970-01-01 00:00:01;1;\n1970-01-01 00:00:02;1;2\n");
        row("seconds without samples have no row", {{flow, 1000, 1}, {flow, 9000, 2}},
            "1970-01-01 00:00:01;1;\n1970-01-01 00:00:09;2;\n");
        row("numbers read back the same",
            {{flow, 0, 0.1}, {level, 0, 1e300}, {flow, 1000, 1.0 / 3}, {level, 1000, -0.0}},
            "1970-01-01 00:00:00;0.1;1e+300\n1970-01-01 00:00:01;0.3333333333333333;-0\n");
        row("what is invalid is no value",
            {{flow, 0, 1}, {level, 0, 1}, {flow, 1000, 2, ValueMark::Invalid}, {level, 1000, std::nan("")}},
            "1970-01-01 00:00:00;1;1\n1970-01-01 00:00:01;;\n");
        row("other marks stay out", {{flow, 0, 1, ValueMark::Substituted}}, "1970-01-01 00:00:00;1;\n");
        row("other objects are ignored", {{flow, 0, 1}, {other, 5000, 1}}, "1970-01-01 00:00:00;1;\n");
        row("a late sample counts for the next row",
            {{flow, 2000, 1}, {flow, 3000, 2}, {level, 1000, 3}, {flow, 4000, 4}},
            "1970-01-01 00:00:02;1;\n1970-01-01 00:00:03;2;3\n1970-01-01 00:00:04;4;3\n");
        row("before 1970", {{flow, -1500, 1}}, "1969-12-31 23:59:59;1;\n");
    }

    void writesRows()
    {
        QFETCH(std::vector<Sample>, samples);
        QFETCH(QByteArray, expected);
        const QString path = m_files.path(QStringLiteral("rows.csv"));
        RecordingWriter writer(path, points());
        QVERIFY(writer.open());
        for (const Sample& sample : samples)
            writer.write({sample});
        const auto finished = writer.finish();
        QVERIFY2(finished, finished ? "" : qPrintable(finished.error()));
        QCOMPARE(bytesOf(path), expected);
    }

    void whatIsNotFinishedLeavesNothing()
    {
        const QString path = m_files.write(QStringLiteral("kept.csv"), "kept");
        {
            RecordingWriter writer(path, points());
            QVERIFY(writer.open());
            writer.write({{flow, 0, 1}});
        }
        QCOMPARE(bytesOf(path), QByteArray("kept"));
        QCOMPARE(QDir(m_files.path({})).entryList({QStringLiteral("kept*")}).size(), 1);
    }

    void aFolderThatIsMissingIsToldOnOpening()
    {
        const QString path = m_files.path(QStringLiteral("missing/recording.csv"));
        RecordingWriter writer(path, points());
        const auto opened = writer.open();
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(path + QStringLiteral(": cannot be created: ")), qPrintable(opened.error()));
    }

    void aSimulationPlaysBackAsItWas()
    {
        std::vector<SourcePoint> loop;
        for (std::size_t i = 0; i < WaterLoopModel::SignalCount; ++i) {
            loop.push_back({{ScadaObjectType::AnalogPoint, qint32(200001 + i)},
                            QString::fromLatin1(WaterLoopModel::signalNames[i]),
                            {}});
        }
        SimulationSource simulation(3, loop);
        SourceListener simulated(simulation);
        const QString path = m_files.path(QStringLiteral("simulation.csv"));
        RecordingWriter writer(path, loop);
        QVERIFY(writer.open());
        connect(&simulation, &ValueSource::delivered, this,
                [&writer](const std::vector<Sample>& samples) { writer.write(samples); });
        constexpr qint64 beginMs = 1577836800000;
        constexpr qint64 endMs = beginMs + 600000;
        simulation.start(beginMs);
        for (qint64 now = beginMs; now <= endMs; now += 333)
            simulation.advance(now);
        simulation.advance(endMs);
        QVERIFY(writer.finish());

        RecordingSource recording(path, loop, {});
        SourceListener played(recording);
        QCOMPARE(recording.firstTimeMs().value(), beginMs);
        recording.start(beginMs);
        recording.advance(endMs);
        QCOMPARE(recording.state(), ValueSource::State::Ended);
        QCOMPARE(played.problems, QStringList());

        std::vector<Sample> expected; // those at whole seconds
        std::copy_if(simulated.samples.begin(), simulated.samples.end(), std::back_inserter(expected),
                     [](const Sample& sample) { return sample.timeMs % 1000 == 0; });
        QCOMPARE(expected.size(), std::size_t(601) * WaterLoopModel::SignalCount);
        QCOMPARE(played.samples.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            QCOMPARE(played.samples[i].object, expected[i].object);
            QCOMPARE(played.samples[i].timeMs, expected[i].timeMs);
            QVERIFY(played.samples[i].value == expected[i].value);
        }
    }

private:
    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    TemporaryFiles m_files;
};

QTEST_GUILESS_MAIN(tst_RecordingWriter)
#include "tst_recordingwriter.moc"
