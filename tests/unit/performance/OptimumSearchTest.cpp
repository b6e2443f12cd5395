// The search for the oxidizer excess coefficient of the highest specific impulse.

#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using ketra_test::engineWithExit;
using performance::SpecificImpulseFinder;
using performance::TheoreticalPerformance;
using thermo::input::ConfigFile;
using thermo::input::Pressure;
using thermo::input::Ratio;

constexpr double tolerance = 0.001; // of the search, relative

const std::string outOfCycles =
    "Could not find optimum oxidizer excess coefficient after 51  cycles.";

class OptimumSearch : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static std::unique_ptr<ConfigFile> openEngine(double Fr)
    {
        auto document = engineWithExit(Fr);
        document->getPropellant().setRatio(0.0, Ratio::OPTIMAL);
        return document;
    }

    // The best of a row of points, and its impulse.
    static std::pair<double, double> scan(const ConfigFile& document, double from, double to,
                                          double step)
    {
        SpecificImpulseFinder finder(new ConfigFile(document));
        std::pair<double, double> best(from, 0.0);
        for (int i = 0; from + i * step <= to; ++i) {
            finder.run(from + i * step);
            if (finder.getIs_v() > best.second) best = {from + i * step, finder.getIs_v()};
        }
        return best;
    }

    static double impulseAt(const ConfigFile& document, double alpha)
    {
        return scan(document, alpha, alpha, 1.0).second;
    }

    static void expectBest(ConfigFile& document, double from, double to, double step)
    {
        const auto [best, highest] = scan(document, from, to, step);
        ASSERT_GT(best, from);
        ASSERT_LT(best, to - step);
        TheoreticalPerformance performance(&document, false);
        const double optimum = performance.optimizeForSpecificImpulse(0.2, 1.8, tolerance);
        EXPECT_NEAR(optimum, best, step + tolerance * best);
        // The maximum is flat, and no point of the scan is better by more than the search can see.
        EXPECT_GT(impulseAt(document, optimum), highest * (1.0 - 1e-6));
    }
};

TEST_F(OptimumSearch, AgreesWithAScanForHydrogen)
{
    const auto document = ketra_test::bipropellantDocument({"O2(L)", 1.0, 90.17},
                                                           {"H2(L)", 1.0, 20.27}, 6.0, Ratio::KM);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(60.0, true);
    expectBest(*document, 0.4, 0.7, 0.005);
}

TEST_F(OptimumSearch, AgreesWithAScanForKerosene)
{
    const auto document = ketra_test::bipropellantDocument({"O2(L)", 1.0, 90.17},
                                                           {"RP-1", 1.0, 298.15}, 2.5, Ratio::KM);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(20.0, true);
    expectBest(*document, 0.75, 0.95, 0.005);
}

TEST_F(OptimumSearch, LeavesTheObjectSolvedAtTheOptimum)
{
    const auto document = engineWithExit(30.0);
    ketra_test::setAmbientPressure(*document, 1e6);
    TheoreticalPerformance performance(document.get(), false);
    performance.setH(-1000.0); // is dropped with the propellant of the start
    EXPECT_FALSE(performance.isOptimized());
    ketra_test::LogCapture capture;
    const double optimum = performance.optimizeForSpecificImpulse(0.2, 1.8, tolerance);
    EXPECT_TRUE(capture.errors().empty());
    EXPECT_TRUE(capture.warnings().empty());
    EXPECT_TRUE(performance.isOptimized());
    EXPECT_TRUE(performance.isValid());
    EXPECT_EQ(document->getPropellant().getRatio(), optimum);
    EXPECT_EQ(document->getPropellant().getRatioType(), Ratio::ALPHA);
    EXPECT_EQ(performance.getPropellant()->getAlpha(), optimum);
    ASSERT_NE(performance.getExitSection(), nullptr);
    EXPECT_NE(performance.getExitSection()->getV(), 0.0); // with transport properties
    // The points are searched without flow separation, the optimum is solved with it.
    EXPECT_NE(performance.getOverExpansionSection(), nullptr);
    EXPECT_TRUE(document->getGeneralOptions().isFlowSeparation());

    const double impulse = performance.getExitSection()->getIs_v(0.0);
    TheoreticalPerformance again(document.get(), false);
    again.solve(true);
    EXPECT_EQ(again.getExitSection()->getIs_v(0.0), impulse);
    EXPECT_FALSE(again.isOptimized());
}

