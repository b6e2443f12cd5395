#include <ketra/thermo/input/EfficiencyFactors.h>

namespace thermo::input {

void EfficiencyFactors::fields(Fields& walk)
{
    walk.field(apply);
    walk.field(cycle);
    walk.field(reaction);
    walk.field(nozzle);
    walk.field(nozzleLength);
    walk.field(coneHalfAngle);
}

} // namespace thermo::input
