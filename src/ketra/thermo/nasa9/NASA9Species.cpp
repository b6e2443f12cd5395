#include <ketra/thermo/nasa9/NASA9Species.h>

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/detail/TextFile.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/util/Log.h>
#include <ketra/util/String.h>

#include <memory>
#include <string_view>

namespace thermo::nasa9 {

using detail::integer;
using detail::number;
using detail::slice;
using detail::trimmed;

namespace {

constexpr double highestAtomNumber = 999999.0; // of the first element of a formula
constexpr unsigned int elementFields = 5;
constexpr unsigned int elementWidth = 8; // two characters of the symbol, six of the number

bool contains(const std::string& text, const char* word)
{
    return text.find(word) != std::string::npos;
}

/// True if \p word stands in \p text, but not at its very beginning.
bool containsBehindStart(const std::string& text, const char* word)
{
    const std::size_t at = text.find(word);
    return at != std::string::npos && at > 0;
}

} // namespace

NASA9Species::NASA9Species(const std::string& line, bool isReactant, bool withPolynomial)
    : reactantOnly(isReactant)
{
    const std::size_t blank = line.find(' ');
    if (blank == std::string::npos) {
        name = trimmed(line);
        descr = name;
    } else {
        name = trimmed(slice(line, 0, blank));
        descr = trimmed(slice(line, blank + 1));
    }
    finishName();
    if (withPolynomial) {
        addInterval(NASA9Polynomial::create());
        numberOfIntervals = 0;
    }
}

NASA9Species::~NASA9Species() = default;

NASA9Species* NASA9Species::create(const std::string& line, bool isReactant, bool withPolynomial)
{
    return new NASA9Species(line, isReactant, withPolynomial);
}

void NASA9Species::finishName()
{
    std::string words = descr;
    util::String::toLowerCase(words);
    if (contains(words, "excited")) name += " excited";
    if (contains(words, "structure")) {
        std::string structure = descr;
        util::String::replaceFirst(structure,
                                   ".*(structure|STRUCTURE)[[:space:]]?([^[:space:]]+).+", " $2");
        name += structure;
    }
    if (contains(words, "singlet")) name += " singlet";
    if (contains(words, "triplet")) name += " triplet";

    std::string lowerName = name;
    util::String::toLowerCase(lowerName);
    liquid = containsBehindStart(lowerName, "(l)") || containsBehindStart(words, "(l)") ||
             containsBehindStart(lowerName, "liquid") || containsBehindStart(words, "liquid");
}

void NASA9Species::loadHeader(const std::string& line)
{
    const double firstNumber = number(slice(line, 12, 18));
    if (!(firstNumber > 0.0) || firstNumber > highestAtomNumber) throw runtime::Exception(1);
    const int intervals = integer(slice(line, 0, 2));
    if (intervals < 0) throw runtime::Exception(1);
    singleLine = intervals == 0;
    numberOfIntervals = singleLine ? 1 : intervals;
    ref = trimmed(slice(line, 3, 9));
    parseFormula(std::string(slice(line, 10, 50)));
    condensed = integer(slice(line, 50, 52));
    if (condensed == 0) liquid = false;
    M = number(slice(line, 52, 65));
    dHf298_15 = number(slice(line, 65));
}

void NASA9Species::parseFormula(const std::string& field)
{
    ChemicalFormula& formula = own().formula;
    for (std::size_t i = 0; i < elementFields; ++i) {
        std::string symbol(trimmed(slice(field, i * elementWidth, i * elementWidth + 2)));
        util::String::toUpperCase(symbol);
        if (symbol.empty()) continue;
        const Atom* atom = ChemicalElement::getAtom(std::string_view(symbol));
        if (atom == nullptr) continue;
        const double n = number(slice(field, i * elementWidth + 2, (i + 1) * elementWidth));
        if (n == 0.0) {
            util::Log::warnf("ROOT", "Could not load unknown element %s from the formula %s\n",
                             symbol.c_str(), field.c_str());
            continue;
        }
        formula.append(std::make_unique<ChemicalElement>(atom, n));
        if (atom->getType() == Atom::E) charge += n;
    }
}

void NASA9Species::loadPolynomial(std::string& line)
{
    const int present = getIntervalSize();
    if (present == 0 || getInterval(static_cast<unsigned int>(present - 1))->isCompleted()) {
        addInterval(NASA9Polynomial::create());
        dH298_15_0 = number(slice(line, 65));
    }
    Polynomial* const last = getInterval(static_cast<unsigned int>(getIntervalSize() - 1));
    if (last->load(line)) --numberOfIntervals;
    if (singleLine) numberOfIntervals = 0;
}

} // namespace thermo::nasa9
