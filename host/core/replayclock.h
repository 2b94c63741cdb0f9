#pragma once

#include "host/hostexport.h"

#include <QtGlobal>

#include <functional>

/// A clock that begins at any moment and runs faster or slower than real time, or not at all.
///
/// It never goes back while its base doesn't, but by seek(). Not thread-safe.
class KORVANE_HOST_EXPORT ReplayClock
{
public:
    /// Milliseconds from any moment on, never fewer than before.
    using Base = std::function<qint64()>;

    /// Stands at \p startMs, milliseconds since 1970-01-01 UTC, and runs from here on.
    /// \param speed how many milliseconds pass here with one of the base; above 0
    /// \param base the system's monotonic clock unless given
    explicit ReplayClock(qint64 startMs, double speed = 1, Base base = {});

    /// Milliseconds since 1970-01-01 UTC.
    qint64 nowMs() const;

    double speed() const { return m_speed; }
    /// Runs with another speed from the moment that it shows; \p speed is above 0.
    void setSpeed(double speed);

    /// Stands still until resume(); a second call changes nothing.
    void pause();
    /// Goes on from the moment at which it stood still.
    void resume();
    bool isPaused() const { return m_isPaused; }

    /// Shows \p timeMs, milliseconds since 1970-01-01 UTC, from this moment on, also a time that it has shown before;
    /// a clock that stands still stands there then.
    void seek(qint64 timeMs);

private:
    double playedMs() const;
    void anchor();

    Base m_base;
    qint64 m_startMs;
    double m_speed;
    bool m_isPaused = false;
    // The part of a millisecond counts too: it would be lost with every change of the speed.
    double m_playedMs = 0; ///< from the start, or where it was set to, to the anchor
    qint64 m_anchorMs = 0; ///< by the base
};
