#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Notices that a script runs for too long, from a thread of its own, and has the interpreter call back.
///
/// The call comes on the GUI thread, between two steps of the script (Py_AddPendingCall). A script that is over by then
/// is told by its run's number. Beginning and ending a run costs a look at the clock and two stores.
class ScriptWatch
{
public:
    using Callback = int (*)(void* run);

    /// \param callback called with the number of the run; the interpreter raises what it sets when it returns -1
    explicit ScriptWatch(Callback callback) : m_callback(callback) {}
    ~ScriptWatch();

    /// A run begins now and has to end after \p limit.
    void begin(std::chrono::milliseconds limit);
    void end() { m_run.store(0); }
    /// Whether the run of that number is still on.
    bool isOn(quintptr run) const { return m_run.load() == run; }

private:
    using Clock = std::chrono::steady_clock;

    void watch();
    std::chrono::nanoseconds timeLeft() const;
    void callBack(quintptr run);

    Callback m_callback;
    std::atomic<quintptr> m_run{0}; ///< 0 between runs
    std::atomic<Clock::rep> m_deadline{0};
    std::atomic<bool> m_isAwake{false};
    quintptr m_lastRun = 0;
    bool m_isEnding = false;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
};
