#pragma once

namespace thermo {

/// Universal gas constant, J/(mol K): CODATA 2002. The only value in the library.
inline constexpr double gasConstant = 8.314472;
/// Standard pressure, Pa: the physical atmosphere.
inline constexpr double standardPressure = 101325.0;
/// Pressure of the standard state in the equilibrium conditions and of condensed components, Pa.
inline constexpr double referencePressure = 100000.0;
/// Temperature of heats of formation, K.
inline constexpr double referenceTemperature = 298.15;

} // namespace thermo
