#include "figures.h"
#include "hostprocess.h"

#include <windows.h>

#include <psapi.h>

Figures systemFigures()
{
    const HANDLE process = GetCurrentProcess();
    PROCESS_MEMORY_COUNTERS_EX memory{};
    GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                         sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(process, &handles);
    return {{"resident_kb", static_cast<long long>(memory.WorkingSetSize / 1024)},
            {"threads", native::threadCount()},
            {"handles", static_cast<long long>(handles)},
            {"gdi_objects", static_cast<long long>(GetGuiResources(process, GR_GDIOBJECTS))},
            {"user_objects", static_cast<long long>(GetGuiResources(process, GR_USEROBJECTS))}};
}
