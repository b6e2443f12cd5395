#include <ketra/thermo/input/PropellantFeedSystem.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/FeedBranch.h>
#include <unit/thermo_input/FeedFacts.h>
#include <unit/thermo_input/MemberRows.h>
#include <unit/thermo_input/Written.h>

#include <gtest/gtest.h>

#include <stdexcept>

using ketra_test::branchOf;
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

} // namespace
