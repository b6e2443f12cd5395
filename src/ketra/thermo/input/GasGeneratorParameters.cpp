#include <ketra/thermo/input/GasGeneratorParameters.h>

namespace thermo::input {

void GasGeneratorParameters::fields(Fields& walk)
{
    walk.always(type);
    walk.field(pressure);
    walk.field(sigma);
    walk.field(Tmax);
}

} // namespace thermo::input
