#include <ketra/reaction/detail/Persistence.h>

#include <ketra/reaction/detail/MainSpecies.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <memory>

using util::Log;
using verification::Grade;

namespace reaction::detail {

namespace {

constexpr double hotStart = 3600.0; // K, from which the iteration practically never fails
const char* const defaultStart = "from equal amounts";

} // namespace

Persistence::Persistence(Equilibrium& problem) : eq(problem), posed(scalars()) {}

Persistence::Scalars Persistence::scalars() const
{
    const ReactingMixture& mixture = *eq.mixture;
    return {eq.H,     eq.Hspec, eq.S,  eq.Sspec, eq.U,    eq.Uspec,     eq.G,
            eq.Gspec, eq.T,     eq.Ng, eq.lnNg,  eq.lnPv, mixture.maxB, mixture.balanceTolerance};
}

void Persistence::restore(const Scalars& values)
{
    eq.H = values.H;
    eq.Hspec = values.Hspec;
    eq.S = values.S;
    eq.Sspec = values.Sspec;
    eq.U = values.U;
    eq.Uspec = values.Uspec;
    eq.G = values.G;
    eq.Gspec = values.Gspec;
    eq.storeTemperature(values.T);
    eq.Ng = values.Ng;
    eq.lnNg = values.lnNg;
    eq.lnPv = values.lnPv;
    eq.mixture->maxB = values.maxB;
    eq.mixture->balanceTolerance = values.balanceTolerance;
}

void Persistence::solve(bool expectCondensed)
{
    bool done = eq.warmStart && eq.nearest &&
                attempt("from the nearest solution", [this] { fromState(*eq.nearest); });
    if (!done) {
        done = attempt(defaultStart, [this, expectCondensed] {
            eq.reset(expectCondensed);
            eq.iterate();
        });
        if (!done && eq.persistent) {
            solveFurther(expectCondensed);
            done = eq.solved;
        }
        tell();
    }
    if (!done && !kept.list.empty()) {
        takeKept();
        done = true;
    }
    if (!done && !eq.persistent) { // ends as without a warm start
        if (failure) std::rethrow_exception(failure);
        return;
    }
    if (!done) fail();
    eq.rememberSolution();
}

// In the order of their cost; the last one does not depend on a start. After a result of grade B
// only the first and the last may give a better one.
void Persistence::solveFurther(bool expectCondensed)
{
    const auto good = [this] { return !kept.list.empty(); };
    if (attempt("from 3600 K", [&] { fromHotState(expectCondensed); })) return;
    if (!good()) {
        if (isBeyondData()) return;
        if (attempt("from 3600 K with the hint reversed", [&] { fromHotState(!expectCondensed); }))
            return;
    }
    if (!good() && eq.nearest && !eq.warmStart && attempt("from the nearest solution", [this] {
            if (!eq.isFixedTemperature()) eq.setT(eq.nearest->T);
            fromState(*eq.nearest);
        }))
        return;
    if (!good() && attempt("main species first", [this] { fromMainSpecies(); })) return;
    attempt("over the element potentials",
            [this] { ElementPotentials(eq).solve(std::min(posed.T, hotStart)); });
}

// A result of grade B is kept and a better one looked for, unless it cannot be better: a blend of
// two phases never has grade A.
bool Persistence::attempt(const char* start, const std::function<void()>& run)
{
    pose();
    Equilibrium::Attempt record{start, false, Grade::F, posed.T};
    const bool byDefault = start == defaultStart;
    eq.solved = false;
    eq.trial = eq.persistent || !byDefault;
    try {
        run();
        record.finished = true;
    } catch (const std::exception&) {
        if (byDefault) failure = std::current_exception();
    }
    eq.trial = false;
    record.T = eq.T;
    eq.solved = record.finished;
    bool enough = false;
    if (record.finished) {
        const verification::EquilibriumCertificate certificate = eq.certificate();
        record.grade = certificate.grade;
        enough = record.grade == Grade::A || (record.grade == Grade::B && certificate.blended);
        if (record.grade == Grade::B && !enough && kept.list.empty()) keep();
    }
    eq.solved = enough;
    eq.attempts.push_back(std::move(record));
    return enough;
}

void Persistence::fromState(const SolvedState& state)
{
    state.applyTo(eq);
    eq.iterate();
}

// At given temperature the composition at the high temperature is the start.
void Persistence::fromHotState(bool expectCondensed)
{
    eq.setT(hotStart);
    eq.reset(expectCondensed);
    eq.iterate();
    if (!eq.isFixedTemperature()) return;
    const SolvedState hot(eq);
    pose();
    fromState(hot);
}

void Persistence::fromMainSpecies()
{
    if (!eq.isFixedTemperature()) eq.setT(hotStart);
    eq.reset(false);
    ReactingMixture& mixture = *eq.mixture;
    *mixture.reacting = mainGases(mixture, eq.T);
    mixture.sortProducts(true);
    for (unsigned int j = 0; j < mixture.size(); ++j)
        mixture.product(j)->setN(eq.Ng / mixture.size());
    mixture.checkPresentCondesedPhases(eq.T, true, false, 0.0);
    const std::unique_ptr<math::matrix::ColumnVector> x(eq._solve());
    const SolvedState answer(eq);
    pose();
    if (!eq.isFixedTemperature()) eq.setT(answer.T);
    fromState(answer);
}

void Persistence::keep()
{
    const ReactingMixture& mixture = *eq.mixture;
    kept.scalars = scalars();
    kept.list = *mixture.reacting;
    for (const Product* product : kept.list) {
        kept.n.push_back(product->n());
        kept.lnN.push_back(product->ln_n());
    }
}

void Persistence::takeKept()
{
    restore(kept.scalars);
    *eq.mixture->reacting = kept.list;
    eq.mixture->sortProducts(true);
    for (std::size_t j = 0; j < kept.list.size(); ++j) {
        Product& product = *kept.list[j];
        product.setN(kept.n[j], kept.lnN[j]);
        product.setT(eq.T);
    }
    eq.solved = true;
}

void Persistence::tell() const
{
    if (eq.attempts.size() < 2) return;
    unsigned int number = 0;
    for (const Equilibrium::Attempt& attempt : eq.attempts) {
        ++number;
        if (attempt.finished)
            Log::infof("THERMO", "Equilibrium, attempt %u, %s: grade %c at %.3f K%s", number,
                       attempt.start.c_str(), verification::letter(attempt.grade), attempt.T,
                       util::eol);
        else
            Log::infof("THERMO", "Equilibrium, attempt %u, %s: failed at %.3f K%s", number,
                       attempt.start.c_str(), attempt.T, util::eol);
    }
}

bool Persistence::isBeyondData()
{
    pose();
    side = ElementPotentials(eq).sideOfTarget(endT);
    pose();
    return side == ElementPotentials::Side::BELOW || side == ElementPotentials::Side::ABOVE;
}

void Persistence::fail()
{
    pose();
    using Side = ElementPotentials::Side;
    const char* quantity = eq.processType == Equilibrium::PH   ? "enthalpy"
                           : eq.processType == Equilibrium::VU ? "internal energy"
                                                               : "entropy";
    if (side == Side::BELOW)
        Log::errorf("THERMO",
                    "Could not solve the equilibrium: the prescribed %s lies below that of the "
                    "products at %.2f K, where their data begin.%s",
                    quantity, endT, util::eol);
    else if (side == Side::ABOVE)
        Log::errorf("THERMO",
                    "Could not solve the equilibrium: the prescribed %s lies above that of the "
                    "products at %.2f K, where their data end.%s",
                    quantity, endT, util::eol);
    else
        Log::errorf("THERMO", "Could not solve the equilibrium: none of %u attempts succeeded.%s",
                    static_cast<unsigned int>(eq.attempts.size()), util::eol);
    const bool beyond = side == Side::BELOW || side == Side::ABOVE;
    if (failure && !beyond) std::rethrow_exception(failure);
    throw thermo::Exception(8);
}

} // namespace reaction::detail
