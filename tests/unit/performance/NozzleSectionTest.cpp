#include "Sections.h"

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/math/equation/Exception.h>
#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

// How a section is found from what it is given by.

namespace {

using namespace ketra_test;

/// Area ratio that the section really has, by its own mass flux.
double areaRatioOf(Chamber& chamber, const Section& section)
{
    const reaction::Derivatives& throat = *chamber.getDerivatives(Chamber::THROAT);
    return throat.getRho() * throat.getA() / (section.getRho() * section.getW());
}

class NozzleSection : public testing::Test
{
protected:
    Chamber& chamber() const
    {
        static const std::unique_ptr<Chamber> shared = hydrogenChamber();
        return *shared;
    }
    Chamber& finiteChamber() const
    {
        static const std::unique_ptr<Chamber> shared = hydrogenChamber(3.0);
        return *shared;
    }
    double throatP() const { return stationOf(chamber(), Chamber::THROAT).getP(); }
    double endP() const { return stationOf(chamber(), Chamber::CHAMBER_END).getP(); }
};

TEST_F(NozzleSection, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Section>);
    EXPECT_FALSE(std::is_copy_assignable_v<Section>);
}

TEST_F(NozzleSection, ByAreaRatioHasThatAreaWithinTheToleranceOfTheSearch)
{
    for (const double Fr : {1.0002, 1.001, 1.01, 1.1, 2.0, 10.0, 77.0, 400.0}) {
        const Section section = byArea(chamber(), Fr);
        EXPECT_EQ(section.getFr(), Fr);
        EXPECT_NEAR(areaRatioOf(chamber(), section), Fr, 5e-4 * Fr);
        EXPECT_LT(section.getP(), throatP());
        EXPECT_GT(section.getMach(), 1.0);
    }
}

/// The pressure at which a search by area ratio ends, worked out here step by step.
double pressureOfSearch(Chamber& chamber, double Fr)
{
    const reaction::Equilibrium& injection = stationOf(chamber, Chamber::INJECTION_PLANE);
    const reaction::Equilibrium& end = stationOf(chamber, Chamber::CHAMBER_END);
    const reaction::Derivatives& throat = *chamber.getDerivatives(Chamber::THROAT);
    const double S = end.getS() * end.getResultingMixtureQuantaty(), k = throat.getK();
    const double lambda = gasdynamics::lambda_q(1 / Fr, k, true);
    double p = end.getP() * gasdynamics::gf_pi(lambda, k);
    double T = end.getT() * (1 - (k - 1) * lambda * lambda / (k + 1));
    reaction::Equilibrium problem(end);
    for (int pass = 0, mode = 0; pass < 150; ++pass) {
        problem.setPS(p, S);
        problem.setT(std::max(T, 700.0));
        const std::unique_ptr<reaction::Derivatives> derivatives(
            Chamber::solveReaction(&problem, 1.0, false, false));
        const double W = std::sqrt(2 * (injection.getHspec() - problem.getHspec()));
        const double F = throat.getRho() * throat.getA() / (derivatives->getRho() * W);
        const double error = std::abs(Fr - F) / Fr;
        if (error < 0.0005) return p;
        double step;
        if (mode == 0 && error > 0.2) {
            step = (F / Fr) * (F / Fr) - 1;
        } else if (mode == 1 && error > 0.05) {
            step = F / Fr - 1;
        } else {
            step = std::sqrt(F / Fr) - 1;
            mode = error > 0.1 ? 1 : 2;
        }
        p = std::min(p + step * p, stationOf(chamber, Chamber::THROAT).getP());
        T = problem.getT();
    }
    return 0.0;
}

// Far off, a step is quadratic in the areas, nearer it is linear, and in the end a square root.
TEST_F(NozzleSection, ByAreaRatioIsSearchedWithStepsThatFitTheDistance)
{
    for (double Fr = 1.3; Fr < 1000.0; Fr *= 1.13)
        EXPECT_DOUBLE_EQ(byArea(chamber(), Fr).getP(), pressureOfSearch(chamber(), Fr)) << Fr;
    // with alumina the perfect gas is a worse guess
    useShippedSpecies();
    const auto solid = solvedChamber(*aluminisedSolid(0.3));
    for (const double Fr : {1.5, 3.0, 9.0, 30.0})
        EXPECT_DOUBLE_EQ(byArea(*solid, Fr).getP(), pressureOfSearch(*solid, Fr)) << Fr;
}

TEST_F(NozzleSection, ByPressureHasThatPressureAndTheAreaThatGoesWithIt)
{
    const Section section = byPressure(chamber(), 5e4);
    EXPECT_EQ(section.getP(), 5e4);
    EXPECT_EQ(section.getReaction()->getP(), 5e4);
    EXPECT_EQ(section.getPi(), chamberP / 5e4);
    EXPECT_EQ(section.getFr(), areaRatioOf(chamber(), section));
}

