#pragma once

#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/RotationalSpeed.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// A pump ahead of the main pump, which saves that one from cavitation, and the turbine that drives
/// it.
class KETRA_API BoostPumpParameters : public Section
{
public:
    BoostPumpParameters() : Section("boosterPump") {}

    /// Pressure at the inlet; in Pa if \p si, else as stated.
    double getInletPressure(bool si) const { return inletPressure.valueFor(si); }
    double getInletPressure(Pressure::UNITS unit) const { return inletPressure.get(unit); }
    Pressure::UNITS getInletPressureUnit(bool si) const { return inletPressure.unitFor(si); }
    void setInletPressure(double value, Pressure::UNITS unit, bool keepUnit)
    {
        inletPressure.set(value, unit, keepUnit);
    }

    /// Pressure behind the pump; in Pa if \p si, else as stated.
    double getDischargePressure(bool si) const { return dischargePressure.valueFor(si); }
    double getDischargePressure(Pressure::UNITS unit) const { return dischargePressure.get(unit); }
    Pressure::UNITS getDischargePressureUnit(bool si) const
    {
        return dischargePressure.unitFor(si);
    }
    void setDischargePressure(double value, Pressure::UNITS unit, bool keepUnit)
    {
        dischargePressure.set(value, unit, keepUnit);
    }

    /// Efficiency of the pump.
    bool isPumpEtaSet() const { return pumpEta.isSet(); }
    double getPumpEta() const { return pumpEta.get(); }
    void setPumpEta(double value) { pumpEta.set(value); }
    void deletePumpEta() { pumpEta.reset(); }

    /// The turbine is driven by liquid from behind the main pump, not by gas.
    bool isHydraulicTurbineSet() const { return hydraulicTurbine.isSet(); }
    bool getHydraulicTurbine() const { return hydraulicTurbine.get(); }
    void setHydraulicTurbine(bool value) { hydraulicTurbine.set(value); }
    void deleteHydraulicTurbine() { hydraulicTurbine.reset(); }

    /// Pressure ratio of the turbine.
    bool isTurbinePiSet() const { return turbinePi.isSet(); }
    double getTurbinePi() const { return turbinePi.get(); }
    void setTurbinePi(double value) { turbinePi.set(value); }
    void deleteTurbinePi() { turbinePi.reset(); }

    /// Efficiency of the turbine.
    bool isTurbineEtaSet() const { return turbineEta.isSet(); }
    double getTurbineEta() const { return turbineEta.get(); }
    void setTurbineEta(double value) { turbineEta.set(value); }
    void deleteTurbineEta() { turbineEta.reset(); }

    /// Rotational speed; in rad/s if \p si, else as stated.
    bool isRotationalSpeedSet() const { return rotationalSpeed.isSet(); }
    /// In the log this one getter speaks of the cooling passages.
    double getRotationalSpeed(bool si) const
    {
        return rotationalSpeed.at("pCoolingDp").valueFor(si);
    }
    double getRotationalSpeed(RotationalSpeed::UNITS unit) const
    {
        return rotationalSpeed.get(unit);
    }
    RotationalSpeed::UNITS getRotationalSpeedUnit(bool si) const
    {
        return rotationalSpeed.unitFor(si);
    }
    void setRotationalSpeed(double value, RotationalSpeed::UNITS unit, bool keepUnit)
    {
        rotationalSpeed.set(value, unit, keepUnit);
    }
    void deleteRotationalSpeed() { rotationalSpeed.reset(); }

private:
    void fields(Fields& walk) override;

    Pressure inletPressure{"inletPressure", 0.3, Pressure::MPA};
    Pressure dischargePressure{"dischargePressure", 1.5, Pressure::MPA};
    OptionalValue<double> pumpEta{"pumpEfficiency", 0.7, "pPumpEta"};
    OptionalValue<bool> hydraulicTurbine{"hydraulicTurbine", true, "pHydraulicTurbine"};
    OptionalValue<double> turbinePi{"turbinePressureRatio", 5.0, "pTurbinePi"};
    OptionalValue<double> turbineEta{"turbineEfficiency", 0.7, "pTurbineEta"};
    OptionalQuantity<RotationalSpeed> rotationalSpeed{
        "rotationalSpeed", 0.0, RotationalSpeed::RAD_PER_S, "pRotationalSpeed"};
};

} // namespace thermo::input
