#include "Chambers.h"

#include <support/CapturingLogger.h>
#include <support/Certificates.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

using ketra_test::chamberPressure;
using ketra_test::circlingT;
using ketra_test::gasWithAJump;
using ketra_test::gasWithTwoJumps;
using ketra_test::JumpingGas;
using ketra_test::layerThroatMach;
using ketra_test::layerVelocityAt;
using ketra_test::OpenChamber;
using performance::equilibrium::Chamber;
using reaction::Derivatives;
using reaction::Equilibrium;

constexpr double share = 0.1; // mass fraction of the layer
constexpr Chamber::CHAMBER_STATION stations[] = {Chamber::INJECTION_PLANE, Chamber::CHAMBER_END,
                                                 Chamber::THROAT};

void expectNoLayer(const Chamber& chamber)
{
    EXPECT_FALSE(chamber.isBLC());
    for (const auto station : stations) {
        EXPECT_EQ(chamber.getBlcReaction(station), nullptr);
        EXPECT_EQ(chamber.getBlcDerivatives(station), nullptr);
    }
    for (const double value :
         {chamber.getBLC(), chamber.getPc_0_blc(), chamber.getSigmaC_blc(), chamber.getMr_blc(),
          chamber.getFcr_blc(), chamber.getWc_blc(), chamber.getCstar_blc()})
        EXPECT_EQ(value, 0.0);
}

void expectUnsolvedLayer(const Chamber& chamber)
{
    EXPECT_TRUE(chamber.isBLC());
    EXPECT_NE(chamber.getBlcReaction(Chamber::INJECTION_PLANE), nullptr);
    EXPECT_EQ(chamber.getBlcDerivatives(Chamber::THROAT), nullptr);
    EXPECT_EQ(chamber.getBlcReaction(Chamber::THROAT), nullptr);
    EXPECT_EQ(chamber.getBlcReaction(Chamber::CHAMBER_END), nullptr);
    EXPECT_EQ(chamber.getCstar_blc(), 0.0);
}

// Static pressures of the core, a sonic throat, and the energy of the layer's own reactants.
void expectSolvedLayer(const Chamber& chamber)
{
    for (const auto station : stations) {
        ASSERT_NE(chamber.getBlcDerivatives(station), nullptr);
        EXPECT_EQ(chamber.getBlcReaction(station)->getP(), chamber.getReaction(station)->getP());
    }
    EXPECT_NEAR(layerThroatMach(chamber), 1.0, 1e-5);
    const Derivatives& sonic = *chamber.getBlcDerivatives(Chamber::THROAT);
    EXPECT_NEAR(chamber.getCstar_blc() * sonic.getRho() * sonic.getA() / chamber.getPc_0_blc(), 1.0,
                1e-12);
    EXPECT_EQ(chamber.getBetta_blc(), chamber.getCstar_blc());
}

class ChamberLayer : public testing::Test
{
protected:
    void SetUp() override
    {
        ketra_test::useShippedSpecies();
        core = ketra_test::loxHydrogen(6.0);
        cool = ketra_test::loxHydrogen(3.0);
        chamber = std::make_unique<OpenChamber>(*core);
        chamber->setFcr(2.5);
        chamber->setP(chamberPressure);
    }
    void solve(bool finiteArea)
    {
        chamber->setP(chamberPressure);
        chamber->solve(finiteArea, false, false);
        EXPECT_NE(ketra_test::certificateOf(*chamber).grade, verification::Grade::F);
    }

    std::unique_ptr<thermo::Mixture> core, cool;
    std::unique_ptr<OpenChamber> chamber;
};

