#include <ketra/thermo/input/TubularJacketDesign.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace thermo::input {

void TubularJacketDesign::setN(double number)
{
    using Limits = std::numeric_limits<int>;
    const double whole = std::isnan(number) ? 0.0 : number;
    n.set(static_cast<int>(std::clamp<double>(whole, Limits::min(), Limits::max())));
}

void TubularJacketDesign::fields(Fields& walk)
{
    ConvectiveCooling::fields(walk);
    walk.each(d, dmin, d2, n, helix);
}

} // namespace thermo::input
