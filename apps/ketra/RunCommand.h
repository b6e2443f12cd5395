#pragma once

#include "ExitCode.h"

#include <string>

namespace host {

/// What the user asks of `ketra run`.
struct RunOptions {
    std::string document;
    std::string resources; ///< folder; empty: to be looked for
    std::string json;      ///< file for the results, "-" for standard output; empty: none
    std::string log;       ///< file for all messages and the report; empty: none
    bool english = false;
    bool transport = false;
    bool crlf = false;
    bool verbose = false;
    bool strict = false;
    bool allowInclude = false;
};

/// Checks a document, solves its problem, prints the report. \throws Failure
ExitCode runDocument(const RunOptions& options);

} // namespace host
