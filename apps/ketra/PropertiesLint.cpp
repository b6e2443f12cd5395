#include "TableLint.h"
#include "Text.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

namespace host {
namespace {

constexpr int largestCount = 1000; // of pressures and of temperatures

/// A value of a data line: where it begins, and what it is.
struct Value {
    size_t at;
    const char* what;
};
constexpr size_t valueWidth = 14;
// Behind the temperature of the first pressure and the pressure of its first line these may be
// missing: they are 0 then.
constexpr Value values[] = {{0, "the pressure"},
                            {15, "the temperature"},
                            {30, "the specific heat"},
                            {45, "the density"},
                            {60, "the viscosity"},
                            {75, "the conductivity"},
                            {90, "the boiling temperature"},
                            {105, "the heat of vaporisation"}};
constexpr size_t needed = 4;     // values that each line must have
constexpr size_t ofPressure = 6; // values behind these stand on the first line of a pressure

class PropertiesLint
{
public:
    PropertiesLint(const DataText& propertiesFile, const KnownSpecies& knownSpecies,
                   Findings& found)
        : text(propertiesFile), known(knownSpecies), findings(found)
    {
    }

    size_t run()
    {
        for (const std::string_view line : text.getLines()) {
            ++lineNumber;
            if (isBlank(line)) continue;
            if (line[0] == '!')
                readComment(line);
            else if (due > 0)
                readData(line);
            else if (!readHead(line))
                return kept;
        }
        if (due > 0)
            findings.fail(
                place, "the file ends inside the table, which is dropped: " + std::to_string(due) +
                           " lines are missing. Complete it, or "
                           "mend the counts of its first line");
        return kept;
    }

private:
    Place here() const { return {text.getFile(), lineNumber, place.key}; }

    void readComment(std::string_view line)
    {
        const std::string comment = lowered(std::string(line));
        if (comment.find("format version ") != std::string::npos) versionStated = true;
    }

    /// \returns false if the library gives the file up here
    bool readHead(std::string_view line)
    {
        const size_t blank = std::min(line.find(' '), line.size());
        place = {text.getFile(), lineNumber, trimmedText(line.substr(0, blank))};
        const std::string counts = trimmedText(line.substr(blank));
        const size_t comma = counts.find(',');
        const auto count = [](const std::string& field) {
            const std::optional<double> number = numberIn(field);
            return number && *number >= 1 && *number <= largestCount ? static_cast<int>(*number)
                                                                     : 0;
        };
        nP = comma == std::string::npos ? 0 : count(counts.substr(0, comma));
        nT = comma == std::string::npos ? 0 : count(counts.substr(comma + 1));
        if (nP == 0 || nT == 0) {
            findings.fail(here(), "\"" + counts +
                                      "\" in place of the numbers of pressures and temperatures, "
                                      "as \"12,20\", 1 to 1000 each; the library gives the whole "
                                      "file up here. Mend the line, or the counts of the table "
                                      "before");
            return false;
        }
        if (!versionStated)
            findings.warn(here(), "without a line \"!Format Version 2\" before it the specific "
                                  "heat is taken as J/(kg K), not by the mole. Add the line");
        versionStated = true; // once is enough
        checkSpecies();
        due = nP * nT;
        pressures.clear();
        temperatures.clear();
        return true;
    }

    void checkSpecies()
    {
        isKnown = known.count(place.key) > 0;
        if (!isKnown)
            findings.fail(here(), "no species file has this species, and the table is passed "
                                  "over. Mend the name, or add the species");
        const auto [entry, added] = tables.try_emplace(place.key, lineNumber);
        if (!added)
            findings.fail(here(), "the table takes the place of the one in line " +
                                      std::to_string(entry->second) + ". Take one of them out");
        else if (isKnown)
            ++kept;
    }

