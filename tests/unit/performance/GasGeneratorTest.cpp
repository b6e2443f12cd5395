#include <ketra/performance/equilibrium/GasGenerator.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Propellant.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ketra_test::hydrogen;
using ketra_test::script;
using performance::equilibrium::Combustor;
using performance::equilibrium::GasGenerator;

constexpr double pressure = 1e6; // Pa

class GasGeneratorTest : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { script().clear(); }

    static void expectStart(const GasGenerator& generator, double H, bool multiphase, bool ions)
    {
        EXPECT_DOUBLE_EQ(generator.getInitialH(), H);
        EXPECT_EQ(generator.getDerivatives(), nullptr);
        EXPECT_EQ(generator.getReaction()->isMultiphase(), multiphase);
        EXPECT_EQ(generator.getReaction()->isIons(), ions);
    }
};

TEST_F(GasGeneratorTest, IsBuiltAsACombustor)
{
    const auto mixture = hydrogen();
    mixture->setT(500.0);
    expectStart(GasGenerator(*mixture), mixture->H(), true, false);
    expectStart(GasGenerator(*mixture, 1e4), 1e4, true, false);
    expectStart(GasGenerator(*mixture, false, true), mixture->H(), false, true);
    expectStart(GasGenerator(*mixture, 1e4, false, true), 1e4, false, true);
    thermo::Propellant propellant(1.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "H2", 500.0, 101325.0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2", 400.0, 101325.0, 1.0);
    expectStart(GasGenerator(propellant), propellant.H(), true, false);
    expectStart(GasGenerator(propellant, 1e4), 1e4, true, false);
    expectStart(GasGenerator(propellant, false, true), propellant.H(), false, true);
    expectStart(GasGenerator(propellant, 1e4, false, true), 1e4, false, true);
}

TEST_F(GasGeneratorTest, SolvesAsACombustor)
{
    const auto mixture = hydrogen();
    GasGenerator generator(*mixture, 60e3);
    Combustor combustor(*mixture, 60e3);
    for (Combustor* each : {static_cast<Combustor*>(&generator), &combustor}) {
        each->setP(pressure);
        each->solve(false, false);
    }
    EXPECT_EQ(generator.getReaction()->getT(), combustor.getReaction()->getT());
    EXPECT_EQ(generator.getDerivatives()->getK(), combustor.getDerivatives()->getK());
}

TEST_F(GasGeneratorTest, FindsAStateOfGivenEnthalpy)
{
    const auto mixture = hydrogen();
    GasGenerator known(*mixture);
    known.setPT(pressure, 1500.0);
    known.solve(false, false);
    GasGenerator generator(*mixture);
    generator.setRelativeTolerance(1e-3);
    generator.setP(pressure);
    generator.solveByIteration(1300.0, known.getReaction()->getHspec(), false, false);
    EXPECT_NEAR(generator.getReaction()->getT(), 1500.0, 1.0);
}

// What is thrown is a new exception of the code, with the text that belongs to the code.
TEST_F(GasGeneratorTest, ReplacesAFailureByOneOfItsCode)
{
    GasGenerator generator(*hydrogen(), 60e3);
    generator.setP(pressure);
    generator.solve(false, false);
    ketra_test::LogCapture capture;
    script().failNextSolve(std::make_exception_ptr(thermo::Exception(12, "of the gas alone")));
    script().failNextSolve(std::make_exception_ptr(thermo::Exception(12, "of the gas alone")));
    generator.setP(pressure);
    KETRA_EXPECT_THROW_MESSAGE(generator.solve(false, false), thermo::Exception, 12,
                               "Could not obtain thermodynamic derivatives");
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{
                  "Shifting Equilibrium Combustor: could not solve the problem.\r\n"});
    EXPECT_EQ(generator.getDerivatives(), nullptr);
}

TEST_F(GasGeneratorTest, CanBeSolvedAgainAfterAFailure)
{
    GasGenerator generator(*hydrogen(), 60e3);
    generator.setP(pressure);
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(generator.solve(false, false), thermo::Exception, 5);
    EXPECT_EQ(generator.getDerivatives(), nullptr);
    ASSERT_NE(generator.getReaction(), nullptr);
    generator.setPT(pressure, 1200.0);
    generator.solve(false, false);
    ASSERT_NE(generator.getDerivatives(), nullptr);
    EXPECT_EQ(generator.getReaction()->getT(), 1200.0);
}

TEST_F(GasGeneratorTest, PassesAnotherFamilyOfFailures)
{
    GasGenerator generator(*hydrogen(), 60e3);
    generator.setP(pressure);
    for (int attempt = 0; attempt < 2; ++attempt)
        script().failNextSolve(std::make_exception_ptr(std::runtime_error("made up")));
    EXPECT_THROW(generator.solve(false, false), std::runtime_error);
}

} // namespace
