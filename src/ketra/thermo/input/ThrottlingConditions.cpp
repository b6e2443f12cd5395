#include <ketra/thermo/input/ThrottlingConditions.h>

namespace thermo::input {

void ThrottlingConditions::setFixedFlowrate(double rate)
{
    deleteRangeFlowrate();
    fixedFlowrate.set(rate);
}

void ThrottlingConditions::setRangeFlowrateMin(double rate)
{
    deleteFixedFlowrate();
    minFlowrate.set(rate);
}

void ThrottlingConditions::setRangeFlowrateMax(double rate)
{
    deleteFixedFlowrate();
    maxFlowrate.set(rate);
}

void ThrottlingConditions::validate()
{
    if (!isFixedFlowrateSet() && !isRangeFlowrateSet())
        failInvalid("Neither fixed flow rate nor flow rate range is defined within "
                    "ThrottlingConditions");
}

void ThrottlingConditions::fields(Fields& walk)
{
    if (!walk.field(fixedFlowrate)) walk.each(minFlowrate, maxFlowrate);
    walk.sparse(deliveredPerformance);
}

} // namespace thermo::input
