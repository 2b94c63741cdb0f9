#include "host/sources/waterloopmodel.h"

#include <algorithm>
#include <cmath>

const std::array<const char*, WaterLoopModel::SignalCount> WaterLoopModel::signalNames = {
    "P101.FLOW",        "P101.PRESSURE",    "P101.CURRENT",           "P101.VOLTAGE",  "P101.VIBRATION_1",
    "P101.VIBRATION_2", "P101.TEMPERATURE", "LOOP.FLUID_TEMPERATURE", "TK101.LEVEL",   "P101.RUNNING",
    "V101.OPEN",        "V102.OPEN",        "V101.POSITION",          "V102.POSITION", "Q101.CLOSED",
};

namespace {

using Event = WaterLoopModel::Event;

constexpr double stepSeconds = std::chrono::duration<double>(WaterLoopModel::stepTime).count();
constexpr int stepsPerSecond = int(std::chrono::seconds(1) / WaterLoopModel::stepTime);

// Hydraulics. Losses and the pump's own resistance are bar at the nominal flow and full openings; they grow with the
// square of the flow, and those of valves with the inverse square of the opening.
constexpr double nominalFlow = 125; // l/min
constexpr double shutOffPressure = 0.80;
constexpr double pumpLoss = 0.35;
constexpr double inletLoss = 0.07;
constexpr double outletLoss = 0.13;
constexpr double pipeLoss = 0.25;
constexpr double leastOpening = 0.01; // below, a valve is closed
constexpr double flowSeconds = 0.8;   // the water's inertia

// Volumes in litres.
constexpr double tankCapacity = 120;
constexpr double leastVolume = 6;      // the pump's suction lies bare below
constexpr double returnSeconds = 3.84; // that water is in the pipe back to the tank
constexpr double surgeRate = 0.8;      // l/s
constexpr double drainRate = 0.1;      // l/s
constexpr double drainBegins = 0.75;   // of the tank's capacity
constexpr double drainEnds = 0.60;

// Machines.
constexpr double valveSeconds = 8; // from closed to open
constexpr double runUpSeconds = 1.5;
constexpr double runDownSeconds = 4;

// Temperatures in degrees Celsius.
constexpr double ambient = 22;
constexpr double surgeTemperature = 24;
constexpr double bodyRise = 68; // of the running motor
constexpr double bodySeconds = 1800;
constexpr double fluidRise = 5; // of 80 litres by the pump's losses
constexpr double fluidSeconds = 5580;

struct Scene
{
    Event event;
    int seconds;
};

constexpr std::array<Scene, 4> scenes = {{
    {Event::InletThrottled, 120},
    {Event::PumpStopped, 75},
    {Event::BreakerTripped, 45},
    {Event::WaterAdded, 30},
}};

/// Moves at most by \p step.
double moved(double from, double to, double step)
{
    return from + std::clamp(to - from, -step, step);
}

double square(double number)
{
    return number * number;
}

double bit(bool is)
{
    return is ? 1 : 0;
}

} // namespace

WaterLoopModel::WaterLoopModel(quint32 seed) : m_random(seed), m_stepsToNext(0)
{
    m_stepsToNext = int((60 + 60 * uniform()) * stepsPerSecond);
    measure();
}

/// At least 0, below 1. Made by hand: what the library's distributions give differs from one to the other.
double WaterLoopModel::uniform()
{
    return double(m_random() >> 8U) / double(1U << 24U);
}

/// Mean 0, deviation 1, never beyond 3.47: four uniform numbers are near enough to a normal one.
double WaterLoopModel::noise()
{
    const double sum = uniform() + uniform() + uniform() + uniform();
    return (sum - 2) * 1.7320508075688772;
}

void WaterLoopModel::step()
{
    followScript();
    moveValves();
    moveWater();
    movePump();
    moveTemperatures();
    measure();
}

