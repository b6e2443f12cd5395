#include <ketra/thermo/input/FeedLineParameters.h>

namespace thermo::input {

void FeedLineParameters::fields(Fields& walk)
{
    walk.field(pumpEta);
    walk.field(valveDp);
    walk.field("valveResistanceCoefficient", valveZeta);
    walk.field(coolingDp);
    walk.field(coolingDt);
}

} // namespace thermo::input
