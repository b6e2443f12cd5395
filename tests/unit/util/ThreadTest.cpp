#include <ketra/util/System.h>
#include <ketra/util/Thread.h>
#include <ketra/util/concurrent/CriticalSection.h>
#include <ketra/util/concurrent/Mutex.h>

#include <ketra/runtime/Exception.h>
#include <ketra/util/NetworkException.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <ctime>
#include <future>
#include <mutex>
#include <thread>

namespace {

using util::System;
using util::Thread;
using util::concurrent::CriticalSection;
using util::concurrent::Mutex;

/// Counts its runs and remembers where the last one was.
class Worker : public Thread
{
public:
    explicit Worker(bool waits = false, unsigned int stack = 0) : Thread(waits, stack) {}
    ~Worker() override { wait(); }

    void run() override
    {
        where = std::this_thread::get_id();
        if (gate.valid()) gate.wait();
        ++runs;
        if (fails) throw util::NetworkException(14);
    }
    void cleanup() override { ++cleanups; }

    int runs = 0;
    int cleanups = 0;
    bool fails = false;
    std::shared_future<void> gate; // run() waits for it
    std::thread::id where;
};

TEST(Thread, RunsOnAThreadOfItsOwn)
{
    Worker worker;
    worker.start();
    worker.join();
    EXPECT_EQ(worker.runs, 1);
    EXPECT_EQ(worker.cleanups, 1);
    EXPECT_NE(worker.where, std::this_thread::get_id());
    EXPECT_FALSE(worker.isRunning());
}

TEST(Thread, RunsAgainAfterItHasEnded)
{
    Worker worker;
    worker.start();
    worker.join();
    worker.restart();
    worker.join();
    EXPECT_EQ(worker.runs, 2);
    EXPECT_EQ(worker.cleanups, 2);
}

TEST(Thread, MayBeRunOnTheCallingThread)
{
    Worker worker;
    util::Runnable& runnable = worker;
    runnable.run();
    EXPECT_EQ(worker.where, std::this_thread::get_id());
    EXPECT_EQ(worker.cleanups, 0);
}

TEST(Thread, RefusesASecondRunAtTheSameTime)
{
    std::promise<void> open;
    Worker worker;
    worker.gate = open.get_future().share();
    worker.start();
    EXPECT_TRUE(worker.isRunning());
    KETRA_EXPECT_THROW_MESSAGE(worker.start(), runtime::Exception, 0, "Thread is running");
    KETRA_EXPECT_THROW_CODE(worker.restart(), runtime::Exception, 0);
    open.set_value();
    worker.join();
    EXPECT_EQ(worker.runs, 1);
}

TEST(Thread, WaitsForTheRunInProgressIfItIsPatient)
{
    std::promise<void> open;
    Worker worker(/*waits=*/true);
    worker.gate = open.get_future().share();
    worker.start();
    std::thread opener([&open] { open.set_value(); });
    worker.restart();
    opener.join();
    worker.join();
    EXPECT_EQ(worker.runs, 2);
}

TEST(Thread, HandsOnWhatTheRunHasThrown)
{
    Worker worker;
    worker.fails = true;
    worker.start();
    KETRA_EXPECT_THROW_CODE(worker.join(), util::NetworkException, 14);
    EXPECT_EQ(worker.cleanups, 1);
    worker.join(); // thrown once
    worker.restart();
    worker.wait();
    worker.join();
    EXPECT_EQ(worker.runs, 2);
}

TEST(Thread, TakesAStackSizeAndAName)
{
    Worker worker(false, 1u << 20);
    worker.setName("alpha 0.8");
    EXPECT_EQ(worker.getName(), "alpha 0.8");
    worker.start();
    worker.join();
    EXPECT_EQ(worker.runs, 1);
    Worker tiny(false, 1); // less than the platform's least
    tiny.start();
    tiny.join();
    EXPECT_EQ(tiny.runs, 1);
}

TEST(Thread, NeedsNoRunAndNoJoin)
{
    {
        Worker never;
        never.join();
        never.wait();
    }
    Worker notJoined;
    notJoined.start();
}

TEST(Mutex, MayBeTakenAgainByItsHolder)
{
    Mutex mutex(true);
    mutex.lock();
    mutex.lock();
    mutex.unlock();
    mutex.unlock();
    const std::lock_guard lock(mutex);
}

#ifndef __SANITIZE_THREAD__ // which reports the misuse that is tried here
TEST(Mutex, HasToBeReleasedByItsHolder)
{
    Mutex mutex(true);
    KETRA_EXPECT_THROW_CODE(mutex.unlock(), runtime::Exception, 0);
    mutex.lock();
    mutex.unlock();
    KETRA_EXPECT_THROW_MESSAGE(mutex.unlock(), runtime::Exception, 0, "Mutex is not held");
}
#endif

TEST(Mutex, FailsInsteadOfHangingIfItIsNotReentrant)
{
    Mutex mutex(false);
    mutex.lock();
    KETRA_EXPECT_THROW_MESSAGE(mutex.lock(), runtime::Exception, 0, "Could not lock mutex");
    mutex.unlock();
}

TEST(CriticalSection, MayBeEnteredAgain)
{
    CriticalSection section;
    const CriticalSection::Guard outer(section);
    const CriticalSection::Guard inner(section);
    section.enter();
    section.leave();
}

TEST(System, KnowsTheTime)
{
    const std::time_t before = std::time(nullptr);
    const std::int64_t now = System::currentTimeSecs();
    EXPECT_GE(now, before - 1);
    EXPECT_LE(now, std::time(nullptr) + 1);
}

TEST(System, KnowsItsPlatform)
{
    EXPECT_NE(System::isPOSIX(), System::isWindows() && !System::isCygwin());
#ifdef __linux__
    EXPECT_TRUE(System::isPOSIX());
    EXPECT_FALSE(System::isWindows());
    EXPECT_FALSE(System::isCygwin());
    EXPECT_FALSE(System::isMacOSX());
    EXPECT_FALSE(System::isMinGw32());
#endif
}

} // namespace
