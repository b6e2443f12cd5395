#pragma once

#include <ketra/math/equation/Function.h>

namespace gasdynamics {

/// The equation of lambda_pi(): the pressure ratio at a reduced velocity, less the one sought.
class KETRA_API PI_Function : public math::equation::Function
{
public:
    /// \param pi the pressure ratio sought
    /// \param exponent the isentropic exponent
    PI_Function(double pi, double exponent);

    /// gf_pi(x, k) less the target.
    double at(double x) override;

private:
    double target;
    double k; // isentropic exponent
};

} // namespace gasdynamics
