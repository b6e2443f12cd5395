#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/performance/equilibrium/CombustorFunction.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Propellant.h>

#include <support/ScriptedSpecies.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using ketra_test::hydrogen;
using ketra_test::script;
using performance::equilibrium::Combustor;
using performance::equilibrium::CombustorFunction;
using reaction::Derivatives;
using reaction::Equilibrium;

constexpr double pressure = 1e6; // Pa
const std::string combustorMessage =
    "Shifting Equilibrium Combustor: could not solve the problem.\r\n";
const std::string iterationMessage =
    "Shifting Equilibrium Combustor: could not solve the problem by iteration.\r\n";

// Fuel and oxidizer of one substance: only the arithmetic of the ratio matters here.
std::unique_ptr<thermo::Propellant> hydrogenPropellant()
{
    auto propellant = std::make_unique<thermo::Propellant>(1.0);
    propellant->addComponent(thermo::Propellant::OXIDIZER, "H2", 298.15, 101325.0, 1.0);
    propellant->addComponent(thermo::Propellant::FUEL, "H2", 400.0, 101325.0, 1.0);
    return propellant;
}

class CombustorTest : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { script().clear(); }

    static void expectStart(const Combustor& combustor, double H, double M, bool multiphase,
                            bool ions)
    {
        EXPECT_DOUBLE_EQ(combustor.getInitialH(), H);
        EXPECT_DOUBLE_EQ(combustor.getInitialHspec(), H / (M / 1000.0));
        EXPECT_EQ(combustor.getRelativeTolerance(), 1.0);
        EXPECT_EQ(combustor.getDerivatives(), nullptr);
        ASSERT_NE(combustor.getReaction(), nullptr);
        EXPECT_EQ(combustor.getReaction()->isMultiphase(), multiphase);
        EXPECT_EQ(combustor.getReaction()->isIons(), ions);
    }
};

TEST_F(CombustorTest, OnAMixtureTakesTheMixturesEnthalpyUnlessOneIsGiven)
{
    const auto mixture = hydrogen();
    mixture->setT(500.0);
    const double H = mixture->H();
    const double M = mixture->getM();
    EXPECT_GT(H, 1000.0); // J/mol, so that the checks below compare something
    expectStart(Combustor(*mixture), H, M, true, false);
    expectStart(Combustor(*mixture, false, true), H, M, false, true);
    expectStart(Combustor(*mixture, -5000.0), -5000.0, M, true, false);
    expectStart(Combustor(*mixture, -5000.0, false, true), -5000.0, M, false, true);
}

TEST_F(CombustorTest, OnAPropellantTakesThePropellantsEnthalpyUnlessOneIsGiven)
{
    const auto propellant = hydrogenPropellant();
    const double H = propellant->H();
    const double M = propellant->getM();
    EXPECT_GT(H, 1000.0);
    expectStart(Combustor(*propellant), H, M, true, false);
    expectStart(Combustor(*propellant, false, true), H, M, false, true);
    expectStart(Combustor(*propellant, -5000.0), -5000.0, M, true, false);
    expectStart(Combustor(*propellant, -5000.0, false, true), -5000.0, M, false, true);
}

TEST_F(CombustorTest, OnFractionsThatDoNotAddUpFailsWithoutALeak)
{
    thermo::Mixture mixture;
    mixture.addSpecies("H2", 298.15, 0.5);
    KETRA_EXPECT_THROW_CODE(Combustor{mixture}, thermo::Exception, 5);
}

TEST_F(CombustorTest, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<Combustor>);
    EXPECT_FALSE(std::is_copy_assignable_v<Combustor>);
}

TEST_F(CombustorTest, StoresTheAbsoluteRelativeTolerance)
{
    Combustor combustor(*hydrogen());
    combustor.setRelativeTolerance(-1e-3);
    EXPECT_EQ(combustor.getRelativeTolerance(), 1e-3);
}

TEST_F(CombustorTest, HandsItsToleranceToTheProblem)
{
    Combustor combustor(*hydrogen());
    combustor.setRelativeTolerance(0.5);
    combustor.setPT(pressure, 1000.0);
    combustor.solve(false, false);
    EXPECT_EQ(combustor.getReaction()->getRelativeTolerance(), 0.5);
}

