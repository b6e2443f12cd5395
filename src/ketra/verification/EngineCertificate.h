#pragma once

#include <ketra/export.h>
#include <ketra/verification/criteria/EquilibriumCertificate.h>
#include <ketra/verification/criteria/Grade.h>

#include <span>
#include <string>
#include <vector>

namespace performance::equilibrium {
class Chamber;
class NozzleSectionConditions;
} // namespace performance::equilibrium

namespace performance::frozen {
class NozzleSectionConditions;
} // namespace performance::frozen

namespace verification {

/// The limits of the grades of an engine. Those of A are the tolerances to which the method
/// searches its stations, some multiplied by the relative tolerance of the chamber.
struct KETRA_API EngineLimits {
    /// A 1e-6, B 1e-4: each station is posed with the entropy of the chamber end.
    double entropy;
    /// The same behind the freezing section; A 1e-3, B 2e-3: the search for the temperature ends at
    /// a step of 5e-4, which it leaves out.
    double frozen;
    /// A 1e-6, B 1e-4: of the kinetic energy, so that a velocity is off by half of it.
    double enthalpy;
    /// A 2e-5, B 1e-2: the search for the throat ends at 1e-5; the mass flux is off by the square.
    double mach;
    /// A 1e-6, B 1e-4: no station passes more than the throat.
    double throatFlux;
    /// A 1e-3, B 3e-3: the search for an area ratio ends at 5e-4, after 20 steps at 2.5e-3.
    double massFlux;
    /// A 1e-3, B 4e-2: a contraction c misses it by 0.034/c^2, since its stagnation pressure is
    /// taken as p + rho w^2/2.
    double chamberFlux;
    /// A 1e-3, B 2e-3: the temperature of frozen sections.
    double frozenAhead;
    /// A 0, B 1e-2: of the kinetic energy, half of which is the error of the impulse, or of T.
    double beyondData;

    /// The limits of grade A or B at the relative tolerance of a chamber.
    static EngineLimits of(Grade grade, double relativeTolerance);
};

/// One station of an engine against the laws of its flow.
struct StationCertificate {
    Grade grade = Grade::F;
    /// "injection plane", "chamber end", "throat", "section", "frozen section", or "layer".
    std::string place;
    bool frozen = false;
    double T = 0.0; ///< K
    double p = 0.0; ///< Pa
    /// Of the equilibrium; without a solved state, and so not to be read, for a frozen section.
    EquilibriumCertificate equilibrium;
    /// Entropy against the chamber end, as a relative error of the temperature.
    double entropy = 0.0;
    /// h + w^2/2 against the injection plane, over the kinetic energy of a sonic flow.
    double enthalpy = 0.0;
    /// Mass flow against the throat, relative; 0 of injection plane and throat.
    double massFlux = 0.0;
    /// Where condensed products of a frozen section have left the range of their data: the largest
    /// miss of the laws if their heat capacity goes on from there. 0 elsewhere. A section that
    /// misses less is B at best, since nothing was measured there.
    double beyondData = 0.0;
    std::string reason; ///< why the grade is not A
};

/// Whether a solved chamber and its sections obey the laws of nozzle flow, and the numbers behind
/// the grade, which is the worst of all stations and laws.
///
/// Enthalpy, entropy and density of every station are summed anew from the amounts of its products.
/// Only the speed of sound is that of the calculation. That the mass flux is largest in the throat
/// follows from it, since along an isentrope
///
///     d ln(rho w) = (1/a^2 - 1/w^2) dp/rho
///
/// vanishes where w = a; besides, it is held against the flux of all other stations. Where a
/// condensed phase appears in the throat itself, the speed of sound jumps and no state has Mach 1:
/// the largest flux counts alone then, with grade B.
///
/// Stations of a boundary layer are judged as equilibria alone. A station with a blend of two
/// phases has the energy that the calculation states: a blend has no other. It is of grade B
/// anyway.
struct EngineCertificate {
    Grade grade = Grade::F;
    std::vector<StationCertificate> stations; ///< chamber, then shifting, then frozen sections
    std::vector<StationCertificate> layers;   ///< those of a boundary layer, as equilibria alone
    double entropy = 0.0;                     ///< largest of the stations, likewise the next
    double enthalpy = 0.0;
    double mach = 0.0;        ///< |M - 1| in the throat
    double throatFlux = 0.0;  ///< by which a station passes more than the throat, relative
    double massFlux = 0.0;    ///< largest of the sections
    double chamberFlux = 0.0; ///< of a chamber end of finite area
    /// By which the vacuum impulse of a frozen section exceeds that of a shifting one of the same
    /// area ratio, relative; negative where all lie below, 0 where none can be compared.
    double frozenAhead = 0.0;
    std::string reason; ///< why the grade is not A; empty for A
};

/// Judges a solved chamber with sections of its own. All stay the caller's.
/// \param frozen  sections behind the freezing section of \p chamber or of one of the same stations
KETRA_API EngineCertificate
certify(const performance::equilibrium::Chamber& chamber,
        std::span<const performance::equilibrium::NozzleSectionConditions* const> sections,
        std::span<const performance::frozen::NozzleSectionConditions* const> frozen);

} // namespace verification
