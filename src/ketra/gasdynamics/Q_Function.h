#pragma once

#include <ketra/math/equation/Function.h>

namespace gasdynamics {

/// The equation of lambda_q(): the reduced mass flux at a reduced velocity, less the one sought.
class KETRA_API Q_Function : public math::equation::Function
{
public:
    /// \param q the reduced mass flux sought
    /// \param exponent the isentropic exponent
    Q_Function(double q, double exponent);

    /// gf_q(x, k) less the target.
    double at(double x) override;

private:
    double target;
    double k; // isentropic exponent
};

} // namespace gasdynamics
