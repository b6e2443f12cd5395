#pragma once

#include "Engines.h"
#include "Options.h"
#include "Tally.h"

#include <array>
#include <cstddef>
#include <vector>

namespace convergence {

/// The sweep of random engines far beyond what is built: mixture ratio 0.2 to 30 times the
/// stoichiometric one, chamber pressure 0.05 to 50 MPa, area ratio 1.2 to 400, in shifting
/// equilibrium.
struct Sweep {
    Tally all;
    std::array<Tally, 4> byExit;     // by ExitRange
    std::vector<Tally> byPropellant; // as ketra_test::enginePropellants()

    const Tally& of(ExitRange range) const { return byExit[static_cast<std::size_t>(range)]; }
    void print() const;
};

/// Solves the engines. The exit range of a case that is not certified is found by `exitRange`.
Sweep sweepEngines(std::size_t count, const Options& options);

/// Prints the tables of the laws of nozzle flow over the same engines, shifting and frozen, with
/// two further sections each.
void printLaws(std::size_t count, const Options& options);

} // namespace convergence
