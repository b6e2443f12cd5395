#pragma once

#include "Findings.h"

namespace thermo {
class Species;
}

namespace host {

/// Whether the data of a species fit each other: molar mass and formula, heat of formation and
/// H(298.15), and the functions on both sides of a temperature where two intervals meet.
void lintData(const thermo::Species& species, const Place& place, Findings& findings);

} // namespace host
