#pragma once

#include <string>
#include <string_view>

struct stat;

namespace io::detail {

/// The new content of a file under a name of its own in the same folder, so that it can take the
/// file's place in one step; gone again unless it has. Every operation tells whether it succeeded.
class NewFile
{
public:
    /// Makes a file beside \p path that did not exist before, with the permissions of any new one.
    explicit NewFile(std::string path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    /// Belongs to whom \p old belongs to as far as the process may give it away, and may be read
    /// and written by the same.
    bool resemble(const struct stat& old);
    /// Writes the whole text, to the disk, and closes the file.
    bool write(std::string_view text);
    /// Takes the place of the file beside which it was made.
    bool place();

private:
    std::string target;
    std::string name;
    int descriptor = -1;
    bool made = false;
    bool placed = false;
};

/// Writes the whole text to an open file.
bool writeAll(int descriptor, std::string_view text);

} // namespace io::detail
