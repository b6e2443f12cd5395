#include <ketra/thermo/input/TurbineParameters.h>

namespace thermo::input {

void TurbineParameters::fields(Fields& walk)
{
    walk.always(type);
    walk.field(pi);
    walk.field(eta);
    walk.field(rotationalSpeed);
}

} // namespace thermo::input
