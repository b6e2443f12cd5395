#pragma once

#include <exception>
#include <mutex>
#include <utility>

namespace util::concurrent {

/// What becomes of the tasks of one caller: of several failures the one of the lowest number
/// counts, so that it does not depend on the threads.
///
/// Caller and tasks meet at a mutex at the beginning and at the end of each task. The runtime below
/// orders them already, but it is not built for the thread sanitizer, which sees the mutex.
class Outcome
{
public:
    /// To be called before the first task starts.
    void open() { const std::lock_guard lock(mutex); }

    /// Runs a task on any thread, to its end or its failure.
    template <class Task> void run(int number, const Task& task) noexcept
    {
        open();
        std::exception_ptr thrown;
        try {
            task();
        } catch (...) {
            thrown = std::current_exception();
        }
        const std::lock_guard lock(mutex);
        if (!thrown || (failure && failedTask < number)) return;
        failedTask = number;
        failure = thrown;
    }

    /// To be called when all tasks are done. \throws what they failed with; it is forgotten then
    void close()
    {
        std::exception_ptr thrown;
        {
            const std::lock_guard lock(mutex);
            thrown = std::exchange(failure, nullptr);
        }
        if (thrown) std::rethrow_exception(thrown);
    }

private:
    std::mutex mutex;
    int failedTask = 0;
    std::exception_ptr failure;
};

} // namespace util::concurrent
