#pragma once

#include <ketra/thermo/Database.h>

#include <string>

namespace host {

/// Reaches the files behind the ids of sources, which a database keeps for its subclasses.
struct DatabaseSources : thermo::Database {
    /// The file of a source, empty if the id is unknown.
    static std::string nameOf(const thermo::Database& database, int id)
    {
        const char* const name = (database.*&DatabaseSources::getSource)(id);
        return name ? name : "";
    }
    /// The id of a file of property tables, a new one if it has none.
    static int idOfTables(thermo::Database& database, const std::string& file)
    {
        return (database.*&DatabaseSources::addSource)(file.c_str(), 1);
    }
    /// The id of a file of species.
    static int idOfSpecies(thermo::Database& database, const std::string& file)
    {
        return (database.*&DatabaseSources::addSource)(file.c_str(), 0);
    }
};

} // namespace host
