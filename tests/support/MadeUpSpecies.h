#pragma once

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace ketra_test {

/// An interval of a made-up species. With the coefficients (0, 0, c, 0, 0, 0, 0) and the constants
/// h and s: Cp/R = c, H/R = c T + h, S/R = c ln T + s.
struct Interval {
    double T1;
    double T2;
    std::array<double, 7> a;
    double h;
    double s;
};

/// Interval of constant heat capacity: Cp/R = \p c, H/R = c T + h, S/R = c ln T + s.
inline Interval constantCp(double T1, double T2, double c, double h, double s)
{
    return {T1, T2, {0.0, 0.0, c, 0.0, 0.0, 0.0, 0.0}, h, s};
}

/// A made-up species as a record of the species file.
struct Record {
    std::string name;
    std::vector<std::pair<std::string, double>> formula;
    double M;         // g/mol
    int condensed;    // phase code, 0 for a gas
    double dHf = 0.0; // J/mol
    std::vector<Interval> intervals;
    std::string description = "made up";
};

/// Appends formatted text.
[[gnu::format(printf, 2, 3)]] inline void append(std::string& text, const char* format, ...)
{
    std::array<char, 200> line{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    text += line.data();
}

/// The lines of a record.
inline std::string recordText(const Record& record)
{
    std::string text;
    append(text, "%-18s%-62s\n", record.name.c_str(), record.description.c_str());
    append(text, "%2d %-6s ", static_cast<int>(record.intervals.size()), "madeup");
    for (std::size_t i = 0; i < 5; ++i) {
        const bool given = i < record.formula.size();
        append(text, "%-2s%6.3f", given ? record.formula[i].first.c_str() : "",
               given ? record.formula[i].second : 0.0);
    }
    std::string mass;
    append(mass, "%13.7f", record.M);
    if (record.M <= 0.01) { // the electron: more digits, without the leading 0
        mass.clear();
        append(mass, "%14.12f", record.M);
        mass.erase(0, 1);
    }
    append(text, "%2d%s%15.5f\n", record.condensed, mass.c_str(), record.dHf);
    for (const Interval& interval : record.intervals) {
        append(text, "%11.3f%11.3f7 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0  %15.3f\n", interval.T1,
               interval.T2, 0.0);
        const auto& a = interval.a;
        append(text, "%16.9E%16.9E%16.9E%16.9E%16.9E\n", a[0], a[1], a[2], a[3], a[4]);
        append(text, "%16.9E%16.9E                %16.9E%16.9E\n", a[5], a[6], interval.h,
               interval.s);
    }
    return text;
}

/// A species of its own, outside any database, with the id \p type.
inline std::unique_ptr<thermo::nasa9::NASA9Species> makeSpecies(const Record& record, int type)
{
    thermo::ChemicalElement::initAtoms();
    std::istringstream lines(recordText(record));
    std::string line;
    std::getline(lines, line);
    auto species = std::make_unique<thermo::nasa9::NASA9Species>(line, false, false);
    std::getline(lines, line);
    species->loadHeader(line);
    while (std::getline(lines, line)) species->loadPolynomial(line);
    species->setType(type);
    return species;
}

/// A species file in the folder for temporary files, removed at the end of its life.
class SpeciesFile
{
public:
    explicit SpeciesFile(const std::vector<Record>& products)
        : path(std::filesystem::temp_directory_path() /
               ("ketra-species-" + std::to_string(::getpid()) + ".inp"))
    {
        std::ofstream file(path);
        file << "thermo\n    200.00   1000.00   6000.00  20000.\n";
        for (const Record& record : products) file << recordText(record);
        file << "END PRODUCTS\nEND REACTANTS\n";
    }
    ~SpeciesFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    SpeciesFile(const SpeciesFile&) = delete;
    SpeciesFile& operator=(const SpeciesFile&) = delete;

    const std::filesystem::path path;
};

} // namespace ketra_test
