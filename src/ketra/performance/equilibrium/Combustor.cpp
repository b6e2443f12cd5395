#include <ketra/performance/equilibrium/Combustor.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance::equilibrium {

using reaction::Equilibrium;

Combustor::Combustor(std::unique_ptr<Equilibrium> newProblem, double H, double M)
    : problem(std::move(newProblem)), initialH(H), initialHspec(H / (M / 1000.0))
{
}

Combustor::Combustor(thermo::Propellant& propellant)
    : Combustor(std::make_unique<Equilibrium>(propellant), propellant.H(), propellant.getM())
{
}

Combustor::Combustor(thermo::Propellant& propellant, double H)
    : Combustor(std::make_unique<Equilibrium>(propellant), H, propellant.getM())
{
}

Combustor::Combustor(thermo::Propellant& propellant, bool multiphase, bool ions)
    : Combustor(std::make_unique<Equilibrium>(propellant, multiphase, ions), propellant.H(),
                propellant.getM())
{
}

Combustor::Combustor(thermo::Propellant& propellant, double H, bool multiphase, bool ions)
    : Combustor(std::make_unique<Equilibrium>(propellant, multiphase, ions), H, propellant.getM())
{
}

Combustor::Combustor(thermo::Mixture& mixture)
    : Combustor(std::make_unique<Equilibrium>(mixture), mixture.H(), mixture.getM())
{
}

Combustor::Combustor(thermo::Mixture& mixture, double H)
    : Combustor(std::make_unique<Equilibrium>(mixture), H, mixture.getM())
{
}

Combustor::Combustor(thermo::Mixture& mixture, bool multiphase, bool ions)
    : Combustor(std::make_unique<Equilibrium>(mixture, multiphase, ions), mixture.H(),
                mixture.getM())
{
}

Combustor::Combustor(thermo::Mixture& mixture, double H, bool multiphase, bool ions)
    : Combustor(std::make_unique<Equilibrium>(mixture, multiphase, ions), H, mixture.getM())
{
}

Combustor::~Combustor() = default;

void Combustor::setRelativeTolerance(double multiplier)
{
    relativeTolerance = std::abs(multiplier);
}

void Combustor::setPersistent(bool persistent) { problem->setPersistent(persistent); }

bool Combustor::isPersistent() const { return problem->isPersistent(); }

void Combustor::setWarmStart(bool warmStart) { problem->setWarmStart(warmStart); }

bool Combustor::isWarmStart() const { return problem->isWarmStart(); }

void Combustor::setP(double p) { problem->setPH(p, initialH); }

void Combustor::setPH(double p, double H) { problem->setPH(p, H); }

void Combustor::setPT(double p, double T) { problem->setPT(p, T); }

void Combustor::setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted)
{
    problem->setSpecies(included, omitted);
}

void Combustor::solve(bool expectCondensed, bool calculateTransport)
{
    condensedExpected = expectCondensed;
    try {
        derivatives.reset(
            solveReaction(problem.get(), relativeTolerance, expectCondensed, calculateTransport));
    } catch (const thermo::Exception&) {
        dropDerivatives();
        throw;
    }
}

void Combustor::solveByIteration(double T0, double target, bool expectCondensed,
                                 bool calculateTransport)
{
    condensedExpected = expectCondensed;
    try {
        derivatives.reset(solveReactionByIteration(problem.get(), T0, target, relativeTolerance,
                                                   expectCondensed, calculateTransport));
    } catch (const thermo::Exception&) {
        dropDerivatives();
        throw;
    }
}

void Combustor::clearDerivatives() { derivatives.reset(); }

// Derivatives of an earlier solution say nothing of a problem that could not be solved.
void Combustor::dropDerivatives()
{
    clearDerivatives();
    util::Log::errorf("THERMO", "Shifting Equilibrium Combustor: could not solve the problem.%s",
                      util::eol);
}

} // namespace performance::equilibrium
