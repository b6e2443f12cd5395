#include <ketra/thermo/input/PropellantFeedSystem.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/FeedFacts.h>
#include <unit/thermo_input/MemberRows.h>
#include <unit/thermo_input/Written.h>

#include <gtest/gtest.h>

#include <stdexcept>

using ketra_test::Keys;
using ketra_test::LogCapture;
using ketra_test::readText;
using ketra_test::Written;
using namespace thermo::input;

namespace {

using Gas = PressurizedFeedSystem;
using Pumps = TurbopumpFeedSystem;

// Enumerations and their texts.

template <class E> struct Spelling {
    const char* text;
    E value;
    bool printed;
};

const Spelling<Gas::TYPE> gasTypes[] = {
    {"by stored gas", Gas::TYPE(0), true},
    {"byStoredGas", Gas::TYPE(0), false},
    {"by_stored_gas", Gas::TYPE(0), false},
    {"by vaporized propellant", Gas::TYPE(1), true},
    {"byVaporizedPropellant", Gas::TYPE(1), false},
    {"by_vaporized_propellant", Gas::TYPE(1), false},
    {"by chemically generated gas", Gas::TYPE(2), true},
    {"byChemicallyGeneratedGas", Gas::TYPE(2), false},
    {"by_chemically_generated_gas", Gas::TYPE(2), false},
};
const Spelling<Pumps::CYCLE> cycles[] = {
    {"gas generator", Pumps::CYCLE(0), true},
    {"gasGenerator", Pumps::CYCLE(0), false},
    {"gas_generator", Pumps::CYCLE(0), false},
    {"GG", Pumps::CYCLE(0), false},
    {"staged combustion", Pumps::CYCLE(1), true},
    {"stagedCombustion", Pumps::CYCLE(1), false},
    {"staged_combustion", Pumps::CYCLE(1), false},
    {"SC", Pumps::CYCLE(1), false},
    {"full-flow staged combustion", Pumps::CYCLE(2), true},
    {"fullFlowstagedCombustion", Pumps::CYCLE(2), false}, // with a small s in the format
    {"full_flow_staged_combustion", Pumps::CYCLE(2), false},
    {"FFSC", Pumps::CYCLE(2), false},
    {"expander", Pumps::CYCLE(3), true},
};
const Spelling<GasGeneratorParameters::TYPE> generatorTypes[] = {
    {"oxidizer-rich", GasGeneratorParameters::TYPE(0), true},
    {"oxidizerRich", GasGeneratorParameters::TYPE(0), false},
    {"fuel-rich", GasGeneratorParameters::TYPE(1), true},
    {"fuelRich", GasGeneratorParameters::TYPE(1), false},
};
const Spelling<TurbineParameters::TYPE> turbineTypes[] = {
    {"serial", TurbineParameters::TYPE(0), true},
    {"serial,auto", TurbineParameters::TYPE(0), false},
    {"serial,ox-fuel", TurbineParameters::TYPE(1), true},
    {"serial,fuel-ox", TurbineParameters::TYPE(2), true},
    {"parallel", TurbineParameters::TYPE(3), true},
};

// Texts that no class takes: case and spaces count.
const char* const unknownTexts[] = {"",          "By stored gas", "gas generator ",
                                    "sc",        "Expander",      "fullFlowStagedCombustion",
                                    "fuel rich", "serial, auto",  "Parallel",
                                    "fuel-rich-"};

/// Makes the protected text accessors of a class reachable.
template <class S> class Raw : public S
{
public:
    using S::S;
    const char* text() const
    {
        if constexpr (std::is_same_v<S, Pumps>)
            return this->getRawCycle();
        else
            return this->getRawType();
    }
    void setText(const char* text)
    {
        if constexpr (std::is_same_v<S, Pumps>)
            this->setRawCycle(text);
        else
            this->setRawType(text);
    }
};

template <class S, class Table> void checkWords(const Table& table, const std::string& message)
{
    for (const auto& row : table) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(S::rawToType(row.text), row.value);
        if (row.printed) {
            EXPECT_STREQ(S::typeToRaw(row.value), row.text);
        }
        Raw<S> section;
        section.setText(row.text);
        EXPECT_STREQ(section.text(), S::typeToRaw(row.value));
    }
    const auto refuse = [&](const char* text) {
        SCOPED_TRACE(text != nullptr ? text : "null");
        const LogCapture log;
        const std::string line = message + (text != nullptr ? text : "") + "\n";
        KETRA_EXPECT_THROW_MESSAGE(S::rawToType(text), Exception, 4, "Unknown");
        EXPECT_EQ(log.errors(), Keys{line});
        EXPECT_EQ(log.tagOf(line), "THERMO");
        Raw<S> section;
        const std::string before = section.text();
        KETRA_EXPECT_THROW_MESSAGE(section.setText(text), Exception, 4, "Unknown");
        EXPECT_EQ(section.text(), before);
    };
    for (const char* text : unknownTexts) refuse(text);
    refuse(nullptr);
}

