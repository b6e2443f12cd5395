#include <ketra/performance/equilibrium/detail/NozzleSectionSolver.h>

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/math/equation/Exception.h>
#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/performance/detail/Required.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <cmath>

using performance::detail::required;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace performance::equilibrium {

namespace {

constexpr unsigned int noSection = 11; // code of a section that cannot be found

constexpr double throatBand = 0.0001;    // of the area ratio, within which a section is the throat
constexpr double inletBand = 0.001;      // relative, within which a section is the nozzle inlet
constexpr double areaRatioExcess = 0.01; // relative, what an area ratio may exceed the inlet's by
constexpr double pressureExcess = 0.001; // relative, what a pressure may exceed the inlet's by
constexpr int inletTableSize = 90;       // points
constexpr int exitTableSize = 120;       // points

/// How far the area ratio found may be off, relative; a search that takes long asks for less.
class Tolerance
{
public:
    bool holds(double error) const { return error < limit; }
    void loosen(int pass)
    {
        for (const auto& [after, factor] : schedule)
            if (pass == after) limit *= factor;
    }

private:
    struct Loosening {
        int after; // pass
        double factor;
    };
    static constexpr Loosening schedule[] = {{20, 5.0}, {50, 2.0}, {75, 1.5}};

    double limit = 0.0005;
};

/// The relative step of the pressure that closes a gap in area ratio. Far off, the step is that of
/// a hypersonic flow, quadratic in the ratio; nearer it is linear, and at last a square root, which
/// does not overshoot. What has come nearer never goes back to the first of these.
class PressureStep
{
public:
    /// \param ratio  area ratio found over the one sought
    double operator()(double ratio, double error)
    {
        if (mode == FAR && error > 0.2) return ratio * ratio - 1;
        if (mode == NEARER && error > 0.05) return ratio - 1;
        mode = error > 0.1 ? NEARER : NEAR;
        return std::sqrt(ratio) - 1;
    }

private:
    enum Mode { FAR, NEARER, NEAR };
    Mode mode = FAR;
};

} // namespace

NozzleSectionConditions::Solver::Solver(NozzleSectionConditions& newSection, Chamber& newChamber,
                                        bool newSupersonic, bool condensed, bool transport,
                                        int points)
    : section(newSection), chamber(newChamber), supersonic(newSupersonic),
      expectCondensed(condensed), calculateTransport(transport), tableSize(points),
      injection(required(chamber.getReaction(Chamber::INJECTION_PLANE))),
      end(required(chamber.getReaction(Chamber::CHAMBER_END))),
      endDerivatives(required(chamber.getDerivatives(Chamber::CHAMBER_END))),
      throat(required(chamber.getReaction(Chamber::THROAT))),
      throatDerivatives(required(chamber.getDerivatives(Chamber::THROAT))),
      S(end.getS() * end.getResultingMixtureQuantaty()), throatFlux(chamber.getThroatFlux())
{
    section.core.Betta = chamber.getBetta(0.0);
    section.core.problem = std::make_unique<Equilibrium>(start());
    section.core.problem->setPersistent(chamber.isPersistent());
    section.core.problem->setWarmStart(chamber.isWarmStart());
}

void NozzleSectionConditions::Solver::solve(double value, CONDITION_TYPE type)
{
    const bool isThroat = std::abs(1 - value) <= throatBand;
    std::optional<double> tabulated;
    if (type == PRESSURE) {
        solveAtGiven(value);
    } else if (type == PRESSURE_RATIO) {
        // The guess takes the ratio to the chamber end, though it is given to the injection plane.
        solveAt(limitedToEnd(injection.getP() / value), 1 / value);
    } else if (type == AREA_RATIO && !supersonic && !isThroat) {
        section.core.Fr = limitedToInlet(value);
        solveInInlet(section.core.Fr);
    } else if (type == AREA_RATIO && supersonic && (tabulated = tabulatedInExit(value))) {
        section.core.Fr = value;
        solveAtGiven(*tabulated);
        improve(value);
    } else if (type == AREA_RATIO && isThroat) {
        section.core.Fr = 1.0;
        solveAt(throat.getP(), 1 / value);
    } else {
        findAreaRatio(value);
    }
    storePerformance();
    if (supersonic) tabulateExit();
}

double NozzleSectionConditions::Solver::limitedToInlet(double Fr) const
{
    const double Fcr = chamber.getFcr();
    if (std::abs(Fcr - Fr) / Fcr < inletBand) return Fcr;
    if (!(Fr > Fcr)) return Fr;
    if ((Fr - Fcr) / Fcr >= areaRatioExcess) {
        util::Log::errorf("THERMO",
                          "Could not find nozzle section shifting equilibrium conditions: "
                          "specified area ratio %.3f exceeds nozzle inlet contraction area ratio "
                          "%.3f.%s",
                          Fr, Fcr, util::eol);
        throw thermo::Exception(noSection);
    }
    return Fcr;
}

/// The table has straight lines between its points: a persistent chamber takes it for a guess.
void NozzleSectionConditions::Solver::solveInInlet(double Fr)
{
    try {
        solveAtGiven(pressureInInlet(Fr));
        improve(Fr);
    } catch (const math::interpolation::Exception&) {
        if (!chamber.isPersistent()) throw;
        bracketAreaRatio(Fr);
    }
}

double NozzleSectionConditions::Solver::pressureInInlet(double Fr)
{
    const int points = tableSize < 1 ? inletTableSize : tableSize;
    return chamber.getNozzleInput(expectCondensed, points)->linearInterpolation(Fr);
}

/// The pressure by the table of the nozzle exit, if there is one that holds the area ratio.
std::optional<double> NozzleSectionConditions::Solver::tabulatedInExit(double Fr)
{
    if (!chamber.isNozzleExitTable() || tableSize < 0) return std::nullopt;
    const int points = tableSize == 0 ? exitTableSize : tableSize;
    try {
        return chamber.getNozzleExit(0, 0, expectCondensed, points)->polynomialInterpolation(Fr);
    } catch (const math::interpolation::Exception&) {
        return std::nullopt;
    }
}

double NozzleSectionConditions::Solver::limitedToEnd(double p) const
{
    const double pEnd = end.getP();
    if (!(p > pEnd)) return p;
    if ((p - pEnd) / pEnd >= pressureExcess) {
        util::Log::errorf("THERMO",
                          "Could not find nozzle section shifting equilibrium conditions: "
                          "specified pressure %.3f exceeds nozzle inlet pressure %.3f.%s",
                          p, pEnd, util::eol);
        throw thermo::Exception(noSection);
    }
    return pEnd;
}

void NozzleSectionConditions::Solver::solveAtGiven(double p)
{
    const double limited = limitedToEnd(p);
    solveAt(limited, limited / end.getP());
}

/// \param guessedRatio  pressure over that of the chamber end, for the first guess alone
void NozzleSectionConditions::Solver::solveAt(double p, double guessedRatio)
{
    section.p = p;
    supersonic = p < throat.getP();
    const double k = supersonic ? throatDerivatives.getK()
                                : (throatDerivatives.getK() + endDerivatives.getK()) * 0.5;
    double T = end.getT();
    try {
        T *= gasdynamics::gf_tau(gasdynamics::lambda_pi(guessedRatio, k, supersonic), k);
    } catch (const math::equation::Exception&) {
        // the chamber end is a start too
    }
    expand(T, /*transport=*/true);
    if (section.core.Fr == 0.0) section.core.Fr = areaRatio();
}

void NozzleSectionConditions::Solver::searchAreaRatio(double Fr)
{
    constexpr int lastPass = 149;
    double T = guess(Fr);
    Tolerance tolerance;
    PressureStep step;
    for (int pass = 0;; ++pass) {
        expand(T, /*transport=*/false);
        const double found = areaRatio();
        const double error = std::abs(Fr - found) / Fr;
        if (tolerance.holds(error)) break;
        section.p = limitedToThroat(section.p + step(found / Fr, error) * section.p);
        T = section.core.problem->getT();
        tolerance.loosen(pass);
        if (pass == lastPass) {
            util::Log::errorf("THERMO",
                              "Could not find nozzle section shifting equilibrium condition: "
                              "maximum number of iterations is exceeded.%s",
                              util::eol);
            throw thermo::Exception(noSection);
        }
    }
}

/// Pressure and temperature of a perfect gas at the area ratio; those of the chamber end, where the
/// area ratio has none.
double NozzleSectionConditions::Solver::guess(double Fr)
{
    const double kThroat = throatDerivatives.getK();
    const double k = supersonic ? kThroat : (endDerivatives.getK() + kThroat) * 0.5;
    try {
        const double lambda = gasdynamics::lambda_q(1 / Fr, k, supersonic);
        section.p = end.getP() * gasdynamics::gf_pi(lambda, k);
        return end.getT() * gasdynamics::gf_tau(lambda, k);
    } catch (const math::equation::Exception&) {
        section.p = end.getP();
        return end.getT();
    }
}

/// A step that has left the range of the search, or is not a number, starts again from the throat.
double NozzleSectionConditions::Solver::limitedToThroat(double p) const
{
    return p <= throat.getP() ? p : throat.getP();
}

/// Expands the products from the chamber end to the pressure of the section.
void NozzleSectionConditions::Solver::expand(double T, bool transport)
{
    Stream& core = section.core;
    core.derivatives.reset();
    core.problem->setPS(section.p, S);
    if (!chamber.isWarmStart()) core.problem->setT(startTemperature(T));
    core.derivatives.reset(Combustor::solveReaction(
        core.problem.get(), injection.getRelativeTolerance(), expectCondensed, transport));
    core.W = std::sqrt(2 * (injection.getHspec() - core.problem->getHspec()));
}

double NozzleSectionConditions::Solver::areaRatio() const
{
    return throatFlux / (section.core.derivatives->getRho() * section.core.W);
}

void NozzleSectionConditions::Solver::storePerformance()
{
    section.Pi = injection.getP() / section.p;
    section.core.store(section.p, supersonic);
}

/// Makes the table of the nozzle exit, which later sections read, if there is none.
void NozzleSectionConditions::Solver::tabulateExit()
{
    if (chamber.isNozzleExitTable() || tableSize < 0) return;
    chamber.deleteNozzleExitTable();
    chamber.getNozzleExit(section.p, section.core.Fr, expectCondensed,
                          tableSize > 0 ? tableSize : exitTableSize);
}

} // namespace performance::equilibrium
