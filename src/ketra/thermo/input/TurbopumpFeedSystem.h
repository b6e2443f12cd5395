#pragma once

#include <ketra/thermo/input/Choice.h>
#include <ketra/thermo/input/FeedSystem.h>
#include <ketra/thermo/input/GasGeneratorBranchParameters.h>
#include <ketra/thermo/input/GasGeneratorParameters.h>
#include <ketra/thermo/input/TurbineParameters.h>

namespace thermo::input {

struct TurbopumpFeedSystemCycles {
    enum CYCLE : std::int32_t {
        GAS_GENERATOR,
        STAGED_COMBUSTION,
        FULL_FLOW_STAGED_COMBUSTION,
        EXPANDER
    };
    static constexpr const char* what = "turbopump propellant feed system";
    static constexpr const char* assumed = "gas generator";
    // clang-format off
    static constexpr Word<CYCLE> table[] = {
        {GAS_GENERATOR,               {"gas generator", "gasGenerator", "gas_generator", "GG"}},
        {STAGED_COMBUSTION,           {"staged combustion", "stagedCombustion", "staged_combustion",
                                       "SC"}},
        {FULL_FLOW_STAGED_COMBUSTION, {"full-flow staged combustion", "fullFlowstagedCombustion",
                                       "full_flow_staged_combustion", "FFSC"}},
        {EXPANDER,                    {"expander"}},
    };
    // clang-format on
};

/// Propellants that pumps bring up to the pressure of the chamber, and the gas generators and
/// turbines that drive the pumps.
///
/// The second gas generator is written only beside the first one, and the second turbine beside the
/// first; the branches of a generator are written only with it.
class KETRA_API TurbopumpFeedSystem : public FeedSystem
{
public:
    using CYCLE = TurbopumpFeedSystemCycles::CYCLE;
    using enum TurbopumpFeedSystemCycles::CYCLE;

    explicit TurbopumpFeedSystem(CYCLE initial = GAS_GENERATOR)
        : FeedSystem("turbopumpFeedSystem", FeedSide::Feed::Pump), cycle("cycle", initial)
    {
    }

    /// How the gas for the turbines is made and where it goes.
    CYCLE getCycle() const { return cycle.get(); }
    void setCycle(CYCLE newCycle) { cycle.set(newCycle); }
    /// The word of the document for \p wanted.
    static const char* typeToRaw(CYCLE wanted)
    {
        return Choice<TurbopumpFeedSystemCycles>::toRaw(wanted);
    }
    /// The cycle spelt \p text; logs what it does not know.
    /// \throws Exception 4
    static CYCLE rawToType(const char* text)
    {
        return Choice<TurbopumpFeedSystemCycles>::fromRaw(text);
    }

    /// The pump ahead of the main pump of the oxidizer.
    bool isOxidizerBoostPump() const { return oxidizer.boostPump.isSet(); }
    BoostPumpParameters& getOxidizerBoostPump()
    {
        return oxidizer.boostPump.at("pOxidizerBoostPump");
    }
    const BoostPumpParameters& getOxidizerBoostPump() const
    {
        return oxidizer.boostPump.at("pOxidizerBoostPump");
    }
    void setOxidizerBoostPump(BoostPumpParameters* given) { oxidizer.boostPump.set(given); }
    void deleteOxidizerBoostPump() { oxidizer.boostPump.reset(); }

    /// The pump ahead of the main pump of the fuel.
    bool isFuelBoostPump() const { return fuel.boostPump.isSet(); }
    BoostPumpParameters& getFuelBoostPump() { return fuel.boostPump.at("pFuelBoostPump"); }
    const BoostPumpParameters& getFuelBoostPump() const
    {
        return fuel.boostPump.at("pFuelBoostPump");
    }
    void setFuelBoostPump(BoostPumpParameters* given) { fuel.boostPump.set(given); }
    void deleteFuelBoostPump() { fuel.boostPump.reset(); }

    /// The first gas generator.
    bool isGG1() const { return firstGenerator.parameters.isSet(); }
    GasGeneratorParameters& getGG1() { return firstGenerator.parameters.at("pGG1"); }
    const GasGeneratorParameters& getGG1() const { return firstGenerator.parameters.at("pGG1"); }
    void setGG1(GasGeneratorParameters* given) { firstGenerator.parameters.set(given); }
    void deleteGG1() { firstGenerator.parameters.reset(); }

    /// The line that brings oxidizer to the first gas generator.
    bool isOxidizerGGBranch1() const { return firstGenerator.oxidizer.isSet(); }
    GasGeneratorBranchParameters& getOxidizerGGBranch1()
    {
        return firstGenerator.oxidizer.at("pOxidizerGGBranch1");
    }
    const GasGeneratorBranchParameters& getOxidizerGGBranch1() const
    {
        return firstGenerator.oxidizer.at("pOxidizerGGBranch1");
    }
    void setOxidizerGGBranch1(GasGeneratorBranchParameters* given)
    {
        firstGenerator.oxidizer.set(given);
    }
    void deleteOxidizerGGBranch1() { firstGenerator.oxidizer.reset(); }

