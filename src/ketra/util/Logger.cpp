#include <ketra/util/Logger.h>

#include <ketra/util/detail/Format.h>

namespace util {

Logger::Logger() : level(INFO) {}

Logger::~Logger() = default;

void Logger::setLevel(Level newLevel) { level.store(newLevel, std::memory_order_relaxed); }

void Logger::info(const char* text)
{
    if (passes(INFO)) print(INFO, text);
}

void Logger::warn(const char* text)
{
    if (passes(WARN)) print(WARN, text);
}

void Logger::error(const char* text)
{
    if (passes(ERROR)) print(ERROR, text);
}

void Logger::infof(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = detail::vformat(format, arguments);
    va_end(arguments);
    info(text.c_str());
}

void Logger::warnf(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = detail::vformat(format, arguments);
    va_end(arguments);
    warn(text.c_str());
}

void Logger::errorf(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = detail::vformat(format, arguments);
    va_end(arguments);
    error(text.c_str());
}

void Logger::printf(unsigned int channel, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    vprintf(channel, format, arguments);
    va_end(arguments);
}

} // namespace util
