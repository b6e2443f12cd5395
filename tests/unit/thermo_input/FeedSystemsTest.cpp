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
