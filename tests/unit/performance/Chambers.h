#pragma once

#include <support/EngineLaws.h>
#include <support/MadeUpSpecies.h>
#include <support/Reactants.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <cmath>
#include <memory>
#include <vector>

// Chambers and gases that the tests of chamber, nozzle tables and boundary layer share.

namespace ketra_test {

using performance::equilibrium::Chamber;

constexpr double chamberPressure = 5e6; // Pa

/// A chamber whose inner operations a test may reach.
class OpenChamber : public Chamber
{
public:
    using Chamber::blc_throat;
    using Chamber::Chamber;
    using Chamber::combustion_end_and_throat;
    using Chamber::throat;
};

/// An inert gas whose heat capacity jumps from temperature to temperature.
struct JumpingGas {
    struct Part {
        double upTo;     // K
        double capacity; // Cp/R
    };
    std::vector<Part> parts; // in rising temperature

    /// Makes it the only species of the process.
    void use() const
    {
        Record record{"Ar", {{"AR", 1.0}}, 39.948, 0, 0.0, {}};
        double low = 200.0, h = 0.0, s = 10.0; // K, K, -
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (i > 0) { // enthalpy and entropy are continuous
                const double step = parts[i - 1].capacity - parts[i].capacity;
                h += step * parts[i - 1].upTo;
                s += step * std::log(parts[i - 1].upTo);
            }
            record.intervals.push_back(constantCp(low, parts[i].upTo, parts[i].capacity, h, s));
            low = parts[i].upTo;
        }
        useSpecies({record});
    }
    static std::unique_ptr<thermo::Mixture> mixture(double T)
    {
        auto gas = std::make_unique<thermo::Mixture>();
        gas->addSpecies("Ar", T, 1.0);
        return gas;
    }
};

/// Below 1000 K the speed of sound is lower by a sixth: between 1225 and 1335 K in the chamber no
/// pressure makes the throat sonic, and the Mach number jumps across 1.
inline JumpingGas gasWithAJump() { return {{{1000.0, 8.0}, {6000.0, 2.5}}}; }

/// Two jumps that send the search for the throat from a chamber at 1132 K in circles of three, so
/// that it ends with two Mach numbers above 1.
inline JumpingGas gasWithTwoJumps() { return {{{1000.0, 12.2}, {1035.0, 3.1}, {6000.0, 6.3}}}; }
constexpr double circlingT = 1132.0; // K

/// Velocity of the core, m/s, gained since the injection plane.
inline double velocityAt(const Chamber& chamber, Chamber::CHAMBER_STATION station)
{
    return std::sqrt(
        2.0 * (chamber.getReaction()->getHspec() - chamber.getReaction(station)->getHspec()));
}
inline double layerVelocityAt(const Chamber& chamber, Chamber::CHAMBER_STATION station)
{
    return std::sqrt(2.0 * (chamber.getBlcReaction(Chamber::INJECTION_PLANE)->getHspec() -
                            chamber.getBlcReaction(station)->getHspec()));
}
inline double throatMach(const Chamber& chamber)
{
    return velocityAt(chamber, Chamber::THROAT) / chamber.getDerivatives(Chamber::THROAT)->getA();
}
inline double layerThroatMach(const Chamber& chamber)
{
    return layerVelocityAt(chamber, Chamber::THROAT) /
           chamber.getBlcDerivatives(Chamber::THROAT)->getA();
}
} // namespace ketra_test
