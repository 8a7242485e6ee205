#include "benchhost.h"

#include <glib.h>

#include <atomic>
#include <ctime>
#include <exception>
#include <future>
#include <memory>
#include <pthread.h>
#include <queue>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr auto kShowTimeout = 20s;

std::mutex g_jobLock;
std::queue<std::function<void()>> g_jobs; // guarded by g_jobLock
std::atomic<bool> g_serving{true};
std::atomic<pthread_t> g_guiThread;

std::function<void()> takeJob()
{
    const std::lock_guard lock(g_jobLock);
    if (g_jobs.empty())
        return {};
    auto job = std::move(g_jobs.front());
    g_jobs.pop();
    return job;
}

void postJob(std::function<void()> job)
{
    {
        const std::lock_guard lock(g_jobLock);
        g_jobs.push(std::move(job));
    }
    g_main_context_wakeup(nullptr);
}

std::chrono::nanoseconds clockTime(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(std::string("the library refused: ") + what);
}

std::string userId(int number)
{
    return "user-" + std::to_string(number);
}

int ignoreMessage(unsigned long, unsigned long long, long long)
{
    return 1;
}

} // namespace

void serveGui()
{
    g_guiThread = pthread_self();
    while (g_serving) {
        if (const auto job = takeJob())
            job();
        else
            g_main_context_iteration(nullptr, TRUE);
    }
}

void stopServing()
{
    g_serving = false;
    g_main_context_wakeup(nullptr);
}

void onGui(const std::function<void()>& job)
{
    // Shared: the waiting thread may go on while the GUI thread is still leaving the task.
    const auto task = std::make_shared<std::packaged_task<void()>>(job);
    postJob([task] { (*task)(); });
    task->get_future().get();
}

void drainEvents()
{
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
}

std::chrono::nanoseconds guiCpuTime()
{
    clockid_t clock{};
    pthread_getcpuclockid(g_guiThread, &clock);
    return clockTime(clock);
}

std::chrono::nanoseconds processCpuTime()
{
    return clockTime(CLOCK_PROCESS_CPUTIME_ID);
}

GuiHold::GuiHold()
{
    std::promise<void> held;
    postJob([this, &held] {
        std::unique_lock lock(m_mutex);
        held.set_value();
        m_changed.wait(lock, [this] { return m_released; });
        m_left = true;
        m_changed.notify_all();
    });
    held.get_future().get();
}

GuiHold::~GuiHold()
{
    std::unique_lock lock(m_mutex);
    m_released = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_left; });
}

Meeting::Meeting(unsigned widthPx, unsigned heightPx)
    : m_window(int(widthPx), int(heightPx))
{
    onGui([this, widthPx, heightPx] {
        m_screen = ZRScreen_Init(m_window.hwnd(), ignoreMessage);
        require(m_screen != nullptr, "ZRScreen_Init");
        tagRECT rect{0, 0, int(widthPx), int(heightPx)};
        require(ZRScreen_MoveWindow(m_screen, &rect, 0) == 1, "ZRScreen_MoveWindow");
        require(ZRScreen_JoinMeetingFinish(m_screen, true) == 1, "ZRScreen_JoinMeetingFinish");
    });
}

Meeting::~Meeting()
{
    onGui([this] {
        ZRScreen_Release(m_screen);
        drainEvents();
    });
}

void* Meeting::add(int number)
{
    std::string id = userId(number);
    std::string name = "Participant " + std::to_string(number);
    void* const play = ZRScreen_AddPerson(m_screen, id.data(), name.data(), number, 0, nullptr);
    require(play != nullptr, "ZRScreen_AddPerson");
    return play;
}

void Meeting::remove(void* play)
{
    require(ZRScreen_DelPerson(m_screen, play, false) == 1, "ZRScreen_DelPerson");
}

std::vector<void*> Meeting::addShown(int count)
{
    std::vector<void*> plays;
    onGui([&] {
        for (int number = 1; number <= count; ++number)
            plays.push_back(add(number));
        drainEvents();
    });
    for (int number = 1; number <= count; ++number)
        waitUntilShown(number);
    return plays;
}

void Meeting::waitUntilShown(int number) const
{
    std::string id = userId(number);
    const auto deadline = std::chrono::steady_clock::now() + kShowTimeout;
    while (ZRScreen_IsPersonVisible(m_screen, id.data()) != 1) {
        require(std::chrono::steady_clock::now() < deadline, "to show a tile");
        std::this_thread::sleep_for(5ms);
    }
}

void Meeting::play(void* play, Picture& picture) const
{
    require(ZRScreen_PlayFrame(m_screen, play, &picture.frame) == 1, "ZRScreen_PlayFrame");
}
