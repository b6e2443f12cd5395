// The sonic section behind a chamber.

#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/performance/equilibrium/detail/SonicSearch.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance::equilibrium {

using performance::detail::BracketedRoot;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

// The bracket of the throat, in ln p: critical pressure ratios lie between 0.54 and 0.61.
constexpr double bracketStep = 0.2;
constexpr int bracketSteps = 20;
constexpr double narrowestBracket = 1e-9;

} // namespace

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
    if (!isPersistent()) {
        iterateThroat(expectCondensed);
        return;
    }
    try {
        iterateThroat(expectCondensed);
        if (throatIsSonic()) return;
    } catch (const thermo::Exception&) {
        // the bracket needs none of it
    }
    bracketThroat(expectCondensed);
}

void Chamber::iterateThroat(bool expectCondensed)
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

// The Mach number rises from rest in the chamber to supersonic flow as the pressure falls. Where
// the speed of sound jumps it may pass 1 without having been 1: rho w is largest there, as d ln(rho
// w) / d ln p = (M^2 - 1) / (k M^2) changes its sign.
void Chamber::bracketThroat(bool expectCondensed)
{
    util::Log::infof("THERMO",
                     "Nozzle throat: the search by momentum has not found Mach number 1. Searching "
                     "between a subsonic and a supersonic pressure.%s",
                     util::eol);
    const Equilibrium& inlet = *getReaction(CHAMBER_END);
    const double S = inlet.getS() * inlet.getResultingMixtureQuantaty();
    const double lnPEnd = std::log(inlet.getP());
    const auto excess = [&](double lnP) {
        expandToThroat(std::exp(lnP), S, expectCondensed);
        return throatMach() - 1.0;
    };

    BracketedRoot::Point subsonic{lnPEnd, -1.0}, supersonic{lnPEnd, -1.0};
    for (int step = 1; !(supersonic.value > 0.0); ++step) {
        if (step > bracketSteps) throw thermo::Exception(detail::noThroat);
        subsonic = supersonic;
        supersonic.x = lnPEnd - step * bracketStep;
        supersonic.value = excess(supersonic.x);
    }
    BracketedRoot root(excess, subsonic, supersonic);
    if (root.close(getRelativeTolerance() * detail::sonicTolerance, narrowestBracket)) return;

    const double M = excess(root.best().x) + 1.0;
    util::Log::infof("THERMO",
                     "Nozzle throat: the Mach number jumps from %.6f to %.6f, as a phase changes. "
                     "The throat is the state of the largest mass flux.%s",
                     root.other().value + 1.0, M, util::eol);
}

// With a warm start each pass begins from the one before.
void Chamber::expandToThroat(double p, double S, bool expectCondensed)
{
    if (isWarmStart() && throatStation.problem) {
        throatStation.derivatives.reset();
    } else {
        throatStation.clear();
        throatStation.problem = std::make_unique<Equilibrium>(*getReaction(CHAMBER_END));
    }
    inherit(*throatStation.problem);
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

double Chamber::getThroatFlux() const
{
    requireSolved(THROAT);
    const Derivatives& gas = *throatStation.derivatives;
    const double flux = gas.getRho() * gas.getA();
    return isPersistent() && !throatIsSonic() ? flux * throatMach() : flux;
}

bool Chamber::throatIsSonic() const
{
    return std::abs(throatMach() - 1.0) < getRelativeTolerance() * detail::sonicTolerance;
}

} // namespace performance::equilibrium
