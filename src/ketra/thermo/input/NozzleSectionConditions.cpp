#include <ketra/thermo/input/NozzleSectionConditions.h>

namespace thermo::input {

void NozzleSectionConditions::setAreaRatio(double ratio, bool supersonic)
{
    clear(pressureRatio, pressure);
    areaRatio.set(ratio);
    superSonic.set(supersonic);
}

void NozzleSectionConditions::deleteAreaRatio()
{
    areaRatio.reset();
    superSonic.set(superSonic.getDefault());
}

void NozzleSectionConditions::setPressureRatio(double ratio)
{
    deleteAreaRatio();
    clear(pressure);
    pressureRatio.set(ratio);
}

void NozzleSectionConditions::setPressure(double p, Pressure::UNITS unit, bool keepUnit)
{
    deleteAreaRatio();
    clear(pressureRatio);
    pressure.set(p, unit, keepUnit);
}

void NozzleSectionConditions::validate()
{
    if (!isAreaRatio() && !isPressureRatio() && !isPressure())
        failInvalid("Neither area ratio, pressure ratio nor pressure is defined within "
                    "NozzleSectionConditions");
}

// An area ratio that does not say its side of the throat is supersonic, whatever was set before.
void NozzleSectionConditions::read(const libconfig::Setting& parent)
{
    superSonic.set(superSonic.getDefault());
    Section::read(parent);
}

void NozzleSectionConditions::fields(Fields& walk)
{
    if (walk.field(areaRatio))
        walk.field(superSonic);
    else
        walk.oneOf(pressureRatio, pressure);
}

} // namespace thermo::input
