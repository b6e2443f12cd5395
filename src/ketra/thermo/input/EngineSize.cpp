#include <ketra/thermo/input/EngineSize.h>

namespace thermo::input {

void EngineSize::setThrust(double F, Force::UNITS unit, bool keepUnit)
{
    input::clear(mdot, throatD);
    thrust.setWithDefault(F, unit, keepUnit);
}

void EngineSize::setAmbientPressure(double p, Pressure::UNITS unit, bool keepUnit)
{
    ambientPressure.setWithDefault(p, unit, keepUnit);
}

void EngineSize::setMdot(double rate, MassFlowRate::UNITS unit, bool keepUnit)
{
    input::clear(thrust, ambientPressure, throatD);
    mdot.setWithDefault(rate, unit, keepUnit);
}

void EngineSize::setThroatD(double D, Length::UNITS unit, bool keepUnit)
{
    input::clear(thrust, ambientPressure, mdot);
    throatD.setWithDefault(D, unit, keepUnit);
}

void EngineSize::clear()
{
    input::clear(thrust, ambientPressure, mdot, throatD);
    chambersNo.set(1);
    chamberGeometry.clear();
}

// A geometry may be missing from a document, and is written for an engine that has a size.
void EngineSize::fields(Fields& walk)
{
    walk.each(thrust, ambientPressure, mdot, throatD, chambersNo);
    if (walk.isReading() || isThrustSet() || isMdotSet() || isThroatDSet())
        walk.ifThere(chamberGeometry);
}

} // namespace thermo::input
