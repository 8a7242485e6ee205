#include "host_platform.h"

#include "host_error.h"
#include "wide_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <windows.h>
// Needs windows.h before it.
#include <shellapi.h>

namespace zrhost {

namespace {

using std::chrono::steady_clock;

HostError failed(const std::string& what, DWORD error = GetLastError())
{
    return HostError(what + ": " + windowsErrorText(error));
}

/// Owns a handle; null for none.
class Handle
{
public:
    Handle() = default;
    explicit Handle(HANDLE handle)
        : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle)
    {
    }
    ~Handle() { reset(); }
    Handle(Handle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr))
    {
    }
    Handle& operator=(Handle&& other) noexcept
    {
        reset();
        m_handle = std::exchange(other.m_handle, nullptr);
        return *this;
    }

    [[nodiscard]] HANDLE get() const { return m_handle; }
    void reset()
    {
        if (m_handle)
            CloseHandle(m_handle);
        m_handle = nullptr;
    }

private:
    HANDLE m_handle = nullptr;
};

HANDLE eventOf(const StopSignal& stop)
{
    return reinterpret_cast<HANDLE>(stop.descriptor());
}

/// Reads a file or a pipe that was opened for overlapped access, one read at a time.
class OverlappedReader
{
public:
    /// @param name of the file or program, for messages
    OverlappedReader(Handle file, std::string name)
        : m_file(std::move(file))
        , m_done(CreateEventW(nullptr, TRUE, FALSE, nullptr))
        , m_name(std::move(name))
    {
        if (!m_done.get())
            throw failed("cannot make an event");
    }
    ~OverlappedReader() { cancel(); }
    OverlappedReader(const OverlappedReader&) = delete;
    OverlappedReader& operator=(const OverlappedReader&) = delete;

    /// Begins a read. `bytes` must stay until finish() or cancel().
    void begin(std::uint8_t* bytes, std::size_t size)
    {
        m_operation = {};
        m_operation.Offset = static_cast<DWORD>(m_position & 0xFFFFFFFFU);
        m_operation.OffsetHigh = static_cast<DWORD>(m_position >> 32U);
        m_operation.hEvent = m_done.get();
        constexpr std::size_t kMaxBytes = 1U << 30U;
        m_pending = true;
        if (ReadFile(m_file.get(), bytes, static_cast<DWORD>(std::min(size, kMaxBytes)), nullptr,
                     &m_operation))
            return;
        const DWORD error = GetLastError();
        if (error == ERROR_IO_PENDING)
            return;
        m_pending = false;
        m_failure = error;
        SetEvent(m_done.get());
    }

    /// Signalled when finish() will not block.
    [[nodiscard]] HANDLE done() const { return m_done.get(); }
    /// @return how many bytes were read, 0 at the end @throws HostError
    [[nodiscard]] std::size_t finish()
    {
        DWORD got = 0;
        DWORD error = std::exchange(m_failure, 0);
        if (std::exchange(m_pending, false)
            && !GetOverlappedResult(m_file.get(), &m_operation, &got, TRUE))
            error = GetLastError();
        ResetEvent(m_done.get());
        if (error != 0 && error != ERROR_HANDLE_EOF && error != ERROR_BROKEN_PIPE)
            throw failed("cannot read from " + m_name, error);
        m_position += got;
        return got;
    }

    /// Ends a read that is under way; its bytes are lost.
    void cancel()
    {
        if (!std::exchange(m_pending, false))
            return;
        CancelIoEx(m_file.get(), &m_operation);
        DWORD got = 0;
        GetOverlappedResult(m_file.get(), &m_operation, &got, TRUE);
    }

    [[nodiscard]] bool rewind()
    {
        if (GetFileType(m_file.get()) != FILE_TYPE_DISK)
            return false;
        m_position = 0;
        return true;
    }

private:
    Handle m_file;
    Handle m_done;
    std::string m_name;
    OVERLAPPED m_operation{};
    std::uint64_t m_position = 0; ///< pipes take no notice of it
    bool m_pending = false;
    DWORD m_failure = 0;
};

class FileSource : public ByteSource
{
public:
    FileSource(const std::string& file, const StopSignal& stop)
        : m_reader(open(file), "'" + file + "'")
        , m_stop(stop)
    {
    }

