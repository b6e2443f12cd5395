#include <ketra/performance/frozen/Chamber.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>

namespace performance::frozen {

namespace {

constexpr double leastFr = 1.1;     // area ratio of a freezing section
constexpr double belowThroat = 0.9; // of the throat pressure, where freezing begins at the latest

} // namespace

Chamber::Chamber(thermo::Propellant& propellant, double value, CONDITION_TYPE type)
    : equilibrium::Chamber(propellant)
{
    init(value, type);
}

Chamber::Chamber(thermo::Propellant& propellant, double H, double value, CONDITION_TYPE type)
    : equilibrium::Chamber(propellant, H)
{
    init(value, type);
}

Chamber::Chamber(thermo::Propellant& propellant, bool multiphase, bool ions, double value,
                 CONDITION_TYPE type)
    : equilibrium::Chamber(propellant, multiphase, ions)
{
    init(value, type);
}

Chamber::Chamber(thermo::Propellant& propellant, double H, bool multiphase, bool ions, double value,
                 CONDITION_TYPE type)
    : equilibrium::Chamber(propellant, H, multiphase, ions)
{
    init(value, type);
}

Chamber::Chamber(thermo::Mixture& mixture, double value, CONDITION_TYPE type)
    : equilibrium::Chamber(mixture)
{
    init(value, type);
}

Chamber::Chamber(thermo::Mixture& mixture, double H, double value, CONDITION_TYPE type)
    : equilibrium::Chamber(mixture, H)
{
    init(value, type);
}

Chamber::Chamber(thermo::Mixture& mixture, bool multiphase, bool ions, double value,
                 CONDITION_TYPE type)
    : equilibrium::Chamber(mixture, multiphase, ions)
{
    init(value, type);
}

Chamber::Chamber(thermo::Mixture& mixture, double H, bool multiphase, bool ions, double value,
                 CONDITION_TYPE type)
    : equilibrium::Chamber(mixture, H, multiphase, ions)
{
    init(value, type);
}

Chamber::~Chamber() = default;

void Chamber::init(double value, CONDITION_TYPE type)
{
    switch (type) {
    case EXPANSION_RATIO:
        setFrozenSection(value);
        break;
    case PRESSURE:
        setFrozenPressure(value);
        break;
    case PRESSURE_RATIO:
        setFrozenPressure(-value);
        break;
    }
}

void Chamber::setFrozenSection(double Fr) { frozenFr = std::max(Fr, leastFr); }

void Chamber::setFrozenPressure(double newP) { frozenP = newP; }

equilibrium::NozzleSectionConditions* Chamber::getEquilibriumSection() const
{
    if (!section) {
        util::Log::errorf("THERMO", "Frozen Equilibrium Chamber: equilibrium section not solved%s",
                          util::eol);
        throw thermo::Exception(0, "Not solved");
    }
    return section.get();
}

void Chamber::solve(bool finiteArea, bool expectCondensed, bool calculateTransport)
{
    section.reset(); // borrows from the stations, which are built anew
    try {
        equilibrium::Chamber::solve(finiteArea, /*expectCondensed=*/false,
                                    /*calculateTransport=*/true);
        solveFreezingSection(expectCondensed, calculateTransport);
    } catch (const std::exception&) {
        util::Log::errorf("THERMO", "Frozen Equilibrium Chamber: could not solve the problem.%s",
                          util::eol);
        throw thermo::Exception(14);
    }
}

void Chamber::solveFreezingSection(bool expectCondensed, bool calculateTransport)
{
    using Section = equilibrium::NozzleSectionConditions;
    if (frozenP < 0.0) frozenP = -(getReaction(INJECTION_PLANE)->getP() / frozenP);
    const double throatP = getReaction(THROAT)->getP();
    if (!(frozenFr > 0.0) && frozenP >= throatP) frozenP = throatP * belowThroat;

    section = std::make_unique<Section>(this, std::max(frozenP, frozenFr),
                                        frozenFr > 0.0 ? Section::AREA_RATIO : Section::PRESSURE,
                                        /*supersonic=*/true, expectCondensed, calculateTransport,
                                        /*tableSize=*/-1);
}

} // namespace performance::frozen
