#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance {

using thermo::input::Ratio;

namespace {

constexpr unsigned int unsolvable = 14;

// Distance of the oxidizer excess coefficient from 1 beyond which a mixture is so lean or so rich
// that condensed products are likely.
constexpr double extremeExcess = 0.9;

// The search that a document asks for: oxidizer excess coefficients, and the width of the bracket.
constexpr double leastExcess = 0.2;
constexpr double greatestExcess = 1.8;
constexpr double excessTolerance = 0.001;

bool holdsMetal(const thermo::Species& species)
{
    for (int i = 0; i < species.size(); ++i)
        if (species.get(i)->isMetal()) return true;
    return false;
}

// Metals burn to oxides that condense at flame temperature.
bool holdsMetal(const thermo::Mixture& mixture)
{
    for (int i = 0; i < mixture.size(); ++i)
        if (holdsMetal(*mixture.getSpecies(i))) return true;
    return false;
}

} // namespace

TheoreticalPerformance::TheoreticalPerformance() = default;

TheoreticalPerformance::TheoreticalPerformance(thermo::input::ConfigFile* document,
                                               bool ownsDocument)
    : data(document), ownedData(ownsDocument ? document : nullptr)
{
    initPropellant();
}

TheoreticalPerformance::TheoreticalPerformance(TheoreticalPerformance* source)
    : ownedData(std::make_unique<thermo::input::ConfigFile>(*source->data)),
      optimized(source->optimized), hasH(source->hasH), H(source->H),
      relativeTolerance(source->relativeTolerance), persistent(source->persistent),
      warmStart(source->warmStart)
{
    data = ownedData.get();
    initPropellant();
}

TheoreticalPerformance::~TheoreticalPerformance() = default;

void TheoreticalPerformance::clear(bool all)
{
    clearResults();
    mixture.reset();
    propellant.reset();
    if (all && ownedData) {
        data = nullptr;
        ownedData.reset();
    }
}

void TheoreticalPerformance::clearForRestart(bool all)
{
    invalid = false;
    clearResults();
    if (!all) return;
    removeH();
    H = 0.0;
    mixture.reset();
    propellant.reset();
}

// The sections refer to the chamber, the derivatives to their problem.
void TheoreticalPerformance::clearResults()
{
    clearSections();
    chamber.reset();
    derivatives.reset();
    equilibrium.reset();
}

void TheoreticalPerformance::clearSections()
{
    exitSection.reset();
    PaCrit = 0.0;
    overExpansionSection.reset();
}

void TheoreticalPerformance::setH(double newH)
{
    hasH = true;
    H = newH;
}

void TheoreticalPerformance::removeH() { hasH = false; }

void TheoreticalPerformance::setRelativeTolerance(double multiplier)
{
    relativeTolerance = std::abs(multiplier);
}

void TheoreticalPerformance::solve(bool calculateTransport)
{
    clearForRestart(/*all=*/false);
    initPropellant();
    if (!propellant && !mixture) {
        if (data->getPropellant().getRatioType() != Ratio::OPTIMAL) failWithoutPropellant();
        optimizeForSpecificImpulse(leastExcess, greatestExcess, excessTolerance);
        return;
    }

    const bool expectCondensed = expectsCondensed();
    if (!data->getNozzleFlowOptions().isCalculateNozzleFlow())
        solveEquilibrium(expectCondensed, calculateTransport);
    else
        solveNozzleFlow(expectCondensed, calculateTransport);
}

void TheoreticalPerformance::failWithoutPropellant() const
{
    util::Log::errorf("THERMO",
                      "Could not solve theoretical performance problem: invalid propellant "
                      "specification.%s",
                      util::eol);
    throw thermo::Exception(unsolvable);
}

bool TheoreticalPerformance::expectsCondensed() const
{
    if (mixture) return holdsMetal(*mixture);
    const std::unique_ptr<const thermo::Mixture> charge(propellant->getMixture());
    return holdsMetal(*charge) || std::abs(1.0 - propellant->getAlpha()) > extremeExcess;
}

void TheoreticalPerformance::solveEquilibrium(bool expectCondensed, bool calculateTransport)
{
    const thermo::input::GeneralOptions& general = data->getGeneralOptions();
    const bool multiphase = general.isMultiphase();
    const bool ions = general.isIons();
    const double pressure = data->getCombustionChamberConditions().getPressure(true);
    if (propellant) {
        equilibrium = std::make_unique<reaction::Equilibrium>(*propellant, multiphase, ions);
        equilibrium->setPH(pressure, propellant->H());
    } else {
        equilibrium = std::make_unique<reaction::Equilibrium>(*mixture, multiphase, ions);
        equilibrium->setPH(pressure, mixture->H());
    }
    equilibrium->setPersistent(persistent);
    equilibrium->setWarmStart(warmStart);
    try {
        derivatives.reset(equilibrium::Combustor::solveReaction(
            equilibrium.get(), relativeTolerance, expectCondensed, calculateTransport));
    } catch (const thermo::Exception& failure) {
        equilibrium.reset();
        invalid = true;
        throw thermo::Exception(failure.getType());
    }
}

} // namespace performance