TEST(FeedWords, PressurizedFeedSystem)
{
    checkWords<Gas>(gasTypes,
                    "Could convert string to pressurized feed system type: unknown type ");
}

TEST(FeedWords, TurbopumpFeedSystem)
{
    checkWords<Pumps>(cycles,
                      "Could convert string to turbopump propellant feed system: unknown type ");
}

TEST(FeedWords, GasGenerator)
{
    checkWords<GasGeneratorParameters>(generatorTypes,
                                       "Could convert string to gas generator type: unknown type ");
}

TEST(FeedWords, Turbine)
{
    checkWords<TurbineParameters>(turbineTypes,
                                  "Could convert string to turbine connection type: unknown type ");
}

TEST(FeedWords, InitialValues)
{
    EXPECT_EQ(Gas().getType(), Gas::STORED_GAS);
    EXPECT_EQ(Pumps().getCycle(), Pumps::GAS_GENERATOR);
    EXPECT_EQ(GasGeneratorParameters().getType(), GasGeneratorParameters::FUEL_RICH);
    EXPECT_EQ(TurbineParameters().getType(), TurbineParameters::SERIAL);
}

// A document without the word is taken to hold the usual one, whatever was there before.
TEST(FeedWords, AbsentKeyIsTheUsualWord)
{
    Gas gas(Gas::GENERATED_GAS);
    readText(gas, "");
    EXPECT_EQ(gas.getType(), Gas::STORED_GAS);
    Pumps pumps(Pumps::EXPANDER);
    readText(pumps, "");
    EXPECT_EQ(pumps.getCycle(), Pumps::GAS_GENERATOR);
    readText(pumps, "cycle = 3;"); // no text
    EXPECT_EQ(pumps.getCycle(), Pumps::GAS_GENERATOR);
    GasGeneratorParameters generator;
    generator.setType(GasGeneratorParameters::OXIDIZER_RICH);
    ketra_test::readMembers(generator, "");
    EXPECT_EQ(generator.getType(), GasGeneratorParameters::FUEL_RICH);
}

TEST(FeedWords, TurbineMustStateItsConnection)
{
    const std::string line =
        "Could convert string to turbine connection type: unknown type fuel-rich\n";
    for (const char* members :
         {"", "turbineEfficiency = 0.5;", "ggType = 3;", "ggType = \"fuel-rich\";"}) {
        SCOPED_TRACE(members);
        const LogCapture log;
        TurbineParameters turbine;
        KETRA_EXPECT_THROW_MESSAGE(ketra_test::readMembers(turbine, members), Exception, 4,
                                   "Unknown");
        EXPECT_EQ(log.errors(), Keys{line});
        EXPECT_FALSE(turbine.isEtaSet());
    }
}

TEST(FeedWords, ReadStopsAtATurbineWithoutConnection)
{
    const LogCapture log;
    PropellantFeedSystem feed;
    KETRA_EXPECT_THROW_MESSAGE(
        readText(feed, "turbopumpFeedSystem = { turbines = ( { turbineEfficiency = 0.5; } ); };"),
        Exception, 4, "Unknown");
    EXPECT_EQ(log.errors(),
              Keys{"Could convert string to turbine connection type: unknown type fuel-rich\n"});
}

TEST(FeedWords, TypeAndCycleAreWrittenWithAllOnly)
{
    const Gas gas(Gas::GENERATED_GAS);
    EXPECT_STREQ(Written(gas, true).group()["type"], "by chemically generated gas");
    EXPECT_FALSE(Written(gas, false).group().exists("type"));
    Pumps pumps;
    readText(pumps, "cycle = \"SC\";");
    EXPECT_STREQ(Written(pumps, true).group()["cycle"], "staged combustion");
    EXPECT_FALSE(Written(pumps, false).group().exists("cycle"));
}

// A document without it could not be read back.
TEST(FeedWords, GeneratorAndTurbineAlwaysWriteTheirType)
{
    for (const bool all : {true, false}) {
        EXPECT_STREQ(Written(GasGeneratorParameters(), all).group()["ggType"], "fuel-rich");
        EXPECT_STREQ(Written(TurbineParameters(), all).group()["ggType"], "serial");
    }
}

} // namespace
