#pragma once

#include "Verdict.h"

#include <string>

namespace performance {
class TheoreticalPerformance;
} // namespace performance
namespace reaction {
class Equilibrium;
} // namespace reaction

namespace convergence {

/// Judges a solved engine: chamber, throat, exit and the section of separation.
Verdict certify(performance::TheoreticalPerformance& engine);
/// Judges a solved equilibrium.
Verdict certify(const reaction::Equilibrium& state);

/// Whether an error message says that a state lies outside the range of the data.
bool saysOutsideData(const std::string& message);

} // namespace convergence
