#pragma once

#include "DataText.h"
#include "Findings.h"
#include "SpeciesLint.h"

namespace host {

// Both kinds of files give data to species that a species file has. \returns the number of blocks
// that the library keeps.

/// Looks for faults of a properties file: tables that are not read or lose data.
size_t lintProperties(const DataText& text, const KnownSpecies& known, Findings& findings);
/// Looks for faults of a file of transport properties.
size_t lintTransport(const DataText& text, const KnownSpecies& known, Findings& findings);

} // namespace host
