#pragma once

#include <string>

namespace host {

/// The user's own species and property tables: resources/usr_thermo.inp and
/// resources/usr_properties.inp in a folder of the user's. Their records take the place of those
/// of the same name that come with the program.
class UserFiles
{
public:
    /// In the stated folder; else in the one that the environment variable KETRA_USER names. With
    /// neither there are no files of the user's.
    explicit UserFiles(const std::string& stated = "");

    bool hasFolder() const { return !folder.empty(); }
    const std::string& getFolder() const { return folder; }
    std::string getSpeciesFile() const;
    std::string getPropertiesFile() const;
    bool hasSpeciesFile() const;
    bool hasPropertiesFile() const;
    /// Makes the folder of the files, if it is not there. \throws Failure
    void makeFolder() const;
    /// Loads what is there over the species loaded so far. \throws Failure
    void load() const;

private:
    std::string inFolder(const char* file) const;

    std::string folder;
};

} // namespace host
