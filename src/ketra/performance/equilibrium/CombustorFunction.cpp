#include <ketra/performance/equilibrium/CombustorFunction.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>

namespace performance::equilibrium {

using reaction::Equilibrium;

CombustorFunction::CombustorFunction(Equilibrium* reaction, double newTarget, bool expectCondensed)
    : problem(reaction), target(newTarget), condensedExpected(expectCondensed)
{
}

double CombustorFunction::at(double T)
{
    Equilibrium copy(*problem);
    switch (problem->getProcessType()) {
    case Equilibrium::PH:
        copy.setPT(problem->getP(), T);
        copy.solve(condensedExpected);
        return target - copy.getHspec();
    case Equilibrium::PS:
        copy.setPT(problem->getP(), T);
        copy.solve(condensedExpected);
        return target - copy.getSspec();
    case Equilibrium::VU:
        copy.setVT(problem->getV(), T);
        copy.solve(condensedExpected);
        return target - copy.getUspec();
    case Equilibrium::VS:
        copy.setVT(problem->getV(), T);
        copy.solve(condensedExpected);
        return target - copy.getSspec();
    case Equilibrium::PT:
    case Equilibrium::VT:
        break;
    }
    throw thermo::Exception(0);
}

} // namespace performance::equilibrium
