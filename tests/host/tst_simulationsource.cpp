#include "host/sources/simulationsource.h"

#include "host/control/commandgate.h"
#include "tests/support/sourcelistener.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

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

double lastValueOf(const SourceListener& heard, ObjectKey object)
{
    const auto last = std::find_if(heard.samples.rbegin(), heard.samples.rend(),
                                   [object](const Sample& sample) { return sample.object == object; });
    return last == heard.samples.rend() ? std::nan("") : last->value;
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

    void takesCommandsToDevices()
    {
        const SimulationSource source(1, points());
        QVERIFY(source.takesCommands(running));
        QVERIFY(!source.takesCommands(flow));
        QVERIFY(!source.takesCommands(other));
        QVERIFY(!source.takesCommands({}));
    }

    void aCommandIsAnsweredAtOnceAndObeyed()
    {
        SimulationSource source(1, points());
        SourceListener heard(source);
        source.start(0);
        source.advance(1200);
        CommandGate::write(source, {17, running, 0});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("17")));
        heard.takeSamples();
        source.advance(4999); // 3.8 seconds later it counts as standing
        QVERIFY(lastValueOf(heard, running) == 1.0);
        source.advance(5000);
        QVERIFY(lastValueOf(heard, running) == 0.0);
        CommandGate::write(source, {18, running, 1});
        source.advance(7000);
        QVERIFY(lastValueOf(heard, running) == 1.0);

        CommandGate::write(source, {19, running, 0});
        source.start(10000);
        source.advance(20000);
        QVERIFY2(lastValueOf(heard, running) == 1.0, "a new start begins at the beginning");
        QCOMPARE(heard.answers.size(), 3);
    }

    void refusesWithAReason()
    {
        const QString name = QStringLiteral("simulation of a water loop, seed 1, 3 points");
        SimulationSource source(1, points());
        SourceListener heard(source);
        CommandGate::write(source, {1, running, 0});
        source.start(0);
        source.advance(0);
        CommandGate::write(source, {2, other, 1});
        CommandGate::write(source, {3, flow, 100});
        CommandGate::write(source, {4, running, 2});
        QCOMPARE(heard.answers, (QStringList{QStringLiteral("1 %1 is not running").arg(name),
                                             QStringLiteral("2 %1 has no such point").arg(name),
                                             QStringLiteral("3 P101.FLOW takes no commands"),
                                             QStringLiteral("4 P101.RUNNING cannot be set to 2: only to 0 or 1")}));
        source.advance(20000);
        QVERIFY(lastValueOf(heard, running) == 1.0);
    }

    void readsAgainBetweenTwoSamples()
    {
        SimulationSource source(5, points());
        SourceListener heard(source);
        source.start(1000);
        QVERIFY(!source.readAgain(other));
        source.advance(1700);
        heard.takeSamples();
        QVERIFY(source.readAgain(flow));
        QVERIFY(heard.samples.empty());
        source.advance(1850);
        WaterLoopModel model(5);
        for (int step = 0; step < 8; ++step)
            model.step();
        QCOMPARE(heard.samples.size(), std::size_t(1));
        QVERIFY(isSame(heard.samples[0], {flow, 1850, model.value(WaterLoopModel::Flow), 0}));
        heard.takeSamples();
        source.advance(1999);
        QVERIFY2(heard.samples.empty(), "once");
        QVERIFY(source.readAgain(flow));
        source.advance(2000);
        QCOMPARE(heard.samples.size(), std::size_t(3)); // a sample is due anyway
        source.advance(2499);
        QCOMPARE(heard.samples.size(), std::size_t(3));
        QVERIFY(source.readAgain(level));
        source.advance(1500); // the clock goes back: not before the sample that was delivered
        QCOMPARE(heard.samples.size(), std::size_t(4));
        QCOMPARE(heard.samples.back().timeMs, qint64(2000));
        QVERIFY(heard.isInOrderOfTime());
    }
};

QTEST_GUILESS_MAIN(tst_SimulationSource)
#include "tst_simulationsource.moc"