TEST_F(NozzleSection, ByPressureRatioTakesItToTheInjectionPlane)
{
    const double ratio = 100.0;
    for (Chamber* c : {&chamber(), &finiteChamber()}) {
        const Section section(c, ratio, Section::PRESSURE_RATIO, true, false, false, -1);
        EXPECT_EQ(section.getP(), stationOf(*c, Chamber::INJECTION_PLANE).getP() / ratio);
        EXPECT_NEAR(section.getPi(), ratio, 1e-12 * ratio);
        const Section same = byPressure(*c, section.getP());
        EXPECT_NEAR(section.getT(), same.getT(), 1e-7 * same.getT());
    }
}

TEST_F(NozzleSection, DecidesTheSideOfTheThroatByTheGivenPressure)
{
    const Section below(&chamber(), throatP() * 0.99, Section::PRESSURE, false, false, false, -1);
    EXPECT_GT(below.getMach(), 1.0);
    EXPECT_GT(below.getIs_core(), 0.0);
    const Section above(&chamber(), throatP() * 1.01, Section::PRESSURE, true, false, false, -1);
    EXPECT_LT(above.getMach(), 1.0);
    EXPECT_EQ(above.getIs_core(), 0.0);
}

TEST_F(NozzleSection, CountsAsSubsonicAtExactlyTheThroatPressure)
{
    const Section section = byPressure(chamber(), throatP());
    EXPECT_EQ(section.getIs_core(), 0.0);
    EXPECT_EQ(section.getIs_v_core(), 0.0);
    EXPECT_EQ(section.getKp_core(), 0.0);
    EXPECT_EQ(section.getKp_v_core(), 0.0);
    EXPECT_NEAR(section.getMach(), 1.0, 2e-5);
    EXPECT_NEAR(section.getFr(), 1.0, 2e-5);
    EXPECT_GT(section.getF(), 0.0);
}

TEST_F(NozzleSection, OfAnAreaRatioNextToOneIsTheThroat)
{
    for (const bool supersonic : {true, false}) {
        for (const double value : {1.0, 1.00005, 0.99995, 1.0000999}) {
            const Section section(&chamber(), value, Section::AREA_RATIO, supersonic, false, false,
                                  -1);
            EXPECT_EQ(section.getP(), throatP());
            EXPECT_EQ(section.getFr(), 1.0);
            EXPECT_EQ(section.getIs_core(), 0.0);
        }
    }
    EXPECT_LT(byArea(chamber(), 1.000101).getP(), throatP());
}

TEST_F(NozzleSection, OfAnotherTypeIsSearchedEvenNextToTheThroat)
{
    const auto other = static_cast<Section::CONDITION_TYPE>(7);
    const Section section(&chamber(), 1.00005, other, true, false, false, -1);
    EXPECT_EQ(section.getFr(), 1.00005);
    EXPECT_GT(section.getIs_core(), 0.0);
}

TEST_F(NozzleSection, OfASubsonicAreaRatioLiesBetweenChamberEndAndThroat)
{
    double before = stationOf(finiteChamber(), Chamber::CHAMBER_END).getP();
    for (const double Fr : {2.9, 2.0, 1.2, 1.01}) {
        const Section section(&finiteChamber(), Fr, Section::AREA_RATIO, false, false, false, -1);
        EXPECT_EQ(section.getFr(), Fr);
        EXPECT_LT(section.getP(), before);
        EXPECT_LT(section.getMach(), 1.0);
        // the table of 90 points is read by straight lines
        EXPECT_NEAR(areaRatioOf(finiteChamber(), section), Fr, 2e-3 * Fr);
        before = section.getP();
    }
    EXPECT_LT(stationOf(finiteChamber(), Chamber::THROAT).getP(), before);
}

TEST_F(NozzleSection, OfASubsonicAreaRatioNextToTheInletIsTheInlet)
{
    const double Fcr = finiteChamber().getFcr();
    ASSERT_EQ(Fcr, 3.0);
    // the first two within 0.001 on either side, the others above it by less than 0.01
    for (const double factor : {0.9991, 1.0009, 1.005, 1.0099}) {
        const Section section(&finiteChamber(), factor * Fcr, Section::AREA_RATIO, false, false,
                              false, -1);
        EXPECT_EQ(section.getFr(), Fcr) << factor;
        EXPECT_NEAR(section.getP(), stationOf(finiteChamber(), Chamber::CHAMBER_END).getP(),
                    1e-9 * section.getP());
    }
    const Section below(&finiteChamber(), 0.998 * Fcr, Section::AREA_RATIO, false, false, false,
                        -1);
    EXPECT_EQ(below.getFr(), 0.998 * Fcr);
}

