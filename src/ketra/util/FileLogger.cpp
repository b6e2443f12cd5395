#include <ketra/util/FileLogger.h>

#include <ketra/util/FileLoggerRunnable.h>
#include <ketra/util/detail/TextQueue.h>

#include <csignal>

namespace util {

namespace {

// The signals of the process are the host's; its handlers must not run on our thread.
void blockSignals()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

} // namespace

FileLogger::FileLogger(const std::string& path, unsigned int limit)
    : BufferLogger(limit), queue(std::make_unique<detail::TextQueue>(limit)),
      writer(std::make_unique<FileLoggerRunnable>(path, *queue)), thread([this] {
          blockSignals();
          writer->run();
      })
{
}

FileLogger::~FileLogger()
{
    queue->close();
    thread.join();
}

// Text that came before a change of marks goes to the file without waiting for what follows.

void FileLogger::setInfo(unsigned int channel, bool on)
{
    BufferLogger::setInfo(channel, on);
    queue->hurry();
}

void FileLogger::setWarn(unsigned int channel, bool on)
{
    BufferLogger::setWarn(channel, on);
    queue->hurry();
}

void FileLogger::setError(unsigned int channel, bool on)
{
    BufferLogger::setError(channel, on);
    queue->hurry();
}

const char* FileLogger::getPath() const { return writer->getPath(); }

bool FileLogger::hasFailed() const { return queue->hasFailed(); }

void FileLogger::append(const std::string& text) { queue->put(text); }

} // namespace util
