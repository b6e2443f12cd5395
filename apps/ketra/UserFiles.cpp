#include "UserFiles.h"
#include "Failure.h"

#include <ketra/api/ketra.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace host {
namespace {

constexpr const char* variable = "KETRA_USER";
// The names that the library gives to the files of a user's folder.
constexpr const char* speciesFile = "resources/usr_thermo.inp";
constexpr const char* propertiesFile = "resources/usr_properties.inp";

std::string stateOrVariable(const std::string& stated)
{
    const char* const environment = std::getenv(variable);
    return stated.empty() && environment ? environment : stated;
}

bool isFile(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

} // namespace

UserFiles::UserFiles(const std::string& stated) : folder(stateOrVariable(stated)) {}

std::string UserFiles::inFolder(const char* file) const
{
    return folder + (folder.empty() || folder.back() == '/' ? "" : "/") + file;
}

std::string UserFiles::getSpeciesFile() const { return inFolder(speciesFile); }

std::string UserFiles::getPropertiesFile() const { return inFolder(propertiesFile); }

bool UserFiles::hasSpeciesFile() const { return hasFolder() && isFile(getSpeciesFile()); }

bool UserFiles::hasPropertiesFile() const { return hasFolder() && isFile(getPropertiesFile()); }

void UserFiles::makeFolder() const
{
    const std::filesystem::path path = std::filesystem::path(getSpeciesFile()).parent_path();
    std::error_code fault;
    std::filesystem::create_directories(path, fault);
    if (fault) throw Failure(INTERNAL, "cannot make " + path.string() + ": " + fault.message());
}

void UserFiles::load() const
{
    std::error_code ignored;
    if (hasFolder() && !std::filesystem::is_directory(folder, ignored))
        throw Failure(DATA, "no folder \"" + folder +
                                "\" of the user's species (given by --user or " + variable + ")");
    std::string file;
    try {
        if (hasSpeciesFile())
            loadThermodynamicsDatabase((file = getSpeciesFile()).c_str(), /*clear=*/false);
        if (hasPropertiesFile()) loadPropertiesDatabase((file = getPropertiesFile()).c_str());
    } catch (...) {
        throw describeException(Stage::LOADING, file);
    }
}

} // namespace host
