#include <ketra/thermo/input/BranchParameters.h>

namespace thermo::input {

void BranchParameters::fields(Fields& walk)
{
    walk.field(name);
    walk.field(mdot);
    walk.field(dischargePressure);
    walk.field(Abar);
    FeedLineParameters::fields(walk);
    walk.field(fixedDp);
    walk.field(fixedPi);
    walk.field(connectTo);
    walk.field(dischargeTo);
}

} // namespace thermo::input
