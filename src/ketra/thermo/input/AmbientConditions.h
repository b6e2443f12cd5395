#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Optional.h>
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
    double getFixedPressure(bool si) const
    {
        return fixedPressure.at("fixed pressure").valueFor(si);
    }
    double getFixedPressure(Pressure::UNITS unit) const
    {
        return fixedPressure.at("fixed pressure").get(unit);
    }
    Pressure::UNITS getFixedPressureUnit(bool si) const
    {
        return fixedPressure.at("fixed pressure unit").unitFor(si);
    }
    /// Drops the range.
    void setFixedPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deleteFixedPressure() { fixedPressure.reset(); }

    /// Both ends of the range are set.
    bool isRangePressureSet() const { return minPressure.isSet() && maxPressure.isSet(); }

    /// Lower end of the range; in Pa if \p si, else as stated.
    double getRangePressureMin(bool si) const
    {
        return minPressure.at("minimum ambient pressure").valueFor(si);
    }
    double getRangePressureMin(Pressure::UNITS unit) const
    {
        return minPressure.at("minimum ambient pressure").get(unit);
    }
    Pressure::UNITS getRangePressureMinUnit(bool si) const
    {
        return minPressure.at("minimum ambient pressure unit").unitFor(si);
    }
    /// Drops the one pressure.
    void setRangePressureMin(double p, Pressure::UNITS unit, bool keepUnit);

    /// Upper end of the range; in Pa if \p si, else as stated.
    double getRangePressureMax(bool si) const
    {
        return maxPressure.at("maximum ambient pressure").valueFor(si);
    }
    double getRangePressureMax(Pressure::UNITS unit) const
    {
        return maxPressure.at("maximum ambient pressure").get(unit);
    }
    Pressure::UNITS getRangePressureMaxUnit(bool si) const
    {
        return maxPressure.at("maximum ambient pressure unit").unitFor(si);
    }
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

    Optional<Pressure> fixedPressure{"pressure", 0.0, Pressure::PA};
    Optional<Pressure> minPressure{"minPressure", 0.0, Pressure::PA};
    Optional<Pressure> maxPressure{"maxPressure", 0.0, Pressure::PA};
    DataValue<bool> deliveredPerformance{"calculateDeliveredPerformance", true};
};

} // namespace thermo::input
