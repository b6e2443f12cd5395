#pragma once

#include "ExitCode.h"

#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra db lint`.
struct LintOptions {
    std::vector<std::string> files;
    std::string resources; ///< folder; empty: to be looked for
    bool strict = false;   ///< warnings count as errors
    bool verbose = false;
};

/// Reads files of species data and says what is wrong with them, where, and how to mend it.
/// \throws Failure
ExitCode lintFiles(const LintOptions& options);

} // namespace host
