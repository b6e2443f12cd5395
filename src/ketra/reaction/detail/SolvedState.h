#pragma once

#include <vector>

namespace reaction {

class Equilibrium;

namespace detail {

/// Composition and temperature of a solved problem: where another one may begin.
struct SolvedState {
    struct Entry {
        int type; // of the species, in the order of the present list
        bool condensed;
        double n; // mol per mole of initial mixture
    };

    /// Takes up the state in which \p problem stands.
    explicit SolvedState(const Equilibrium& problem);
    /// Makes it the start of \p problem, whose temperature stays: its condensed phases, and all
    /// gases that can form, those without an amount as traces.
    void applyTo(Equilibrium& problem) const;

    double T;  // K
    double Ng; // mol of gas
    std::vector<Entry> entries;
};

} // namespace detail
} // namespace reaction
