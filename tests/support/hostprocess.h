// What the tests need of their own process: its event loop and threads, what is loaded, memory
// that cannot be read, and what goes to stderr.
#pragma once

#include "check.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <ios>
#include <string>

using Clock = std::chrono::steady_clock;

/// How much of something a test does: a number of the environment's, if it names one.
inline long long setting(const char* name, long long standard)
{
    const char* const value = std::getenv(name);
    return value ? std::atoll(value) : standard;
}

/// Runs the event loop of this thread for a time.
void pump(int timeMs);

/// Runs the event loop until `done` holds. @return false when it did not within the time
[[nodiscard]] bool pumpUntil(const std::function<bool()>& done, int timeoutMs = 5000);

/// Whether another thread has done its work.
inline bool hasEnded(const std::future<void>& work)
{
    return work.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

/// Runs `body` on another thread, while this one runs its event loop until that has ended and what
/// it posted is done.
void runElsewhere(const std::function<void()>& body);

namespace native {

/// Lets the event loop of this thread do what is due. @return false when nothing was
bool runEventLoopOnce();

/// Whether a library is in the process, by its name without what the system adds.
bool isLoaded(const std::string& name);

/// Where a loaded library lies.
struct Range
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};
Range rangeOf(const std::string& library);
/// Closes addresses that are free, for good: nobody else gets them, and whoever reads there is
/// caught. @return whether they were free
[[nodiscard]] bool closeOff(const Range& range);

/// Threads of this process.
int threadCount();

/// Memory in whole pages, for good; closed it can neither be read nor written.
std::size_t pageSize();
void* makePages(std::size_t bytes);
bool protectPages(void* pages, std::size_t bytes, bool isOpen);

} // namespace native

/// Pages of which every second one can be read, the first included. They are full of 'a'.
class PatchyMemory
{
public:
    static constexpr std::size_t kPages = 6;
    PatchyMemory()
    {
        std::memset(begin, 'a', kPages * page);
        for (std::size_t i = 1; i < kPages; i += 2)
            open(i, false);
    }
    PatchyMemory(const PatchyMemory&) = delete;
    PatchyMemory& operator=(const PatchyMemory&) = delete;
    /// Lets a page be read and written, or not.
    void open(std::size_t index, bool isOpen = true) const
    {
        REQUIRE(native::protectPages(begin + index * page, page, isOpen));
    }

    const std::size_t page = native::pageSize(); ///< bytes
    char* const begin = static_cast<char*>(native::makePages(kPages * page));
};

/// Collects what the process writes to stderr, where the library's log goes, while it lives.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    /// What was written since the last call.
    [[nodiscard]] std::string take();

private:
    std::filesystem::path m_path;
    int m_stderr;
    std::streamoff m_readTo = 0;
};
