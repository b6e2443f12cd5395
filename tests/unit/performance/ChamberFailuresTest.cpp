// What is left of a chamber whose stations cannot be found.

#include "Chambers.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <ketra/math/equation/Exception.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ketra_test::chamberPressure;
using ketra_test::circlingT;
using ketra_test::gasWithAJump;
using ketra_test::gasWithTwoJumps;
using ketra_test::hydrogen;
using ketra_test::JumpingGas;
using ketra_test::OpenChamber;
using ketra_test::script;
using ketra_test::throatMach;
using performance::equilibrium::Chamber;

const std::string combustorMessage =
    "Shifting Equilibrium Combustor: could not solve the problem.\r\n";
const std::string undefinedMessage =
    "Shifting Equilibrium Combustor: invalid state. Neither contraction area ratio nor mass flux "
    "is defined.\r\n";

void expectNoStations(const Chamber& chamber)
{
    for (const auto station : {Chamber::CHAMBER_END, Chamber::THROAT}) {
        EXPECT_EQ(chamber.getReaction(station), nullptr);
        EXPECT_EQ(chamber.getDerivatives(station), nullptr);
    }
}

TEST(ChamberFailures, AnUndefinedFiniteAreaIsFoundAfterTheInjectionPlane)
{
    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(chamber.solve(true, false, false), thermo::Exception, 14,
                               "Could not solve problem");
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{undefinedMessage, combustorMessage}));
    EXPECT_EQ(capture.tagOf(undefinedMessage), "THERMO");
    EXPECT_EQ(capture.tagOf(combustorMessage), "THERMO");
    EXPECT_NEAR(chamber.getReaction()->getT(), 2000.0, 1e-3); // solved
    EXPECT_EQ(chamber.getDerivatives(), nullptr);
    expectNoStations(chamber);
}

TEST(ChamberFailures, AnUndefinedFiniteAreaHasCodeZeroOfItsOwn)
{
    gasWithAJump().use();
    OpenChamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    chamber.solve(false, false, false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(chamber.combustion_end_and_throat(false), thermo::Exception, 0,
                               "Invalid state");
    EXPECT_EQ(capture.errors(), std::vector<std::string>{undefinedMessage});
    expectNoStations(chamber);
}

// A mass flux of the first guess p/(c* F) beyond that of the throat.
TEST(ChamberFailures, AChamberNarrowerThanItsThroatPassesTheFailureOfItsEstimate)
{
    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(2000.0));
    ketra_test::LogCapture capture;
    chamber.setP(chamberPressure);
    chamber.setMr(2.0 * chamberPressure / 2350.0);
    EXPECT_THROW(chamber.solve(true, false, false), math::equation::Exception);
    expectNoStations(chamber);
    EXPECT_TRUE(capture.errors().empty());

    chamber.setP(chamberPressure);
    chamber.setFcr(0.5); // a contraction below 1 is none: there is no mass flux either
    EXPECT_THROW(chamber.solve(true, false, false), math::equation::Exception);
    expectNoStations(chamber);
    chamber.printResults(0); // of what there is
    EXPECT_NE(capture.report().find("Combustion chamber\r\n"), std::string::npos);
    EXPECT_EQ(capture.report().find("Throat"), std::string::npos);

    chamber.setP(chamberPressure);
    chamber.setFcr(3.0);
    chamber.solve(true, false, false);
    EXPECT_NEAR(throatMach(chamber), 1.0, 1e-5);
}

TEST(ChamberFailures, AThroatWithoutMach1IsTakenFromBetweenTheLastTwoPasses)
{
    gasWithAJump().use();
    for (const double T : {1230.0, 1280.0, 1330.0}) {
        SCOPED_TRACE(T);
        Chamber chamber(*JumpingGas::mixture(T));
        chamber.setP(chamberPressure);
        chamber.solve(false, false, false);
        EXPECT_GT(std::abs(throatMach(chamber) - 1.0), 0.05);
        // Entropy of the jump at 1000 K: the throat is near.
        EXPECT_NEAR(chamber.getReaction(Chamber::THROAT)->getT(), 1000.0, 50.0);
        EXPECT_GT(chamber.getCstar_core(), 0.0);
    }
}

TEST(ChamberFailures, AThroatThatIsNotBracketedIsNotFound)
{
    gasWithTwoJumps().use();
    OpenChamber chamber(*JumpingGas::mixture(circlingT));
    chamber.setP(chamberPressure);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(chamber.solve(false, false, false), thermo::Exception, 14);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{combustorMessage});
    EXPECT_EQ(chamber.getDerivatives(), nullptr);
    expectNoStations(chamber);
}

TEST(ChamberFailures, AThroatThatIsNotFoundHasItsOwnCode)
{
    gasWithTwoJumps().use();
    OpenChamber chamber(*JumpingGas::mixture(5000.0));
    chamber.setP(chamberPressure);
    chamber.solve(false, false, false);
    chamber.setPH(chamberPressure, JumpingGas::mixture(circlingT)->H());
    chamber.solve(false, false); // the injection plane, and so the chamber end
    KETRA_EXPECT_THROW_MESSAGE(chamber.throat(false), thermo::Exception, 10,
                               "Could not find throat conditions");
    EXPECT_EQ(chamber.getReaction(Chamber::THROAT), nullptr);
    EXPECT_EQ(chamber.getDerivatives(Chamber::THROAT), nullptr);
    EXPECT_NE(chamber.getDerivatives(Chamber::CHAMBER_END), nullptr);
}

