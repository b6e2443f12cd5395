#include <ketra/util/concurrent/TaskGroup.h>
#include <ketra/util/concurrent/parallelFor.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using util::concurrent::parallelFor;
using util::concurrent::TaskGroup;

void sleepFor(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::string messageOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "";
}

TEST(ParallelFor, VisitsEveryIndexOnce)
{
    for (const int end : {3, 4, 100, 1000}) {
        std::vector<int> visits(1000, 0);
        parallelFor(3, end, [&](int i) { ++visits[static_cast<std::size_t>(i)]; });
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(visits[static_cast<std::size_t>(i)], i >= 3 && i < end ? 1 : 0) << i;
    }
}

TEST(ParallelFor, DoesNothingInAnEmptyRange)
{
    parallelFor(0, 0, [](int) { FAIL(); });
    parallelFor(5, 2, [](int) { FAIL(); });
}

TEST(ParallelFor, ThrowsTheFailureOfTheLowestIndexAfterAllOthersAreDone)
{
    std::atomic<int> done{0};
    const std::string message = messageOf([&] {
        parallelFor(0, 200, [&](int i) {
            if (i == 7) sleepFor(20); // the later ones fail earlier
            if (i % 50 == 7) throw std::runtime_error("index " + std::to_string(i));
            ++done;
        });
    });
    EXPECT_EQ(message, "index 7");
    EXPECT_EQ(done, 196);
}

TEST(ParallelFor, CanBeNested)
{
    std::vector<std::vector<int>> grid(20, std::vector<int>(30, 0));
    parallelFor(0, 20, [&](int i) {
        auto& row = grid[static_cast<std::size_t>(i)];
        parallelFor(0, 30, [&](int k) { row[static_cast<std::size_t>(k)] = i * k; });
    });
    for (int i = 0; i < 20; ++i)
        for (int k = 0; k < 30; ++k)
            EXPECT_EQ(grid[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)], i * k);
}

TEST(TaskGroup, WaitsForAllItsTasks)
{
    std::vector<int> results(3, 0);
    TaskGroup group;
    group.run([&] {
        sleepFor(20);
        results[0] = 1;
    });
    group.run([&] { results[1] = 2; });
    group.runAndWait([&] { results[2] = 3; });
    EXPECT_EQ(results, (std::vector<int>{1, 2, 3}));
}

TEST(TaskGroup, RunsTheLastTaskOnTheCallersThread)
{
    std::thread::id where;
    TaskGroup group;
    group.runAndWait([&] { where = std::this_thread::get_id(); });
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(TaskGroup, ThrowsTheFailureOfTheTaskThatWasGivenFirst)
{
    std::atomic<int> done{0};
    TaskGroup group;
    group.run([&] {
        sleepFor(20);
        throw std::runtime_error("first");
    });
    group.run([] { throw std::runtime_error("second"); });
    group.run([&] { ++done; });
    EXPECT_EQ(messageOf([&] { group.runAndWait([] { throw std::runtime_error("last"); }); }),
              "first");
    EXPECT_EQ(done, 1);
}

TEST(TaskGroup, CanBeUsedAgain)
{
    TaskGroup group;
    group.run([] { throw std::runtime_error("made up"); });
    EXPECT_EQ(messageOf([&] { group.wait(); }), "made up");
    int result = 0;
    group.run([&] { result = 5; });
    group.wait();
    EXPECT_EQ(result, 5);
    group.wait(); // with nothing to wait for
}

TEST(TaskGroup, IsNotLeftBeforeItsTasks)
{
    int result = 0;
    {
        TaskGroup group;
        group.run([&] {
            sleepFor(20);
            result = 5;
        });
        group.run([] { throw std::runtime_error("lost"); });
    }
    EXPECT_EQ(result, 5);
}

} // namespace
