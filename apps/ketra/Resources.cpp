#include "Resources.h"
#include "Failure.h"
#include "Output.h"
#include "UserFiles.h"

#include <ketra/api/ketra.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <cstdlib>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

constexpr const char* speciesFile = "/thermo.inp";
constexpr const char* propertiesFile = "/properties.inp";
constexpr const char* transportFile = "/trans.inp";
constexpr const char* variable = "KETRA_RESOURCES";

bool isFile(const std::string& path)
{
    struct stat state = {};
    return ::stat(path.c_str(), &state) == 0 && S_ISREG(state.st_mode);
}

/// Folder of the running program; empty if the system does not tell.
std::string programFolder()
{
    std::string path(4096, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0) return {};
    path.resize(static_cast<size_t>(length));
    return path.substr(0, path.rfind('/'));
}

/// Whether anything can be made of what was loaded. Any text has a first word on some line, which
/// passes as the name of a species without elements.
bool hasSpecies()
{
    thermo::Database& database = *thermo::Database::getInstance();
    for (unsigned i = 0; i < database.size(); ++i)
        if (database[i]->size() > 0) return true;
    return false;
}

std::string demand(const std::string& folder, const std::string& origin)
{
    if (isFile(folder + speciesFile)) return folder;
    throw Failure(DATA, "no species file \"" + folder + speciesFile + "\" (" + origin + ")");
}

std::string search(const std::string& stated)
{
    if (!stated.empty()) return demand(stated, "the folder was given by --resources");
    const char* const environment = std::getenv(variable);
    if (environment && *environment)
        return demand(environment, std::string("the folder was given by ") + variable);

    const std::string program = programFolder();
    std::vector<std::string> folders;
    if (!program.empty()) folders.push_back(program + "/../share/ketra/resources");
    folders.emplace_back(KETRA_RESOURCES_FOLDER);
    folders.emplace_back("./resources");
    std::string looked;
    for (const std::string& folder : folders) {
        if (isFile(folder + speciesFile)) return folder;
        looked += "\n  " + folder + speciesFile;
    }
    throw Failure(DATA,
                  std::string("no species file found. Give its folder with --resources or in ") +
                      variable + ". Looked for:" + looked);
}

} // namespace

Resources::Resources(const std::string& stated) : folder(search(stated)) {}

std::string Resources::getTransportFile() const { return folder + transportFile; }

bool Resources::hasTransport() const { return isFile(getTransportFile()); }

void Resources::load() const
{
    loadShipped();
    UserFiles().load();
    if (!hasTransport()) return;
    try {
        loadTransportPropertiesDatabase(getTransportFile().c_str());
    } catch (...) {
        throw describeException(Stage::LOADING, getTransportFile());
    }
}

void Resources::loadShipped() const
{
    std::string file = folder + speciesFile;
    try {
        loadThermodynamicsDatabase(file.c_str(), /*clear=*/true);
        if (!hasSpecies()) throw Failure(DATA, file + ": the file holds no species");
        file = folder + propertiesFile;
        if (isFile(file))
            loadPropertiesDatabase(file.c_str());
        else
            writeToStandardError("ketra: warning: there is no file \"" + file +
                                 "\": liquids have no densities, and no data beside one "
                                 "temperature\n");
    } catch (...) {
        throw describeException(Stage::LOADING, file);
    }
}

} // namespace host
