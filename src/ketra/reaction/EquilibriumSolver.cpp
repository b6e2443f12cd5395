// The loop around the iteration: which condensed phases take part, and whether the target is met.

#include <ketra/reaction/Equilibrium.h>

#include <ketra/math/matrix/Exception.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/reaction/detail/Iteration.h>
#include <ketra/reaction/detail/Persistence.h>
#include <ketra/reaction/detail/SolvedState.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <numbers>

using math::matrix::ColumnVector;
using util::Log;

namespace reaction {

namespace {

constexpr double coldStart = 373.0;  // K, below which condensed phases are always looked for
constexpr double startMoles = 0.7;   // of gas, per mole of initial mixture
constexpr double energyShare = 0.01; // by which a target may be missed before a further run
constexpr unsigned int singular = 3; // code of math::matrix::Exception

std::vector<std::string> condensedNames(const ReactingMixture& mixture)
{
    std::vector<std::string> names;
    for (unsigned int c = mixture.gasSize(); c < mixture.size(); ++c)
        names.push_back(mixture.product(c)->getName());
    return names;
}

/// Stops a calculation that has come to rest or has run long enough although a phase test would go
/// on changing the list.
class Patience
{
public:
    explicit Patience(double relativeTolerance)
        : relative(std::min(0.0001 * relativeTolerance, 0.01)),
          absolute(std::min(0.001 * std::log(std::max(relativeTolerance, std::numbers::e)), 0.01))
    {
    }

    /// \param count   runs so far
    /// \param startT  temperature before the last run, K
    bool isOver(unsigned int count, double startT, double T)
    {
        if (count > 30 && count % 2 == 0) {
            if (std::abs(lastT - T) / T < relative) {
                if (calm > 5) return true;
                ++calm;
            } else {
                calm = 0;
            }
            lastT = T;
        }
        return (count > 50 && std::abs(startT - T) < absolute) || count > 200;
    }

private:
    double relative;
    double absolute; // K
    double lastT = 0.0;
    unsigned int calm = 0;
};

} // namespace

void Equilibrium::reset(bool expectCondensed)
{
    solved = false;
    mixture->reset();
    if (isMultiphase() && (expectCondensed || T < coldStart))
        mixture->checkNewCondesedPhases(T, nullptr, 1);
    Ng = startMoles;
    lnNg = std::log(Ng);
    for (unsigned int j = 0; j < mixture->size(); ++j)
        mixture->product(j)->setN(j < mixture->gasSize() ? Ng / mixture->gasSize() : 0.0);
    storeTemperature(T);
}

void Equilibrium::solve(bool expectCondensed)
{
    solved = false;
    posedTarget = target();
    attempts.clear();
    if (persistent || warmStart) {
        detail::Persistence(*this).solve(expectCondensed);
    } else {
        reset(expectCondensed);
        iterate();
    }
    solved = true;
}

void Equilibrium::iterate()
{
    const double savedH = H;
    const double savedS = S;
    const double savedU = U;
    std::vector<std::string> knownCondensed;
    Patience patience(relativeTolerance);
    mixture->checkPresentCondesedPhases(T, true, false, 0.0);
    for (unsigned int count = 0;; ++count) {
        if (processType == PH)
            H = savedH;
        else if (processType == PS || processType == VS)
            S = savedS;
        else
            U = savedU;

        const double startT = T;
        std::unique_ptr<ColumnVector> x;
        try {
            x.reset(_solve());
        } catch (const math::matrix::Exception& e) {
            if (e.getType() == singular) reportSingularity(knownCondensed);
            throw thermo::Exception(8);
        } catch (const std::exception&) {
            throw thermo::Exception(8);
        }
        knownCondensed = condensedNames(*mixture);
        if (patience.isOver(count, startT, T)) return;
        try {
            if (phasesAndEnergySettled(x.get(), savedH, savedS, savedU)) return;
        } catch (const thermo::Exception&) {
            throw;
        } catch (const std::exception&) {
            return;
        }
    }
}

// Phases enter one at a time, by the multipliers; then present ones leave; then the target, which
// is per mole of initial mixture, is held against the result, which is per mole of products.
bool Equilibrium::phasesAndEnergySettled(ColumnVector* x, double savedH, double savedS,
                                         double savedU)
{
    if (mixture->checkNewCondesedPhases(T, x, isConstantPressure() ? 1 : 0)) return false;
    if (mixture->checkPresentCondesedPhases(T, true, false, 0.0)) return false;
    const auto missed = [&](double result, double wanted) {
        return std::abs(1.0 - result * mixture->getN() / wanted) > energyShare;
    };
    switch (processType) {
    case PH:
        return !missed(H, savedH);
    case PS:
    case VS:
        return !missed(S, savedS);
    case VU:
        return !missed(U, savedU);
    case PT:
    case VT:
        break;
    }
    return true;
}

// A condensed species that was not there in the last run has made the matrix singular: its name is
// the advice to the user.
void Equilibrium::reportSingularity(const std::vector<std::string>& knownCondensed) const
{
    report("Singularity!%s", util::eol);
    for (const std::string& name : condensedNames(*mixture)) {
        if (std::find(knownCondensed.begin(), knownCondensed.end(), name) != knownCondensed.end())
            continue;
        report("List of condensed species so far:%s", util::eol);
        for (const std::string& known : knownCondensed) report("\t%s%s", known.c_str(), util::eol);
        report("New species added: %s%s", name.c_str(), util::eol);
        report("Consider to add %s into the list of omitted products%s", name.c_str(), util::eol);
        const thermo::Species* species = thermo::Database::getInstance()->find(name);
        throw thermo::Exception(18, (species ? species->getName() : name).c_str());
    }
}

void Equilibrium::report(const char* format, ...) const
{
    std::va_list arguments;
    va_start(arguments, format);
    if (trial)
        Log::vinfof("THERMO", format, arguments);
    else
        Log::verrorf("THERMO", format, arguments);
    va_end(arguments);
}

ColumnVector* Equilibrium::_solve() { return detail::Iteration(*this).run().release(); }

ColumnVector* Equilibrium::solveSystemP() { return detail::Iteration(*this).solveOnce().release(); }

ColumnVector* Equilibrium::solveSystemV() { return detail::Iteration(*this).solveOnce().release(); }

void Equilibrium::excludeTransitPhase()
{
    std::vector<std::string> included;
    std::vector<std::string> omitted;
    const unsigned int ng = mixture->gasSize();
    const unsigned int condensed = mixture->size() - ng;
    for (unsigned int i = 0; omitted.empty() && i < condensed; ++i) {
        Product* phase = mixture->product(ng + i);
        unsigned int start = i + 1;
        if (auto* transition = dynamic_cast<TransitionProduct*>(phase)) {
            if (transition->publishPhase2()) {
                transition->publishPhase1();
                start = i;
            }
        }
        for (unsigned int k = start; omitted.empty() && k < condensed; ++k) {
            Product* other = mixture->product(ng + k);
            if (auto* transition = dynamic_cast<TransitionProduct*>(other))
                transition->publishPhase2();
            if (*other == phase->getFormula()) omitted.push_back(other->getName());
        }
    }
    if (omitted.empty()) return;
    mixture->setSpecies(included, omitted);
    mixture->sortProducts(true);
}

} // namespace reaction
