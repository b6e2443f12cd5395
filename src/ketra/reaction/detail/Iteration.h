#pragma once

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/detail/Oscillation.h>
#include <ketra/reaction/detail/ReactingState.h>
#include <ketra/reaction/detail/ReducedSystem.h>

#include <memory>
#include <vector>

namespace reaction::detail {

/// One run of the equilibrium iteration towards a fixed target, with a given set of condensed
/// phases that only shrinks or swaps.
///
/// Newton steps in ln n_j, ln n, ln T and the condensed amounts, damped; [RP1311] chapter 2 and 3,
/// with a start and tests of convergence of our own.
class Iteration
{
public:
    explicit Iteration(Equilibrium& problem);

    /// Runs to convergence. \returns the last solution vector.
    /// \throws thermo::Exception 0 if no product is left, 8 if the cycles run out;
    ///         math::matrix::Exception if the system stays singular after its repairs
    std::unique_ptr<math::matrix::ColumnVector> run();
    /// Builds and solves the system of the present state, without repairs. \returns the solution.
    /// \throws math::matrix::Exception
    std::unique_ptr<math::matrix::ColumnVector> solveOnce();
    /// Gives the problem the results of the present state, which is a solution.
    void storeResults() const;

private:
    struct Step {
        double dlnN;   // correction of the logarithm of the moles of gas
        double dlnT;   // correction of ln T
        double lambda; // damping
    };

    void requireProducts() const;
    void solveSystem();
    void assembleAndSolve();
    void repairAmounts();
    void dropTraces();

    Step limitedStep();
    double dampingAtConstantPressure(const Step& step) const;
    double dampingAtConstantVolume(const Step& step) const;
    void advanceAmounts(const Step& step);
    void advanceTemperature(const Step& step);

    bool correctionsSmall(const Step& step) const;
    bool multipliersSettled(unsigned int cycle) const;
    bool chargeCloses() const;
    bool standsAtBestOfPeriod(unsigned int cycle, bool converged);
    bool settledAtFixedT(unsigned int cycle, bool converged);

    unsigned int cycleLimit() const;
    Target target() const;
    void setAmount(unsigned int j, double n, double ln_n);
    /// Moles of gas and condensed products.
    double totalMoles() const;
    /// Gibbs energy of the products over R T, mol.
    double reducedGibbs() const;
    double concentrationTerm() const;

    Equilibrium& eq;
    ReactingMixture& mixture;
    ReactingState state;
    ReducedSystem system;
    const bool constantPressure;
    const bool fixedT;
    const double initialMm; // kg/mol
    const double tolerance;
    unsigned int limit; // cycles
    std::unique_ptr<math::matrix::ColumnVector> x;
    std::unique_ptr<math::matrix::ColumnVector> previous;
    std::vector<double> d; // full correction of ln n_j
    Oscillation oscillation;
    unsigned int settled = 0; // cycles in a row that have converged at the end of the run
};

} // namespace reaction::detail
