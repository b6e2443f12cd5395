#pragma once

#include <ketra/math/equation/RootFinder.h>

namespace math::equation {

/// Newton's method, x(n+1) = x(n) - f(x(n)) / f'(x(n)).
///
/// It has converged when the last move is at most the tolerance times the larger of 1 and
/// |x(n+1)|: absolute for small positions, relative for large ones. A move that leaves the region
/// where the function is finite is halved until it is back in, ten times at most; so is one that
/// leaves the bounds, if there are any. A halved move is never taken for convergence.
class KETRA_API NewtonsRootFinder : public RootFinder
{
public:
    /// \param f the function, not owned
    /// \param e the tolerance of the position
    NewtonsRootFinder(Function* f, double e);
    ~NewtonsRootFinder() override;

    /// Starts anew from the guess \p x0.
    void reset(double x0);
    /// Keeps all positions from \p least to \p greatest, on the branch of the root that is wanted.
    void setBounds(double least, double greatest);

    /// The position before the last step.
    double getXn() const { return Xn; }
    /// The position after the last step.
    double getXnp1() const { return Xnp1; }

protected:
    void doIterationProcedure(int count) override;
    void computeNextPosition() override;
    void checkPosition() override;
    bool hasConverged() override;

private:
    void retreat();
    void keepInBounds();

    double Xn;
    double Xnp1;
    double tolerance;
    double fn;    // f(Xn)
    double dfn;   // f'(Xn)
    double good;  // last position with a finite value; NaN before the first
    int retreats; // moves halved in a row
    double least; // bounds of the position
    double greatest;
    bool shortened; // the last move was halved at a bound
};

} // namespace math::equation
