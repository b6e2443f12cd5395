#include <ketra/reaction/detail/Iteration.h>

#include <ketra/math/matrix/Exception.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <utility>

using math::matrix::ColumnVector;
using thermo::gasConstant;

namespace reaction::detail {

namespace {

constexpr unsigned int leastCycles = 50;
constexpr double keyGasFloor = 1e-4;   // mol, of O2 and H2 when the matrix is singular
constexpr double emptyGasFloor = 1e-6; // mol, of other gases that have vanished
constexpr double traceAmount = 1e-8;   // mol, below which a gas is cut from a singular matrix
constexpr unsigned int singular = 3;   // codes of math::matrix::Exception
constexpr unsigned int noConvergence = 4;

const double lnTrace = std::log(1e-8);       // a mole fraction below it is a trace
const double lnTraceTarget = std::log(1e-5); // what a growing trace may reach in one step

} // namespace

Iteration::Iteration(Equilibrium& problem)
    : eq(problem), mixture(*problem.mixture), state(mixture), system(mixture, state),
      constantPressure(problem.isConstantPressure()), fixedT(problem.isFixedTemperature()),
      initialMm(constantPressure ? 0.0 : problem.initialMm()),
      tolerance(problem.baseTolerance * problem.relativeTolerance), limit(cycleLimit())
{
}

std::unique_ptr<ColumnVector> Iteration::run()
{
    for (unsigned int cycle = 0; cycle < limit; ++cycle) {
        requireProducts();
        solveSystem();
        const Step step = limitedStep();
        advanceAmounts(step);
        bool converged = correctionsSmall(step);
        if (!fixedT) advanceTemperature(step);
        converged = converged && multipliersSettled(cycle) && mixture.balanceCloses(totalMoles()) &&
                    chargeCloses();

        if (cycle + 1 == limit) {
            eq.report(
                "Could not solve the equilibrium: maximum number of iterations is exceeded.%s",
                util::eol);
            throw thermo::Exception(8);
        }
        if (standsAtBestOfPeriod(cycle, converged) || settledAtFixedT(cycle, converged)) break;
        const bool changed = mixture.checkPresentCondesedPhases(eq.T, false, true, 0.0);
        if (changed)
            state.refresh();
        else
            state.refreshValues();
        if (!changed && converged) break;
        std::swap(previous, x);
    }
    storeResults();
    return std::move(x);
}

std::unique_ptr<ColumnVector> Iteration::solveOnce()
{
    assembleAndSolve();
    return std::move(x);
}

unsigned int Iteration::cycleLimit() const
{
    return std::max(eq.maxCycles, leastCycles) + 2 * mixture.size();
}

void Iteration::requireProducts() const
{
    if (mixture.size() > 0) return;
    eq.report("Could not solve the equilibrium. Probably there are no products that exist at the "
              "temperature %7.3f K%s",
              eq.T, util::eol);
    throw thermo::Exception(0);
}

// An empty row of hydrogen or oxygen makes the matrix singular, so the key gases get a floor; if
// that does not help, gases that contribute nothing are cut away.
void Iteration::solveSystem()
{
    try {
        assembleAndSolve();
        return;
    } catch (const math::matrix::Exception& e) {
        if (e.getType() != singular && e.getType() != noConvergence) throw;
    }
    limit = 2 * cycleLimit();
    repairAmounts();
    try {
        assembleAndSolve();
        return;
    } catch (const math::matrix::Exception&) {
        dropTraces();
    }
    assembleAndSolve();
}

void Iteration::assembleAndSolve()
{
    system.assemble(target());
    if (!x || x->size() != system.unknowns().order)
        x = std::make_unique<ColumnVector>(system.unknowns().order);
    try {
        system.solve(*x);
    } catch (const math::matrix::Exception& e) {
        if (e.getType() != singular || !previous || previous->size() != x->size()) throw;
        system.solveDependent(*previous, *x);
    }
}

void Iteration::repairAmounts()
{
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        const std::string& name = mixture.product(j)->getName();
        if (name == "O2" || name == "H2") {
            if (state.n[j] < keyGasFloor) setAmount(j, keyGasFloor, std::log(keyGasFloor));
        } else if (state.n[j] == 0.0) {
            setAmount(j, emptyGasFloor, std::log(emptyGasFloor));
        }
    }
}

void Iteration::dropTraces()
{
    for (unsigned int j = 0; j < state.gasSize(); ++j)
        if (state.n[j] < traceAmount) setAmount(j, 0.0, 0.0);
}