TEST_F(ChamberLayer, OfTheCoresOwnReactantsIsTheCore)
{
    for (const bool finiteArea : {false, true}) {
        SCOPED_TRACE(finiteArea);
        chamber->setBLC(share, *core, false);
        solve(finiteArea);
        expectSolvedLayer(*chamber);
        for (const auto station : stations) {
            SCOPED_TRACE(station);
            const Equilibrium& layer = *chamber->getBlcReaction(station);
            const Equilibrium& own = *chamber->getReaction(station);
            EXPECT_NEAR(layer.getT() / own.getT(), 1.0, 2e-5);
            EXPECT_NEAR(layer.getSspec() / own.getSspec(), 1.0, 2e-5);
        }
        // Pressures at the throat of the core are good to 1e-5.
        EXPECT_NEAR(chamber->getPc_0_blc() / chamber->getPc_0(), 1.0, 1e-4);
        EXPECT_NEAR(chamber->getCstar_blc() / chamber->getCstar_core(), 1.0, 1e-4);
    }
    EXPECT_NEAR(chamber->getWc_blc() / chamber->getWc(), 1.0, 1e-3);
    // The contraction of the core is as given, and its mass flux a little off it.
    EXPECT_NEAR(chamber->getFcr_blc() / chamber->getFcr(), 1.0, 1e-2);
    EXPECT_NEAR(chamber->getMr_blc() / chamber->getMr(), 1.0, 1e-3);
    EXPECT_NEAR(chamber->getSigmaC_blc() / chamber->getSigmaC(), 1.0, 1e-4);
}

TEST_F(ChamberLayer, OfOtherReactantsHasThePressuresOfTheCore)
{
    chamber->setBLC(share, *cool, false);
    expectUnsolvedLayer(*chamber);
    solve(false);
    expectSolvedLayer(*chamber);
    EXPECT_EQ(chamber->getBLC(), share);
    EXPECT_LT(chamber->getBlcReaction(Chamber::THROAT)->getT(),
              chamber->getReaction(Chamber::THROAT)->getT() - 500.0);
    EXPECT_EQ(chamber->getBlcReaction(Chamber::CHAMBER_END),
              chamber->getBlcReaction(Chamber::INJECTION_PLANE));
    EXPECT_EQ(chamber->getBlcDerivatives(Chamber::CHAMBER_END),
              chamber->getBlcDerivatives(Chamber::INJECTION_PLANE));
    EXPECT_EQ(chamber->getPc_0_blc(), chamberPressure);
    for (const double ofFiniteArea : {chamber->getWc_blc(), chamber->getFcr_blc(),
                                      chamber->getMr_blc(), chamber->getSigmaC_blc()})
        EXPECT_EQ(ofFiniteArea, 0.0);
}

TEST_F(ChamberLayer, OfAFiniteAreaHasAnEndOfItsOwn)
{
    chamber->setBLC(share, *cool, false);
    solve(true);
    expectSolvedLayer(*chamber);
    const Equilibrium& end = *chamber->getBlcReaction(Chamber::CHAMBER_END);
    const Derivatives& gas = *chamber->getBlcDerivatives(Chamber::CHAMBER_END);
    const Derivatives& sonic = *chamber->getBlcDerivatives(Chamber::THROAT);
    EXPECT_NE(&end, chamber->getBlcReaction(Chamber::INJECTION_PLANE));
    EXPECT_NEAR(end.getSspec() / chamber->getBlcReaction(Chamber::THROAT)->getSspec(), 1.0, 1e-6);

    const double w = layerVelocityAt(*chamber, Chamber::CHAMBER_END);
    EXPECT_DOUBLE_EQ(chamber->getWc_blc(), w);
    EXPECT_NEAR(chamber->getMr_blc() / (gas.getRho() * w), 1.0, 1e-14);
    EXPECT_NEAR(chamber->getFcr_blc() / (sonic.getRho() * sonic.getA() / (gas.getRho() * w)), 1.0,
                1e-14);
    const double k = gas.getK();
    const double x = gas.getRho() * (k - 1.0) * w * w / (2.0 * k * end.getP());
    EXPECT_NEAR(chamber->getPc_0_blc() / (end.getP() * std::pow(1.0 + x, k / (k - 1.0))), 1.0,
                1e-14);
    EXPECT_NEAR(chamber->getSigmaC_blc() * chamberPressure / chamber->getPc_0_blc(), 1.0, 1e-14);
}

