#pragma once

#include <ketra/thermo/input/FeedLineParameters.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>

namespace thermo::input {

/// A line that branches off on the way of a propellant: where it leaves and ends, how much it takes
/// and what it meets. An element of the list "branches" of its side.
class KETRA_API BranchParameters : public FeedLineParameters
{
public:
    BranchParameters() : FeedLineParameters("") {}

    /// The name by which other branches refer to this one.
    const std::string& getName() const override { return name.get(); }
    void setName(const std::string& text) { name.set(text); }

    /// Flow rate, a plain number of the document.
    bool isMdotSet() const { return mdot.isSet(); }
    double getMdot() const { return mdot.get(); }
    void setMdot(double value) { mdot.set(value); }
    void deleteMdot() { mdot.reset(); }

    /// Pressure behind the pump; in Pa if \p si, else as stated.
    bool isDischargePressureSet() const { return dischargePressure.isSet(); }
    double getDischargePressure(bool si) const { return dischargePressure.valueFor(si); }
    double getDischargePressure(Pressure::UNITS unit) const { return dischargePressure.get(unit); }
    Pressure::UNITS getDischargePressureUnit(bool si) const
    {
        return dischargePressure.unitFor(si);
    }
    void setDischargePressure(double value, Pressure::UNITS unit, bool keepUnit)
    {
        dischargePressure.set(value, unit, keepUnit);
    }
    void deleteDischargePressure() { dischargePressure.reset(); }

    /// Area ratio.
    bool isAbarSet() const { return Abar.isSet(); }
    double getAbar() const { return Abar.get(); }
    void setAbar(double value) { Abar.set(value); }
    void deleteAbar() { Abar.reset(); }

    /// A fixed pressure drop; in Pa if \p si, else as stated.
    bool isFixedDpSet() const { return fixedDp.isSet(); }
    double getFixedDp(bool si) const { return fixedDp.valueFor(si); }
    double getFixedDp(Pressure::UNITS unit) const { return fixedDp.get(unit); }
    Pressure::UNITS getFixedDpUnit(bool si) const { return fixedDp.unitFor(si); }
    void setFixedDp(double value, Pressure::UNITS unit, bool keepUnit)
    {
        fixedDp.set(value, unit, keepUnit);
    }
    void deleteFixedDp() { fixedDp.reset(); }

    /// A fixed pressure ratio.
    bool isFixedPiSet() const { return fixedPi.isSet(); }
    double getFixedPi() const { return fixedPi.get(); }
    void setFixedPi(double value) { fixedPi.set(value); }
    void deleteFixedPi() { fixedPi.reset(); }

    /// Name of the branch at which this one begins.
    bool isConnectToSet() const { return connectTo.isSet(); }
    const std::string& getConnectTo() const { return connectTo.get(); }
    void setConnectTo(const std::string& text) { connectTo.set(text); }
    void deleteConnectTo() { connectTo.reset(); }

    /// Name of the branch into which this one flows.
    bool isDischargeToSet() const { return dischargeTo.isSet(); }
    const std::string& getDischargeTo() const { return dischargeTo.get(); }
    void setDischargeTo(const std::string& text) { dischargeTo.set(text); }
    void deleteDischargeTo() { dischargeTo.reset(); }

protected:
    void fields(Fields& walk) override;

private:
    DataValue<std::string> name{"name", ""};
    OptionalValue<double> mdot{"flowrate", 0.0, "pMdot"};
    OptionalQuantity<Pressure> dischargePressure{"dischargePressure", 0.0, Pressure::MPA,
                                                 "pDischargePressure"};
    OptionalValue<double> Abar{"areaRatio", 0.0, "pAbar"};
    OptionalQuantity<Pressure> fixedDp{"fixedPressureDrop", 0.0, Pressure::MPA, "pFixedDp"};
    OptionalValue<double> fixedPi{"fixedPressureRatio", 0.0, "pFixedPi"};
    OptionalValue<std::string> connectTo{"connectTo", "", "pConnectTo"};
    OptionalValue<std::string> dischargeTo{"dischargeTo", "", "pDischargeTo"};
};

} // namespace thermo::input
