#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// Which phenomena the calculation takes into account.
class KETRA_API GeneralOptions : public Section
{
public:
    GeneralOptions() : Section("generalOptions") {}

    /// Condensed species are considered.
    bool isMultiphase() const { return multiphase.get(); }
    void setMultiphase(bool consider) { multiphase.set(consider); }
    /// Ions are considered.
    bool isIons() const { return ions.get(); }
    void setIons(bool consider) { ions.set(consider); }
    /// The flow may separate from the nozzle wall.
    bool isFlowSeparation() const { return flowSeparation.get(); }
    void setFlowSeparation(bool consider) { flowSeparation.set(consider); }

private:
    void fields(Fields& walk) override;

    DataValue<bool> multiphase{"multiphase", true};
    DataValue<bool> ions{"ions", true};
    DataValue<bool> flowSeparation{"flowSeparation", true};
};

} // namespace thermo::input
