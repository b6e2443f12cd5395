#pragma once

#include "Case.h"
#include "ExitCode.h"
#include "Session.h"

#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra throttle`.
struct ThrottleOptions {
    std::string document;
    ReadingOptions reading;
    SessionOptions session;
    std::vector<double> ratios; ///< mass flow over that of the design
    std::string json;           ///< file for the results, "-" for standard output; empty: none
    bool english = false;
    bool allowFailures = false; ///< a ratio without a solution does not make the command fail
};

/// Solves the design that a document states, and what it delivers throttled. \throws Failure
ExitCode throttleDocument(const ThrottleOptions& options);

} // namespace host
