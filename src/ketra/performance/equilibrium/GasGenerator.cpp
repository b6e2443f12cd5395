#include <ketra/performance/equilibrium/GasGenerator.h>

#include <ketra/thermo/Exception.h>

namespace performance::equilibrium {

GasGenerator::GasGenerator(thermo::Propellant& propellant) : Combustor(propellant) {}

GasGenerator::GasGenerator(thermo::Propellant& propellant, double H) : Combustor(propellant, H) {}

GasGenerator::GasGenerator(thermo::Propellant& propellant, bool multiphase, bool ions)
    : Combustor(propellant, multiphase, ions)
{
}

GasGenerator::GasGenerator(thermo::Propellant& propellant, double H, bool multiphase, bool ions)
    : Combustor(propellant, H, multiphase, ions)
{
}

GasGenerator::GasGenerator(thermo::Mixture& mixture) : Combustor(mixture) {}

GasGenerator::GasGenerator(thermo::Mixture& mixture, double H) : Combustor(mixture, H) {}

GasGenerator::GasGenerator(thermo::Mixture& mixture, bool multiphase, bool ions)
    : Combustor(mixture, multiphase, ions)
{
}

GasGenerator::GasGenerator(thermo::Mixture& mixture, double H, bool multiphase, bool ions)
    : Combustor(mixture, H, multiphase, ions)
{
}

GasGenerator::~GasGenerator() = default;

void GasGenerator::solve(bool expectCondensed, bool calculateTransport)
{
    try {
        Combustor::solve(expectCondensed, calculateTransport);
    } catch (const thermo::Exception& e) {
        throw thermo::Exception(e.getType());
    }
}

} // namespace performance::equilibrium
