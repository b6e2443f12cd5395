// How many cycles an iteration may take, counted by a gas that notes each evaluation.

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

using ketra_test::script;
using reaction::Equilibrium;

/// Cycles of a run: the products are evaluated once before it and once after each of its cycles,
/// but for the last one of a run that fails, and once after a run that succeeds.
unsigned cyclesOfFailure() { return script().evaluations(); }
unsigned cyclesOfSuccess() { return script().evaluations() - 2; }

/// A gas whose Gibbs energy is restless for a number of evaluations.
class RestlessPolynomial : public ketra_test::ScriptedPolynomial
{
public:
    using ScriptedPolynomial::ScriptedPolynomial;
    thermo::StandardState evaluate(const thermo::TemperatureTerms& terms) const override
    {
        thermo::StandardState state = ScriptedPolynomial::evaluate(terms);
        const unsigned count = script().evaluations();
        if (count < restlessUntil) state.G += count % 2 == 0 ? 1.0 : -1.0;
        return state;
    }
    thermo::Polynomial* getCopy() const override { return new RestlessPolynomial(*this); }

    static inline unsigned restlessUntil = 0;
};

class Cycles : public ::testing::Test
{
protected:
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { RestlessPolynomial::restlessUntil = 0; }

    static unsigned limitOf(unsigned maxCycles, bool ions)
    {
        const auto charge = ketra_test::hydrogen();
        Equilibrium problem(*charge, true, ions);
        problem.setMaxCycles(maxCycles);
        problem.setPT(1e5, 3000.0);
        // No correction is small enough for such a tolerance.
        problem.setRelativeTolerance(std::numeric_limits<double>::quiet_NaN());
        script().clear();
        KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
        return cyclesOfFailure();
    }

    ketra_test::LogCapture log;
};

TEST_F(Cycles, AreFiftyAndTwoForEachProduct)
{
    EXPECT_EQ(limitOf(50, /*ions=*/false), 50u + 2 * 2); // H2, H
    EXPECT_EQ(limitOf(50, /*ions=*/true), 50u + 2 * 4);  // and H+, e-
    EXPECT_NE(log.errors().back().find("maximum number of iterations is exceeded"),
              std::string::npos);
}

TEST_F(Cycles, AreAsManyAsAskedForFromFiftyOn)
{
    EXPECT_EQ(limitOf(1, /*ions=*/false), 54u);
    EXPECT_EQ(limitOf(51, /*ions=*/false), 55u);
    EXPECT_EQ(limitOf(200, /*ions=*/false), 204u);
}

TEST_F(Cycles, OfASolutionNeverReachTheLastOne)
{
    ketra_test::useDissociatingHydrogen();
    const double lnT0 = std::log(298.15);
    ketra_test::addScriptedGas("H", "H", 1.0, 1.00794,
                               std::make_unique<RestlessPolynomial>(
                                   200.0, 6000.0, 2.5, 1500.0 - 2.5 * 298.15, 13.8 - 2.5 * lnT0));
    const auto charge = ketra_test::hydrogen();
    unsigned longest = 0;
    unsigned failures = 0;
    // The gas comes to rest one cycle later each time, until the last cycle is not enough.
    for (unsigned until = 20; until < 60; ++until) {
        RestlessPolynomial::restlessUntil = until;
        Equilibrium problem(*charge, true, false);
        problem.setPT(1e5, 3000.0);
        script().clear();
        try {
            problem.solve(false);
            longest = std::max(longest, cyclesOfSuccess());
        } catch (const thermo::Exception& e) {
            EXPECT_EQ(e.getType(), 8u);
            EXPECT_EQ(cyclesOfFailure(), 54u);
            ++failures;
        }
    }
    EXPECT_EQ(longest, 53u);
    EXPECT_GT(failures, 0u);
}

} // namespace
