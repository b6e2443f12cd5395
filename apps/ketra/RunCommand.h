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

/// Solves a case and has the result certified: one that is no solution is a failure.
/// \throws Failure
Certificate solveAndCertify(Case& engine, const RunOptions& options, HeldMessages& messages);
/// Prints the report of a solved case into the log, and its certificate as the last line.
/// \throws Failure
void report(const Case& engine, const Certificate& certificate, const RunOptions& options);

/// Checks a document, solves its problem, prints the report. \throws Failure
ExitCode runDocument(const RunOptions& options);

} // namespace host
