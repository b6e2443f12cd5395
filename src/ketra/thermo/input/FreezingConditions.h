#pragma once

#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
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
    double getExpansionRatio() const { return expansionRatio.get(); }
    void setExpansionRatio(double ratio);
    void deleteExpansionRatio() { expansionRatio.reset(); }

    /// Pressure at which the flow freezes; in Pa if \p si, else as stated.
    bool isPressureSet() const { return pressure.isSet(); }
    double getPressure(bool si) const { return pressure.valueFor(si); }
    double getPressure(Pressure::UNITS unit) const { return pressure.get(unit); }
    /// \throws Exception 2 without a line in the log while no pressure is set
    Pressure::UNITS getPressureUnit(bool si) const { return pressure.unitFor(si); }
    void setPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deletePressure() { pressure.reset(); }

    /// Chamber pressure over the pressure at which the flow freezes.
    bool isPressureRatioSet() const { return pressureRatio.isSet(); }
    double getPressureRatio() const { return pressureRatio.get(); }
    void setPressureRatio(double ratio);
    void deletePressureRatio() { pressureRatio.reset(); }

    /// A frozen calculation needs an expansion ratio or a pressure; a pressure ratio alone does not
    /// do, though the document has the key.
    /// \throws Exception 7
    void validate() override;

private:
    void fields(Fields& walk) override;

    DataValue<bool> calculate{"calculate", false};
    OptionalValue<double> expansionRatio{"expansionRatio", 0.0,
                                         "area ratio from freezing conditions"};
    OptionalQuantity<Pressure> pressure{"pressure", 0.0, Pressure::PA,
                                        "pressure from freezing conditions", ""};
    OptionalValue<double> pressureRatio{"pressureRatio", 0.0,
                                        "pressure ratio from freezing conditions"};
};

} // namespace thermo::input
