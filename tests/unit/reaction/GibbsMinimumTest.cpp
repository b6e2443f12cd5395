// The minimisation over the element potentials, on problems small enough to solve by hand.

#include <ketra/reaction/detail/DeterminedSystem.h>
#include <ketra/reaction/detail/GibbsMinimum.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using reaction::detail::Assemblage;
using reaction::detail::GibbsMinimum;
using reaction::detail::GibbsProblem;
using reaction::detail::solveWhatIsDetermined;

namespace {

/// A2 <-> 2 A of one mole of A2 at a pressure that stands in the potentials.
GibbsProblem dissociation(double gMolecule, double gAtom)
{
    GibbsProblem problem;
    problem.b = {2.0};
    problem.gasRows = {2.0, 1.0};
    problem.gasG = {gMolecule, gAtom};
    return problem;
}

double moles(const GibbsProblem& problem, const Assemblage& state, std::size_t j)
{
    double ln = -problem.gasG[j];
    for (std::size_t i = 0; i < problem.b.size(); ++i) ln += problem.gasRow(j)[i] * state.pi[i];
    return std::exp(ln) * (problem.constantPressure ? state.Ng : 1.0);
}

TEST(GibbsMinimum, ADissociationFollowsTheLawOfMassAction)
{
    for (const double g : {-40.0, -5.0, 0.0, 3.0, 20.0}) { // of the atom
        const GibbsProblem problem = dissociation(-30.0, -15.0 + g / 2.0);
        Assemblage state;
        ASSERT_TRUE(GibbsMinimum(problem).solve(state, /*warm=*/false)) << g;
        const double K = std::exp(-g); // x_A^2 / x_A2
        const double x = 2.0 / (1.0 + std::sqrt(1.0 + 4.0 / K));
        EXPECT_NEAR(moles(problem, state, 1) / state.Ng, x, 1e-10) << g;
        EXPECT_NEAR(2.0 * moles(problem, state, 0) + moles(problem, state, 1), 2.0, 1e-11) << g;
    }
}

TEST(GibbsMinimum, AtGivenVolumeTheAmountsAreTheirOwn)
{
    GibbsProblem problem = dissociation(0.0, 0.0); // n_A^2 = n_A2
    problem.constantPressure = false;
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    const double n = (std::sqrt(17.0) - 1.0) / 4.0; // 2 n^2 + n = 2
    EXPECT_NEAR(moles(problem, state, 1), n, 1e-11);
    EXPECT_NEAR(moles(problem, state, 0), n * n, 1e-11);
    EXPECT_NEAR(state.Ng, n + n * n, 1e-11);
}

/// Gas A and an inert gas B, one mole each, over a liquid A of a saturation pressure exp(-h).
GibbsProblem saturation(double h)
{
    GibbsProblem problem;
    problem.b = {1.0, 1.0};
    problem.gasRows = {1.0, 0.0, 0.0, 1.0};
    problem.gasG = {0.0, 0.0};
    problem.phaseRows = {1.0, 0.0};
    problem.phaseG = {-h};
    return problem;
}

TEST(GibbsMinimum, ALiquidCondensesToItsSaturation)
{
    const GibbsProblem problem = saturation(std::log(10.0)); // x_A = 0.1
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    EXPECT_NEAR(moles(problem, state, 0), 1.0 / 9.0, 1e-11);
    EXPECT_NEAR(state.nPhase[0], 8.0 / 9.0, 1e-11);
}

TEST(GibbsMinimum, ALiquidAboveItsSaturationIsAbsent)
{
    const GibbsProblem problem = saturation(std::log(1.9)); // more than the half that there is
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    EXPECT_EQ(state.nPhase[0], 0.0);
    EXPECT_NEAR(moles(problem, state, 0), 1.0, 1e-11);
}

TEST(GibbsMinimum, OfTwoPhasesOfASubstanceTheStablerOneIsThere)
{
    GibbsProblem problem = saturation(3.0);
    problem.phaseRows.insert(problem.phaseRows.end(), {1.0, 0.0});
    for (const double other : {-3.1, -2.9}) {
        problem.phaseG = {-3.0, other};
        Assemblage state;
        ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
        EXPECT_EQ(state.nPhase[0] > 0.0, other > -3.0);
        EXPECT_EQ(state.nPhase[1] > 0.0, other < -3.0);
    }
}

TEST(GibbsMinimum, AWrongSetOfPhasesIsOnlyAStart)
{
    const GibbsProblem problem = saturation(std::log(1.9));
    Assemblage state;
    state.pi = {-0.7, -0.7};
    state.Ng = 1.0;
    state.nPhase = {1.0};
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, /*warm=*/true));
    EXPECT_EQ(state.nPhase[0], 0.0);
    EXPECT_NEAR(state.Ng, 2.0, 1e-10);
}

