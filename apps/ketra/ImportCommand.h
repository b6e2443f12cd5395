#pragma once

#include "ExitCode.h"

#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra db import-propep`.
struct ImportOptions {
    std::string file;
    std::vector<std::string> picks; ///< names of species; empty: all
    std::string out;                ///< species file to write; empty: a table for people
    bool verbose = false;
};

/// Reads the ingredients of a PROPEP file, and lists them or writes them as species with their
/// densities. \throws Failure, also if one of the picks is not there
ExitCode importPropep(const ImportOptions& options);

} // namespace host
