// What Combustor::solveReaction makes of a failed solution. The failures come from a scripted gas,
// so that each attempt fails as the test wants.

#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>

#include <support/ScriptedSpecies.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace {

using ketra_test::hydrogen;
using ketra_test::script;
using performance::equilibrium::Combustor;
using reaction::Derivatives;
using reaction::Equilibrium;

constexpr double pressure = 1e6;             // Pa
constexpr double volume = 2.0;               // m3/kg
constexpr unsigned int usualCycles = 50;     // of a new problem
constexpr unsigned int recoveryCycles = 500; // at least, after a third attempt

std::exception_ptr otherFailure() { return std::make_exception_ptr(std::runtime_error("made up")); }

class Recovery : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { script().clear(); }

    static std::unique_ptr<Equilibrium> problemAt(double T, bool ions)
    {
        auto problem = std::make_unique<Equilibrium>(*hydrogen(), /*multiphase=*/true, ions);
        problem->setPT(pressure, T);
        return problem;
    }
    static std::unique_ptr<Derivatives> solve(Equilibrium& problem, bool expectCondensed)
    {
        return std::unique_ptr<Derivatives>(
            Combustor::solveReaction(&problem, 1.0, expectCondensed, false));
    }
};

TEST_F(Recovery, IsNotNeededWhenTheFirstAttemptSucceeds)
{
    const auto problem = problemAt(1000.0, true);
    const auto derivatives = solve(*problem, false);
    ASSERT_NE(derivatives, nullptr);
    EXPECT_GT(derivatives->getCp(), 0.0);
    EXPECT_TRUE(problem->isIons());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, MendsCode8ByASecondAttemptWithoutIons)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(8);
    const auto derivatives = solve(*problem, false);
    ASSERT_NE(derivatives, nullptr);
    EXPECT_TRUE(script().isDone());
    EXPECT_FALSE(problem->isIons());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
    EXPECT_EQ(problem->getT(), 1000.0);
}

TEST_F(Recovery, RaisesTheCycleLimitForAThirdAttempt)
{
    const auto problem = problemAt(1000.0, false);
    script().failNextSolve(8);
    script().failNextSolve(8);
    ASSERT_NE(solve(*problem, false), nullptr);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(problem->getMaxCycles(), recoveryCycles);
}

TEST_F(Recovery, KeepsACycleLimitThatIsHigherAlready)
{
    const auto problem = problemAt(1000.0, false);
    problem->setMaxCycles(700);
    script().failNextSolve(8);
    script().failNextSolve(8);
    ASSERT_NE(solve(*problem, false), nullptr);
    EXPECT_EQ(problem->getMaxCycles(), 700U);
}

TEST_F(Recovery, AnswersAnyThermodynamicFailureOfTheSecondAttemptButCode18)
{
    const auto problem = problemAt(1000.0, false);
    script().failNextSolve(8);
    script().failNextSolve(5);
    ASSERT_NE(solve(*problem, false), nullptr);
    EXPECT_EQ(problem->getMaxCycles(), recoveryCycles);
}

TEST_F(Recovery, EndsWithWhatTheThirdAttemptRaises)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(8);
    script().failNextSolve(8);
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, 5);
    EXPECT_TRUE(script().isDone());
    EXPECT_GE(problem->getMaxCycles(), recoveryCycles);
    EXPECT_FALSE(problem->isIons());
}

TEST_F(Recovery, PassesCode18OnFromTheFirstAttempt)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(18);
    KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, 18);
    EXPECT_TRUE(problem->isIons());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, PassesCode18OnFromTheSecondAttempt)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(8);
    script().failNextSolve(18);
    KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, 18);
    EXPECT_FALSE(problem->isIons());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, IsNotTriedWhenCondensedPhasesWereExpectedAndThereAreNoIons)
{
    const auto problem = problemAt(1000.0, false);
    script().failNextSolve(8);
    KETRA_EXPECT_THROW_CODE(solve(*problem, true), thermo::Exception, 8);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, RemovesTheIonsAlsoWhenCondensedPhasesWereExpected)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(8);
    ASSERT_NE(solve(*problem, true), nullptr);
    EXPECT_FALSE(problem->isIons());
}

TEST_F(Recovery, AnswersAnInvalidTemperatureBelow300Kelvin)
{
    const auto problem = problemAt(299.0, false);
    script().failNextSolve(1);
    ASSERT_NE(solve(*problem, false), nullptr);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(problem->getT(), 299.0);
}

TEST_F(Recovery, PassesAnInvalidTemperatureOnFrom300KelvinUp)
{
    for (const double T : {300.0, 1000.0}) {
        SCOPED_TRACE(T);
        const auto problem = problemAt(T, true);
        script().failNextSolve(1);
        KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, 1);
        EXPECT_TRUE(problem->isIons());
        EXPECT_EQ(problem->getMaxCycles(), usualCycles);
    }
}

