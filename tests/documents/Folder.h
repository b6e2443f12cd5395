#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace ketra_test {

/// A folder of its own for one test, gone with everything in it at the end.
class Folder
{
public:
    Folder()
    {
        // In memory if the machine can: the library waits for its files to be on the disk.
        std::filesystem::path place = "/dev/shm";
        if (!std::filesystem::is_directory(place)) place = std::filesystem::temp_directory_path();
        std::string name = (place / "ketra-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        path = name;
    }
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string at(const std::string& name) const { return (path / name).string(); }
    /// Writes a file. \returns its path
    std::string write(const std::string& name, const std::string& text) const
    {
        std::ofstream(path / name, std::ios::binary) << text;
        return at(name);
    }
    std::string read(const std::string& name) const
    {
        std::ifstream stream(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    std::size_t countFiles() const
    {
        const std::filesystem::directory_iterator begin(path), end;
        return static_cast<std::size_t>(std::distance(begin, end));
    }

private:
    std::filesystem::path path;
};

/// The smallest document that can be read.
inline const std::string smallest =
    "combustionChamberConditions = {}; nozzleFlow = {}; propellant = { mixture = {}; };\n";

} // namespace ketra_test
