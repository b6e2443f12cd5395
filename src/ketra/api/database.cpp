#include <ketra/api/ketra.h>

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>

void setDatabaseUsrLocation(const char* path) { thermo::Database::setUsrLocation(path); }

void loadThermodynamicsDatabase(const char* path, bool clear)
{
    thermo::ChemicalElement::initAtoms();
    thermo::Database::loadDatabase(path, clear);
}

void loadPropertiesDatabase(const char* path) { thermo::Database::loadPropertiesDatabase(path); }

void loadTransportPropertiesDatabase(const char* path)
{
    thermo::Database::loadTransportPropertiesDatabase(path);
}
