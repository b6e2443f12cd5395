#pragma once

#include "ExitCode.h"

#include <string>

namespace host {

/// What the user asks of `ketra new`.
struct NewOptions {
    std::string file;   ///< the document to write; empty or "-": standard output
    bool full = false;  ///< with every section and key of the format
    bool force = false; ///< in place of a file that is there
};

/// Writes a document to start from. \throws Failure
ExitCode writeNewDocument(const NewOptions& options);

} // namespace host
