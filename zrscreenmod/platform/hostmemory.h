// Memory that a host names, and that may not be there. Any thread, and without Qt.
#pragma once

#include <cstddef>

namespace platform {

/// True when every probed byte of [p, p + size) can be read. The memory is not touched by this
/// process in a way that could fault. Probes the first and the last byte, and every page between
/// them when the range is at most 64 KiB long. False for null and for ranges that wrap around.
/// Another thread may unmap the memory right afterwards.
[[nodiscard]] bool isReadable(const void* p, std::size_t size);

/// Copies `size` bytes to memory of the host's that may not be there or not be writable.
/// @return false when it is not all written; some of it may be then.
[[nodiscard]] bool copyToHost(void* to, const void* from, std::size_t size);

/// The host's texts are no longer than this, in bytes; a stray pointer into a large block, or a
/// record of another library's, looks like one that is.
constexpr std::size_t kMaxTextBytes = std::size_t(1024) * 1024;

/// Length of the zero-terminated string at `text`, found without touching unreadable memory.
/// @return -1 when `text` is null, longer than kMaxTextBytes, or memory ends before a terminator.
[[nodiscard]] std::ptrdiff_t readableStringLength(const char* text);

} // namespace platform