TEST(GibbsMinimum, WhereThePressureIsTooHighThereIsNoGas)
{
    GibbsProblem problem;
    problem.b = {2.0, 3.001}; // a compound 2:3 and a little of the second element
    problem.gasRows = {1.0, 0.0, 0.0, 1.0};
    problem.gasG = {60.0, 60.0};
    problem.phaseRows = {2.0, 3.0, 0.0, 1.0, 1.0, 0.0};
    problem.phaseG = {-100.0, 0.0, 0.0};
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    EXPECT_EQ(state.Ng, 0.0);
    EXPECT_NEAR(state.nPhase[0], 1.0, 1e-12);
    EXPECT_NEAR(state.nPhase[1], 0.001, 1e-12);
    EXPECT_EQ(state.nPhase[2], 0.0);
}

// By the phase rule a third phase of two elements takes the place of another.
TEST(GibbsMinimum, APhaseThatDependsOnOthersTakesAPlace)
{
    GibbsProblem problem; // gas A, liquid B and the solid compound AB
    problem.b = {2.0, 1.0};
    problem.gasRows = {1.0, 0.0};
    problem.gasG = {0.0};
    problem.phaseRows = {0.0, 1.0, 1.0, 1.0};
    for (const double g : {-1e-6, 1e-6}) {
        problem.phaseG = {-5.0, -5.0 + g};
        for (const bool compound : {false, true}) {
            Assemblage state;
            state.pi = {0.0, -5.0};
            state.Ng = compound ? 1.0 : 2.0;
            state.nPhase = {compound ? 0.0 : 1.0, compound ? 1.0 : 0.0};
            ASSERT_TRUE(GibbsMinimum(problem).solve(state, /*warm=*/true));
            EXPECT_NEAR(state.Ng, g < 0.0 ? 1.0 : 2.0, 1e-11);
            EXPECT_NEAR(state.nPhase[1], g < 0.0 ? 1.0 : 0.0, 1e-11);
        }
    }
}

// What an abundant compound leaves over of an element is a small difference of large numbers.
TEST(GibbsMinimum, ATraceBesideAnExactCompoundIsResolved)
{
    GibbsProblem problem;
    problem.b = {2.0, 1.0 + 1e-9}; // A2B and a trace of B
    problem.gasRows = {2.0, 1.0, 2.0, 0.0, 0.0, 2.0};
    problem.gasG = {-100.0, 0.0, 0.0};
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    EXPECT_NEAR(moles(problem, state, 0), 1.0, 1e-9);
    EXPECT_NEAR(moles(problem, state, 2), 0.5e-9, 1e-15);
}

TEST(GibbsMinimum, ChargesBalance)
{
    GibbsProblem problem; // electron, A; A, A+, e-
    problem.b = {0.0, 1.0};
    problem.electron = 0;
    problem.gasRows = {0.0, 1.0, -1.0, 1.0, 1.0, 0.0};
    problem.gasG = {0.0, 4.0, 4.0};
    Assemblage state;
    ASSERT_TRUE(GibbsMinimum(problem).solve(state, false));
    EXPECT_NEAR(moles(problem, state, 1), moles(problem, state, 2), 1e-12);
    const double x = moles(problem, state, 1) / state.Ng;
    EXPECT_NEAR(x * x / (1.0 - 2.0 * x), std::exp(-8.0), 1e-12);
}

TEST(DeterminedSystem, ARegularSystemIsSolved)
{
    std::vector<double> A{0.0, 2.0, 1e-20, 3e-20}, b{4.0, 7e-20}, x;
    solveWhatIsDetermined(A, b, x);
    EXPECT_NEAR(x[0], 1.0, 1e-14);
    EXPECT_NEAR(x[1], 2.0, 1e-14);
}

TEST(DeterminedSystem, WhatStaysOpenIsZero)
{
    std::vector<double> A{1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 1.0}, b{3.0, 0.0, 3.0}, x;
    solveWhatIsDetermined(A, b, x);
    EXPECT_EQ(x[1], 0.0);
    EXPECT_NEAR(x[0] + x[2], 3.0, 1e-15);
}

} // namespace