TEST_F(CombustorTest, PosesTheStateItIsGiven)
{
    Combustor combustor(*hydrogen(), 1234.0);
    const Equilibrium& problem = *combustor.getReaction();
    combustor.setP(pressure);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(problem.getP(), pressure);
    EXPECT_EQ(problem.getH(), 1234.0);
    combustor.setPH(2e6, 5678.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(problem.getP(), 2e6);
    EXPECT_EQ(problem.getH(), 5678.0);
    combustor.setPT(3e6, 900.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PT);
    EXPECT_EQ(problem.getP(), 3e6);
    EXPECT_EQ(problem.getT(), 900.0);
}

TEST_F(CombustorTest, ForwardsBothListsOfSpecies)
{
    std::vector<std::string> none;
    std::vector<std::string> hydrogenOnly{"H2"};
    Combustor including(*hydrogen());
    including.setSpecies(hydrogenOnly, none);
    Combustor omitting(*hydrogen());
    omitting.setSpecies(none, hydrogenOnly);
    std::vector<std::string> names;
    including.getReaction()->getAllSpeciesNames(&names, 0.0);
    EXPECT_EQ(names, std::vector<std::string>{"H2"});
    omitting.getReaction()->getAllSpeciesNames(&names, 0.0);
    EXPECT_EQ(names, std::vector<std::string>{"H"});
}

TEST_F(CombustorTest, ReplacesItsDerivativesWithEachSolution)
{
    Combustor combustor(*hydrogen());
    combustor.setPT(pressure, 1000.0);
    combustor.solve(false, false);
    ASSERT_NE(combustor.getDerivatives(), nullptr);
    const double coldMm = combustor.getDerivatives()->getMm();
    combustor.setPT(pressure, 3000.0);
    combustor.solve(false, false);
    ASSERT_NE(combustor.getDerivatives(), nullptr);
    EXPECT_LT(combustor.getDerivatives()->getMm(), coldMm); // hotter, more dissociated
}

TEST_F(CombustorTest, AFailedSolveLeavesNoDerivativesAndSaysSo)
{
    Combustor combustor(*hydrogen());
    combustor.setPT(pressure, 1000.0);
    combustor.solve(false, false);
    ketra_test::LogCapture capture;
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(combustor.solve(false, false), thermo::Exception, 5);
    EXPECT_EQ(combustor.getDerivatives(), nullptr);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{combustorMessage});
    EXPECT_EQ(capture.tagOf(combustorMessage), "THERMO");
}

TEST_F(CombustorTest, AFailureOfAnotherFamilyPassesWithoutAWord)
{
    Combustor combustor(*hydrogen());
    combustor.setPT(pressure, 1000.0);
    combustor.solve(false, false);
    const Derivatives* before = combustor.getDerivatives();
    ketra_test::LogCapture capture;
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    script().failNextSolve(other); // answered by a second attempt
    script().failNextSolve(other); // which is not answered: only a thermo::Exception is
    EXPECT_THROW(combustor.solve(false, false), std::runtime_error);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(combustor.getDerivatives(), before);
    EXPECT_TRUE(capture.errors().empty());
}

// A search by temperature: the property of a solution at a known T is the target.
class SearchByTemperature : public CombustorTest,
                            public testing::WithParamInterface<Equilibrium::PROCESS_TYPE>
{
protected:
    static constexpr double wantedT = 1500.0; // K
    static constexpr double volume = 2.0;     // m3/kg

    bool isConstantPressure() const { return GetParam() <= Equilibrium::PT; }

    void poseAtFixedT(Equilibrium& problem, double T) const
    {
        if (isConstantPressure())
            problem.setPT(pressure, T);
        else
            problem.setVT(volume, T);
    }
    double propertyOf(const Equilibrium& problem) const
    {
        switch (GetParam()) {
        case Equilibrium::PH:
            return problem.getHspec();
        case Equilibrium::VU:
            return problem.getUspec();
        default:
            return problem.getSspec();
        }
    }
    // The process alone; its target is of no account to the search.
    void pose(Equilibrium& problem) const
    {
        switch (GetParam()) {
        case Equilibrium::PH:
            problem.setPH(pressure, 1.0);
            break;
        case Equilibrium::PS:
            problem.setPS(pressure, 1.0);
            break;
        case Equilibrium::VU:
            problem.setVU(volume, 1.0);
            break;
        default:
            problem.setVS(volume, 1.0);
            break;
        }
    }
};

