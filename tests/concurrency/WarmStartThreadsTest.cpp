#include <support/RandomEngines.h>
#include <support/Reactants.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>

#include <tbb/global_control.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <vector>

// A warm start begins from a station of the chamber and never from the last point that a thread
// has solved: persistent and warm results have the same digits for any number of threads.

namespace {

using performance::TheoreticalPerformance;
using performance::equilibrium::Chamber;
using Section = performance::equilibrium::NozzleSectionConditions;
using Digits = std::vector<double>;

Digits withThreads(std::size_t threads, const std::function<Digits()>& solve)
{
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    return solve();
}

void expectSameDigits(const std::function<Digits()>& solve)
{
    const Digits alone = withThreads(1, solve);
    for (const std::size_t threads : {2U, 4U, 4U}) EXPECT_EQ(withThreads(threads, solve), alone);
}

class WarmStartThreads : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }
};

TEST_F(WarmStartThreads, GiveTheSameTables)
{
    const auto hydrogen = ketra_test::loxHydrogen(6.0);
    const auto solid = ketra_test::aluminisedSolid(0.16);
    for (thermo::Mixture* reactants : {hydrogen.get(), solid.get()}) {
        SCOPED_TRACE(reactants == solid.get() ? "solid" : "hydrogen");
        expectSameDigits([&] {
            Chamber chamber(*reactants);
            chamber.setPersistent(true);
            chamber.setWarmStart(true);
            chamber.setFcr(3.0);
            chamber.setP(7e6);
            chamber.solve(/*finiteArea=*/true, false, false);
            Digits digits;
            for (const double Fr : {1.5, 2.0, 2.5})
                digits.push_back(chamber.getNozzleInput(false, 24)->linearInterpolation(Fr));
            for (const double Fr : {2.0, 5.0, 15.0})
                digits.push_back(
                    chamber.getNozzleExit(5e4, 20.0, false, 24)->polynomialInterpolation(Fr));
            const Section section(&chamber, 10.0, Section::AREA_RATIO, true, false, false, -1);
            digits.insert(digits.end(), {section.getT(), section.getP(), section.getIs_v(0.0)});
            return digits;
        });
    }
}

TEST_F(WarmStartThreads, GiveTheSameOptimum)
{
    // Half of the points of this search have no solution by the method alone.
    ketra_test::RandomEngine storable{6, 1.0, 6.9, 29.0, 2.0};
    expectSameDigits([&] {
        const auto document = ketra_test::documentOf(storable, /*frozen=*/false);
        TheoreticalPerformance engine(document.get(), false);
        engine.setPersistent(true);
        engine.setWarmStart(true);
        Digits digits{engine.optimizeForSpecificImpulse(0.5, 1.5, 0.001)};
        const Section& exit = *engine.getExitSection();
        digits.insert(digits.end(), {exit.getT(), exit.getP(), exit.getIs_v(0.0)});
        return digits;
    });
}

} // namespace
