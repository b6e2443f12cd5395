#include <support/Reactants.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/util/concurrent/TaskGroup.h>

#include <tbb/global_control.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

// The points of the nozzle tables are solved side by side: the numbers must not show it.

namespace {

using math::interpolation::Interpolation;
using performance::equilibrium::Chamber;

constexpr int points = 24;

/// Runs \p action while the parallel runtime has at most \p threads threads.
void withThreads(std::size_t threads, const std::function<void()>& action)
{
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    action();
}

/// All digits of a table: its pressures and what it reads between them.
std::vector<double> digitsOf(const Interpolation& table)
{
    std::vector<double> digits{table.getMinX(), table.getMaxX()};
    for (unsigned i = 0; i < table.getValues()->size(); ++i)
        digits.push_back(table.getValues()->at(i));
    for (int i = 0; i <= 1000; ++i) {
        const double x = table.getMinX() + (table.getMaxX() - table.getMinX()) * i / 1000.0;
        digits.push_back(table.linearInterpolation(x));
        digits.push_back(table.polynomialInterpolation(x));
    }
    return digits;
}

std::vector<double> solveWithTables(thermo::Mixture& reactants, bool metals)
{
    Chamber chamber(reactants);
    chamber.setFcr(3.0);
    chamber.setP(7e6);
    chamber.solve(/*finiteArea=*/true, metals, false);
    std::vector<double> digits = digitsOf(*chamber.getNozzleInput(metals, points));
    const std::vector<double> exit = digitsOf(*chamber.getNozzleExit(5e4, 20.0, metals, points));
    digits.insert(digits.end(), exit.begin(), exit.end());
    digits.push_back(chamber.getCstar_core());
    digits.push_back(chamber.getReaction(Chamber::THROAT)->getT());
    return digits;
}

class NozzleTablesThreads : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }
};

TEST_F(NozzleTablesThreads, HaveTheSameDigitsForAnyNumberOfThreads)
{
    const auto hydrogen = ketra_test::loxHydrogen(6.0);
    const auto solid = ketra_test::aluminisedSolid(0.16);
    for (const bool metals : {false, true}) {
        SCOPED_TRACE(metals ? "solid" : "hydrogen");
        thermo::Mixture& reactants = metals ? *solid : *hydrogen;
        std::vector<double> alone;
        withThreads(1, [&] { alone = solveWithTables(reactants, metals); });
        for (const std::size_t threads : {2u, 4u, 4u})
            withThreads(threads, [&] { EXPECT_EQ(solveWithTables(reactants, metals), alone); });
    }
}

TEST_F(NozzleTablesThreads, AreBuiltByManyThreadsAtOnce)
{
    const auto hydrogen = ketra_test::loxHydrogen(6.0);
    const std::vector<double> alone = solveWithTables(*hydrogen, false);
    std::vector<std::vector<double>> results(4);
    withThreads(4, [&] {
        std::vector<std::thread> threads;
        for (std::vector<double>& result : results)
            threads.emplace_back([&result] {
                const auto own = ketra_test::loxHydrogen(6.0);
                result = solveWithTables(*own, false);
            });
        for (std::thread& thread : threads) thread.join();
    });
    for (const std::vector<double>& result : results) EXPECT_EQ(result, alone);
}

// As the search for the optimum does it: tasks that build tables themselves.
TEST_F(NozzleTablesThreads, AreBuiltWithinTheTasksOfAGroup)
{
    const auto hydrogen = ketra_test::loxHydrogen(6.0);
    const std::vector<double> alone = solveWithTables(*hydrogen, false);
    std::vector<std::vector<double>> results(3);
    util::concurrent::TaskGroup group;
    for (std::size_t i = 0; i < results.size(); ++i) {
        const auto task = [&result = results[i]] {
            const auto own = ketra_test::loxHydrogen(6.0);
            result = solveWithTables(*own, false);
        };
        if (i + 1 < results.size())
            group.run(task);
        else
            group.runAndWait(task);
    }
    for (const std::vector<double>& result : results) EXPECT_EQ(result, alone);
}

} // namespace
