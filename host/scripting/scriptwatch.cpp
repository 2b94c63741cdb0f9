#include "host/scripting/scriptwatch_p.h"

#include "host/scripting/python_p.h"

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds longestLook{50};  // between two looks while scripts run
constexpr std::chrono::milliseconds betweenCalls{10}; // the script may be in code that does not come back for a while
constexpr int idleLooks = 20;                         // before the thread goes to sleep

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): from a mutex that can't be locked there is no way back
ScriptWatch::~ScriptWatch()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    const py::gil_scoped_release released; // the thread may be waiting for the interpreter
    m_thread.join();
}

void ScriptWatch::begin(std::chrono::milliseconds limit)
{
    m_deadline.store((Clock::now() + limit).time_since_epoch().count());
    m_isOn.store(true);
    if (m_isAwake.exchange(true))
        return;
    if (!m_thread.joinable())
        m_thread = std::thread([this] { watch(); });
    const std::lock_guard lock(m_mutex);
    m_wake.notify_one();
}

std::chrono::nanoseconds ScriptWatch::timeLeft() const
{
    return Clock::time_point(Clock::duration(m_deadline.load())) - Clock::now();
}

void ScriptWatch::callBack()
{
    Py_AddPendingCall(m_callback, nullptr); // when its queue is full, one of ours is in it
    // Python 3.11 looks at what other threads left there only when one of them asks for the interpreter.
    const py::gil_scoped_acquire asked;
}

void ScriptWatch::watch()
{
    std::unique_lock lock(m_mutex);
    int idle = 0;
    while (!m_isEnding) {
        if (isOverdue()) {
            lock.unlock();
            callBack();
            lock.lock();
            m_wake.wait_for(lock, betweenCalls);
        } else if (m_isOn.load()) {
            idle = 0;
            m_wake.wait_for(lock, std::min<std::chrono::nanoseconds>(timeLeft(), longestLook));
        } else if (++idle < idleLooks) {
            m_wake.wait_for(lock, longestLook);
        } else {
            idle = 0;
            m_isAwake.store(false);
            // A run that began before the store saw the thread awake and does not wake it.
            if (!m_isOn.load())
                m_wake.wait(lock, [this] { return m_isAwake.load() || m_isEnding; });
            m_isAwake.store(true);
        }
    }
}
