#pragma once

#include <ketra/export.h>

#include <string>

namespace io {

/// The path of a file, and the question whether there is one.
class KETRA_API File
{
public:
    File();
    /// A file of the path \p name; null counts as empty.
    explicit File(const char* name);
    virtual ~File();

    const char* getPath() const { return path.c_str(); }
    void setPath(const char* newPath);

    /// Whether \p name names something that is there and is not a folder.
    static bool exists(const char* name);

private:
    std::string path;
};

} // namespace io
