#include <ketra/thermo/input/detail/SourceText.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace thermo::input::detail {

namespace {

/// A file that is open for writing, closed at the latest when this goes.
class Output
{
public:
    explicit Output(int descriptor) : file(descriptor) {}
    ~Output()
    {
        if (isOpen()) ::close(file);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    bool isOpen() const { return file >= 0; }
    int get() const { return file; }

    void write(const std::string& text)
    {
        for (std::size_t done = 0; done < text.size();) {
            const ssize_t step = ::write(file, text.data() + done, text.size() - done);
            if (step < 0 && errno == EINTR) continue;
            if (step <= 0) fail();
            done += static_cast<std::size_t>(step);
        }
    }
    void sync()
    {
        if (::fsync(file) != 0) fail();
    }
    void close()
    {
        if (::close(std::exchange(file, -1)) != 0) fail();
    }

private:
    [[noreturn]] static void fail() { throw std::runtime_error("a file cannot be written"); }

    int file;
};

/// The new text of a file under a name of its own, gone again unless it is put into place.
class Replacement
{
public:
    // In the same folder, so that it can be renamed; made with the permissions of any new file.
    explicit Replacement(std::string file) : target(std::move(file)), output(create()) {}
    ~Replacement()
    {
        if (made && !placed) ::unlink(name.c_str());
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    bool isOpen() const { return output.isOpen(); }

    /// Belongs to whom \p old belongs to, and may be read and written by the same.
    void resemble(const struct stat& old)
    {
        // Only a privileged process may give a file away; for others it is theirs already.
        static_cast<void>(::fchown(output.get(), old.st_uid, old.st_gid) == 0);
        static_cast<void>(::fchmod(output.get(), old.st_mode & 07777) == 0);
    }

    void place(const std::string& text)
    {
        output.write(text);
        output.sync();
        output.close();
        placed = ::rename(name.c_str(), target.c_str()) == 0;
        if (!placed) throw std::runtime_error(target + " cannot be replaced");
    }

private:
    int create()
    {
        constexpr int attempts = 1000; // names that an earlier process may have left behind
        for (int i = 0; i < attempts; ++i) {
            name = target + "." + std::to_string(::getpid()) + "-" + std::to_string(i);
            const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            made = file >= 0;
            if (made || errno != EEXIST) return file;
        }
        return -1;
    }

    std::string target;
    std::string name;
    bool made = false;
    bool placed = false;
    Output output;
};

// For what cannot be replaced: a device, a pipe, a file in a folder that takes no new files.
bool overwrite(const std::string& path, const std::string& text)
{
    Output output(::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    if (!output.isOpen()) return false;
    output.write(text);
    output.close();
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
    Replacement replacement(exists ? std::filesystem::canonical(path).string() : path);
    if (!replacement.isOpen()) return exists && overwrite(path, text);
    if (exists) replacement.resemble(old);
    replacement.place(text);
    return true;
}

} // namespace thermo::input::detail
