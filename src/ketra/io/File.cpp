#include <ketra/io/File.h>

#include <sys/stat.h>

namespace io {

File::File() = default;

File::File(const char* name) : path(name != nullptr ? name : "") {}

File::~File() = default;

void File::setPath(const char* newPath) { path = newPath != nullptr ? newPath : ""; }

bool File::exists(const char* name)
{
    struct stat status;
    return name != nullptr && stat(name, &status) == 0 && !S_ISDIR(status.st_mode);
}

} // namespace io
