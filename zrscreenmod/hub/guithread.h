// Work for the GUI thread: handed over from any thread, waited for or not.
#pragma once

#include <functional>

/// The GUI thread, as a place to run work on.
///
/// Work is delivered through Qt's event queue of the GUI thread, so it keeps its order with the
/// queued signals that the same thread emitted before and after.
///
/// A thread that waits in run() must hold no lock that the GUI thread may take.
class GuiThread
{
public:
    static constexpr int kDefaultTimeoutMs = 10000;

    /// Makes the calling thread the GUI thread. A QCoreApplication must exist. Further calls do
    /// nothing until shutdown().
    static void init();

    /// Takes no more work, drops what has not begun and lets every waiting thread go with a
    /// refusal. Must come before the application object is deleted. GUI thread; at the end of the
    /// process also another one.
    static void shutdown();

    /// True on the GUI thread; false everywhere before init() and after shutdown(). Any thread.
    [[nodiscard]] static bool isCurrent();

    /// Runs `work` on the GUI thread and waits for its end; on the GUI thread itself it runs at
    /// once. Work that has not begun after `timeoutMs` milliseconds is dropped; once begun it is
    /// waited for, however long it takes. Any thread.
    /// @return false when the work did not run, or ended with an exception (which is logged).
    [[nodiscard]] static bool run(std::function<void()> work, int timeoutMs = kDefaultTimeoutMs);

    /// Queues `work` and returns; also from the GUI thread itself. Dropped at shutdown. An
    /// exception that leaves the work is logged. Any thread.
    static void post(std::function<void()> work);

    /// Blocks the GUI thread until `done` returns true, and meanwhile runs the work that other
    /// threads wait for, so that they can get on. What is in the event queue at that moment is
    /// delivered with it, in its order: no work overtakes a signal that its thread has emitted
    /// before. `done` is asked again after that and after each wake(); it is called without any
    /// lock of this class. May nest. GUI thread.
    static void drainUntil(const std::function<bool()>& done);

    /// To be called by any thread after it has changed what the `done` of a drainUntil() reads.
    /// Costs one atomic operation while nobody drains. Any thread.
    static void wake();

    GuiThread() = delete;
};
