// Counts what the module copies, by replacing memcpy and memmove in this program.
#pragma once

#include <cstdint>

/// Finds the module's code; nothing is counted before. Throws std::runtime_error when it is not
/// loaded.
void watchCopies();

/// Bytes that the module has copied since then, on any thread, by calls of memcpy and memmove.
std::uint64_t bytesCopied();
