#include <ketra/verification/criteria/EquilibriumCertificate.h>

#include <ketra/thermo/Constants.h>
#include <ketra/verification/criteria/EquilibriumLimits.h>
#include <ketra/verification/criteria/EquilibriumState.h>
#include <ketra/verification/criteria/detail/ElementPotentials.h>
#include <ketra/verification/criteria/detail/traces.h>
#include <ketra/verification/criteria/detail/withNumber.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace verification {

namespace {

using Candidate = EquilibriumState::Candidate;
using Kind = EquilibriumState::Kind;
using Target = EquilibriumState::Target;
using detail::traceFraction;
using detail::withNumber;

constexpr double negligible = 1e-9;    // change of a logarithm that is that of its number
constexpr double lnNegligible = -30.0; // of a mole fraction: 1e-13
constexpr double none = -std::numeric_limits<double>::infinity();

/// The largest value of a kind, and the species that has it. What is not a number counts as
/// largest.
struct Largest {
    double value;
    std::string_view species{};

    void take(double candidate, std::string_view name)
    {
        if (candidate <= value || std::isnan(value)) return;
        value = candidate;
        species = name;
    }
};

/// Works through a state.
class Judgement
{
public:
    explicit Judgement(const EquilibriumState& source) : state(source) {}

    EquilibriumCertificate run();

private:
    bool isUsable();
    void judgeAmounts();
    void judgeElements();
    void judgePotentials();
    void judgePresent(const Candidate& c, double miss);
    void judgeAbsent(const Candidate& c, double force, double& gasSum);
    void judgeTarget();
    double potentialOfMixing(const Candidate& c) const;
    double misfitOfBlend() const;
    void decide();
    void grade(Grade grade, std::string_view species, std::string reason);

