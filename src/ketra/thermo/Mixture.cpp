#include <ketra/thermo/Mixture.h>

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/EntryState.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

using util::eol;
using util::Log;

namespace thermo {

namespace {

constexpr double sumTolerance = 1e-5; // by which the sum of the given fractions may miss 1

// The sum over a mixture leaves gases at one atmosphere and condensed species at one bar as they
// are, a single entry at one bar in both cases: the two operations differ on purpose.
constexpr detail::UncorrectedPressure uncorrectedInSum{standardPressure, referencePressure};
constexpr detail::UncorrectedPressure uncorrectedAlone{referencePressure, referencePressure};

/// An entry of pressure 0 counts as one at one atmosphere.
double effectivePressure(const _Species& e) { return e.getP() == 0 ? standardPressure : e.getP(); }

[[noreturn]] void failUnknown(const char* name)
{
    Log::errorf("THERMO", "Unknown species %s%s", name, eol);
    throw Exception(4);
}

/// An entry added without a species has no name: its place tells which one it is.
void requireSpecies(const _Species& e, int i)
{
    if (!e.getSpecies()) failUnknown(std::to_string(i).c_str());
}

} // namespace

Mixture::Mixture(_Species::FractionType type) : massBased(type == _Species::MASS_FRACTION) {}

Mixture::Mixture(const Mixture& other)
    : fractionsChecked(other.fractionsChecked), massBased(other.massBased)
{
    entries.reserve(other.entries.size());
    for (const auto& e : other.entries) entries.emplace_back(new _Species(*e));
}

Mixture& Mixture::operator=(const Mixture& other)
{
    Mixture copy(other);
    entries.swap(copy.entries);
    fractionsChecked = other.fractionsChecked;
    massBased = other.massBased;
    return *this;
}

Mixture::~Mixture() = default;

const _Species& Mixture::entry(int i) const
{
    if (i < 0 || i >= size()) throw std::out_of_range("invalid vector<T> subscript");
    return *entries[static_cast<std::size_t>(i)];
}

const _Species& Mixture::_getSpecies(const Species* wanted) const
{
    const _Species* found = nullptr;
    for (const auto& e : entries) {
        if (!(*e == wanted)) continue;
        if (found) throw Exception(0);
        found = e.get();
    }
    if (!found) failUnknown(wanted ? wanted->getName().c_str() : "(null)");
    return *found;
}

std::vector<const Species*>* Mixture::copyAllSpecies() const
{
    checkFractions(false);
    auto all = std::make_unique<std::vector<const Species*>>();
    all->reserve(entries.size());
    for (const auto& e : entries) all->push_back(e->species);
    return all.release();
}

std::vector<_Species*>* Mixture::_copyAllSpecies() const
{
    checkFractions(false);
    std::vector<std::unique_ptr<_Species>> copies;
    copies.reserve(entries.size());
    for (const auto& e : entries) copies.emplace_back(new _Species(*e));
    auto all = std::make_unique<std::vector<_Species*>>(entries.size());
    for (std::size_t i = 0; i < copies.size(); ++i) (*all)[i] = copies[i].release();
    return all.release();
}

ChemicalFormula* Mixture::copyFormula() const
{
    checkFractions(false);
    auto formula = std::make_unique<ChemicalFormula>();
    for (const auto& e : entries) {
        const int terms = static_cast<int>(e->species->size());
        for (int k = 0; k < terms; ++k) {
            const ChemicalElement* element = e->species->get(k);
            formula->add(element, element->getNumber() * e->r);
        }
    }
    return formula.release();
}

void Mixture::setFraction(int i, double f)
{
    requireSpecies(entry(i), i);
    fractionsChecked = false;
    given(*entries[static_cast<std::size_t>(i)]) = f;
}

double Mixture::getMassFraction(int i) const
{
    requireSpecies(entry(i), i);
    checkFractions(false);
    return entry(i).g;
}

double Mixture::getMolarFraction(int i) const
{
    requireSpecies(entry(i), i);
    checkFractions(false);
    return entry(i).r;
}

void Mixture::checkFractions(bool correct) const
{
    if (fractionsChecked) return;
    for (int i = 0; i < size(); ++i) requireSpecies(*entries[static_cast<std::size_t>(i)], i);
    requireUnitSum(correct);
    fillTwins();
    fractionsChecked = true;
}

void Mixture::requireUnitSum(bool correct) const
{
    double sum = 0.0;
    for (const auto& e : entries) sum += given(*e);
    if (std::abs(1 - sum) <= sumTolerance) return;

    // Fractions that sum to nothing or to no number cannot be scaled.
    const bool scalable = entries.empty() || (std::isfinite(sum) && sum != 0);
    if (!correct || !scalable) {
        Log::errorf("THERMO",
                    massBased ? "Invalid sum of mass fractions %5.3f%s"
                              : "Invalid sum of mole fractions %5.3f%s",
                    sum, eol);
        throw Exception(massBased ? 5 : 6);
    }
    for (const auto& e : entries) given(*e) += given(*e) * (1 - sum) / sum;
}

/// The fractions of the other kind: r_i = g_i / M_i or g_i = r_i M_i, divided by their sum.
void Mixture::fillTwins() const
{
    // Numbers near 1: the molar mass of the only species, or that of a kilomole's kilogram.
    const double reference = entries.size() == 1 ? entries.front()->getM() : 1000.0;
    double sum = 0.0;
    for (const auto& e : entries) {
        const double M = e->getM();
        if (massBased)
            sum += e->r = e->g * reference / M;
        else
            sum += e->g = e->r * M / reference;
    }
    for (const auto& e : entries) (massBased ? e->r : e->g) /= sum;
}

void Mixture::setP(double p)
{
    for (const auto& e : entries) e->setP(p);
}

void Mixture::setT(double T)
{
    for (const auto& e : entries) e->setT(T, true);
}

void Mixture::setTWithoutCheck(double T)
{
    for (const auto& e : entries) e->setT(T, false);
}

void Mixture::setT(double T, bool clamp)
{
    if (!clamp) return setT(T);
    for (const auto& e : entries) {
        const double Tmin = e->species->getMinimalT(), Tmax = e->species->getMaximalT();
        e->setT(T < Tmin ? Tmin : T > Tmax ? Tmax : T, true);
    }
}

double Mixture::getM() const
{
    const std::unique_ptr<ChemicalFormula> formula(copyFormula());
    return detail::massOf(*formula);
}

double Mixture::getMm2() const
{
    const double M = getM();
    double condensed = 0.0;
    for (const auto& e : entries)
        if (e->species->isCondensed()) condensed += e->r;
    return M / 1000 / (1 - condensed);
}

double Mixture::getValence() const
{
    checkFractions(false);
    double valence = 0.0;
    for (const auto& e : entries) valence += e->species->getValence() * e->r;
    return valence;
}

double Mixture::getEquivalenceRatio() const { return getEquivalenceRatio({}); }

double Mixture::getEquivalenceRatio(const std::vector<Atom::TYPE>& excluded) const
{
    const std::unique_ptr<ChemicalFormula> formula(copyFormula());
    double reducing = 0.0, oxidizing = 0.0;
    for (unsigned i = 0; i < formula->size(); ++i) {
        const ChemicalElement& element = *(*formula)[i];
        if (std::find(excluded.begin(), excluded.end(), element.getType()) != excluded.end())
            continue;
        const double valence = element.getValence();
        (valence > 0 ? reducing : oxidizing) += valence;
    }
    if (reducing == 0)
        throw Exception(0, "Could not obtain equivalence ratio: sum of reducing valences is equal "
                           "to 0.");
    return -oxidizing / reducing;
}

double Mixture::H() const
{
    checkFractions(false);
    double H = 0.0;
    for (const auto& e : entries) {
        const auto h = detail::enthalpyOf(*e, effectivePressure(*e), uncorrectedInSum);
        H += e->r * h.standard;
        H += e->r * h.heating;
        H += e->r * h.compression;
    }
    return H;
}

double Mixture::H(const _Species* e, bool weighted) const
{
    checkFractions(false);
    const auto h = detail::enthalpyOf(*e, effectivePressure(*e), uncorrectedAlone);
    // The mole fraction stands with the first term of a gas and nowhere else, on purpose.
    const double standard = e->species->isCondensed() ? h.standard : e->r * h.standard;
    const double sum = standard + h.heating + h.compression;
    return weighted ? sum * e->r : sum;
}

double Mixture::U() const
{
    checkFractions(false);
    double U = 0.0;
    for (const auto& e : entries) U += e->r * detail::internalEnergyOf(*e);
    return U;
}

double Mixture::getRho() const
{
    if (entries.empty()) return 0.0;
    checkFractions(false);
    double volume = 0.0; // m^3 of one kilogram
    for (const auto& e : entries)
        volume += e->g / (e->rho > 0 ? e->rho : detail::tabulatedDensity(*e));
    return volume > 0 ? 1 / volume : 0.0;
}

} // namespace thermo
