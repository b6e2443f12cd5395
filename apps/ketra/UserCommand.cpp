#include "UserCommand.h"
#include "DataLint.h"
#include "DatabaseSources.h"
#include "Failure.h"
#include "LogSession.h"
#include "Nearest.h"
#include "Output.h"
#include "Resources.h"
#include "UserFiles.h"

#include <ketra/api/ketra.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <memory>

namespace host {
namespace {

using thermo::Database;
using thermo::Species;

constexpr size_t suggestions = 3;

struct RemoveDatabase {
    void operator()(Database* database) const { Database::remove(database); }
};
using OwnedDatabase = std::unique_ptr<Database, RemoveDatabase>;

/// The user's files while they are changed: what the program ships stands in the database, and the
/// user's records over it.
class UserDatabase
{
public:
    explicit UserDatabase(const UserOptions& options)
        : files(options.user), log(options.verbose, "", false)
    {
        if (!files.hasFolder())
            throw Failure(USAGE, "state the folder of your species with --user DIR, or in the "
                                 "environment variable KETRA_USER");
        files.makeFolder();
        setDatabaseUsrLocation(files.getFolder().c_str());
        Resources(options.resources).loadShipped();
        shipped = knownSpecies(database);
        refuseFaults();
        files.load();
    }
    Database& all() { return database; }

    bool isUsers(const std::string& name) const
    {
        const Species* const species = database.find(name);
        return species != nullptr && database.isUserDefinedSpecies(species);
    }
    bool isShipped(const std::string& name) const { return shipped.count(name) > 0; }
    std::vector<std::string> usersNames() const
    {
        std::vector<std::string> names;
        for (unsigned i = 0; i < database.size(); ++i)
            if (database.isUserDefinedSpecies(database[i])) names.push_back(database[i]->getName());
        return names;
    }

    void addSpecies(const std::string& file);
    void addTables(const std::string& file);
    void remove(const std::string& name);
    /// Writes the files, and tells what has become of them.
    void save();

private:
    void refuseFaults() const;
    /// What a new record or table is to the one that is there.
    std::string role(int presentSource) const;

