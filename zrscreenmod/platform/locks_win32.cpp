#include "locks.h"

#ifdef __GLIBCXX__ // on top of winpthreads

void platform::endLock(std::mutex& lock)
{
    pthread_mutex_destroy(lock.native_handle());
}

void platform::endLock(std::recursive_mutex& lock)
{
    pthread_mutex_destroy(lock.native_handle());
}

void platform::endLock(std::shared_mutex& lock)
{
    pthread_rwlock_destroy(static_cast<pthread_rwlock_t*>(lock.native_handle()));
}

#else // there is nothing to give back: a lock is its object

void platform::endLock(std::mutex& /*lock*/) {}
void platform::endLock(std::recursive_mutex& /*lock*/) {}
void platform::endLock(std::shared_mutex& /*lock*/) {}

#endif
