#pragma once

#include <string>

namespace thermo {
class Species;
}

namespace host {

/// "gas", "liquid" or "solid".
const char* phaseOf(const thermo::Species& species);

/// The formula in the usual spelling, as "Al2O3" or "Na+"; "-" for a species without elements.
std::string formulaOf(const thermo::Species& species);

/// In elementary charges: +1 of a cation. (A species itself counts its electrons.)
double chargeOf(const thermo::Species& species);

/// A record with one assigned enthalpy at one temperature, and no curve.
bool isFixed(const thermo::Species& species);

} // namespace host
