#include "TableLint.h"
#include "Text.h"

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/properties/TransportPropertiesCoefficients.h>

#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace host {
namespace {

using Interval = thermo::properties::TransportPropertiesCoefficients;

// Where two intervals meet, the fits of the NASA data differ by a few parts in a thousand.
constexpr double jumpLimit = 0.02; // of the quantity
constexpr double jumpSlip = 0.5;

bool startsWith(std::string_view line, std::string_view word)
{
    return line.substr(0, word.size()) == word;
}

class TransportLint
{
public:
    TransportLint(const DataText& transportFile, const KnownSpecies& knownSpecies, Findings& found)
        : text(transportFile), known(knownSpecies), findings(found)
    {
    }

    size_t run()
    {
        bool ended = false;
        for (const std::string_view line : text.getLines()) {
            ++lineNumber;
            if (isBlank(line) || line[0] == '!' ||
                startsWith(line, "transport property coefficients"))
                continue;
            if (ended) {
                findings.warn({text.getFile(), lineNumber, ""},
                              "what stands behind the line \"end\" is not read. Put it before");
                return kept;
            }
            if (startsWith(line, "end"))
                ended = true;
            else if (read < viscosities + conductivities) {
                if (!readData(line)) return kept;
            } else {
                readHead(line);
            }
        }
        if (read < viscosities + conductivities)
            findings.fail(place, "the file ends inside the block, which is dropped. Complete it, "
                                 "or mend the counts of its first line");
        else if (!ended)
            findings.warn({text.getFile(), lineNumber, ""},
                          "there is no line \"end\" at the end; the file may have been cut. Add "
                          "it");
        return kept;
    }

private:
    Place here() const { return {text.getFile(), lineNumber, place.key}; }

    void readHead(std::string_view line)
    {
        const std::string name = trimmedText(columnsOf(line, 0, 15));
        const std::string other = trimmedText(columnsOf(line, 16, 31));
        place = {text.getFile(), lineNumber, other.empty() ? name : name + " + " + other};
        if (!isBlank(columnsOf(line, 15, 16)))
            findings.fail(here(), "column 16 is not read, but holds a part of a name. A name has "
                                  "at most 15 characters");
        checkCounts(line);
        checkNames(name, other);
        read = 0;
        last.reset();
    }

    void checkCounts(std::string_view line)
    {
        viscosities = digitAt(line, 35).value_or(0);
        conductivities = digitAt(line, 37).value_or(0);
        const bool inPlace =
            digitAt(line, 35) && digitAt(line, 37) && line[34] == 'V' && line[36] == 'C';
        if (!inPlace)
            findings.fail(here(), "columns 35-38 hold \"" + std::string(columnsOf(line, 34, 38)) +
                                      "\" in place of the numbers of lines, as \"V2C2\". Put them "
                                      "into their columns");
        else if (viscosities + conductivities == 0)
            findings.warn(here(), "the block has no lines. Take it out");
    }

    void checkNames(const std::string& name, const std::string& other)
    {
        const bool isKnown = known.count(name) > 0;
        if (!isKnown)
            findings.fail(here(), "no species file has \"" + name +
                                      "\", and the block is passed over. Mend the name, or add "
                                      "the species");
        if (!other.empty() && known.count(other) == 0)
            findings.warn(here(), "no species file has \"" + other +
                                      "\", and the data of the pair are never used. Mend the "
                                      "name");
        const auto [entry, added] = blocks.try_emplace({name, other}, lineNumber);
        if (!added)
            findings.fail(here(), "the block takes the place of the one in line " +
                                      std::to_string(entry->second) + ". Take one of them out");
        else if (isKnown)
            ++kept;
        if (const auto turned = blocks.find({other, name}); added && turned != blocks.end())
            findings.warn(here(), "line " + std::to_string(turned->second) +
                                      " has this pair in the other order. Keep one of them");
    }

    /// \returns false if the library gives the file up here
    bool readData(std::string_view line)
    {
        const bool viscosity = read++ < viscosities;
        if (read == 1 || read == viscosities + 1) last.reset();
        const char letter = viscosity ? 'V' : 'C';
        if (columnsOf(line, 0, 2).find(letter) == std::string_view::npos)
            findings.fail(here(), std::string("the line counts as one of ") +
                                      (viscosity ? "viscosity" : "conductivity") +
                                      ", but does not begin with " + letter +
                                      ". Mend the counts of the block, or the order of its lines");
        checkColumns(line);
        try {
            const Interval interval{std::string(line)};
            checkInterval(interval, viscosity ? "viscosity" : "conductivity");
            last = interval;
        } catch (const runtime::Exception&) {
            findings.fail(here(), "the lower temperature is not above 0 and at most 20000 K, or a "
                                  "number is out of range; the library gives the whole file up "
                                  "here. Mend the line, or the counts of the block before it");
            return false;
        }
        return true;
    }

    void checkColumns(std::string_view line)
    {
        constexpr size_t bounds[] = {2, 11, 20, 35, 50, 65, 80};
        for (size_t i = 0; i + 1 < std::size(bounds); ++i) {
            std::string field(columnsOf(line, bounds[i], bounds[i + 1]));
            // Old files leave the place of an exponent's plus sign empty.
            const size_t e = field.find_first_of("EeDd");
            if (e != std::string::npos && e + 1 < field.size() && field[e + 1] == ' ')
                field[e + 1] = '+';
            if (numberIn(field)) continue;
            findings.fail(here(), "columns " + std::to_string(bounds[i] + 1) + "-" +
                                      std::to_string(bounds[i + 1]) + " hold \"" + field +
                                      "\" in place of a number. Put each value into its columns");
            return;
        }
    }

    void checkInterval(const Interval& interval, const std::string& what)
    {
        if (!(interval.getT1() < interval.getT2())) {
            findings.fail(here(), "the interval holds no temperature. Mend its bounds");
            return;
        }
        if (!last) return;
        const double T = interval.getT1();
        if (T != last->getT2()) {
            findings.warn(here(), "the interval begins at " + plainText(T) +
                                      " K, but the one "
                                      "before ends at " +
                                      plainText(last->getT2()) + " K. Let the intervals meet");
            return;
        }
        if (!last->holds(T)) return;
        const double jump = std::fabs(std::expm1(interval.getLogValue(T) - last->getLogValue(T)));
        const std::string sentence = "the " + what + " jumps by " + plainText(100.0 * jump) +
                                     " % at " + plainText(T) + " K. ";
        if (!(jump <= jumpSlip))
            findings.fail(here(), sentence + "Mend the coefficients of one of the intervals");
        else if (jump > jumpLimit)
            findings.warn(here(), sentence + "Fit the intervals to each other if it matters");
    }

    const DataText& text;
    const KnownSpecies& known;
    Findings& findings;
    unsigned lineNumber = 0;
    size_t kept = 0;
    std::map<std::pair<std::string, std::string>, unsigned> blocks; // line by names
    // the block at hand
    Place place;
    int viscosities = 0;
    int conductivities = 0;
    int read = 0;                 // lines
    std::optional<Interval> last; // the one before of the same quantity
};

} // namespace

size_t lintTransport(const DataText& text, const KnownSpecies& known, Findings& findings)
{
    return TransportLint(text, known, findings).run();
}

} // namespace host
