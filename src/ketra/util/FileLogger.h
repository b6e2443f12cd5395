#pragma once

#include <ketra/util/BufferLogger.h>

#include <memory>
#include <string>
#include <thread>

namespace util {

namespace detail {
class TextQueue;
}
class FileLoggerRunnable;

/// Writes the text to a file, from a thread of its own.
///
/// The file starts anew. Everything received is in the file when the logger has been destroyed;
/// before that a fraction of a second may pass. If the file cannot be opened or written, the text
/// is dropped and hasFailed() says so.
class KETRA_API FileLogger : public BufferLogger
{
public:
    /// \param path the file
    /// \param limit characters that are gathered at most before they go to the file
    FileLogger(const std::string& path, unsigned int limit);
    ~FileLogger() override;

    void setInfo(unsigned int channel, bool on) override;
    void setWarn(unsigned int channel, bool on) override;
    void setError(unsigned int channel, bool on) override;

    const char* getPath() const;
    /// Whether the file could not be opened or written.
    bool hasFailed() const;

protected:
    void append(const std::string& text) override;

private:
    std::unique_ptr<detail::TextQueue> queue;
    std::unique_ptr<FileLoggerRunnable> writer;
    std::thread thread;
};

} // namespace util
