#include <ketra/util/Log.h>

#include <ketra/util/Logger.h>
#include <ketra/util/detail/Format.h>

#include <atomic>
#include <mutex>
#include <utility>

namespace util {

enum class Log::Kind { report, error, warn, info };

namespace {

std::atomic<bool> active{false}; // lets a call without a log return at once

/// The log of the process. A call in progress keeps the log alive while another thread ends it.
struct Current {
    std::mutex mutex;
    std::shared_ptr<Log> log;

    ~Current() { active = false; } // later calls, from destructors of statics, do nothing

    std::shared_ptr<Log> get()
    {
        const std::lock_guard lock(mutex);
        return log;
    }
    std::shared_ptr<Log> exchange(std::shared_ptr<Log> next)
    {
        const std::lock_guard lock(mutex);
        active = next != nullptr;
        return std::exchange(log, std::move(next));
    }
};

constinit Current current;

} // namespace

Log::Log(const char* given) : mutex(true), name(given != nullptr ? given : "") {}

Log::~Log() = default;

Log* Log::createLog(const char* name)
{
    std::shared_ptr<Log> made(new Log(name));
    Log* const created = made.get();
    if (const std::shared_ptr<Log> former = current.exchange(std::move(made))) former->close();
    return created;
}

void Log::finalize()
{
    if (!active) return;
    if (const std::shared_ptr<Log> former = current.exchange(nullptr)) former->close();
}

Log* Log::getLog() { return active ? current.get().get() : nullptr; }

void Log::error(const char* tag, const char* text)
{
    errorf(tag, "%s", text != nullptr ? text : "");
}

void Log::errorf(const char* tag, const char* format, ...)
{
    if (!active) return;
    std::va_list arguments;
    va_start(arguments, format);
    say(Kind::error, tag, format, arguments);
    va_end(arguments);
}

void Log::warnf(const char* tag, const char* format, ...)
{
    if (!active) return;
    std::va_list arguments;
    va_start(arguments, format);
    say(Kind::warn, tag, format, arguments);
    va_end(arguments);
}

void Log::infof(const char* tag, const char* format, ...)
{
    if (!active) return;
    std::va_list arguments;
    va_start(arguments, format);
    say(Kind::info, tag, format, arguments);
    va_end(arguments);
}

void Log::printf(const char* tag, const char* format, ...)
{
    if (!active) return;
    std::va_list arguments;
    va_start(arguments, format);
    say(Kind::report, tag, format, arguments);
    va_end(arguments);
}

void Log::verrorf(const char* tag, const char* format, std::va_list arguments)
{
    if (active) say(Kind::error, tag, format, arguments);
}

void Log::vwarnf(const char* tag, const char* format, std::va_list arguments)
{
    if (active) say(Kind::warn, tag, format, arguments);
}

void Log::vinfof(const char* tag, const char* format, std::va_list arguments)
{
    if (active) say(Kind::info, tag, format, arguments);
}

void Log::vprintf(const char* tag, const char* format, std::va_list arguments)
{
    if (active) say(Kind::report, tag, format, arguments);
}

Log* Log::addLogger(Logger* logger)
{
    std::unique_ptr<Logger> added(logger);
    const std::lock_guard lock(mutex);
    if (added) loggers.push_back(std::move(added));
    return this;
}

std::size_t Log::getNumberOfLoggers() const
{
    const std::lock_guard lock(mutex);
    return loggers.size();
}

Logger* Log::getLogger(std::size_t i) const
{
    const std::lock_guard lock(mutex);
    return i < loggers.size() ? loggers[i].get() : nullptr;
}

void Log::say(Kind kind, const char* tag, const char* format, std::va_list arguments)
{
    std::string text = detail::vformat(format, arguments);
    if (kind != Kind::report && tag != nullptr) text.insert(0, std::string(tag) + ": ");
    if (const std::shared_ptr<Log> log = current.get()) log->tell(kind, text);
}

void Log::tell(Kind kind, const std::string& text)
{
    const std::lock_guard lock(mutex);
    // By index: a sink may add a sink.
    for (std::size_t i = 0; i < loggers.size(); ++i) {
        try {
            Logger& logger = *loggers[i];
            switch (kind) {
            case Kind::report:
                logger.print(Logger::REPORT, text.c_str());
                break;
            case Kind::error:
                logger.error(text.c_str());
                break;
            case Kind::warn:
                logger.warn(text.c_str());
                break;
            case Kind::info:
                logger.info(text.c_str());
                break;
            }
        } catch (...) {
            // What is being reported matters more than the sink that could not take it.
        }
    }
}

void Log::close()
{
    std::vector<std::unique_ptr<Logger>> ended;
    {
        const std::lock_guard lock(mutex);
        ended.swap(loggers);
    }
    ended.clear();
}

} // namespace util
