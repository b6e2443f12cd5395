#include <ketra/util/concurrent/Mutex.h>

#include <ketra/runtime/Exception.h>

namespace util::concurrent {

Mutex::Mutex(bool reentrant)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes,
                              reentrant ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_ERRORCHECK);
    const int result = pthread_mutex_init(&handle, &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (result != 0) throw runtime::Exception(0, "Could not create mutex");
}

Mutex::~Mutex() { pthread_mutex_destroy(&handle); }

void Mutex::lock()
{
    if (pthread_mutex_lock(&handle) != 0) throw runtime::Exception(0, "Could not lock mutex");
}

void Mutex::unlock()
{
    if (pthread_mutex_unlock(&handle) != 0) throw runtime::Exception(0, "Mutex is not held");
}

} // namespace util::concurrent
