#pragma once

#include <ketra/util/Logger.h>

namespace host {

/// A sink of the log that needs to say only what it does with a finished text.
class Sink : public util::Logger
{
public:
    void println(unsigned int channel, const char* text) override;
    void vprintf(unsigned int channel, const char* format, std::va_list arguments) override;
};

} // namespace host
