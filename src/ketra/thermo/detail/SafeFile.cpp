#include <ketra/thermo/detail/SafeFile.h>

#include <ketra/io/detail/NewFile.h>
#include <ketra/util/String.h>

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

    io::detail::NewFile file(path);
    if (!file.isOpen() || (exists && !file.resemble(old)) || !file.write(text)) return false;
    if (exists) {
        const std::string backup = backupName(path);
        if (std::rename(path.c_str(), backup.c_str()) != 0) return false;
        if (!file.place()) {
            (void)std::rename(backup.c_str(), path.c_str());
            return false;
        }
    } else if (!file.place()) {
        return false;
    }
    syncFolder(path);
    return true;
}

} // namespace thermo::detail
