#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace ketra_test;
using math::matrix::ColumnVector;
using reaction::Product;
using reaction::ReactingMixture;
using reaction::TransitionProduct;
using thermo::gasConstant;

namespace {

class ReactingMixturePhasesTest : public SampleSpeciesTest
{
};

} // namespace

TEST_F(ReactingMixturePhasesTest, AfterResetOnlyGasesReact)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_EQ(mixture.size(), 2u);
    EXPECT_EQ(mixture.gasSize(), mixture.size());
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
    EXPECT_EQ(mixture.size(), 3u);
    EXPECT_EQ(mixture.gasSize(), 2u);
    mixture.reset();
    EXPECT_EQ(mixture.gasSize(), mixture.size());
    EXPECT_EQ(mixture.size(), 2u);
}

TEST_F(ReactingMixturePhasesTest, AnUnknownProductCannotEnter)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    mixture.reset();
    Product stranger(*thermo::Database::getInstance()->find("N2"));
    KETRA_EXPECT_THROW_CODE(mixture.addProduct(&stranger), thermo::Exception, 4);
    EXPECT_EQ(log.errors(), (Names{"Reacting Mixture: unknown species\r\n"}));
    EXPECT_EQ(log.tagOf("Reacting Mixture: unknown species\r\n"), "THERMO");
    EXPECT_FALSE(mixture.contains(&stranger));
    EXPECT_EQ(mixture.size(), 4u);
}

TEST_F(ReactingMixturePhasesTest, AKnownProductEntersInItsPlace)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    mixture.reset();
    Product second(*thermo::Database::getInstance()->find("H2O"));
    EXPECT_TRUE(mixture.contains(&second));
    mixture.addProduct(&second);
    EXPECT_EQ(mixture.size(), 5u);
    EXPECT_EQ(reactingNames(mixture), (Names{"H", "H2", "H2O", "H2O", "O2"}));
    mixture.reset(); // the list forgets the stranger object before it dies
}

TEST_F(ReactingMixturePhasesTest, WithoutMultipliersTheLowestGibbsEnergyBelowZeroEnters)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_TRUE(mixture.checkNewCondesedPhases(800.0, nullptr, 1));
    EXPECT_EQ(reactingNames(mixture), (Names{"AL", "O2", "AL2O3(a)"}));
    EXPECT_EQ(mixture.n(2), 0.1);
    EXPECT_EQ(mixture.product(2)->T(), 800.0);
    EXPECT_EQ(log.warnings(), (Names{"T=800.0000 Include AL2O3(a)\n"}));
    EXPECT_EQ(log.tagOf("T=800.0000 Include AL2O3(a)\n"), "THERMO");
    // One phase at most at each call: G of AL(cr) is 3 (1 - ln 800) - 900/800 + 14 = -4.18.
    EXPECT_TRUE(mixture.checkNewCondesedPhases(800.0, nullptr, 1));
    EXPECT_EQ(mixture.size(), 4u);
    EXPECT_FALSE(mixture.checkNewCondesedPhases(800.0, nullptr, 1));
}

TEST_F(ReactingMixturePhasesTest, NoCandidateAboveZeroEnters)
{
    useSpecies({gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0),
                condensedRecord("AL(cr)", {{"AL", 1.0}}, 26.98, 1, 200.0, 2000.0, 9000.0, -14.0)});
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_FALSE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ReactingMixturePhasesTest, MultipliersTurnTheGibbsEnergyIntoTheGainOfEntering)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    const double gSolid = 3.0 * (1.0 - std::log(800.0)) - 900.0 / 800.0 + 14.0;
    const double gOxide = 3.0 * (1.0 - std::log(800.0)) - 202000.0 / 800.0 + 50.0;
    for (const int offset : {0, 1}) {
        mixture.reset();
        // Multipliers that leave the oxide 0.5 above, the metal 0.25 below what they are worth.
        const double piAl = gSolid + 0.25;
        ColumnVector x(4);
        const auto at = static_cast<unsigned>(offset);
        x.set(at, piAl);
        x.set(at + 1, (gOxide - 0.5 - 2.0 * piAl) / 3.0);
        EXPECT_TRUE(mixture.checkNewCondesedPhases(800.0, &x, offset));
        EXPECT_EQ(mixture.product(2)->getName(), "AL(cr)");
        x.set(at, gSolid - 0.25);
        x.set(at + 1, (gOxide - 0.5 - 2.0 * (gSolid - 0.25)) / 3.0);
        EXPECT_FALSE(mixture.checkNewCondesedPhases(800.0, &x, offset));
    }
}

