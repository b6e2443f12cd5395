#include <ketra/thermo/input/GasGeneratorBranchParameters.h>

namespace thermo::input {

void GasGeneratorBranchParameters::fields(Fields& walk)
{
    BranchParameters::fields(walk);
    walk.field(pipeDp);
    walk.field(injectorDp);
    walk.field(injectorMu);
}

} // namespace thermo::input
