#include <ketra/thermo/input/BoostPumpParameters.h>

namespace thermo::input {

void BoostPumpParameters::fields(Fields& walk)
{
    walk.field(inletPressure);
    walk.field(dischargePressure);
    walk.field(pumpEta);
    walk.field(hydraulicTurbine);
    walk.field(turbinePi);
    walk.field(turbineEta);
    walk.field(rotationalSpeed);
}

} // namespace thermo::input