    void readData(std::string_view line)
    {
        const int index = nP * nT - due--;
        const int iT = index % nT;
        const std::optional<double> p = checkValues(line, iT == 0);
        const std::optional<double> T = numberIn(columnsOf(line, 15, 15 + valueWidth));
        if (p) checkPressure(*p, iT == 0);
        checkTemperature(T.value_or(std::nan("")), index);
        if (const std::optional<double> Ts = numberIn(columnsOf(line, 90, 90 + valueWidth));
            Ts && iT == 0)
            boiling.push_back(*Ts);
        if (due == 0) finish();
    }

    /// Whether each value stands in its columns. \returns the pressure
    std::optional<double> checkValues(std::string_view line, bool first)
    {
        const size_t count = first ? std::size(values) : ofPressure;
        for (size_t i = 0; i < count; ++i) {
            const std::string_view field = columnsOf(line, values[i].at, values[i].at + valueWidth);
            const std::optional<double> number = numberIn(field);
            if (i >= needed && isBlank(field)) continue;
            if (number && !(i >= 2 && i < needed && *number < 0.0)) continue;
            findings.fail(here(), "columns " + std::to_string(values[i].at + 1) + "-" +
                                      std::to_string(values[i].at + valueWidth) + " hold \"" +
                                      std::string(field) + "\" in place of " + values[i].what +
                                      ". Put each value into its columns");
            return {};
        }
        for (size_t i = 0; i + 1 < count; ++i) {
            const size_t gap = values[i].at + valueWidth;
            if (isBlank(columnsOf(line, gap, gap + 1))) continue;
            findings.fail(here(), "column " + std::to_string(gap + 1) +
                                      " is not read, but there stands \"" + line[gap] +
                                      "\". Put each value into its columns");
        }
        if (!first && !isBlank(columnsOf(line, values[ofPressure].at)))
            findings.warn(here(), "boiling temperature and heat of vaporisation are read from the "
                                  "first line of a pressure only. Move them there");
        return numberIn(columnsOf(line, 0, valueWidth));
    }

    void checkPressure(double p, bool first)
    {
        if (!first) {
            if (!pressures.empty() && p != pressures.back())
                findings.warn(here(), "the pressure " + plainText(p) +
                                          " MPa is not read; the first line of the pressure has " +
                                          plainText(pressures.back()) + " MPa. Mend it");
            return;
        }
        if (!pressures.empty() && p <= pressures.back())
            findings.fail(here(), "the pressures do not rise. Order them");
        pressures.push_back(p);
    }

    /// \p T is not a number where none can be read, which compares with nothing.
    void checkTemperature(double T, int index)
    {
        if (index < nT) {
            if (!temperatures.empty() && T <= temperatures.back())
                findings.fail(here(), "the temperatures do not rise. Order them");
            temperatures.push_back(T);
        } else if (const auto iT = static_cast<size_t>(index % nT);
                   T < temperatures[iT] || T > temperatures[iT]) {
            findings.fail(here(), "the temperature " + plainText(T) +
                                      " K is not read; the first pressure has " +
                                      plainText(temperatures[iT]) +
                                      " K in its place. Use the same temperatures at all "
                                      "pressures");
        }
    }

    void finish()
    {
        const double highest = temperatures.empty() ? 0.0 : temperatures.back();
        const auto above = std::count_if(boiling.begin(), boiling.end(),
                                         [highest](double Ts) { return Ts > highest; });
        if (above > 0)
            findings.warn(place, std::to_string(above) + " of " + std::to_string(nP) +
                                     " boiling temperatures lie above the last temperature, " +
                                     plainText(highest) +
                                     " K, to which they are cut. Extend the table if they "
                                     "matter");
        boiling.clear();
    }

    const DataText& text;
    const KnownSpecies& known;
    Findings& findings;
    unsigned lineNumber = 0;
    bool versionStated = false;
    size_t kept = 0;
    std::map<std::string, unsigned> tables; // line by species
    // the table at hand
    Place place;
    bool isKnown = false;
    int nP = 0;
    int nT = 0;
    int due = 0; // lines
    std::vector<double> pressures, temperatures, boiling;
};

} // namespace

size_t lintProperties(const DataText& text, const KnownSpecies& known, Findings& findings)
{
    return PropertiesLint(text, known, findings).run();
}

} // namespace host
