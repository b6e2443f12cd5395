#include <ketra/performance/equilibrium/GasGenerator.h>

#include <ketra/thermo/Exception.h>

namespace performance::equilibrium {

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
