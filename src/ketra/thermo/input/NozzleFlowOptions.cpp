#include <ketra/thermo/input/NozzleFlowOptions.h>

namespace thermo::input {

void NozzleFlowOptions::reset()
{
    clear(freezing, inlet, exit, efficiencies, ambient, throttling);
    stations.clear();
}

void NozzleFlowOptions::validate()
{
    if (isCalculateNozzleFlow() && !isFreezingConditionsSet() && !isNozzleInletConditionsSet() &&
        !isNozzleExitConditionsSet())
        failInvalid("Neither freezing conditions, nozzle inlet conditions nor nozzle exit "
                    "conditions is defined within NozzleFlowOptions");
    freezing.validate();
    inlet.validate();
    exit.validate();
    ambient.validate();
    throttling.validate();
    stations.validate();
}

void NozzleFlowOptions::fields(Fields& walk)
{
    walk.each(calculateNozzleFlow, freezing, inlet, exit);
    walk.sparse(efficiencies);
    walk.each(ambient, throttling, stations);
}

} // namespace thermo::input
