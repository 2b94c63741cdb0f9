#include "host/sources/waterloopmodel.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <map>

using Event = WaterLoopModel::Event;
using Signal = WaterLoopModel::Signal;

Q_DECLARE_METATYPE(WaterLoopModel::Event)
Q_DECLARE_METATYPE(WaterLoopModel::Signal)

namespace {

constexpr int stepsPerMinute = 600;
constexpr int stepsPerDay = 24 * 60 * stepsPerMinute;

struct Range
{
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    double sum = 0;
    int count = 0;

    void add(double value)
    {
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
        sum += value;
        ++count;
    }
    double mean() const { return sum / count; }
};

using Ranges = std::array<Range, WaterLoopModel::SignalCount>;

/// What instruments show in two days, by event; the first 30 seconds of each are left out, water takes its time, and so
/// are four minutes behind one.
std::map<Event, Ranges> rangesOf(quint32 seed)
{
    std::map<Event, Ranges> ranges;
    WaterLoopModel model(seed);
    Event event = model.event();
    int stepsOfEvent = 0;
    for (int step = 0; step < 2 * stepsPerDay; ++step) {
        model.step();
        stepsOfEvent = model.event() == event ? stepsOfEvent + 1 : 0;
        event = model.event();
        if (stepsOfEvent < (event == Event::None ? 4 * stepsPerMinute : 280))
            continue;
        for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal)
            ranges[event][signal].add(model.value(Signal(signal)));
    }
    return ranges;
}

} // namespace