TEST_F(ChamberLayer, WeighsTheCharacteristicVelocity)
{
    solve(false);
    const double c = chamber->getCstar_core();
    EXPECT_EQ(chamber->getCstar(0.0), c);
    EXPECT_EQ(chamber->getBetta(0.0), c);
    EXPECT_EQ(chamber->getBetta_core(), c);
    EXPECT_EQ(chamber->getCstar(0.2), 0.8 * c); // of a layer that is not there

    chamber->setBLC(share, *cool, false);
    const double b = chamber->getCstar_blc();
    EXPECT_GT(b, 1000.0);
    EXPECT_NE(b, c);
    EXPECT_DOUBLE_EQ(chamber->getCstar(0.0), 0.1 * b + 0.9 * c);
    EXPECT_DOUBLE_EQ(chamber->getCstar(0.2), 0.2 * b + 0.8 * c);
    EXPECT_DOUBLE_EQ(chamber->getBetta(0.0), 0.1 * b + 0.9 * c);
    EXPECT_DOUBLE_EQ(chamber->getBetta(0.2), 0.2 * b + 0.8 * c);
}

TEST_F(ChamberLayer, OfAMixtureIsSolvedAtOnceInASolvedChamber)
{
    for (const bool finiteArea : {false, true}) {
        SCOPED_TRACE(finiteArea);
        chamber->blc_clear();
        solve(finiteArea);
        chamber->setBLC(share, *cool, false);
        expectSolvedLayer(*chamber);
        const double after = chamber->getCstar_blc();
        const double endT = chamber->getBlcReaction(Chamber::CHAMBER_END)->getT();

        OpenChamber other(*core);
        other.setFcr(2.5);
        other.setP(chamberPressure);
        other.setBLC(share, *cool, false);
        other.solve(finiteArea, false, false);
        EXPECT_NEAR(other.getCstar_blc() / after, 1.0, 1e-5);
        EXPECT_NEAR(other.getBlcReaction(Chamber::CHAMBER_END)->getT() / endT, 1.0, 1e-5);
    }
}

TEST_F(ChamberLayer, OfAMixtureIsSetWhateverTheFraction)
{
    for (const double fraction : {0.0, -0.1, 0.5}) {
        chamber->setBLC(fraction, *cool, false);
        EXPECT_TRUE(chamber->isBLC());
        EXPECT_EQ(chamber->getBLC(), fraction);
    }
}

class PropellantLayer : public ChamberLayer
{
protected:
    static std::unique_ptr<thermo::Propellant> coolPropellant()
    {
        auto propellant = std::make_unique<thermo::Propellant>(3.0);
        propellant->addComponent(thermo::Propellant::OXIDIZER, "O2(L)", 90.17, 101325.0, 1.0);
        propellant->addComponent(thermo::Propellant::FUEL, "H2(L)", 20.27, 101325.0, 1.0);
        return propellant;
    }
};

TEST_F(PropellantLayer, WaitsForTheNextSolve)
{
    const auto propellant = coolPropellant();
    solve(false);
    chamber->setBLC(share, *propellant, false);
    expectUnsolvedLayer(*chamber);
    EXPECT_EQ(chamber->getBLC(), share);
    EXPECT_EQ(chamber->getBlcDerivatives(Chamber::INJECTION_PLANE), nullptr);
    solve(false);
    expectSolvedLayer(*chamber);
    const double ofPropellant = chamber->getCstar_blc();
    chamber->setBLC(share, *cool, false);
    EXPECT_NEAR(chamber->getCstar_blc() / ofPropellant, 1.0, 1e-6);
}

