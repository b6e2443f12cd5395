#pragma once

#include <string>

namespace host {

/// The folder of the species files.
class Resources
{
public:
    /// Looks for the folder: the stated one; else the one in the environment variable
    /// KETRA_RESOURCES; else the installed one, first beside this program and then where it was
    /// configured to be; else "resources" in the working folder. The first two are not passed over
    /// when they hold no species file: they were asked for.
    /// \throws Failure that lists where it looked
    explicit Resources(const std::string& stated);

    const std::string& getFolder() const { return folder; }
    /// The file of transport data, which may be missing.
    std::string getTransportFile() const;
    bool hasTransport() const;
    /// Fills the library's database from the files of the folder, and puts the user's own records
    /// over them. \throws Failure
    void load() const;
    /// The same without the user's records and without transport data. \throws Failure
    void loadShipped() const;

private:
    std::string folder;
};

} // namespace host
