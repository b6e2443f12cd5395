#pragma once

#include <ketra/thermo/input/CoolingSection.h>

namespace thermo::input {

/// A section whose wall is cooled by its own radiation to the outside.
class KETRA_API RadiationCooling : public CoolingSection
{
public:
    RadiationCooling() : CoolingSection("radiationCooling") {}

    /// Emissivity of the cold side of the wall.
    double getSurfaceEmissivity() const { return emissivity.get(); }
    void setSurfaceEmissivity(double e) { emissivity.set(e); }

protected:
    void fields(Fields& walk) override;

private:
    DataValue<double> emissivity{"coldSideWallSurfaceEmissivity", 0.8};
};

} // namespace thermo::input
