#include "host/sources/waterloopmodel.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>

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

constexpr int stepsPerSecond = stepsPerMinute / 60;

void runSeconds(WaterLoopModel& model, double seconds)
{
    for (int step = 0; step < int(seconds * stepsPerSecond); ++step)
        model.step();
}

/// Runs until that begins, a day at most; nothing may be happening before.
bool runUntil(WaterLoopModel& model, Event event)
{
    for (int step = 0; step < stepsPerDay && model.event() != event; ++step)
        model.step();
    return model.event() == event;
}

/// Runs until what happens is over, and half a minute on.
void runToItsEnd(WaterLoopModel& model)
{
    while (model.event() != Event::None)
        model.step();
    runSeconds(model, 30);
}

bool areSame(const WaterLoopModel& a, const WaterLoopModel& b)
{
    bool isSame = a.event() == b.event();
    for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal)
        isSame = isSame && a.value(Signal(signal)) == b.value(Signal(signal));
    return isSame;
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

    void thePumpStopsAndRuns()
    {
        WaterLoopModel model(3);
        QVERIFY(model.command(Signal::IsRunning, 0));
        runSeconds(model, 3.7); // of the four that it runs down
        QCOMPARE(model.value(Signal::IsRunning), 1.0);
        runSeconds(model, 20);
        QCOMPARE(model.value(Signal::IsRunning), 0.0);
        QCOMPARE(model.value(Signal::Current), 0.0);
        QVERIFY(model.value(Signal::Flow) < 0.01);
        QCOMPARE(model.value(Signal::OutletPosition), 100.0); // valves are the operator's own
        QVERIFY(model.command(Signal::IsRunning, 1));
        runSeconds(model, 20);
        QCOMPARE(model.value(Signal::IsRunning), 1.0);
        QVERIFY(std::abs(model.value(Signal::Flow) - 125) < 5);
    }

    void theBreakerOpensAndCloses()
    {
        WaterLoopModel model(3);
        QVERIFY(model.command(Signal::BreakerIsClosed, 0));
        model.step();
        QCOMPARE(model.value(Signal::BreakerIsClosed), 0.0);
        QCOMPARE(model.value(Signal::Voltage), 0.0);
        QVERIFY(model.command(Signal::IsRunning, 1));
        runSeconds(model, 20);
        QCOMPARE(model.value(Signal::IsRunning), 0.0); // not while the breaker is open
        QVERIFY(model.command(Signal::BreakerIsClosed, 1));
        runSeconds(model, 5);
        QCOMPARE(model.value(Signal::BreakerIsClosed), 1.0);
        QVERIFY(model.value(Signal::Voltage) > 200);
        QCOMPARE(model.value(Signal::IsRunning), 1.0);
    }

    void aValveMovesAtItsSpeed_data()
    {
        QTest::addColumn<Signal>("position");
        QTest::addColumn<Signal>("isOpen");
        QTest::newRow("inlet") << Signal::InletPosition << Signal::InletIsOpen;
        QTest::newRow("outlet") << Signal::OutletPosition << Signal::OutletIsOpen;
    }

    void aValveMovesAtItsSpeed()
    {
        QFETCH(Signal, position);
        QFETCH(Signal, isOpen);
        const auto isAt = [position](const WaterLoopModel& model, double percent) {
            return std::abs(model.value(position) - percent) < 1e-6;
        };
        WaterLoopModel model(3);
        QVERIFY(model.command(position, 30));
        runSeconds(model, 2); // eight from end to end
        QVERIFY(isAt(model, 75));
        runSeconds(model, 10);
        QVERIFY(isAt(model, 30));
        QCOMPARE(model.value(isOpen), 0.0);
        QVERIFY(model.value(Signal::Flow) < 124);
        QVERIFY(model.command(isOpen, 1));
        runSeconds(model, 10);
        QVERIFY(isAt(model, 100));
        QCOMPARE(model.value(isOpen), 1.0);
        QVERIFY(model.command(isOpen, 0));
        runSeconds(model, 20);
        QVERIFY(isAt(model, 0));
        QVERIFY(model.value(Signal::Flow) < 3); // the instrument's noise
        QVERIFY(model.command(position, 100));
        runSeconds(model, 10);
        QVERIFY(isAt(model, 100));
    }

    void whatIsOrderedOutlivesWhatHappens_data()
    {
        QTest::addColumn<Event>("event");
        QTest::addColumn<bool>("isBefore"); // else amid
        QTest::addColumn<Signal>("signal");
        QTest::addColumn<double>("value");
        const auto row = [](const char* name, Event event, bool isBefore, Signal signal, double value) {
            QTest::newRow(name) << event << isBefore << signal << value;
        };
        row("a pump that was stopped stays so", Event::PumpStopped, true, Signal::IsRunning, 0);
        row("a pump that is stopped again stays so", Event::PumpStopped, false, Signal::IsRunning, 0);
        row("a pump is started at once", Event::PumpStopped, false, Signal::IsRunning, 1);
        row("the outlet that the stop closed opens at once", Event::PumpStopped, false, Signal::OutletPosition, 40);
        row("a breaker that was opened stays so", Event::BreakerTripped, true, Signal::BreakerIsClosed, 0);
        row("a breaker that tripped is opened", Event::BreakerTripped, false, Signal::BreakerIsClosed, 0);
        row("a breaker that tripped is closed", Event::BreakerTripped, false, Signal::BreakerIsClosed, 1);
        row("a pump is stopped by a trip and the operator", Event::BreakerTripped, false, Signal::IsRunning, 0);
        row("throttling opens no valve", Event::InletThrottled, true, Signal::InletPosition, 10);
        row("a throttled valve is closed", Event::InletThrottled, false, Signal::InletPosition, 0);
        row("a throttled valve is opened", Event::InletThrottled, false, Signal::InletPosition, 60);
        row("a pump stays stopped while water is added", Event::WaterAdded, true, Signal::IsRunning, 0);
    }

    void whatIsOrderedOutlivesWhatHappens()
    {
        QFETCH(Event, event);
        QFETCH(bool, isBefore);
        QFETCH(Signal, signal);
        QFETCH(double, value);
        WaterLoopModel model(2);
        if (isBefore)
            QVERIFY(model.command(signal, value));
        QVERIFY(runUntil(model, event));
        if (!isBefore) {
            runSeconds(model, 15);
            QVERIFY(model.command(signal, value));
        }
        runSeconds(model, 14);
        QCOMPARE(model.event(), event);
        QVERIFY(std::abs(model.value(signal) - value) < 1e-6);
        runToItsEnd(model);
        QVERIFY(std::abs(model.value(signal) - value) < 1e-6);
    }

    void whatNobodyOrderedReturnsByItself()
    {
        WaterLoopModel model(2);
        QVERIFY(runUntil(model, Event::PumpStopped));
        QVERIFY(model.command(Signal::InletPosition, 80)); // of another device
        runSeconds(model, 30);
        QCOMPARE(model.value(Signal::IsRunning), 0.0);
        runToItsEnd(model);
        QCOMPARE(model.value(Signal::IsRunning), 1.0);
        QCOMPARE(model.value(Signal::OutletPosition), 100.0);
        QVERIFY(runUntil(model, Event::BreakerTripped));
        runSeconds(model, 30);
        QCOMPARE(model.value(Signal::BreakerIsClosed), 0.0);
        runToItsEnd(model);
        QCOMPARE(model.value(Signal::BreakerIsClosed), 1.0);
        QVERIFY(runUntil(model, Event::InletThrottled));
        runSeconds(model, 30);
        QVERIFY(model.value(Signal::InletPosition) <= 26);
        runToItsEnd(model);
        QVERIFY(std::abs(model.value(Signal::InletPosition) - 80) < 1e-6);
    }

    void aStandingPumpKeepsItsOutlet()
    {
        WaterLoopModel model(2);
        QVERIFY(model.command(Signal::IsRunning, 0));
        QVERIFY(runUntil(model, Event::PumpStopped));
        runSeconds(model, 30);
        QCOMPARE(model.event(), Event::PumpStopped);
        QCOMPARE(model.value(Signal::OutletPosition), 100.0);
    }

    void refusesWhatIsNoOrder_data()
    {
        QTest::addColumn<Signal>("signal");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("reason");
        for (std::size_t signal = 0; signal < Signal::IsRunning; ++signal) {
            const QString name = QLatin1String(WaterLoopModel::signalNames[signal]);
            QTest::addRow("%s", WaterLoopModel::signalNames[signal])
                << Signal(signal) << 1.0 << name + QStringLiteral(" takes no commands");
        }
        QTest::newRow("no signal") << Signal::SignalCount << 1.0 << QStringLiteral("that signal takes no commands");
        const auto row = [](const char* name, Signal signal, double value, const char* reason) {
            QTest::newRow(name) << signal << value << QString::fromLatin1(reason);
        };
        row("half running", Signal::IsRunning, 0.5, "P101.RUNNING cannot be set to 0.5: only to 0 or 1");
        row("a third state", Signal::BreakerIsClosed, 2, "Q101.CLOSED cannot be set to 2: only to 0 or 1");
        row("a state below", Signal::InletIsOpen, -1, "V101.OPEN cannot be set to -1: only to 0 or 1");
        row("a state that is no number", Signal::OutletIsOpen, std::nan(""),
            "V102.OPEN cannot be set to nan: only to 0 or 1");
        row("below the closed position", Signal::InletPosition, -0.5,
            "V101.POSITION cannot be set to -0.5: only to 0 to 100 %");
        row("above the open position", Signal::OutletPosition, 100.5,
            "V102.POSITION cannot be set to 100.5: only to 0 to 100 %");
        row("a position that is no number", Signal::OutletPosition, std::nan(""),
            "V102.POSITION cannot be set to nan: only to 0 to 100 %");
        row("a position without end", Signal::InletPosition, std::numeric_limits<double>::infinity(),
            "V101.POSITION cannot be set to inf: only to 0 to 100 %");
    }

    void refusesWhatIsNoOrder()
    {
        QFETCH(Signal, signal);
        QFETCH(double, value);
        QFETCH(QString, reason);
        WaterLoopModel model(4);
        WaterLoopModel untouched(4);
        const auto ordered = model.command(signal, value);
        QVERIFY(!ordered);
        QCOMPARE(ordered.error(), reason);
        for (int step = 0; step < stepsPerMinute; ++step) {
            model.step();
            untouched.step();
            QVERIFY(areSame(model, untouched));
        }
    }

    void takesCommandsToDevices()
    {
        int count = 0;
        for (std::size_t signal = 0; signal < WaterLoopModel::SignalCount; ++signal) {
            WaterLoopModel model(1);
            QCOMPARE(WaterLoopModel::takesCommands(Signal(signal)), bool(model.command(Signal(signal), 1)));
            count += WaterLoopModel::takesCommands(Signal(signal)) ? 1 : 0;
        }
        QCOMPARE(count, 6);
        QVERIFY(!WaterLoopModel::takesCommands(Signal::SignalCount));
    }

    void noWaterIsLostUnderAnyCommands()
    {
        WaterLoopModel model(9);
        WaterLoopModel twin(9);
        std::mt19937 random(9);
        const double begin = model.tankVolume() + model.pipeVolume();
        for (int step = 0; step < stepsPerDay / 4; ++step) {
            if (random() % 100 == 0) {
                const auto signal = Signal(Signal::IsRunning + random() % 6);
                const bool isPosition = signal == Signal::InletPosition || signal == Signal::OutletPosition;
                const double value = double(random() % (isPosition ? 101 : 2));
                QVERIFY(model.command(signal, value));
                QVERIFY(twin.command(signal, value));
            }
            model.step();
            twin.step();
            QVERIFY(areSame(model, twin)); // no value is NaN either
            const double now = model.tankVolume() + model.pipeVolume() + model.drainedVolume() - model.addedVolume();
            QVERIFY(std::abs(now - begin) < 1e-6);
            QVERIFY(model.tankVolume() >= 0 && model.tankVolume() <= 120 && model.pipeVolume() >= 0);
        }
    }

private:
    std::map<Event, Ranges> m_ranges;
};

QTEST_APPLESS_MAIN(tst_WaterLoopModel)
#include "tst_waterloopmodel.moc"
