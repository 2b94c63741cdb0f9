#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QtGlobal>

#include <tl/expected.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <random>

/// A small water circulation loop: a tank, an inlet valve, a pump with its motor and breaker, an outlet valve, and the
/// pipe back to the tank.
///
/// It runs at about 125 l/min. Every nine to eleven minutes (the first time after one to two) something happens, which
/// the seed chooses: the inlet valve is throttled for two minutes, so that the flow falls and the pump cavitates; the
/// pump is stopped and started again; its breaker trips; or water is added, which a drain then takes away. Quantities
/// follow lumped balances with constants of a laboratory bed; what a seed gives is the same on every run, bit for bit.
///
/// Commands are followed at once, also against what is happening, and stay when that is over: a pump that was ordered to
/// stop is not started by the end of an event. What happens takes hold of a device again only when it begins. A pump
/// that is ordered to run turns while the breaker is closed. Between the same commands at the same steps, a seed gives
/// the same too.
class KORVANE_HOST_EXPORT WaterLoopModel
{
public:
    /// What instruments show.
    enum Signal : std::size_t {
        Flow,             ///< l/min
        Pressure,         ///< behind the pump, bar
        Current,          ///< of the motor, A
        Voltage,          ///< at the motor, V
        Vibration1,       ///< g
        Vibration2,       ///< g
        BodyTemperature,  ///< of the motor, degrees Celsius
        FluidTemperature, ///< degrees Celsius
        Level,            ///< of the tank, %
        IsRunning,        ///< of the pump, 0 or 1
        InletIsOpen,      ///< 0 or 1
        OutletIsOpen,     ///< 0 or 1
        InletPosition,    ///< %
        OutletPosition,   ///< %
        BreakerIsClosed,  ///< 0 or 1
        SignalCount
    };

    /// Names of the signals, by their numbers: "P101.FLOW".
    static const std::array<const char*, SignalCount> signalNames;

    static constexpr std::chrono::milliseconds stepTime{100};

    enum class Event { None, InletThrottled, PumpStopped, BreakerTripped, WaterAdded };

    explicit WaterLoopModel(quint32 seed);

    /// Lets one step pass.
    void step();

    /// Whether a command can change what \p signal shows: running, closed and open, and the valves' positions.
    static bool takesCommands(Signal signal);
    /// Orders a pump to run (1) or stop (0), the breaker and valves to close or open (0 or 1 as the signal shows it), or
    /// a valve to a position from 0 to 100 %. The next steps follow.
    /// \returns why the order is refused, and then nothing changed: another signal or another value.
    [[nodiscard]] tl::expected<void, QString> command(Signal signal, double value);

    /// As an instrument shows it after the last step, with the noise that it has.
    double value(Signal signal) const { return m_values[signal]; }
    /// What is happening.
    Event event() const { return m_event; }

    /// Litres in the tank, and on their way back to it.
    double tankVolume() const { return m_tankVolume; }
    double pipeVolume() const { return m_pipeVolume; }
    /// Litres that were added and taken away since the beginning.
    double addedVolume() const { return m_addedVolume; }
    double drainedVolume() const { return m_drainedVolume; }

private:
    /// What devices are told.
    struct Orders
    {
        bool isPumpOn = true;
        bool isBreakerClosed = true;
        double inlet = 1; ///< of fully open
        double outlet = 1;
    };

    static void place(Orders& orders, Signal signal, double value);
    double uniform();
    double noise();

    void followScript();
    void takeHold();
    void moveValves();
    void moveWater();
    void movePump();
    void moveTemperatures();
    void measure();
    double cavitation() const;

    std::mt19937 m_random;
    std::array<double, SignalCount> m_values = {};

    Event m_event = Event::None;
    int m_stepsToNext; ///< until the event ends, or the next one begins
    Orders m_wanted;   ///< by the operators
    Orders m_orders;   ///< in force: what is wanted, with what the event makes of it

    double m_inlet = 1; ///< open, of fully
    double m_outlet = 1;
    double m_speed = 1;  ///< of the pump, of the nominal one
    double m_flow = 125; ///< l/min
    double m_tankVolume = 72;
    double m_pipeVolume = 8;
    double m_addedVolume = 0;
    double m_drainedVolume = 0;
    bool m_isDraining = false;
    double m_bodyTemperature = 90;
    double m_fluidTemperature = 27;
    double m_voltageDrift = 0; ///< V
};