TEST_F(NozzleSection, OfASubsonicAreaRatioBeyondTheInletFails)
{
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(
        Section(&finiteChamber(), 3.0301, Section::AREA_RATIO, false, false, false, -1),
        thermo::Exception, 11, "Could not find nozzle section equilibrium");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not find nozzle section shifting equilibrium conditions: "
                                "specified area ratio 3.030 exceeds nozzle inlet contraction area "
                                "ratio 3.000.\r\n"});
    EXPECT_EQ(log.tagOf(log.errors().front()), "THERMO");
}

TEST_F(NozzleSection, OfASubsonicAreaRatioFailsAtExactlyOnePercentAboveTheInlet)
{
    // of these numbers the excess is 0.01 to the last digit
    constexpr double Fcr = 1.21, limit = 1.2221;
    ASSERT_EQ((limit - Fcr) / Fcr, 0.01);
    const auto narrow = hydrogenChamber(Fcr);
    KETRA_EXPECT_THROW_CODE(
        Section(narrow.get(), limit, Section::AREA_RATIO, false, false, false, -1),
        thermo::Exception, 11);
    const Section below(narrow.get(), 1.222, Section::AREA_RATIO, false, false, false, -1);
    EXPECT_EQ(below.getFr(), Fcr);
}

TEST_F(NozzleSection, OfAnInfiniteAreaHasNoSubsonicAreaRatio)
{
    LogCapture log;
    KETRA_EXPECT_THROW_CODE(Section(&chamber(), 2.0, Section::AREA_RATIO, false, false, false, -1),
                            thermo::Exception, 11);
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not find nozzle section shifting equilibrium conditions: "
                                "specified area ratio 2.000 exceeds nozzle inlet contraction area "
                                "ratio 0.000.\r\n"});
}

TEST_F(NozzleSection, OfASubsonicAreaRatioOutsideTheTableFailsAsTheTableDoes)
{
    KETRA_EXPECT_THROW_CODE(
        Section(&finiteChamber(), 0.5, Section::AREA_RATIO, false, false, false, -1),
        math::interpolation::Exception, 0);
}

TEST_F(NozzleSection, OfAPressureNextToTheInletIsTheInlet)
{
    const double inlet = stationOf(finiteChamber(), Chamber::CHAMBER_END).getP();
    for (const double factor : {1.0005, 1.000999}) {
        const Section section = byPressure(finiteChamber(), factor * inlet);
        EXPECT_EQ(section.getP(), inlet) << factor;
        const reaction::Equilibrium& end = stationOf(finiteChamber(), Chamber::CHAMBER_END);
        EXPECT_NEAR(section.getT(), end.getT(), 1e-6 * end.getT());
        EXPECT_NEAR(section.getMr(), finiteChamber().getMr(), 1e-5 * section.getMr());
    }
}

TEST_F(NozzleSection, OfAPressureBeyondTheInletFails)
{
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(byPressure(chamber(), 7007000.001), thermo::Exception, 11,
                               "Could not find nozzle section equilibrium");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not find nozzle section shifting equilibrium conditions: "
                                "specified pressure 7007000.001 exceeds nozzle inlet pressure "
                                "7000000.000.\r\n"});
    EXPECT_EQ(log.tagOf(log.errors().front()), "THERMO");
    // at exactly one in a thousand beyond, too
    ASSERT_EQ((7007000.0 - endP()) / endP(), 0.001);
    KETRA_EXPECT_THROW_CODE(byPressure(chamber(), 7007000.0), thermo::Exception, 11);
    // a ratio below one is a pressure beyond the inlet
    KETRA_EXPECT_THROW_CODE(
        Section(&chamber(), 0.9, Section::PRESSURE_RATIO, true, false, false, -1),
        thermo::Exception, 11);
}

TEST_F(NozzleSection, OfAnAreaThatNoNozzleHasFailsAfterAllPasses)
{
    for (const double value : {0.5, std::numeric_limits<double>::quiet_NaN()}) {
        LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(byArea(chamber(), value), thermo::Exception, 11,
                                   "Could not find nozzle section equilibrium");
        EXPECT_EQ(log.errors(), std::vector<std::string>{
                                    "Could not find nozzle section shifting equilibrium condition: "
                                    "maximum number of iterations is exceeded.\r\n"});
    }
}

