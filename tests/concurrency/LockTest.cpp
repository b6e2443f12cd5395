#include <ketra/util/concurrent/CriticalSection.h>
#include <ketra/util/concurrent/Mutex.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using util::concurrent::CriticalSection;
using util::concurrent::Mutex;

constexpr int threads = 8;
constexpr int rounds = 2000;

template <class Work> void onThreads(Work work)
{
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i) all.emplace_back(work);
    for (std::thread& thread : all) thread.join();
}

TEST(Mutex, LetsOneThreadInAlsoWhenItIsTakenTwice)
{
    Mutex mutex(true);
    long count = 0;
    onThreads([&] {
        for (int i = 0; i < rounds; ++i) {
            const std::lock_guard outer(mutex);
            const std::lock_guard inner(mutex);
            ++count;
        }
    });
    EXPECT_EQ(count, long{threads} * rounds);
}

TEST(Mutex, IsFreeOnlyAfterAsManyReleases)
{
    Mutex mutex(true);
    std::atomic<bool> inside{false};
    mutex.lock();
    mutex.lock();
    std::thread other([&] {
        const std::lock_guard lock(mutex);
        inside = true;
    });
    mutex.unlock();
    for (int i = 0; i < 20; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_FALSE(inside);
    }
    mutex.unlock();
    other.join();
    EXPECT_TRUE(inside);
}

TEST(CriticalSection, LetsOneThreadIn)
{
    CriticalSection section;
    long count = 0;
    onThreads([&] {
        for (int i = 0; i < rounds; ++i) {
            const CriticalSection::Guard outer(section);
            const CriticalSection::Guard inner(section);
            ++count;
        }
    });
    EXPECT_EQ(count, long{threads} * rounds);
}

} // namespace
