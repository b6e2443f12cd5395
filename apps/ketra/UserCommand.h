#pragma once

#include "ExitCode.h"

#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra db add` and `ketra db remove`.
struct UserOptions {
    std::vector<std::string> words; ///< files to add, or names to remove
    std::string user;               ///< folder; empty: the one in the environment
    std::string resources;          ///< folder; empty: to be looked for
    bool verbose = false;
};

/// Adds the species and tables of files to the user's own ones. \throws Failure, also for a file
/// with faults; nothing is changed then
ExitCode addToUser(const UserOptions& options);

/// Takes species out of the user's files. \throws Failure, also if one is not there; nothing is
/// changed then
ExitCode removeFromUser(const UserOptions& options);

} // namespace host
