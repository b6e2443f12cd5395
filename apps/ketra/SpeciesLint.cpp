#include "SpeciesLint.h"
#include "CurveLint.h"
#include "Text.h"

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <cmath>
#include <exception>
#include <memory>

namespace host {
namespace {

using thermo::nasa9::NASA9Species;

constexpr size_t lineWidth = 80;
constexpr size_t nameWidth = 16;        // of a name in a file that the library writes
constexpr size_t descriptionWidth = 62; // and of a description
constexpr size_t elementFields = 5;
constexpr double largestThreeDecimals = 100.0; // a number of atoms below it has three decimals

bool startsWith(std::string_view line, std::string_view word)
{
    return line.substr(0, word.size()) == word;
}

/// "columns 53-65 hold \"text\""; people count columns from 1.
std::string quotedColumns(std::string_view line, size_t from, size_t to)
{
    return "columns " + std::to_string(from + 1) + "-" + std::to_string(to) + " hold \"" +
           std::string(columnsOf(line, from, to)) + "\"";
}

std::string lineOf(const Place& place)
{
    return place.file + (place.line > 0 ? ":" + std::to_string(place.line) : "");
}

/// Whether a line may begin a record: it does not begin with a blank or a coefficient.
bool mayBegin(std::string_view line)
{
    return !line.empty() && line[0] != ' ' && !numberIn(columnsOf(line, 0, 16)) && !isBlank(line);
}

/// A number of atoms as the library writes it.
double writtenNumber(double number)
{
    const double scale = std::fabs(number) < largestThreeDecimals ? 1000.0 : 100.0;
    return std::round(number * scale) / scale;
}

} // namespace

struct SpeciesLint::Record {
    std::unique_ptr<NASA9Species> species;
    Place place;
    unsigned lines = 1; // read so far
};

SpeciesLint::SpeciesLint(const DataText& speciesFile, Findings& found, KnownSpecies& knownSpecies)
    : text(speciesFile), findings(found), out(&found), known(knownSpecies)
{
}

SpeciesLint::~SpeciesLint() = default;

Place SpeciesLint::here(bool ofRecord) const
{
    if (ofRecord && record) return record->place;
    return {text.getFile(), lineNumber, record ? record->place.key : ""};
}

size_t SpeciesLint::run()
{
    for (const std::string_view line : text.getLines()) {
        ++lineNumber;
        readLine(line);
    }
    if (record) {
        out->fail(here(), "the file ends inside the record, which cannot be used as it is. "
                          "Complete its lines");
        record.reset();
    }
    for (const auto& [name, place] : ofThisFile) known[name] = place;
    return kept;
}

void SpeciesLint::readLine(std::string_view line)
{
    const bool firstBehindMark = behindMark;
    behindMark = false;
    if (isBlank(line)) {
        if (record) drop("a blank line interrupts the record. Take the line out");
        return;
    }
    if (line[0] == '!') return;
    if (startsWith(line, "thermo") || startsWith(line, "END PRODUCTS") ||
        startsWith(line, "END REACTANTS")) {
        if (record) out->warn(here(), "a mark stands inside a record. Put it between two records");
        if (startsWith(line, "thermo")) reactant = false;
        if (startsWith(line, "END PRODUCTS")) reactant = true;
        behindMark = startsWith(line, "thermo");
        return;
    }
    if (record)
        continueRecord(line);
    else if (!started && startsWith(line, "    ")) {
        if (!firstBehindMark && !astray)
            out->warn(here(), "the line is passed over, since it begins with blanks. Begin "
                              "the name of a species in column 1");
    } else {
        startRecord(line);
    }
}

void SpeciesLint::startRecord(std::string_view line)
{
    record = std::make_unique<Record>();
    record->species = std::make_unique<NASA9Species>(std::string(line), reactant,
                                                     /*withPolynomial=*/false);
    const std::string& name = record->species->getName();
    record->place = {text.getFile(), lineNumber, name};
    started = true;
    // What is left of a dropped record is taken for records by the library, but tells nothing.
    astray = astray && !mayBegin(line);
    out = astray ? &unheard : &findings;
    if (name.empty())
        out->fail(here(), "a record begins with blanks and has no name. Begin the name of a "
                          "species in column 1");
    const auto twin = ofThisFile.find(name);
    if (twin != ofThisFile.end()) {
        out->fail(here(), "the record takes the place of the one of this name in line " +
                              std::to_string(twin->second.line) + ". Rename one of them");
        --kept;
    } else if (const auto other = known.find(name); other != known.end()) {
        out->warn(here(), "the record takes the place of " + lineOf(other->second) +
                              ". Rename it if both are wanted");
    }
    ofThisFile[name] = record->place;
    ++kept; // until it is dropped
    checkTexts();
}

void SpeciesLint::continueRecord(std::string_view line)
{
    if (line.find('\t') != std::string_view::npos)
        out->fail(here(), "a tab shifts the columns. Use blanks");
    NASA9Species& species = *record->species;
    const bool isHeader = species.getNumberOfIntervals() == -1;
    const unsigned part = isHeader ? 0 : (record->lines + 1) % 3;
    if (isHeader)
        checkHeader(line);
    else if (part == 0)
        checkInterval(line);
    else
        checkCoefficients(line, part == 2);
    if (line.size() > lineWidth && !isBlank(line.substr(lineWidth)))
        out->warn(here(), "what stands behind column 80 is not read. Shorten the line");
    try {
        std::string copy(line);
        if (isHeader)
            species.loadHeader(copy);
        else
            species.loadPolynomial(copy);
    } catch (const std::exception&) {
        drop("the library drops the record here: a number is out of range, or its line does not "
             "belong to it. See that each line has its values in its columns");
        return;
    }
    ++record->lines;
    if (isHeader) checkFormula(line);
    if (species.isCompleted()) finish();
}

bool SpeciesLint::expectNumber(std::string_view line, size_t from, size_t to,
                               const std::string& what)
{
    if (numberIn(columnsOf(line, from, to))) return true;
    out->fail(here(), quotedColumns(line, from, to) + " in place of " + what +
                          ". Put each value into its columns");
    return false;
}

void SpeciesLint::expectBlank(std::string_view line, size_t from, size_t to)
{
    if (!isBlank(columnsOf(line, from, to)))
        out->fail(here(), quotedColumns(line, from, to) +
                              ", where a blank belongs. Put each value into its columns");
}

void SpeciesLint::checkHeader(std::string_view line)
{
    expectBlank(line, 2, 3);
    expectBlank(line, 9, 10);
    // Of values out of place the first one is enough to know.
    (void)(expectNumber(line, 0, 2, "the number of intervals") &&
           expectNumber(line, 50, 52, "the phase") &&
           expectNumber(line, 52, 65, "the molar mass") &&
           expectNumber(line, 65, lineWidth, "the heat of formation"));
}

void SpeciesLint::checkFormula(std::string_view line)
{
    for (size_t i = 0; i < elementFields; ++i) {
        const size_t at = 10 + 8 * i;
        std::string symbol = trimmedText(columnsOf(line, at, at + 2));
        for (char& c : symbol)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        const std::string_view field = columnsOf(line, at + 2, at + 8);
        const std::optional<double> number = numberIn(field);
        if (symbol.empty()) {
            if (!isBlank(field) && number.value_or(1.0) != 0.0)
                out->fail(here(), quotedColumns(line, at, at + 8) +
                                      ", a number of atoms without a symbol, which is left "
                                      "out. Put the symbol into columns " +
                                      std::to_string(at + 1) + "-" + std::to_string(at + 2));
        } else if (!thermo::ChemicalElement::isValid(symbol)) {
            out->fail(here(), "\"" + symbol +
                                  "\" is no element and is left out of the formula. Mend the "
                                  "symbol");
        } else if (!number) {
            expectNumber(line, at + 2, at + 8, "the number of atoms of " + symbol);
        } else if (*number == 0.0) {
            out->warn(here(), symbol + " with the number 0 is left out of the formula. Take "
                                       "it out, or state its number");
        } else if (writtenNumber(*number) != *number) {
            out->warn(here(), symbol + " " + plainText(*number) +
                                  " loses decimals when the file is saved: " +
                                  plainText(writtenNumber(*number)) +
                                  ". Keep this file, or round the number");
        }
    }
}

void SpeciesLint::checkInterval(std::string_view line)
{
    const bool single = record->species->isSingleLine();
    expectBlank(line, 63, 65);
    if (!(expectNumber(line, 0, 11, "the lower temperature") &&
          expectNumber(line, 11, 22, "the upper temperature") &&
          expectNumber(line, 65, lineWidth, "H(298.15) - H(0)")))
        return;
    if (single) return;
    if (const std::optional<int> count = digitAt(line, 22); count != 7)
        out->warn(here(), quotedColumns(line, 22, 23) +
                              " as the number of coefficients; always seven are read. Write "
                              "a 7");
    for (int i = 0; i < 7; ++i) {
        const size_t at = 23 + 5 * static_cast<size_t>(i);
        const std::optional<double> exponent = numberIn(columnsOf(line, at, at + 5));
        if (exponent == i - 2.0) continue;
        out->fail(here(), quotedColumns(line, at, at + 5) + " as an exponent of temperature " +
                              "where " + std::to_string(i - 2) +
                              ".0 is assumed. Fit the coefficients to the exponents -2 to 4");
        return;
    }
}

void SpeciesLint::checkCoefficients(std::string_view line, bool last)
{
    for (size_t at = 0; at < lineWidth; at += 16) {
        const std::string_view field = columnsOf(line, at, at + 16);
        if (last && at == 32) {
            if (!isBlank(field) && numberIn(field) != 0.0)
                out->warn(here(), quotedColumns(line, at, at + 16) +
                                      ", an eighth coefficient, which is not read. Fit the "
                                      "functions with seven");
        } else if (isBlank(field)) {
            out->warn(here(), "there is no coefficient in columns " + std::to_string(at + 1) + "-" +
                                  std::to_string(at + 16) +
                                  ", and 0 is taken. Write the 0, or the coefficient");
        } else if (!expectNumber(line, at, at + 16, "a coefficient")) {
            return;
        }
    }
}

void SpeciesLint::checkTexts()
{
    const std::string& name = record->species->getName();
    if (name.size() > nameWidth) {
        const std::string cut = name.substr(0, nameWidth);
        // A name that the description has lengthened comes back when the file is read again.
        if (name.substr(0, name.find(' ')).size() > nameWidth)
            out->warn(here(), "the name is cut to \"" + cut +
                                  "\" when the file is saved. Use at most 16 characters");
    }
    const std::string word = name.substr(0, std::min(name.find(' '), nameWidth));
    const std::string ending =
        name.find(' ') == std::string::npos ? "" : name.substr(name.find(' '));
    const auto [entry, added] = shortened.try_emplace(word + ending, name);
    if (!added && entry->second != name)
        out->fail(here(), "the name has the first 16 characters of \"" + entry->second +
                              "\"; one of them is lost when the file is saved. Rename it");
    if (record->species->getDescr().size() > descriptionWidth)
        out->warn(here(), "the description is cut to 62 characters when the file is saved. "
                          "Shorten it");
}

void SpeciesLint::checkRecord()
{
    const NASA9Species& species = *record->species;
    const Place place = here(/*ofRecord=*/true);
    if (species.size() == 0)
        out->fail(place, "the formula has no known element, so that the species takes part in "
                         "no reaction. State its elements");
    if (species.isFixedTemperature() && !species.isReactantOnly())
        out->fail(place, "a record of one temperature among the products is lost when the "
                         "file is saved. Put it behind the line \"END PRODUCTS\"");
    lintData(species, place, *out);
}

void SpeciesLint::finish()
{
    checkRecord();
    record.reset();
}

void SpeciesLint::drop(const std::string& why)
{
    out->fail(here(), why);
    if (mayBegin(text.getLines()[lineNumber - 1]))
        findings.fail({text.getFile(), lineNumber, ""},
                      "the line is taken for a part of the record before it, and its own record is "
                      "lost with that. Mend that one first");
    ofThisFile.erase(record->place.key);
    --kept;
    started = false;
    astray = true;
    out = &findings;
    record.reset();
}

} // namespace host