    /// The line that brings fuel to the first gas generator.
    bool isFuelGGBranch1() const { return firstGenerator.fuel.isSet(); }
    GasGeneratorBranchParameters& getFuelGGBranch1()
    {
        return firstGenerator.fuel.at("pFuelGGBranch1");
    }
    const GasGeneratorBranchParameters& getFuelGGBranch1() const
    {
        return firstGenerator.fuel.at("pFuelGGBranch1");
    }
    void setFuelGGBranch1(GasGeneratorBranchParameters* given) { firstGenerator.fuel.set(given); }
    void deleteFuelGGBranch1() { firstGenerator.fuel.reset(); }

    /// The second gas generator.
    bool isGG2() const { return secondGenerator.parameters.isSet(); }
    GasGeneratorParameters& getGG2() { return secondGenerator.parameters.at("pGG2"); }
    const GasGeneratorParameters& getGG2() const { return secondGenerator.parameters.at("pGG2"); }
    void setGG2(GasGeneratorParameters* given) { secondGenerator.parameters.set(given); }
    void deleteGG2() { secondGenerator.parameters.reset(); }

    /// The line that brings oxidizer to the second gas generator.
    bool isOxidizerGGBranch2() const { return secondGenerator.oxidizer.isSet(); }
    GasGeneratorBranchParameters& getOxidizerGGBranch2()
    {
        return secondGenerator.oxidizer.at("pOxidizerGGBranch2");
    }
    const GasGeneratorBranchParameters& getOxidizerGGBranch2() const
    {
        return secondGenerator.oxidizer.at("pOxidizerGGBranch2");
    }
    void setOxidizerGGBranch2(GasGeneratorBranchParameters* given)
    {
        secondGenerator.oxidizer.set(given);
    }
    void deleteOxidizerGGBranch2() { secondGenerator.oxidizer.reset(); }

    /// The line that brings fuel to the second gas generator.
    bool isFuelGGBranch2() const { return secondGenerator.fuel.isSet(); }
    GasGeneratorBranchParameters& getFuelGGBranch2()
    {
        return secondGenerator.fuel.at("pFuelGGBranch2");
    }
    const GasGeneratorBranchParameters& getFuelGGBranch2() const
    {
        return secondGenerator.fuel.at("pFuelGGBranch2");
    }
    void setFuelGGBranch2(GasGeneratorBranchParameters* given) { secondGenerator.fuel.set(given); }
    void deleteFuelGGBranch2() { secondGenerator.fuel.reset(); }

    /// The first turbine.
    bool isTurbine1() const { return firstTurbine.isSet(); }
    TurbineParameters& getTurbine1() { return firstTurbine.at("pTurbine1"); }
    const TurbineParameters& getTurbine1() const { return firstTurbine.at("pTurbine1"); }
    void setTurbine1(TurbineParameters* given) { firstTurbine.set(given); }
    void deleteTurbine1() { firstTurbine.reset(); }

    /// The second turbine.
    bool isTurbine2() const { return secondTurbine.isSet(); }
    TurbineParameters& getTurbine2() { return secondTurbine.at("pTurbine2"); }
    const TurbineParameters& getTurbine2() const { return secondTurbine.at("pTurbine2"); }
    void setTurbine2(TurbineParameters* given) { secondTurbine.set(given); }
    void deleteTurbine2() { secondTurbine.reset(); }

    /// Makes everything absent; the cycle stays.
    void reset();

    /// Of the lists of gas generators and turbines the first two elements count.
    /// \throws libconfig::SettingNotFoundException if \p parent has no such group
    /// \throws Exception 4 for an unknown word or unit, and for a turbine that states no connection
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override;

protected:
    const char* getRawCycle() const { return typeToRaw(cycle.get()); }
    /// \throws Exception 4
    void setRawCycle(const char* text) { cycle.set(rawToType(text)); }

private:
    /// A gas generator and the lines that feed it.
    struct Generator {
        Owned<GasGeneratorParameters> parameters;
        Owned<GasGeneratorBranchParameters> oxidizer;
        Owned<GasGeneratorBranchParameters> fuel;
    };

    static void readGenerator(const libconfig::Setting& element, Generator& generator);
    static void writeGenerator(libconfig::Setting& list, Generator& generator, bool all);
    void fields(Fields& walk) override;

    Choice<TurbopumpFeedSystemCycles> cycle;
    Generator firstGenerator;
    Generator secondGenerator;
    Owned<TurbineParameters> firstTurbine;
    Owned<TurbineParameters> secondTurbine;
};

} // namespace thermo::input
