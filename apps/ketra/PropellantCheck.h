#pragma once

#include "Document.h"

#include <string>

namespace thermo {
class Species;
}

namespace host {

/// Holds the propellant of a document against physics and data: lists that must not be empty,
/// fractions that have to add up to one, species that the database knows, temperatures at which
/// they have data. To be run after the format check has passed.
class PropellantCheck
{
public:
    PropellantCheck(const Document& checkedDocument, Findings& foundSoFar)
        : document(checkedDocument), findings(foundSoFar)
    {
    }
    /// What can be said without species data.
    void checkRecipe();
    /// Needs the database loaded.
    void checkSpecies();

private:
    const libconfig::Setting* form() const;
    void checkRatio(const libconfig::Setting& components);
    void checkList(const libconfig::Setting& group, const char* key);
    double checkFraction(const libconfig::Setting& component);
    void checkSum(const libconfig::Setting& list, double sum);
    void checkNames(const libconfig::Setting& list, bool premixed);
    void reportUnknown(const libconfig::Setting& component, const std::string& name);
    void reportTemperature(const libconfig::Setting& component, const thermo::Species& species);

    const Document& document;
    Findings& findings;
};

} // namespace host