TEST_F(OptimumSearch, IsWhatADocumentWithoutARatioIsSolvedBy)
{
    const auto open = openEngine(30.0);
    TheoreticalPerformance performance(open.get(), false);
    EXPECT_EQ(performance.getPropellant(), nullptr);
    performance.solve(false);
    EXPECT_TRUE(performance.isOptimized());

    const auto stated = engineWithExit(30.0, 2.0);
    TheoreticalPerformance asked(stated.get(), false);
    // From 0.2 to 1.8 to 0.1 %, and it does not matter where the document stood before.
    EXPECT_EQ(asked.optimizeForSpecificImpulse(0.2, 1.8, 0.001),
              performance.getPropellant()->getAlpha());
    EXPECT_EQ(asked.getExitSection()->getIs_v(0.0), performance.getExitSection()->getIs_v(0.0));
}

TEST_F(OptimumSearch, SortsItsBounds)
{
    const auto document = openEngine(30.0);
    TheoreticalPerformance upwards(document.get(), false);
    const double optimum = upwards.optimizeForSpecificImpulse(0.2, 1.8, tolerance);
    const auto again = openEngine(30.0);
    TheoreticalPerformance downwards(again.get(), false);
    EXPECT_EQ(downwards.optimizeForSpecificImpulse(1.8, 0.2, tolerance), optimum);
}

TEST_F(OptimumSearch, NarrowsTowardsTheUpperBoundOfARisingImpulse)
{
    const auto document = openEngine(30.0);
    TheoreticalPerformance performance(document.get(), false);
    const double optimum = performance.optimizeForSpecificImpulse(0.2, 0.4, tolerance);
    EXPECT_TRUE(performance.isOptimized());
    EXPECT_NEAR(optimum, 0.4, 0.4 * tolerance);
    EXPECT_LT(optimum, 0.4);
}

TEST_F(OptimumSearch, OfAFallingImpulseWarnsAndReturnsTheFirstBound)
{
    // The warning and the result name the bounds as they were given.
    struct Case {
        double a, b;
        const char* warning;
    };
    for (const Case& bounds :
         {Case{1.1, 1.3,
               "The optimum oxidizer excess coefficient is probably located outside of specified "
               "range 1.1000-1.3000. Using local optimum 1.1000 instead."},
          Case{1.3, 1.1,
               "The optimum oxidizer excess coefficient is probably located outside of specified "
               "range 1.3000-1.1000. Using local optimum 1.3000 instead."}}) {
        const auto document = openEngine(30.0);
        TheoreticalPerformance performance(document.get(), false);
        ketra_test::LogCapture capture;
        EXPECT_EQ(performance.optimizeForSpecificImpulse(bounds.a, bounds.b, tolerance), bounds.a);
        const std::vector<std::string> warnings = capture.warnings();
        ASSERT_FALSE(warnings.empty());
        EXPECT_EQ(warnings.back(), bounds.warning);
        EXPECT_EQ(capture.tagOf(bounds.warning), "THERMO");
        EXPECT_FALSE(performance.isOptimized());
        EXPECT_TRUE(performance.isValid());
        EXPECT_EQ(performance.getChamber(), nullptr);
        EXPECT_EQ(performance.getPropellant(), nullptr);
        EXPECT_EQ(document->getPropellant().getRatioType(), Ratio::OPTIMAL);
    }
}

TEST_F(OptimumSearch, EndsAfter50CyclesAndSolvesAllTheSame)
{
    const auto document = openEngine(30.0);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    // No bracket is narrower than that. With two equal points there is no slope either, so that the
    // lower bound creeps towards the upper one.
    const double optimum = performance.optimizeForSpecificImpulse(0.3, 0.5, 0.0);
    EXPECT_NEAR(optimum, 0.5, 1e-9);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{outOfCycles});
    EXPECT_EQ(capture.tagOf(outOfCycles), "THERMO");
    EXPECT_TRUE(performance.isOptimized());
    EXPECT_EQ(document->getPropellant().getRatio(), optimum);
    EXPECT_NE(performance.getExitSection(), nullptr);
}

