#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// The pressure around the engine: one pressure, or a range of pressures.
class KETRA_API AmbientConditions : public Section
{
public:
    AmbientConditions() : Section("ambientConditions") {}

    /// The one ambient pressure; in Pa if \p si, else as stated.
    bool isFixedPressureSet() const { return fixedPressure.isSet(); }
    double getFixedPressure(bool si) const { return fixedPressure.valueFor(si); }
    double getFixedPressure(Pressure::UNITS unit) const { return fixedPressure.get(unit); }
    Pressure::UNITS getFixedPressureUnit(bool si) const { return fixedPressure.unitFor(si); }
    /// Drops the range.
    void setFixedPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deleteFixedPressure() { fixedPressure.reset(); }

    /// Both ends of the range are set.
    bool isRangePressureSet() const { return minPressure.isSet() && maxPressure.isSet(); }

    /// Lower end of the range; in Pa if \p si, else as stated.
    double getRangePressureMin(bool si) const { return minPressure.valueFor(si); }
    double getRangePressureMin(Pressure::UNITS unit) const { return minPressure.get(unit); }
    Pressure::UNITS getRangePressureMinUnit(bool si) const { return minPressure.unitFor(si); }
    /// Drops the one pressure.
    void setRangePressureMin(double p, Pressure::UNITS unit, bool keepUnit);

    /// Upper end of the range; in Pa if \p si, else as stated.
    double getRangePressureMax(bool si) const { return maxPressure.valueFor(si); }
    double getRangePressureMax(Pressure::UNITS unit) const { return maxPressure.get(unit); }
    Pressure::UNITS getRangePressureMaxUnit(bool si) const { return maxPressure.unitFor(si); }
    /// Drops the one pressure.
    void setRangePressureMax(double p, Pressure::UNITS unit, bool keepUnit);
    void deleteRangePressure() { clear(minPressure, maxPressure); }

    /// The delivered performance is calculated at these pressures.
    bool isDeliveredPerformance() const { return deliveredPerformance.get(); }
    void setDeliveredPerformance(bool calculate) { deliveredPerformance.set(calculate); }

    /// \throws Exception 7 if neither a pressure nor a whole range is set
    void validate() override;

private:
    void fields(Fields& walk) override;

    OptionalQuantity<Pressure> fixedPressure{"pressure", 0.0, Pressure::PA, "fixed pressure"};
    OptionalQuantity<Pressure> minPressure{"minPressure", 0.0, Pressure::PA,
                                           "minimum ambient pressure"};
    OptionalQuantity<Pressure> maxPressure{"maxPressure", 0.0, Pressure::PA,
                                           "maximum ambient pressure"};
    DataValue<bool> deliveredPerformance{"calculateDeliveredPerformance", true};
};

} // namespace thermo::input
