#pragma once

#include "Case.h"
#include "ExitCode.h"
#include "Session.h"

#include <string>

namespace host {

/// What the user asks of `ketra run`.
struct RunOptions {
    std::string document;
    ReadingOptions reading;
    SessionOptions session;
    std::string json; ///< file for the results, "-" for standard output; empty: none
    bool english = false;
    bool transport = false;
    bool corrections = false; ///< delivered values even if the document does not ask for them
};

/// Solves a case and prints its report into the log. \throws Failure
void solveAndReport(Case& engine, const RunOptions& options, HeldMessages& messages);

/// Checks a document, solves its problem, prints the report. \throws Failure
ExitCode runDocument(const RunOptions& options);

} // namespace host
