#include "Work.h"

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>

namespace ketra_bench {

namespace {

constexpr const char* speciesFile = KETRA_SOURCE_DIR "/resources/thermo.inp";
constexpr double speciesOfTheFile = 2110.0;

/// Reads the species file into a database of its own and gives it up again.
Body load()
{
    thermo::ChemicalElement::initAtoms();
    const auto once = [] {
        thermo::Database* database = thermo::Database::preloadDatabase(speciesFile);
        const unsigned int size = database->size();
        thermo::Database::remove(database);
        return size;
    };
    requireClose("species of the file", once(), speciesOfTheFile, 0.0);
    return [once] { once(); };
}

} // namespace

std::vector<Work> databaseWorks() { return {{"Database/Load", load}}; }

} // namespace ketra_bench
