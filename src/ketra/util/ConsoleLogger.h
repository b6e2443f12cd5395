#pragma once

#include <ketra/util/Logger.h>

namespace util {

/// Prints the report to standard output, the severities to standard error with "error: ",
/// "warning: " or "info: " in front. A line of a severity that has no line end gets one.
class KETRA_API ConsoleLogger : public Logger
{
public:
    ConsoleLogger();
    ~ConsoleLogger() override;

    void print(unsigned int channel, const char* text) override;
    void println(unsigned int channel, const char* text) override;
    [[gnu::format(printf, 3, 0)]] void vprintf(unsigned int channel, const char* format,
                                               std::va_list arguments) override;
};

} // namespace util
