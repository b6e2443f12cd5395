#pragma once

#include <ketra/export.h>
#include <ketra/verification/criteria/Grade.h>

namespace verification {

/// The limits of the grades of an equilibrium: a certificate has a grade if none of its numbers is
/// above the limit of that grade, and F if it has neither A nor B.
///
/// The limits of A follow from the tolerance tau to which the solver converges (1e-7 unless told
/// otherwise), those of B from what a host can use: a temperature that is off by 1e-3 of itself, or
/// a missing phase that would hold 1e-4 of the mass, must not pass. No limit of A is above that of
/// B however coarse the tolerance. `docs/verification.md` shows the measured distributions.
struct KETRA_API EquilibriumLimits {
    /// A tau/10, B 1e-5: a Newton step that has shrunk to tau leaves its square.
    double elementResidual;
    /// A tau, B 1e-5: what the solver allows.
    double charge;
    /// A 10 tau, B 1e-5: it scales every pressure.
    double gasResidual;
    /// A 10 tau, B 1e-4: at a temperature that is off by 1e-5 potentials miss by some 1e-4.
    double optimality;
    /// A tau, B 1e-6: the error of a mole fraction.
    double fractionResidual;
    /// A 10 tau, B 1e-5: a missing phase of 1e-4 of the mass drives by 3e-5 or more.
    double drivingForce;
    /// A tau, B 1e-6: the error of a mole fraction.
    double missingFraction;
    /// A 10 tau, B 1e-4: the error of the temperature.
    double targetResidual;
    /// A 10 tau, B 1.5: a blend takes each phase at the end of its range, and so is off by up to
    /// w |H/(R T)|/(8 T) in a band of half width w around T: 1.15 of water, 0.4 of alumina.
    double hiddenForce;

    /// The limits of grade A or B for a solver that converges to \p tolerance.
    static EquilibriumLimits of(Grade grade, double tolerance);
};

} // namespace verification