    const EquilibriumState& state;
    EquilibriumCertificate result;
    double total = 0.0;      // mol
    double gas = 0.0;        // mol
    double lnP = 0.0;        // ln(p / 1 bar)
    double lnPerMole = 0.0;  // of a gas, for its amount
    std::vector<double> lnX; // of each candidate: ln of the partial pressure in bar, 0 if condensed
    Largest optimality{0.0};
    Largest fraction{0.0};
    Largest driving{none};
    Largest missing{0.0};
    Largest hidden{none};
    std::string_view blend;
};

EquilibriumCertificate Judgement::run()
{
    result.hiddenForce = result.drivingForce = none;
    if (!isUsable()) return std::move(result);
    judgeElements();
    judgePotentials();
    judgeTarget();
    decide();
    return std::move(result);
}

/// Whether there is a state at all whose residuals mean anything.
bool Judgement::isUsable()
{
    if (!state.solved) {
        grade(Grade::F, {}, "no solution of the posed problem stands");
        return false;
    }
    judgeAmounts();
    if (!result.amountsValid || !(total > 0.0)) {
        grade(Grade::F, result.worstSpecies, "an amount is negative or not a number");
        return false;
    }
    if (!result.temperatureInRange) {
        grade(Grade::F, result.worstSpecies, "the temperature lies outside the range of a product");
        return false;
    }
    lnP = std::log((state.V > 0.0 ? gas * thermo::gasConstant * state.T / state.V : state.p) /
                   thermo::referencePressure);
    lnPerMole = lnP - std::log(gas); // the smallest amounts over another number would be 0
    return true;
}

void Judgement::judgeAmounts()
{
    result.amountsValid = true;
    result.temperatureInRange = std::isfinite(state.T) && state.T > 0.0;
    for (const Candidate& c : state.candidates) {
        if (!c.present) continue;
        if (!(c.amount >= 0.0) || !std::isfinite(c.amount)) {
            result.amountsValid = false;
            result.worstSpecies = c.name;
        }
        if (!(c.minT <= state.T && state.T <= c.maxT)) {
            result.temperatureInRange = false;
            if (result.amountsValid) result.worstSpecies = c.name;
        }
        total += c.amount;
        if (c.isGas()) gas += c.amount;
        if (c.kind == Kind::BLEND) {
            result.blended = true;
            blend = c.name;
        }
    }
}

void Judgement::judgeElements()
{
    const std::size_t m = state.elements.size();
    std::vector<double> held(m, 0.0);
    double charge = 0.0;
    for (std::size_t j = 0; j < state.candidates.size(); ++j) {
        const Candidate& c = state.candidates[j];
        if (!c.present) continue;
        charge += c.charge * c.amount;
        const double* a = state.row(j);
        for (std::size_t i = 0; i < m; ++i) held[i] += a[i] * c.amount;
    }
    double largest = 0.0;
    double miss = 0.0;
    for (std::size_t i = 0; i < m; ++i) {
        largest = std::max(largest, std::abs(state.elements[i]));
        miss = std::max(miss, std::abs(held[i] - state.elements[i]));
    }
    result.elementResidual = miss / largest;
    result.charge = std::abs(charge) / total;
    result.gasResidual = std::abs(state.Ng - gas) / total;
}

/// ln(x p / 1 bar) of a gas, which is its potential less the standard one; 0 of a condensed phase.
double Judgement::potentialOfMixing(const Candidate& c) const
{
    return c.isGas() && c.amount > 0.0 ? std::log(c.amount) + lnPerMole : 0.0;
}

void Judgement::judgePotentials()
{
    const auto& candidates = state.candidates;
    lnX.resize(candidates.size());
    for (std::size_t j = 0; j < candidates.size(); ++j)
        lnX[j] = candidates[j].present ? potentialOfMixing(candidates[j]) : 0.0;
    detail::ElementPotentials potentials(state, lnX, total);
    potentials.balanceCharges(lnP);

    double gasSum = 0.0;
    for (std::size_t j = 0; j < candidates.size(); ++j) {
        const Candidate& c = candidates[j];
        const bool inRange = c.minT <= state.T && state.T <= c.maxT;
        if (!inRange || !potentials.determines(j)) continue;
        const double force = potentials.of(j) - c.G();
        if (c.present && c.amount > traceFraction * total)
            judgePresent(c, lnX[j] - force);
        else
            judgeAbsent(c, force, gasSum);
    }
    // Without a gas it is the gas phase as a whole that may want in.
    if (gas <= traceFraction * total && gasSum > 0.0) driving.take(std::log(gasSum), "gas");

    result.optimality = optimality.value;
    result.fractionResidual = fraction.value;
    result.drivingForce = driving.value;
    result.missingFraction = missing.value;
    result.hiddenForce = hidden.value;
}

/// \param miss  chemical potential less that of the elements, over R T
void Judgement::judgePresent(const Candidate& c, double miss)
{
    optimality.take(std::abs(miss), c.name);
    if (!c.isGas()) return;
    const double change =
        std::abs(miss) < negligible ? std::abs(miss) : std::abs(std::expm1(-miss));
    fraction.take(c.amount / total * change, c.name);
}

/// \param force   potential of the elements less the standard potential, over R T
/// \param gasSum  of the fractions of a gas phase that is not there
void Judgement::judgeAbsent(const Candidate& c, double force, double& gasSum)
{
    switch (c.kind) {
    case Kind::GAS: {
        if (force - lnP < lnNegligible) break;
        const double x = std::exp(std::min(force - lnP, 700.0));
        if (gas > traceFraction * total)
            missing.take((x * gas - c.amount) / total, c.name);
        else
            gasSum += x;
        break;
    }
    case Kind::CONDENSED:
    case Kind::BLEND:
        driving.take(force, c.name);
        break;
    case Kind::HIDDEN_PHASE:
        hidden.take(force, c.name);
        break;
    }
}

// Held against the heat capacity at constant composition, which is below that in equilibrium, so
// that the error of the temperature is not understated.
void Judgement::judgeTarget()
{
    if (state.target == Target::TEMPERATURE) {
        result.targetResidual = std::abs(state.T - state.wanted) / state.T;
        return;
    }
    double sum = 0.0;
    double capacity = 0.0;
    const bool energy = state.target == Target::ENERGY;
    const double expansion = state.V > 0.0 ? 1.0 : 0.0; // Cp - Cv of a gas, where the volume stays
    for (std::size_t j = 0; j < state.candidates.size(); ++j) {
        const Candidate& c = state.candidates[j];
        if (!c.present) continue;
        if (state.target == Target::ENTROPY)
            sum += c.amount * (c.S - lnX[j]);
        else
            sum += c.amount * (energy && c.isGas() ? c.H - 1.0 : c.H);
        capacity += c.amount * (c.isGas() ? c.Cp - expansion : c.Cp);
    }
    const double unit =
        state.target == Target::ENTROPY ? thermo::gasConstant : thermo::gasConstant * state.T;
    result.targetResidual = std::abs(sum - state.wanted / unit) / capacity;
}

/// How far a blend is from the real phase at this temperature, in either direction: only at the
/// change itself is it as good as that. Where none is present the phase that it hides may want in.
double Judgement::misfitOfBlend() const
{
    if (!result.blended) return std::max(result.hiddenForce, 0.0);
    // Where the data of both phases end in between, nothing is known but that it is a blend.
    return std::isfinite(result.hiddenForce) ? std::abs(result.hiddenForce) : 1.0;
}

void Judgement::decide()
{
    struct Check {
        double value;
        double EquilibriumLimits::*limit;
        const char* what;
        std::string_view species;
    };
    using Limits = EquilibriumLimits;
    const std::array<Check, 9> checks{{
        {result.elementResidual, &Limits::elementResidual, "elements are off by #", {}},
        {result.charge, &Limits::charge, "net charge of # of all moles", {}},
        {result.gasResidual, &Limits::gasResidual, "moles of gas are off by #", {}},
        {result.targetResidual,
         &Limits::targetResidual,
         "the target is missed by # of the temperature",
         {}},
        {result.drivingForce, &Limits::drivingForce, "a phase wants in, driving force # RT",
         driving.species},
        {result.missingFraction, &Limits::missingFraction, "a mole fraction of # is missing",
         missing.species},
        {result.fractionResidual, &Limits::fractionResidual, "a mole fraction is off by #",
         fraction.species},
        {result.optimality, &Limits::optimality, "a chemical potential is off by # RT",
         optimality.species},
        {misfitOfBlend(), &Limits::hiddenForce,
         result.blended ? "a blend stands for a phase change, off by # RT"
                        : "a phase wants in, #, that its blend hides",
         result.blended ? blend : hidden.species},
    }};
    const Limits forA = Limits::of(Grade::A, state.tolerance);
    const Limits forB = Limits::of(Grade::B, state.tolerance);
    result.grade = Grade::A;
    double worst = 0.0;
    for (const Check& check : checks) {
        const Grade own = check.value <= forA.*check.limit   ? Grade::A
                          : check.value <= forB.*check.limit ? Grade::B
                                                             : Grade::F;
        const double excess = check.value / forB.*check.limit;
        if (own == Grade::A || own < result.grade || (own == result.grade && excess <= worst))
            continue;
        worst = excess;
        grade(own, check.species, withNumber(check.what, check.value));
    }
}

void Judgement::grade(Grade grade, std::string_view species, std::string reason)
{
    result.grade = grade;
    if (result.worstSpecies != species) result.worstSpecies = species;
    result.reason = std::move(reason);
}

} // namespace

EquilibriumCertificate judge(const EquilibriumState& state) { return Judgement(state).run(); }

} // namespace verification
