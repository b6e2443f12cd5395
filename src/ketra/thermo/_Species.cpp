#include <ketra/thermo/_Species.h>

#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>

namespace thermo {

namespace {

const Species& known(const Species* species)
{
    if (!species) throw Exception(4);
    return *species;
}

} // namespace

_Species::_Species(const Species* newSpecies, double fraction, FractionType type, double newP)
    : species(newSpecies), g(type == MASS_FRACTION ? fraction : 0.0),
      r(type == MOLE_FRACTION ? fraction : 0.0), p(newP)
{
}

_Species::_Species(const Species* newSpecies) : _Species(newSpecies, 1.0, MASS_FRACTION) {}

_Species::_Species(const Species* newSpecies, double fraction, FractionType type)
    : _Species(newSpecies, fraction, type, standardPressure)
{
    T = known(species).getT(referenceTemperature);
}

_Species::_Species(const Species* newSpecies, double newT, double fraction, FractionType type)
    : _Species(newSpecies, newT, standardPressure, fraction, type)
{
}

_Species::_Species(const Species* newSpecies, double newT, double newP, double fraction,
                   FractionType type, bool check)
    : _Species(newSpecies, fraction, type, newP)
{
    setT(newT, check);
}

_Species::_Species(const _Species& other)
    : species(other.species), g(other.g), r(other.r), T(other.T), p(other.p)
{
}

_Species::~_Species() = default;

double _Species::getM() const { return known(species).getM(); }

double _Species::setT(double newT, bool check)
{
    if (!(newT > 0))
        T = known(species).getT(referenceTemperature);
    else
        T = check ? known(species).getT(newT) : newT;
    return T;
}

bool _Species::operator==(const Species* other) const
{
    return species && other && *species == other;
}

bool _Species::operator==(const _Species* other) const { return other && *this == other->species; }

bool _Species::operator==(const ChemicalFormula& formula) const
{
    return species && *species == formula;
}

} // namespace thermo
