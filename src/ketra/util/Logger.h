#pragma once

#include <ketra/export.h>

#include <atomic>
#include <cstdarg>

namespace util {

/// A sink of the log.
///
/// Text arrives on a channel: 0 is the report, 1 to 3 are the severities. A sink implements the
/// three abstract operations; the log itself calls print() for report text and error(), warn()
/// and info() for finished lines of a severity, one call at a time.
class KETRA_API Logger
{
public:
    /// The channels, and how much is let through: a level lets itself and all smaller ones pass.
    enum Level : unsigned int { REPORT = 0, ERROR = 1, WARN = 2, INFO = 3 };

    Logger();
    virtual ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// The highest severity that passes; at first INFO, so that everything passes.
    virtual void setLevel(Level newLevel);
    Level getLevel() const { return level.load(std::memory_order_relaxed); }

    /// A finished text of a severity, printed on its channel if the level lets it pass.
    virtual void info(const char* text);
    [[gnu::format(printf, 2, 3)]] virtual void infof(const char* format, ...);
    virtual void warn(const char* text);
    [[gnu::format(printf, 2, 3)]] virtual void warnf(const char* format, ...);
    virtual void error(const char* text);
    [[gnu::format(printf, 2, 3)]] virtual void errorf(const char* format, ...);

    /// Formatted text on a channel; the same as vprintf() with the arguments behind the format.
    [[gnu::format(printf, 3, 4)]] virtual void printf(unsigned int channel, const char* format,
                                                      ...);

    /// Text on a channel, as it stands.
    virtual void print(unsigned int channel, const char* text) = 0;
    /// Text on a channel and a line end.
    virtual void println(unsigned int channel, const char* text) = 0;
    /// Formatted text on a channel, numbers as in the "C" locale.
    [[gnu::format(printf, 3, 0)]] virtual void vprintf(unsigned int channel, const char* format,
                                                       std::va_list arguments) = 0;

protected:
    /// Whether text of a severity passes.
    bool passes(Level severity) const { return severity <= getLevel(); }

private:
    std::atomic<Level> level;
};

} // namespace util