TEST(ChamberFailures, AThroatThatIsNotFoundTakesAFiniteChamberEndWithIt)
{
    gasWithTwoJumps().use();
    OpenChamber chamber(*JumpingGas::mixture(circlingT));
    chamber.setP(chamberPressure);
    chamber.setFcr(100.0);
    KETRA_EXPECT_THROW_CODE(chamber.solve(true, false, false), thermo::Exception, 14);
    expectNoStations(chamber);
    chamber.setP(chamberPressure);
    chamber.solve(false, false);
    KETRA_EXPECT_THROW_CODE(chamber.combustion_end_and_throat(false), thermo::Exception, 10);
    expectNoStations(chamber);
}

// Where the gas at the chamber end is about as hot as the jump, the search runs in circles.
TEST(ChamberFailures, AChamberEndThatIsNotFoundHasItsOwnCode)
{
    gasWithAJump().use();
    OpenChamber chamber(*JumpingGas::mixture(1077.0));
    chamber.setP(chamberPressure);
    chamber.setFcr(1.2);
    chamber.solve(false, false);
    KETRA_EXPECT_THROW_MESSAGE(chamber.combustion_end_and_throat(false), thermo::Exception, 9,
                               "Could not find chamber end conditions");
    expectNoStations(chamber);
    EXPECT_NE(chamber.getDerivatives(), nullptr);

    ketra_test::LogCapture capture;
    chamber.setP(chamberPressure);
    KETRA_EXPECT_THROW_CODE(chamber.solve(true, false, false), thermo::Exception, 14);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{combustorMessage});
    expectNoStations(chamber);
    EXPECT_EQ(chamber.getDerivatives(), nullptr);
}

TEST(ChamberFailures, InnerOperationsNeedASolvedChamber)
{
    gasWithAJump().use();
    OpenChamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(chamber.combustion_end_and_throat(false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{undefinedMessage}); // what comes first
    chamber.setFcr(3.0);
    KETRA_EXPECT_THROW_CODE(chamber.throat(false), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(chamber.combustion_end_and_throat(false), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(chamber.blc_throat(), thermo::Exception, 0);
    expectNoStations(chamber);
}

// A hot chamber of scripted hydrogen, in which single evaluations fail.
class ScriptedChamber : public testing::Test
{
protected:
    static constexpr double H = 60e3; // J/mol, hot enough for both forms
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { script().clear(); }

    static std::unique_ptr<OpenChamber> chamber()
    {
        auto made = std::make_unique<OpenChamber>(*hydrogen(), H, true, false);
        made->setP(chamberPressure);
        return made;
    }
    // Evaluations of an injection plane without trouble.
    static unsigned int ofTheInjectionPlane(bool expectCondensed)
    {
        const auto alone = chamber();
        script().clear();
        alone->solve(expectCondensed, false);
        return script().evaluations();
    }
};

TEST_F(ScriptedChamber, WhoseThroatFailsLosesEverything)
{
    const unsigned int before = ofTheInjectionPlane(true);
    const auto failing = chamber();
    script().clear();
    script().failAt(before + 3, 8); // with the hint there is no further attempt
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(failing->solve(false, true, false), thermo::Exception, 14);
    EXPECT_TRUE(script().isDone());
    EXPECT_EQ(capture.errors(), std::vector<std::string>{combustorMessage});
    EXPECT_EQ(failing->getDerivatives(), nullptr);
    expectNoStations(*failing);

    failing->setPH(chamberPressure, H);
    failing->solve(false, true, false);
    EXPECT_NEAR(throatMach(*failing), 1.0, 1e-5);
}

TEST_F(ScriptedChamber, WhoseInjectionPlaneFailsLosesEarlierResultsAndSaysSoTwice)
{
    for (const bool finiteArea : {false, true}) {
        SCOPED_TRACE(finiteArea);
        const auto failing = chamber();
        failing->setFcr(3.0);
        failing->solve(finiteArea, false, false);
        ASSERT_NE(failing->getDerivatives(Chamber::THROAT), nullptr);
        failing->setPH(chamberPressure, H);
        ketra_test::LogCapture capture;
        script().failNextSolve(5);
        KETRA_EXPECT_THROW_CODE(failing->solve(finiteArea, false, false), thermo::Exception, 14);
        EXPECT_EQ(capture.errors(), (std::vector<std::string>{combustorMessage, combustorMessage}));
        EXPECT_EQ(failing->getDerivatives(), nullptr);
        expectNoStations(*failing);
    }
}

TEST_F(ScriptedChamber, PassesAnotherFamilyOfFailuresWithoutHalfBuiltStations)
{
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    const auto failing = chamber();
    failing->setFcr(3.0);
    failing->solve(true, false, false);
    ketra_test::LogCapture capture;
    for (int attempt = 0; attempt < 2; ++attempt) script().failNextSolve(other);
    EXPECT_THROW(failing->throat(false), std::runtime_error);
    EXPECT_EQ(failing->getReaction(Chamber::THROAT), nullptr);
    EXPECT_NE(failing->getReaction(Chamber::CHAMBER_END), nullptr);

    for (int attempt = 0; attempt < 2; ++attempt) script().failNextSolve(other);
    failing->setPH(chamberPressure, H);
    EXPECT_THROW(failing->solve(true, false, false), std::runtime_error);
    expectNoStations(*failing);
    EXPECT_TRUE(capture.errors().empty());
}

TEST_F(ScriptedChamber, AnswersAFailureOfTheThroatByAnotherAttempt)
{
    const unsigned int before = ofTheInjectionPlane(false);
    const auto good = chamber();
    good->solve(false, false, false);
    const auto mended = chamber();
    script().clear();
    script().failAt(before + 3, 8);
    mended->solve(false, false, false);
    EXPECT_TRUE(script().isDone());
    EXPECT_NEAR(mended->getCstar_core() / good->getCstar_core(), 1.0, 1e-5);
}

} // namespace
