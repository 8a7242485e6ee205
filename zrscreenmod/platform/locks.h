// The standard's locks, for objects that come and go.
#pragma once

#include <mutex>
#include <shared_mutex>

namespace platform {

/// Gives back what the system has made for a lock that nobody will use any more.
void endLock(std::mutex& lock);
void endLock(std::recursive_mutex& lock);
void endLock(std::shared_mutex& lock);

/// A lock that leaves nothing behind. Those of the standard do with MinGW-w64: the first use takes
/// memory and the first wait a handle of the system, of which no destructor of libstdc++ knows.
/// What lives as long as the library may be one of the standard's.
template<typename Standard>
class Lock : public Standard
{
public:
    Lock() = default;
    ~Lock() { endLock(*this); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
};

using Mutex = Lock<std::mutex>;
using RecursiveMutex = Lock<std::recursive_mutex>;
using SharedMutex = Lock<std::shared_mutex>;

} // namespace platform
