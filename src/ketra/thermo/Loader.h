#pragma once

#include <ketra/export.h>

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace thermo {

class Species;

/// The look-up of a database: species by name. It owns nothing.
using SpeciesMap = std::map<std::string, Species*>;
/// All species of a database in order of first appearance; it owns them.
using SpeciesList = std::vector<std::unique_ptr<Species>>;

/// Reads a species file into the tables of a database, which stay the database's.
class KETRA_API Loader
{
public:
    Loader(SpeciesMap* nameMap, SpeciesList* list) : species(nameMap), speciesList(list) {}
    virtual ~Loader();
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    /// Reads \p stream to its end; the species get \p sourceId.
    virtual void load(std::ifstream& stream, int sourceId) = 0;

protected:
    SpeciesMap* species;
    SpeciesList* speciesList;
};

} // namespace thermo
