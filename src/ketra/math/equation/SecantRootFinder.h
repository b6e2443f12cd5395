#pragma once

#include <ketra/math/equation/RootFinder.h>

namespace math::equation {

/// The secant method: Newton's with the slope between the last two positions, so that a step costs
/// one evaluation. Convergence is judged as by NewtonsRootFinder.
class KETRA_API SecantRootFinder : public RootFinder
{
public:
    /// \param f the function, not owned
    /// \param e the tolerance of the position
    SecantRootFinder(Function* f, double e);
    ~SecantRootFinder() override;

    /// Starts anew from the guess \p x0; the second point of the first secant lies 1e-3 beside it.
    void reset(double x0);

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
    double Xnm1; // the other point of the secant
    double Xn;
    double Xnp1;
    double tolerance;
    double fnm1; // f(Xnm1)
    double fn;   // f(Xn)
};

} // namespace math::equation
