#include "PropepLint.h"
#include "Text.h"

#include <ketra/thermo/ChemicalElement.h>

#include <cmath>
#include <map>

namespace host {
namespace {

constexpr size_t firstElement = 39;
constexpr size_t elementWidth = 5;
constexpr size_t elementFields = 6;
constexpr size_t elementsHeld = 5; // by a record of the library
constexpr size_t lineWidth = 80;
constexpr size_t longestName = 65;
constexpr double largestCount = 2147483647; // of atoms, as the library can hold it
constexpr size_t longestWord = 16;          // of a name in a species file
constexpr double largestHeat = 10000;       // cal/g; no ingredient binds or stores as much
constexpr double largestDensity = 1;        // lb/in3; osmium has 0.82

class PropepLint
{
public:
    PropepLint(const DataText& propepFile, Findings& found) : text(propepFile), findings(found) {}

    size_t run()
    {
        for (const std::string_view line : text.getLines()) {
            ++lineNumber;
            if (isBlank(line) || line[0] == '*') continue;
            if (line.find('\t') != std::string_view::npos)
                findings.fail(here(), "a tab shifts the columns. Use blanks");
            if (line[0] == '+') {
                lengthenName(line);
                continue;
            }
            finish();
            readRecord(line);
        }
        if (pending)
            findings.fail(place, "the last ingredient of a file is left out, since no other one "
                                 "follows it. Add a line behind it, as a copy of it");
        return words.size();
    }

private:
    Place here() const { return {text.getFile(), lineNumber, place.key}; }

    void readRecord(std::string_view line)
    {
        place = {text.getFile(), lineNumber, trimmedText(columnsOf(line, 4, firstElement))};
        pending = checkName() && checkElements(line) && checkData(line);
    }

    bool checkName()
    {
        if (!place.key.empty()) return true;
        findings.fail(here(), "there is no name in columns 5-39, and the ingredient is dropped. "
                              "Give it one");
        return false;
    }

    bool checkElements(std::string_view line)
    {
        bool usable = true;
        bool any = false;
        for (size_t i = 0; i < elementFields; ++i) {
            const size_t at = firstElement + elementWidth * i;
            const std::string_view count = columnsOf(line, at, at + 3);
            const std::string symbol = trimmedText(columnsOf(line, at + 3, at + elementWidth));
            const double number = leadingNumber(count);
            if (!isBlank(count) && !numberIn(count))
                findings.fail(here(), columnsText(line, at, at + 3) +
                                          " in place of a number of atoms. Put each value into "
                                          "its columns");
            if (!(std::fabs(number) <= largestCount)) {
                findings.fail(here(), columnsText(line, at, at + 3) +
                                          ", more atoms than any formula has, and the ingredient "
                                          "is dropped. Mend it");
                usable = false;
            } else if (i >= elementsHeld ? std::trunc(number) != 0.0 : number >= 1.0) {
                usable = checkElement(symbol, i, number) && usable;
                any = true;
            } else if (number < 0.0) {
                findings.fail(here(), columnsText(line, at, at + 3) +
                                          ", a negative number of atoms, which is left out. Mend "
                                          "it");
            } else if (number == 0.0 && !symbol.empty()) {
                findings.warn(here(), symbol + " has no number of atoms and is left out. Take it "
                                               "out, or state its number");
            }
            if (number != std::trunc(number))
                findings.fail(here(), columnsText(line, at, at + 3) +
                                          ", of which the decimals are cut off. Multiply the "
                                          "formula so that its numbers are whole");
        }
        if (usable && !any)
            findings.fail(here(), "the formula has no element, so that the ingredient can take "
                                  "part in no reaction. State its elements");
        return usable;
    }

