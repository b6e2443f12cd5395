#include <ketra/thermo/input/GeneralOptions.h>

namespace thermo::input {

void GeneralOptions::fields(Fields& walk)
{
    walk.field(multiphase);
    walk.field(ions);
    walk.field(flowSeparation);
}

} // namespace thermo::input
