#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// The point from which on the composition of the flow stays as it is: by area ratio, by pressure
/// or by pressure ratio, one of them.
class KETRA_API FreezingConditions : public Section
{
public:
    FreezingConditions() : Section("freezingConditions") {}

    /// The flow beyond the point is calculated as frozen.
    bool isCalculate() const { return calculate.get(); }
    void setCalculate(bool frozen) { calculate.set(frozen); }

    /// Area over throat area at which the flow freezes.
    bool isExpansionRatioSet() const { return expansionRatio.isSet(); }
    double getExpansionRatio() const
    {
        return expansionRatio.at("area ratio from freezing conditions").get();
    }
    void setExpansionRatio(double ratio);
    void deleteExpansionRatio() { expansionRatio.reset(); }

    /// Pressure at which the flow freezes; in Pa if \p si, else as stated.
    bool isPressureSet() const { return pressure.isSet(); }
    double getPressure(bool si) const { return requirePressure().valueFor(si); }
    double getPressure(Pressure::UNITS unit) const { return requirePressure().get(unit); }
    /// \throws Exception 2 without a line in the log while no pressure is set
    Pressure::UNITS getPressureUnit(bool si) const { return pressure.at().unitFor(si); }
    void setPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deletePressure() { pressure.reset(); }

    /// Chamber pressure over the pressure at which the flow freezes.
    bool isPressureRatioSet() const { return pressureRatio.isSet(); }
    double getPressureRatio() const
    {
        return pressureRatio.at("pressure ratio from freezing conditions").get();
    }
    void setPressureRatio(double ratio);
    void deletePressureRatio() { pressureRatio.reset(); }

    /// A frozen calculation needs an expansion ratio or a pressure; a pressure ratio alone does not
    /// do, though the document has the key.
    /// \throws Exception 7
    void validate() override;

private:
    void fields(Fields& walk) override;
    const Pressure& requirePressure() const
    {
        return pressure.at("pressure from freezing conditions");
    }

    DataValue<bool> calculate{"calculate", false};
    Optional<DataValue<double>> expansionRatio{"expansionRatio", 0.0};
    Optional<Pressure> pressure{"pressure", 0.0, Pressure::PA};
    Optional<DataValue<double>> pressureRatio{"pressureRatio", 0.0};
};

} // namespace thermo::input
