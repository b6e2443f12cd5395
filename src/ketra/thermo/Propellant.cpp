#include <ketra/thermo/Propellant.h>

#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/EntryState.h>
#include <ketra/util/Log.h>

namespace thermo {

namespace {

// One atmosphere is left uncorrected for condensed species too, unlike in a mixture.
constexpr detail::UncorrectedPressure uncorrected{standardPressure, standardPressure};

/// Valences of one mole of a part.
double valenceOf(const Mixture& part)
{
    const std::unique_ptr<ChemicalFormula> formula(part.copyFormula());
    return detail::valenceOf(*formula);
}

/// Enthalpy of one mole of a part, J/mol; the pressure of an entry is taken as it stands.
double enthalpyOf(const Mixture& part)
{
    double H = 0.0;
    for (int i = 0; i < part.size(); ++i) {
        const _Species& e = part._getSpecies(i);
        const auto h = detail::enthalpyOf(e, e.getP(), uncorrected);
        H += e.getR() * h.standard;
        H += e.getR() * h.heating;
        H += e.getR() * h.compression;
    }
    return H;
}

/// Internal energy of one mole of a part, J/mol.
double internalEnergyOf(const Mixture& part)
{
    double U = 0.0;
    for (int i = 0; i < part.size(); ++i)
        U += part._getSpecies(i).getR() * detail::internalEnergyOf(part._getSpecies(i));
    return U;
}

/// Density of a part from the tables alone, kg/m^3; 0 if it is empty.
double densityOf(const Mixture& part)
{
    double volume = 0.0; // m^3 of one kilogram
    for (int i = 0; i < part.size(); ++i)
        volume += part._getSpecies(i).getG() / detail::tabulatedDensity(part._getSpecies(i));
    return volume > 0 ? 1 / volume : 0.0;
}

/// The temperature at which a species stands that is given none, or cannot have the given one.
double ordinaryTemperature(const Species& species)
{
    try {
        return species.getT(referenceTemperature);
    } catch (const Exception&) {
        return species.getT0();
    }
}

/// The temperature of a new component: \p T if there is one and the species can have it.
double initialTemperature(const Species& species, double T)
{
    if (T > 0) {
        try {
            return species.getT(T);
        } catch (const Exception&) {
            const double instead = ordinaryTemperature(species);
            util::Log::warnf("THERMO",
                             "Temperature T=%5.2f K could not be assigned to the species \"%s\". "
                             "Using T=%5.2f K instead.%s",
                             T, species.getName().c_str(), instead, util::eol);
            return instead;
        }
    }
    const bool onePoint = species.isCondensed() && species.getIntervalSize() == 1;
    return onePoint ? species.getT0() : ordinaryTemperature(species);
}

/// \p cached, worked out if it is empty.
template <class Compute> double remember(std::optional<double>& cached, Compute compute)
{
    if (!cached) cached = compute();
    return *cached;
}

} // namespace

Propellant::Cache::Cache() = default;
Propellant::Cache::~Cache() = default;

void Propellant::Cache::clear()
{
    H = U = M = mix0 = km0 = mix = std::nullopt;
    mixture.reset();
    formula.reset();
}

Propellant::Propellant(double km) : Propellant(km, /*isAlpha=*/false) {}

Propellant::Propellant(double value, bool isAlpha) : ratio(value), ratioIsAlpha(isAlpha) {}

Propellant::Propellant(const Propellant& other)
    : oxidizer(other.oxidizer), fuel(other.fuel), ratio(other.ratio),
      ratioIsAlpha(other.ratioIsAlpha)
{
}

Propellant& Propellant::operator=(const Propellant& other)
{
    oxidizer = other.oxidizer;
    fuel = other.fuel;
    ratio = other.ratio;
    ratioIsAlpha = other.ratioIsAlpha;
    cache.clear();
    return *this;
}

Propellant::~Propellant() = default;

void Propellant::assignKm(double km)
{
    cache.clear();
    ratio = km;
    ratioIsAlpha = false;
}

void Propellant::assignAlpha(double alpha)
{
    cache.clear();
    ratio = alpha;
    ratioIsAlpha = true;
}

void Propellant::assignT0(Type type, double T)
{
    cache.clear();
    if (Mixture* part = getComponent(type)) part->setT(T);
}

void Propellant::assignP0(Type type, double p)
{
    cache.clear();
    if (Mixture* part = getComponent(type)) part->setP(p);
}

Mixture* Propellant::getComponent(Type type)
{
    switch (type) {
    case OXIDIZER:
        return &oxidizer;
    case FUEL:
        return &fuel;
    }
    return nullptr;
}

const Species* Propellant::findSpecies(const std::string& name) const
{
    return Mixture::findSpecies(name);
}

const Species* Propellant::addComponent(Type type, const std::string& name)
{
    return addComponent(type, name, 0.0);
}

const Species* Propellant::addComponent(Type type, const std::string& name, double T)
{
    return addComponent(type, name, T, standardPressure, 0.0);
}

const Species* Propellant::addComponent(Type type, const std::string& name, double T, double p,
                                        double f)
{
    cache.clear();
    const Species* species = findSpecies(name);
    const double T0 = initialTemperature(*species, T);
    if (Mixture* part = getComponent(type)) part->addSpecies(species, T0, p, f);
    return species;
}

void Propellant::addComponent(Type type, Mixture& m, double w)
{
    // A mixture on the side of the oxidizer is added to both sides, on purpose.
    if (type == OXIDIZER) oxidizer.addMixture(m, w);
    if (type == OXIDIZER || type == FUEL) fuel.addMixture(m, w);
}

double Propellant::getKm() const { return ratioIsAlpha ? ratio * getKm0() : ratio; }

double Propellant::getAlpha() const { return ratioIsAlpha ? ratio : ratio / getKm0(); }

double Propellant::getKm0() const
{
    return remember(cache.km0, [this] { return getMix0() * oxidizer.getM() / fuel.getM(); });
}

double Propellant::getMix0() const
{
    return remember(cache.mix0, [this] { return -(valenceOf(fuel) / valenceOf(oxidizer)); });
}

double Propellant::getMix() const
{
    return remember(cache.mix, [this] {
        return ratioIsAlpha ? ratio * getMix0() : ratio * fuel.getM() / oxidizer.getM();
    });
}

double Propellant::getGOx() const
{
    const double km = getKm();
    return km / (1 + km);
}

double Propellant::getGFuel() const { return 1 / (getKm() + 1); }

double Propellant::getNOx() const
{
    const double mix = getMix();
    return mix / (1 + mix);
}

double Propellant::getNFuel() const { return 1 / (getMix() + 1); }

double Propellant::getM() const
{
    return remember(cache.M, [this] { return detail::massOf(formula()); });
}

const ChemicalFormula& Propellant::formula() const
{
    if (!cache.formula) {
        auto whole = std::make_unique<ChemicalFormula>();
        const std::unique_ptr<ChemicalFormula> ofOxidizer(oxidizer.copyFormula());
        const std::unique_ptr<ChemicalFormula> ofFuel(fuel.copyFormula());
        whole->add(*ofOxidizer, getNOx());
        whole->add(*ofFuel, getNFuel());
        cache.formula = std::move(whole);
    }
    return *cache.formula;
}

ChemicalFormula* Propellant::getFormula() const { return new ChemicalFormula(formula()); }

Mixture* Propellant::getMixture() const
{
    if (!cache.mixture) {
        oxidizer.checkFractions(false);
        fuel.checkFractions(false);
        auto whole = std::make_unique<Mixture>(_Species::MASS_FRACTION);
        // What is added is only read: both parts have been checked.
        whole->addMixture(fuel, getGFuel());
        whole->addMixture(oxidizer, getGOx());
        whole->checkFractions(false);
        cache.mixture = std::move(whole);
    }
    return new Mixture(*cache.mixture);
}

double Propellant::H() const
{
    return remember(cache.H, [this] {
        oxidizer.checkFractions(false);
        fuel.checkFractions(false);
        return getNOx() * enthalpyOf(oxidizer) + getNFuel() * enthalpyOf(fuel);
    });
}

double Propellant::U() const
{
    return remember(cache.U, [this] {
        oxidizer.checkFractions(false);
        fuel.checkFractions(false);
        return getNOx() * internalEnergyOf(oxidizer) + getNFuel() * internalEnergyOf(fuel);
    });
}

double Propellant::getRho() const
{
    oxidizer.checkFractions(false);
    fuel.checkFractions(false);
    const double rhoOx = densityOf(oxidizer);
    const double rhoFuel = densityOf(fuel);
    if (!(rhoOx > 0 && rhoFuel > 0)) return 0.0;
    return 1 / (getGOx() / rhoOx + getGFuel() / rhoFuel);
}

} // namespace thermo
