#include <ketra/util/concurrent/TaskGroup.h>

#include <tbb/task_group.h>

#include <utility>

namespace util::concurrent {

class TaskGroup::Tasks : public tbb::task_group
{
};

TaskGroup::TaskGroup() : tasks(std::make_unique<Tasks>()) {}

TaskGroup::~TaskGroup() { tasks->wait(); }

void TaskGroup::run(std::function<void()> task)
{
    outcome.open();
    const int number = count++;
    tasks->run([this, number, task = std::move(task)] { outcome.run(number, task); });
}

void TaskGroup::runAndWait(const std::function<void()>& task)
{
    outcome.run(count++, task);
    wait();
}

void TaskGroup::wait()
{
    tasks->wait();
    count = 0;
    outcome.close();
}

} // namespace util::concurrent
