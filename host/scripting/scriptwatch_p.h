#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Notices that a script runs for too long, from a thread of its own, and has the interpreter call back.
///
/// The call comes on the GUI thread, between two steps of a script (Py_AddPendingCall); it may come late, when another
/// script runs, and has to ask isOverdue(). Beginning and ending a run costs a look at the clock and two stores.
class ScriptWatch
{
public:
    using Callback = int (*)(void*);

    /// \param callback called with null; the interpreter raises what it sets when it returns -1
    explicit ScriptWatch(Callback callback) : m_callback(callback) {}
    ~ScriptWatch(); // NOLINT(bugprone-exception-escape)
    Q_DISABLE_COPY(ScriptWatch)

    /// A run begins now and has to end after \p limit.
    void begin(std::chrono::milliseconds limit);
    void end() { m_isOn.store(false); }
    /// Whether a run is on and its time is over.
    bool isOverdue() const { return m_isOn.load() && timeLeft() <= std::chrono::nanoseconds::zero(); }

private:
    using Clock = std::chrono::steady_clock;

    void watch();
    std::chrono::nanoseconds timeLeft() const;
    void callBack();

    Callback m_callback;
    std::atomic<bool> m_isOn{false};
    std::atomic<Clock::rep> m_deadline{0};
    std::atomic<bool> m_isAwake{false};
    bool m_isEnding = false;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
};
