#include <ketra/thermo/input/NozzleInletConditions.h>

namespace thermo::input {

void NozzleInletConditions::setContractionAreaRatio(double ratio)
{
    clear(massFlux);
    contractionAreaRatio.set(ratio);
}

void NozzleInletConditions::setMassFlux(double flux, MassFlux::UNITS unit, bool keepUnit)
{
    clear(contractionAreaRatio);
    massFlux.set(flux, unit, keepUnit);
}

void NozzleInletConditions::validate()
{
    if (!isContractionAreaRatioSet() && !isMassFluxSet())
        failInvalid(
            "Neither contraction area ratio nor mass flux is defined within NozzleInletConditions");
}

void NozzleInletConditions::fields(Fields& walk) { walk.oneOf(contractionAreaRatio, massFlux); }

} // namespace thermo::input
