#include <ketra/thermo/input/detail/SourceText.h>

#include <ketra/io/detail/NewFile.h>

#include <filesystem>
#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace thermo::input::detail {

namespace {

[[noreturn]] void fail(const std::string& path)
{
    throw std::runtime_error(path + " cannot be written");
}

// For what cannot be replaced: a device, a pipe, a file in a folder that takes no new files.
bool overwrite(const std::string& path, const std::string& text)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (file < 0) return false;
    const bool written = io::detail::writeAll(file, text);
    if (::close(file) != 0 || !written) fail(path);
    return true;
}

} // namespace

bool replaceFile(const std::string& path, const std::string& text)
{
    struct stat old = {};
    const bool exists = ::stat(path.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) return overwrite(path, text);
    if (exists && ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return false;

    // A link stays a link: what it points to is replaced.
    const std::string target = exists ? std::filesystem::canonical(path).string() : path;
    io::detail::NewFile file(target);
    if (!file.isOpen()) return exists && overwrite(path, text);
    if (exists) static_cast<void>(file.resemble(old));
    if (!file.write(text) || !file.place()) fail(target);
    return true;
}

} // namespace thermo::input::detail
