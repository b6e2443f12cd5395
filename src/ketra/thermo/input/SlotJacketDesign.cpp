#include <ketra/thermo/input/SlotJacketDesign.h>

namespace thermo::input {

void SlotJacketDesign::fields(Fields& walk)
{
    ConvectiveCooling::fields(walk);
    walk.field(hc);
}

} // namespace thermo::input
