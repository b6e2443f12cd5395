#pragma once

#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// Where in the nozzle a section stands: by area ratio, by pressure ratio or by pressure, one of
/// them. The nozzle exit is such a section, and so is each of the nozzle stations.
class KETRA_API NozzleSectionConditions : public Section
{
public:
    explicit NozzleSectionConditions(const char* key = "nozzleExitConditions") : Section(key) {}

    /// Section area over throat area.
    bool isAreaRatio() const { return areaRatio.isSet(); }
    double getAreaRatio() const { return areaRatio.get(); }
    /// Behind the throat, or before it; true without an area ratio.
    bool isSuperSonicAreaRatio() const { return superSonic.get(); }
    /// \p supersonic tells on which side of the throat the area ratio lies.
    void setAreaRatio(double ratio, bool supersonic);
    void deleteAreaRatio();

    /// Chamber pressure over section pressure.
    bool isPressureRatio() const { return pressureRatio.isSet(); }
    double getPressureRatio() const { return pressureRatio.get(); }
    void setPressureRatio(double ratio);
    void deletePressureRatio() { pressureRatio.reset(); }

    /// Section pressure; in Pa if \p si, else as stated.
    bool isPressure() const { return pressure.isSet(); }
    double getPressure(bool si) const { return pressure.valueFor(si); }
    double getPressure(Pressure::UNITS unit) const { return pressure.get(unit); }
    Pressure::UNITS getPressureUnit(bool si) const { return pressure.unitFor(si); }
    void setPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deletePressure() { pressure.reset(); }

    /// \throws Exception 7 if none of the three is set
    void validate() override;
    void read(const libconfig::Setting& parent) override;

private:
    void fields(Fields& walk) override;

    OptionalValue<double> areaRatio{"areaRatio", 0.0, "area ratio for nozzle section conditions"};
    DataValue<bool> superSonic{"supersonic", true}; // in the document only beside an area ratio
    OptionalValue<double> pressureRatio{"pressureRatio", 0.0,
                                        "pressure ratio for nozzle section conditions"};
    OptionalQuantity<Pressure> pressure{"pressure", 0.0, Pressure::PA,
                                        "pressure for nozzle section conditions",
                                        "pressure unit for nozzle section conditions"};
};

} // namespace thermo::input
