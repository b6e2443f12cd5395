#include <ketra/util/Thread.h>

#include <ketra/runtime/Exception.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <exception>
#include <utility>

#include <pthread.h>

namespace util {

struct Thread::State {
    pthread_t handle{};
    bool started = false;             // `handle` is a thread that has not been waited for
    std::atomic<bool> running{false}; // run() has not ended
    std::exception_ptr failure;       // what run() has thrown; read after the end of the thread
};

namespace {

/// Attributes of a new thread.
class Attributes
{
public:
    explicit Attributes(std::size_t stackSize)
    {
        pthread_attr_init(&attributes);
        if (stackSize > 0)
            pthread_attr_setstacksize(
                &attributes, std::max(stackSize, static_cast<std::size_t>(PTHREAD_STACK_MIN)));
    }
    ~Attributes() { pthread_attr_destroy(&attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const pthread_attr_t* get() const { return &attributes; }

private:
    pthread_attr_t attributes;
};

} // namespace

Thread::Thread(bool waits, unsigned int stack)
    : state(std::make_unique<State>()), patient(waits), stackSize(stack)
{
}

Thread::~Thread() { wait(); }

void Thread::start()
{
    if (!patient && isRunning()) throw runtime::Exception(0, "Thread is running");
    wait();
    const Attributes attributes(stackSize);
    state->running = true;
    if (pthread_create(&state->handle, attributes.get(), &Thread::enter, this) != 0) {
        state->running = false;
        throw runtime::Exception(0, "Could not start thread");
    }
    state->started = true;
}

void Thread::restart() { start(); }

void Thread::join()
{
    if (state->started) pthread_join(state->handle, nullptr);
    state->started = false;
    if (state->failure) std::rethrow_exception(std::exchange(state->failure, nullptr));
}

void Thread::wait() noexcept
{
    if (state->started) pthread_join(state->handle, nullptr);
    state->started = false;
    state->failure = nullptr;
}

bool Thread::isRunning() const { return state->running; }

void Thread::run() {}

void Thread::cleanup() {}

void Thread::_run()
{
    try {
        run();
    } catch (...) {
        cleanup();
        throw;
    }
    cleanup();
}

void* Thread::enter(void* thread)
{
    Thread& self = *static_cast<Thread*>(thread);
    try {
        self._run();
    } catch (...) {
        self.state->failure = std::current_exception();
    }
    self.state->running = false;
    return nullptr;
}

} // namespace util
