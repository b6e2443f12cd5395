#include <ketra/api/ketra.h>
#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/FileLogger.h>
#include <ketra/util/Log.h>

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

using util::Log;

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The only sink of the log of the process.
template <class Sink> Sink* onlySink()
{
    if (Log::getLog() == nullptr || Log::getLog()->getNumberOfLoggers() != 1) return nullptr;
    return dynamic_cast<Sink*>(Log::getLog()->getLogger(0));
}

class LogFunctions : public testing::Test
{
protected:
    void TearDown() override { closeLog(); }
};

TEST_F(LogFunctions, OpenALogOnTheConsole)
{
    testing::internal::CaptureStdout();
    createConsoleLog("host");
    EXPECT_NE(onlySink<util::ConsoleLogger>(), nullptr);
    EXPECT_STREQ(Log::getLog()->getName(), "host");
    Log::printf("THERMO", "%d atoms%s", 3, util::eol);
    closeLog();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "3 atoms\r\n");
    EXPECT_EQ(Log::getLog(), nullptr);
}

TEST_F(LogFunctions, OpenALogInAFile)
{
    const ketra_test::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "run.log";
    createFileLog("host", path.c_str(), 64);
    EXPECT_NE(onlySink<util::FileLogger>(), nullptr);
    for (int i = 0; i < 1000; ++i) Log::printf("THERMO", "line %d%s", i, util::eol);
    closeLog();
    std::string expected;
    for (int i = 0; i < 1000; ++i) expected += "line " + std::to_string(i) + "\r\n";
    EXPECT_EQ(contentOf(path), expected);
}

TEST_F(LogFunctions, TakeNoFileAsAnEmptyPathAndNoSizeAsTheUsualOne)
{
    createFileLog("host", nullptr, 0);
    const auto* sink = onlySink<util::FileLogger>();
    ASSERT_NE(sink, nullptr);
    EXPECT_STREQ(sink->getPath(), "");
    EXPECT_EQ(sink->getSize(), 10240U);
    Log::printf("THERMO", "goes nowhere%s", util::eol);
}

TEST_F(LogFunctions, KeepTheSizeThatIsGiven)
{
    createFileLog("host", nullptr, 77);
    ASSERT_NE(onlySink<util::FileLogger>(), nullptr);
    EXPECT_EQ(onlySink<util::FileLogger>()->getSize(), 77U);
}

TEST_F(LogFunctions, AcceptALogWithoutAName)
{
    createConsoleLog(nullptr);
    EXPECT_STREQ(Log::getLog()->getName(), "");
    createFileLog(nullptr, nullptr, 0);
    EXPECT_STREQ(Log::getLog()->getName(), "");
}

TEST_F(LogFunctions, CloseALogTwiceAndOpenItAgain)
{
    createConsoleLog("first");
    closeLog();
    closeLog();
    createConsoleLog("second");
    EXPECT_STREQ(Log::getLog()->getName(), "second");
}

} // namespace
