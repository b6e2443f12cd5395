#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/util/Log.h>

namespace performance {

using thermo::input::Component;
using thermo::input::Ratio;

namespace {

constexpr unsigned int invalidState = 0;

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

} // namespace

void TheoreticalPerformance::requireDocument() const
{
    if (data != nullptr) return;
    util::Log::errorf("THERMO", "Could not set up theoretical performance problem: no document.%s",
                      util::eol);
    throw thermo::Exception(invalidState);
}

void TheoreticalPerformance::initPropellant()
{
    if (mixture || propellant) return;
    requireDocument();
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

} // namespace performance
