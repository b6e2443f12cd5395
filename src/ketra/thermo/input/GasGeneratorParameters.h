#pragma once

#include <ketra/thermo/input/Choice.h>
#include <ketra/thermo/input/Element.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Temperature.h>

namespace thermo::input {

struct GasGeneratorTypes {
    enum TYPE : std::int32_t { OXIDIZER_RICH, FUEL_RICH };
    static constexpr const char* what = "gas generator type";
    static constexpr const char* assumed = "fuel-rich";
    // clang-format off
    static constexpr Word<TYPE> table[] = {
        {OXIDIZER_RICH, {"oxidizer-rich", "oxidizerRich"}},
        {FUEL_RICH,     {"fuel-rich", "fuelRich"}},
    };
    // clang-format on
};

/// A gas generator, which makes the gas for the turbines. An element of the list "gasGenerators".
class KETRA_API GasGeneratorParameters : public Element
{
public:
    using TYPE = GasGeneratorTypes::TYPE;
    using enum GasGeneratorTypes::TYPE;

    GasGeneratorParameters() : Element("") {}

    /// Which propellant there is too much of.
    TYPE getType() const { return type.get(); }
    void setType(TYPE newType) { type.set(newType); }
    /// The word of the document for \p wanted.
    static const char* typeToRaw(TYPE wanted) { return Choice<GasGeneratorTypes>::toRaw(wanted); }
    /// The type spelt \p text; logs what it does not know.
    /// \throws Exception 4
    static TYPE rawToType(const char* text) { return Choice<GasGeneratorTypes>::fromRaw(text); }

    /// Pressure in the generator; in Pa if \p si, else as stated.
    bool isPressureSet() const { return pressure.isSet(); }
    double getPressure(bool si) const { return pressure.valueFor(si); }
    double getPressure(Pressure::UNITS unit) const { return pressure.get(unit); }
    Pressure::UNITS getPressureUnit(bool si) const { return pressure.unitFor(si); }
    void setPressure(double value, Pressure::UNITS unit, bool keepUnit)
    {
        pressure.set(value, unit, keepUnit);
    }
    void deletePressure() { pressure.reset(); }

    /// Coefficient of total pressure recovery.
    bool isSigmaSet() const { return sigma.isSet(); }
    double getSigma() const { return sigma.get(); }
    void setSigma(double value) { sigma.set(value); }
    void deleteSigma() { sigma.reset(); }

    /// Highest temperature of the gas; in K if \p si, else as stated.
    bool isTmaxSet() const { return Tmax.isSet(); }
    double getTmax(bool si) const { return Tmax.valueFor(si); }
    double getTmax(Temperature::UNITS unit) const { return Tmax.get(unit); }
    Temperature::UNITS getTmaxUnit(bool si) const { return Tmax.unitFor(si); }
    /// The stated scale stays.
    void setTmax(double value, Temperature::UNITS unit) { Tmax.set(value, unit); }
    void deleteTmax() { Tmax.reset(); }

protected:
    const char* getRawType() const { return typeToRaw(type.get()); }
    /// \throws Exception 4
    void setRawType(const char* text) { type.set(rawToType(text)); }

private:
    void fields(Fields& walk) override;

    Choice<GasGeneratorTypes> type{"ggType", FUEL_RICH};
    OptionalQuantity<Pressure> pressure{"pressure", 0.0, Pressure::MPA, "pPressure"};
    OptionalValue<double> sigma{"sigma", 0.9, "pSigma"};
    OptionalQuantity<Temperature> Tmax{"maxTemperature", 700.0, Temperature::K, "pTmax"};
};

} // namespace thermo::input
