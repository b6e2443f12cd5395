#pragma once

#include <memory>

namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction

namespace host {

/// What the products in a closed vessel keep while they react: their internal energy, or, in a
/// reversible change, their entropy.
enum class Kept { ENERGY, ENTROPY };

/// Internal energy of the products of a solved problem, J/kg, as h - p v: condensed phases fill no
/// volume. Each phase counts with the energy it has; the equilibrium's own figure leaves out what
/// stands for a substance that can melt.
double internalEnergyOf(const reaction::Equilibrium& products);

/// Solves for the products of a closed vessel at the temperature at which they have the energy or
/// entropy of the charge.
///
/// Posed with U or S at once, an equilibrium with substances that can melt ends thousands of kelvin
/// off, since they enter its balance without internal energy. At given temperature they do no harm:
/// the temperature is enclosed and searched outside, with one equilibrium at each step.
/// \param problem  the charge; solved afterwards, at the given volume and the temperature found
/// \param v        m^3/kg
/// \param target   J/kg, or J/(kg K)
/// \returns the derivatives of the solution
/// \throws Failure if no temperature fits; thermo::Exception as `Equilibrium::solve`
std::unique_ptr<reaction::Derivatives> solveAtConstantVolume(reaction::Equilibrium& problem,
                                                             Kept kept, double v, double target,
                                                             bool calculateTransport);

} // namespace host
