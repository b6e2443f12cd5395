#pragma once

#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// How the flow enters the nozzle: by contraction area ratio or by mass flux, not both.
class KETRA_API NozzleInletConditions : public Section
{
public:
    NozzleInletConditions() : Section("nozzleInletConditions") {}

    /// Nozzle inlet area over throat area.
    bool isContractionAreaRatioSet() const { return contractionAreaRatio.isSet(); }
    double getContractionAreaRatio() const { return contractionAreaRatio.get(); }
    void setContractionAreaRatio(double ratio);
    void deleteContractionAreaRatio() { contractionAreaRatio.reset(); }

    /// Mass flux at the nozzle inlet; in kg/(m2 s) if \p si, else as stated.
    bool isMassFluxSet() const { return massFlux.isSet(); }
    double getMassFlux(bool si) const { return massFlux.valueFor(si); }
    double getMassFlux(MassFlux::UNITS unit) const { return massFlux.get(unit); }
    MassFlux::UNITS getMassFluxUnit(bool si) const { return massFlux.unitFor(si); }
    void setMassFlux(double flux, MassFlux::UNITS unit, bool keepUnit);
    void deleteMassFlux() { massFlux.reset(); }

    /// \throws Exception 7 if neither is set
    void validate() override;

private:
    void fields(Fields& walk) override;

    OptionalValue<double> contractionAreaRatio{"contractionAreaRatio", 0.0,
                                               "contraction area ratio"};
    OptionalQuantity<MassFlux> massFlux{"massFlux", 0.0, MassFlux::KG_PER_M2_S, "mass flux",
                                        "mass flux units"};
};

} // namespace thermo::input