TEST_F(Recovery, PassesAnyOtherCodeOn)
{
    for (const unsigned int code : {0U, 5U, 12U, 14U}) {
        SCOPED_TRACE(code);
        const auto problem = problemAt(299.0, true);
        script().failNextSolve(code);
        KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, code);
        EXPECT_TRUE(problem->isIons());
        EXPECT_EQ(problem->getMaxCycles(), usualCycles);
    }
}

TEST_F(Recovery, AnswersAnExceptionOfAnotherFamilyWhateverTheHint)
{
    const auto problem = problemAt(1000.0, false);
    script().failNextSolve(otherFailure());
    ASSERT_NE(solve(*problem, true), nullptr);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(problem->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, GoesOnToTheThirdAttemptAfterAnExceptionOfAnotherFamilyToo)
{
    const auto problem = problemAt(1000.0, true);
    script().failNextSolve(otherFailure());
    script().failNextSolve(8);
    ASSERT_NE(solve(*problem, true), nullptr);
    EXPECT_FALSE(problem->isIons());
    EXPECT_EQ(problem->getMaxCycles(), recoveryCycles);

    const auto another = problemAt(1000.0, false);
    script().failNextSolve(otherFailure());
    script().failNextSolve(18);
    KETRA_EXPECT_THROW_CODE(solve(*another, true), thermo::Exception, 18);
    EXPECT_EQ(another->getMaxCycles(), usualCycles);
}

TEST_F(Recovery, StartsFrom250KelvinAtLeast)
{
    for (const auto& [T, startT] : {std::pair(210.0, 250.0), std::pair(280.0, 280.0)}) {
        SCOPED_TRACE(T);
        const auto problem = problemAt(1000.0, false);
        problem->setPH(pressure, hydrogen()->H());
        problem->setT(T);
        for (int attempt = 0; attempt < 3; ++attempt) script().failNextSolve(8);
        KETRA_EXPECT_THROW_CODE(solve(*problem, false), thermo::Exception, 8);
        EXPECT_EQ(problem->getT(), startT);
    }
}

// A solution that fails in its last step has put its results in place of the target. The second
// attempt must pose the problem as it was.
class RecoveredProblem : public Recovery,
                         public testing::WithParamInterface<Equilibrium::PROCESS_TYPE>
{
protected:
    static constexpr double T = 1500.0; // K, of the solution

    static std::unique_ptr<Equilibrium> posed()
    {
        const bool constantPressure = GetParam() <= Equilibrium::PT;
        Equilibrium known(*hydrogen());
        if (constantPressure)
            known.setPT(pressure, T);
        else
            known.setVT(volume, T);
        known.solve(false);
        const double N = known.getResultingMixtureQuantaty();

        auto problem = std::make_unique<Equilibrium>(*hydrogen());
        switch (GetParam()) {
        case Equilibrium::PH:
            problem->setPH(pressure, known.getH() * N);
            break;
        case Equilibrium::PS:
            problem->setPS(pressure, known.getS() * N);
            break;
        case Equilibrium::PT:
            problem->setPT(pressure, T);
            break;
        case Equilibrium::VU:
            problem->setVU(volume, known.getU() * N);
            break;
        case Equilibrium::VS:
            problem->setVS(volume, known.getS() * N);
            break;
        case Equilibrium::VT:
            problem->setVT(volume, T);
            break;
        }
        script().clear();
        return problem;
    }
};

TEST_P(RecoveredProblem, IsTheOneThatWasPosed)
{
    const auto untroubled = posed();
    untroubled->solve(false);
    const unsigned int evaluations = script().evaluations();
    ASSERT_NEAR(untroubled->getT(), T, 1e-4 * T);

    const auto problem = posed();
    script().failAt(evaluations, 8);
    ASSERT_NE(solve(*problem, false), nullptr);
    EXPECT_TRUE(script().isDone());
    EXPECT_GT(script().evaluations(), evaluations + 1); // there was a second attempt
    EXPECT_EQ(problem->getProcessType(), GetParam());
    EXPECT_EQ(problem->getP(), untroubled->getP());
    EXPECT_EQ(problem->getV(), untroubled->getV());
    // Both solutions are converged to 1e-7; they come from different starts.
    EXPECT_NEAR(problem->getT(), untroubled->getT(), 1e-6 * T);
    EXPECT_NEAR(problem->getSspec(), untroubled->getSspec(), 1e-6 * untroubled->getSspec());
    EXPECT_NEAR(problem->getResultingMixtureQuantaty(), untroubled->getResultingMixtureQuantaty(),
                1e-6);
    EXPECT_NEAR(problem->getNg(), untroubled->getNg(), 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Processes, RecoveredProblem,
                         testing::Values(Equilibrium::PH, Equilibrium::PS, Equilibrium::PT,
                                         Equilibrium::VU, Equilibrium::VS, Equilibrium::VT));

} // namespace