class tst_WaterLoopModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_ranges = rangesOf(1);
        QCOMPARE(m_ranges.size(), std::size_t(5));
    }

    void showsWhatIsPlausible_data()
    {
        QTest::addColumn<Event>("event");
        QTest::addColumn<Signal>("signal");
        QTest::addColumn<double>("lowest");
        QTest::addColumn<double>("highest");
        const auto row = [](const char* name, Event event, Signal signal, double lowest, double highest) {
            QTest::newRow(name) << event << signal << lowest << highest;
        };
        row("normal flow", Event::None, Signal::Flow, 120, 130);
        row("normal pressure", Event::None, Signal::Pressure, 0.25, 0.5);
        row("normal current", Event::None, Signal::Current, 1.9, 2.5);
        row("normal voltage", Event::None, Signal::Voltage, 215, 245);
        row("normal vibration 1", Event::None, Signal::Vibration1, 0.18, 0.22);
        row("normal vibration 2", Event::None, Signal::Vibration2, 0.25, 0.285);
        row("normal body temperature", Event::None, Signal::BodyTemperature, 80, 92);
        row("normal fluid temperature", Event::None, Signal::FluidTemperature, 24, 29);
        row("normal level", Event::None, Signal::Level, 55, 78);
        row("the pump runs", Event::None, Signal::IsRunning, 1, 1);
        row("valves are open", Event::None, Signal::InletIsOpen, 1, 1);
        row("the breaker is closed", Event::None, Signal::BreakerIsClosed, 1, 1);

        row("throttled: less flow", Event::InletThrottled, Signal::Flow, 40, 100);
        row("throttled: less pressure", Event::InletThrottled, Signal::Pressure, -0.1, 0.35);
        row("throttled: more vibration 1", Event::InletThrottled, Signal::Vibration1, 0.21, 0.36);
        row("throttled: more vibration 2", Event::InletThrottled, Signal::Vibration2, 0.285, 0.5);
        row("throttled: the valve is not open", Event::InletThrottled, Signal::InletIsOpen, 0, 0);
        row("throttled: its position", Event::InletThrottled, Signal::InletPosition, 16, 26);
        row("throttled: the pump runs", Event::InletThrottled, Signal::IsRunning, 1, 1);

        row("stopped: no flow", Event::PumpStopped, Signal::Flow, 0, 0.01);
        row("stopped: no current", Event::PumpStopped, Signal::Current, 0, 0);
        row("stopped: voltage stays", Event::PumpStopped, Signal::Voltage, 215, 245);
        row("stopped: no vibration", Event::PumpStopped, Signal::Vibration1, 0, 0.03);
        row("stopped: the outlet valve closes", Event::PumpStopped, Signal::OutletPosition, 0, 0);
        row("stopped: the pipe runs into the tank", Event::PumpStopped, Signal::Level, 60, 87);

        row("tripped: the breaker is open", Event::BreakerTripped, Signal::BreakerIsClosed, 0, 0);
        row("tripped: no voltage", Event::BreakerTripped, Signal::Voltage, 0, 0);
        row("tripped: the pump stands", Event::BreakerTripped, Signal::IsRunning, 0, 0);
        row("tripped: valves stay", Event::BreakerTripped, Signal::OutletPosition, 100, 100);

        row("water is added: the level rises", Event::WaterAdded, Signal::Level, 78, 86);
        row("water is added: flow stays", Event::WaterAdded, Signal::Flow, 120, 130);
    }

    void showsWhatIsPlausible()
    {
        QFETCH(Event, event);
        QFETCH(Signal, signal);
        QFETCH(double, lowest);
        QFETCH(double, highest);
        const Range& range = m_ranges.at(event)[signal];
        QVERIFY2(range.lowest >= lowest && range.highest <= highest,
                 qPrintable(QStringLiteral("%1 to %2").arg(range.lowest).arg(range.highest)));
    }

    void runsAtItsNominalPointInTheMean()
    {
        const Ranges& normal = m_ranges.at(Event::None);
        QVERIFY(std::abs(normal[Signal::Flow].mean() - 125) < 1);
        QVERIFY(std::abs(normal[Signal::Pressure].mean() - 0.38) < 0.01);
        QVERIFY(std::abs(normal[Signal::Current].mean() - 2.2) < 0.02);
        QVERIFY(std::abs(normal[Signal::Vibration1].mean() - 0.2) < 0.002);
        QVERIFY(std::abs(normal[Signal::Vibration2].mean() - 0.27) < 0.002);
    }

    void noWaterIsLostNorMade()
    {
        for (const quint32 seed : {0U, 1U, 4294967295U}) {
            WaterLoopModel model(seed);
            const double begin = model.tankVolume() + model.pipeVolume();
            for (int step = 0; step < 2 * stepsPerDay; ++step) {
                model.step();
                const double now =
                    model.tankVolume() + model.pipeVolume() + model.drainedVolume() - model.addedVolume();
                QVERIFY(std::abs(now - begin) < 1e-6);
                QVERIFY(model.tankVolume() >= 0 && model.tankVolume() <= 120 && model.pipeVolume() >= 0);
            }
            QVERIFY2(model.addedVolume() > 0, "water was added at all");
        }
    }

    void somethingHappensEveryTenMinutes()
    {
        WaterLoopModel model(42);
        int steps = 0;
        while (model.event() == Event::None) {
            model.step();
            ++steps;
        }
        QVERIFY(steps >= stepsPerMinute && steps <= 2 * stepsPerMinute);
        for (int i = 0; i < 20; ++i) {
            while (model.event() != Event::None)
                model.step();
            for (steps = 0; model.event() == Event::None; ++steps)
                model.step();
            QVERIFY(steps >= 9 * stepsPerMinute && steps <= 11 * stepsPerMinute);
        }
    }

    void aSeedGivesTheSameEveryTime()
    {
        WaterLoopModel first(7);
        WaterLoopModel second(7);
        WaterLoopModel other(8);
        bool isOtherDifferent = false;
        for (int step = 0; step < 60 * stepsPerMinute; ++step) {
            for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal) {
                QVERIFY(first.value(Signal(signal)) == second.value(Signal(signal)));
                isOtherDifferent = isOtherDifferent || first.value(Signal(signal)) != other.value(Signal(signal));
            }
            first.step();
            second.step();
            other.step();
        }
        QVERIFY(isOtherDifferent);
    }

private:
    std::map<Event, Ranges> m_ranges;
};

QTEST_APPLESS_MAIN(tst_WaterLoopModel)
#include "tst_waterloopmodel.moc"
