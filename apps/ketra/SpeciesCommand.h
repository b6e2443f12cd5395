#pragma once

#include "ExitCode.h"

#include <string>

namespace host {

/// What the user asks of `ketra species`.
struct SpeciesOptions {
    std::string pattern;   ///< part of a name, or a shell pattern; empty: all
    std::string resources; ///< folder; empty: to be looked for
    std::string json;      ///< file for the list, "-" for standard output; empty: a table
    bool verbose = false;
};

/// Lists what the database holds. \throws Failure, also if no species has such a name
ExitCode listSpecies(const SpeciesOptions& options);

} // namespace host
