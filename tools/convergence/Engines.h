#pragma once

#include "Verdict.h"

#include <support/EngineCase.h>

#include <ketra/performance/TheoreticalPerformance.h>

namespace convergence {

/// Solves an engine from its chamber to its exit, throttled if it is, and judges all that was
/// solved. With \p optimum its mixture ratio is searched from 0.3 to 1.8 times stoichiometric
/// first. Messages are taken from the log of ketra_test::CauseLog.
Verdict solveEngine(const ketra_test::EngineCase& engine, Method method, bool optimum);

/// Where the exit of an engine lies, as far as this can be told without solving it: by the area
/// ratios at which the isentrope of its chamber reaches 300 and 200 K, each found at fixed
/// temperature.
ExitRange exitRange(const ketra_test::EngineCase& engine);
/// The same of an exit temperature, K.
ExitRange exitRange(double exitT);
const char* nameOf(ExitRange range);

/// Adds to a failure or a refusal in shifting equilibrium where the exit lies: a refusal with an
/// exit at 200 K or above is a failure. Other verdicts stay as they are.
Verdict withExitRange(const ketra_test::EngineCase& engine, Verdict verdict);

} // namespace convergence
