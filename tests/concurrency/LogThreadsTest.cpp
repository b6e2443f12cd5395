#include <ketra/util/BufferLogger.h>
#include <ketra/util/FileLogger.h>
#include <ketra/util/Log.h>

#include <support/CapturingLogger.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using util::Log;

constexpr int threads = 8;
constexpr int linesEach = 500;

/// Runs \p work(i) on each of the threads at the same time.
template <class Work> void onThreads(Work work)
{
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i) all.emplace_back(work, i);
    for (std::thread& thread : all) thread.join();
}

void sayLines(int thread)
{
    for (int i = 0; i < linesEach; ++i) Log::printf("THERMO", "%d %d\n", thread, i);
}

/// Checks that every line of every thread is there, whole and in the thread's order.
void expectAllLines(std::istream& in)
{
    std::map<int, int> next;
    int lines = 0;
    for (int thread, number; in >> thread >> number; ++lines) EXPECT_EQ(next[thread]++, number);
    EXPECT_TRUE(in.eof());
    EXPECT_EQ(lines, threads * linesEach);
}

TEST(LogThreads, SeeTheirLinesWholeAndInOrder)
{
    const ketra_test::LogCapture capture;
    onThreads(sayLines);
    std::istringstream in(capture.report());
    expectAllLines(in);
}

TEST(LogThreads, HaveAllTheirLinesInTheFileWhenTheLogEnds)
{
    const std::string path = testing::TempDir() + "ketra-threads.log";
    Log::createLog("file")->addLogger(new util::FileLogger(path, 1000));
    onThreads(sayLines);
    Log::finalize();
    std::ifstream in(path);
    expectAllLines(in);
    std::filesystem::remove(path);
}

TEST(LogThreads, MayLogWhileTheLogIsReplacedAndEnded)
{
    onThreads([](int thread) {
        for (int i = 0; i < 100; ++i) {
            // A log that was just made is the maker's to fill; another thread must not end it.
            if (thread == 0) Log::createLog("again")->addLogger(new util::BufferLogger(100));
            if (thread == 0 && i % 3 == 0) Log::finalize();
            Log::errorf("THERMO", "%d %d\n", thread, i);
        }
    });
    Log::finalize();
    EXPECT_EQ(Log::getLog(), nullptr);
}

TEST(LogThreads, MayReadABufferAndSetItsLevelMeanwhile)
{
    auto* const buffer = new util::BufferLogger(5000);
    Log::createLog("buffer")->addLogger(buffer);
    onThreads([buffer](int thread) {
        for (int i = 0; i < 100; ++i) {
            if (thread == 0) buffer->setLevel(util::Logger::WARN);
            if (thread == 1) {
                EXPECT_LE(buffer->getText().size(), 5000u);
            }
            if (thread == 2) buffer->setInfo(9, i % 2 == 0);
            Log::infof("THERMO", "%d %d\n", thread, i);
        }
    });
    Log::finalize();
}

} // namespace
