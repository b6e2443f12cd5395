#pragma once

#include <ketra/thermo/input/BranchParameters.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>

namespace thermo::input {

/// The line that feeds a gas generator with one of its propellants.
class KETRA_API GasGeneratorBranchParameters : public BranchParameters
{
public:
    /// Pressure drop over the pipe; in Pa if \p si, else as stated.
    double getPipeDp(bool si) const { return pipeDp.valueFor(si); }
    double getPipeDp(Pressure::UNITS unit) const { return pipeDp.get(unit); }
    Pressure::UNITS getPipeDpUnit(bool si) const { return pipeDp.unitFor(si); }
    void setPipeDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        pipeDp.set(value, unit, keepUnit);
    }

    /// Pressure drop over the injector; in Pa if \p si, else as stated.
    double getInjectorDp(bool si) const { return injectorDp.valueFor(si); }
    double getInjectorDp(Pressure::UNITS unit) const { return injectorDp.get(unit); }
    Pressure::UNITS getInjectorDpUnit(bool si) const { return injectorDp.unitFor(si); }
    void setInjectorDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        injectorDp.set(value, unit, keepUnit);
    }

    /// Flow coefficient of the injector.
    double getInjectorMu() const { return injectorMu.get(); }
    void setInjectorMu(double value) { injectorMu.set(value); }

protected:
    void fields(Fields& walk) override;

private:
    OptionalQuantity<Pressure> pipeDp{"pipeDp", 0.0, Pressure::MPA, "pPipeDp"};
    OptionalQuantity<Pressure> injectorDp{"injectorPressureDrop", 0.0, Pressure::MPA,
                                          "pInjectorDp"};
    OptionalValue<double> injectorMu{"injectorFlowCoefficient", 0.0, "pInjectorMu"};
};

} // namespace thermo::input
