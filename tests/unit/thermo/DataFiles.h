#pragma once

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace ketra_test {

/// A folder of its own for the files of a test, removed with all in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "ketra-test-XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(const std::string& name) const { return (folder / name).string(); }

    /// Writes a file, its folder too. \returns its path.
    std::string write(const std::string& name, const std::string& text) const
    {
        const std::filesystem::path file = folder / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    std::filesystem::path folder;
};

inline std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// The text with other line ends.
inline std::string withLineEnds(const std::string& text, const char* end)
{
    std::string changed;
    for (const std::string& line : linesOf(text)) changed += line + end;
    return changed;
}

/// A database of its own, with its files' ids in reach.
class TestDatabase : public thermo::Database
{
public:
    TestDatabase() { thermo::ChemicalElement::initAtoms(); }
    using Database::addSource;
    using Database::clear;
    using Database::getSource;
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (unsigned int i = 0; i < size(); ++i) all.push_back((*this)[i]->getName());
        return all;
    }
};

// Two intervals, the second one steeper, so that a shared bound shows which of them answers.
inline const char* const argonRecord =
    "Ar                gas, atom                                                     \n"
    " 2 g 3/98 AR 1.000    0.00    0.00    0.00    0.00 0   39.9480000        0.00000\n"
    "    200.000   1000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         6197.428\n"
    " 0.000000000D+00 0.000000000D+00 2.500000000D+00 0.000000000D+00 0.000000000D+00\n"
    " 0.000000000D+00 0.000000000D+00                -7.453750000D+02 4.379674910D+00\n"
    "   1000.000   6000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         6197.428\n"
    " 2.010538475D+01-5.992661070D-02 2.750000000D+00-3.992141160D-08 1.205272140D-11\n"
    "-1.819015576D-15 1.078576636D-19                -7.449939610D+02 4.379180110D+00\n";

inline const char* const electronRecord =
    "e-                electron, gas                                                 \n"
    " 1 g12/98 E  1.000    0.00    0.00    0.00    0.00 0.000548579903        0.00000\n"
    "    298.150   1000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         6197.428\n"
    " 0.000000000D+00 0.000000000D+00 2.500000000D+00 0.000000000D+00 0.000000000D+00\n"
    " 0.000000000D+00 0.000000000D+00                -7.453750000D+02-1.172081224D+01\n";

inline const char* const waterRecord =
    "H2O(L)            liquid                                                        \n"
    " 1 g 8/01 H  2.000O  1.000    0.00    0.00    0.00 2   18.0152800  -285830.00000\n"
    "    273.150    373.1507 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0        13278.000\n"
    " 0.000000000D+00 0.000000000D+00 9.000000000D+00 0.000000000D+00 0.000000000D+00\n"
    " 0.000000000D+00 0.000000000D+00                -3.706000000D+04-4.290000000D+01\n";

// A condensed reactant of a single temperature.
inline const char* const binderRecord =
    "Binder            made-up binder, liquid                                        \n"
    " 0 madeup C  1.000H  2.000    0.00    0.00    0.00 1   14.0265800  -100000.00000\n"
    "    298.150      0.0000  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0            0.000\n";

/// A species file of these product and reactant records.
inline std::string speciesText(const std::vector<std::string>& products,
                               const std::vector<std::string>& reactants = {})
{
    std::string text = "thermo\n    200.00   1000.00   6000.00  20000.\n";
    for (const std::string& record : products) text += record;
    text += "END PRODUCTS\n";
    for (const std::string& record : reactants) text += record;
    return text + "END REACTANTS\n";
}

} // namespace ketra_test
