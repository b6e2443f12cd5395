#pragma once

namespace gasdynamics::detail {

// Steps of the central differences of the gas-dynamic functions. These are exact to the last bits,
// so the step may be near the cube root of the rounding error, where a difference is best.
inline constexpr double relativeStep = 1e-5;
inline constexpr double leastStep = 1e-6;

} // namespace gasdynamics::detail
