#pragma once

#include <ketra/util/Log.h>
#include <ketra/util/Logger.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace ketra_test {

/// One text that came through the log.
struct LogLine {
    util::Logger::Level level;
    std::string tag;  // empty for report text
    std::string text; // without "TAG: ", with its line end
};

/// What a capturing sink has received; shared by the sink and its reader.
class LogRecord
{
public:
    void add(LogLine line)
    {
        const std::lock_guard lock(mutex);
        lines.push_back(std::move(line));
    }
    std::vector<LogLine> all() const
    {
        const std::lock_guard lock(mutex);
        return lines;
    }
    void clear()
    {
        const std::lock_guard lock(mutex);
        lines.clear();
    }

private:
    mutable std::mutex mutex;
    std::vector<LogLine> lines;
};

/// A sink that collects lines.
class CapturingLogger : public util::Logger
{
public:
    explicit CapturingLogger(std::shared_ptr<LogRecord> target) : record(std::move(target)) {}

    void print(unsigned int channel, const char* text) override
    {
        const auto severity = static_cast<Level>(channel);
        std::string tag, rest(text);
        const std::size_t colon = rest.find(": ");
        if (severity != REPORT && colon != std::string::npos) {
            tag = rest.substr(0, colon);
            rest.erase(0, colon + 2);
        }
        record->add({severity, tag, rest});
    }
    void println(unsigned int channel, const char* text) override
    {
        print(channel, (std::string(text) + "\n").c_str());
    }
    [[gnu::format(printf, 3, 0)]] void vprintf(unsigned int channel, const char* format,
                                               std::va_list arguments) override
    {
        char buffer[4096];
        std::vsnprintf(buffer, sizeof buffer, format, arguments);
        print(channel, buffer);
    }

private:
    std::shared_ptr<LogRecord> record;
};

/// While it lives the log of the process is one that collects lines; at its end there is none.
class LogCapture
{
public:
    LogCapture() : record(std::make_shared<LogRecord>())
    {
        auto sink = std::make_unique<CapturingLogger>(record);
        util::Log::createLog("test")->addLogger(sink.release());
    }
    ~LogCapture() { util::Log::finalize(); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<LogLine> lines() const { return record->all(); }
    std::vector<std::string> errors() const { return texts(util::Logger::ERROR); }
    std::vector<std::string> warnings() const { return texts(util::Logger::WARN); }
    std::vector<std::string> infos() const { return texts(util::Logger::INFO); }

    /// Tag of the first line with that text, empty if there is no such line.
    std::string tagOf(const std::string& text) const
    {
        for (const LogLine& line : record->all())
            if (line.text == text) return line.tag;
        return {};
    }

    /// The report text, all in one.
    std::string report() const
    {
        std::string all;
        for (const std::string& text : texts(util::Logger::REPORT)) all += text;
        return all;
    }

    void clear() { record->clear(); }

private:
    std::vector<std::string> texts(util::Logger::Level level) const
    {
        std::vector<std::string> found;
        for (const LogLine& line : record->all())
            if (line.level == level) found.push_back(line.text);
        return found;
    }

    std::shared_ptr<LogRecord> record;
};

} // namespace ketra_test
