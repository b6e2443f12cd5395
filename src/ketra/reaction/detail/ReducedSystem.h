#pragma once

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/LinearSystem.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/detail/ReactingState.h>

#include <memory>
#include <vector>

namespace reaction::detail {

/// What a problem prescribes, in the form in which the rows of the system need it.
struct Target {
    Equilibrium::PROCESS_TYPE type;
    double value;  // H/(R T), S/R or U/(R T) that is wanted; not used at fixed temperature
    double Ng;     // mol of gas; constant pressure
    double offset; // added to ln n_j: -ln Ng + ln P, or ln Pv at constant volume
};

/// Where the unknowns of the reduced system stand.
struct Unknowns {
    unsigned int pi;    // multiplier of element i at pi + i
    unsigned int lnT;   // correction of ln T, if hasT
    unsigned int dn;    // correction of the first condensed amount
    unsigned int order; // of the system
    bool hasLnN;        // correction of ln n at 0: constant pressure only
    bool hasT;          // not at fixed temperature
};
Unknowns unknownsOf(Equilibrium::PROCESS_TYPE type, unsigned int elements, unsigned int condensed);

/// The linear system of one cycle, [RP1311] (2.24) to (2.27) at constant pressure and (2.45) to
/// (2.48) at constant volume: element balances, the balance of moles (constant pressure), the
/// prescribed enthalpy, entropy or energy, and the condensed phases.
class ReducedSystem
{
public:
    ReducedSystem(const ReactingMixture& mixture, const ReactingState& state);

    /// Fills the system for the present state.
    void assemble(const Target& target);
    /// Solves it. \throws math::matrix::Exception
    void solve(math::matrix::ColumnVector& x);
    /// Solves a system whose element rows depend on each other (pure H2O, whose rows of hydrogen
    /// and oxygen differ by traces alone): multipliers that it leaves open keep their value of \p
    /// present. \throws math::matrix::Exception if anything else makes it singular
    void solveDependent(const math::matrix::ColumnVector& present, math::matrix::ColumnVector& x);
    const Unknowns& unknowns() const { return at; }

private:
    void gatherGases(const Target& target);
    void elementRow(unsigned int i);
    void molesRow(const Target& target);
    void energyRow(const Target& target);
    void entropyRow(const Target& target);
    void condensedRow(unsigned int c);

    bool constantVolume() const { return !at.hasLnN; }
    /// H0/(R T) at constant pressure, U0/(R T) at constant volume: what goes with ln T.
    const std::vector<double>& energy() const { return constantVolume() ? state.U : state.H; }
    const std::vector<double>& heatCapacity() const
    {
        return constantVolume() ? state.Cv : state.Cp;
    }

    const ReactingMixture& mixture;
    const ReactingState& state;
    Unknowns at{};
    std::unique_ptr<math::matrix::LinearSystem> A;
    std::unique_ptr<math::matrix::ColumnVector> rhs;

    // Sums over the gases; E stands for the energy function, mu for the chemical potential.
    std::vector<double> psi;  // mu/(R T)
    std::vector<double> aan;  // elements by elements, upper half
    std::vector<double> an;   // a n
    std::vector<double> anE;  // a n E
    std::vector<double> anMu; // a n mu
    double sumN = 0.0;
    double sumNE = 0.0;
    double sumNMu = 0.0;
};

} // namespace reaction::detail