    std::size_t read(std::uint8_t* bytes, std::size_t size) override
    {
        m_reader.begin(bytes, size);
        const std::array<HANDLE, 2> waiting{eventOf(m_stop), m_reader.done()};
        const DWORD ready = WaitForMultipleObjects(static_cast<DWORD>(waiting.size()),
                                                   waiting.data(), FALSE, INFINITE);
        if (ready == WAIT_OBJECT_0) {
            m_reader.cancel();
            throw Stopped();
        }
        return m_reader.finish();
    }

    bool rewind() override { return m_reader.rewind(); }

private:
    static Handle open(const std::string& file)
    {
        Handle handle(CreateFileW(toWide(file).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
        if (!handle.get())
            throw failed("cannot read '" + file + "'");
        return handle;
    }

    OverlappedReader m_reader;
    const StopSignal& m_stop;
};

std::wstring convert(std::string_view text, UINT codePage)
{
    const int size = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

/// "\\.\pipe\name". Opening one is what its writer waits for, so it is not opened for a look.
bool isPipeName(const std::wstring& file)
{
    constexpr std::wstring_view kPrefix = LR"(\\.\pipe\)";
    return file.compare(0, kPrefix.size(), kPrefix) == 0;
}

int g_startPriority = THREAD_PRIORITY_NORMAL;

} // namespace

std::vector<std::string> programArguments(int, char**)
{
    int count = 0;
    LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i)
        arguments.push_back(fromWide(words[i]));
    LocalFree(words);
    return arguments;
}

void useUtf8Text()
{
    SetConsoleOutputCP(CP_UTF8); // fails without a console
}

std::string toLocal8Bit(const std::string& utf8)
{
    const std::wstring wide = toWide(utf8);
    const int size = static_cast<int>(wide.size());
    std::string local(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, wide.data(), size,
                                                                   nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), size, local.data(), static_cast<int>(local.size()),
                        nullptr, nullptr);
    return local;
}

std::string fromLocal8Bit(const std::string& local)
{
    return fromWide(convert(local, CP_ACP));
}

std::string whyUnreadable(const std::string& file)
{
    const std::wstring name = toWide(file);
    if (isPipeName(name))
        return {};
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return windowsErrorText(GetLastError());
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return "Is a directory";
    const Handle handle(CreateFileW(name.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
    return handle.get() ? std::string() : windowsErrorText(GetLastError());
}

std::string programFile()
{
    std::wstring path(MAX_PATH, L'\0');
    DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    while (size == path.size()) { // cut
        path.resize(2 * path.size());
        size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    }
    path.resize(size);
    return fromWide(path);
}

std::vector<std::string> libraryCandidates(const std::string& folder)
{
    // Beside the program, which is where the install step puts it too, and in the build tree.
    return {folder + R"(\ZRScreenMod.dll)", folder + R"(\..\zrscreenmod\ZRScreenMod.dll)"};
}

bool inputIsTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != FALSE;
}

void rememberStartPriority()
{
    g_startPriority = GetThreadPriority(GetCurrentThread());
}

void restoreStartPriority()
{
    SetThreadPriority(GetCurrentThread(), g_startPriority);
}

DynamicLibrary::DynamicLibrary(const std::string& file)
{
    // Named in full, the library finds what it needs beside itself, and not beside the program.
    const std::wstring given = toWide(file);
    std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
    GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    m_handle = LoadLibraryExW(full.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!m_handle)
        throw failed("cannot load the library: " + file);
}

DynamicLibrary::~DynamicLibrary()
{
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

void* DynamicLibrary::symbol(const char* name) const
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

StopSignal::StopSignal()
    : m_descriptor(reinterpret_cast<std::intptr_t>(CreateEventW(nullptr, TRUE, FALSE, nullptr)))
{
    if (m_descriptor == 0)
        throw failed("cannot make an event");
}

StopSignal::~StopSignal()
{
    CloseHandle(eventOf(*this));
}

void StopSignal::raise()
{
    SetEvent(eventOf(*this));
}

bool StopSignal::sleepUntil(steady_clock::time_point time) const
{
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - steady_clock::now());
        constexpr long long kDayMs = 86'400'000;
        const auto waitMs = std::clamp<long long>(left.count(), 0, kDayMs);
        if (WaitForSingleObject(eventOf(*this), static_cast<DWORD>(waitMs)) == WAIT_OBJECT_0)
            return false;
        if (steady_clock::now() >= time)
            return true;
    }
}

std::unique_ptr<ByteSource> openFile(const std::string& file, const StopSignal& stop)
{
    return std::make_unique<FileSource>(file, stop);
}

} // namespace zrhost
