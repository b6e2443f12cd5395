#include <ketra/thermo/input/EfficiencyFactors.h>

namespace thermo::input {

void EfficiencyFactors::fields(Fields& walk)
{
    walk.each(apply, cycle, reaction, nozzle, nozzleLength, coneHalfAngle);
}

} // namespace thermo::input
