#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Optional.h>
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
    double getCycleEfficiency() const { return cycle.at("cycle efficiency coefficient").get(); }
    void setCycleEfficiency(double factor) { cycle.create().set(factor); }
    void deleteCycleEfficiency() { cycle.reset(); }

    /// Efficiency of the reaction in the chamber.
    bool isReactionEfficiencySet() const { return reaction.isSet(); }
    double getReactionEfficiency() const
    {
        return reaction.at("reaction efficiency coefficient").get();
    }
    void setReactionEfficiency(double factor) { reaction.create().set(factor); }
    void deleteReactionEfficiency() { reaction.reset(); }

    /// Efficiency of the nozzle.
    bool isNozzleEfficiencySet() const { return nozzle.isSet(); }
    double getNozzleEfficiency() const { return nozzle.at("nozzle efficiency coefficient").get(); }
    void setNozzleEfficiency(double factor) { nozzle.create().set(factor); }
    void deleteNozzleEfficiency() { nozzle.reset(); }

    /// Length of a bell nozzle.
    bool isNozzleLengthSet() const { return nozzleLength.isSet(); }
    double getNozzleLength() const { return nozzleLength.at("bell nozzle length").get(); }
    void setNozzleLength(double length) { nozzleLength.create().set(length); }
    void deleteNozzleLength() { nozzleLength.reset(); }

    /// Half angle of a conical nozzle.
    bool isConeHalfAngleSet() const { return coneHalfAngle.isSet(); }
    double getConeHalfAngle() const { return coneHalfAngle.at("conical nozzle half angle").get(); }
    void setConeHalfAngle(double angle) { coneHalfAngle.create().set(angle); }
    void deleteConeHalfAngle() { coneHalfAngle.reset(); }

private:
    void fields(Fields& walk) override;

    DataValue<bool> apply{"apply", true};
    Optional<DataValue<double>> cycle{"cycle", 0.0};
    Optional<DataValue<double>> reaction{"reaction", 0.0};
    Optional<DataValue<double>> nozzle{"nozzle", 0.0};
    Optional<DataValue<double>> nozzleLength{"nozzleLength", 0.0};
    Optional<DataValue<double>> coneHalfAngle{"nozzleHalfAngle", 0.0};
};

} // namespace thermo::input
