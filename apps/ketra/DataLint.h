#pragma once

#include "DataKind.h"
#include "Findings.h"
#include "SpeciesLint.h"

namespace thermo {
class Database;
}

namespace host {

/// Looks for faults of a file of species data. \p known are the species that there are; those of a
/// species file are added to them. \returns the number of records that the library keeps
size_t lintDataFile(const DataText& text, DataKind kind, KnownSpecies& known, Findings& findings);

/// The species of a database, at their files without a line.
KnownSpecies knownSpecies(thermo::Database& database);

} // namespace host
