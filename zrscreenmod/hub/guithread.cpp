#include "guithread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <utility>

namespace {

enum class TaskState
{
    Pending,
    Running,
    Done,
    Dropped
};

/// One piece of work that a thread waits for. Guarded by g_lock, except `work`, which belongs to
/// whoever moved the state out of Pending.
struct Task
{
    explicit Task(std::function<void()>&& w)
        : work(std::move(w))
    {
    }
    bool ended() const { return state == TaskState::Done || state == TaskState::Dropped; }

    std::function<void()> work;
    TaskState state = TaskState::Pending;
    bool succeeded = false;
    std::condition_variable changed;
};

using TaskPtr = std::shared_ptr<Task>;

bool runGuarded(const std::function<void()>& work)
{
    try {
        work();
        return true;
    } catch (const std::exception& e) {
        qWarning() << "work of the GUI thread failed:" << e.what();
    } catch (...) {
        qWarning() << "work of the GUI thread failed";
    }
    return false;
}

// Only the receiver below ever gets these, so the first user type needs no registration (which
// Qt would never take back).
constexpr QEvent::Type kWorkEvent = QEvent::User;

struct WorkEvent : QEvent
{
    explicit WorkEvent(TaskPtr t)
        : QEvent(kWorkEvent)
        , task(std::move(t))
    {
    }
    explicit WorkEvent(std::function<void()>&& w)
        : QEvent(kWorkEvent)
        , work(std::move(w))
    {
    }
    const TaskPtr task;               ///< null for posted work
    const std::function<void()> work; ///< posted work
};

/// Puts what a thread writes into an event before what the GUI thread reads there. Qt's own lock
/// does so anyway, but the thread sanitizer cannot see it.
std::atomic<unsigned> g_handOver{0};

/// Under g_lock.
void postTo(QObject& receiver, WorkEvent* event)
{
    ++g_handOver;
    QCoreApplication::postEvent(&receiver, event);
}

void execute(const TaskPtr& task);

/// Lives on the GUI thread; its event queue carries the work.
class Receiver : public QObject
{
public:
    bool event(QEvent* e) override
    {
        (void)g_handOver.load();
        if (e->type() != kWorkEvent)
            return QObject::event(e);
        const auto* const workEvent = static_cast<WorkEvent*>(e);
        if (workEvent->task)
            execute(workEvent->task);
        else
            runGuarded(workEvent->work);
        return true;
    }

    // Guarded by g_lock.
    std::deque<TaskPtr> waitedFor;        ///< pending, in the order of arrival
    int callers = 0;                      ///< threads inside run()
    std::condition_variable callersGone;  ///< with callers
    quint64 wakeCount = 0;                ///< counts wake() during a drain
    std::condition_variable drainWakened; ///< with wakeCount and waitedFor
};

// All of it is initialised at compile time and needs no destructor: the library entry may run
// before the module's dynamic initialisers, and a thread that comes late, while the process ends,
// still finds it in order.
std::mutex g_lock;
Receiver* g_receiver = nullptr; // guarded by g_lock
// Kept from a shutdown during which it was in use. Only written: a leak checker reads it.
std::atomic<Receiver*> g_leftBehind{nullptr};
std::atomic<Qt::HANDLE> g_guiThread{nullptr};
std::atomic<int> g_drainers{0};

void forget(const TaskPtr& task)
{
    if (!g_receiver)
        return;
    auto& queue = g_receiver->waitedFor;
    queue.erase(std::remove(queue.begin(), queue.end(), task), queue.end());
}

void execute(const TaskPtr& task)
{
    {
        const std::lock_guard lock(g_lock);
        if (task->state != TaskState::Pending)
            return;
        task->state = TaskState::Running;
        forget(task);
    }
    const bool succeeded = runGuarded(task->work);
    // What the work holds goes before its caller, whose variables it may refer to, gets on.
    task->work = nullptr;
    const std::lock_guard lock(g_lock);
    task->succeeded = succeeded;
    task->state = TaskState::Done;
    task->changed.notify_all();
}

class DrainerCount
{
public:
    DrainerCount() { ++g_drainers; }
    ~DrainerCount() { --g_drainers; }
    Q_DISABLE_COPY(DrainerCount)
};

} // namespace

