#include "host/sources/simulationsource.h"

#include "tests/support/sourcelistener.h"

#include <QtTest>

using Korvane::ScadaObjectType;
using State = ValueSource::State;

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 1};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 2};
constexpr ObjectKey running{ScadaObjectType::DigitalPoint, 3};
constexpr ObjectKey other{ScadaObjectType::AnalogPoint, 4};

std::vector<SourcePoint> points()
{
    return {{running, QStringLiteral("PUMP"), QStringLiteral("P101.RUNNING")},
            {other, QStringLiteral("OTHER"), {}},
            {level, QStringLiteral("TK101.LEVEL"), QStringLiteral("12")},
            {flow, QStringLiteral("P101.FLOW"), {}}};
}

bool isSame(const Sample& a, const Sample& b)
{
    return a.object == b.object && a.timeMs == b.timeMs && a.value == b.value && a.quality == b.quality;
}

} // namespace

class tst_SimulationSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drivesThePointsOfItsSignals()
    {
        SimulationSource source(5, points());
        SourceListener heard(source);
        QCOMPARE(source.description(), QStringLiteral("simulation of a water loop, seed 5, 3 points"));
        QCOMPARE(source.objects(), (std::vector<ObjectKey>{flow, level, running}));
        source.advance(1000);
        QVERIFY2(heard.samples.empty(), "not before the start");
        source.start(1000);
        QCOMPARE(source.state(), State::Running);
        source.advance(1999);
        QCOMPARE(heard.samples.size(), std::size_t(6));
        const WaterLoopModel model(5);
        QVERIFY(isSame(heard.samples[0], {flow, 1000, model.value(WaterLoopModel::Flow), 0}));
        QVERIFY(isSame(heard.samples[1], {level, 1000, model.value(WaterLoopModel::Level), 0}));
        QVERIFY(isSame(heard.samples[2], {running, 1000, 1, 0}));
        QCOMPARE(heard.samples[3].timeMs, qint64(1500));
        QCOMPARE(heard.problems, QStringList());
    }

    void samplesAreTheSameHoweverTheTicksFall_data()
    {
        QTest::addColumn<int>("tickMs");
        for (const int tickMs : {1, 16, 100, 499, 501, 777, 60000, 1800000})
            QTest::addRow("every %d ms", tickMs) << tickMs;
    }

    void samplesAreTheSameHoweverTheTicksFall()
    {
        QFETCH(int, tickMs);
        constexpr qint64 beginMs = 1577836800123;
        constexpr qint64 endMs = beginMs + 1800000;
        const auto samplesOf = [&](int everyMs) {
            SimulationSource source(99, points());
            SourceListener heard(source);
            source.start(beginMs);
            for (qint64 now = beginMs; now < endMs; now += everyMs)
                source.advance(now);
            source.advance(endMs);
            return heard.samples;
        };
        const std::vector<Sample> expected = samplesOf(500);
        const std::vector<Sample> samples = samplesOf(tickMs);
        QCOMPARE(samples.size(), std::size_t(3601) * 3);
        QVERIFY(std::equal(samples.begin(), samples.end(), expected.begin(), expected.end(), isSame));
    }

    void aLongTimeIsMadeUpForBitByBit()
    {
        SimulationSource source(1, points());
        SourceListener heard(source);
        source.start(0);
        constexpr qint64 threeHours = 3 * 3600 * 1000;
        for (int tick = 0; tick < 4; ++tick) {
            source.advance(threeHours);
            QVERIFY(heard.batches.back().size() <= std::size_t(SimulationSource::mostSamples) * 3);
        }
        QCOMPARE(heard.samples.size(), std::size_t(3 * 7200 + 1) * 3);
        QVERIFY(heard.isInOrderOfTime());
    }

    void startsFromTheBeginningAgain()
    {
        SimulationSource source(1, points());
        SourceListener heard(source);
        source.start(0);
        source.advance(700);
        const QString first = heard.takeSamples();
        source.start(0);
        source.advance(700);
        QCOMPARE(heard.takeSamples(), first);
    }

    void aClockThatGoesBackDeliversNothing()
    {
        SimulationSource source(1, points());
        SourceListener heard(source);
        source.start(10000);
        source.advance(10000);
        heard.takeSamples();
        source.advance(5000);
        source.advance(10499);
        QVERIFY(heard.samples.empty());
    }
};

QTEST_GUILESS_MAIN(tst_SimulationSource)
#include "tst_simulationsource.moc"
