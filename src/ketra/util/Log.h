#pragma once

#include <ketra/export.h>
#include <ketra/util/concurrent/Mutex.h>

#include <cstdarg>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace util {

class Logger;

/// Line end of report text and of messages, on every platform.
inline constexpr const char* eol = "\r\n";

/// The log of the process: a facade over a list of sinks.
///
/// All reporting goes through the static operations, from any thread; the log takes one at a
/// time. A text is formatted once, numbers as in the "C" locale, and each sink receives the
/// finished text: report text as it is, a severity as "TAG: text". Without a log nothing happens.
/// A sink that fails is passed over, so that reporting never hides what is reported.
class KETRA_API Log
{
public:
    /// Makes the log of the process, without sinks. An earlier log is finalized.
    /// \returns the log; it belongs to the process and lives until finalize() or the next log.
    static Log* createLog(const char* name);
    /// Ends logging and destroys the sinks; what they had received is written when this returns.
    static void finalize();
    /// The log of the process, null if there is none.
    static Log* getLog();

    /// An error, a finished text; it may hold anything.
    static void error(const char* tag, const char* text);
    [[gnu::format(printf, 2, 3)]] static void errorf(const char* tag, const char* format, ...);
    [[gnu::format(printf, 2, 3)]] static void warnf(const char* tag, const char* format, ...);
    [[gnu::format(printf, 2, 3)]] static void infof(const char* tag, const char* format, ...);
    /// Report text: no severity, no tag in front.
    [[gnu::format(printf, 2, 3)]] static void printf(const char* tag, const char* format, ...);

    /// The same for functions that have received a format and its arguments themselves.
    [[gnu::format(printf, 2, 0)]] static void verrorf(const char* tag, const char* format,
                                                      std::va_list arguments);
    [[gnu::format(printf, 2, 0)]] static void vwarnf(const char* tag, const char* format,
                                                     std::va_list arguments);
    [[gnu::format(printf, 2, 0)]] static void vinfof(const char* tag, const char* format,
                                                     std::va_list arguments);
    [[gnu::format(printf, 2, 0)]] static void vprintf(const char* tag, const char* format,
                                                      std::va_list arguments);

    virtual ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    /// Adds a sink and takes ownership of it; null is passed over. \returns the log itself.
    Log* addLogger(Logger* logger);

    const char* getName() const { return name.c_str(); }
    std::size_t getNumberOfLoggers() const;
    /// The sink of index \p i in the order of adding, null beyond the last; the log's own.
    Logger* getLogger(std::size_t i) const;

private:
    enum class Kind;

    explicit Log(const char* given);
    [[gnu::format(printf, 3, 0)]] static void say(Kind kind, const char* tag, const char* format,
                                                  std::va_list arguments);
    void tell(Kind kind, const std::string& text);
    void close();

    mutable concurrent::Mutex mutex; // serialises the sinks; re-entrant, as a sink may log itself
    std::string name;
    std::vector<std::unique_ptr<Logger>> loggers;
};

} // namespace util
