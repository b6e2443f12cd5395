#include <ketra/gasdynamics/PI_Function.h>

#include <ketra/gasdynamics/detail/Steps.h>
#include <ketra/gasdynamics/gasdynamics.h>

namespace gasdynamics {

PI_Function::PI_Function(double pi, double exponent) : target(pi), k(exponent)
{
    setSteps(detail::relativeStep, detail::leastStep);
}

double PI_Function::at(double x) { return gf_pi(x, k) - target; }

} // namespace gasdynamics