// What of the system holds for the present state.
Target Iteration::target() const
{
    double value = 0.0;
    switch (eq.processType) {
    case Equilibrium::PH:
        value = eq.H / eq.RT;
        break;
    case Equilibrium::PS:
    case Equilibrium::VS:
        value = eq.S / gasConstant;
        break;
    case Equilibrium::VU:
        value = eq.U / eq.RT;
        break;
    case Equilibrium::PT:
    case Equilibrium::VT:
        break;
    }
    return {eq.processType, value, eq.Ng, concentrationTerm()};
}

double Iteration::concentrationTerm() const
{
    return constantPressure ? eq.lnP - eq.lnNg : eq.lnPv;
}

// The correction of each gas, [RP1311] (2.18), (2.41):
//   dln n_j = dln n + E_j dln T - mu_j + sum a_ij pi_i
Iteration::Step Iteration::limitedStep()
{
    const Unknowns& at = system.unknowns();
    Step step{at.hasLnN ? x->at(0) : 0.0, at.hasT ? x->at(at.lnT) : 0.0, 1.0};
    const std::vector<double>& E = constantPressure ? state.H : state.U;
    const double* pi = x->getData() + at.pi;
    const double offset = concentrationTerm();
    d.resize(state.gasSize());
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        double correction = step.dlnN - (state.G[j] + (state.lnN[j] + offset));
        if (at.hasT) correction += E[j] * step.dlnT;
        const double* a = state.row(j);
        for (unsigned int i = 0; i < state.elements(); ++i) correction += a[i] * pi[i];
        d[j] = correction;
    }
    step.lambda =
        constantPressure ? dampingAtConstantPressure(step) : dampingAtConstantVolume(step);
    return step;
}

// Damping of [RP1311] (3.1) to (3.3), with the amount after the full step as the measure of a
// trace.
double Iteration::dampingAtConstantPressure(const Step& step) const
{
    const double t = fixedT ? 1.0 : 5.0 * std::abs(step.dlnT);
    const double s = 5.0 * std::abs(step.dlnN);
    double forMain = 1.0;
    double forTraces = 1.0;
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        const double lnX = state.lnN[j] + d[j] - eq.lnNg - step.dlnN;
        if (lnX > lnTrace) {
            forMain = std::min(forMain, 2.0 / std::max({std::abs(d[j]), s, t}));
        } else if (d[j] >= 0.0) {
            const double room = lnTraceTarget - state.lnN[j] - d[j] + eq.lnNg + step.dlnN;
            forTraces = std::min(forTraces, std::abs(room / (d[j] - step.dlnN)));
        }
    }
    return std::min({1.0, forMain, forTraces});
}

double Iteration::dampingAtConstantVolume(const Step& step) const
{
    const double t = fixedT ? 1.0 : 5.0 * std::abs(step.dlnT);
    const double lnNg = std::log(eq.Ng);
    double forMain = 1.0;
    double forTraces = 1.0;
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        const double lnX = state.lnN[j] + d[j] - lnNg;
        if (lnX > lnTrace)
            forMain = std::min(forMain, 2.0 / std::max(std::abs(d[j]), t));
        else if (d[j] >= 0.0)
            forTraces = std::min(forTraces, std::abs((lnTraceTarget - lnX) / d[j]));
    }
    return std::min({1.0, forMain, forTraces});
}

void Iteration::advanceAmounts(const Step& step)
{
    if (constantPressure) {
        eq.lnNg += step.lambda * step.dlnN;
        eq.Ng = std::exp(eq.lnNg);
    } else {
        eq.Ng = 0.0;
        eq.lnNg = 0.0;
    }
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        const double lnN = state.lnN[j] + step.lambda * d[j];
        const double n = std::exp(lnN);
        setAmount(j, n, lnN);
        if (!constantPressure) eq.Ng += n;
    }
    if (!constantPressure) eq.lnNg = std::log(eq.Ng);
    if (!mixture.isMultiphase()) return;
    const unsigned int dn = system.unknowns().dn;
    for (unsigned int c = state.gasSize(); c < state.size(); ++c)
        setAmount(c, state.n[c] + step.lambda * x->at(dn + c - state.gasSize()), 0.0);
}

void Iteration::setAmount(unsigned int j, double n, double ln_n)
{
    state.n[j] = n;
    state.lnN[j] = ln_n;
    mixture.product(j)->setN(n, ln_n);
}

void Iteration::advanceTemperature(const Step& step)
{
    eq.lnT += step.lambda * step.dlnT;
    eq.T = std::exp(eq.lnT);
    eq.RT = eq.T * gasConstant;
    if (!constantPressure)
        eq.lnPv = std::log(eq.RT / (initialMm * eq.v * thermo::referencePressure));
}