void GuiThread::init()
{
    const std::lock_guard lock(g_lock);
    if (g_receiver)
        return;
    g_receiver = new Receiver;
    g_guiThread = QThread::currentThreadId();
}

void GuiThread::shutdown()
{
    std::unique_lock lock(g_lock);
    Receiver* const receiver = std::exchange(g_receiver, nullptr);
    if (!receiver)
        return;
    for (const TaskPtr& task : receiver->waitedFor) {
        task->state = TaskState::Dropped;
        task->changed.notify_all();
    }
    receiver->waitedFor.clear();
    // The callers only need the lock to leave. When the process ends the system may have stopped
    // them already, so this wait is bounded.
    constexpr std::chrono::seconds kLeaveTimeout(1);
    const bool allGone = receiver->callersGone.wait_for(
        lock, kLeaveTimeout, [receiver] { return receiver->callers == 0; });
    const bool onGuiThread = isCurrent();
    g_guiThread = nullptr;
    lock.unlock();
    QCoreApplication::removePostedEvents(receiver);
    if (allGone && onGuiThread)
        delete receiver;
    else
        g_leftBehind = receiver;
}

bool GuiThread::isCurrent()
{
    return g_guiThread.load() == QThread::currentThreadId();
}

bool GuiThread::run(std::function<void()> work, int timeoutMs)
{
    if (isCurrent())
        return runGuarded(work);

    const auto task = std::make_shared<Task>(std::move(work));
    std::unique_lock lock(g_lock);
    Receiver* const receiver = g_receiver;
    if (!receiver) {
        lock.unlock();
        qDebug() << "g_receiver == nullptr failed";
        return false;
    }
    ++receiver->callers;
    receiver->waitedFor.push_back(task);
    receiver->drainWakened.notify_all();
    postTo(*receiver, new WorkEvent(task));

    const auto ended = [&task] { return task->ended(); };
    if (!task->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), ended)) {
        if (task->state == TaskState::Pending) {
            task->state = TaskState::Dropped;
            forget(task);
        } else {
            task->changed.wait(lock, ended);
        }
    }
    const bool ran = task->state == TaskState::Done;
    if (!ran)
        task->work = nullptr; // here, on the thread whose variables it may refer to
    // shutdown() keeps the receiver until the last caller has come past here.
    if (--receiver->callers == 0)
        receiver->callersGone.notify_all();
    lock.unlock();
    if (!ran)
        qDebug() << "wait for the GUI thread failed, timeoutMs:" << timeoutMs;
    return ran && task->succeeded;
}

void GuiThread::post(std::function<void()> work)
{
    const std::lock_guard lock(g_lock);
    if (g_receiver)
        postTo(*g_receiver, new WorkEvent(std::move(work)));
}

void GuiThread::drainUntil(const std::function<bool()>& done)
{
    if (!isCurrent())
        return;
    const DrainerCount draining;
    std::unique_lock lock(g_lock);
    Receiver* const receiver = g_receiver;
    while (true) {
        const quint64 wakeCount = receiver->wakeCount;
        lock.unlock();
        const bool isDone = done();
        lock.lock();
        if (isDone)
            break;
        if (!receiver->waitedFor.empty()) {
            lock.unlock();
            // The work is in the queue, behind what its thread has sent before.
            runGuarded([] { QCoreApplication::sendPostedEvents(); });
            lock.lock();
            continue;
        }
        receiver->drainWakened.wait(lock, [receiver, wakeCount] {
            return receiver->wakeCount != wakeCount || !receiver->waitedFor.empty();
        });
    }
}

void GuiThread::wake()
{
    // A read-modify-write, not a load: either it sees the drainer's increment, or the drainer's
    // increment comes later, reads from this one and so sees what the caller changed before.
    if (g_drainers.fetch_add(0) == 0)
        return;
    const std::lock_guard lock(g_lock);
    if (!g_receiver)
        return;
    ++g_receiver->wakeCount;
    g_receiver->drainWakened.notify_all();
}
