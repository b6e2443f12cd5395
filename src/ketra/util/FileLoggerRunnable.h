#pragma once

#include <ketra/util/Runnable.h>

#include <string>

namespace util {

namespace detail {
class TextQueue;
}

/// Writes the text of a queue to a file until the queue is closed and empty.
class KETRA_API FileLoggerRunnable : public Runnable
{
public:
    /// \param source where the text comes from; not owned, must outlive the run
    FileLoggerRunnable(const std::string& file, detail::TextQueue& source);
    ~FileLoggerRunnable() override;

    void run() override;

    const char* getPath() const { return path.c_str(); }

private:
    std::string path;
    detail::TextQueue& queue;
};

} // namespace util
