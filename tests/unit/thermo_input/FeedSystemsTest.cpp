#include <ketra/thermo/input/PropellantFeedSystem.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/FeedFacts.h>
#include <unit/thermo_input/MemberRows.h>
#include <unit/thermo_input/Written.h>

#include <gtest/gtest.h>

#include <stdexcept>

using ketra_test::expectAbsent;
using ketra_test::factsOf;
using ketra_test::Keys;
using ketra_test::keysOf;
using ketra_test::LogCapture;
using ketra_test::readText;
using ketra_test::Settings;
using ketra_test::Written;
using namespace thermo::input;

namespace {

using Gas = PressurizedFeedSystem;
using Pumps = TurbopumpFeedSystem;
using Chamber = ChamberFeedSubsystemParameters;

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

// Getters of members that are absent.

struct AbsentMember {
    const char* what;
    std::function<void()> call;
};

template <class S> std::function<void()> of(void (*getter)(S&))
{
    return [getter] {
        S section;
        getter(section);
    };
}
#define ABSENT(S, X)                                                                               \
    {"p" #X, of<S>([](S& s) { s.get##X(); })},                                                     \
    {                                                                                              \
        "p" #X, of<const S>([](const S& s) { s.get##X(); })                                        \
    }

std::vector<AbsentMember> absentMembers()
{
    // clang-format off
    return {
        {"type of gas-pressurized propellant feed system",
         of<PropellantFeedSystem>([](auto& s) { s.getPressurizedFeedSystemType(); })},
        {"gas-pressurized propellant feed system",
         of<PropellantFeedSystem>([](auto& s) { s.getPressurizedFeedSystem(); })},
        {"gas-pressurized propellant feed system",
         of<const PropellantFeedSystem>([](auto& s) { s.getPressurizedFeedSystem(); })},
        {"turbopump propellant feed system cycle",
         of<PropellantFeedSystem>([](auto& s) { s.getTurbopumpFeedSystemCycle(); })},
        {"turbopump propellant feed system",
         of<PropellantFeedSystem>([](auto& s) { s.getTurbopumpFeedSystem(); })},
        {"turbopump propellant feed system",
         of<const PropellantFeedSystem>([](auto& s) { s.getTurbopumpFeedSystem(); })},
        ABSENT(Gas, OxidizerFeedSystem),
        ABSENT(Gas, FuelFeedSystem),
        ABSENT(Pumps, OxidizerFeedSystem),
        ABSENT(Pumps, FuelFeedSystem),
        ABSENT(Pumps, OxidizerBoostPump),
        ABSENT(Pumps, FuelBoostPump),
        ABSENT(Pumps, GG1),
        ABSENT(Pumps, OxidizerGGBranch1),
        ABSENT(Pumps, FuelGGBranch1),
        ABSENT(Pumps, GG2),
        ABSENT(Pumps, OxidizerGGBranch2),
        ABSENT(Pumps, FuelGGBranch2),
        ABSENT(Pumps, Turbine1),
        ABSENT(Pumps, Turbine2),
    };
    // clang-format on
}

TEST(FeedSystems, AbsentMemberIsLoggedInItsOwnWordsAndThrown)
{
    for (const AbsentMember& absent : absentMembers()) expectAbsent(absent.call, absent.what);
}

// Members that are handed over.

template <class S, class T> struct HandedOver {
    const char* name;
    bool (S::*isSet)() const;
    T& (S::*get)();
    void (S::*set)(T*);
    void (S::*remove)();
    std::function<T*()> make;
};
#define HANDED(S, X, MAKE)                                                                         \
    {                                                                                              \
#X, &S::is##X, &S::get##X, &S::set##X, &S::delete##X, [] { return new MAKE; }              \
    }

const HandedOver<Gas, Chamber> gasSides[] = {
    HANDED(Gas, OxidizerFeedSystem, Chamber("oxidizerFeedSystem")),
    HANDED(Gas, FuelFeedSystem, Chamber("fuelFeedSystem")),
};
const HandedOver<Pumps, Chamber> pumpSides[] = {
    HANDED(Pumps, OxidizerFeedSystem, Chamber("oxidizerFeedSystem")),
    HANDED(Pumps, FuelFeedSystem, Chamber("fuelFeedSystem")),
};
const HandedOver<Pumps, BoostPumpParameters> boostPumps[] = {
    HANDED(Pumps, OxidizerBoostPump, BoostPumpParameters),
    HANDED(Pumps, FuelBoostPump, BoostPumpParameters),
};
const HandedOver<Pumps, GasGeneratorParameters> generators[] = {
    HANDED(Pumps, GG1, GasGeneratorParameters),
    HANDED(Pumps, GG2, GasGeneratorParameters),
};
const HandedOver<Pumps, GasGeneratorBranchParameters> generatorBranches[] = {
    HANDED(Pumps, OxidizerGGBranch1, GasGeneratorBranchParameters),
    HANDED(Pumps, FuelGGBranch1, GasGeneratorBranchParameters),
    HANDED(Pumps, OxidizerGGBranch2, GasGeneratorBranchParameters),
    HANDED(Pumps, FuelGGBranch2, GasGeneratorBranchParameters),
};
const HandedOver<Pumps, TurbineParameters> turbines[] = {
    HANDED(Pumps, Turbine1, TurbineParameters),
    HANDED(Pumps, Turbine2, TurbineParameters),
};

template <class S, class T> void checkHandedOver(const HandedOver<S, T>& m)
{
    SCOPED_TRACE(m.name);
    S system;
    EXPECT_FALSE((system.*m.isSet)());
    T* first = m.make();
    (system.*m.set)(first);
    EXPECT_TRUE((system.*m.isSet)());
    EXPECT_EQ(&(system.*m.get)(), first);
    (system.*m.set)(first); // its own member stays
    EXPECT_EQ(&(system.*m.get)(), first);

    S copy(system), assigned;
    assigned = system;
    const S& self = assigned;
    assigned = self;
    EXPECT_NE(&(copy.*m.get)(), first);
    EXPECT_NE(&(assigned.*m.get)(), first);

    T* second = m.make();
    (system.*m.set)(second); // deletes the first one
    EXPECT_EQ(&(system.*m.get)(), second);
    (system.*m.remove)();
    EXPECT_FALSE((system.*m.isSet)());
    (system.*m.remove)(); // does nothing
    EXPECT_TRUE((copy.*m.isSet)());
    EXPECT_TRUE((assigned.*m.isSet)());
    (copy.*m.set)(nullptr);
    EXPECT_FALSE((copy.*m.isSet)());
}

TEST(FeedSystems, SetTakesOwnershipOfWhatItIsGiven)
{
    for (const auto& m : gasSides) checkHandedOver(m);
    for (const auto& m : pumpSides) checkHandedOver(m);
    for (const auto& m : boostPumps) checkHandedOver(m);
    for (const auto& m : generators) checkHandedOver(m);
    for (const auto& m : generatorBranches) checkHandedOver(m);
    for (const auto& m : turbines) checkHandedOver(m);
}

template <class S> class Branches : public testing::Test
{
};
using SystemClasses = testing::Types<Gas, Pumps>;
TYPED_TEST_SUITE(Branches, SystemClasses);

BranchParameters* branchOf(const char* name)
{
    auto* branch = new BranchParameters;
    branch->setName(name);
    return branch;
}

TYPED_TEST(Branches, AreAppendedOnTheirSide)
{
    TypeParam system;
    BranchParameters* first = branchOf("a");
    system.addOxidizerBranch(first);
    system.addOxidizerBranch(branchOf("b"));
    system.addFuelBranch(branchOf("c"));
    const TypeParam& same = system;
    EXPECT_EQ(same.getOxidizerBranchesListSize(), 2u);
    EXPECT_EQ(same.getFuelBranchesListSize(), 1u);
    EXPECT_EQ(same.getOxidizerBranch(0), first);
    EXPECT_EQ(system.getOxidizerBranch(1)->getName(), "b");
    EXPECT_EQ(same.getFuelBranch(0)->getName(), "c");
    EXPECT_EQ(system.getFuelBranch(0), same.getFuelBranch(0));
    EXPECT_THROW(system.getOxidizerBranch(2), std::out_of_range);
    EXPECT_THROW(same.getFuelBranch(1), std::out_of_range);
}

TYPED_TEST(Branches, NullPointerIsRefused)
{
    TypeParam system;
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(system.addOxidizerBranch(nullptr), Exception, 2, "NULL pointer");
    KETRA_EXPECT_THROW_MESSAGE(system.addFuelBranch(nullptr), Exception, 2, "NULL pointer");
    EXPECT_EQ(log.errors(), Keys(2, "Could not add branch: NULL pointer\n"));
    EXPECT_EQ(system.getOxidizerBranchesListSize() + system.getFuelBranchesListSize(), 0u);
}

TYPED_TEST(Branches, CopiesAreDeep)
{
    auto original = std::make_unique<TypeParam>();
    original->addOxidizerBranch(branchOf("a"));
    original->addFuelBranch(branchOf("b"));
    const TypeParam copy(*original);
    TypeParam assigned;
    assigned.addFuelBranch(branchOf("gone"));
    assigned = *original;
    original->getOxidizerBranch(0)->setName("changed");
    original.reset();
    for (const TypeParam* other : {&copy, static_cast<const TypeParam*>(&assigned)}) {
        ASSERT_EQ(other->getOxidizerBranchesListSize(), 1u);
        ASSERT_EQ(other->getFuelBranchesListSize(), 1u);
        EXPECT_EQ(other->getOxidizerBranch(0)->getName(), "a");
        EXPECT_EQ(other->getFuelBranch(0)->getName(), "b");
    }
}

TYPED_TEST(Branches, AreReadInsideTheGroupOfTheirSide)
{
    TypeParam system;
    readText(system,
             "oxidizerFeedSystem = { inletPressure = { value = 2.0; };"
             "                       branches = ( { name = \"a\"; }, { name = \"b\"; } ); };"
             "fuelFeedSystem = { branches = ( { flowrate = 3.0; } ); };"
             "branches = ( { name = \"outside\"; } );");
    EXPECT_EQ(system.getOxidizerFeedSystem().getInletPressure(true), 2.0);
    EXPECT_EQ(system.getOxidizerFeedSystem().getName(), "oxidizerFeedSystem");
    EXPECT_EQ(system.getFuelFeedSystem().getName(), "fuelFeedSystem");
    ASSERT_EQ(system.getOxidizerBranchesListSize(), 2u);
    EXPECT_EQ(system.getOxidizerBranch(1)->getName(), "b");
    ASSERT_EQ(system.getFuelBranchesListSize(), 1u);
    EXPECT_EQ(system.getFuelBranch(0)->getMdot(), 3.0);
    Settings settings;
    system.write(settings.root(), true);
    EXPECT_FALSE(settings[system.getName().c_str()].exists("branches"));
}

TYPED_TEST(Branches, ReadingAppends)
{
    TypeParam system;
    const char* text = "fuelFeedSystem = { branches = ( { name = \"a\"; } ); };";
    readText(system, text);
    readText(system, text);
    EXPECT_EQ(system.getFuelBranchesListSize(), 2u);
}

TYPED_TEST(Branches, AnythingButAListIsPassedOver)
{
    TypeParam system;
    readText(system, "fuelFeedSystem = { branches = { name = \"a\"; }; };");
    EXPECT_TRUE(system.isFuelFeedSystem());
    EXPECT_EQ(system.getFuelBranchesListSize(), 0u);
}

TYPED_TEST(Branches, BranchWithAnUnknownUnitIsNotInTheList)
{
    TypeParam system;
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(readText(system,
                                        "fuelFeedSystem = { branches = ( { name = \"a\"; }, "
                                        "{ valvePressureDrop = { unit = \"ell\"; }; } ); };"),
                               Exception, 4, "Unknown");
    EXPECT_EQ(system.getFuelBranchesListSize(), 1u);
}

TYPED_TEST(Branches, AreWrittenInTheirOrderInsideTheirSide)
{
    TypeParam system;
    system.setOxidizerFeedSystem(new Chamber("oxidizerFeedSystem"));
    system.addOxidizerBranch(branchOf("b"));
    system.addOxidizerBranch(branchOf("a"));
    system.setFuelFeedSystem(new Chamber("fuelFeedSystem"));
    Written written(system, true);
    const libconfig::Setting& list = written.group()["oxidizerFeedSystem"]["branches"];
    ASSERT_TRUE(list.isList());
    ASSERT_EQ(list.getLength(), 2);
    EXPECT_STREQ(list[0]["name"], "b");
    EXPECT_STREQ(list[1]["name"], "a");
    EXPECT_EQ(keysOf(written.group()["oxidizerFeedSystem"]),
              (Keys{"inletPressure", "inletVelocity", "branches"}));
    const libconfig::Setting& empty = written.group()["fuelFeedSystem"]["branches"];
    EXPECT_TRUE(empty.isList());
    EXPECT_EQ(empty.getLength(), 0);
}

// The side is written only if its parameters are there, and takes its branches with it.
TYPED_TEST(Branches, AreLostWithoutTheParametersOfTheirSide)
{
    TypeParam system;
    system.addOxidizerBranch(branchOf("a"));
    system.addFuelBranch(branchOf("b"));
    Written written(system, true);
    EXPECT_FALSE(written.group().exists("oxidizerFeedSystem"));
    EXPECT_FALSE(written.group().exists("fuelFeedSystem"));
}

TYPED_TEST(Branches, ResetLeavesNothingBehind)
{
    TypeParam system;
    readText(system, "oxidizerFeedSystem = { boosterPump = { }; branches = ( { } ); };"
                     "fuelFeedSystem = { boosterPump = { }; branches = ( { } ); };"
                     "gasGenerators = ( { oxidizerFeedSystem = { }; fuelFeedSystem = { }; },"
                     "                  { oxidizerFeedSystem = { }; fuelFeedSystem = { }; } );"
                     "turbines = ( { ggType = \"serial\"; }, { ggType = \"serial\"; } );");
    EXPECT_NE(factsOf(system), factsOf(TypeParam()));
    system.reset();
    EXPECT_EQ(factsOf(system), factsOf(TypeParam()));
}

TEST(FeedSystems, ResetKeepsTypeAndCycle)
{
    Gas gas(Gas::GENERATED_GAS);
    gas.reset();
    EXPECT_EQ(gas.getType(), Gas::GENERATED_GAS);
    Pumps pumps(Pumps::EXPANDER);
    pumps.reset();
    EXPECT_EQ(pumps.getCycle(), Pumps::EXPANDER);
}

// Boost pumps.

TEST(TurbopumpFeedSystem, BoostPumpStandsInAGroupOfItsSide)
{
    Pumps pumps;
    readText(pumps, "oxidizerFeedSystem = { inletPressure = { value = 2.0; }; pumpEfficiency = 0.6;"
                    "    boosterPump = { inletPressure = { value = 1.0; }; pumpEfficiency = 0.5; };"
                    "};"
                    "fuelFeedSystem = { };");
    EXPECT_EQ(pumps.getOxidizerFeedSystem().getInletPressure(true), 2.0);
    EXPECT_EQ(pumps.getOxidizerFeedSystem().getPumpEta(), 0.6);
    EXPECT_EQ(pumps.getOxidizerBoostPump().getInletPressure(true), 1.0);
    EXPECT_EQ(pumps.getOxidizerBoostPump().getPumpEta(), 0.5);
    EXPECT_FALSE(pumps.isFuelBoostPump());

    pumps.addOxidizerBranch(branchOf("a"));
    Written written(pumps, true);
    const libconfig::Setting& side = written.group()["oxidizerFeedSystem"];
    EXPECT_EQ(keysOf(side), (Keys{"inletPressure", "inletVelocity", "pumpEfficiency", "boosterPump",
                                  "branches"}));
    EXPECT_EQ(static_cast<double>(side["boosterPump"]["pumpEfficiency"]), 0.5);
    EXPECT_EQ(static_cast<double>(side["pumpEfficiency"]), 0.6);
    EXPECT_FALSE(written.group()["fuelFeedSystem"].exists("boosterPump"));
}

TEST(TurbopumpFeedSystem, BoostPumpIsLostWithoutTheParametersOfItsSide)
{
    Pumps pumps;
    pumps.setFuelBoostPump(new BoostPumpParameters);
    EXPECT_FALSE(Written(pumps, true).group().exists("fuelFeedSystem"));
}

TEST(PressurizedFeedSystem, HasNoBoostPump)
{
    Gas gas;
    readText(gas,
             "oxidizerFeedSystem = { boosterPump = { inletPressure = { unit = \"ell\"; }; }; };");
    EXPECT_TRUE(gas.isOxidizerFeedSystem());
    EXPECT_FALSE(Written(gas, true).group()["oxidizerFeedSystem"].exists("boosterPump"));
}

// Gas generators and turbines.

TEST(TurbopumpFeedSystem, TwoGasGeneratorsCount)
{
    Pumps pumps;
    readText(pumps,
             "gasGenerators = ("
             "{ ggType = \"oxidizerRich\"; sigma = 0.8; fuelFeedSystem = { name = \"f1\"; }; },"
             "{ sigma = 0.7; oxidizerFeedSystem = { name = \"o2\"; pipeDp = { value = 3.0; }; }; },"
             "{ ggType = \"not read\"; sigma = 0.6; } );");
    EXPECT_EQ(pumps.getGG1().getType(), GasGeneratorParameters::OXIDIZER_RICH);
    EXPECT_EQ(pumps.getGG1().getSigma(), 0.8);
    EXPECT_FALSE(pumps.isOxidizerGGBranch1());
    EXPECT_EQ(pumps.getFuelGGBranch1().getName(), "f1");
    EXPECT_EQ(pumps.getGG2().getType(), GasGeneratorParameters::FUEL_RICH);
    EXPECT_EQ(pumps.getGG2().getSigma(), 0.7);
    EXPECT_EQ(pumps.getOxidizerGGBranch2().getPipeDp(true), 3.0);
    EXPECT_FALSE(pumps.isFuelGGBranch2());

    Written written(pumps, true);
    const libconfig::Setting& list = written.group()["gasGenerators"];
    ASSERT_EQ(list.getLength(), 2);
    EXPECT_EQ(keysOf(list[0]), (Keys{"ggType", "sigma", "fuelFeedSystem"}));
    EXPECT_EQ(keysOf(list[1]), (Keys{"ggType", "sigma", "oxidizerFeedSystem"}));
    EXPECT_STREQ(list[0]["ggType"], "oxidizer-rich");
}

TEST(TurbopumpFeedSystem, TwoTurbinesCount)
{
    Pumps pumps;
    readText(pumps, "turbines = ( { ggType = \"parallel\"; turbineEfficiency = 0.5; },"
                    "             { ggType = \"serial,auto\"; turbinePressureRatio = 3.0; },"
                    "             { } );"); // the third one would be refused
    EXPECT_EQ(pumps.getTurbine1().getType(), TurbineParameters::PARALLEL);
    EXPECT_EQ(pumps.getTurbine1().getEta(), 0.5);
    EXPECT_EQ(pumps.getTurbine2().getType(), TurbineParameters::SERIAL);
    EXPECT_EQ(pumps.getTurbine2().getPi(), 3.0);
    Written written(pumps, false);
    const libconfig::Setting& list = written.group()["turbines"];
    ASSERT_EQ(list.getLength(), 2);
    EXPECT_STREQ(list[1]["ggType"], "serial");
}

TEST(TurbopumpFeedSystem, AnythingButAListIsPassedOver)
{
    Pumps pumps;
    readText(pumps, "gasGenerators = { sigma = 0.8; }; turbines = { ggType = \"none\"; };");
    EXPECT_FALSE(pumps.isGG1() || pumps.isTurbine1());
    readText(pumps, "gasGenerators = ( ); turbines = ( );");
    EXPECT_FALSE(pumps.isGG1() || pumps.isTurbine1());
    EXPECT_EQ(keysOf(Written(pumps, true).group()), Keys{"cycle"});
}

TEST(TurbopumpFeedSystem, SecondIsWrittenOnlyBesideTheFirst)
{
    Pumps pumps;
    pumps.setGG2(new GasGeneratorParameters);
    pumps.setTurbine2(new TurbineParameters);
    EXPECT_EQ(keysOf(Written(pumps, true).group()), Keys{"cycle"});
    pumps.setGG1(new GasGeneratorParameters);
    pumps.setTurbine1(new TurbineParameters);
    Written written(pumps, true);
    EXPECT_EQ(written.group()["gasGenerators"].getLength(), 2);
    EXPECT_EQ(written.group()["turbines"].getLength(), 2);
}

TEST(TurbopumpFeedSystem, LinesOfAGeneratorAreWrittenOnlyWithIt)
{
    Pumps pumps;
    pumps.setOxidizerGGBranch1(new GasGeneratorBranchParameters);
    pumps.setFuelGGBranch2(new GasGeneratorBranchParameters);
    EXPECT_FALSE(Written(pumps, true).group().exists("gasGenerators"));
    pumps.setGG1(new GasGeneratorParameters);
    Written written(pumps, true);
    ASSERT_EQ(written.group()["gasGenerators"].getLength(), 1);
    EXPECT_EQ(keysOf(written.group()["gasGenerators"][0]), (Keys{"ggType", "oxidizerFeedSystem"}));
}

TEST(TurbopumpFeedSystem, OrderOfWriting)
{
    Pumps pumps;
    readText(pumps, "turbines = ( { ggType = \"serial\"; } ); gasGenerators = ( { } );"
                    "fuelFeedSystem = { }; oxidizerFeedSystem = { };");
    EXPECT_EQ(keysOf(Written(pumps, true).group()),
              (Keys{"cycle", "oxidizerFeedSystem", "fuelFeedSystem", "gasGenerators", "turbines"}));
}

TEST(TurbopumpFeedSystem, MembersThatCannotBeReadLeaveTheOldOnes)
{
    Pumps pumps;
    auto* generator = new GasGeneratorParameters;
    pumps.setGG1(generator);
    const LogCapture log;
    EXPECT_THROW(readText(pumps, "gasGenerators = ( { ggType = \"lean\"; } );"), Exception);
    EXPECT_EQ(&pumps.getGG1(), generator);
}

// The whole section.

TEST(PropellantFeedSystem, HoldsNothingAtFirst)
{
    PropellantFeedSystem feed;
    EXPECT_EQ(feed.getName(), "propelantFeedSystem");
    EXPECT_FALSE(feed.isPressurizedFeedSystemSet() || feed.isTurbopumpFeedSystemSet());
    EXPECT_FALSE(feed.isEstimateDryMass());
    EXPECT_NO_THROW(feed.validate());
    EXPECT_EQ(keysOf(Written(feed, true).group()), Keys{"estimateDryMass"});
    EXPECT_EQ(keysOf(Written(feed, false).group()), Keys{});
}

TEST(PropellantFeedSystem, MustBeThereToBeRead)
{
    PropellantFeedSystem feed;
    Settings settings("propellantFeedSystem = { estimateDryMass = true; };"); // the usual spelling
    EXPECT_THROW(feed.read(settings.root()), libconfig::SettingNotFoundException);
}

TEST(PropellantFeedSystem, SettingOneSystemDropsTheOther)
{
    PropellantFeedSystem feed;
    Gas& gas = feed.setPressurizedFeedSystem(Gas::VAPORIZED_PROPELLANT);
    EXPECT_EQ(&gas, &feed.getPressurizedFeedSystem());
    EXPECT_EQ(feed.getPressurizedFeedSystemType(), Gas::VAPORIZED_PROPELLANT);
    Pumps& pumps = feed.setTurbopumpFeedSystem(Pumps::EXPANDER);
    EXPECT_EQ(&pumps, &feed.getTurbopumpFeedSystem());
    EXPECT_EQ(feed.getTurbopumpFeedSystemCycle(), Pumps::EXPANDER);
    EXPECT_FALSE(feed.isPressurizedFeedSystemSet());
    feed.setPressurizedFeedSystem(Gas::STORED_GAS);
    EXPECT_FALSE(feed.isTurbopumpFeedSystemSet());
}

TEST(PropellantFeedSystem, SettingASystemAgainKeepsWhatItHolds)
{
    PropellantFeedSystem feed;
    feed.setTurbopumpFeedSystem(Pumps::EXPANDER).setTurbine1(new TurbineParameters);
    feed.setTurbopumpFeedSystem(Pumps::STAGED_COMBUSTION);
    EXPECT_EQ(feed.getTurbopumpFeedSystemCycle(), Pumps::STAGED_COMBUSTION);
    EXPECT_TRUE(feed.getTurbopumpFeedSystem().isTurbine1());
    feed.setPressurizedFeedSystem(Gas::STORED_GAS).addFuelBranch(branchOf("a"));
    feed.setPressurizedFeedSystem(Gas::GENERATED_GAS);
    EXPECT_EQ(feed.getPressurizedFeedSystemType(), Gas::GENERATED_GAS);
    EXPECT_EQ(feed.getPressurizedFeedSystem().getFuelBranchesListSize(), 1u);
}

TEST(PropellantFeedSystem, DeletingAndClearing)
{
    PropellantFeedSystem feed;
    feed.setPressurizedFeedSystem(Gas::STORED_GAS);
    feed.deleteTurbopumpFeedSystem();
    EXPECT_TRUE(feed.isPressurizedFeedSystemSet());
    feed.deletePressurizedFeedSystem();
    EXPECT_FALSE(feed.isPressurizedFeedSystemSet());
    feed.setTurbopumpFeedSystem(Pumps::EXPANDER);
    feed.deletePressurizedFeedSystem();
    EXPECT_TRUE(feed.isTurbopumpFeedSystemSet());
    feed.deleteTurbopumpFeedSystem();
    EXPECT_FALSE(feed.isTurbopumpFeedSystemSet());
    feed.setEstimateDryMass(true);
    feed.setTurbopumpFeedSystem(Pumps::EXPANDER);
    feed.clear();
    EXPECT_FALSE(feed.isTurbopumpFeedSystemSet());
    feed.setPressurizedFeedSystem(Gas::STORED_GAS);
    feed.clear();
    EXPECT_FALSE(feed.isPressurizedFeedSystemSet());
    EXPECT_TRUE(feed.isEstimateDryMass());
}

TEST(PropellantFeedSystem, PressurizedSystemWinsOverTurbopumps)
{
    PropellantFeedSystem feed;
    readText(feed, "turbopumpFeedSystem = { cycle = \"not read\"; }; estimateDryMass = true;"
                   "gasPressurizedFeedSystem = { type = \"byStoredGas\"; };");
    EXPECT_TRUE(feed.isPressurizedFeedSystemSet());
    EXPECT_FALSE(feed.isTurbopumpFeedSystemSet());
    EXPECT_TRUE(feed.isEstimateDryMass());
    EXPECT_EQ(keysOf(Written(feed, true).group()),
              (Keys{"gasPressurizedFeedSystem", "estimateDryMass"}));
}

// Reading drops nothing: a pressurized system that is there hides the turbopumps that are read.
TEST(PropellantFeedSystem, FirstSystemSetIsTheOneWritten)
{
    PropellantFeedSystem feed;
    feed.setPressurizedFeedSystem(Gas::STORED_GAS);
    readText(feed, "turbopumpFeedSystem = { };");
    EXPECT_TRUE(feed.isPressurizedFeedSystemSet() && feed.isTurbopumpFeedSystemSet());
    EXPECT_EQ(keysOf(Written(feed, true).group()),
              (Keys{"gasPressurizedFeedSystem", "estimateDryMass"}));
}

TEST(PropellantFeedSystem, TurbopumpsAreWrittenWithoutAPressurizedSystem)
{
    PropellantFeedSystem feed;
    feed.setTurbopumpFeedSystem(Pumps::FULL_FLOW_STAGED_COMBUSTION);
    feed.setEstimateDryMass(true);
    Written written(feed, true);
    EXPECT_EQ(keysOf(written.group()), (Keys{"turbopumpFeedSystem", "estimateDryMass"}));
    EXPECT_STREQ(written.group()["turbopumpFeedSystem"]["cycle"], "full-flow staged combustion");
    EXPECT_TRUE(static_cast<bool>(written.group()["estimateDryMass"]));
    EXPECT_NO_THROW(feed.validate());
}

} // namespace
