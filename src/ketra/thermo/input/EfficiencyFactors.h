#pragma once

#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// What separates a real engine from the ideal one. The five numbers are independent of each other
/// and have no unit in the document.
class KETRA_API EfficiencyFactors : public Section
{
public:
    EfficiencyFactors() : Section("efficiencies") {}

    /// The factors are applied to the results.
    bool isApplyEfficiencyFactors() const { return apply.get(); }
    void setApplyEfficiencyFactors(bool use) { apply.set(use); }

    /// Efficiency of the engine cycle.
    bool isCycleEfficiencySet() const { return cycle.isSet(); }
    double getCycleEfficiency() const { return cycle.get(); }
    void setCycleEfficiency(double factor) { cycle.set(factor); }
    void deleteCycleEfficiency() { cycle.reset(); }

    /// Efficiency of the reaction in the chamber.
    bool isReactionEfficiencySet() const { return reaction.isSet(); }
    double getReactionEfficiency() const { return reaction.get(); }
    void setReactionEfficiency(double factor) { reaction.set(factor); }
    void deleteReactionEfficiency() { reaction.reset(); }

    /// Efficiency of the nozzle.
    bool isNozzleEfficiencySet() const { return nozzle.isSet(); }
    double getNozzleEfficiency() const { return nozzle.get(); }
    void setNozzleEfficiency(double factor) { nozzle.set(factor); }
    void deleteNozzleEfficiency() { nozzle.reset(); }

    /// Length of a bell nozzle.
    bool isNozzleLengthSet() const { return nozzleLength.isSet(); }
    double getNozzleLength() const { return nozzleLength.get(); }
    void setNozzleLength(double length) { nozzleLength.set(length); }
    void deleteNozzleLength() { nozzleLength.reset(); }

    /// Half angle of a conical nozzle.
    bool isConeHalfAngleSet() const { return coneHalfAngle.isSet(); }
    double getConeHalfAngle() const { return coneHalfAngle.get(); }
    void setConeHalfAngle(double angle) { coneHalfAngle.set(angle); }
    void deleteConeHalfAngle() { coneHalfAngle.reset(); }

private:
    void fields(Fields& walk) override;

    DataValue<bool> apply{"apply", true};
    OptionalValue<double> cycle{"cycle", 0.0, "cycle efficiency coefficient"};
    OptionalValue<double> reaction{"reaction", 0.0, "reaction efficiency coefficient"};
    OptionalValue<double> nozzle{"nozzle", 0.0, "nozzle efficiency coefficient"};
    OptionalValue<double> nozzleLength{"nozzleLength", 0.0, "bell nozzle length"};
    OptionalValue<double> coneHalfAngle{"nozzleHalfAngle", 0.0, "conical nozzle half angle"};
};

} // namespace thermo::input
