#include <ketra/io/detail/NewFile.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace io::detail {

NewFile::NewFile(std::string path) : target(std::move(path))
{
    constexpr int attempts = 1000; // names that an interrupted process may have left behind
    for (int i = 0; i < attempts && !made; ++i) {
        name = target + "." + std::to_string(::getpid()) + "-" + std::to_string(i);
        descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        made = descriptor >= 0;
        if (!made && errno != EEXIST) return;
    }
}

NewFile::~NewFile()
{
    if (descriptor >= 0) ::close(descriptor);
    if (made && !placed) ::unlink(name.c_str());
}

bool NewFile::resemble(const struct stat& old)
{
    // Only a privileged process may give a file away; for others it is theirs already.
    static_cast<void>(::fchown(descriptor, old.st_uid, old.st_gid) == 0);
    return ::fchmod(descriptor, old.st_mode & 07777) == 0;
}

bool NewFile::write(std::string_view text)
{
    if (!writeAll(descriptor, text) || ::fsync(descriptor) != 0) return false;
    return ::close(std::exchange(descriptor, -1)) == 0;
}

bool NewFile::place()
{
    placed = std::rename(name.c_str(), target.c_str()) == 0;
    return placed;
}

bool writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace io::detail
