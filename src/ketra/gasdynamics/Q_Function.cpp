#include <ketra/gasdynamics/Q_Function.h>

#include <ketra/gasdynamics/detail/Steps.h>
#include <ketra/gasdynamics/gasdynamics.h>

namespace gasdynamics {

Q_Function::Q_Function(double q, double exponent) : target(q), k(exponent)
{
    setSteps(detail::relativeStep, detail::leastStep);
}

double Q_Function::at(double x) { return gf_q(x, k) - target; }

} // namespace gasdynamics
