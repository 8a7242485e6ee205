#include "hostmemory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#ifndef NOMINMAX
#    define NOMINMAX
#endif
#include <windows.h>

namespace {

constexpr DWORD kWritable =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

/// First address behind the memory with one of these protections that begins at `at`, as far as
/// the system tells of it in one piece; `at` itself when it has none of them.
std::uintptr_t accessibleEnd(std::uintptr_t at, DWORD protections)
{
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(reinterpret_cast<LPCVOID>(at), &region, sizeof region) != sizeof region)
        return at;
    // A guard page is the growth of another thread's stack: touching it would end that thread.
    if (region.State != MEM_COMMIT || (region.Protect & protections) == 0
        || (region.Protect & PAGE_GUARD) != 0)
        return at;
    return reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
}

bool isAccessible(const void* p, std::size_t size, DWORD protections)
{
    auto at = reinterpret_cast<std::uintptr_t>(p);
    const std::uintptr_t end = at + size;
    if (at == 0 || end < at)
        return false;
    while (at < end) {
        const std::uintptr_t next = accessibleEnd(at, protections);
        if (next <= at)
            return false;
        at = next;
    }
    return true;
}

} // namespace

namespace platform {

bool isReadable(const void* p, std::size_t size)
{
    return isAccessible(p, size, kReadable);
}

bool copyToHost(void* to, const void* from, std::size_t size)
{
    if (!isAccessible(to, size, kWritable))
        return false;
    std::memcpy(to, from, size);
    return true;
}

std::ptrdiff_t readableStringLength(const char* text)
{
    if (!text)
        return -1;
    std::uintptr_t at = reinterpret_cast<std::uintptr_t>(text);
    const std::uintptr_t end = at + kMaxTextBytes + 1; // with the terminator
    while (at < end) {
        const std::uintptr_t next = std::min(accessibleEnd(at, kReadable), end);
        if (next <= at)
            return -1;
        const char* const piece = reinterpret_cast<const char*>(at);
        if (const void* const terminator = std::memchr(piece, 0, next - at))
            return static_cast<const char*>(terminator) - text;
        at = next;
    }
    return -1;
}

} // namespace platform
