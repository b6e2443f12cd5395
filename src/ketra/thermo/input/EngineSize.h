#pragma once

#include <ketra/thermo/input/ChamberGeometry.h>
#include <ketra/thermo/input/Force.h>
#include <ketra/thermo/input/MassFlowRate.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/Pressure.h>

namespace thermo::input {

/// How big the engine is: by thrust, by mass flow rate or by throat diameter, and the geometry of
/// its chamber. A document can state several of them; setting one drops the others.
///
/// A quantity that a setter brings up has the given value as its default: a document that holds
/// only what differs from the defaults names it without its value.
class KETRA_API EngineSize : public Section
{
public:
    EngineSize() : Section("engineSize") {}

    /// Thrust; in N if \p si, else as stated.
    bool isThrustSet() const { return thrust.isSet(); }
    double getThrust(bool si) const { return thrust.valueFor(si); }
    double getThrust(Force::UNITS unit) const { return thrust.get(unit); }
    Force::UNITS getThrustUnit(bool si) const { return thrust.unitFor(si); }
    /// Drops flow rate and throat diameter; the ambient pressure belongs to the thrust and stays.
    void setThrust(double F, Force::UNITS unit, bool keepUnit);
    void deleteThrust() { thrust.reset(); }

    /// Ambient pressure at which the thrust is meant; in Pa if \p si, else as stated.
    bool isAmbientPressureSet() const { return ambientPressure.isSet(); }
    double getAmbientPressure(bool si) const { return ambientPressure.valueFor(si); }
    double getAmbientPressure(Pressure::UNITS unit) const { return ambientPressure.get(unit); }
    Pressure::UNITS getAmbientPressureUnit(bool si) const { return ambientPressure.unitFor(si); }
    void setAmbientPressure(double p, Pressure::UNITS unit, bool keepUnit);
    void deleteAmbientPressure() { ambientPressure.reset(); }

    /// Mass flow rate of the propellant; in kg/s if \p si, else as stated.
    bool isMdotSet() const { return mdot.isSet(); }
    double getMdot(bool si) const { return mdot.valueFor(si); }
    double getMdot(MassFlowRate::UNITS unit) const { return mdot.get(unit); }
    MassFlowRate::UNITS getMdotUnit(bool si) const { return mdot.unitFor(si); }
    /// Drops thrust, ambient pressure and throat diameter.
    void setMdot(double rate, MassFlowRate::UNITS unit, bool keepUnit);
    void deleteMdot() { mdot.reset(); }

    /// Diameter of the throat; in m if \p si, else as stated.
    bool isThroatDSet() const { return throatD.isSet(); }
    double getThroatD(bool si) const { return throatD.valueFor(si); }
    double getThroatD(Length::UNITS unit) const { return throatD.get(unit); }
    Length::UNITS getThroatDUnit(bool si) const { return throatD.unitFor(si); }
    /// Drops thrust, ambient pressure and flow rate.
    void setThroatD(double D, Length::UNITS unit, bool keepUnit);
    void deleteThroatD() { throatD.reset(); }

    /// Number of chambers.
    int getChambersNo() const { return chambersNo.get(); }
    void setChambersNo(int n) { chambersNo.set(n); }

    ChamberGeometry& getChamberGeometry() { return chamberGeometry; }
    const ChamberGeometry& getChamberGeometry() const { return chamberGeometry; }

    /// No size, one chamber, and a cleared geometry.
    void clear();

    void validate() override { chamberGeometry.validate(); }

private:
    void fields(Fields& walk) override;

    OptionalQuantity<Force> thrust{"thrust", 1.0, Force::N, "thrust"};
    OptionalQuantity<Pressure> ambientPressure{"ambientConditions", 1.0, Pressure::PA,
                                               "ambient pressure"};
    OptionalQuantity<MassFlowRate> mdot{"flowrate", 1.0, MassFlowRate::KG_PER_S, "mass flow rate"};
    OptionalQuantity<Length> throatD{"throatDiameter", 1.0, Length::M, "nozzle throat diam"};
    DataValue<int> chambersNo{"chambersNo", 1};
    ChamberGeometry chamberGeometry;
};

} // namespace thermo::input