    bool checkElement(const std::string& symbol, size_t index, double number)
    {
        if (index >= elementsHeld) {
            findings.fail(here(), number > 0.0
                                      ? "there is a sixth element, and the ingredient is dropped. "
                                        "Leave the least important element out"
                                      : "the number of atoms of the sixth element is negative, "
                                        "and the ingredient is dropped. Mend it");
            return false;
        }
        if (thermo::ChemicalElement::isValid(symbol)) return true;
        findings.fail(here(), "\"" + symbol +
                                  "\" is no element in capitals, and the ingredient is dropped. "
                                  "Mend the symbol");
        return false;
    }

    bool checkData(std::string_view line)
    {
        const std::optional<double> heat = numberIn(columnsOf(line, 69, 74));
        const std::optional<double> density = numberIn(columnsOf(line, 74, lineWidth));
        if (!heat) {
            findings.fail(here(), columnsText(line, 69, 74) +
                                      " in place of the heat of formation in cal/g. Put each "
                                      "value into its columns");
        } else if (std::fabs(*heat) > largestHeat) {
            findings.warn(here(), "a heat of formation of " + plainText(*heat) +
                                      " cal/g is larger than any. See that it is in columns "
                                      "70-74");
        }
        if (!density)
            findings.fail(here(), columnsText(line, 74, lineWidth) +
                                      " in place of the density in lb/in3. Put each value into "
                                      "its columns");
        else if (!(*density > 0.0) || *density > largestDensity)
            findings.warn(here(), "a density of " + plainText(*density) +
                                      " lb/in3 is that of no substance. See that it is in "
                                      "columns 75-80");
        // What single precision cannot hold drops the ingredient.
        const auto fits = [](std::string_view field) {
            return std::fabs(leadingNumber(field)) <= 1e30;
        };
        if (fits(columnsOf(line, 69, 74)) && fits(columnsOf(line, 74, lineWidth))) return true;
        findings.fail(here(), "the heat of formation or the density is beyond all bounds, and the "
                              "ingredient is dropped. Mend it");
        return false;
    }

    void lengthenName(std::string_view line)
    {
        if (!pending) {
            findings.warn(here(), "no ingredient that is kept stands before this line, and it is "
                                  "passed over. Take it out");
            return;
        }
        std::string& name = place.key;
        name += " " + trimmedText(columnsOf(line, 9, firstElement));
        const Place at = {text.getFile(), lineNumber, name};
        if (!isBlank(columnsOf(line, 1, 9)) || !isBlank(columnsOf(line, firstElement)))
            findings.warn(at, "only columns 10-39 of the line are read. Move its text there");
        if (name.size() <= longestName) return;
        findings.warn(at, "the name is cut to 65 characters. Shorten it");
        name.resize(longestName);
    }

    /// The record is a species now, under the first word of its name.
    void finish()
    {
        if (!pending) return;
        pending = false;
        const std::string word = place.key.substr(0, place.key.find(' '));
        if (word.size() > longestWord)
            findings.warn(place, "the species' name, which is the first word, is cut to \"" +
                                     word.substr(0, longestWord) +
                                     "\" when it is saved. Begin with a shorter word");
        const auto [entry, added] = words.try_emplace(word, place.line);
        if (!added) {
            findings.fail(place, "the ingredient takes the place of the one in line " +
                                     std::to_string(entry->second) +
                                     ", since their names have the same first word. Join the "
                                     "words of one of them with \"-\"");
            entry->second = place.line;
        }
    }

    std::string columnsText(std::string_view line, size_t from, size_t to) const
    {
        return "columns " + std::to_string(from + 1) + "-" + std::to_string(to) + " hold \"" +
               std::string(columnsOf(line, from, to)) + "\"";
    }

    const DataText& text;
    Findings& findings;
    unsigned lineNumber = 0;
    Place place;                           // of the record at hand, with its whole name
    bool pending = false;                  // it is taken when another one follows
    std::map<std::string, unsigned> words; // line by first word
};

} // namespace

size_t lintPropep(const DataText& text, Findings& findings)
{
    return PropepLint(text, findings).run();
}

} // namespace host
