#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace performance::equilibrium {
class Chamber;
class NozzleSectionConditions;
} // namespace performance::equilibrium

namespace reaction {
class Equilibrium;
}

namespace thermo {
class Mixture;
}

namespace ketra_bench {

/// What a work repeats.
using Body = std::function<void()>;

/// One piece of work to be timed or counted.
struct Work {
    std::string name;
    /// Builds what the work needs, does it once and checks the answer.
    /// \throws std::runtime_error if the answer is wrong
    std::function<Body()> prepare;
};

std::vector<Work> databaseWorks();
std::vector<Work> mixtureWorks();
std::vector<Work> equilibriumWorks();
std::vector<Work> engineWorks();
std::vector<Work> runWorks();
/// All of them, in this order.
std::vector<Work> allWorks();

/// \throws std::runtime_error naming \p what if \p value is not within a relative \p tolerance of
///         \p expected
void requireClose(const std::string& what, double value, double expected, double tolerance);

/// \throws std::runtime_error naming \p what if the certificate of the solution is F
void requireCertified(const std::string& what, const reaction::Equilibrium& solution);
/// The same of a chamber with one section, in equilibrium or frozen.
void requireCertified(const std::string& what, const performance::equilibrium::Chamber& chamber,
                      const performance::equilibrium::NozzleSectionConditions& section);

/// Loads the shipped species into the database of the process, once.
void useShippedSpecies();

/// A propellant as it enters a chamber, and what is known of its flame.
struct Charge {
    std::string name;
    std::function<std::unique_ptr<thermo::Mixture>()> mixture;
    double p; // chamber pressure, Pa
    double T; // adiabatic flame temperature there, K
};

/// The propellants that all works share.
const std::vector<Charge>& charges();

} // namespace ketra_bench
