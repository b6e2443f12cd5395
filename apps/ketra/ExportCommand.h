#pragma once

#include "ExitCode.h"

#include <string>

namespace host {

/// What the user asks of `ketra db export-json`.
struct ExportOptions {
    std::string file;      ///< to be written
    std::string species;   ///< species file to export; empty: what the resources hold
    std::string resources; ///< folder; empty: to be looked for
    bool strict = false;   ///< real JSON in place of the library's form
    bool verbose = false;
};

/// Writes species for scripts. \throws Failure
ExitCode exportSpecies(const ExportOptions& options);

} // namespace host
