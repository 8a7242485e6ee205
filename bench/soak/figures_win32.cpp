#include "figures.h"
#include "hostprocess.h"

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <array>

namespace {

/// What NtQuerySystemInformation tells of every handle in the system.
struct HandleEntry
{
    void* object;
    ULONG_PTR process;
    ULONG_PTR value;
    ULONG access;
    USHORT backTrace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};

/// From the list of all handles: Wine does not know GetProcessHandleCount. -1 without the list.
long long handles()
{
    constexpr int kExtendedHandles = 64; // of an enumeration whose header does not know it
    constexpr std::size_t kHead = 2 * sizeof(ULONG_PTR); // how many there are, reserved
    using Query = NTSTATUS(NTAPI*)(int, void*, ULONG, ULONG*);
    static const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<ULONG_PTR> buffer((kHead + 200000 * sizeof(HandleEntry)) / sizeof(ULONG_PTR));
    const auto bytes = static_cast<ULONG>(buffer.size() * sizeof(ULONG_PTR));
    if (!query || query(kExtendedHandles, buffer.data(), bytes, nullptr) < 0)
        return -1;
    const auto* const entries = reinterpret_cast<const HandleEntry*>(&buffer[2]);
    return std::count_if(entries, entries + buffer[0], [](const HandleEntry& entry) {
        return entry.process == GetCurrentProcessId();
    });
}

/// Bytes of all heaps.
struct HeapBytes
{
    unsigned long long used = 0;
    unsigned long long free = 0; ///< in pages that they have
};

void addHeap(HANDLE heap, HeapBytes& bytes)
{
    constexpr WORD kNoBlock = PROCESS_HEAP_REGION | PROCESS_HEAP_UNCOMMITTED_RANGE;
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            bytes.used += entry.cbData;
        else if ((entry.wFlags & kNoBlock) == 0)
            bytes.free += entry.cbData;
    }
    HeapUnlock(heap);
}

HeapBytes heapBytes()
{
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    HeapBytes bytes;
    for (DWORD i = 0; i < std::min<DWORD>(count, heaps.size()); ++i)
        addHeap(heaps[i], bytes);
    return bytes;
}

long long toKb(unsigned long long bytes)
{
    return static_cast<long long>(bytes / 1024);
}

BOOL CALLBACK countWindow(HWND window, LPARAM count)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId())
        ++*reinterpret_cast<long long*>(count);
    return TRUE;
}

BOOL CALLBACK countFamily(HWND window, LPARAM count)
{
    EnumChildWindows(window, countWindow, count);
    return countWindow(window, count);
}

long long nativeWindows()
{
    long long count = 0;
    EnumWindows(countFamily, reinterpret_cast<LPARAM>(&count));
    return count;
}

} // namespace

Figures systemFigures()
{
    const HANDLE process = GetCurrentProcess();
    PROCESS_MEMORY_COUNTERS_EX memory{};
    GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                         sizeof memory);
    const HeapBytes heaps = heapBytes();
    // Nothing makes the heaps give back what is free: it is taken off here. Wine answers 0 for the
    // objects of GDI and of the user interface.
    return {{"resident_kb", toKb(memory.WorkingSetSize - heaps.free)},
            {"untrimmed_kb", toKb(memory.WorkingSetSize), false},
            {"heap_kb", toKb(heaps.used)},
            {"threads", native::threadCount()},
            {"handles", handles()},
            {"native_windows", nativeWindows()},
            {"gdi_objects", static_cast<long long>(GetGuiResources(process, GR_GDIOBJECTS))},
            {"user_objects", static_cast<long long>(GetGuiResources(process, GR_USEROBJECTS))}};
}
