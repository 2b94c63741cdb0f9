#include "host/core/replayclock.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace {

qint64 monotonicMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

} // namespace

ReplayClock::ReplayClock(qint64 startMs, double speed, Base base)
    : m_base(base ? std::move(base) : Base(monotonicMs)), m_startMs(startMs), m_speed(speed), m_anchorMs(m_base())
{
    Q_ASSERT(speed > 0);
}

qint64 ReplayClock::nowMs() const
{
    return m_startMs + qint64(std::floor(playedMs()));
}

double ReplayClock::playedMs() const
{
    return m_isPaused ? m_playedMs : m_playedMs + m_speed * double(m_base() - m_anchorMs);
}

/// Makes this moment the one from which on time is counted.
void ReplayClock::anchor()
{
    const qint64 baseMs = m_base();
    if (!m_isPaused)
        m_playedMs += m_speed * double(baseMs - m_anchorMs);
    m_anchorMs = baseMs;
}

void ReplayClock::setSpeed(double speed)
{
    Q_ASSERT(speed > 0);
    anchor();
    m_speed = speed;
}

void ReplayClock::pause()
{
    anchor();
    m_isPaused = true;
}

void ReplayClock::resume()
{
    anchor();
    m_isPaused = false;
}

void ReplayClock::seek(qint64 timeMs)
{
    m_startMs = timeMs;
    m_playedMs = 0;
    m_anchorMs = m_base();
}
