#pragma once

#include <ketra/export.h>
#include <ketra/math/equation/Function.h>

namespace reaction {
class Equilibrium;
} // namespace reaction

namespace performance::equilibrium {

/// The equation of the search for a temperature: a wanted specific property less that of the
/// products at T. Every evaluation solves a copy of the problem at that fixed temperature, so that
/// the problem itself stays as it is.
class KETRA_API CombustorFunction : public math::equation::Function
{
public:
    /// \p reaction is borrowed and must outlive the function. \p target is the specific enthalpy or
    /// internal energy, J/kg, or entropy, J/(kg K), that goes with the problem's process type.
    CombustorFunction(reaction::Equilibrium* reaction, double target, bool expectCondensed);

    /// Target less the property of the products at \p T, K.
    /// \throws thermo::Exception 8 when there is no equilibrium at \p T; 0 for a problem of fixed
    ///         temperature, which prescribes no such property
    double at(double T) override;

private:
    reaction::Equilibrium* problem;
    double target;
    bool condensedExpected;
};

} // namespace performance::equilibrium
