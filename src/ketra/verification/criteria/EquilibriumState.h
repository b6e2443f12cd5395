#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace verification {

/// What a state of chemical equilibrium claims, in plain numbers: the posed problem, the elements
/// that it has to hold, and every species that could be there with its amount. Amounts are moles
/// per mole of initial mixture throughout.
///
/// The functions of the species are those at `T`, evaluated for this state and taken from no cache
/// of the solver.
struct EquilibriumState {
    /// What is prescribed beside pressure or volume.
    enum class Target {
        TEMPERATURE, ///< K
        ENTHALPY,    ///< J per mole of initial mixture
        ENTROPY,     ///< J/K per mole of initial mixture
        ENERGY       ///< internal energy, J per mole of initial mixture
    };
    /// What a candidate is to the balance of phases.
    enum class Kind {
        GAS,
        CONDENSED,
        /// A blend of two phases of a substance over a band of temperature around their change. Its
        /// functions are the means of the two phases by its weights, each phase held at the end of
        /// its own range, as the calculation uses them.
        BLEND,
        /// A real phase in the band of its blend: it cannot be present, and tells by its driving
        /// force how far the blend is from the true minimum.
        HIDDEN_PHASE
    };

    /// A species that is present, or could be.
    struct Candidate {
        std::string_view name; ///< belongs to the source of the state, which must outlive it
        Kind kind = Kind::GAS;
        bool present = false;
        double amount = 0.0; ///< mol; 0 if not present
        double charge = 0.0; ///< electrons beyond the neutral molecule
        double H = 0.0;      ///< H/(R T) at T and 1 bar
        double S = 0.0;      ///< S/R
        double Cp = 0.0;     ///< Cp/R
        double minT = 0.0;   ///< range of its data, or the band of a blend, K; ends included
        double maxT = 0.0;

        double G() const { return H - S; } ///< G/(R T)
        bool isGas() const { return kind == Kind::GAS; }
    };

    bool solved = false; ///< a solution of the problem as posed stands
    double T = 0.0;      ///< K
    double mass = 0.0;   ///< of one mole of initial mixture, kg
    double p = 0.0;      ///< Pa; 0 where the volume is given
    double V = 0.0;      ///< m^3 per mole of initial mixture; 0 where the pressure is given
    Target target = Target::TEMPERATURE;
    double wanted = 0.0;     ///< value of the target
    double Ng = 0.0;         ///< moles of gas that the calculation states
    double tolerance = 1e-7; ///< relative, to which the solver converges

    std::vector<double> elements; ///< moles of atoms of each; of the electron those in excess
    int electron = -1;            ///< index of the electron among the elements, -1 without ions
    std::vector<Candidate> candidates;
    std::vector<double> atoms; ///< of each element in one formula: a row for each candidate

    /// Appends a candidate and its atoms of each element.
    void add(const Candidate& candidate, const std::vector<double>& row)
    {
        candidates.push_back(candidate);
        atoms.insert(atoms.end(), row.begin(), row.end());
    }
    /// The atoms of candidate \p j: as many numbers as there are elements.
    const double* row(std::size_t j) const { return atoms.data() + j * elements.size(); }
};

} // namespace verification
