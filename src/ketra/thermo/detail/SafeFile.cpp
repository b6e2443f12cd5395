#include <ketra/thermo/detail/SafeFile.h>

#include <ketra/util/String.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace thermo::detail {

namespace {

std::size_t nameBegin(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? 0 : slash + 1;
}

/// A file that is removed again unless it has been put into its place.
class NewFile
{
public:
    /// Makes a file beside \p path that did not exist before.
    explicit NewFile(const std::string& path)
    {
        constexpr int attempts = 100; // names left over by interrupted runs
        for (int i = 0; i < attempts && descriptor < 0; ++i) {
            name = path + ".part" + std::to_string(i);
            descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor < 0 && errno != EEXIST) return;
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile()
    {
        if (descriptor >= 0) ::close(descriptor);
        if (made() && !placed) ::unlink(name.c_str());
    }

    bool made() const { return created || descriptor >= 0; }

    bool write(std::string_view text, mode_t mode)
    {
        if (descriptor < 0) return false;
        created = true;
        if (mode != 0 && ::fchmod(descriptor, mode) != 0) return false;
        while (!text.empty()) {
            const ssize_t written = ::write(descriptor, text.data(), text.size());
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) return false;
            text.remove_prefix(static_cast<std::size_t>(written));
        }
        if (::fsync(descriptor) != 0) return false;
        const int closed = ::close(descriptor);
        descriptor = -1;
        return closed == 0;
    }

    bool moveTo(const std::string& path)
    {
        placed = std::rename(name.c_str(), path.c_str()) == 0;
        return placed;
    }

private:
    std::string name;
    int descriptor = -1;
    bool created = false;
    bool placed = false;
};

/// The renamings reach the disk too; a file system that cannot do this is no reason to fail.
void syncFolder(const std::string& path)
{
    const std::size_t begin = nameBegin(path);
    const std::string folder = begin == 0 ? "." : path.substr(0, begin);
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    (void)::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

std::string backupName(const std::string& path)
{
    const std::size_t begin = nameBegin(path);
    const std::string name = path.substr(begin);
    std::string backup = name;
    util::String::replaceFirst(backup, "\\.([^.])", "~.$1");
    if (backup == name) backup += '~';
    return path.substr(0, begin) + backup;
}

bool replaceFile(const std::string& path, std::string_view text)
{
    struct stat old = {};
    const bool exists = ::stat(path.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) return false;

    NewFile file(path);
    if (!file.write(text, exists ? old.st_mode & 07777u : 0)) return false;
    if (exists) {
        const std::string backup = backupName(path);
        if (std::rename(path.c_str(), backup.c_str()) != 0) return false;
        if (!file.moveTo(path)) {
            (void)std::rename(backup.c_str(), path.c_str());
            return false;
        }
    } else if (!file.moveTo(path)) {
        return false;
    }
    syncFolder(path);
    return true;
}

} // namespace thermo::detail
