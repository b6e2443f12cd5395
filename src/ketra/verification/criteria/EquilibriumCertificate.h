#pragma once

#include <ketra/export.h>
#include <ketra/verification/criteria/Grade.h>

#include <string>

namespace verification {

struct EquilibriumState;

/// Whether a finished equilibrium is one, and the numbers behind the grade. Made by `judge`, which
/// shares no sum, no cache and no matrix with the solver. `EquilibriumLimits` holds the limits.
///
/// A grade of B has one of two reasons: a residual between its limits, or a blend of two phases,
/// which stands for a phase change by convention and is not the minimum of the Gibbs energy.
struct EquilibriumCertificate {
    Grade grade = Grade::F;
    /// Largest miss of an element, of the largest element, in moles of atoms.
    double elementResidual = 0.0;
    /// Net charge, of all moles.
    double charge = 0.0;
    /// Difference between the moles of gas that the calculation states and those of its products,
    /// relative.
    double gasResidual = 0.0;
    /// Largest |mu - sum a lambda|/(R T) of the species with mole fractions above 1e-10.
    double optimality = 0.0;
    /// Largest error of a mole fraction that follows from it: the product of the two.
    double fractionResidual = 0.0;
    /// Largest (sum a lambda - mu)/(R T) of a condensed phase that is not there; above 0 it wants
    /// in. Minus infinity if there is none.
    double drivingForce = 0.0;
    /// Largest mole fraction that a gas should have and has not.
    double missingFraction = 0.0;
    /// Largest driving force of a real phase in the band of its blend: what the blend hides. Minus
    /// infinity where T lies in no band.
    double hiddenForce = 0.0;
    /// Miss of the target as a relative error of the temperature at constant composition; 0 at
    /// given temperature.
    double targetResidual = 0.0;
    /// All amounts are finite and not negative.
    bool amountsValid = false;
    /// The temperature lies in the range of every species that is present, and in the band of every
    /// blend.
    bool temperatureInRange = false;
    /// A blend of two phases is present.
    bool blended = false;
    /// The species that decides the grade; empty where none does.
    std::string worstSpecies;
    /// Why the grade is not A, for a reader; empty for A.
    std::string reason;
};

/// Judges a state.
///
/// Element potentials lambda are fitted to the chemical potentials of all species with mole
/// fractions above 1e-10, each weighed by the root of its fraction so that abundant species decide,
/// by a rank-revealing Householder factorisation [Higham2002]. Directions that these species leave
/// open are fixed by the most abundant traces; the potential of the electron, where there is no ion
/// above 1e-10, so that the largest fractions of positive and negative ions agree.
///
/// A candidate outside the range of its data is not judged: nothing is known of it there. Nor is
/// one with an element that the mixture does not hold.
KETRA_API EquilibriumCertificate judge(const EquilibriumState& state);

} // namespace verification
