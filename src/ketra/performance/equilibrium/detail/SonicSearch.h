#pragma once

namespace performance::equilibrium::detail {

// The search for a sonic section, of the core and of the boundary layer.

inline constexpr int sonicPasses = 100;
inline constexpr double sonicTolerance = 1e-5; // of the Mach number, times the relative tolerance
inline constexpr unsigned int noThroat = 10;   // code of thermo::Exception

/// Mach 1 lies between the two.
inline bool bracketSonic(double M, double other)
{
    return (M > 1.0 && other < 1.0) || (M < 1.0 && other > 1.0);
}

} // namespace performance::equilibrium::detail
