#include <ketra/util/concurrent/parallelFor.h>

#include <ketra/util/concurrent/Outcome.h>

#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

namespace util::concurrent {

void parallelFor(int begin, int end, const std::function<void(int)>& body)
{
    Outcome outcome;
    outcome.open();
    // Isolated, a thread that waits for its chunks takes up no task of another calculation, which
    // would run within the state of this one.
    tbb::this_task_arena::isolate(
        [&] { tbb::parallel_for(begin, end, [&](int i) { outcome.run(i, [&] { body(i); }); }); });
    outcome.close();
}

} // namespace util::concurrent
