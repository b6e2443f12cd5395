// Searches of the optimum mixture ratio, each of which has parallel tasks of its own, side by side.

#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Reactants.h>
#include <unit/performance/Engines.h>

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <array>
#include <memory>
#include <thread>
#include <vector>

namespace {

using ketra_test::engineWithExit;
using performance::SpecificImpulseFinder;
using performance::TheoreticalPerformance;
using thermo::input::ConfigFile;

class SearchesOfTheOptimum : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    /// What a search found: compared to the last bit.
    struct Optimum {
        double alpha = 0.0;
        double impulse = 0.0; // m/s
        bool operator==(const Optimum&) const = default;
    };

    static Optimum search(double areaRatio)
    {
        const auto document = engineWithExit(areaRatio);
        TheoreticalPerformance performance(document.get(), false);
        Optimum found;
        found.alpha = performance.optimizeForSpecificImpulse(0.3, 0.9, 0.01);
        found.impulse = performance.getExitSection()->getIs_v(0.0);
        return found;
    }

    static Optimum searchWith(std::size_t threads, double areaRatio)
    {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
        return search(areaRatio);
    }
};

TEST_F(SearchesOfTheOptimum, FindTheSameWithAnyNumberOfThreads)
{
    const Optimum alone = searchWith(1, 30.0);
    EXPECT_GT(alone.impulse, 4000.0);
    for (const std::size_t threads : {2U, 3U, 8U}) {
        SCOPED_TRACE(threads);
        EXPECT_EQ(searchWith(threads, 30.0), alone);
    }
}

TEST_F(SearchesOfTheOptimum, RunSideBySideOnDocumentsOfTheirOwn)
{
    const std::array<double, 2> areaRatios{10.0, 60.0};
    const std::array<Optimum, 2> alone{searchWith(1, areaRatios[0]), searchWith(1, areaRatios[1])};
    ketra_test::LogCapture capture; // one log for all of them
    std::array<Optimum, 2> found;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < found.size(); ++i)
        threads.emplace_back([&found, &areaRatios, i] { found[i] = search(areaRatios[i]); });
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], alone[i]);
    EXPECT_NE(found[0].impulse, found[1].impulse);
}

// A failed task tells its finder, and throws nothing at the search; the messages of both failures
// reach the log.
TEST_F(SearchesOfTheOptimum, FailWithoutDisturbingEachOther)
{
    const auto failing = [] {
        const auto document = engineWithExit(30.0);
        auto& exit = document->getNozzleFlowOptions().getNozzleExitConditions();
        exit.deleteAreaRatio();
        exit.setPressureRatio(0.5);
        TheoreticalPerformance performance(document.get(), false);
        try {
            performance.optimizeForSpecificImpulse(0.3, 0.9, 0.01);
        } catch (const thermo::Exception& failure) {
            return failure.getType();
        }
        return 0U;
    };
    const Optimum alone = searchWith(1, 30.0);
    ketra_test::LogCapture capture;
    unsigned int code = 0;
    std::thread other([&code, &failing] { code = failing(); });
    const Optimum found = search(30.0);
    other.join();
    EXPECT_EQ(found, alone);
    EXPECT_EQ(code, 11U);
    EXPECT_FALSE(capture.errors().empty());
}

TEST_F(SearchesOfTheOptimum, AgreeWithFindersOnThreadsOfTheirOwn)
{
    const auto document = engineWithExit(30.0);
    const std::array<double, 4> alphas{0.4, 0.5, 0.6, 0.7};
    std::vector<std::unique_ptr<SpecificImpulseFinder>> finders;
    for (const double alpha : alphas) {
        finders.push_back(std::make_unique<SpecificImpulseFinder>(new ConfigFile(*document)));
        finders.back()->start(alpha);
    }
    for (std::size_t i = 0; i < alphas.size(); ++i) {
        finders[i]->join();
        SpecificImpulseFinder alone(new ConfigFile(*document));
        alone.run(alphas[i]);
        EXPECT_EQ(finders[i]->getIs_v(), alone.getIs_v());
        EXPECT_GT(alone.getIs_v(), 4000.0);
    }
}

} // namespace
