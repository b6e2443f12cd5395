#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// How the flow enters the nozzle: by contraction area ratio or by mass flux, not both.
class KETRA_API NozzleInletConditions : public Section
{
public:
    NozzleInletConditions() : Section("nozzleInletConditions") {}

    /// Nozzle inlet area over throat area.
    bool isContractionAreaRatioSet() const { return contractionAreaRatio.isSet(); }
    double getContractionAreaRatio() const
    {
        return contractionAreaRatio.at("contraction area ratio").get();
    }
    void setContractionAreaRatio(double ratio);
    void deleteContractionAreaRatio() { contractionAreaRatio.reset(); }

    /// Mass flux at the nozzle inlet; in kg/(m2 s) if \p si, else as stated.
    bool isMassFluxSet() const { return massFlux.isSet(); }
    double getMassFlux(bool si) const { return massFlux.at("mass flux").valueFor(si); }
    double getMassFlux(MassFlux::UNITS unit) const { return massFlux.at("mass flux").get(unit); }
    MassFlux::UNITS getMassFluxUnit(bool si) const
    {
        return massFlux.at("mass flux units").unitFor(si);
    }
    void setMassFlux(double flux, MassFlux::UNITS unit, bool keepUnit);
    void deleteMassFlux() { massFlux.reset(); }

    /// \throws Exception 7 if neither is set
    void validate() override;

private:
    void fields(Fields& walk) override;

    Optional<DataValue<double>> contractionAreaRatio{"contractionAreaRatio", 0.0};
    Optional<MassFlux> massFlux{"massFlux", 0.0, MassFlux::KG_PER_M2_S};
};

} // namespace thermo::input
