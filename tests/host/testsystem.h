// What the host's tests need of the system. One implementation per system: testsystem_posix.cpp and
// testsystem_win32.cpp.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <string>

namespace testsystem {

/// A pipe with a name that nobody writes to.
class SilentPipe
{
public:
    SilentPipe();
    ~SilentPipe();
    SilentPipe(const SilentPipe&) = delete;
    SilentPipe& operator=(const SilentPipe&) = delete;
    /// Empty when it could not be made.
    [[nodiscard]] const std::string& name() const { return m_name; }

private:
    QTemporaryDir m_folder;
    std::string m_name;
    [[maybe_unused]] void* m_handle = nullptr; ///< Windows alone
};

/// Whether the process is there; one that has ended and was not waited for is.
bool isRunning(qint64 processId);

/// A library of the system that has nothing to do with the module.
QString anotherLibrary();

enum class EndRequest
{
    Interrupt, ///< as Ctrl-C
    Terminate
};
/// Asks a program to end. @return false where programs cannot be asked so from outside
bool askToEnd(qint64 processId, EndRequest request);

} // namespace testsystem
