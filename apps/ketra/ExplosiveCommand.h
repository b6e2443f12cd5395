#pragma once

#include "ExitCode.h"
#include "ExplosiveSample.h"
#include "Session.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

/// What the user asks of `ketra explosive`.
struct ExplosiveOptions {
    SampleOptions sample;
    SessionOptions session;
    double density = 0.0;                  ///< loading density, kg/m^3
    std::optional<double> temperature;     ///< K; of the products, or of the argon
    std::string method = "exact";          ///< or "inert-diluent"
    std::vector<std::string> replacements; ///< "A=B": B stands for the product A
    std::string json; ///< file for the results, "-" for standard output; empty: none
};

/// Computes a heat of explosion and prints it with the products. \throws Failure
ExitCode explode(const ExplosiveOptions& options);

} // namespace host