double Iteration::totalMoles() const
{
    double total = eq.Ng;
    for (unsigned int c = state.gasSize(); c < state.size(); ++c) total += state.n[c];
    return total;
}

// The corrections of condensed amounts are looked at only where there is no gas at all.
bool Iteration::correctionsSmall(const Step& step) const
{
    if (constantPressure && !(std::abs(step.dlnN) <= tolerance)) return false;
    const double total = totalMoles();
    for (unsigned int j = 0; j < state.gasSize(); ++j)
        if (!(std::abs(d[j]) * state.n[j] / total <= tolerance)) return false;
    if (mixture.isMultiphase() && state.size() > 0 && state.gasSize() == 0 &&
        !(std::abs(x->at(system.unknowns().dn)) / total <= tolerance))
        return false;
    return fixedT || std::abs(step.dlnT) <= tolerance;
}

// The multipliers must stand still too; the limit widens as the cycles run out.
bool Iteration::multipliersSettled(unsigned int cycle) const
{
    if (!previous) return true;
    const double share = cycle < limit / 3 ? 1e-4 : cycle < 2 * limit / 3 ? 1e-3 : 1e-2;
    const unsigned int first = system.unknowns().pi;
    for (unsigned int i = first; i < first + state.elements(); ++i) {
        const double before = previous->at(i);
        const double now = x->at(i);
        if (before == now) continue; // also where both are 0
        if (!(std::abs((before - now) / now) <= eq.relativeTolerance * share)) return false;
    }
    return true;
}

bool Iteration::chargeCloses() const
{
    double charge = 0.0;
    for (unsigned int j = 0; j < state.size(); ++j)
        charge += mixture.product(j)->getCharge() * state.n[j];
    return !(std::abs(charge) > tolerance);
}

double Iteration::reducedGibbs() const
{
    const double offset = concentrationTerm();
    double sum = 0.0;
    for (unsigned int j = 0; j < state.gasSize(); ++j)
        sum += state.n[j] * (state.G[j] + state.lnN[j] + offset);
    for (unsigned int c = state.gasSize(); c < state.size(); ++c) sum += state.n[c] * state.G[c];
    return sum;
}

// Near a phase boundary the iteration may circle through a few states for ever.
bool Iteration::standsAtBestOfPeriod(unsigned int cycle, bool converged)
{
    constexpr unsigned int patience = 50; // cycles
    constexpr unsigned int late = 70;
    if (fixedT || cycle <= (converged ? patience : late)) return false;
    const double r = (cycle <= late ? 1e-5 : 1e-4) * eq.relativeTolerance;
    const std::size_t keep = cycle <= late ? 10 : 20;
    const double g = eq.RT * reducedGibbs() / totalMoles() / mixture.resultingMm();
    return oscillation.standsAtBest(eq.T, g, r, keep, state.size() == state.gasSize());
}

bool Iteration::settledAtFixedT(unsigned int cycle, bool converged)
{
    constexpr unsigned int lastCycles = 10;
    constexpr unsigned int enough = 5;
    if (fixedT && converged && cycle + lastCycles > limit)
        ++settled;
    else
        settled = 0;
    return settled > enough;
}

// Per mole of products from here on; the target that was posed keeps its value until it is divided.
void Iteration::storeResults() const
{
    const double total = totalMoles();
    const double offset = concentrationTerm();
    eq.G = reducedGibbs() * eq.RT;
    if (eq.processType != Equilibrium::PS && eq.processType != Equilibrium::VS) {
        double sum = 0.0;
        for (unsigned int j = 0; j < state.size(); ++j) {
            const double mixing = j < state.gasSize() ? state.lnN[j] + offset : 0.0;
            sum += state.n[j] * (state.S[j] - mixing);
        }
        eq.S = gasConstant * sum;
    }
    const auto energy = [&](double (Product::*function)() const) {
        double sum = 0.0;
        for (unsigned int j = 0; j < state.size(); ++j)
            sum += state.n[j] * (mixture.product(j)->*function)();
        return sum;
    };
    if (eq.processType != Equilibrium::PH) eq.H = energy(&Product::H0);
    if (eq.processType != Equilibrium::VU) eq.U = energy(&Product::U0);

    const double Mm = mixture.resultingMm();
    for (double* molar : {&eq.H, &eq.S, &eq.U, &eq.G}) *molar /= total;
    eq.Hspec = eq.H / Mm;
    eq.Sspec = eq.S / Mm;
    eq.Uspec = eq.U / Mm;
    eq.Gspec = eq.G / Mm;
}

} // namespace reaction::detail
