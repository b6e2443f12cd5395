#include "Output.h"
#include "Failure.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

/// A descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int openedFd) : fd(openedFd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }
    int get() const { return fd; }
    int close()
    {
        const int open = fd;
        fd = -1;
        return open < 0 ? 0 : ::close(open);
    }

private:
    int fd;
};

/// \returns 0, or the error number
int writeAll(int fd, const char* text, size_t length) noexcept
{
    while (length > 0) {
        const ssize_t written = ::write(fd, text, length);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        text += written;
        length -= static_cast<size_t>(written);
    }
    return 0;
}

[[noreturn]] void failToWrite(const std::string& what, int error)
{
    throw Failure(INTERNAL, "cannot write " + what + ": " + std::strerror(error));
}

void writeDirectly(const std::string& path, const std::string& text)
{
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (file.get() < 0) failToWrite(path, errno);
    if (const int error = writeAll(file.get(), text.data(), text.size())) failToWrite(path, error);
    if (file.close() != 0) failToWrite(path, errno);
}

/// The file behind a symbolic link, so that the link stays one.
std::string target(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : path;
}

void replaceFile(const std::string& path, const std::string& text, mode_t mode)
{
    std::string temporary = path + ".XXXXXX";
    Descriptor file(::mkstemp(temporary.data()));
    if (file.get() < 0) failToWrite(path, errno);

    int error = writeAll(file.get(), text.data(), text.size());
    if (!error && (::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0)) error = errno;
    if (file.close() != 0 && !error) error = errno;
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error) {
        ::unlink(temporary.c_str());
        failToWrite(path, error);
    }
}

/// The mode a new file gets from the process's mask.
mode_t newFileMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return static_cast<mode_t>(0666) & ~mask;
}

} // namespace

void guardStandardStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows beyond its limit
    // open() gives the lowest free number, so a closed descriptor is filled before the next one.
    // Read-only, so that a write to it still fails.
    for (int fd = 0; fd <= 2; ++fd)
        if (::fcntl(fd, F_GETFD) < 0 && errno == EBADF && ::open("/dev/null", O_RDONLY) < 0) return;
}

void writeToStandardOutput(const std::string& text)
{
    const int error = writeAll(STDOUT_FILENO, text.data(), text.size());
    if (error && error != EPIPE) failToWrite("standard output", error);
}

void writeToStandardError(const std::string& text) noexcept
{
    writeAll(STDERR_FILENO, text.data(), text.size());
}

void writeToFile(const std::string& path, const std::string& text)
{
    if (path == "-") return writeToStandardOutput(text);
    struct stat state = {};
    const bool exists = ::stat(path.c_str(), &state) == 0;
    if (exists && !S_ISREG(state.st_mode)) return writeDirectly(path, text);
    replaceFile(exists ? target(path) : path, text,
                exists ? state.st_mode & static_cast<mode_t>(07777) : newFileMode());
}

} // namespace host
