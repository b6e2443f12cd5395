// Writes the species, properties and transport files of the library.
//
// The first two are loaded and saved by the library, so that what is shipped is laid out exactly as
// it lays it out. Two things are then put back that the saver cannot write: the formulas of two
// records with more than three decimals, and the line that explains the codes of added reactants.
//
// The library only reads transport files. They are written here, from the numbers as the library
// reads them, for the species of the first file.

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/properties/TransportPropertiesCoefficients.h>
#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/Log.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr const char* help =
    "usage: make-resources THERMO PROPERTIES TRANSPORT FOLDER\n"
    "\n"
    "Loads the species file THERMO and the properties file PROPERTIES and writes\n"
    "FOLDER/thermo.inp and FOLDER/properties.inp as the library lays them out, and\n"
    "FOLDER/trans.inp with those blocks of the file TRANSPORT whose species are in\n"
    "THERMO. Run on the shipped files it gives the same files again.\n";

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

void write(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!(file << text) || !file.flush()) throw std::runtime_error("cannot write " + path.string());
}

/// Formatted text, filled with blanks to the width of a record.
[[gnu::format(printf, 1, 2)]] std::string record(const char* format, ...)
{
    std::array<char, recordWidth + 1> line{};
    std::va_list values;
    va_start(values, format);
    const int length = std::vsnprintf(line.data(), line.size(), format, values);
    va_end(values);
    if (length < 0 || static_cast<std::size_t>(length) > recordWidth)
        throw std::runtime_error(std::string("too wide: ") + line.data());
    return line.data() + std::string(recordWidth - static_cast<std::size_t>(length), ' ') + '\n';
}

/// A number of eight digits behind the point, 0.61205763E+00: one power of ten above that of C.
std::string coefficient(double value)
{
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%+.7E", value); // +6.1205763E-01
    const int power = std::atoi(text.data() + 11) + (value == 0.0 ? 0 : 1);
    std::array<char, 24> shifted{};
    std::snprintf(shifted.data(), shifted.size(), "%c0.%c%.7sE%+03d", text[0] == '-' ? '-' : ' ',
                  text[1], text.data() + 3, power);
    return shifted.data();
}

std::string intervalLine(char quantity, const std::string& line)
{
    const thermo::properties::TransportPropertiesCoefficients c(line);
    return record(" %c%9.1f%9.1f%s%s%s%s", quantity, c.getT1(), c.getT2(),
                  coefficient(c.getA()).c_str(), coefficient(c.getB()).c_str(),
                  coefficient(c.getC()).c_str(), coefficient(c.getD()).c_str());
}

std::string name(const std::string& line, std::size_t column)
{
    const std::string field = line.substr(column, 15);
    const std::size_t end = field.find_last_not_of(' ');
    return end == std::string::npos ? std::string() : field.substr(0, end + 1);
}

std::string transportText(const std::string& source)
{
    const thermo::Database& database = *thermo::Database::getInstance();
    std::string text = record("%s", "transport property coefficients");
    std::istringstream lines(source);
    std::string line;
    std::getline(lines, line); // the title
    while (std::getline(lines, line) && line.compare(0, 3, "end") != 0) {
        line.resize(recordWidth, ' ');
        const std::string first = name(line, 0);
        const std::string second = name(line, 16);
        const int viscosities = line[35] - '0', conductivities = line[37] - '0';
        std::string block = record("%-15s %-15s   V%dC%d", first.c_str(), second.c_str(),
                                   viscosities, conductivities);
        for (int i = 0; i < viscosities + conductivities; ++i) {
            if (!std::getline(lines, line)) throw std::runtime_error("no end of " + first);
            block += intervalLine(i < viscosities ? 'V' : 'C', line);
        }
        if (database.find(first)) text += block;
    }
    return text + record("%s", "end");
}

void make(const char* thermoFile, const char* propertiesFile, const char* transportFile,
          const std::filesystem::path& folder)
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
    write(target, text);
    write(folder / "trans.inp", transportText(read(transportFile)));
}

} // namespace

int main(int argc, char** argv)
{
    const bool asked = argc == 2 && std::string_view(argv[1]) == "--help";
    if (asked || argc != 5) {
        std::fputs(help, asked ? stdout : stderr);
        return asked ? 0 : 2;
    }
    util::Log::createLog("make-resources")->addLogger(new util::ConsoleLogger);
    int status = 0;
    try {
        make(argv[1], argv[2], argv[3], argv[4]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make-resources: %s\n", e.what());
        status = 1;
    }
    util::Log::finalize();
    return status;
}
