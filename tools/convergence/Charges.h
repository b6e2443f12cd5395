#pragma once

#include <support/EngineCase.h>

#include <vector>

namespace convergence {

/// A propellant of two streams.
struct Charge {
    const char* name;
    ketra_test::Stream oxidizer, fuel;
};

/// Propellants of today and of the recent past.
const std::vector<Charge>& ordinaryCharges();
/// Light metals, boron, silicon, fluorine.
const std::vector<Charge>& exoticCharges();

} // namespace convergence
