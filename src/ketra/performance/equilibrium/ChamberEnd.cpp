// The end of a chamber of finite area. Its pressure and enthalpy depend on the velocity with which
// the gas leaves the chamber, and that on the mass flow that the throat lets through.

#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace performance::equilibrium {

using performance::detail::BracketedRoot;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

constexpr int endPasses = 500;
constexpr double pressureTolerance = 1e-5; // relative, times the relative tolerance
constexpr double fluxTolerance = 1e-3;     // of a given mass flux
constexpr double condensedTolerance = 0.1; // of the mass flow, with condensed phases
constexpr double assumedCstar = 2350.0;    // m/s, for the first contraction of a given mass flux
// The bracket of a chamber end, in ln p.
constexpr double bracketStep = 0.002;
constexpr int bracketSteps = 20;
constexpr double narrowestBracket = 1e-10;
constexpr int densityPasses = 20;
constexpr double densityTolerance = 1e-8; // relative
constexpr unsigned int invalidState = 0;  // codes of thermo::Exception
constexpr unsigned int noChamberEnd = 9;

} // namespace

/// The state at the chamber end that a pass of the search starts from.
struct Chamber::Estimate {
    double p; // Pa
    double w; // m/s
    double H; // J per mole of initial mixture
};

/// What the throat found for an estimate lets through.
struct Chamber::Flow {
    double G;  // mass flux in the throat, kg/(m2 s)
    double w;  // velocity at the chamber end by continuity, m/s
    double pi; // injection pressure that goes with this chamber end, Pa
};

void Chamber::combustion_end_and_throat(bool expectCondensed)
{
    try {
        findChamberEnd(expectCondensed);
    } catch (const thermo::Exception& e) {
        clearCoreStations();
        throw thermo::Exception(e.getType());
    } catch (...) {
        clearCoreStations();
        throw;
    }
}

void Chamber::findChamberEnd(bool expectCondensed)
{
    const double F = firstContraction();
    requireSolved(INJECTION_PLANE);
    end.clear();
    end.problem = std::make_unique<Equilibrium>(*getReaction());
    inherit(*end.problem);
    endKind = End::OWN;

    double G = 0.0;
    try {
        G = iterateChamberEnd(F, expectCondensed);
    } catch (const std::exception&) {
        if (!isPersistent() || (isFluxGiven() && Mr == 0.0)) throw;
        G = bracketChamberEnd(F, expectCondensed);
    }

    const double w = std::sqrt(2.0 * (getReaction()->getHspec() - end.problem->getHspec()));
    const double rho = end.derivatives->getRho();
    if (isFluxGiven())
        Fcr = G / (rho * w);
    else
        Mr = rho * w;
}

// The mass flux in the throat, kg/(m2 s).
double Chamber::iterateChamberEnd(double F, bool expectCondensed)
{
    Estimate estimate = firstEstimate(F);
    for (int pass = 1;; ++pass) {
        solveChamberEnd(estimate, expectCondensed);
        throat(expectCondensed);
        const Flow flow = flowThrough(F);
        if (endIsSettled(F, estimate, flow)) return flow.G;
        if (pass == endPasses) throw thermo::Exception(noChamberEnd);
        estimate = nextEstimate(estimate, flow);
        if (isFluxGiven()) F = flow.G / Mr;
    }
}

// What would be the injection pressure rises with the pressure at the chamber end; at the injection
// pressure itself it is too high, by the momentum that the flow has.
double Chamber::bracketChamberEnd(double F, bool expectCondensed)
{
    util::Log::infof("THERMO",
                     "Chamber end: the search by momentum has not settled. Searching the pressure "
                     "between two bounds.%s",
                     util::eol);
    const double pi = getReaction()->getP();
    Flow flow{};
    const auto excess = [&](double lnP) {
        flow = flowOfEndAt(std::exp(lnP), F, expectCondensed);
        return std::log(flow.pi / pi);
    };
    BracketedRoot::Point high{}, low{std::log(pi), std::numeric_limits<double>::infinity()};
    for (int step = 1; !(low.value < 0.0); ++step) {
        if (step > bracketSteps) throw thermo::Exception(noChamberEnd);
        high = low;
        low.x = std::log(pi) - step * step * bracketStep;
        low.value = excess(low.x);
    }
    BracketedRoot root(excess, high, low);
    const bool closed = root.close(getRelativeTolerance() * pressureTolerance, narrowestBracket);
    if (!closed || F < 1.0) throw thermo::Exception(noChamberEnd);
    return flow.G;
}

