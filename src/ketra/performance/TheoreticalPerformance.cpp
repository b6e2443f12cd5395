#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace performance {

using thermo::input::Component;
using thermo::input::Ratio;

namespace {

constexpr unsigned int invalidState = 0;
constexpr unsigned int unsolvable = 14;

// Distance of the oxidizer excess coefficient from 1 beyond which a mixture is so lean or so rich
// that condensed products are likely.
constexpr double extremeExcess = 0.9;

constexpr std::size_t nameWidth = 41; // characters, field of the case name in the report

// A component without a mass fraction is a line that the document keeps for later.
bool isUsed(const Component& component)
{
    if (component.getMf() > 0.0) return true;
    util::Log::warnf("THERMO", "Skipping %s with mass fraction r=0%s", component.getName().c_str(),
                     util::eol);
    return false;
}

void add(thermo::Propellant& propellant, thermo::Propellant::Type type, const Component& component)
{
    if (isUsed(component))
        propellant.addComponent(type, component.getName(), component.getT(true),
                                component.getP(true), component.getMf());
}

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
      relativeTolerance(source->relativeTolerance)
{
    data = ownedData.get();
    initPropellant();
}

TheoreticalPerformance::~TheoreticalPerformance() = default;

void TheoreticalPerformance::clear(bool all)
{
    derivatives.reset();
    equilibrium.reset();
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
    derivatives.reset();
    equilibrium.reset();
    if (!all) return;
    removeH();
    H = 0.0;
    mixture.reset();
    propellant.reset();
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

void TheoreticalPerformance::initPropellant()
{
    if (mixture || propellant) return;
    if (data == nullptr) {
        util::Log::errorf("THERMO",
                          "Could not set up theoretical performance problem: no document.%s",
                          util::eol);
        throw thermo::Exception(invalidState);
    }
    const thermo::input::Propellant& input = data->getPropellant();
    switch (input.getRatioType()) {
    case Ratio::KM:
    case Ratio::ALPHA:
        propellant = buildPropellant(input);
        break;
    case Ratio::MIXTURE:
        mixture = buildMixture(input);
        break;
    case Ratio::OPTIMAL:
        break; // the ratio, and with it the propellant, is to be found
    }
}

std::unique_ptr<thermo::Propellant>
TheoreticalPerformance::buildPropellant(const thermo::input::Propellant& input) const
{
    using thermo::Propellant;
    auto built =
        std::make_unique<Propellant>(input.getRatio(), input.getRatioType() == Ratio::ALPHA);
    for (unsigned int i = 0; i < input.getOxidizerListSize(); ++i)
        add(*built, Propellant::OXIDIZER, *input.getOxidizer(i));
    for (unsigned int i = 0; i < input.getFuelListSize(); ++i)
        add(*built, Propellant::FUEL, *input.getFuel(i));
    return built;
}

// A list without a usable species makes no mixture at all.
std::unique_ptr<thermo::Mixture>
TheoreticalPerformance::buildMixture(const thermo::input::Propellant& input) const
{
    auto built = std::make_unique<thermo::Mixture>();
    for (unsigned int i = 0; i < input.getSpeciesListSize(); ++i) {
        const Component& component = *input.getSpecies(i);
        if (isUsed(component))
            built->addSpecies(component.getName(), component.getT(true), component.getP(true),
                              component.getMf());
    }
    return built->size() > 0 ? std::move(built) : nullptr;
}

void TheoreticalPerformance::solve(bool calculateTransport)
{
    clearForRestart(/*all=*/false);
    initPropellant();
    if (!propellant && !mixture) failWithoutPropellant();

    const bool expectCondensed = expectsCondensed();
    if (data->getNozzleFlowOptions().isCalculateNozzleFlow()) {
        util::Log::errorf("THERMO",
                          "Could not solve theoretical performance problem: nozzle flow is not "
                          "available in this version. Set calculateNozzleFlow = false in "
                          "nozzleFlow to solve for the chamber equilibrium alone.%s",
                          util::eol);
        invalid = true;
        throw thermo::Exception(unsolvable);
    }
    solveEquilibrium(expectCondensed, calculateTransport);
}

void TheoreticalPerformance::failWithoutPropellant() const
{
    if (data->getPropellant().getRatioType() == Ratio::OPTIMAL)
        util::Log::errorf("THERMO",
                          "Could not solve theoretical performance problem: the search for the "
                          "optimum mixture ratio is not available in this version. State a ratio "
                          "with the unit \"O/F\" or \"alpha\" in propellant.components.%s",
                          util::eol);
    else
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
    try {
        derivatives.reset(equilibrium::Combustor::solveReaction(
            equilibrium.get(), relativeTolerance, expectCondensed, calculateTransport));
    } catch (const thermo::Exception& failure) {
        equilibrium.reset();
        invalid = true;
        throw thermo::Exception(failure.getType());
    }
}

void TheoreticalPerformance::printHeader()
{
    // The length of the title places the name and cuts it: a case without a title shows no name.
    std::string field(nameWidth, ' ');
    if (data != nullptr) {
        const std::string name = data->getName();
        const std::string info = data->getInfo();
        const std::size_t shown = std::min(nameWidth, info.size());
        const std::size_t copied = std::min(shown, name.size());
        field.replace((nameWidth - shown) / 2, copied, name, 0, copied);
    }
    util::Log::printf("THERMO", "%sCase name:%s%s", util::eol, field.c_str(), util::eol);
    util::Log::printf("THERMO", "%s***************************************************%s",
                      util::eol, util::eol);
    util::Log::printf("THERMO", "                 Initial data%s", util::eol);
    util::Log::printf("THERMO", "***************************************************%s", util::eol);
}

void TheoreticalPerformance::printResults(unsigned int flags)
{
    printHeader();
    if (mixture) {
        util::Log::printf("THERMO", "%sPropellant:%s", util::eol, util::eol);
        mixture->print("Species", flags | thermo::Mixture::LONG_TABLE);
    }
    if (propellant) propellant->print(flags);
    if (equilibrium) equilibrium->printResults(flags);
    if (derivatives) derivatives->printResults(flags);
}

} // namespace performance