    UserFiles files;
    LogSession log;
    Database& database = *Database::getInstance();
    KnownSpecies shipped;
    std::string changes; // a line each
};

/// A record that is dropped on loading would be lost when the file is written anew.
void UserDatabase::refuseFaults() const
{
    KnownSpecies known = shipped;
    const auto refuse = [&known](const std::string& file, DataKind kind) {
        Findings findings;
        lintDataFile(DataText(file), kind, known, findings);
        if (findings.errors() == 0) return;
        findings.print();
        throw Failure(DOCUMENT, file + ": your file has faults, and would lose records if it were "
                                       "changed. Mend it first");
    };
    if (files.hasSpeciesFile()) refuse(files.getSpeciesFile(), DataKind::SPECIES);
    if (files.hasPropertiesFile()) refuse(files.getPropertiesFile(), DataKind::PROPERTIES);
}

std::string UserDatabase::role(int presentSource) const
{
    const std::string present = DatabaseSources::nameOf(database, presentSource);
    if (present.empty()) return ": added\n";
    return present == files.getSpeciesFile() || present == files.getPropertiesFile()
               ? ": replaces your own\n"
               : ": takes the place of that in " + present + "\n";
}

void UserDatabase::addSpecies(const std::string& file)
{
    const OwnedDatabase added(Database::preloadDatabase(file.c_str()));
    while (added->size() > 0) {
        std::unique_ptr<Species> species(
            added->remove((*added)[0u]->getName(), /*deleteSpecies=*/false));
        const std::string name = species->getName();
        const Species* const present = database.find(name);
        changes += name + role(present ? present->getSourceId() : -1);
        database.addNewSpecies(species.release());
    }
}

/// The tables are loaded like those of any file, and then handed over to the user's file.
void UserDatabase::addTables(const std::string& file)
{
    std::vector<int> sourcesBefore;
    for (unsigned i = 0; i < database.size(); ++i)
        sourcesBefore.push_back(database[i]->hasCpTable() ? database[i]->getTableSourceId() : -1);
    loadPropertiesDatabase(file.c_str());
    const int loaded = DatabaseSources::idOfTables(database, file);
    const int users = DatabaseSources::idOfTables(database, files.getPropertiesFile());
    for (unsigned i = 0; i < database.size(); ++i) {
        if (database[i]->getTableSourceId() != loaded) continue;
        Species& species = *database.findForUpdate(database[i]->getName());
        const int source = species.getSourceId();
        species.resetSourceIds();
        species.setSourceId(source);
        species.setTableSourceId(users);
        changes += "table of " + species.getName() + role(sourcesBefore[i]);
    }
}

void UserDatabase::remove(const std::string& name)
{
    if (!isUsers(name)) return; // it was named twice
    database.remove(name, /*deleteSpecies=*/true);
    changes += name + ": removed" +
               (isShipped(name) ? "; the one that comes with the program counts again" : "") + "\n";
}

void UserDatabase::save()
{
    std::string file;
    try {
        file = files.getSpeciesFile();
        database.saveNASA9(file.c_str(), DatabaseSources::idOfSpecies(database, file));
        file = files.getPropertiesFile();
        database.saveProperties(file.c_str(), DatabaseSources::idOfTables(database, file));
    } catch (const runtime::Exception&) {
        throw Failure(INTERNAL, "cannot write " + file + "; the file before is as it was" +
                                    (file == files.getPropertiesFile()
                                         ? ", but " + files.getSpeciesFile() + " has been written"
                                         : ""));
    }
    writeToStandardOutput(changes);
}

/// What a file holds; its faults are printed. \throws Failure if it cannot be added
DataKind inspect(const std::string& file, KnownSpecies& known)
{
    const DataText text(file);
    const std::optional<DataKind> kind = recognise(text);
    if (!kind) throw Failure(DOCUMENT, file + ": this is no file of species or property tables");
    if (kind == DataKind::PROPEP)
        throw Failure(DOCUMENT, file +
                                    ": this is a PROPEP file. Make species of it with \"ketra "
                                    "db import-propep " +
                                    file + " --out FILE\" and add that");
    if (kind == DataKind::TRANSPORT)
        throw Failure(DOCUMENT, file + ": this is a transport file, and there are none of the "
                                       "user's");
    Findings findings;
    // That a species takes the place of another one is what adding is for.
    KnownSpecies ofFile;
    lintDataFile(text, *kind, kind == DataKind::SPECIES ? ofFile : known, findings);
    known.merge(ofFile);
    findings.print();
    if (findings.errors() > 0)
        throw Failure(DOCUMENT, file + ": " + findings.summary() + "; nothing was added");
    return *kind;
}

} // namespace

ExitCode addToUser(const UserOptions& options)
{
    UserDatabase user(options);
    // The species come first: tables are for species that are there.
    KnownSpecies known = knownSpecies(user.all());
    std::vector<std::string> speciesFiles, tableFiles;
    for (const std::string& file : options.words)
        if (recognise(DataText(file)) != DataKind::PROPERTIES) {
            inspect(file, known);
            speciesFiles.push_back(file);
        } else {
            tableFiles.push_back(file);
        }
    for (const std::string& file : tableFiles) inspect(file, known);
    try {
        for (const std::string& file : speciesFiles) user.addSpecies(file);
        for (const std::string& file : tableFiles) user.addTables(file);
    } catch (...) {
        throw describeException(Stage::LOADING, "the files to add");
    }
    user.save();
    return GOOD;
}

ExitCode removeFromUser(const UserOptions& options)
{
    UserDatabase user(options);
    for (const std::string& name : options.words) {
        if (user.isUsers(name)) continue;
        const std::vector<std::string> meant = nearest(name, user.usersNames(), suggestions);
        throw Failure(DATA,
                      "your files have no species \"" + name + "\"" +
                          (user.isShipped(name) ? ": it comes with the program and stays" : "") +
                          ". Nothing was removed." +
                          (meant.empty() ? "" : " Is it " + quotedChoice(meant) + "?"));
    }
    for (const std::string& name : options.words) user.remove(name);
    user.save();
    return GOOD;
}

} // namespace host