TEST_F(PropellantLayer, OfNothingTakesTheLayerAway)
{
    const auto propellant = coolPropellant();
    for (const double fraction : {0.0, -0.1}) {
        chamber->setBLC(share, *cool, false);
        chamber->setBLC(fraction, *propellant, false);
        expectNoLayer(*chamber);
    }
}

TEST_F(ChamberLayer, HasThePhasesOfTheCore)
{
    for (const bool multiphase : {false, true})
        for (const bool ions : {false, true}) {
            Chamber own(*core, multiphase, ions);
            own.setP(chamberPressure);
            own.setBLC(share, *cool, false);
            const Equilibrium& layer = *own.getBlcReaction(Chamber::INJECTION_PLANE);
            EXPECT_EQ(layer.isMultiphase(), multiphase);
            EXPECT_EQ(layer.isIons(), ions);
            EXPECT_EQ(layer.getProcessType(), Equilibrium::PH);
            EXPECT_EQ(layer.getP(), chamberPressure);
            EXPECT_EQ(layer.getH(), cool->H());
        }
}

TEST_F(ChamberLayer, IsTakenAwayInBothModels)
{
    for (const bool finiteArea : {false, true, false}) {
        SCOPED_TRACE(finiteArea);
        chamber->setBLC(share, *cool, false);
        solve(finiteArea);
        const double c = chamber->getCstar_core();
        chamber->blc_clear();
        expectNoLayer(*chamber);
        EXPECT_EQ(chamber->getCstar(0.0), c);
        EXPECT_NE(chamber->getDerivatives(Chamber::CHAMBER_END), nullptr);
        chamber->blc_clear();
        expectNoLayer(*chamber);
    }
}

// The layer's end is its injection plane in one model and an object of its own in the other.
TEST_F(ChamberLayer, FollowsTheChamberFromModelToModel)
{
    chamber->setBLC(share, *cool, false);
    double cstar[2]{};
    for (const bool finiteArea : {false, true, true, false, false, true}) {
        SCOPED_TRACE(finiteArea);
        solve(finiteArea);
        expectSolvedLayer(*chamber);
        EXPECT_EQ(chamber->getWc_blc() > 0.0, finiteArea);
        double& known = cstar[finiteArea ? 1 : 0];
        if (known > 0.0) {
            EXPECT_NEAR(chamber->getCstar_blc() / known, 1.0, 1e-5);
        }
        known = chamber->getCstar_blc();
    }
}

TEST_F(ChamberLayer, GoesWithThePressureOfTheCore)
{
    chamber->setBLC(share, *cool, false); // at the pressure of now
    for (const double p : {2e6, 8e6}) {
        chamber->setP(p);
        chamber->solve(false, false, false);
        expectSolvedLayer(*chamber);
        EXPECT_EQ(chamber->getPc_0_blc(), p);
    }
    Chamber late(*core);
    late.setBLC(share, *cool, false); // before there is a pressure
    late.setP(8e6);
    late.solve(false, false, false);
    EXPECT_NEAR(late.getCstar_blc() / chamber->getCstar_blc(), 1.0, 1e-5);
}

TEST_F(ChamberLayer, OfAHostsOwnProblemKeepsItsTemperature)
{
    chamber->setBLC(share, *cool, false);
    chamber->getBlcReaction(Chamber::INJECTION_PLANE)->setPT(chamberPressure, 1500.0);
    for (int i = 0; i < 2; ++i) {
        solve(false);
        EXPECT_EQ(chamber->getBlcReaction(Chamber::INJECTION_PLANE)->getT(), 1500.0);
        expectSolvedLayer(*chamber);
    }
}

TEST_F(ChamberLayer, IsNotSolvedWithoutACore)
{
    chamber->blc_solve(false); // without a layer nothing
    expectNoLayer(*chamber);
    chamber->setBLC(share, *cool, false);
    KETRA_EXPECT_THROW_CODE(chamber->blc_solve(false), thermo::Exception, 0);
    expectUnsolvedLayer(*chamber);
    KETRA_EXPECT_THROW_CODE(chamber->blc_throat(), thermo::Exception, 0);
}

