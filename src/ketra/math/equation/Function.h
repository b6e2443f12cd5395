#pragma once

#include <ketra/export.h>

namespace math::equation {

/// A function of one variable whose root is sought.
///
/// A subclass gives at(); the derivatives are taken from it by central differences. Their steps
/// are wide, about 1e-3 of x: an at() may be a whole equilibrium calculation, converged to 1e-7,
/// and a narrow step would differentiate its noise.
class KETRA_API Function
{
public:
    Function();
    Function(const Function& other) = default;
    Function& operator=(const Function& other) = default;
    virtual ~Function();

    /// The value at \p x. What it throws passes through the root finder unchanged.
    virtual double at(double x) = 0;

protected:
    /// First derivative at \p x. Where the function is not finite on one side, the difference is
    /// taken on the other.
    virtual double at1(double x);
    /// Second derivative at \p x.
    virtual double at2(double x);

    /// Sets the steps of the differences: \p relative to |x|, and not below \p least.
    void setSteps(double relative, double least);

private:
    friend class RootFinder;

    double stepAt(double x) const;

    double relativeStep; // step of at1 over |x|
    double leastStep;    // in units of x
};

} // namespace math::equation
