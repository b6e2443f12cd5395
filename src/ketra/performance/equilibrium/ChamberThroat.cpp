// The sonic section behind a chamber.

#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/performance/equilibrium/detail/SonicSearch.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>

#include <cmath>

namespace performance::equilibrium {

using reaction::Derivatives;
using reaction::Equilibrium;

void Chamber::throat(bool expectCondensed)
{
    try {
        requireSolved(CHAMBER_END);
        findThroat(expectCondensed);
    } catch (const thermo::Exception& e) {
        throatStation.clear();
        throw thermo::Exception(e.getType());
    } catch (...) {
        throatStation.clear();
        throw;
    }
}

void Chamber::findThroat(bool expectCondensed)
{
    const Equilibrium& inlet = *getReaction(CHAMBER_END);
    const double S = inlet.getS() * inlet.getResultingMixtureQuantaty();
    const double tolerance = getRelativeTolerance() * detail::sonicTolerance;

    // Within the search for a chamber end the throat of the pass before is the better guess.
    const Derivatives* known = getDerivatives(throatStation.derivatives ? THROAT : CHAMBER_END);
    double k = known->getK();
    double p = inlet.getP() / std::pow((k + 1.0) / 2.0, k / (k - 1.0));
    double M = 0.0, previousM = 0.0, previousP = 0.0;
    for (int pass = 1;; ++pass) {
        expandToThroat(p, S, expectCondensed);
        M = throatMach();
        if (std::abs(M - 1.0) < tolerance) return;
        if (pass == detail::sonicPasses) break;
        previousM = M;
        previousP = p;
        // Momentum, for a section that is sonic: p_t (1 + k) = p (1 + k M^2)  [RP1311]
        k = throatStation.derivatives->getK();
        p = p * (M * (M * k) + 1.0) / (1.0 + k);
    }
    if (!detail::bracketSonic(M, previousM)) throw thermo::Exception(detail::noThroat);

    // The Mach number jumps across 1, as it does where a condensed phase appears: the last two
    // passes hold the throat between them, and a point in between is the best there is.
    p = p + (1.0 - M) * (previousP - p) / (previousM - M);
    expandToThroat(p, S, expectCondensed);
}

void Chamber::expandToThroat(double p, double S, bool expectCondensed)
{
    throatStation.clear();
    throatStation.problem = std::make_unique<Equilibrium>(*getReaction(CHAMBER_END));
    throatStation.problem->setPS(p, S);
    throatStation.derivatives.reset(
        solveReaction(throatStation.problem.get(), getRelativeTolerance(), expectCondensed, false));
}

// The gas comes from rest in the injection plane, also when it enters the nozzle with a velocity.
double Chamber::throatMach() const
{
    const double w =
        std::sqrt(2.0 * (getReaction()->getHspec() - throatStation.problem->getHspec()));
    return w / throatStation.derivatives->getA();
}

} // namespace performance::equilibrium
