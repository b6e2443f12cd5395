#pragma once

#include "ExitCode.h"
#include "ExplosiveSample.h"
#include "Session.h"

#include <string>

namespace host {

/// What the user asks of `ketra bomb`.
struct BombOptions {
    SampleOptions sample;
    SessionOptions session;
    double density = 0.0; ///< loading density, kg/m^3
    bool english = false;
    std::string json; ///< file for the results, "-" for standard output; empty: none
};

/// Burns a charge in a closed vessel that holds its energy, and prints pressure, temperature and
/// products. \throws Failure
ExitCode burnInVessel(const BombOptions& options);

} // namespace host
