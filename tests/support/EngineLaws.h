#pragma once

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Propellant.h>

#include <algorithm>
#include <cmath>
#include <memory>

// What the laws of nozzle flow say of a solved engine.

namespace ketra_test {

using NozzleSection = performance::equilibrium::NozzleSectionConditions;

/// Misses of one station, relative, against the injection plane and the throat.
struct StationLaws {
    double enthalpy = 0.0; // of H + W^2/2, over W^2/2
    double entropy = 0.0;
    double flux = 0.0;     // of the mass flow
    double elements = 0.0; // of the balance of an element, over the largest one

    void worsen(const StationLaws& other)
    {
        elements = std::max(elements, other.elements);
        enthalpy = std::max(enthalpy, other.enthalpy);
        entropy = std::max(entropy, other.entropy);
        flux = std::max(flux, other.flux);
    }
};

inline double miss(double found, double expected) { return std::abs(found / expected - 1.0); }

/// A frozen section ends its search for the temperature at a correction of this much of it, and
/// leaves that out.
constexpr double frozenTolerance = 5e-4;

inline bool isFrozen(const NozzleSection& section) { return section.getReaction() == nullptr; }

/// The state holds a blend of two phases, whose Gibbs energy is not H - T S.
inline bool hasBlend(const reaction::Equilibrium& state)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        state.copyReactingMixture(true, true));
    for (unsigned int j = 0; j < products->size(); ++j) {
        const auto* transition =
            dynamic_cast<const reaction::TransitionProduct*>(products->product(j));
        if (transition != nullptr && products->n(j) > 0.0 && transition->isBlend()) return true;
    }
    return false;
}
inline bool hasBlend(const NozzleSection& section)
{
    return !isFrozen(section) && hasBlend(*section.getReaction());
}

/// Largest miss of an element in the products, over the largest element of the charge.
inline double elementMiss(const reaction::Equilibrium& state)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        state.copyReactingMixture(true, true));
    double largest = 0.0;
    double most = 0.0;
    for (unsigned int i = 0; i < products->elSize(); ++i) {
        const double given = products->b(i) / products->element(i)->am();
        double present = 0.0;
        for (unsigned int j = 0; j < products->size(); ++j)
            present += products->a(i, j) * products->n(j);
        largest = std::max(largest, given);
        most = std::max(most, std::abs(present - given));
    }
    return most / largest;
}

/// A condensed product does not exist at the temperature \p T, K: in a frozen flow it cannot melt
/// or turn solid.
inline bool hasMisplacedPhase(const reaction::Equilibrium& composition, double T)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        composition.copyReactingMixture(true, true));
    for (unsigned int j = 0; j < products->size(); ++j) {
        const reaction::Product& product = *products->product(j);
        if (product.isCondensed() && products->n(j) > 0.0 &&
            (T < product.getMinimalT() || T > product.getMaximalT()))
            return true;
    }
    return false;
}
inline bool hasMisplacedPhase(const performance::equilibrium::Chamber& chamber,
                              const NozzleSection& section)
{
    if (!isFrozen(section)) return hasMisplacedPhase(*section.getReaction(), section.getT());
    const auto& freezing = dynamic_cast<const performance::frozen::Chamber&>(chamber);
    return hasMisplacedPhase(*freezing.getEquilibriumSection()->getReaction(), section.getT());
}

/// Specific entropy by the Gibbs energy, which is summed by itself; without blend.
inline double entropyOf(const reaction::Equilibrium& state)
{
    if (hasBlend(state)) return state.getSspec();
    return (state.getHspec() - state.getGspec()) / state.getT();
}
/// The same; a frozen section holds the entropy that it is given.
inline double entropyOf(const NozzleSection& section)
{
    if (!isFrozen(section)) return entropyOf(*section.getReaction());
    return (section.getH_spec() - section.getG_spec()) / section.getT();
}

/// How far the entropy of a section may be off, relative.
inline double entropyLimit(const NozzleSection& section)
{
    const double c = section.getCp_spec() / section.getS_spec();
    return isFrozen(section) ? 1e-5 + frozenTolerance * c : 1e-5;
}

/// How far the velocity of a section may be off, relative, by its temperature.
inline double velocityLimit(const NozzleSection& section)
{
    const double W = section.getW();
    return isFrozen(section)
               ? 1e-5 + frozenTolerance * section.getCp_spec() * section.getT() / (W * W)
               : 1e-5;
}

/// How far the injection plane is from the enthalpy of the propellant, over the kinetic energy of
/// the flow in \p section.
inline double chamberMiss(performance::TheoreticalPerformance& engine, const NozzleSection& section)
{
    using performance::equilibrium::Chamber;
    const thermo::Propellant& propellant = *engine.getPropellant();
    const double given = propellant.H() / propellant.getM() * 1000.0; // J/kg
    const double W = section.getW();
    return std::abs(engine.getChamber()->getReaction(Chamber::INJECTION_PLANE)->getHspec() -
                    given) /
           (W * W / 2);
}

/// The critical mass flux, kg/(m2 s).
inline double throatFlux(const performance::equilibrium::Chamber& chamber)
{
    return chamber.getThroatFlux();
}

/// How far the throat is from the speed of sound.
inline double throatMiss(const performance::equilibrium::Chamber& chamber)
{
    using performance::equilibrium::Chamber;
    const double W = std::sqrt(2.0 * (chamber.getReaction(Chamber::INJECTION_PLANE)->getHspec() -
                                      chamber.getReaction(Chamber::THROAT)->getHspec()));
    return miss(W / chamber.getDerivatives(Chamber::THROAT)->getA(), 1.0);
}

/// Throat, and chamber end of a chamber of finite area. The flow of the throat has the local speed
/// of sound.
inline StationLaws lawsOf(const performance::equilibrium::Chamber& chamber, bool finiteArea)
{
    using performance::equilibrium::Chamber;
    const double H = chamber.getReaction(Chamber::INJECTION_PLANE)->getHspec();
    const reaction::Equilibrium& end = *chamber.getReaction(Chamber::CHAMBER_END);
    const reaction::Equilibrium& throat = *chamber.getReaction(Chamber::THROAT);
    const double a = chamber.getDerivatives(Chamber::THROAT)->getA();
    StationLaws laws;
    laws.enthalpy = miss(H - throat.getHspec(), a * a / 2);
    laws.entropy = miss(entropyOf(throat), entropyOf(end));
    laws.elements = elementMiss(throat);
    if (finiteArea) {
        const double W = chamber.getWc();
        const double rho = chamber.getDerivatives(Chamber::CHAMBER_END)->getRho();
        StationLaws atEnd;
        atEnd.enthalpy = miss(H - end.getHspec(), W * W / 2);
        atEnd.elements = elementMiss(end);
        atEnd.flux = miss(rho * W * chamber.getFcr(), throatFlux(chamber));
        laws.worsen(atEnd);
    }
    return laws;
}

inline StationLaws lawsOf(const performance::equilibrium::Chamber& chamber,
                          const NozzleSection& section)
{
    using performance::equilibrium::Chamber;
    const double W = section.getW();
    StationLaws laws;
    laws.enthalpy = miss(
        chamber.getReaction(Chamber::INJECTION_PLANE)->getHspec() - section.getH_spec(), W * W / 2);
    laws.entropy = miss(entropyOf(section), entropyOf(*chamber.getReaction(Chamber::CHAMBER_END)));
    if (!isFrozen(section)) laws.elements = elementMiss(*section.getReaction());
    laws.flux = miss(throatFlux(chamber), section.getRho() * W * section.getFr());
    return laws;
}

} // namespace ketra_test
