#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Loader.h>

#include <iosfwd>

namespace thermo::properties {

/// Reads a file of viscosities and conductivities of gases in the form of the NASA Glenn transport
/// data.
class KETRA_API TransportPropertiesLoader
{
public:
    /// Reads \p stream up to its line "end" and gives the data to the species of the map. Blocks
    /// whose first species the map lacks are passed over with a warning; the second one of a pair
    /// is not looked up.
    /// \throws runtime::Exception 1 for a data line whose lower bound is not a temperature or
    ///         whose numbers are not finite
    static void load(std::ifstream& stream, const SpeciesMap& species);
};

} // namespace thermo::properties