TEST_F(ChamberLayer, OfFractionsThatDoNotAddUpIsNone)
{
    solve(false);
    thermo::Mixture half;
    half.addSpecies("H2(L)", 20.27, 0.5);
    KETRA_EXPECT_THROW_CODE(chamber->setBLC(share, half, false), thermo::Exception, 5);
    expectNoLayer(*chamber);
}

// A chamber whose throat a subclass has lost.
TEST_F(PropellantLayer, NeedsNoThroatToWait)
{
    gasWithTwoJumps().use();
    OpenChamber own(*JumpingGas::mixture(5000.0));
    own.setP(chamberPressure);
    own.solve(false, false, false);
    own.setPH(chamberPressure, JumpingGas::mixture(circlingT)->H());
    own.solve(false, false);
    KETRA_EXPECT_THROW_CODE(own.throat(false), thermo::Exception, 10);
    thermo::Propellant argon(1.0);
    argon.addComponent(thermo::Propellant::OXIDIZER, "Ar", 500.0, 101325.0, 1.0);
    argon.addComponent(thermo::Propellant::FUEL, "Ar", 400.0, 101325.0, 1.0);
    own.setBLC(share, argon, false);
    expectUnsolvedLayer(own);
}

TEST(ChamberLayerThroat, KeepsTheLastStateWhereMach1IsJumpedOver)
{
    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(3000.0));
    chamber.setP(chamberPressure);
    chamber.solve(false, false, false);
    chamber.setBLC(share, *JumpingGas::mixture(1300.0), false);
    EXPECT_NE(chamber.getBlcDerivatives(Chamber::THROAT), nullptr);
    EXPECT_GT(std::abs(layerThroatMach(chamber) - 1.0), 0.1);
    EXPECT_GT(chamber.getCstar_blc(), 0.0);
    EXPECT_EQ(chamber.getBlcReaction(Chamber::CHAMBER_END),
              chamber.getBlcReaction(Chamber::INJECTION_PLANE));
}

TEST(ChamberLayerThroat, ThatIsNotFoundIsCode10AndLeavesTheLayerSet)
{
    gasWithTwoJumps().use();
    for (const bool finiteArea : {false, true}) {
        SCOPED_TRACE(finiteArea);
        Chamber chamber(*JumpingGas::mixture(5000.0));
        chamber.setP(chamberPressure);
        chamber.setFcr(3.0);
        chamber.solve(finiteArea, false, false);
        const double c = chamber.getCstar_core();
        KETRA_EXPECT_THROW_MESSAGE(chamber.setBLC(share, *JumpingGas::mixture(circlingT), false),
                                   thermo::Exception, 10, "Could not find throat conditions");
        expectUnsolvedLayer(chamber);
        EXPECT_EQ(chamber.getBLC(), share);
        EXPECT_EQ(chamber.getCstar_core(), c);
        EXPECT_NE(chamber.getDerivatives(Chamber::THROAT), nullptr);

        ketra_test::LogCapture capture;
        chamber.setP(chamberPressure);
        KETRA_EXPECT_THROW_CODE(chamber.solve(finiteArea, false, false), thermo::Exception, 14);
        EXPECT_EQ(capture.errors(),
                  std::vector<std::string>{
                      "Shifting Equilibrium Combustor: could not solve the problem.\r\n"});
        EXPECT_EQ(chamber.getDerivatives(), nullptr);
        EXPECT_EQ(chamber.getDerivatives(Chamber::THROAT), nullptr);
        expectUnsolvedLayer(chamber);

        chamber.blc_clear();
        chamber.setP(chamberPressure);
        chamber.solve(finiteArea, false, false);
        EXPECT_NEAR(chamber.getCstar_core() / c, 1.0, 1e-5);
    }
}

} // namespace
