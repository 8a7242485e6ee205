#include "hostmemory.h"

#include <cerrno>
#include <cstdint>
#include <cstring>

#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

std::uintptr_t pageSize()
{
    static const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    return size;
}

/// Probes the word around an address. The kernel copies the signal set before it looks at `how`,
/// so it answers EFAULT where the word cannot be read, and EINVAL for the impossible `how` where
/// it can; either way nothing changes. This is several times cheaper than process_vm_readv and
/// needs no descriptor. Any other answer (a sandbox's) tells nothing: the word is then believed.
bool isWordReadable(std::uintptr_t address)
{
    constexpr std::uintptr_t kWord = sizeof(std::uint64_t); // the size of the kernel's signal set
    constexpr int kImpossibleHow = -1;
    const int savedErrno = errno;
    const std::uintptr_t word = address & ~(kWord - 1); // aligned, so that it lies in one page
    if (word == 0)
        return false; // the kernel takes it for no set at all
    const long result = syscall(SYS_rt_sigprocmask, kImpossibleHow, word, nullptr, kWord);
    const bool faulted = result == -1 && errno == EFAULT;
    errno = savedErrno;
    return !faulted;
}

} // namespace

namespace platform {

bool isReadable(const void* p, std::size_t size)
{
    const auto begin = reinterpret_cast<std::uintptr_t>(p);
    if (begin == 0 || begin + size < begin)
        return false;
    if (size == 0)
        return true;
    const std::uintptr_t last = begin + size - 1;
    if (!isWordReadable(begin))
        return false;
    const std::uintptr_t page = pageSize();
    if ((begin ^ last) < page)
        return true; // all in one page
    constexpr std::size_t kProbeEveryPageUpTo = 65536;
    if (!isWordReadable(last))
        return false;
    if (size > kProbeEveryPageUpTo)
        return true;
    for (std::uintptr_t at = (begin | (page - 1)) + 1; at < last; at += page) {
        if (!isWordReadable(at))
            return false;
    }
    return true;
}

bool copyToHost(void* to, const void* from, std::size_t size)
{
    if (!isReadable(to, size))
        return false;
    const int savedErrno = errno;
    const iovec source{const_cast<void*>(from), size};
    const iovec target{to, size};
    const ssize_t written = process_vm_writev(getpid(), &source, 1, &target, 1, 0);
    const bool faulted = written == -1 && errno == EFAULT;
    errno = savedErrno;
    if (written == -1 && !faulted) { // a sandbox does not let us ask
        std::memcpy(to, from, size);
        return true;
    }
    return written == static_cast<ssize_t>(size);
}

std::ptrdiff_t readableStringLength(const char* text)
{
    if (!text)
        return -1;
    const std::uintptr_t page = pageSize();
    std::size_t length = 0;
    while (length <= kMaxTextBytes) {
        const auto at = reinterpret_cast<std::uintptr_t>(text) + length;
        if (!isWordReadable(at))
            return -1;
        const std::size_t leftInPage = page - (at & (page - 1));
        const std::size_t found = strnlen(text + length, leftInPage);
        length += found;
        if (found < leftInPage)
            return length <= kMaxTextBytes ? static_cast<std::ptrdiff_t>(length) : -1;
    }
    return -1;
}

} // namespace platform
