#pragma once

#include <ketra/export.h>

namespace math::equation {

class Function;

/// Finds a root of a function step by step.
///
/// reset() a finder to the first guess, repeat step() until it returns true, read the position.
/// There are at most 100 steps. Failures are math::equation::Exception: 0 if a position or the
/// value there is not finite, 1 if the steps are used up, 2 if the finder does not move although
/// it has not converged.
class KETRA_API RootFinder
{
public:
    virtual ~RootFinder();

    /// Performs one iteration. \returns whether the finder has converged.
    /// \throws Exception as above; what the function throws passes unchanged
    bool step();

protected:
    /// \param f the function, not owned
    explicit RootFinder(Function* f);
    RootFinder(const RootFinder& other) = default;
    RootFinder& operator=(const RootFinder& other) = default;

    /// Runs the iteration of number \p count, the first being 1.
    virtual void doIterationProcedure(int count) = 0;
    /// Makes the next position from the present one.
    virtual void computeNextPosition() = 0;
    /// Rejects a next position that cannot be used.
    virtual void checkPosition() = 0;
    /// Whether the last move was small enough.
    virtual bool hasConverged() = 0;

    /// Value and first derivative of the function.
    double value(double x);
    double derivative(double x);
    /// Begins to count the steps anew.
    void restart() { steps = 0; }

private:
    Function* function; // not owned
    int steps;          // since the reset
};

} // namespace math::equation
