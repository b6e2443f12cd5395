#pragma once

#include "RunCommand.h"

#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra compare`.
struct CompareOptions {
    std::vector<std::string> documents; ///< two or more
    RunOptions run;                     ///< for each of them; its document is not read
};

/// Solves several documents, prints the report of the first and the key figures of all beside each
/// other. \throws Failure
ExitCode compareDocuments(const CompareOptions& options);

} // namespace host
