#pragma once

#include "Options.h"
#include "Tally.h"

#include <string>
#include <vector>

namespace convergence {

/// A family of states at given pressure and temperature that covers a field completely.
struct Grid {
    const char* name; // of its suite
    const char* what;
};

/// C-H-O with graphite over all compositions in steps of 1/200 of the atoms; argon, nitrogen and
/// hydrogen with ions; Fe-O, Al-O, B-O and Mg-O over temperature, pure metal, and with a half,
/// 0.99, 1.01 and 2 times the oxygen of the oxide; the oxides alone, which leave the gas hardly an
/// amount.
const std::vector<Grid>& grids();

/// Solves all states of grid \p name, or every how manieth \p options says.
Tally solveGrid(const std::string& name, const Options& options);

} // namespace convergence
