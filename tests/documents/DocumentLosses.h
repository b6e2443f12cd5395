#pragma once

#include <unit/thermo_input/Facts.h>

#include <map>
#include <string>

namespace ketra_test {

/// How often each thing that a document can lose was lost, by its name.
using Losses = std::map<std::string, int>;

/// What a document says after it was written and read: everything but what the format cannot hold.
/// The losses are counted.
Facts afterWhole(const Facts& facts, Losses& losses);
/// The same for a document that was written without what stands at its default.
Facts afterSparse(const Facts& facts, Losses& losses);

} // namespace ketra_test
