// Writes the species and properties files of the library through its own savers.
//
// The files given are loaded and saved, so that what is shipped is laid out exactly as the library
// lays it out. Two things are then put back that the saver cannot write: the formulas of two
// records with more than three decimals, and the line that explains the codes of added reactants.

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/Log.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr const char* help =
    "usage: make-resources THERMO PROPERTIES FOLDER\n"
    "\n"
    "Loads the species file THERMO and the properties file PROPERTIES and writes\n"
    "FOLDER/thermo.inp and FOLDER/properties.inp as the library lays them out.\n"
    "Run on the shipped files it gives the same files again.\n";

// Three decimals would damage these formulas: the carbon of the air would vanish.
constexpr const char* exactFormulas[] = {"Air", "JP-7"};
constexpr std::size_t formulaColumn = 10; // of the header line
constexpr std::size_t formulaWidth = 40;
constexpr std::size_t recordWidth = 80;

constexpr const char* codeNote[] = {
    "!",
    "!    kt     reactant added to this file        number in the list of",
    "!                                              docs/data.md",
};

std::string read(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Where the header line of a record begins: the line behind the one with its name.
std::size_t headerOf(std::string_view text, const std::string& name)
{
    const std::size_t record = text.find('\n' + name + ' ');
    const std::size_t end = record == std::string_view::npos ? record : text.find('\n', record + 1);
    if (end == std::string_view::npos || end + 1 + formulaColumn + formulaWidth > text.size())
        throw std::runtime_error("no record " + name);
    return end + 1;
}

void restoreFormulas(std::string& text, const std::string& source)
{
    for (const char* name : exactFormulas)
        text.replace(headerOf(text, name) + formulaColumn, formulaWidth, source,
                     headerOf(source, name) + formulaColumn, formulaWidth);
}

void addCodeNote(std::string& text)
{
    std::string note;
    for (const std::string line : codeNote)
        note += line + std::string(recordWidth - line.size(), ' ') + '\n';
    const std::size_t end = text.find("\n" + std::string(recordWidth, ' '));
    if (end == std::string::npos) throw std::runtime_error("no end of the reference table");
    text.insert(end + 1, note);
}

void make(const char* thermoFile, const char* propertiesFile, const std::filesystem::path& folder)
{
    const std::string source = read(thermoFile);
    thermo::ChemicalElement::initAtoms();
    thermo::Database::loadDatabase(thermoFile, /*clear=*/true);
    thermo::Database::loadPropertiesDatabase(propertiesFile);
    const std::filesystem::path target = folder / "thermo.inp";
    thermo::Database::saveDatabase(target.c_str(), 0);
    thermo::Database::saveDatabase((folder / "properties.inp").c_str(), 1);

    std::string text = read(target);
    restoreFormulas(text, source);
    addCodeNote(text);
    std::ofstream file(target, std::ios::binary | std::ios::trunc);
    if (!(file << text) || !file.flush())
        throw std::runtime_error("cannot write " + target.string());
}

} // namespace

int main(int argc, char** argv)
{
    const bool asked = argc == 2 && std::string_view(argv[1]) == "--help";
    if (asked || argc != 4) {
        std::fputs(help, asked ? stdout : stderr);
        return asked ? 0 : 2;
    }
    util::Log::createLog("make-resources")->addLogger(new util::ConsoleLogger);
    int status = 0;
    try {
        make(argv[1], argv[2], argv[3]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make-resources: %s\n", e.what());
        status = 1;
    }
    util::Log::finalize();
    return status;
}
