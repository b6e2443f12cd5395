#pragma once

#include <ketra/thermo/input/Element.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Temperature.h>

namespace thermo::input {

/// What a propellant meets on its way: the pump, the valve and the cooling passages. All of it may
/// be absent.
class KETRA_API FeedLineParameters : public Element
{
public:
    using Element::Element;

    /// Efficiency of the pump.
    bool isPumpEtaSet() const { return pumpEta.isSet(); }
    double getPumpEta() const { return pumpEta.get(); }
    void setPumpEta(double value) { pumpEta.set(value); }
    void deletePumpEta() { pumpEta.reset(); }

    /// Pressure drop over the valve; in Pa if \p si, else as stated.
    bool isValveDpSet() const { return valveDp.isSet(); }
    double getValveDp(bool si) const { return valveDp.valueFor(si); }
    double getValveDp(Pressure::UNITS unit) const { return valveDp.get(unit); }
    Pressure::UNITS getValveDpUnit(bool si) const { return valveDp.unitFor(si); }
    void setValveDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        valveDp.set(value, unit, keepUnit);
    }
    void deleteValveDp() { valveDp.reset(); }

    /// Resistance coefficient of the valve.
    bool isValveZetaSet() const { return valveZeta.isSet(); }
    double getValveZeta() const { return valveZeta.get(); }
    void setValveZeta(double value) { valveZeta.set(value); }
    void deleteValveZeta() { valveZeta.reset(); }

    /// Pressure drop over the cooling passages; in Pa if \p si, else as stated.
    bool isCoolingDpSet() const { return coolingDp.isSet(); }
    double getCoolingDp(bool si) const { return coolingDp.valueFor(si); }
    double getCoolingDp(Pressure::UNITS unit) const { return coolingDp.get(unit); }
    Pressure::UNITS getCoolingDpUnit(bool si) const { return coolingDp.unitFor(si); }
    void setCoolingDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        coolingDp.set(value, unit, keepUnit);
    }
    void deleteCoolingDp() { coolingDp.reset(); }

    /// Temperature rise in the cooling passages, converted as a point of the scale; in K if \p si,
    /// else as stated.
    bool isCoolingDtSet() const { return coolingDt.isSet(); }
    double getCoolingDt(bool si) const { return coolingDt.valueFor(si); }
    double getCoolingDt(Temperature::UNITS unit) const { return coolingDt.get(unit); }
    Temperature::UNITS getCoolingDtUnit(bool si) const { return coolingDt.unitFor(si); }
    /// The stated scale stays.
    void setCoolingDt(double value, Temperature::UNITS unit) { coolingDt.set(value, unit); }
    void deleteCoolingDt() { coolingDt.reset(); }

protected:
    /// Makes every member absent.
    void resetLine() { clear(pumpEta, valveDp, valveZeta, coolingDp, coolingDt); }
    void fields(Fields& walk) override;

private:
    OptionalValue<double> pumpEta{"pumpEfficiency", 0.7, "pPumpEta"};
    OptionalQuantity<Pressure> valveDp{"valvePressureDrop", 0.0, Pressure::MPA, "pValveDp"};
    // Looked for as "valveResistanceCoefficient", but its number stands under the key of the pump's
    // efficiency and takes that one's place when it is written. Documents rely on it.
    OptionalValue<double> valveZeta{"pumpEfficiency", 0.0, "pValveZeta"};
    OptionalQuantity<Pressure> coolingDp{"coolingPressureDrop", 0.0, Pressure::MPA, "pCoolingDp"};
    OptionalQuantity<Temperature> coolingDt{"coolingTemperatureRise", 0.0, Temperature::K,
                                            "pCoolingDt"};
};

} // namespace thermo::input
