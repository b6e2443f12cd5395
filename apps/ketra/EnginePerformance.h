#pragma once

#include <optional>
#include <vector>

namespace performance {
class TheoreticalPerformance;
}
namespace performance::equilibrium {
class NozzleSectionConditions;
}

namespace host {

/// Specific impulse, m/s, and thrust coefficient.
struct Impulse {
    double Is;
    double Cf;
};

/// Those of one section at an ambient pressure.
struct AmbientImpulse {
    double pressure; ///< Pa
    Impulse impulse;
};

/// What the nozzle delivers at an ambient pressure: up to the section where the flow leaves the
/// wall, if it does so there, else up to the exit.
struct AmbientPerformance {
    double pressure; ///< Pa
    bool separated;
    std::optional<Impulse> impulse; ///< none if the place of the separation was not found,
                                    ///< or the pressure keeps the gas in the chamber
};

/// What one section delivers if the nozzle ends there.
struct SectionPerformance {
    Impulse vacuum;
    Impulse optimum; ///< at an ambient pressure equal to the section's
    std::vector<AmbientImpulse> ambient;
};

/// Factors between the ideal engine and a real one, 1 without a loss.
struct Corrections {
    double reaction;
    double divergence;
    double friction;
    double multiphase;
    double nozzle;
    double overall;
};

/// Whether the document has the composition freeze somewhere.
bool isFrozen(const performance::TheoreticalPerformance& performance);

/// The ambient pressures of the document, Pa: the fixed one, or both ends of the range.
std::vector<double> ambientPressuresOf(const performance::TheoreticalPerformance& performance);

/// \returns nothing for a section before the throat or at it
std::optional<SectionPerformance>
performanceOf(performance::TheoreticalPerformance& performance,
              const performance::equilibrium::NozzleSectionConditions& section);

/// What the nozzle delivers at the ambient pressures of the document.
std::vector<AmbientPerformance>
ambientPerformanceOf(performance::TheoreticalPerformance& performance);

/// Whether the document wants delivered values in the report.
bool wantsCorrections(const performance::TheoreticalPerformance& performance);

/// \returns nothing where there is no supersonic exit, or no estimate
std::optional<Corrections> correctionsOf(performance::TheoreticalPerformance& performance);

/// An ideal impulse with its losses.
Impulse delivered(const Impulse& ideal, const Corrections& corrections);

} // namespace host
