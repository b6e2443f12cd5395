#pragma once

#include <ketra/thermo/input/Choice.h>
#include <ketra/thermo/input/Element.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/RotationalSpeed.h>

namespace thermo::input {

struct TurbineTypes {
    enum TYPE : std::int32_t { SERIAL, SERIAL_OX_FUEL, SERIAL_FUEL_OX, PARALLEL };
    static constexpr const char* what = "turbine connection type";
    // No connection: a turbine must state how it is connected, under the key that it shares with
    // the gas generator, and one that does not is refused as the generator's usual type.
    static constexpr const char* assumed = "fuel-rich";
    // clang-format off
    static constexpr Word<TYPE> table[] = {
        {SERIAL,         {"serial", "serial,auto"}},
        {SERIAL_OX_FUEL, {"serial,ox-fuel"}},
        {SERIAL_FUEL_OX, {"serial,fuel-ox"}},
        {PARALLEL,       {"parallel"}},
    };
    // clang-format on
};

/// A turbine that drives the pumps. An element of the list "turbines".
class KETRA_API TurbineParameters : public Element
{
public:
    using TYPE = TurbineTypes::TYPE;
    using enum TurbineTypes::TYPE;

    TurbineParameters() : Element("") {}

    /// How the turbine is connected with the other one.
    TYPE getType() const { return type.get(); }
    void setType(TYPE newType) { type.set(newType); }
    /// The word of the document for \p wanted.
    static const char* typeToRaw(TYPE wanted) { return Choice<TurbineTypes>::toRaw(wanted); }
    /// The type of connection spelt \p text; logs what it does not know.
    /// \throws Exception 4
    static TYPE rawToType(const char* text) { return Choice<TurbineTypes>::fromRaw(text); }

    /// Pressure ratio of the turbine.
    bool isPiSet() const { return pi.isSet(); }
    double getPi() const { return pi.get(); }
    void setPi(double value) { pi.set(value); }
    void deletePi() { pi.reset(); }

    /// Efficiency of the turbine.
    bool isEtaSet() const { return eta.isSet(); }
    double getEta() const { return eta.get(); }
    void setEta(double value) { eta.set(value); }
    void deleteEta() { eta.reset(); }

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

protected:
    const char* getRawType() const { return typeToRaw(type.get()); }
    /// \throws Exception 4
    void setRawType(const char* text) { type.set(rawToType(text)); }

private:
    void fields(Fields& walk) override;

    Choice<TurbineTypes> type{"ggType", SERIAL};
    OptionalValue<double> pi{"turbinePressureRatio", 2.0, "pPi"};
    OptionalValue<double> eta{"turbineEfficiency", 0.7, "pEta"};
    OptionalQuantity<RotationalSpeed> rotationalSpeed{
        "rotationalSpeed", 0.0, RotationalSpeed::RAD_PER_S, "pRotationalSpeed"};
};

} // namespace thermo::input
