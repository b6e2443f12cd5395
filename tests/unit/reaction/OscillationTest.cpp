// The finder of periods alone, on made-up sequences of temperatures and Gibbs energies.

#include <ketra/reaction/detail/Oscillation.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using reaction::detail::Oscillation;
using Sequence = std::vector<std::pair<double, double>>; // T, g

/// Feeds a sequence again and again. \returns the number of the state at which the finder stops,
/// counted from 1, or 0 if it does not within \p rounds.
unsigned stopOf(const Sequence& period, unsigned rounds, bool gasOnly = false,
                std::size_t keep = 10, double r = 1e-5)
{
    Oscillation finder;
    unsigned count = 0;
    for (unsigned round = 0; round < rounds; ++round) {
        for (const auto& [T, g] : period) {
            ++count;
            if (finder.standsAtBest(T, g, r, keep, gasOnly)) return count;
        }
    }
    return 0;
}

TEST(Oscillation, StopsAtTheLowestStateOfAPeriod)
{
    // The oldest state never closes a period, so the second one, 2100 K, does when it comes back as
    // state 5. From there on 2200 K is the lowest: one state later.
    EXPECT_EQ(stopOf({{2000, -1}, {2100, -2}, {2200, -3}}, 5), 6u);
    // With the lowest at the closing state itself that one is passed when it is found; state 6
    // closes a period too, at whose end, two states later, the lowest stands again.
    EXPECT_EQ(stopOf({{2000, -1}, {2100, -3}, {2200, -2}}, 5), 8u);
}

TEST(Oscillation, TakesTheEarliestOfEquallyLowStates)
{
    EXPECT_EQ(stopOf({{2000, -1}, {2100, -2}, {2200, -5}, {2300, -5}}, 5), 7u);
}

TEST(Oscillation, DoesNotStopInASequenceWithoutAPeriod)
{
    Oscillation finder;
    for (int i = 0; i < 200; ++i)
        EXPECT_FALSE(finder.standsAtBest(1000.0 + i, -i, 1e-5, 10, false));
}

TEST(Oscillation, DoesNotSeeAPeriodLongerThanItRemembers)
{
    Sequence longPeriod;
    for (int i = 0; i < 12; ++i) longPeriod.emplace_back(1000.0 + 10 * i, -1.0 * i);
    EXPECT_EQ(stopOf(longPeriod, 6, false, 10), 0u);
    EXPECT_GT(stopOf(longPeriod, 6, false, 20), 0u);
}

TEST(Oscillation, TakesTemperaturesWithinTheShareForOne)
{
    const Sequence nearly = {{2000.0, -1}, {2100.0, -2}, {2100.1, -3}};
    EXPECT_EQ(stopOf(nearly, 1, false, 10, 1e-5), 0u);
    EXPECT_GT(stopOf({{2000.0, -1}, {2100.0, -2}, {2200.0, -3}, {2100.01, -2}, {2200.01, -3}}, 1),
              0u);
}

TEST(Oscillation, OfGasesAloneNeverStopsAboveThePreviousState)
{
    // State 5 closes a period whose lowest state is at 2200 K, which state 6 has again, but with a
    // higher Gibbs energy than state 5: good enough only where condensed phases take part.
    const Sequence states = {{2000, -1}, {2100, -2}, {2200, -9},
                             {2000, -1}, {2100, -2}, {2200, -1}};
    EXPECT_EQ(stopOf(states, 1, /*gasOnly=*/false), 6u);
    EXPECT_EQ(stopOf(states, 1, /*gasOnly=*/true), 0u);
}

} // namespace
