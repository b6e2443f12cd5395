#include "ConstantVolume.h"
#include "Failure.h"
#include "Text.h"

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Mixture.h>

#include <algorithm>
#include <cmath>

namespace host {

using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

constexpr double coldest = 200.0;    // K, where the data of the gases begin
constexpr double hottest = 20000.0;  // K, where they end
constexpr double firstT = 3000.0;    // K, amid the flames of explosives and propellants
constexpr double stride = 1.25;      // of the temperature while the answer is not enclosed
constexpr double closeT = 1e-9;      // relative; the equilibria themselves are good to 1e-8
constexpr double closeTarget = 1e-5; // by which the target may be missed, in R T or R
constexpr unsigned mostSteps = 100;

/// Molar mass of what a problem was posed with, kg/mol.
double initialMmOf(const Equilibrium& problem)
{
    const std::unique_ptr<reaction::ReactingMixture> copy(
        problem.copyReactingMixture(/*condensed=*/true, /*ions=*/true));
    const std::unique_ptr<thermo::Mixture> initial(copy->copyInitialMixture());
    return initial->getMm();
}

/// Internal energy, J/kg: amounts are per mole of what the problem was posed with.
double energyOf(const Equilibrium& products, double initialMm)
{
    return products.getHspec() - products.getNg() * products.getRT() / initialMm;
}

/// A temperature, and by how much the products exceed the target there.
struct Point {
    double T;
    double excess;
};

/// The products as a function of their temperature.
class Vessel
{
public:
    Vessel(Equilibrium& newProblem, Kept newKept, double newV, double newTarget)
        : problem(newProblem), kept(newKept), v(newV), target(newTarget),
          initialMm(initialMmOf(newProblem))
    {
    }

    Point at(double T)
    {
        problem.setVT(v, T);
        problem.solve(/*expectCondensed=*/false);
        const double value =
            kept == Kept::ENERGY ? energyOf(problem, initialMm) : problem.getSspec();
        return {T, value - target};
    }

    bool meets(const Point& point) const
    {
        const double R = thermo::gasConstant * problem.getResultingMixtureQuantaty() / initialMm;
        return std::abs(point.excess) <= closeTarget * R * (kept == Kept::ENERGY ? point.T : 1.0);
    }

    [[noreturn]] void failBeyond(double limit) const
    {
        throw Failure(NOT_CONVERGED, std::string("the products of the charge would be ") +
                                         (limit == coldest ? "colder than " : "hotter than ") +
                                         plainText(limit) + " K, where the species data end");
    }

    [[noreturn]] void failInJump(double T) const
    {
        throw Failure(NOT_CONVERGED, std::string("at ") + plainText(T) + " K the " +
                                         (kept == Kept::ENERGY ? "energy" : "entropy") +
                                         " of the products jumps over that of the charge, since a "
                                         "phase changes there within no range of temperature. "
                                         "Change the charge or its density a little");
    }

private:
    Equilibrium& problem;
    Kept kept;
    double v;         // m^3/kg
    double target;    // J/kg or J/(kg K)
    double initialMm; // kg/mol
};

/// Energy and entropy rise with the temperature, so that one side of the answer lies where they
/// exceed the target.
std::pair<Point, Point> enclose(Vessel& vessel)
{
    Point here = vessel.at(firstT);
    const bool up = here.excess < 0.0;
    const double limit = up ? hottest : coldest;
    while (here.T != limit) {
        const double T = std::clamp(up ? here.T * stride : here.T / stride, coldest, hottest);
        const Point next = vessel.at(T);
        if (up != (next.excess < 0.0)) return up ? std::pair(here, next) : std::pair(next, here);
        here = next;
    }
    vessel.failBeyond(limit);
}

/// Ridders' method [Ridders1979]: the middle of the interval makes the function straight, and each
/// step halves the interval at least, also where a phase changes suddenly.
void search(Vessel& vessel)
{
    auto [low, high] = enclose(vessel);
    Point best = low;
    for (unsigned step = 0; step < mostSteps; ++step) {
        const Point middle = vessel.at(0.5 * (low.T + high.T));
        const double root = std::sqrt(middle.excess * middle.excess - low.excess * high.excess);
        const double T = middle.T - (middle.T - low.T) * (root > 0.0 ? middle.excess / root : 0.0);
        const double before = best.T;
        best = vessel.at(T);
        if (std::abs(best.T - before) <= closeT * best.T) break;
        for (const Point& point : {middle, best}) {
            if (point.T < low.T || point.T > high.T) continue;
            (point.excess < 0.0 ? low : high) = point;
        }
    }
    if (!vessel.meets(best)) vessel.failInJump(best.T);
}

} // namespace

double internalEnergyOf(const Equilibrium& products)
{
    return energyOf(products, initialMmOf(products));
}

std::unique_ptr<Derivatives> solveAtConstantVolume(Equilibrium& problem, Kept kept, double v,
                                                   double target, bool calculateTransport)
{
    Vessel vessel(problem, kept, v, target);
    search(vessel);
    auto derivatives = std::make_unique<Derivatives>(&problem);
    derivatives->solve(calculateTransport);
    return derivatives;
}

} // namespace host
