#pragma once

#include <ketra/thermo/input/AmbientConditions.h>
#include <ketra/thermo/input/EfficiencyFactors.h>
#include <ketra/thermo/input/FreezingConditions.h>
#include <ketra/thermo/input/NodeList.h>
#include <ketra/thermo/input/NozzleInletConditions.h>
#include <ketra/thermo/input/NozzleSectionConditions.h>
#include <ketra/thermo/input/ThrottlingConditions.h>

namespace thermo::input {

/// What of the flow through the nozzle is calculated, and under which conditions.
///
/// The `set` operation of a section makes it if it is absent; a reference to a section is good
/// until the section is deleted.
class KETRA_API NozzleFlowOptions : public Section
{
public:
    NozzleFlowOptions() : Section("nozzleFlow") {}

    /// The nozzle is calculated at all; otherwise only the equilibrium in the chamber.
    bool isCalculateNozzleFlow() const { return calculateNozzleFlow.get(); }
    void setCalculateNozzleFlow(bool calculate) { calculateNozzleFlow.set(calculate); }

    /// The point where the composition freezes.
    bool isFreezingConditionsSet() const { return freezing.isSet(); }
    FreezingConditions& setFreezingConditions() { return freezing.create(); }
    FreezingConditions& getFreezingConditions() { return freezing.at("freezing conditions"); }
    const FreezingConditions& getFreezingConditions() const
    {
        return freezing.at("freezing conditions");
    }
    void deleteFreezingConditions() { freezing.reset(); }

    /// How the flow enters the nozzle.
    bool isNozzleInletConditionsSet() const { return inlet.isSet(); }
    NozzleInletConditions& setNozzleInletConditions() { return inlet.create(); }
    NozzleInletConditions& getNozzleInletConditions() { return inlet.at("nozzle inlet options"); }
    const NozzleInletConditions& getNozzleInletConditions() const
    {
        return inlet.at("nozzle inlet options");
    }
    void deleteNozzleInletConditions() { inlet.reset(); }

    /// How far the flow expands.
    bool isNozzleExitConditionsSet() const { return exit.isSet(); }
    NozzleSectionConditions& setNozzleExitConditions() { return exit.create(); }
    NozzleSectionConditions& getNozzleExitConditions() { return exit.at("nozzle exit options"); }
    const NozzleSectionConditions& getNozzleExitConditions() const
    {
        return exit.at("nozzle exit options");
    }
    void deleteNozzleExitConditions() { exit.reset(); }

    /// The nozzle stations, further sections along the nozzle.
    unsigned int getSectionListSize() const { return stations.size(); }
    /// \throws std::out_of_range
    NozzleSectionConditions& getSection(unsigned int i) { return stations.at(i); }
    const NozzleSectionConditions& getSection(unsigned int i) const { return stations.at(i); }
    /// Appends a station. \returns it
    NozzleSectionConditions& setSection() { return stations.add(); }
    void clearSectionList() { stations.clear(); }

    /// What separates the real engine from the ideal one.
    bool isEfficiencyFactorsSet() const { return efficiencies.isSet(); }
    EfficiencyFactors& setEfficiencyFactors() { return efficiencies.create(); }
    EfficiencyFactors& getEfficiencyFactors() { return efficiencies.at("efficiency factors"); }
    const EfficiencyFactors& getEfficiencyFactors() const
    {
        return efficiencies.at("efficiency factors");
    }
    void deleteEfficiencyFactors() { efficiencies.reset(); }

    /// The pressure around the engine.
    bool isAmbientConditionsSet() const { return ambient.isSet(); }
    AmbientConditions& setAmbientConditions() { return ambient.create(); }
    AmbientConditions& getAmbientConditions() { return ambient.at("ambient conditions"); }
    const AmbientConditions& getAmbientConditions() const
    {
        return ambient.at("ambient conditions");
    }
    void deleteAmbientConditions() { ambient.reset(); }
    /// The one ambient pressure; in Pa if \p si, else as stated.
    /// \throws Exception 2 without ambient conditions or without a fixed pressure in them
    double getAmbientPressure(bool si) const
    {
        return ambient.at("ambient pressure").getFixedPressure(si);
    }
    Pressure::UNITS getAmbientPressureUnit(bool si) const
    {
        return ambient.at("ambient pressure unit").getFixedPressureUnit(si);
    }

    /// How far the engine is throttled.
    bool isThrottlingConditionsSet() const { return throttling.isSet(); }
    ThrottlingConditions& setThrottlingConditions() { return throttling.create(); }
    ThrottlingConditions& getThrottlingConditions()
    {
        return throttling.at("throttling conditions");
    }
    const ThrottlingConditions& getThrottlingConditions() const
    {
        return throttling.at("throttling conditions");
    }
    void deleteThrottlingConditions() { throttling.reset(); }

    /// Deletes every section and all stations.
    void reset();

    /// A nozzle flow needs freezing, inlet or exit conditions; what is set must be valid itself.
    /// \throws Exception 7
    void validate() override;

private:
    void fields(Fields& walk) override;

    DataValue<bool> calculateNozzleFlow{"calculateNozzleFlow", true};
    Optional<FreezingConditions> freezing;
    Optional<NozzleInletConditions> inlet;
    Optional<NozzleSectionConditions> exit;
    Optional<EfficiencyFactors> efficiencies;
    Optional<AmbientConditions> ambient;
    Optional<ThrottlingConditions> throttling;
    NodeList<NozzleSectionConditions> stations{"nozzleStations", "stationConditions"};
};

} // namespace thermo::input
