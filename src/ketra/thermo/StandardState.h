#pragma once

#include <cmath>

namespace thermo {

/// What the standard-state functions of all species need of a temperature, worked out once.
struct TemperatureTerms {
    explicit TemperatureTerms(double temperature)
        : T(temperature), lnT(std::log(temperature)), inverseT(1.0 / temperature)
    {
    }

    double T;        // K
    double lnT;      // ln(T / 1 K)
    double inverseT; // 1/K
};

/// The four standard-state functions at one temperature, dimensionless.
struct StandardState {
    double Cp; // Cp/R
    double H;  // H/(R T)
    double S;  // S/R
    double G;  // G/(R T), by a closed form of its own and not as H - S
};

} // namespace thermo
