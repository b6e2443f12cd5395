#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Loader.h>
#include <ketra/util/concurrent/Mutex.h>

#include <iosfwd>
#include <map>
#include <string>

namespace thermo {

class Species;

/// All species known to the process, and from which file each one came, so that only what changed
/// is written back. The singleton serves the whole library and lives to the end of the process;
/// further instances can be made for a file that is to be looked at on its own.
///
/// A database owns its species. Names are compared exactly, with case and inner blanks.
/// Nearly all operations take one recursive lock, shared by all instances. The species themselves
/// are read without it. Relative paths are those of the working directory.
class KETRA_API Database
{
public:
    virtual ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The database that the whole library uses; empty until the host loads a file.
    static Database* getInstance() { return instance; }
    /// Deletes a database unless it is null or the singleton.
    static void remove(Database* db);
    /// A new id for a species; the first one of a process is 1, none is given twice.
    static int getNextSpeciesId();
    /// Sets the folder of the user's files, for the singleton.
    static void setUsrLocation(const char* path);

    /// Loads "resources/thermo.inp" and "resources/properties.inp" into the emptied singleton, and
    /// if \p withUsr the user's two files over them, in "resources" of \p usrFolder or, if that is
    /// null, of the working directory. A missing user's file is an error.
    /// \throws runtime::Exception 0 if a file cannot be opened, 1 if its load failed.
    static void loadStdDatabase(bool withUsr, const char* usrFolder);
    /// Loads a species file into the singleton, which is emptied first if \p clear.
    /// \throws runtime::Exception as loadNASA9() does; likewise the next ones.
    static void loadDatabase(const char* path, bool clear);
    /// Loads a properties file into the singleton.
    static void loadPropertiesDatabase(const char* path);
    /// Loads a file of transport properties into the singleton.
    static void loadTransportPropertiesDatabase(const char* path);
    /// \returns a new database of that file alone, the caller's; to be given up by remove().
    static Database* preloadDatabase(const char* path);
    /// Reads a PROPEP file, a list of propellant ingredients: each becomes a reactant of the single
    /// temperature 298.15 K, with its density at two temperatures, under the user's sources of the
    /// new database. Its name is the first word of the ingredient's, the rest is the description;
    /// of two with the same first word the later one stays. The last ingredient of a file is left
    /// out, and so is one of more than five elements or of an unknown one, with an error in the
    /// log. The table of atoms must have been filled, see ChemicalElement::initAtoms().
    /// \returns a new database of that file alone, the caller's; to be given up by remove().
    /// \throws runtime::Exception 0 if the file cannot be opened.
    static Database* preloadPROPEPDatabase(const char* path);

    /// Writes all of the singleton to a file: type 0 the species, type 1 the property tables.
    /// \throws thermo::Exception 0 with the path in its text.
    static void saveDatabase(const char* path, int type);
    /// If \p save, writes back each modified source of the singleton, or only \p sourceId if that
    /// is not negative. \throws thermo::Exception 0.
    static void saveDatabase(int sourceId, bool save);
    /// Does nothing; an entry point only.
    static void savePropertiesDatabase(const char* path, int sourceId);

    /// Number of species.
    unsigned int size() const;
    /// The i-th species in order of first appearance, unchecked; it stays the database's.
    const Species* operator[](unsigned int i) const;
    /// The species of exactly that name, null if there is none; it stays the database's.
    const Species* find(const std::string& name) const;
    const Species* operator[](const std::string& name) const { return find(name); }
    Species* findForUpdate(const std::string& name);
    /// True if the species or its tables come from the user's files.
    bool isUserDefinedSpecies(const Species* species) const;

    /// Adds a new species and takes ownership of it; it replaces one of the same name. Without a
    /// source it gets those of the user's files, which count as modified then. A species that has
    /// an id and a source is in a database already and is left alone.
    /// \throws thermo::Exception 4 if the species bears an id that is not the replaced one's; it
    /// then stays the caller's.
    void addNewSpecies(Species* species);
    /// Takes the species of that name out. \returns null if it was deleted or there was none, else
    /// the species without ids, the caller's.
    Species* remove(const std::string& name, bool deleteSpecies);

    /// Loads a species file over what is there.
    /// \throws runtime::Exception 0 if it cannot be opened, 1 if the load failed as a whole. Bad
    /// records never fail the load; they are dropped one by one with a warning.
    void loadNASA9(const char* path);
    void loadNASA9(std::ifstream& stream, int sourceId);
    /// Writes the species of a source, or of all for -1. The old file is kept as a backup whose
    /// name has a "~" in front of the point. Until the new file is complete the old one stays.
    /// \throws runtime::Exception 0 if the file cannot be written or a value does not fit its
    /// column; all files are then as before, and what was modified still counts as modified.
    void saveNASA9(const char* path, int sourceId);
    /// Writes the species of a source, or of all for a negative one, for scripts: a comment, then
    /// a list of objects that looks much like JSON, but with single quotes. All species are in one
    /// list, in order of first appearance; what was modified still counts as modified. An old file
    /// is kept as saveNASA9() keeps it.
    /// \throws runtime::Exception 0 if the file cannot be written; the old one is then as before.
    void saveNASA9AsJSON(const char* path, int sourceId);
    /// The same for the tables of properties.
    void loadProperties(const char* path);
    void loadProperties(std::ifstream& stream, int sourceId);
    void saveProperties(const char* path, int sourceId);
    /// Loads a file of transport properties into the species that are there; it is never written.
    /// It counts among the files of tables, but the species' sources stay as they are.
    /// \throws runtime::Exception 0 if it cannot be opened, 1 if the load failed.
    void loadTransportProperties(const char* path);
    void loadTransportProperties(std::ifstream& stream, int sourceId);

    /// Reads all files of this instance again and drops what was changed in memory.
    void reload();
    /// True if the source is a species file and it or one of its species was changed.
    bool isNASA9Modified(int sourceId) const;
    /// True if the source is a table file and it or one of its tables was changed.
    bool isPropertiesModified(int sourceId) const;

protected:
    Database();

    /// The id of a file, a new one at its first registration. Type 0: species, 1: tables.
    int addSource(const char* path, int type);
    /// The path of a source, null if the id is unknown.
    const char* getSource(int id) const;
    /// Forgets all species and sources. Ids of species are not given again.
    void clear();

private:
    std::string usrPath(const char* file) const;
    std::size_t indexOf(const std::string& name) const;
    bool isModified(int sourceId, int fileType) const;
    void markModified(int sourceId);
    std::string nasa9Text(int sourceId) const;
    std::string propertiesText(int sourceId) const;
    std::string nasa9JSONText(int sourceId) const;

    static util::concurrent::Mutex dbMutex; // recursive; guards everything below
    static Database* instance;              // made at library load, never replaced
    static int speciesId;                   // the last id given out

    std::map<std::string, int> sources;     // id by path
    std::map<std::string, int> sourceTypes; // 0 species, 1 tables, by path
    std::map<int, bool>
        sourceModified; // species were added or removed since the last read or write
    std::unique_ptr<SpeciesMap> species;
    std::unique_ptr<SpeciesList> speciesList;
    std::string usrLocation; // folder of the user's files
};

} // namespace thermo
