#include <ketra/thermo/detail/PropepFile.h>

#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/thermo/detail/TextFile.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/util/Log.h>

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace thermo::detail {

namespace {

using math::interpolation::Interpolation2D;
using nasa9::NASA9Polynomial;
using nasa9::NASA9Species;

constexpr std::size_t elementFields = 6;
constexpr std::size_t elementsHeld = 5; // by a record of the species files
constexpr std::size_t firstElement = 39;
constexpr std::size_t elementWidth = 5; // three columns of the count, two of the symbol
constexpr std::size_t longestName = 65; // characters

constexpr double joulesPerCalorie = 4.1868;
constexpr double densityFactor = 27679.904710203125; // lb/in3 to kg/m3
constexpr double temperature = 298.15;               // K, at which an ingredient is given
constexpr double tableEnd = 308.15;                  // K, of its table of density
constexpr double tablePressure = 101325.0;           // Pa

struct Element {
    double count = 0.0; // whole; infinite where the file's number is no count
    std::string symbol;
};

/// An ingredient as its line states it.
struct Ingredient {
    std::string name;
    std::array<Element, elementFields> elements;
    double heat = 0.0;    // of formation, cal/g
    double density = 0.0; // kg/m3
    unsigned int line = 0;
};

/// A whole number of atoms; what no integer can hold becomes infinite.
double readCount(std::string_view field)
{
    const double count = std::trunc(toNumber(field));
    return std::fabs(count) <= std::numeric_limits<int>::max()
               ? count
               : std::numeric_limits<double>::infinity();
}

/// The data of an ingredient are single precision numbers; a larger one is infinite.
double toSingle(double value)
{
    return std::fabs(value) <= static_cast<double>(std::numeric_limits<float>::max())
               ? static_cast<double>(static_cast<float>(value))
               : std::numeric_limits<double>::infinity();
}

Ingredient readIngredient(std::string_view line, unsigned int lineNumber)
{
    Ingredient read;
    read.line = lineNumber;
    read.name = trimmed(slice(line, 4, firstElement));
    std::size_t at = firstElement;
    for (Element& element : read.elements) {
        element.count = readCount(slice(line, at, at + 3));
        element.symbol = trimmed(slice(line, at + 3, at + elementWidth));
        at += elementWidth;
    }
    read.heat = toSingle(toNumber(slice(line, 69, 74)));
    read.density = toSingle(toNumber(slice(line, 74, 80)) * densityFactor);
    return read;
}

/// The formula can be written into a species file.
bool hasUsableFormula(const Ingredient& read)
{
    for (std::size_t i = 0; i < elementsHeld; ++i) {
        const Element& element = read.elements[i];
        if (!std::isfinite(element.count)) return false;
        if (element.count > 0.0 && !ChemicalElement::isValid(element.symbol)) return false;
    }
    return read.elements[elementsHeld].count == 0.0;
}

/// Tells what keeps an ingredient from becoming a species. \returns true if nothing does.
bool isUsable(const Ingredient& read)
{
    if (!hasUsableFormula(read)) {
        if (read.elements[elementsHeld].count > 0.0)
            util::Log::errorf("THERMO",
                              "Database: could not load PROPEP species %s: CEA/Ketra do not "
                              "support compounds with more that 5 different elements.\n",
                              read.name.c_str());
        else
            util::Log::errorf("THERMO",
                              "Database: could not load PROPEP species %s: invalid formula.\n",
                              read.name.c_str());
        return false;
    }
    if (!std::isfinite(read.heat) || !std::isfinite(read.density)) {
        util::Log::errorf("THERMO",
                          "Database: could not load PROPEP species %s: invalid heat of formation "
                          "or density.\n",
                          read.name.c_str());
        return false;
    }
    if (read.name.empty()) {
        util::Log::warnf("THERMO", "Ignoring PROPEP record without a name (line %u)\n", read.line);
        return false;
    }
    return true;
}

void lengthenName(Ingredient& read, std::string_view line)
{
    read.name += ' ';
    read.name += trimmed(slice(line, 9, firstElement));
    if (read.name.size() > longestName) read.name.resize(longestName);
}

ChemicalFormula formulaOf(const Ingredient& read)
{
    ChemicalFormula formula;
    for (const Element& element : read.elements) {
        const Atom* const atom = ChemicalElement::getAtom(std::string_view(element.symbol));
        if (!(element.count > 0.0) || atom == nullptr) continue;
        const ChemicalElement term(atom, element.count);
        formula.add(&term);
    }
    return formula;
}

/// A table over the two temperatures and the one pressure that holds \p value throughout.
Interpolation2D* constantTable(double value)
{
    const double T[] = {temperature, tableEnd};
    const double p[] = {tablePressure};
    const double values[] = {value, value};
    return Interpolation2D::createInterpolation2D(2, T, 1, p, values);
}

std::unique_ptr<Species> toSpecies(const Ingredient& read)
{
    const ChemicalFormula formula = formulaOf(read);
    double M = 0.0; // g/mol
    for (const ChemicalElement* term : *formula.getElements()) M += term->M();
    if (formula.size() == 0)
        util::Log::warnf("THERMO", "PROPEP species %s has no elements (line %u)\n",
                         read.name.c_str(), read.line);

    const std::string text = read.name + " PROPEP";
    std::unique_ptr<Species> species(
        NASA9Species::create(text, /*isReactant=*/true, /*withPolynomial=*/true));
    const bool gas = text.find("(GAS", 1) != std::string::npos;
    species->setCondensed(gas ? 0 : 1);
    species->setFormula(&formula);
    species->setM(M);
    species->setDHf298_15(read.heat * joulesPerCalorie * M);

    // An interval that ends at 0 K: there is no curve, only the enthalpy at its beginning.
    species->removeIntervals();
    std::unique_ptr<Polynomial> interval(NASA9Polynomial::create());
    interval->setT1(temperature);
    interval->setT2(0.0);
    species->addInterval(interval.release());

    species->setCpTable(constantTable(0.0));
    species->setRhoTable(constantTable(read.density));
    return species;
}

} // namespace

std::vector<std::unique_ptr<Species>> readPropepFile(std::istream& stream)
{
    const std::string text = readAll(stream);
    if (hasBareReturnsOnly(text))
        util::Log::warnf("THERMO", "Ignoring PROPEP file whose lines have no line feeds\n");

    std::vector<std::unique_ptr<Species>> species;
    std::optional<Ingredient> pending;
    LineReader lines(text);
    for (std::string_view line; lines.next(line);) {
        if (trimmed(line).empty() || line.front() == '*') continue;
        if (line.front() == '+') {
            if (pending) lengthenName(*pending, line);
            continue;
        }
        if (pending) species.push_back(toSpecies(*pending));
        pending = readIngredient(line, lines.getCount());
        if (!isUsable(*pending)) pending.reset();
    }
    return species;
}

} // namespace thermo::detail
