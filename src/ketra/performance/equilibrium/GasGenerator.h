#pragma once

#include <ketra/export.h>
#include <ketra/performance/equilibrium/Combustor.h>

namespace performance::equilibrium {

/// A gas generator: the combustion products at a given pressure, without throat and nozzle.
/// `solveByIteration` finds a state of given specific enthalpy or entropy.
class KETRA_API GasGenerator : public Combustor
{
public:
    using Combustor::Combustor;
    ~GasGenerator() override;

    /// Solves as a combustor. After a failure the generator can be set to another state and solved
    /// again.
    /// \throws thermo::Exception with the code of the failure and the text of that code; there are
    ///         no derivatives then
    void solve(bool expectCondensed, bool calculateTransport) override;
};

} // namespace performance::equilibrium