void WaterLoopModel::followScript()
{
    if (--m_stepsToNext > 0)
        return;
    if (m_event == Event::None) {
        const Scene& scene = scenes[std::min(scenes.size() - 1, std::size_t(uniform() * double(scenes.size())))];
        m_event = scene.event;
        m_stepsToNext = scene.seconds * stepsPerSecond;
    } else {
        m_event = Event::None;
        m_stepsToNext = int((540 + 120 * uniform()) * stepsPerSecond);
    }
    takeHold();
}

/// Makes the orders those of the operators, but for the device that the event is about.
void WaterLoopModel::takeHold()
{
    m_orders = m_wanted;
    if (m_event == Event::InletThrottled)
        m_orders.inlet = std::min(m_wanted.inlet, 0.16 + 0.1 * uniform());
    if (m_event == Event::BreakerTripped)
        m_orders.isBreakerClosed = false;
    // The outlet closes with the pump; where that stands already, there is nothing to stop.
    if (m_event == Event::PumpStopped && m_wanted.isPumpOn) {
        m_orders.isPumpOn = false;
        m_orders.outlet = 0;
    }
}

bool WaterLoopModel::takesCommands(Signal signal)
{
    return signal >= IsRunning && signal < SignalCount;
}

tl::expected<void, QString> WaterLoopModel::command(Signal signal, double value)
{
    if (!takesCommands(signal)) {
        const char* name = signal < SignalCount ? signalNames[signal] : "that signal";
        return tl::make_unexpected(QStringLiteral("%1 takes no commands").arg(QLatin1String(name)));
    }
    const QLatin1String name(signalNames[signal]);
    const bool isPosition = signal == InletPosition || signal == OutletPosition;
    // Comparing with NaN is false.
    if (isPosition && !(value >= 0 && value <= 100))
        return tl::make_unexpected(QStringLiteral("%1 cannot be set to %2: only to 0 to 100 %").arg(name).arg(value));
    if (!isPosition && value != 0 && value != 1)
        return tl::make_unexpected(QStringLiteral("%1 cannot be set to %2: only to 0 or 1").arg(name).arg(value));
    place(m_wanted, signal, value);
    place(m_orders, signal, value);
    return {};
}

void WaterLoopModel::place(Orders& orders, Signal signal, double value)
{
    switch (signal) {
    case IsRunning:
        orders.isPumpOn = value != 0;
        break;
    case BreakerIsClosed:
        orders.isBreakerClosed = value != 0;
        break;
    case InletIsOpen:
        orders.inlet = value;
        break;
    case OutletIsOpen:
        orders.outlet = value;
        break;
    case InletPosition:
        orders.inlet = value / 100;
        break;
    case OutletPosition:
        orders.outlet = value / 100;
        break;
    default:
        break;
    }
}

void WaterLoopModel::moveValves()
{
    m_inlet = moved(m_inlet, m_orders.inlet, stepSeconds / valveSeconds);
    m_outlet = moved(m_outlet, m_orders.outlet, stepSeconds / valveSeconds);
}

/// Every litre that leaves one place comes to another, or is counted.
void WaterLoopModel::moveWater()
{
    const bool isBlocked = m_inlet < leastOpening || m_outlet < leastOpening;
    const double losses = pumpLoss + pipeLoss + inletLoss / square(std::max(m_inlet, leastOpening)) +
                          outletLoss / square(std::max(m_outlet, leastOpening));
    const double suction = std::clamp(m_tankVolume / leastVolume, 0.0, 1.0);
    const double steadyFlow = isBlocked ? 0 : nominalFlow * m_speed * suction * std::sqrt(shutOffPressure / losses);
    m_flow += (steadyFlow - m_flow) * stepSeconds / flowSeconds;

    const double pumped = std::min(m_flow / 60 * stepSeconds, m_tankVolume);
    const double returned = m_pipeVolume * stepSeconds / returnSeconds;
    const double added = m_event == Event::WaterAdded ? surgeRate * stepSeconds : 0;
    m_tankVolume += returned - pumped + added;
    m_pipeVolume += pumped - returned;
    m_addedVolume += added;
    m_fluidTemperature += (surgeTemperature - m_fluidTemperature) * added / (m_tankVolume + m_pipeVolume);

    m_isDraining = m_tankVolume > (m_isDraining ? drainEnds : drainBegins) * tankCapacity;
    const double overflow = std::max(0.0, m_tankVolume - tankCapacity);
    const double drained = overflow + (m_isDraining ? drainRate * stepSeconds : 0);
    m_tankVolume -= drained;
    m_drainedVolume += drained;
}

