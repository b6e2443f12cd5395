#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Loader.h>

#include <iosfwd>

namespace thermo::properties {

/// Reads a file of property tables of liquids over pressure and temperature.
class KETRA_API PropertiesLoader
{
public:
    /// Reads \p stream to its end and gives the tables to the species of the map, with \p sourceId
    /// as their source. Tables of species that the map lacks are passed over with a warning.
    /// \throws runtime::Exception 1 for a table that is not 1 to 1000 by 1 to 1000.
    static void load(std::ifstream& stream, const SpeciesMap& species, int sourceId);
};

} // namespace thermo::properties
