#include "allocationcount.h"

#include <cerrno>
#include <cstddef>

// The C library's own entry points: they stay reachable when malloc itself is replaced. What they
// allocate, the C library's free releases.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

thread_local std::uint64_t t_allocations = 0;

} // namespace

std::uint64_t allocationsOfThisThread()
{
    return t_allocations;
}

extern "C" {

void* malloc(std::size_t size)
{
    ++t_allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    ++t_allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    ++t_allocations;
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size)
{
    ++t_allocations;
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    void* const result = memalign(alignment, size);
    if (!result)
        return ENOMEM;
    *block = result;
    return 0;
}

} // extern "C"
