// States that the default method returns as solutions and that are none.

#include <support/RandomEngines.h>
#include <support/ReferenceStates.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace ketra_test;
using reaction::Equilibrium;
using verification::Grade;

namespace {

class SilentError : public testing::Test
{
protected:
    SilentError() { useShippedSpecies(); }

    static const ReferenceState& stationOf(const ReferenceCase& c, int station)
    {
        for (const ReferenceState& state : c.states)
            if (state.station == station) return state;
        throw std::runtime_error("no such station");
    }
    static const ReferenceCase& referenceCase(const std::string& id)
    {
        for (const ReferenceCase& c : referenceCases())
            if (c.id == id) return c;
        throw std::runtime_error("no such case");
    }
};

// The step has shrunk to nothing far from the solution.
TEST_F(SilentError, AStepThatHasShrunkIsF)
{
    const auto charge =
        mixtureOf({{"C2H8N2(L),UDMH", 298.15, 0.1551}, {"N2O4(L)", 298.15, 0.8449}});
    Equilibrium state(*charge, true, false);
    state.setPT(1.165e4, 839.5);
    state.solve(false);
    EXPECT_EQ(state.certificate().grade, Grade::A);
    const double v = state.getNg() * thermo::gasConstant * 839.5 / (1.165e4 * charge->mm());
    Equilibrium back(*charge, true, false);
    back.setVSspec(v, state.getSspec());
    back.solve(false);
    EXPECT_GT(back.getT(), 1000.0);
    EXPECT_EQ(back.certificate().grade, Grade::F) << back.getT();
}

// The first steps lead beyond the data of seven gases, which leave for good.
TEST_F(SilentError, GasesThatHaveLeftForEverAreMissed)
{
    const ReferenceCase& c = referenceCase("ex11");
    const ReferenceState& state = stationOf(c, 4);
    const auto charge = chargeOf(c);
    Equilibrium problem(*charge, true, c.ions);
    problem.setPSspec(state.p, state.s);
    problem.setT(5680.8);
    problem.solve(false);
    EXPECT_LT(problem.getT(), 5500.0); // 5679 K would be right
    const auto certificate = problem.certificate();
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_EQ(certificate.worstSpecies, "LiF");
    EXPECT_GT(certificate.missingFraction, 0.1);
}

// Two phases of a substance without a band at their melting point: the flow ends beside it.
TEST_F(SilentError, AMeltingPointWithoutABandIsF)
{
    const ReferenceCase& c = referenceCase("ex13");
    for (const int station : {2, 3}) {
        SCOPED_TRACE(station);
        const ReferenceState& state = stationOf(c, station);
        ASSERT_TRUE(state.twoPhase);
        const auto charge = chargeOf(c);
        Equilibrium problem(*charge, true, c.ions);
        problem.setPSspec(state.p, state.s);
        problem.solve(false);
        const auto certificate = problem.certificate();
        EXPECT_EQ(certificate.grade, Grade::F);
        EXPECT_FALSE(certificate.temperatureInRange);
        EXPECT_EQ(certificate.worstSpecies, "BeO(b)");
    }
}

// The alumina has no internal energy in the calculation: the target is met on paper alone.
TEST_F(SilentError, AnEnergyWithoutThatOfAPhaseIsF)
{
    const auto charge = aluminisedSolid(0.18);
    Equilibrium state(*charge);
    state.setPH(7e6, charge->H());
    state.solve(false);
    ASSERT_EQ(state.certificate().grade, Grade::A);
    const double v = state.getNg() * thermo::gasConstant * state.getT() / (7e6 * charge->mm());
    Equilibrium back(*charge);
    back.setVUspec(v, state.getUspec());
    back.solve(false);
    const auto certificate = back.certificate();
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_GT(certificate.targetResidual, 0.01);
}

// Alumina does not come into a gas of given volume and entropy.
TEST_F(SilentError, APhaseThatIsLeftOutIsF)
{
    const ReferenceCase& c = referenceCase("ap_al_pe_a");
    const ReferenceState& state = stationOf(c, 4);
    const auto charge = chargeOf(c);
    Equilibrium problem(*charge, true, c.ions);
    problem.setVSspec(1.0 / state.rho, state.s);
    problem.solve(false);
    const auto certificate = problem.certificate();
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_EQ(certificate.worstSpecies, "AL2O3(a)");
    EXPECT_GT(certificate.drivingForce, 1.0);
}

// Water around its melting point: the iteration goes round and is taken as settled. The exits are
// those of random engines.
TEST_F(SilentError, WaterThatHasNotSettledIsF)
{
    for (const std::size_t number : {62u, 300u, 440u}) {
        SCOPED_TRACE(number);
        const auto engine = randomEngines(1, number + 1).back();
        performance::TheoreticalPerformance performance(documentOf(engine, false).release(), true);
        performance.solve(false);
        const auto& exit = *performance.getNozzleExitSection();
        EXPECT_GT(exit.getT(), 250.0);
        EXPECT_LT(exit.getT(), 300.0);
        const auto certificate = exit.getReaction()->certificate();
        EXPECT_EQ(certificate.grade, Grade::F) << exit.getT();
    }
}

} // namespace
