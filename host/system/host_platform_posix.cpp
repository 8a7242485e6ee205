#include "host_platform.h"

#include "host_error.h"
#include "zrhost_config.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <langinfo.h>
#include <poll.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zrhost {

namespace {

using std::chrono::steady_clock;

std::string errorText(int error)
{
    return std::generic_category().message(error);
}

int descriptorOf(const StopSignal& stop)
{
    return static_cast<int>(stop.descriptor());
}

/// Owns a file descriptor.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        reset();
        m_fd = std::exchange(other.m_fd, -1);
        return *this;
    }

    [[nodiscard]] int get() const { return m_fd; }
    void reset()
    {
        if (m_fd >= 0)
            close(m_fd);
        m_fd = -1;
    }

private:
    int m_fd = -1;
};

class FileSource : public ByteSource
{
public:
    FileSource(const std::string& file, const StopSignal& stop)
        : m_file(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))
        , m_stop(stop)
    {
        if (m_file.get() < 0)
            throw HostError("cannot read '" + file + "': " + errorText(errno));
    }

    std::size_t read(std::uint8_t* bytes, std::size_t size) override
    {
        while (true) {
            std::array<pollfd, 2> waiting{
                {{descriptorOf(m_stop), POLLIN, 0}, {m_file.get(), POLLIN, 0}}};
            if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
                throw HostError("cannot wait for data: " + errorText(errno));
            if (waiting[0].revents != 0)
                throw Stopped();
            const ssize_t got = ::read(m_file.get(), bytes, size);
            if (got >= 0)
                return static_cast<std::size_t>(got);
            if (errno != EINTR && errno != EAGAIN)
                throw HostError("cannot read: " + errorText(errno));
        }
    }

    bool rewind() override { return lseek(m_file.get(), 0, SEEK_SET) == 0; }

private:
    Descriptor m_file;
    const StopSignal& m_stop;
};

int g_startNice = 0;

} // namespace

void useUtf8Text()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    // The environment too: the module's Qt reads it when it starts.
    setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "");
}

std::vector<std::string> programArguments(int argc, char** argv)
{
    return {argv + 1, argv + argc};
}

std::string toLocal8Bit(const std::string& utf8)
{
    return utf8; // see useUtf8Text()
}

std::string fromLocal8Bit(const std::string& local)
{
    return local; // see useUtf8Text()
}

std::string whyUnreadable(const std::string& file)
{
    struct stat status
    {
    };
    if (stat(file.c_str(), &status) != 0)
        return errorText(errno);
    if (S_ISDIR(status.st_mode))
        return errorText(EISDIR);
    return access(file.c_str(), R_OK) == 0 ? std::string() : errorText(errno);
}

std::string programFile()
{
    std::array<char, 4096> path{};
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
    return size > 0 ? std::string(path.data(), static_cast<std::size_t>(size)) : "./";
}

std::vector<std::string> libraryCandidates(const std::string& folder)
{
    // Beside the program, in the build tree, and where the install step puts it.
    return {folder + "/" ZRHOST_LIBRARY, folder + "/../zrscreenmod/" ZRHOST_LIBRARY,
            folder + "/../" ZRHOST_INSTALL_LIBDIR "/" ZRHOST_LIBRARY};
}

bool inputIsTerminal()
{
    // Reading the terminal from the background would stop the process.
    return isatty(STDIN_FILENO) == 1 && tcgetpgrp(STDIN_FILENO) == getpgrp();
}

void rememberStartPriority()
{
    errno = 0;
    g_startNice = getpriority(PRIO_PROCESS, 0);
}

void restoreStartPriority()
{
    // On Linux both act on the calling thread alone. Lowering a priority needs no privilege, so
    // there is nothing to report.
    const sched_param parameters{};
    sched_setscheduler(0, SCHED_OTHER, &parameters);
    setpriority(PRIO_PROCESS, 0, g_startNice);
}

DynamicLibrary::DynamicLibrary(const std::string& file)
    : m_handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (!m_handle) {
        const char* const reason = dlerror();
        throw HostError("cannot load the library: " + std::string(reason ? reason : file));
    }
}

DynamicLibrary::~DynamicLibrary()
{
    dlclose(m_handle);
}

void* DynamicLibrary::symbol(const char* name) const
{
    return dlsym(m_handle, name);
}

StopSignal::StopSignal()
    : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_descriptor < 0)
        throw HostError("cannot make an event: " + errorText(errno));
}

StopSignal::~StopSignal()
{
    close(descriptorOf(*this));
}

void StopSignal::raise()
{
    // Can only fail when the counter is full, and then the signal is raised already.
    eventfd_write(descriptorOf(*this), 1);
}

bool StopSignal::sleepUntil(steady_clock::time_point time) const
{
    while (true) {
        using std::chrono::nanoseconds;
        const auto left = std::max(nanoseconds(time - steady_clock::now()), nanoseconds(0));
        constexpr long long kNsPerSecond = 1'000'000'000;
        const timespec timeout{static_cast<time_t>(left.count() / kNsPerSecond),
                               static_cast<long>(left.count() % kNsPerSecond)};
        pollfd waiting{descriptorOf(*this), POLLIN, 0};
        const int ready = ppoll(&waiting, 1, &timeout, nullptr);
        if (ready > 0)
            return false;
        if (ready == 0)
            return true;
    }
}

std::unique_ptr<ByteSource> openFile(const std::string& file, const StopSignal& stop)
{
    return std::make_unique<FileSource>(file, stop);
}

} // namespace zrhost
