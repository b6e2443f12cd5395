#pragma once

#include "Case.h"
#include "ExitCode.h"
#include "Session.h"

#include <string>

namespace host {

/// What the user asks of `ketra nozzle`.
struct NozzleOptions {
    std::string document;
    ReadingOptions reading;
    SessionOptions session;
    unsigned stations = 20;
    bool csv = false; ///< the table as comma-separated values
    std::string json; ///< file for the results, "-" for standard output; empty: none
    bool english = false;
    bool composition = false; ///< the table with mole fractions
    bool allowFailures = false;
};

/// Solves the engine of a document and the states along its nozzle. \throws Failure
ExitCode followNozzle(const NozzleOptions& options);

} // namespace host
