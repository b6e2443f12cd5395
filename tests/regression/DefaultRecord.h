#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What the library makes of a case with all defaults, in a form that keeps every bit.

namespace ketra_test {

/// The results of one case. A failed engine keeps the stations that were solved before.
struct DefaultRecord {
    std::string outcome;        // "solved", or the stage that failed and the code
    std::vector<double> values; // of station after station
    std::uint64_t products = 0; // digest of the names and amounts of all stations
};

/// Of an engine: T, p, rho of the injection plane; the same and the flow velocity of the chamber
/// end of a finite area and of the throat; T, p, rho, velocity, vacuum impulse and impulse of the
/// exit and of a section of separation. Those of the throttled engine follow.
DefaultRecord recordEngine(std::size_t i);
/// Of an equilibrium: T, moles of gas, H, S, U, G; of the state that it is posed from and its own.
DefaultRecord recordEquilibrium(std::size_t i);

/// A digest of the mathematical functions of the platform over many arguments. Where it is another
/// one, the last bits of a result may be others.
std::uint64_t mathematicsFingerprint();

/// One line of the file of records, and back. \throws std::runtime_error
std::string lineOf(const DefaultRecord& record);
DefaultRecord recordOf(const std::string& line);

/// The file: the fingerprint, then a line for each engine and each equilibrium.
struct DefaultRecords {
    std::uint64_t fingerprint = 0;
    std::vector<DefaultRecord> engines, equilibria;
};
/// \throws std::runtime_error
DefaultRecords readDefaultRecords(const std::string& path);

} // namespace ketra_test
