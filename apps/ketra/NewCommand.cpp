#include "NewCommand.h"
#include "Failure.h"
#include "NewDocument.h"
#include "Output.h"

#include <sys/stat.h>

namespace host {
namespace {

/// Whether something that would be lost stands under that name; a device or pipe only passes on.
bool isTaken(const std::string& path)
{
    struct stat state = {};
    return ::stat(path.c_str(), &state) == 0 && (S_ISREG(state.st_mode) || S_ISDIR(state.st_mode));
}

} // namespace

ExitCode writeNewDocument(const NewOptions& options)
{
    const std::string file = options.file.empty() ? "-" : options.file;
    if (file != "-" && !options.force && isTaken(file))
        throw Failure(USAGE, file + ": the file is there already. Name another one, or write over "
                                    "it with --force");
    writeToFile(file, options.full ? fullDocument : smallDocument);
    return GOOD;
}

} // namespace host