void WaterLoopModel::movePump()
{
    const bool isDriven = m_orders.isPumpOn && m_orders.isBreakerClosed;
    m_speed =
        isDriven ? moved(m_speed, 1, stepSeconds / runUpSeconds) : moved(m_speed, 0, stepSeconds / runDownSeconds);
}

void WaterLoopModel::moveTemperatures()
{
    const double load = m_speed * (0.4 + 0.6 * m_flow / nominalFlow);
    m_bodyTemperature += (ambient + bodyRise * load - m_bodyTemperature) * stepSeconds / bodySeconds;
    m_fluidTemperature += (ambient + fluidRise * load - m_fluidTemperature) * stepSeconds / fluidSeconds;
}

/// 0 for none to 1: how far the pressure at the pump's inlet falls short.
double WaterLoopModel::cavitation() const
{
    const double loss = inletLoss * square(m_flow / nominalFlow / std::max(m_inlet, leastOpening));
    return std::clamp((loss - 0.12) / 0.5, 0.0, 1.0);
}

void WaterLoopModel::measure()
{
    const double turning = square(m_speed);
    const double cavity = cavitation() * turning;
    const bool isDriven = m_orders.isPumpOn && m_orders.isBreakerClosed;
    const double behindPump =
        (pipeLoss + outletLoss / square(std::max(m_outlet, leastOpening))) * square(m_flow / nominalFlow);
    const double closedOutlet = shutOffPressure * turning; // against a closed valve the pump gives all it can
    m_voltageDrift = std::clamp(m_voltageDrift + 0.05 * noise(), -5.0, 5.0);

    m_values[Flow] = std::max(0.0, m_flow + (0.8 + 3 * cavity) * noise() * turning);
    m_values[Pressure] = std::min(behindPump, closedOutlet) + (0.01 + 0.02 * turning) * noise();
    const double startCurrent = isDriven ? 2.5 * (1 - m_speed) : 0;
    const double load = 1.1 + 1.1 * m_flow / nominalFlow;
    m_values[Current] = isDriven ? std::max(0.0, load * m_speed + startCurrent + (0.06 + 0.1 * cavity) * noise()) : 0.0;
    m_values[Voltage] = m_orders.isBreakerClosed ? 230 + m_voltageDrift + 2.5 * noise() : 0.0;
    m_values[Vibration1] =
        std::max(0.0, 0.025 + 0.175 * turning + 0.12 * cavity + (0.0005 + 0.004 * turning) * noise());
    m_values[Vibration2] =
        std::max(0.0, 0.035 + 0.235 * turning + 0.18 * cavity + (0.0005 + 0.003 * turning) * noise());
    m_values[BodyTemperature] = m_bodyTemperature + 0.08 * noise();
    m_values[FluidTemperature] = m_fluidTemperature + 0.01 * noise();
    m_values[Level] = std::clamp(100 * m_tankVolume / tankCapacity + 0.1 * noise(), 0.0, 100.0);
    m_values[IsRunning] = bit(m_speed > 0.05);
    m_values[InletIsOpen] = bit(m_inlet > 0.5);
    m_values[OutletIsOpen] = bit(m_outlet > 0.5);
    m_values[InletPosition] = 100 * m_inlet;
    m_values[OutletPosition] = 100 * m_outlet;
    m_values[BreakerIsClosed] = bit(m_orders.isBreakerClosed);
}