TEST_F(NozzleSection, OfAnUnsolvedChamberFailsCleanly)
{
    useShippedSpecies();
    const auto mixture = loxHydrogen(6.0);
    Chamber unsolved(*mixture);
    KETRA_EXPECT_THROW_CODE(byArea(unsolved, 10.0), thermo::Exception, 0);
}

TEST_F(NozzleSection, PassesTheCodeOfAFailedSolutionOn)
{
    KETRA_EXPECT_THROW_CODE(byPressure(chamber(), 1e-30), thermo::Exception, 8);
}

TEST_F(NozzleSection, AlwaysComputesTransportAtAGivenPressure)
{
    EXPECT_GT(byPressure(chamber(), 5e4).getV(), 0.0);
    EXPECT_GT(Section(&chamber(), 100.0, Section::PRESSURE_RATIO, true, false, false, -1).getV(),
              0.0);
    EXPECT_GT(Section(&chamber(), 1.0, Section::AREA_RATIO, true, false, false, -1).getV(), 0.0);
}

TEST_F(NozzleSection, ComputesTransportByAreaRatioOnlyWhenAsked)
{
    EXPECT_EQ(byArea(chamber(), 10.0).getV(), 0.0);
    const Section asked(&chamber(), 10.0, Section::AREA_RATIO, true, false, true, -1);
    EXPECT_GT(asked.getV(), 0.0);
    EXPECT_GT(asked.getCeql(), asked.getCfr());
}

TEST_F(NozzleSection, KeepsTheToleranceOfTheChamber)
{
    useShippedSpecies();
    const auto mixture = loxHydrogen(6.0);
    Chamber own(*mixture);
    own.setP(chamberP);
    own.setRelativeTolerance(0.1);
    own.solve(false, false, false);
    EXPECT_EQ(byArea(own, 10.0).getReaction()->getRelativeTolerance(), 0.1);
}

TEST_F(NozzleSection, OfACondensingFlowIsFoundWithTheHintToo)
{
    useShippedSpecies();
    const auto mixture = aluminisedSolid(0.16);
    const auto solid = solvedChamber(*mixture);
    const Section plain(solid.get(), 1e5, Section::PRESSURE, true, false, false, -1);
    const Section hinted(solid.get(), 1e5, Section::PRESSURE, true, true, false, -1);
    EXPECT_GT(plain.getDerivatives()->getZ(), 0.2);
    EXPECT_NEAR(hinted.getT(), plain.getT(), 1e-5 * plain.getT());
}

/// The search counted: a scripted gas tells how often it was evaluated.
class SearchOfAnAreaRatio : public testing::Test
{
protected:
    void SetUp() override
    {
        useDissociatingHydrogen();
        const auto gas = mixtureOf({{"H2", 298.15, 1.0}});
        chamber = std::make_unique<Chamber>(*gas, 1.5e5); // J/mol: hot
        chamber->setP(chamberP);
        chamber->solve(false, false, false);
        script().clear();
    }
    void TearDown() override { script().clear(); }

    long evaluationsFor(double Fr)
    {
        const long before = script().evaluations();
        try {
            const Section section(chamber.get(), Fr, Section::AREA_RATIO, true, false, false, -1);
        } catch (const thermo::Exception& e) {
            EXPECT_EQ(e.getType(), 11U);
        }
        return script().evaluations() - before;
    }
    bool isFound(double Fr)
    {
        try {
            const Section section(chamber.get(), Fr, Section::AREA_RATIO, true, false, false, -1);
            return true;
        } catch (const thermo::Exception&) {
            return false;
        }
    }

    std::unique_ptr<Chamber> chamber;
};

// No area is below the throat's: the search stays at the throat, off by the same from the second
// pass on, until its tolerance has grown to that.
TEST_F(SearchOfAnAreaRatio, LoosensItsToleranceAfter21And51And76Passes)
{
    const long first = evaluationsFor(1 / 1.0015);  // 5 times 0.0005 after pass 20
    const long second = evaluationsFor(1 / 1.0040); // twice that after pass 50
    const long third = evaluationsFor(1 / 1.0065);  // 1.5 times that after pass 75
    const long never = evaluationsFor(1 / 1.0090);
    const long onePass = (second - first) / 30;
    ASSERT_GT(onePass, 0);
    EXPECT_EQ(second - first, 30 * onePass);
    EXPECT_EQ(third - second, 25 * onePass);
    EXPECT_EQ(never - third, 73 * onePass); // of 150 passes in all
}

TEST_F(SearchOfAnAreaRatio, AcceptsNoMoreThanItsLastTolerance)
{
    EXPECT_TRUE(isFound(1 / 1.00024));
    EXPECT_TRUE(isFound(1 / 1.0074));
    EXPECT_FALSE(isFound(1 / 1.0076));
}

} // namespace