// The flow of a chamber end of the pressure p, Pa, with the velocity that the momentum p_i = p +
// rho w^2 gives it. With a given mass flux F becomes the contraction that belongs to it.
Chamber::Flow Chamber::flowOfEndAt(double p, double& F, bool expectCondensed)
{
    const double pi = getReaction()->getP();
    Estimate estimate{p, 0.0, 0.0};
    const Derivatives* gas = getDerivatives();
    const Equilibrium* products = getReaction();
    double rho = gas->getRho();
    for (int pass = 0; pass < densityPasses; ++pass) {
        estimate.w = std::sqrt((pi - p) / rho);
        estimate.H = enthalpyAt(estimate.w, *gas, *products);
        solveChamberEnd(estimate, expectCondensed);
        gas = end.derivatives.get();
        products = end.problem.get();
        const double previous = std::exchange(rho, gas->getRho());
        if (std::abs(rho / previous - 1.0) < densityTolerance) break;
    }
    throat(expectCondensed);
    if (isFluxGiven()) F = flowThrough(F).G / Mr;
    return flowThrough(F);
}

// The contraction ratio, or a first guess of it from the mass flux p/(c* F).
double Chamber::firstContraction() const
{
    if (Fcr == 0.0 && Mr == 0.0) {
        util::Log::errorf("THERMO",
                          "Shifting Equilibrium Combustor: invalid state. Neither contraction "
                          "area ratio nor mass flux is defined.%s",
                          util::eol);
        throw thermo::Exception(invalidState);
    }
    return Fcr == 0.0 ? getReaction()->getP() / (Mr * assumedCstar) : Fcr;
}

// The perfect gas that enters a nozzle of the area ratio F at the Mach number M. The momentum that
// it has gained since the injection plane, p_i = p + rho w^2, gives its velocity.
Chamber::Estimate Chamber::firstEstimate(double F) const
{
    const Equilibrium& injection = *getReaction();
    const Derivatives& gas = *getDerivatives();
    const double pi = injection.getP();
    const double k = gas.getK();
    const double lambda = gasdynamics::lambda_q(1.0 / F, k, /*supersonic=*/false);
    const double M = gasdynamics::L2M(lambda, k);
    const double heating = 1.0 + k * (M * M) / (pi * gas.getBetta_t());

    const double p = pi / (gasdynamics::gf_pi(lambda, k) * heating);
    const double w = std::sqrt((pi - p) / gas.getRho());
    return {p, w, enthalpyAt(w, gas, injection)};
}

// Enthalpy, J per mole of initial mixture, of products that flow with the velocity w: Mm N is the
// mass of one mole of initial mixture.
double Chamber::enthalpyAt(double w, const Derivatives& gas, const Equilibrium& products) const
{
    return gas.getMm() * (getReaction()->getHspec() - w * w / 2.0) *
           products.getResultingMixtureQuantaty();
}

void Chamber::solveChamberEnd(const Estimate& estimate, bool expectCondensed)
{
    end.derivatives.reset();
    end.problem->setPH(estimate.p, estimate.H);
    end.derivatives.reset(
        solveReaction(end.problem.get(), getRelativeTolerance(), expectCondensed, false));
}

// The gas at the injection plane has the pressure p + rho w^2 = p0 f(lambda) [Zucrow], f being the
// impulse function; p + rho w^2/2 stands for the stagnation pressure p0 at the low Mach numbers of
// a chamber end.
Chamber::Flow Chamber::flowThrough(double F) const
{
    const Derivatives& sonic = *throatStation.derivatives;
    const double wThroat =
        std::sqrt(2.0 * (getReaction()->getHspec() - throatStation.problem->getHspec()));
    const double G = sonic.getRho() * wThroat;

    const double rho = end.derivatives->getRho();
    const double k = end.derivatives->getK();
    const double w = G / (rho * F);
    const double lambda = gasdynamics::M2L(w / end.derivatives->getA(), k);
    const double pi = (end.problem->getP() + rho * (w * w) / 2.0) * gasdynamics::gf_f(lambda, k);
    return {G, w, pi};
}

bool Chamber::endIsSettled(double F, const Estimate& estimate, const Flow& flow) const
{
    const double tolerance = getRelativeTolerance();
    const double pi = getReaction()->getP();
    const double pressureLimit = tolerance * pressureTolerance;
    if (!(std::abs(pi - flow.pi) / pi < pressureLimit)) return false;

    const double rho = end.derivatives->getRho();
    const bool fluxGiven = isFluxGiven();
    // A chamber end with condensed phases settles on the pressure alone.
    const double limit = end.problem->hasCondensedPhase() ? condensedTolerance
                         : fluxGiven
                             ? fluxTolerance * std::log(std::max(tolerance, std::numbers::e))
                             : pressureLimit;
    if (!fluxGiven) return std::abs(F - flow.G / (rho * flow.w)) / F < limit;
    // The velocity of the estimate alone, that of the momentum, never comes close enough to the
    // flux in chambers contracted less than about 4.5 times; the one of continuity does.
    return std::abs(Mr - rho * estimate.w) / Mr < limit || std::abs(Mr - rho * flow.w) / Mr < limit;
}

Chamber::Estimate Chamber::nextEstimate(const Estimate& estimate, const Flow& flow) const
{
    const double pi = getReaction()->getP();
    const double p = pi * estimate.p / flow.pi;
    const double w = std::sqrt((pi - p) / end.derivatives->getRho());
    return {p, w, enthalpyAt(w, *end.derivatives, *end.problem)};
}

} // namespace performance::equilibrium
