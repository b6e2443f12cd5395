#include <ketra/util/BufferLogger.h>
#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/FileLogger.h>
#include <ketra/util/Log.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace {

using util::BufferLogger;
using util::ConsoleLogger;
using util::FileLogger;
using util::Log;
using util::Logger;

struct Printed {
    std::string out;
    std::string err;
};

/// What the action prints to standard output and standard error.
template <class Action> Printed printed(Action action)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    action();
    Printed result;
    result.out = testing::internal::GetCapturedStdout();
    result.err = testing::internal::GetCapturedStderr();
    return result;
}

std::string contents(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string temporary(const char* name)
{
    const std::string path = testing::TempDir() + "ketra-loggers-" + name;
    std::filesystem::remove_all(path);
    return path;
}

[[gnu::format(printf, 3, 4)]] void vprint(Logger& logger, unsigned int channel, const char* format,
                                          ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    logger.vprintf(channel, format, arguments);
    va_end(arguments);
}

TEST(Logger, LetsEverythingPassAtFirst)
{
    BufferLogger logger;
    EXPECT_EQ(logger.getLevel(), Logger::INFO);
    logger.error("e");
    logger.warn("w");
    logger.info("i");
    EXPECT_EQ(logger.getText(), "error: e\nwarning: w\ninfo: i\n");
}

TEST(Logger, HoldsBackWhatIsAboveItsLevel)
{
    const char* const expected[] = {"r", "rerror: e\n", "rerror: e\nwarning: w\n",
                                    "rerror: e\nwarning: w\ninfo: i\n"};
    for (const Logger::Level level : {Logger::REPORT, Logger::ERROR, Logger::WARN, Logger::INFO}) {
        SCOPED_TRACE(level);
        BufferLogger logger;
        logger.setLevel(level);
        logger.print(0, "r");
        logger.errorf("%s", "e");
        logger.warnf("%s", "w");
        logger.infof("%s", "i");
        EXPECT_EQ(logger.getText(), expected[level]);
    }
}

TEST(Logger, FormatsNumbersAndKeepsTextFromOutsideAsItIs)
{
    BufferLogger logger;
    logger.printf(0, "%.2f %s", 1.5, "%d%n");
    vprint(logger, 0, "|%d", 3);
    logger.println(0, "%s");
    EXPECT_EQ(logger.getText(), "1.50 %d%n|3%s\n");
}

TEST(ConsoleLogger, PrintsTheReportToOutputAndSeveritiesToError)
{
    const Printed text = printed([] {
        Log::createLog("console")->addLogger(new ConsoleLogger);
        Log::printf("THERMO", "report%s", util::eol);
        Log::errorf("THERMO", "no equilibrium at %7.3f K%s", 10.0, util::eol);
        Log::warnf("ROOT", "unknown element\n");
        Log::infof("THERMO", "without line end");
        Log::finalize();
    });
    EXPECT_EQ(text.out, "report\r\n");
    EXPECT_EQ(text.err, "error: THERMO: no equilibrium at  10.000 K\r\n"
                        "warning: ROOT: unknown element\n"
                        "info: THERMO: without line end\n");
}

TEST(ConsoleLogger, PrintsLinesAndFormats)
{
    const Printed text = printed([] {
        ConsoleLogger logger;
        logger.println(0, "line");
        logger.printf(0, "%d;", 1);
        logger.print(77, "own channel;");
        logger.println(Logger::ERROR, "line");
        vprint(logger, Logger::WARN, "%s", "");
    });
    EXPECT_EQ(text.out, "line\n1;own channel;");
    EXPECT_EQ(text.err, "error: line\nwarning: \n");
}

TEST(BufferLogger, ForgetsWhatIsCleared)
{
    BufferLogger logger;
    logger.print(0, "text");
    logger.clear();
    EXPECT_EQ(logger.getText(), "");
}

TEST(BufferLogger, KeepsTheLastWholeLinesWithinItsSize)
{
    BufferLogger logger(10);
    EXPECT_EQ(logger.getSize(), 10u);
    logger.println(0, "1234");
    logger.println(0, "5678");
    EXPECT_EQ(logger.getText(), "1234\n5678\n");
    logger.println(0, "90");
    EXPECT_EQ(logger.getText(), "5678\n90\n");
    logger.print(0, "abcdefghijklmnop");
    EXPECT_EQ(logger.getText(), "ghijklmnop");
    logger.print(0, "abcdefghijklmnop\n");
    EXPECT_EQ(logger.getText(), "hijklmnop\n");
}

TEST(BufferLogger, TreatsAMarkedChannelAsItsSeverity)
{
    BufferLogger logger;
    logger.setInfo(7, true);
    logger.print(7, "a");
    logger.setWarn(7, true); // the more serious mark counts
    logger.print(7, "b");
    logger.setError(7, true);
    logger.print(7, "c");
    logger.setLevel(Logger::ERROR);
    logger.setError(7, false);
    logger.print(7, "held back");
    logger.setWarn(7, false);
    logger.setInfo(7, false);
    logger.print(7, "plain");
    EXPECT_EQ(logger.getText(), "info: a\nwarning: b\nerror: c\nplain");
}

TEST(FileLogger, HasWrittenAllLinesWhenTheLogHasEnded)
{
    const std::string path = temporary("all.log");
    Log::createLog("file")->addLogger(new FileLogger(path, 256));
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        Log::printf("THERMO", "line %d%s", i, util::eol);
        expected += "line " + std::to_string(i) + "\r\n";
    }
    Log::errorf("THERMO", "last");
    Log::finalize();
    EXPECT_EQ(contents(path), expected + "error: THERMO: last\n");
    std::filesystem::remove(path);
}

