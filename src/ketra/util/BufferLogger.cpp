#include <ketra/util/BufferLogger.h>

#include <ketra/util/detail/Format.h>
#include <ketra/util/detail/Severity.h>

namespace util {

BufferLogger::BufferLogger(unsigned int limit) : size(limit)
{
    for (const Level severity : {ERROR, WARN, INFO}) channels[severity].insert(severity);
}

BufferLogger::~BufferLogger() = default;

void BufferLogger::print(unsigned int channel, const char* text)
{
    const std::lock_guard lock(mutex);
    const Level severity = severityOf(channel);
    if (passes(severity)) append(detail::shown(severity, text));
}

void BufferLogger::println(unsigned int channel, const char* text)
{
    print(channel, (std::string(text) + '\n').c_str());
}

void BufferLogger::vprintf(unsigned int channel, const char* format, std::va_list arguments)
{
    print(channel, detail::vformat(format, arguments).c_str());
}

void BufferLogger::setInfo(unsigned int channel, bool on) { mark(INFO, channel, on); }

void BufferLogger::setWarn(unsigned int channel, bool on) { mark(WARN, channel, on); }

void BufferLogger::setError(unsigned int channel, bool on) { mark(ERROR, channel, on); }

std::string BufferLogger::getText() const
{
    const std::lock_guard lock(mutex);
    return kept;
}

void BufferLogger::clear()
{
    const std::lock_guard lock(mutex);
    kept.clear();
}

void BufferLogger::append(const std::string& text)
{
    kept += text;
    if (size == 0 || kept.size() <= size) return;
    const std::size_t surplus = kept.size() - size;
    const std::size_t lineEnd = kept.find('\n', surplus - 1);
    // A single line longer than the buffer keeps its end.
    const bool wholeLines = lineEnd != std::string::npos && lineEnd + 1 < kept.size();
    kept.erase(0, wholeLines ? lineEnd + 1 : surplus);
}

void BufferLogger::mark(Level severity, unsigned int channel, bool on)
{
    const std::lock_guard lock(mutex);
    if (on)
        channels[severity].insert(channel);
    else
        channels[severity].erase(channel);
}

Logger::Level BufferLogger::severityOf(unsigned int channel) const
{
    for (const Level severity : {ERROR, WARN, INFO})
        if (channels[severity].contains(channel)) return severity;
    return REPORT;
}

} // namespace util
