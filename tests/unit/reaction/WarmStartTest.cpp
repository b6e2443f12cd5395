// A warm problem: a solve that begins at the state the problem was copied from.

#include <support/CapturingLogger.h>
#include <support/Reactants.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace ketra_test;
using reaction::Equilibrium;
using reaction::ReactingMixture;
using verification::Grade;

namespace {

const char* const warm = "from the nearest solution";
const char* const cold = "from equal amounts";

std::unique_ptr<ReactingMixture> productsOf(const Equilibrium& problem)
{
    return std::unique_ptr<ReactingMixture>(problem.copyReactingMixture(true, true));
}

double entropyOf(const Equilibrium& problem)
{
    return problem.getS() * problem.getResultingMixtureQuantaty();
}

double amountOf(const ReactingMixture& products, const std::string& name)
{
    for (unsigned j = 0; j < products.size(); ++j)
        if (products.product(j)->getName() == name) return products.n(j);
    return 0.0;
}

class WarmStartTest : public testing::Test
{
protected:
    WarmStartTest() { useShippedSpecies(); }

    static std::unique_ptr<thermo::Mixture> keroseneOxygen()
    {
        return mixtureOf({{"O2(L)", 90.17, 0.7}, {"RP-1", 298.15, 0.3}});
    }
    /// A solved chamber.
    static std::unique_ptr<Equilibrium> chamber(thermo::Mixture& charge)
    {
        auto problem = std::make_unique<Equilibrium>(charge);
        problem->setWarmStart(true);
        problem->setPHspec(7e6, -8e5);
        problem->solve(false);
        return problem;
    }