TEST_F(ReactingMixturePhasesTest, AGasMixtureTakesNoCondensedPhase)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial, false, false);
    mixture.reset();
    EXPECT_FALSE(mixture.checkNewCondesedPhases(800.0, nullptr, 1));
    EXPECT_EQ(mixture.size(), 2u);
}

TEST_F(ReactingMixturePhasesTest, ACandidateThatCannotBeEvaluatedIsPassedOver)
{
    Record gap = condensedRecord("AL(cr)", {{"AL", 1.0}}, 26.98, 1, 200.0, 500.0, -9000.0);
    gap.intervals.push_back(constantCp(600.0, 1000.0, 3.0, -9000.0, -14.0));
    useSpecies({gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0), gap});
    const auto initial = mixtureOf({{"AL(cr)", 300.0, 0.5}, {"O2", 300.0, 0.5}});
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_FALSE(mixture.checkNewCondesedPhases(550.0, nullptr, 1));
    EXPECT_TRUE(mixture.checkNewCondesedPhases(650.0, nullptr, 1));
}

TEST_F(ReactingMixturePhasesTest,
       ACandidateEntersAtTheVeryEndsOfItsRangeAndAPresentPhaseLeavesThere)
{
    const auto initial = aluminiumOxygen();
    for (const double T : {200.0, 1900.0}) {
        SCOPED_TRACE(T);
        useSpecies(sampleSpecies());
        const auto again = aluminiumOxygen();
        Names none, included{"AL", "O2", "AL2O3(a)"}; // a plain phase: no transition products
        OpenMixture mixture(*again);
        mixture.setSpecies(included, none);
        ASSERT_TRUE(mixture.checkNewCondesedPhases(T == 1900.0 ? 2000.0 : T, nullptr, 1));
        log.clear();
        EXPECT_TRUE(
            mixture.checkPresentCondesedPhases(T == 1900.0 ? 2000.0 : T, false, false, 0.0));
        EXPECT_EQ(mixture.size(), 2u);
        EXPECT_EQ(log.warnings(), (Names{T == 1900.0 ? "T=2000.000000 Remove AL2O3(a)\n"
                                                     : "T=200.000000 Remove AL2O3(a)\n"}));
    }
}

TEST_F(ReactingMixturePhasesTest, ANegativeAmountLeavesOnlyWhenAskedFor)
{
    const auto initial = aluminiumOxygen();
    for (const auto& [first, second, stays] :
         {std::tuple(false, false, true), std::tuple(true, false, false),
          std::tuple(false, true, false)}) {
        SCOPED_TRACE(testing::Message() << first << second);
        ReactingMixture mixture(*initial);
        mixture.reset();
        ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
        Product* solid = mixture.product(2);
        solid->setN(-0.2);
        log.clear();
        EXPECT_EQ(mixture.checkPresentCondesedPhases(1100.0, first, second, 0.0), !stays);
        EXPECT_EQ(mixture.size(), stays ? 3u : 2u);
        EXPECT_EQ(solid->n(), stays ? -0.2 : 0.1);
        if (stays) {
            EXPECT_EQ(solid->T(), 1100.0);
        }
        EXPECT_TRUE(log.lines().empty()); // such a phase leaves without a word
    }
}

TEST_F(ReactingMixturePhasesTest, ASubstancePassesThroughItsPhaseChange)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
    mixture.product(2)->setN(0.3);
    Product* low = mixture.product(2);
    log.clear();
    EXPECT_FALSE(mixture.checkPresentCondesedPhases(1899.0, false, false, 0.0));
    EXPECT_TRUE(
        mixture.checkPresentCondesedPhases(1900.0, false, false, 0.0)); // the end is outside
    EXPECT_EQ(mixture.product(2)->getName(), "AL2O3(transit)");
    EXPECT_EQ(mixture.n(2), 0.3);
    EXPECT_EQ(mixture.product(2)->T(), 1900.0);
    EXPECT_EQ(low->n(), 0.1);
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(2500.0, false, false, 0.0));
    EXPECT_EQ(mixture.product(2)->getName(), "AL2O3(L)");
    EXPECT_EQ(mixture.n(2), 0.3);
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(7000.0, false, false, 0.0));
    EXPECT_EQ(mixture.size(), 2u);
    EXPECT_EQ(mixture.gasSize(), 2u);
    EXPECT_EQ(log.warnings(), (Names{"T=1900.000000 Replace AL2O3(a) with AL2O3(transit)\n",
                                     "T=2500.000000 Replace AL2O3(transit) with AL2O3(L)\n",
                                     "T=7000.000000 Remove AL2O3(L)\n"}));
    EXPECT_EQ(log.tagOf("T=7000.000000 Remove AL2O3(L)\n"), "THERMO");
}

