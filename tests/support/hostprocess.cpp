#include "hostprocess.h"

#include "check.h"

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <thread>
#include <unistd.h>

bool pumpUntil(const std::function<bool()>& done, int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        // Other threads may keep the loop busy for ever: it is left for a look now and then.
        const auto look = Clock::now() + std::chrono::milliseconds(5);
        while (native::runEventLoopOnce() && Clock::now() <= look) {
        }
        if (done())
            return true;
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void pump(int timeMs)
{
    (void)pumpUntil([] { return false; }, timeMs);
}

void runElsewhere(const std::function<void()>& body)
{
    std::future<void> worker = std::async(std::launch::async, body);
    CHECK(pumpUntil([&] { return hasEnded(worker); }, 60000));
    worker.get();
    pump(50);
}

LogCapture::LogCapture()
    : m_path(std::filesystem::temp_directory_path()
             / ("zrcontract-" + std::to_string(getpid()) + ".log"))
    , m_stderr(dup(fileno(stderr)))
{
    std::FILE* const file = std::fopen(m_path.string().c_str(), "ab");
    REQUIRE(file != nullptr && m_stderr >= 0);
    std::fflush(stderr);
    dup2(fileno(file), fileno(stderr));
    std::fclose(file);
}

LogCapture::~LogCapture()
{
    std::fflush(stderr);
    dup2(m_stderr, fileno(stderr));
    close(m_stderr);
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

std::string LogCapture::take()
{
    std::fflush(stderr);
    std::ifstream file(m_path, std::ios::binary);
    file.seekg(m_readTo);
    std::string log{std::istreambuf_iterator<char>(file), {}};
    m_readTo += static_cast<std::streamoff>(log.size());
    return log;
}