TEST_F(OptimumSearch, MovesABoundWithoutSolutionInwards)
{
    // Hydrogen alone, of 298 K, has no equilibrium at the temperature to which it would expand.
    const auto document = openEngine(30.0);
    SpecificImpulseFinder finder(new ConfigFile(*document));
    {
        ketra_test::LogCapture capture;
        finder.run(0.0);
    }
    ASSERT_EQ(finder.getIs_v(), 0.0);
    TheoreticalPerformance performance(document.get(), false);
    const double optimum = performance.optimizeForSpecificImpulse(0.0, 1.8, tolerance);
    EXPECT_TRUE(performance.isOptimized());
    const auto other = openEngine(30.0);
    TheoreticalPerformance usual(other.get(), false);
    EXPECT_NEAR(optimum, usual.optimizeForSpecificImpulse(0.2, 1.8, tolerance),
                tolerance * optimum);
}

// Then there is nothing to find, and the last solve tells why.
TEST_F(OptimumSearch, WithoutAnySolutionFails)
{
    const auto document = openEngine(30.0);
    auto& exit = document->getNozzleFlowOptions().getNozzleExitConditions();
    exit.deleteAreaRatio();
    exit.setPressureRatio(0.5);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 11);
    EXPECT_FALSE(performance.isOptimized());
    EXPECT_EQ(performance.getExitSection(), nullptr);
    const std::vector<std::string> errors = capture.errors();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), outOfCycles), 0);
    // All points have failed, and are counted.
    const std::vector<std::string> warnings = capture.warnings();
    int unsolved = 0, points = 0;
    ASSERT_FALSE(warnings.empty());
    ASSERT_EQ(std::sscanf(warnings.back().c_str(),
                          "Could not solve the engine at %d of %d oxidizer ", &unsolved, &points),
              2);
    EXPECT_GT(points, 0);
    EXPECT_EQ(unsolved, points);
    EXPECT_EQ(warnings.back(),
              "Could not solve the engine at " + std::to_string(unsolved) + " of " +
                  std::to_string(points) +
                  " oxidizer excess coefficients of the search: there may be a better one than it "
                  "has found.\r\n");
}

TEST_F(OptimumSearch, NeedsOxidizerAndFuel)
{
    const std::string noCoefficient =
        "Could not find optimum oxidizer excess coefficient: a mixture of species has none. Give "
        "oxidizer and fuel.\r\n";
    const auto mixture = ketra_test::premixedEngine(30.0);
    const auto both = openEngine(30.0);
    both->getPropellant().addSpecies(ketra_test::componentOf({"N2", 1.0}));
    for (ConfigFile* document : {mixture.get(), both.get()}) {
        TheoreticalPerformance performance(document, false);
        ketra_test::LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(performance.optimizeForSpecificImpulse(0.2, 1.8, tolerance),
                                   thermo::Exception, 14, "Could not solve problem");
        EXPECT_EQ(capture.errors(), std::vector<std::string>{noCoefficient});
    }
    TheoreticalPerformance performance(both.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 14);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{noCoefficient});
}

TEST_F(OptimumSearch, NeedsANozzleExit)
{
    const std::string noExit =
        "Could not find optimum oxidizer excess coefficient: there is no specific impulse without "
        "a nozzle exit. Set calculateNozzleFlow = true and nozzleExitConditions.\r\n";
    const auto chamberAlone = openEngine(30.0);
    chamberAlone->getNozzleFlowOptions().setCalculateNozzleFlow(false);
    const auto withoutExit = openEngine(30.0);
    withoutExit->getNozzleFlowOptions().deleteNozzleExitConditions();
    for (ConfigFile* document : {chamberAlone.get(), withoutExit.get()}) {
        TheoreticalPerformance performance(document, false);
        ketra_test::LogCapture capture;
        KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 14);
        EXPECT_EQ(capture.errors(), std::vector<std::string>{noExit});
        EXPECT_EQ(document->getPropellant().getRatioType(), Ratio::OPTIMAL);
    }
}

TEST_F(OptimumSearch, NeedsADocument)
{
    class WithoutDocument : public TheoreticalPerformance
    {
    } performance;
    KETRA_EXPECT_THROW_CODE(performance.optimizeForSpecificImpulse(0.2, 1.8, tolerance),
                            thermo::Exception, 0);
}

TEST_F(OptimumSearch, WorksWithTheToleranceOfTheObject)
{
    const auto loose = openEngine(30.0);
    TheoreticalPerformance performance(loose.get(), false);
    performance.setRelativeTolerance(100.0);
    performance.optimizeForSpecificImpulse(0.4, 1.0, tolerance);
    EXPECT_EQ(performance.getChamber()->getRelativeTolerance(), 100.0);
}

} // namespace