TEST_F(ReactingMixturePhasesTest, AJumpOverTheBandGoesStraightToTheOtherPhase)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    ASSERT_TRUE(mixture.checkNewCondesedPhases(3000.0, nullptr, 1));
    log.clear();
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(1000.0, false, false, 0.0));
    EXPECT_EQ(log.warnings(), (Names{"T=1000.000000 Replace AL2O3(L) with AL2O3(a)\n"}));
}

TEST_F(ReactingMixturePhasesTest, APhaseThatLeavesHandsItsAmountToAPresentOne)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1)); // low
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1900.0, nullptr, 1)); // blend
    Product* low = entryOf(mixture, "AL2O3(a)");
    Product* blend = entryOf(mixture, "AL2O3(transit)");
    ASSERT_TRUE(low && blend);
    low->setN(0.3);
    log.clear();
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(1950.0, false, false, 0.0));
    EXPECT_DOUBLE_EQ(blend->n(), 0.4);
    EXPECT_EQ(low->n(), 0.1);
    EXPECT_EQ(entryOf(mixture, "AL2O3(a)"), nullptr);
    EXPECT_EQ(log.warnings(), (Names{"T=1950.000000 Remove AL2O3(a)\n"}));
}

TEST_F(ReactingMixturePhasesTest, WithinATolerancePhasesShareTheAmountAtTheEdge)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
    Product* low = mixture.product(2);
    low->setN(0.3);
    log.clear();
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(1900.5, false, false, 1.0));
    EXPECT_EQ(log.warnings(), (Names{"T=1900.500000 Add AL2O3(transit)\n"}));
    ASSERT_EQ(mixture.size(), 4u);
    EXPECT_DOUBLE_EQ(low->n(), 0.15);
    EXPECT_EQ(low->T(), 1900.0);
    EXPECT_DOUBLE_EQ(entryOf(mixture, "AL2O3(transit)")->n(), 0.15);
    // Both present and both near an edge: nothing is handed over, the phase at its edge is removed.
    log.clear();
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(1900.5, false, false, 1.0));
    EXPECT_EQ(log.warnings(), (Names{"T=1900.500000 Remove AL2O3(a)\n"}));
    EXPECT_DOUBLE_EQ(entryOf(mixture, "AL2O3(transit)")->n(), 0.15);
}

TEST_F(ReactingMixturePhasesTest, AGasOutsideItsRangeLeavesTheList)
{
    std::vector<Record> records = sampleSpecies();
    for (Record& record : records)
        if (record.name == "H2O") record.intervals[0].T2 = 3000.0;
    useSpecies(records);
    const auto initial = hydrogenOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_FALSE(
        mixture.checkPresentCondesedPhases(3000.0, false, true, 0.0)); // a gas may stand at its end
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(3001.0, false, true, 0.0));
    EXPECT_EQ(reactingNames(mixture), (Names{"H", "H2", "O2"}));
    EXPECT_EQ(mixture.gasSize(), 3u);
    EXPECT_EQ(log.warnings(), (Names{"T=3001.000000 Remove H2O\n"}));
}

TEST_F(ReactingMixturePhasesTest, AGasThatHasNowhereToGoMayTurnIntoItsCondensedPhase)
{
    std::vector<Record> records = sampleSpecies();
    for (Record& record : records)
        if (record.name == "H2O") record.intervals[0].T1 = 400.0;
    useSpecies(records);
    const auto initial = hydrogenOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    entryOf(mixture, "H2O")->setN(0.4);
    EXPECT_TRUE(mixture.checkPresentCondesedPhases(350.0, false, true, 0.0));
    ASSERT_NE(entryOf(mixture, "H2O(L)"), nullptr);
    EXPECT_EQ(entryOf(mixture, "H2O(L)")->n(), 0.4);
    EXPECT_EQ(mixture.size(), 4u);
    EXPECT_EQ(mixture.gasSize(), 3u);
    EXPECT_EQ(log.warnings(), (Names{"T=350.000000 Replace H2O with H2O(L)\n"}));
}
