// The tables of a nozzle: pressure over area ratio, for many sections without a search for each.

#include <ketra/performance/equilibrium/Chamber.h>

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/math/equation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/concurrent/parallelFor.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace performance::equilibrium {

using math::interpolation::Interpolation;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace {

constexpr double floorT = 700.0; // K, least start temperature of a point
constexpr double quarterPi = std::numbers::pi / 4.0;
constexpr double failed = 0.0; // area ratio of a point without an equilibrium
constexpr std::size_t leastPoints = 2;

std::size_t pointsOf(int n)
{
    return std::max(leastPoints, static_cast<std::size_t>(std::max(n, 0)));
}

/// Pressures from the throat to the chamber end on two arcs of a sine, the first third of the
/// points below the middle of the arcs: the points bunch where the area ratio changes least and
/// most.
std::vector<double> convergentPressures(double pThroat, double pEnd, std::size_t n)
{
    const auto at = [&](double angle) { return pThroat + (pEnd - pThroat) * std::sin(angle); };
    const std::size_t m = n / 3;
    std::vector<double> p(n, pThroat);
    p[n - 1] = pEnd;
    for (std::size_t i = 1; i < m; ++i)
        p[i] = at(static_cast<double>(i) * (quarterPi / static_cast<double>(m - 1)));
    // From two points on, more than one is left for the second arc.
    const double step = quarterPi / static_cast<double>(n - m - 1);
    for (std::size_t j = 0; m + j < n; ++j)
        p[m + j] = at(static_cast<double>(j) * step + quarterPi);
    return p;
}

/// Pressures from the throat to an exit, which they approach exponentially: dense near the throat.
std::vector<double> divergentPressures(double pThroat, double pExit, std::size_t n)
{
    std::vector<double> p(n, pThroat);
    p[n - 1] = pExit;
    for (std::size_t i = 1; i + 1 < n; ++i)
        p[i] = pThroat - (1.0 - std::exp(-static_cast<double>(i) / 10.0)) * (pThroat - pExit);
    return p;
}

/// Gives each failed point the mean of the good points around it, the nearest good one at an end.
void repair(std::vector<double>& ratios)
{
    const auto isGood = [](double ratio) { return ratio != failed; };
    for (auto point = ratios.begin(); point != ratios.end(); ++point) {
        if (isGood(*point)) continue;
        const auto next = std::find_if(point, ratios.end(), isGood);
        if (next != ratios.end()) {
            *point = point == ratios.begin() ? *next : (*next + *(point - 1)) * 0.5;
        }
        if (!isGood(*point)) {
            const auto before =
                std::find_if(std::make_reverse_iterator(point), ratios.rend(), isGood);
            if (before != ratios.rend()) *point = *before;
        }
    }
}

std::unique_ptr<Interpolation> tableOf(std::vector<double>& ratios,
                                       const std::vector<double>& pressures)
{
    repair(ratios);
    return std::make_unique<Interpolation>(static_cast<unsigned int>(ratios.size()), ratios.data(),
                                           pressures.data());
}

} // namespace

Interpolation* Chamber::getNozzleInput(bool expectCondensed, int n)
{
    if (nozzleInput) return nozzleInput.get();
    requireSolved(CHAMBER_END);
    requireSolved(THROAT);
    const Equilibrium& inlet = *getReaction(CHAMBER_END);
    const double k =
        (throatStation.derivatives->getK() + getDerivatives(CHAMBER_END)->getK()) * 0.5;

    const std::vector<double> pressures =
        convergentPressures(throatStation.problem->getP(), inlet.getP(), pointsOf(n));
    std::vector<double> ratios =
        areaRatios(inlet, pressures, k, /*supersonic=*/false, expectCondensed);
    ratios.back() = Fcr; // 0 for an infinite area: the end of the table is that of the last point
    nozzleInput = tableOf(ratios, pressures);
    return nozzleInput.get();
}

Interpolation* Chamber::getNozzleExit(double p, double Fr, bool expectCondensed, int n)
{
    if (nozzleExit) return nozzleExit.get();
    requireSolved(CHAMBER_END);
    requireSolved(THROAT);
    const Equilibrium& sonic = *throatStation.problem;

    const std::vector<double> pressures = divergentPressures(sonic.getP(), p, pointsOf(n));
    std::vector<double> ratios = areaRatios(sonic, pressures, throatStation.derivatives->getK(),
                                            /*supersonic=*/true, expectCondensed);
    ratios.back() = Fr;
    nozzleExit = tableOf(ratios, pressures);
    return nozzleExit.get();
}

// The area ratios of all pressures but the last. Every point is solved on a problem of its own,
// from a start of its own: which thread solves it makes no difference.
std::vector<double> Chamber::areaRatios(const Equilibrium& start,
                                        const std::vector<double>& pressures, double k,
                                        bool supersonic, bool expectCondensed) const
{
    const Equilibrium& inlet = *getReaction(CHAMBER_END);
    const double pInlet = inlet.getP();
    const double TInlet = inlet.getT();
    const double S = inlet.getS() * inlet.getResultingMixtureQuantaty();
    const double Hi = getReaction()->getHspec();
    const double G = getThroatFlux();

    const auto startT = [&](double p) {
        try {
            const double lambda = gasdynamics::lambda_pi(p / pInlet, k, supersonic);
            return TInlet * (1.0 - (k - 1.0) * lambda * lambda / (k + 1.0));
        } catch (const math::equation::Exception&) {
            return TInlet;
        }
    };
    const auto areaRatio = [&](double p) {
        Equilibrium point(start);
        inherit(point);
        point.setPS(p, S);
        if (!isWarmStart()) point.setT(std::max(floorT, startT(p)));
        const std::unique_ptr<Derivatives> gas(
            solveReaction(&point, getRelativeTolerance(), expectCondensed, false));
        const double w = std::sqrt(2.0 * (Hi - point.getHspec()));
        return G / (gas->getRho() * w);
    };

    std::vector<double> ratios(pressures.size(), failed);
    util::concurrent::parallelFor(0, static_cast<int>(ratios.size()) - 1, [&](int index) {
        const auto i = static_cast<std::size_t>(index);
        try {
            const double ratio = areaRatio(pressures[i]);
            if (std::isfinite(ratio)) ratios[i] = ratio;
        } catch (const std::exception&) {
            ratios[i] = failed;
        }
    });
    return ratios;
}

void Chamber::deleteNozzleExitTable() { nozzleExit.reset(); }

double Chamber::getNozzleExitTableMaxFr() const
{
    if (!nozzleExit) throw thermo::Exception(0);
    return nozzleExit->getMaxX();
}

} // namespace performance::equilibrium