TEST(FileLogger, BeginsTheFileAnew)
{
    const std::string path = temporary("anew.log");
    std::ofstream(path) << "old text, longer than the new one";
    {
        FileLogger logger(path, 100);
        logger.println(0, "new");
        EXPECT_FALSE(logger.hasFailed());
        EXPECT_STREQ(logger.getPath(), path.c_str());
        EXPECT_EQ(logger.getSize(), 100u);
    }
    EXPECT_EQ(contents(path), "new\n");
    std::filesystem::remove(path);
}

TEST(FileLogger, AppliesMarksToWhatFollows)
{
    const std::string path = temporary("marks.log");
    {
        FileLogger logger(path, 100000);
        logger.println(5, "a");
        logger.setInfo(5, true);
        logger.println(5, "b");
        logger.setWarn(5, true);
        logger.println(5, "c");
        logger.setError(5, true);
        logger.println(5, "d");
        logger.setLevel(Logger::REPORT);
        logger.println(5, "held back");
    }
    EXPECT_EQ(contents(path), "a\ninfo: b\nwarning: c\nerror: d\n");
    std::filesystem::remove(path);
}

TEST(FileLogger, SurvivesAPathThatCannotBeOpened)
{
    const std::string folder = testing::TempDir();
    for (const std::string& path : {std::string(), folder, folder + "none/none/none.log"}) {
        SCOPED_TRACE(path);
        auto* const logger = new FileLogger(path, 10);
        Log::createLog("file")->addLogger(logger);
        for (int i = 0; i < 100; ++i) Log::errorf("THERMO", "line %d\n", i);
        // The file is opened by the writing thread.
        for (int i = 0; i < 10000 && !logger->hasFailed(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_TRUE(logger->hasFailed());
        Log::finalize();
    }
}

TEST(FileLogger, SaysThatTheDeviceIsFull)
{
    ASSERT_TRUE(std::filesystem::exists("/dev/full"));
    FileLogger logger("/dev/full", 1);
    logger.println(0, "text");
    for (int i = 0; i < 10000 && !logger.hasFailed(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(logger.hasFailed());
    logger.println(0, "dropped");
}

} // namespace
