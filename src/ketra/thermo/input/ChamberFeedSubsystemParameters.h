#pragma once

#include <ketra/thermo/input/FeedLineParameters.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Velocity.h>

namespace thermo::input {

/// How one propellant reaches the chamber, from the inlet of its pump to the injector.
///
/// It reads and writes the group of its side, which it shares with the side's branches and boost
/// pump.
class KETRA_API ChamberFeedSubsystemParameters : public FeedLineParameters
{
public:
    /// \p side is the key of the side, "oxidizerFeedSystem" or "fuelFeedSystem".
    explicit ChamberFeedSubsystemParameters(const char* side) : FeedLineParameters(side) {}

    /// Pressure at the inlet; in Pa if \p si, else as stated.
    double getInletPressure(bool si) const { return inletPressure.valueFor(si); }
    double getInletPressure(Pressure::UNITS unit) const { return inletPressure.get(unit); }
    Pressure::UNITS getInletPressureUnit(bool si) const { return inletPressure.unitFor(si); }
    void setInletPressure(double value, Pressure::UNITS unit, bool keepUnit)
    {
        inletPressure.set(value, unit, keepUnit);
    }

    /// Velocity of the flow at the inlet; in m/s if \p si, else as stated.
    double getInletVelocity(bool si) const { return inletVelocity.valueFor(si); }
    double getInletVelocity(Velocity::UNITS unit) const { return inletVelocity.get(unit); }
    Velocity::UNITS getInletVelocityUnit(bool si) const { return inletVelocity.unitFor(si); }
    void setInletVelocity(double value, Velocity::UNITS unit, bool keepUnit)
    {
        inletVelocity.set(value, unit, keepUnit);
    }

    /// Pressure drop over the injector; in Pa if \p si, else as stated.
    bool isInjectorDpSet() const { return injectorDp.isSet(); }
    /// In the log this one getter speaks of the cooling passages.
    double getInjectorDp(bool si) const { return injectorDp.at("pCoolingDp").valueFor(si); }
    double getInjectorDp(Pressure::UNITS unit) const { return injectorDp.get(unit); }
    Pressure::UNITS getInjectorDpUnit(bool si) const { return injectorDp.unitFor(si); }
    void setInjectorDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        injectorDp.set(value, unit, keepUnit);
    }
    void deleteInjectorDp() { injectorDp.reset(); }

    /// Flow coefficient of the injector.
    bool isInjectorMuSet() const { return injectorMu.isSet(); }
    double getInjectorMu() const { return injectorMu.get(); }
    void setInjectorMu(double value) { injectorMu.set(value); }
    void deleteInjectorMu() { injectorMu.reset(); }

    /// The default inlet pressure and velocity in their stated units, and nothing else.
    void reset();

protected:
    void fields(Fields& walk) override;

private:
    static constexpr double defaultInletPressure = 0.3; // MPa
    static constexpr double defaultInletVelocity = 5.0; // m/s

    Pressure inletPressure{"inletPressure", defaultInletPressure, Pressure::MPA};
    Velocity inletVelocity{"inletVelocity", defaultInletVelocity, Velocity::M_PER_S};
    OptionalQuantity<Pressure> injectorDp{"injectorPressureDrop", 0.0, Pressure::MPA,
                                          "pInjectorDp"};
    OptionalValue<double> injectorMu{"injectorFlowCoefficient", 0.0, "pInjectorMu"};
};

} // namespace thermo::input