    LogCapture log;
};

TEST_F(WarmStartTest, IsCopied)
{
    const auto charge = keroseneOxygen();
    Equilibrium problem(*charge);
    EXPECT_FALSE(problem.isWarmStart());
    problem.setWarmStart(true);
    const Equilibrium copy(problem);
    EXPECT_TRUE(copy.isWarmStart());
    EXPECT_FALSE(copy.isPersistent());
    EXPECT_EQ(copy.getT(), 3600.0); // there is no solution to begin at yet
}

TEST_F(WarmStartTest, TheFirstSolveIsACold)
{
    const auto charge = keroseneOxygen();
    const auto first = chamber(*charge);
    ASSERT_EQ(first->getAttempts().size(), 1u);
    EXPECT_EQ(first->getAttempts()[0].start, cold);
    Equilibrium plain(*charge);
    plain.setPHspec(7e6, -8e5);
    plain.solve(false);
    EXPECT_EQ(plain.getT(), first->getT());
    EXPECT_EQ(plain.getGspec(), first->getGspec());
}

TEST_F(WarmStartTest, ACopyBeginsAtTheTemperatureOfItsSource)
{
    const auto charge = keroseneOxygen();
    const auto source = chamber(*charge);
    Equilibrium copy(*source);
    EXPECT_EQ(copy.getT(), source->getT());
    copy.setPS(1e6, entropyOf(*source));
    EXPECT_EQ(copy.getT(), source->getT());
    copy.setT(2500.0); // the caller's word
    EXPECT_EQ(copy.getT(), 2500.0);
    copy.solve(false);
    EXPECT_EQ(copy.getAttempts()[0].start, warm);
    EXPECT_EQ(copy.certificate().grade, Grade::A);
}

// The state of a solution does not depend on its start.
TEST_F(WarmStartTest, WarmAndColdSolvesEndInTheSameState)
{
    struct Case {
        std::vector<Reactant> reactants;
        double h; // J/kg
        double coldest;
    };
    const std::vector<Case> cases{
        {{{"O2(L)", 90.17, 0.857}, {"H2(L)", 20.27, 0.143}}, -9e5, 400.0},
        {{{"O2(L)", 90.17, 0.7}, {"RP-1", 298.15, 0.3}}, -8e5, 700.0},
        {{{"N2O4(L)", 298.15, 0.68}, {"CH6N2(L)", 298.15, 0.32}}, 3e5, 700.0},
        {{{"NH4CLO4(I)", 298.15, 0.7}, {"(CH2)x(cr)", 298.15, 0.12}, {"AL(cr)", 298.15, 0.18}},
         -1.9e6,
         2440.0}, // above the band in which alumina melts
    };
    for (const Case& each : cases) {
        const auto charge = mixtureOf(each.reactants);
        std::vector<std::unique_ptr<Equilibrium>> stations;
        stations.push_back(std::make_unique<Equilibrium>(*charge));
        stations.back()->setWarmStart(true);
        stations.back()->setPHspec(7e6, each.h);
        stations.back()->solve(false);
        const double S = entropyOf(*stations.back());
        for (double p = 4e6; p > 1e3; p *= 0.5) {
            stations.push_back(std::make_unique<Equilibrium>(*stations.back()));
            Equilibrium& warmed = *stations.back();
            warmed.setPS(p, S);
            warmed.solve(false);
            if (warmed.getT() < each.coldest) break;
            ASSERT_EQ(warmed.getAttempts().size(), 1u) << warmed.getT();
            EXPECT_EQ(warmed.getAttempts()[0].start, warm);
            EXPECT_EQ(warmed.certificate().grade, Grade::A) << warmed.getT();

            Equilibrium other(*charge);
            other.setPS(p, S);
            other.solve(false);
            EXPECT_NEAR(warmed.getT(), other.getT(), 1e-7 * other.getT());
            EXPECT_NEAR(warmed.getHspec(), other.getHspec(), 1e-6 * std::abs(other.getHspec()));
            const auto left = productsOf(warmed);
            const auto right = productsOf(other);
            ASSERT_EQ(left->size(), right->size());
            for (unsigned j = 0; j < left->size(); ++j)
                EXPECT_NEAR(left->n(j), right->n(j), 1e-6) << left->product(j)->getName();
        }
        EXPECT_GT(stations.size(), 4u);
    }
}

TEST_F(WarmStartTest, TheOwnLastSolutionIsAStartToo)
{
    const auto charge = keroseneOxygen();
    const auto problem = chamber(*charge);
    const double T = problem->getT();
    problem->setPHspec(7e6, -8e5);
    problem->solve(false);
    ASSERT_EQ(problem->getAttempts().size(), 1u);
    EXPECT_EQ(problem->getAttempts()[0].start, warm);
    EXPECT_NEAR(problem->getT(), T, 1e-7 * T);
}

TEST_F(WarmStartTest, AProblemSolvedBeforeCanBeMadeWarm)
{
    const auto charge = keroseneOxygen();
    Equilibrium problem(*charge);
    problem.setPHspec(7e6, -8e5);
    problem.solve(false);
    problem.setWarmStart(true);
    Equilibrium copy(problem);
    EXPECT_EQ(copy.getT(), problem.getT());
    copy.setPS(1e6, entropyOf(problem));
    copy.solve(false);
    EXPECT_EQ(copy.getAttempts()[0].start, warm);
}

// Below 298.15 K the list is short: ions and many gases have no data there.
TEST_F(WarmStartTest, GasesThatHadLeftComeBack)
{
    const auto charge = mixtureOf({{"N2", 298.15, 0.8}, {"O2", 298.15, 0.2}});
    Equilibrium source(*charge, true, true);
    source.setWarmStart(true);
    source.setPersistent(true); // without ions the row of the electron is empty
    source.setPT(1e5, 250.0);
    source.solve(false);
    const unsigned few = productsOf(source)->gasSize();
    Equilibrium copy(source);
    copy.setPT(1e5, 9000.0);
    copy.solve(false);
    EXPECT_EQ(copy.certificate().grade, Grade::A);
    const auto products = productsOf(copy);
    EXPECT_GT(products->gasSize(), few);
    EXPECT_GT(amountOf(*products, "e-"), 1e-4);
    EXPECT_GT(amountOf(*products, "N"), 0.1);
}

// Alumina of the chamber is liquid, that of the exit solid: the phases are tested as always.
TEST_F(WarmStartTest, AWrongPhaseIsNotInherited)
{
    const auto charge = mixtureOf(
        {{"NH4CLO4(I)", 298.15, 0.7}, {"(CH2)x(cr)", 298.15, 0.12}, {"AL(cr)", 298.15, 0.18}});
    Equilibrium source(*charge);
    source.setWarmStart(true);
    source.setPersistent(true);
    source.setPT(1e6, 3200.0);
    source.solve(false);
    ASSERT_EQ(source.getNumberOfCondensedSpecies(), 1u);
    EXPECT_EQ(source.getCondensedSpecies(0u)->getName(), "AL2O3(L)");
    Equilibrium copy(source);
    copy.setPT(1e4, 1500.0);
    copy.solve(false);
    EXPECT_EQ(copy.certificate().grade, Grade::A);
    ASSERT_EQ(copy.getNumberOfCondensedSpecies(), 1u);
    EXPECT_EQ(copy.getCondensedSpecies(0u)->getName(), "AL2O3(a)");
}

// A start that leads nowhere: water all along an expansion, and none in the state it came from.
TEST_F(WarmStartTest, AFailedWarmSolveIsFollowedByTheColdOne)
{
    const auto charge = mixtureOf({{"F2", 298.15, 0.582247}, {"H2", 298.15, 0.417753}});
    Equilibrium source(*charge);
    source.setWarmStart(true);
    source.setPT(1e5, 300.0);
    source.solve(false);
    Equilibrium copy(source);
    copy.setPT(1e5, 100.0); // below all data
    log.clear();
    EXPECT_THROW(copy.solve(false), thermo::Exception);
    ASSERT_EQ(copy.getAttempts().size(), 2u);
    EXPECT_EQ(copy.getAttempts()[0].start, warm);
    EXPECT_EQ(copy.getAttempts()[1].start, cold);
    EXPECT_FALSE(copy.getAttempts()[1].finished);
    EXPECT_EQ(log.errors().size(), 1u); // that of the cold solve; the first was only a try
    copy.setPT(1e5, 2000.0);
    copy.solve(false);
    EXPECT_EQ(copy.certificate().grade, Grade::A);
}

TEST_F(WarmStartTest, AStateOfOtherSpeciesIsAStart)
{
    const auto charge = keroseneOxygen();
    const auto source = chamber(*charge);
    Equilibrium copy(*source);
    std::vector<std::string> included, omitted{"CO2", "OH"};
    copy.setSpecies(included, omitted);
    copy.setPS(1e6, entropyOf(*source));
    copy.solve(false);
    EXPECT_EQ(copy.getAttempts()[0].start, warm);
    EXPECT_EQ(copy.certificate().grade, Grade::A);
    const auto products = productsOf(copy);
    EXPECT_EQ(amountOf(*products, "CO2"), 0.0);
    EXPECT_GT(amountOf(*products, "CO"), 0.1);
}

} // namespace
