#include <ketra/thermo/input/RadiationCooling.h>

namespace thermo::input {

void RadiationCooling::fields(Fields& walk)
{
    CoolingSection::fields(walk);
    walk.field(emissivity);
}

} // namespace thermo::input
