#include <ketra/performance/ThrottlingPerformance.h>

#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>

namespace performance {

using detail::BracketedRoot;
using equilibrium::Chamber;
using thermo::input::Pressure;

namespace {

constexpr unsigned int invalidState = 0;

constexpr double leastRatio = 1e-6;
constexpr double greatestRatio = 2.0;

constexpr int maxPasses = 20;          // solves of the chamber
constexpr double fluxTolerance = 1e-8; // relative, of the mass flux
constexpr double settledFlux = 1e-5;   // the same where the digits of the chamber end

// The bracket of the chamber pressure, in ln p.
constexpr int bracketSteps = 20;
constexpr double narrowestBracket = 1e-9;

[[noreturn]] void failWithoutDesign(const char* missing)
{
    util::Log::errorf("THERMO",
                      "Could not find the throttling characteristics: the design case has no %s. "
                      "Solve it first.%s",
                      missing, util::eol);
    throw thermo::Exception(invalidState);
}

TheoreticalPerformance* withDocument(TheoreticalPerformance* design)
{
    if (design == nullptr || design->getData() == nullptr) failWithoutDesign("document");
    return design;
}

} // namespace

ThrottlingPerformance::ThrottlingPerformance(TheoreticalPerformance* designCase, double newRatio,
                                             bool calculateTransport)
    : TheoreticalPerformance(withDocument(designCase)), design(designCase), ratio(newRatio)
{
    if (!isDesign()) throttle(newRatio, calculateTransport);
}

ThrottlingPerformance::~ThrottlingPerformance() = default;

reaction::Equilibrium* ThrottlingPerformance::getEquilibrium()
{
    return isDesign() ? design->getEquilibrium() : TheoreticalPerformance::getEquilibrium();
}

reaction::Derivatives* ThrottlingPerformance::getDerivatives()
{
    return isDesign() ? design->getDerivatives() : TheoreticalPerformance::getDerivatives();
}

Chamber* ThrottlingPerformance::getChamber()
{
    return isDesign() ? design->getChamber() : TheoreticalPerformance::getChamber();
}

equilibrium::NozzleSectionConditions* ThrottlingPerformance::getExitSection()
{
    return isDesign() ? design->getExitSection() : TheoreticalPerformance::getExitSection();
}

double ThrottlingPerformance::getPaCrit()
{
    return isDesign() ? design->getPaCrit() : TheoreticalPerformance::getPaCrit();
}

equilibrium::NozzleSectionConditions* ThrottlingPerformance::getOverExpansionSection()
{
    return isDesign() ? design->getOverExpansionSection()
                      : TheoreticalPerformance::getOverExpansionSection();
}

Chamber& ThrottlingPerformance::designChamber() const
{
    Chamber* solved = design->getChamber();
    if (solved == nullptr) failWithoutDesign("solved chamber");
    return *solved;
}

equilibrium::NozzleSectionConditions& ThrottlingPerformance::designExit() const
{
    equilibrium::NozzleSectionConditions* solved = design->getExitSection();
    if (solved == nullptr) failWithoutDesign("solved nozzle exit");
    return *solved;
}

void ThrottlingPerformance::throttle(double newRatio, bool calculateTransport)
{
    clearForRestart(/*all=*/false);
    ratio = newRatio;
    if (isDesign()) return;
    if (!(ratio >= leastRatio && ratio <= greatestRatio)) {
        markInvalid();
        util::Log::errorf("THERMO",
                          "Could not find the throttling characteristics: invalid throttling ratio "
                          "%5.3f%s",
                          ratio, util::eol);
        throw thermo::Exception(invalidState);
    }
    setChamberPressure(getData()->getCombustionChamberConditions().getPressure(true) * ratio);
    try {
        solveThrottled(calculateTransport);
    } catch (const thermo::Exception& failure) {
        markInvalid();
        throw thermo::Exception(failure.getType());
    }
}

bool ThrottlingPerformance::isFiniteArea() const
{
    const thermo::input::NozzleFlowOptions& options = getData()->getNozzleFlowOptions();
    return options.isCalculateNozzleFlow() && options.isNozzleInletConditionsSet();
}

void ThrottlingPerformance::setChamberPressure(double p)
{
    getData()->getCombustionChamberConditions().setPressure(p, Pressure::PA, /*keepUnit=*/true);
}

void ThrottlingPerformance::solveThrottled(bool calculateTransport)
{
    if (!isFiniteArea()) {
        solve(calculateTransport);
        return;
    }
    getData()->getNozzleFlowOptions().getNozzleInletConditions().setContractionAreaRatio(
        designChamber().getFcr());
    setNozzleSolving(false); // and so it stays if the mass flux does not settle
    solveChamberForFlux(designChamber().getMr() * ratio, calculateTransport);
    setNozzleSolving(true);
    solveDesignExit(calculateTransport);
}

void ThrottlingPerformance::solveChamberForFlux(double targetMr, bool calculateTransport)
{
    if (settleFlux(targetMr, calculateTransport)) return;
    if (isPersistent() && bracketFlux(targetMr, calculateTransport)) return;
    util::Log::errorf("THERMO",
                      "Could not find the throttling characteristics within %d iterations!%s",
                      maxPasses, util::eol);
    throw thermo::Exception(invalidState);
}

// The mass flux is nearly proportional to the chamber pressure: the pressure is relaxed by the
// relative error of the flux.
bool ThrottlingPerformance::settleFlux(double targetMr, bool calculateTransport)
{
    const double tolerance = getRelativeTolerance() * fluxTolerance;
    for (int pass = 1;; ++pass) {
        solve(calculateTransport);
        const double q = getChamber()->getMr() / targetMr;
        if (std::abs(1.0 - q) < tolerance) return true;
        if (pass == maxPasses) return false;
        const double p = (2.0 - q) * getChamber()->getReaction(Chamber::INJECTION_PLANE)->getP();
        clearForRestart(/*all=*/false);
        setChamberPressure(p);
    }
}

// The bracket grows from the last pressure of the relaxation, until the flux lies in it. The digits
// of a chamber end before those of the relaxation's tolerance: a flux that is met as well as a
// chamber end meets its own is met.
bool ThrottlingPerformance::bracketFlux(double targetMr, bool calculateTransport)
{
    util::Log::infof("THERMO",
                     "Throttling: the mass flux has not settled. Searching the chamber pressure "
                     "between two bounds.%s",
                     util::eol);
    const auto excess = [&](double lnP) {
        clearForRestart(/*all=*/false);
        setChamberPressure(std::exp(lnP));
        solve(calculateTransport);
        return std::log(getChamber()->getMr() / targetMr);
    };
    double width = 0.0;
    BracketedRoot::Point low{}, high{};
    low.x = std::log(getChamber()->getReaction(Chamber::INJECTION_PLANE)->getP());
    low.value = excess(low.x);
    high = low;
    for (int step = 0; (low.value < 0.0) == (high.value < 0.0); ++step) {
        if (step == bracketSteps) return false;
        width += std::max(width, 2.0 * std::abs(low.value));
        BracketedRoot::Point& end = low.value < 0.0 ? high : low;
        end.x += end.value < 0.0 ? width : -width;
        end.value = excess(end.x);
    }
    BracketedRoot root(excess, low, high);
    if (root.close(getRelativeTolerance() * fluxTolerance, narrowestBracket)) return true;
    return std::abs(excess(root.best().x)) < getRelativeTolerance() * settledFlux;
}

// The nozzle is the design's, and so is its area ratio, however the exit was given there.
void ThrottlingPerformance::solveDesignExit(bool calculateTransport)
{
    thermo::input::NozzleFlowOptions& options = getData()->getNozzleFlowOptions();
    if (!options.isNozzleExitConditionsSet()) return;
    options.getNozzleExitConditions().setAreaRatio(designExit().getFr(), /*supersonic=*/true);
    solveNozzleExit(options, getData()->getGeneralOptions().isFlowSeparation(), calculateTransport);
}

} // namespace performance
