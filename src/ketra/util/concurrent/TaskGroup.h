#pragma once

#include <ketra/export.h>
#include <ketra/util/concurrent/Outcome.h>

#include <functional>
#include <memory>

namespace util::concurrent {

/// A few tasks that run side by side, and a caller who waits for all of them.
///
/// Tasks share nothing that one of them writes. A failed task stops no other one; of several
/// failures the one of the task that was given first is thrown, so that the outcome does not depend
/// on the threads. A group belongs to one thread.
class KETRA_API TaskGroup
{
public:
    TaskGroup();
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;
    /// Waits for the tasks; their failures are lost.
    ~TaskGroup();

    /// Schedules \p task, which may run on any thread, at the latest in `wait`.
    void run(std::function<void()> task);
    /// Runs \p task on the calling thread, then waits as `wait`.
    void runAndWait(const std::function<void()>& task);
    /// Returns when all tasks are done. The group can take new tasks then.
    /// \throws whatever a task has thrown
    void wait();

private:
    class Tasks;

    Outcome outcome;
    int count = 0;                // of the tasks since the last wait
    std::unique_ptr<Tasks> tasks; // those that are scheduled; they use the outcome
};

} // namespace util::concurrent
