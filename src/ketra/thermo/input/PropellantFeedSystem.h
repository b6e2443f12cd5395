#pragma once

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/PressurizedFeedSystem.h>
#include <ketra/thermo/input/Section.h>
#include <ketra/thermo/input/TurbopumpFeedSystem.h>

namespace thermo::input {

/// How the propellants reach the chamber: pressed by a gas or by pumps, not both.
class KETRA_API PropellantFeedSystem : public Section
{
public:
    PropellantFeedSystem() : Section("propelantFeedSystem") {} // with one l in the format

    /// Propellants pressed out of their tanks by a gas.
    bool isPressurizedFeedSystemSet() const { return pressurized.isSet(); }
    PressurizedFeedSystem& getPressurizedFeedSystem()
    {
        return pressurized.at("gas-pressurized propellant feed system");
    }
    const PressurizedFeedSystem& getPressurizedFeedSystem() const
    {
        return pressurized.at("gas-pressurized propellant feed system");
    }
    PressurizedFeedSystem::TYPE getPressurizedFeedSystemType() const
    {
        return pressurized.at("type of gas-pressurized propellant feed system").getType();
    }
    /// Drops the turbopumps; a pressurized system that is there keeps what it holds. \returns it
    PressurizedFeedSystem& setPressurizedFeedSystem(PressurizedFeedSystem::TYPE type);
    void deletePressurizedFeedSystem() { pressurized.reset(); }

    /// Propellants driven by pumps.
    bool isTurbopumpFeedSystemSet() const { return turbopump.isSet(); }
    TurbopumpFeedSystem& getTurbopumpFeedSystem()
    {
        return turbopump.at("turbopump propellant feed system");
    }
    const TurbopumpFeedSystem& getTurbopumpFeedSystem() const
    {
        return turbopump.at("turbopump propellant feed system");
    }
    TurbopumpFeedSystem::CYCLE getTurbopumpFeedSystemCycle() const
    {
        return turbopump.at("turbopump propellant feed system cycle").getCycle();
    }
    /// Drops the pressurized system; turbopumps that are there keep what they hold. \returns them
    TurbopumpFeedSystem& setTurbopumpFeedSystem(TurbopumpFeedSystem::CYCLE cycle);
    void deleteTurbopumpFeedSystem() { turbopump.reset(); }

    /// The dry mass is estimated.
    bool isEstimateDryMass() const { return estimateDryMass.get(); }
    void setEstimateDryMass(bool estimate) { estimateDryMass.set(estimate); }

    /// Deletes both systems.
    void clear();

    /// \throws Exception 7 as the system that is set
    void validate() override;

private:
    void fields(Fields& walk) override;

    Optional<PressurizedFeedSystem> pressurized;
    Optional<TurbopumpFeedSystem> turbopump;
    DataValue<bool> estimateDryMass{"estimateDryMass", false};
};

} // namespace thermo::input
