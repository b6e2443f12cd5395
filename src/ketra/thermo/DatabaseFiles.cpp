#include <ketra/thermo/Database.h>

#include <ketra/io/File.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/PropepFile.h>
#include <ketra/thermo/nasa9/NASA9Loader.h>
#include <ketra/thermo/properties/PropertiesLoader.h>
#include <ketra/thermo/properties/TransportPropertiesLoader.h>
#include <ketra/util/Log.h>
#include <ketra/util/detail/NumericLocale.h>

#include <fstream>
#include <locale>
#include <mutex>
#include <string>

namespace thermo {

namespace {

using Lock = std::unique_lock<util::concurrent::Mutex>;

std::string stdPath(const char* folder, const char* file)
{
    return (folder != nullptr ? std::string(folder) + '/' : std::string()) + file;
}

/// Opens a file for reading; \p what names the kind of file in the failure.
void openOrFail(std::ifstream& stream, const char* path, const char* what)
{
    if (path == nullptr) path = "";
    stream.imbue(std::locale::classic());
    stream.open(path, std::ios::in | std::ios::binary);
    // A folder can be opened, but nothing can be read from it.
    if (stream.is_open() && (stream.peek() != std::ifstream::traits_type::eof() || !stream.bad())) {
        stream.clear();
        return;
    }
    util::Log::errorf("ROOT", "Database: could not load %s database %s\n", what, path);
    throw runtime::Exception(0);
}

/// Reads an open file under the lock of \p mutex; \p what names the kind of file in the failure.
template <class Load>
void readLocked(util::concurrent::Mutex& mutex, std::ifstream& stream, const char* what, Load load)
{
    Lock lock(mutex);
    try {
        const util::NumericLocale numbers;
        stream.imbue(std::locale::classic());
        load();
    } catch (const std::exception&) {
        lock.unlock();
        util::Log::errorf("ROOT", "Database: could not load %s database\n", what);
        throw runtime::Exception(1);
    }
}

/// Runs a load under the lock; a failure is logged once the lock has been released.
template <class Load, class Report> void guarded(Lock& lock, Load load, Report report)
{
    try {
        load();
    } catch (const runtime::Exception&) {
        lock.unlock();
        report();
        throw;
    }
}

} // namespace

void Database::loadNASA9(const char* path)
{
    std::ifstream stream;
    openOrFail(stream, path, "thermodynamic");
    loadNASA9(stream, addSource(path, 0));
}

void Database::loadNASA9(std::ifstream& stream, int sourceId)
{
    readLocked(dbMutex, stream, "thermodynamic", [&] {
        nasa9::NASA9Loader(species.get(), speciesList.get()).load(stream, sourceId);
        sourceModified[sourceId] = false;
    });
}

void Database::loadProperties(const char* path)
{
    std::ifstream stream;
    openOrFail(stream, path, "properties");
    loadProperties(stream, addSource(path, 1));
}

void Database::loadProperties(std::ifstream& stream, int sourceId)
{
    readLocked(dbMutex, stream, "properties", [&] {
        properties::PropertiesLoader::load(stream, *species, sourceId);
        sourceModified[sourceId] = false;
    });
}

void Database::loadTransportProperties(const char* path)
{
    std::ifstream stream;
    openOrFail(stream, path, "transport properties");
    loadTransportProperties(stream, addSource(path, 1));
}

void Database::loadTransportProperties(std::ifstream& stream, int sourceId)
{
    readLocked(dbMutex, stream, "transport properties", [&] {
        properties::TransportPropertiesLoader::load(stream, *species);
        sourceModified[sourceId] = false;
    });
}

void Database::loadStdDatabase(bool withUsr, const char* usrFolder)
{
    constexpr const char* nasa9File = "resources/thermo.inp";
    constexpr const char* propertiesFile = "resources/properties.inp";
    Lock lock(dbMutex);
    instance->clear();
    guarded(
        lock, [&] { instance->loadNASA9(nasa9File); },
        [&] {
            util::Log::errorf("THERMO",
                              "Database: could not load standard thermodynamic database %s\n",
                              nasa9File);
        });
    guarded(
        lock, [&] { instance->loadProperties(propertiesFile); },
        [&] {
            util::Log::errorf("THERMO", "Database: could not load properties database %s\n",
                              propertiesFile);
        });
    if (!withUsr) return;
    guarded(
        lock, [&] { instance->loadNASA9(stdPath(usrFolder, "resources/usr_thermo.inp").c_str()); },
        [] {
            util::Log::errorf("THERMO",
                              "Database: could not load user thermodynamic database usr thermo\n");
        });
    guarded(
        lock,
        [&] {
            instance->loadProperties(stdPath(usrFolder, "resources/usr_properties.inp").c_str());
        },
        [] {
            util::Log::errorf("THERMO",
                              "Database: could not load user properties database usr properties\n");
        });
}

void Database::loadDatabase(const char* path, bool clear)
{
    Lock lock(dbMutex);
    guarded(
        lock,
        [&] {
            if (clear) instance->clear();
            instance->loadNASA9(path);
        },
        [&] {
            util::Log::errorf("THERMO", "Database: could not load thermodynamic database %s\n",
                              path);
        });
}

void Database::loadPropertiesDatabase(const char* path)
{
    const Lock lock(dbMutex);
    instance->loadProperties(path);
}

void Database::loadTransportPropertiesDatabase(const char* path)
{
    const Lock lock(dbMutex);
    instance->loadTransportProperties(path);
}

Database* Database::preloadDatabase(const char* path)
{
    std::unique_ptr<Database> database(new Database);
    Lock lock(dbMutex);
    guarded(
        lock, [&] { database->loadNASA9(path); },
        [&] {
            database.reset();
            util::Log::errorf("THERMO", "Database: could not load thermodynamic database %s\n",
                              path);
        });
    return database.release();
}

Database* Database::preloadPROPEPDatabase(const char* path)
{
    std::ifstream stream;
    openOrFail(stream, path, "PROPEP");
    const util::NumericLocale numbers;
    std::unique_ptr<Database> database(new Database);
    for (std::unique_ptr<Species>& ingredient : detail::readPropepFile(stream))
        database->addNewSpecies(ingredient.release());
    return database.release();
}

void Database::reload()
{
    const Lock lock(dbMutex);
    species->clear();
    speciesList->clear();
    const int count = static_cast<int>(sources.size());
    for (int id = 0; id < count; ++id) {
        const char* const source = getSource(id);
        if (source == nullptr) continue;
        const std::string path = source;
        if (!io::File::exists(path.c_str())) {
            util::Log::warnf("ROOT",
                             "Database: could not reload database file %s because it does not "
                             "exist.\n",
                             path.c_str());
            continue;
        }
        try {
            const int type = sourceTypes.at(path);
            if (type == 0) loadNASA9(path.c_str());
            // The entry point of the whole library: tables go to the singleton's species.
            if (type == 1) loadPropertiesDatabase(path.c_str());
        } catch (const runtime::Exception&) {
            util::Log::errorf("ROOT", "Database: could not reload database file %s\n",
                              path.c_str());
        }
    }
}

} // namespace thermo
