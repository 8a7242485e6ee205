#include "testsystem.h"

#include <windows.h>

namespace testsystem {

SilentPipe::SilentPipe()
    : m_name(R"(\\.\pipe\zrhosttest-)" + std::to_string(GetCurrentProcessId()))
    , m_handle(CreateNamedPipeA(m_name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 4096, 4096,
                                0, nullptr))
{
    if (m_handle == INVALID_HANDLE_VALUE)
        m_name.clear();
}

SilentPipe::~SilentPipe()
{
    CloseHandle(m_handle);
}

bool isRunning(qint64 processId)
{
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
    const bool running = process && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return running;
}

QString anotherLibrary()
{
    return QStringLiteral("C:\\windows\\system32\\kernel32.dll");
}

// A console that the test shares with the program would be needed, and it would be asked as well.
bool askToEnd(qint64, EndRequest)
{
    return false;
}

} // namespace testsystem
