#include <ketra/thermo/input/AmbientConditions.h>

namespace thermo::input {

void AmbientConditions::setFixedPressure(double p, Pressure::UNITS unit, bool keepUnit)
{
    deleteRangePressure();
    fixedPressure.set(p, unit, keepUnit);
}

void AmbientConditions::setRangePressureMin(double p, Pressure::UNITS unit, bool keepUnit)
{
    deleteFixedPressure();
    minPressure.set(p, unit, keepUnit);
}

void AmbientConditions::setRangePressureMax(double p, Pressure::UNITS unit, bool keepUnit)
{
    deleteFixedPressure();
    maxPressure.set(p, unit, keepUnit);
}

void AmbientConditions::validate()
{
    if (!isFixedPressureSet() && !isRangePressureSet())
        failInvalid("Neither fixed ambient pressure nor ambient pressure range is defined within "
                    "AmbientConditions");
}

void AmbientConditions::fields(Fields& walk)
{
    if (!walk.field(fixedPressure)) walk.each(minPressure, maxPressure);
    walk.field(deliveredPerformance);
}

} // namespace thermo::input
