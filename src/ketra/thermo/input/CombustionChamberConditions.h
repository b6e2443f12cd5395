#pragma once

#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// The state in the combustion chamber.
class KETRA_API CombustionChamberConditions : public Section
{
public:
    CombustionChamberConditions() : Section("combustionChamberConditions") {}

    /// Chamber pressure; in Pa if \p si, else as stated.
    double getPressure(bool si) const { return pressure.valueFor(si); }
    double getPressure(Pressure::UNITS unit) const { return pressure.get(unit); }
    Pressure::UNITS getPressureUnit(bool si) const { return pressure.unitFor(si); }
    void setPressure(double p, Pressure::UNITS unit, bool keepUnit)
    {
        pressure.set(p, unit, keepUnit);
    }

private:
    void fields(Fields& walk) override;

    Pressure pressure{"pressure", 0.0, Pressure::MPA};
};

} // namespace thermo::input
