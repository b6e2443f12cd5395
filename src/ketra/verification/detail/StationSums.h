#pragma once

#include <ketra/verification/criteria/EquilibriumState.h>

namespace performance::frozen {
class NozzleSectionConditions;
} // namespace performance::frozen

namespace verification::detail {

/// What the laws of nozzle flow need of a station, summed from the amounts of its products.
struct StationSums {
    double T = 0.0;          // K
    double p = 0.0;          // Pa
    double h = 0.0;          // J/kg
    double s = 0.0;          // J/(kg K)
    double cp = 0.0;         // J/(kg K), at constant composition
    double rho = 0.0;        // kg/m^3; condensed products take no room
    bool beyondData = false; // a condensed product is outside the range of its data

    /// Of a state in equilibrium at given pressure.
    static StationSums of(const EquilibriumState& state);
    /// Of a frozen composition.
    static StationSums of(const performance::frozen::NozzleSectionConditions& section);
};

} // namespace verification::detail
