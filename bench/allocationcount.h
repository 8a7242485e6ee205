// Counts heap allocations by replacing malloc in this program, and with it in every library that
// the program has loaded; operator new ends there too.
#pragma once

#include <cstdint>

/// Allocations that the calling thread has made so far. A realloc counts as one.
std::uint64_t allocationsOfThisThread();
