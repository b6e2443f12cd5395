#include <ketra/thermo/input/ChamberFeedSubsystemParameters.h>

namespace thermo::input {

void ChamberFeedSubsystemParameters::reset()
{
    inletPressure.set(defaultInletPressure, Pressure::MPA, /*keepUnit=*/true);
    inletVelocity.set(defaultInletVelocity, Velocity::M_PER_S, /*keepUnit=*/true);
    resetLine();
    injectorDp.reset();
    injectorMu.reset();
}

void ChamberFeedSubsystemParameters::fields(Fields& walk)
{
    walk.field(inletPressure);
    walk.field(inletVelocity);
    FeedLineParameters::fields(walk);
    walk.field(injectorDp);
    walk.field(injectorMu);
}

} // namespace thermo::input
