#include <ketra/util/ConsoleLogger.h>

#include <ketra/util/detail/Format.h>
#include <ketra/util/detail/Severity.h>

#include <cstdio>

namespace util {

ConsoleLogger::ConsoleLogger() = default;

ConsoleLogger::~ConsoleLogger() = default;

void ConsoleLogger::print(unsigned int channel, const char* text)
{
    const Level severity = channel <= INFO ? static_cast<Level>(channel) : REPORT;
    // One call a line: lines of several processes on one terminal do not mix.
    const std::string line = detail::shown(severity, text);
    std::fwrite(line.data(), 1, line.size(), severity == REPORT ? stdout : stderr);
}

void ConsoleLogger::println(unsigned int channel, const char* text)
{
    print(channel, (std::string(text) + '\n').c_str());
}

void ConsoleLogger::vprintf(unsigned int channel, const char* format, std::va_list arguments)
{
    print(channel, detail::vformat(format, arguments).c_str());
}

} // namespace util
