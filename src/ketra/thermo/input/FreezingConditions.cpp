#include <ketra/thermo/input/FreezingConditions.h>

namespace thermo::input {

void FreezingConditions::setExpansionRatio(double ratio)
{
    clear(pressure, pressureRatio);
    expansionRatio.set(ratio);
}

void FreezingConditions::setPressure(double p, Pressure::UNITS unit, bool keepUnit)
{
    clear(expansionRatio, pressureRatio);
    pressure.set(p, unit, keepUnit);
}

void FreezingConditions::setPressureRatio(double ratio)
{
    clear(expansionRatio, pressure);
    pressureRatio.set(ratio);
}

void FreezingConditions::validate()
{
    if (isCalculate() && !isExpansionRatioSet() && !isPressureSet())
        failInvalid("Neither expansion ratio nor pressure is defined within FreezingConditions");
}

void FreezingConditions::fields(Fields& walk)
{
    walk.field(calculate);
    walk.oneOf(expansionRatio, pressure, pressureRatio);
}

} // namespace thermo::input
