// Services of the operating system that have nothing to do with windows or the event loop. One
// implementation per system: host_platform_posix.cpp and host_platform_win32.cpp.
#pragma once

#include "picture.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zrhost {

/// Puts the process into a state in which program arguments, files and the terminal are UTF-8.
/// Call first in main().
void useUtf8Text();
/// The arguments of the program in UTF-8, without its name.
[[nodiscard]] std::vector<std::string> programArguments(int argc, char** argv);
/// Converts UTF-8 to the local 8-bit encoding, as the module's `char*` texts expect it.
[[nodiscard]] std::string toLocal8Bit(const std::string& utf8);
/// The way back, for the texts that the module sends.
[[nodiscard]] std::string fromLocal8Bit(const std::string& local);

/// @return why `file` cannot be opened for reading; empty when it can
[[nodiscard]] std::string whyUnreadable(const std::string& file);
/// The running program, with its folder.
[[nodiscard]] std::string programFile();
/// The places where the library may lie, best first, for a program in `folder`.
[[nodiscard]] std::vector<std::string> libraryCandidates(const std::string& folder);

/// True when the program's input is a terminal that this process may read from.
[[nodiscard]] bool inputIsTerminal();

/// Gives the calling thread the priority that the process was started with. `ZRScreen_Init`
/// raises the GUI thread's, and threads and programs that it starts later inherit that.
/// rememberStartPriority() must have run before.
void rememberStartPriority();
void restoreStartPriority();

/// A loaded library; unloaded by the destructor. Use on the GUI thread.
class DynamicLibrary
{
public:
    /// @throws HostError
    explicit DynamicLibrary(const std::string& file);
    ~DynamicLibrary();
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    /// @return null when there is no such symbol
    [[nodiscard]] void* symbol(const char* name) const;

private:
    void* m_handle = nullptr;
};

/// Ends the waiting of another thread.
class StopSignal
{
public:
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Any thread. There is no way back.
    void raise();
    /// @return false when the signal was raised before the time had come
    [[nodiscard]] bool sleepUntil(std::chrono::steady_clock::time_point time) const;
    /// For the system's own waits: a descriptor that is readable once raised, or the handle of an
    /// event on Windows.
    [[nodiscard]] std::intptr_t descriptor() const { return m_descriptor; }

private:
    std::intptr_t m_descriptor;
};

/// Opens a file or a named pipe. A pipe that nobody writes to does not block the opening.
/// @param stop must outlive the source @throws HostError
[[nodiscard]] std::unique_ptr<ByteSource> openFile(const std::string& file, const StopSignal& stop);

} // namespace zrhost
