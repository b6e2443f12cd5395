#pragma once

#include <ketra/export.h>

#include <pthread.h>

namespace util::concurrent {

/// A lock; works with `std::lock_guard`.
class KETRA_API Mutex
{
public:
    /// \param reentrant whether the thread that holds the mutex may take it again, to release it
    ///        as often; without it a second lock() by that thread fails instead of hanging.
    explicit Mutex(bool reentrant);
    virtual ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// Waits for the mutex. \throws runtime::Exception 0 if it can never be had.
    void lock();
    /// Releases it once. \throws runtime::Exception 0 if the calling thread does not hold it.
    void unlock();

private:
    pthread_mutex_t handle;
};

} // namespace util::concurrent
