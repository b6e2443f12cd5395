// How a combustor solves its problem: the attempts after a failure, and the search by temperature.

#include <ketra/performance/equilibrium/Combustor.h>

#include <ketra/math/equation/NewtonsRootFinder.h>
#include <ketra/performance/equilibrium/CombustorFunction.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

namespace performance::equilibrium {

using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

constexpr double floorT = 250.0;         // K, lowest start temperature of a further attempt
constexpr double coldT = 300.0;          // K, below which leaving a temperature range is answered
constexpr unsigned int manyCycles = 500; // least cycle limit of the last attempt

// Codes of thermo::Exception that decide on a further attempt.
constexpr unsigned int invalidTemperature = 1;
constexpr unsigned int noEquilibrium = 8;
constexpr unsigned int unsolvable = 14;
constexpr unsigned int singularWithNewSpecies = 18;

/// The two quantities that define a problem. A failed solve may leave others in their place, so
/// that each further attempt poses the problem anew.
class Definition
{
public:
    explicit Definition(Equilibrium& problem) : type(problem.getProcessType())
    {
        switch (type) {
        case Equilibrium::PH:
            keep(problem.getP(), problem.getH());
            break;
        case Equilibrium::PS:
            keep(problem.getP(), problem.getS());
            break;
        case Equilibrium::PT:
            keep(problem.getP(), problem.getT());
            break;
        case Equilibrium::VU:
            keep(problem.getV(), problem.getU());
            break;
        case Equilibrium::VS:
            keep(problem.getV(), problem.getS());
            break;
        case Equilibrium::VT:
            keep(problem.getV(), problem.getT());
            break;
        }
    }

    void poseAgain(Equilibrium& problem) const
    {
        switch (type) {
        case Equilibrium::PH:
            problem.setPH(first, second);
            break;
        case Equilibrium::PS:
            problem.setPS(first, second);
            break;
        case Equilibrium::PT:
            problem.setPT(first, second);
            break;
        case Equilibrium::VU:
            problem.setVU(first, second);
            break;
        case Equilibrium::VS:
            problem.setVS(first, second);
            break;
        case Equilibrium::VT:
            problem.setVT(first, second);
            break;
        }
    }

private:
    void keep(double pressureOrVolume, double target)
    {
        first = pressureOrVolume;
        second = target;
    }

    Equilibrium::PROCESS_TYPE type;
    double first = 0.0;  // Pa or m3/kg
    double second = 0.0; // J/mol, J/(mol K) or K
};

// Whether a failure of the first attempt may be mended by another start. Without ions a caller who
// expected condensed phases has had the second attempt already.
bool isWorthAnotherAttempt(const thermo::Exception& failure, Equilibrium& problem,
                           bool expectCondensed)
{
    if (failure.getType() == singularWithNewSpecies) return false;
    if (!problem.isIons() && expectCondensed) return false;
    if (failure.getType() == noEquilibrium) return true;
    return failure.getType() == invalidTemperature && problem.getT() < coldT;
}

void attemptWithoutIons(Equilibrium& problem, const Definition& definition)
{
    problem.adjustT(floorT);
    if (problem.isIons()) problem.removeIons();
    definition.poseAgain(problem);
    problem.solve(true);
}

void attemptWithManyCycles(Equilibrium& problem, const Definition& definition)
{
    problem.adjustT(floorT);
    if (problem.getMaxCycles() < manyCycles) problem.setMaxCycles(manyCycles);
    definition.poseAgain(problem);
    problem.solve(true);
}

void recover(Equilibrium& problem, const Definition& definition)
{
    try {
        attemptWithoutIons(problem, definition);
    } catch (const thermo::Exception& failure) {
        if (failure.getType() == singularWithNewSpecies) throw;
        attemptWithManyCycles(problem, definition);
    }
}

Derivatives* derive(Equilibrium* problem, bool calculateTransport)
{
    auto derivatives = std::make_unique<Derivatives>(problem);
    derivatives->solve(calculateTransport);
    return derivatives.release();
}

} // namespace

Derivatives* Combustor::solveReaction(Equilibrium* reaction, double relativeTolerance,
                                      bool expectCondensed, bool calculateTransport)
{
    reaction->setRelativeTolerance(relativeTolerance);
    const Definition definition(*reaction);
    try {
        reaction->solve(expectCondensed);
    } catch (const thermo::Exception& failure) {
        if (reaction->isPersistent()) throw; // its own attempts go further than these
        if (!isWorthAnotherAttempt(failure, *reaction, expectCondensed)) throw;
        recover(*reaction, definition);
    } catch (const std::exception&) {
        if (reaction->isPersistent()) throw;
        recover(*reaction, definition);
    }
    return derive(reaction, calculateTransport);
}

Derivatives* Combustor::solveReactionByIteration(Equilibrium* reaction, double T0, double target,
                                                 double relativeTolerance, bool expectCondensed,
                                                 bool calculateTransport)
{
    reaction->setRelativeTolerance(relativeTolerance);
    const Equilibrium::PROCESS_TYPE type = reaction->getProcessType();
    if (type == Equilibrium::PT || type == Equilibrium::VT) {
        util::Log::errorf("THERMO",
                          "Shifting Equilibrium Combustor: could not solve the problem by "
                          "iteration.%s",
                          util::eol);
        throw thermo::Exception(unsolvable);
    }

    CombustorFunction function(reaction, target, expectCondensed);
    math::equation::NewtonsRootFinder finder(&function, relativeTolerance);
    finder.reset(T0);
    while (!finder.step()) {
    }
    const double T = (finder.getXn() + finder.getXnp1()) * 0.5;

    if (type == Equilibrium::PH || type == Equilibrium::PS)
        reaction->setPT(reaction->getP(), T);
    else
        reaction->setVT(reaction->getV(), T);
    reaction->solve(expectCondensed);
    return derive(reaction, calculateTransport);
}

} // namespace performance::equilibrium
