#include <ketra/util/Log.h>
#include <ketra/util/Logger.h>

#include <support/CapturingLogger.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdarg>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ketra_test::CapturingLogger;
using ketra_test::LogCapture;
using ketra_test::LogRecord;
using util::Log;
using util::Logger;

/// Says that it has been destroyed.
class Farewell : public CapturingLogger
{
public:
    explicit Farewell(bool& destroyed)
        : CapturingLogger(std::make_shared<LogRecord>()), gone(destroyed)
    {
    }
    ~Farewell() override { gone = true; }

private:
    bool& gone;
};

class FailingLogger : public CapturingLogger
{
public:
    FailingLogger() : CapturingLogger(std::make_shared<LogRecord>()) {}
    void print(unsigned int, const char*) override { throw std::runtime_error("disk full"); }
};

[[gnu::format(printf, 2, 3)]] void passOn(Logger::Level severity, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    switch (severity) {
    case Logger::REPORT:
        Log::vprintf("THERMO", format, arguments);
        break;
    case Logger::ERROR:
        Log::verrorf("THERMO", format, arguments);
        break;
    case Logger::WARN:
        Log::vwarnf("THERMO", format, arguments);
        break;
    case Logger::INFO:
        Log::vinfof("THERMO", format, arguments);
        break;
    }
    va_end(arguments);
}

TEST(Log, DoesNothingWithoutALog)
{
    Log::finalize();
    Log::finalize();
    EXPECT_EQ(Log::getLog(), nullptr);
    Log::error("THERMO", "text");
    Log::errorf("THERMO", "%d", 1);
    Log::warnf("THERMO", "%d", 1);
    Log::infof("THERMO", "%d", 1);
    Log::printf("THERMO", "%d", 1);
    passOn(Logger::ERROR, "%d", 1);
    EXPECT_EQ(Log::getLog(), nullptr);
}

TEST(Log, HandsEachSeverityOnWithItsTag)
{
    const LogCapture capture;
    Log::error("ROOT", "a\n");
    Log::errorf("THERMO", "b %.3f%s", 1.5, util::eol);
    Log::warnf("THERMO", "c %s\n", "x");
    Log::infof("THERMO", "d %u\n", 4u);

    EXPECT_EQ(capture.errors(), (std::vector<std::string>{"a\n", "b 1.500\r\n"}));
    EXPECT_EQ(capture.warnings(), std::vector<std::string>{"c x\n"});
    EXPECT_EQ(capture.infos(), std::vector<std::string>{"d 4\n"});
    EXPECT_EQ(capture.tagOf("a\n"), "ROOT");
    EXPECT_EQ(capture.tagOf("b 1.500\r\n"), "THERMO");
    EXPECT_EQ(capture.report(), "");
    EXPECT_EQ(capture.lines().size(), 4u);
}

TEST(Log, HandsReportTextOnAsItIs)
{
    const LogCapture capture;
    Log::printf("THERMO", "%s***%s", util::eol, util::eol);
    Log::printf("THERMO", "%19s:\t %10.5f", "Velocity", 2.0);
    EXPECT_EQ(capture.report(), "\r\n***\r\n           Velocity:\t    2.00000");
    EXPECT_TRUE(capture.errors().empty());
}

TEST(Log, TakesFormatAndArgumentsOfACaller)
{
    const LogCapture capture;
    passOn(Logger::REPORT, "%s", "report");
    passOn(Logger::ERROR, "%s", "error");
    passOn(Logger::WARN, "%s", "warning");
    passOn(Logger::INFO, "%s", "info");
    EXPECT_EQ(capture.report(), "report");
    EXPECT_EQ(capture.errors(), std::vector<std::string>{"error"});
    EXPECT_EQ(capture.warnings(), std::vector<std::string>{"warning"});
    EXPECT_EQ(capture.infos(), std::vector<std::string>{"info"});
}

TEST(Log, NeverTakesTextFromOutsideForAFormat)
{
    const LogCapture capture;
    Log::error("THERMO", "100 %s %n %d");
    Log::errorf("THERMO", "%s", "%s%n");
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{"100 %s %n %d", "%s%n"}));
}

TEST(Log, TakesNullForEmpty)
{
    Log::createLog(nullptr);
    EXPECT_STREQ(Log::getLog()->getName(), "");
    const LogCapture capture;
    Log::error("THERMO", nullptr);
    Log::errorf(nullptr, "%s", "text");
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{"", "text"}));
}

TEST(Log, CarriesLongTexts)
{
    const LogCapture capture;
    const std::string text(200000, 'x');
    Log::warnf("THERMO", "%s\n", text.c_str());
    EXPECT_EQ(capture.warnings(), std::vector<std::string>{text + "\n"});
}

TEST(Log, SaysNumbersThatAreNotFinite)
{
    const LogCapture capture;
    Log::printf("THERMO", "%7.3f %7.3f", NAN, INFINITY);
    EXPECT_EQ(capture.report(), "    nan     inf");
}

TEST(Log, HandsTheTextToEverySinkInOrder)
{
    const auto first = std::make_shared<LogRecord>();
    const auto second = std::make_shared<LogRecord>();
    Log* const log = Log::createLog("two");
    Logger* const sink = new CapturingLogger(first);
    EXPECT_EQ(log->addLogger(sink), log);
    log->addLogger(new CapturingLogger(second))->addLogger(nullptr);
    EXPECT_EQ(Log::getLog(), log);
    EXPECT_STREQ(log->getName(), "two");
    EXPECT_EQ(log->getNumberOfLoggers(), 2u);
    EXPECT_EQ(log->getLogger(0), sink);
    EXPECT_EQ(log->getLogger(2), nullptr);
    Log::error("THERMO", "x");
    Log::finalize();
    EXPECT_EQ(first->all().size(), 1u);
    EXPECT_EQ(second->all().size(), 1u);
}

TEST(Log, ReleasesItsSinksWhenItEnds)
{
    bool destroyed = false;
    Log::createLog("a")->addLogger(new Farewell(destroyed));
    EXPECT_FALSE(destroyed);
    Log::finalize();
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(Log::getLog(), nullptr);
}

TEST(Log, IsReplacedByTheNextOne)
{
    bool destroyed = false;
    Log::createLog("first")->addLogger(new Farewell(destroyed));
    Log::createLog("second");
    EXPECT_TRUE(destroyed);
    EXPECT_STREQ(Log::getLog()->getName(), "second");
    EXPECT_EQ(Log::getLog()->getNumberOfLoggers(), 0u);
    Log::finalize();
}

TEST(Log, CanBeMadeAgainAfterItHasEnded)
{
    Log::createLog("first");
    Log::finalize();
    const LogCapture capture;
    Log::error("THERMO", "again");
    EXPECT_EQ(capture.errors(), std::vector<std::string>{"again"});
}

TEST(Log, PassesOverASinkThatFails)
{
    const auto record = std::make_shared<LogRecord>();
    Log::createLog("a")->addLogger(new FailingLogger)->addLogger(new CapturingLogger(record));
    Log::error("THERMO", "x");
    Log::printf("THERMO", "y");
    Log::finalize();
    EXPECT_EQ(record->all().size(), 2u);
}

} // namespace
