#include <ketra/reaction/detail/SolvedState.h>

#include <ketra/reaction/Equilibrium.h>

#include <algorithm>
#include <cmath>

namespace reaction::detail {

namespace {

constexpr double traceFraction = 1e-12; // that a gas without an amount begins with
constexpr double leastGas = 1e-6;       // mol, where the state has no gas

} // namespace

SolvedState::SolvedState(const Equilibrium& problem) : T(problem.T), Ng(problem.Ng)
{
    const ReactingMixture& mixture = *problem.mixture;
    entries.reserve(mixture.size());
    for (unsigned int j = 0; j < mixture.size(); ++j) {
        const Product& product = *mixture.product(j);
        entries.push_back({product.getType(), j >= mixture.gasSize(), product.n()});
    }
}

// Both lists are in the order of the present list, so that a search from the last find on is short.
void SolvedState::applyTo(Equilibrium& problem) const
{
    ReactingMixture& mixture = *problem.mixture;
    mixture.reset();
    const auto amountFrom = [&](auto& from, const Product& product) {
        const auto found = std::find_if(from, entries.end(), [&](const Entry& entry) {
            return entry.type == product.getType() && entry.condensed == product.isCondensed();
        });
        if (found == entries.end()) return 0.0;
        from = found + 1;
        return found->n;
    };
    const double floor = std::max(Ng, leastGas) * traceFraction;
    auto from = entries.begin();
    double gas = 0.0;
    for (unsigned int j = 0; j < mixture.size(); ++j) {
        const double known = amountFrom(from, *mixture.product(j));
        const double n = known > 0.0 ? known : floor;
        mixture.product(j)->setN(n);
        gas += n;
    }
    problem.Ng = gas;
    problem.lnNg = std::log(gas);
    if (!problem.isMultiphase()) return;
    bool added = false;
    for (Product* candidate : *mixture.products) {
        if (!candidate->isCondensed()) continue;
        auto first = entries.begin();
        const double n = amountFrom(first, *candidate);
        if (!(n > 0.0)) continue;
        candidate->setN(n, 0.0);
        mixture.reacting->push_back(candidate);
        added = true;
    }
    if (added) mixture.sortProducts(true);
}

} // namespace reaction::detail