TEST_P(SearchByTemperature, FindsTheTemperatureOfTheSpecificProperty)
{
    const auto mixture = hydrogen();
    Equilibrium known(*mixture);
    poseAtFixedT(known, wantedT);
    known.solve(false);
    const double target = propertyOf(known);

    Combustor combustor(*mixture);
    combustor.setRelativeTolerance(1e-3);
    pose(*combustor.getReaction());
    combustor.solveByIteration(1300.0, target, false, false);

    const Equilibrium& solved = *combustor.getReaction();
    // Newton's method stops on a move of 1e-3 T; its last move leaves a much smaller error, but
    // the mean of the last two positions may be off by half of that move.
    EXPECT_NEAR(solved.getT(), wantedT, 0.5e-3 * wantedT);
    EXPECT_EQ(solved.getProcessType(), isConstantPressure() ? Equilibrium::PT : Equilibrium::VT);
    if (isConstantPressure())
        EXPECT_EQ(solved.getP(), pressure);
    else
        EXPECT_EQ(solved.getV(), volume);
    ASSERT_NE(combustor.getDerivatives(), nullptr);
    const double Mm = mixture->getMm() / known.getResultingMixtureQuantaty();
    EXPECT_NEAR(combustor.getDerivatives()->getMm(), Mm, 1e-3 * Mm);
}

TEST_P(SearchByTemperature, IsTheTargetLessThePropertyAndLeavesTheProblemAlone)
{
    const auto mixture = hydrogen();
    Equilibrium known(*mixture);
    poseAtFixedT(known, wantedT);
    known.solve(false);
    const double property = propertyOf(known);

    Equilibrium problem(*mixture);
    pose(problem);
    const double T = problem.getT();
    CombustorFunction function(&problem, 3.0 * property, false);
    EXPECT_NEAR(function.at(wantedT), 2.0 * property, 1e-9 * std::abs(property));
    EXPECT_EQ(problem.getProcessType(), GetParam());
    EXPECT_EQ(problem.getT(), T);
    EXPECT_EQ(problem.getNg(), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Processes, SearchByTemperature,
                         testing::Values(Equilibrium::PH, Equilibrium::PS, Equilibrium::VU,
                                         Equilibrium::VS));

class SearchAtFixedTemperature : public CombustorTest,
                                 public testing::WithParamInterface<Equilibrium::PROCESS_TYPE>
{
protected:
    static void pose(Equilibrium& problem)
    {
        if (GetParam() == Equilibrium::PT)
            problem.setPT(pressure, 1000.0);
        else
            problem.setVT(2.0, 1000.0);
    }
};

TEST_P(SearchAtFixedTemperature, FailsWithTwoMessagesInOrder)
{
    Combustor combustor(*hydrogen());
    pose(*combustor.getReaction());
    combustor.solve(false, false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(combustor.solveByIteration(1000.0, 1e6, false, false),
                               thermo::Exception, 14, "Could not solve problem");
    EXPECT_EQ(combustor.getDerivatives(), nullptr);
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{iterationMessage, combustorMessage}));
    EXPECT_EQ(capture.tagOf(iterationMessage), "THERMO");
}

TEST_P(SearchAtFixedTemperature, HasNoPropertyToCompare)
{
    Equilibrium problem(*hydrogen());
    pose(problem);
    CombustorFunction function(&problem, 1e6, false);
    KETRA_EXPECT_THROW_CODE(function.at(1000.0), thermo::Exception, 0);
}

INSTANTIATE_TEST_SUITE_P(Processes, SearchAtFixedTemperature,
                         testing::Values(Equilibrium::PT, Equilibrium::VT));

TEST_F(CombustorTest, ASearchPassesTheFailureOfAnEvaluationOnWithoutRecovery)
{
    Combustor combustor(*hydrogen(), false, true);
    combustor.setP(pressure);
    combustor.getReaction()->setMaxCycles(60);
    ketra_test::LogCapture capture;
    script().failNextSolve(8);
    KETRA_EXPECT_THROW_CODE(combustor.solveByIteration(1000.0, 1e6, false, false),
                            thermo::Exception, 8);
    EXPECT_EQ(combustor.getDerivatives(), nullptr);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{combustorMessage});
    EXPECT_EQ(combustor.getReaction()->getMaxCycles(), 60U);
    EXPECT_TRUE(combustor.getReaction()->isIons());
    EXPECT_EQ(combustor.getReaction()->getProcessType(), Equilibrium::PH);
}

} // namespace
