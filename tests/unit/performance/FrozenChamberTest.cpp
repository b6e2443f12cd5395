#include "Sections.h"

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

// The chamber of an engine whose products freeze in the nozzle.

namespace {

using namespace ketra_test;

const std::string notSolved = "Frozen Equilibrium Chamber: equilibrium section not solved\r\n";
const std::string failed = "Frozen Equilibrium Chamber: could not solve the problem.\r\n";

std::unique_ptr<FrozenChamber> posed(double value, FrozenChamber::CONDITION_TYPE type)
{
    useShippedSpecies();
    auto chamber = std::make_unique<FrozenChamber>(*loxHydrogen(6.0), value, type);
    chamber->setP(chamberP);
    return chamber;
}

std::unique_ptr<FrozenChamber> solved(double value, FrozenChamber::CONDITION_TYPE type)
{
    auto chamber = posed(value, type);
    chamber->solve(false, false, false);
    return chamber;
}

double throatP(const FrozenChamber& chamber) { return stationOf(chamber, 2).getP(); }

TEST(FrozenChamber, HasItsFreezingSectionByAreaRatio)
{
    const auto chamber = solved(3.0, FrozenChamber::EXPANSION_RATIO);
    const Section& section = *chamber->getEquilibriumSection();
    EXPECT_EQ(section.getFr(), 3.0);
    EXPECT_EQ(section.getP(), byArea(*chamber, 3.0).getP());
    EXPECT_FALSE(chamber->isNozzleExitTable());
}

TEST(FrozenChamber, FreezesAtAnAreaRatioOfAtLeast1Point1)
{
    EXPECT_EQ(solved(1.05, FrozenChamber::EXPANSION_RATIO)->getEquilibriumSection()->getFr(), 1.1);
    const auto chamber = posed(3.0, FrozenChamber::EXPANSION_RATIO);
    chamber->setFrozenSection(1.0);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 1.1);
    chamber->init(1.05, FrozenChamber::EXPANSION_RATIO);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 1.1);
    chamber->init(1.2, FrozenChamber::EXPANSION_RATIO);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 1.2);
}

TEST(FrozenChamber, HasItsFreezingSectionByPressure)
{
    const auto chamber = solved(5e5, FrozenChamber::PRESSURE);
    EXPECT_EQ(chamber->getEquilibriumSection()->getP(), 5e5);
    chamber->setFrozenPressure(4e5);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getP(), 4e5);
}

TEST(FrozenChamber, FreezesBelowTheThroatPressure)
{
    for (const double p : {5e6, chamberP, 1e8}) {
        const auto chamber = solved(p, FrozenChamber::PRESSURE);
        EXPECT_EQ(chamber->getEquilibriumSection()->getP(), throatP(*chamber) * 0.9);
    }
    const double p = throatP(*solved(5e5, FrozenChamber::PRESSURE));
    EXPECT_EQ(solved(p, FrozenChamber::PRESSURE)->getEquilibriumSection()->getP(), p * 0.9);
    EXPECT_EQ(solved(p * 0.95, FrozenChamber::PRESSURE)->getEquilibriumSection()->getP(), p * 0.95);
}

TEST(FrozenChamber, TakesAPressureRatioToTheInjectionPlane)
{
    const auto chamber = solved(50.0, FrozenChamber::PRESSURE_RATIO);
    EXPECT_EQ(chamber->getEquilibriumSection()->getP(), chamberP / 50.0);
    // a ratio given as a negative pressure is the same
    const auto other = posed(5e5, FrozenChamber::PRESSURE);
    other->setFrozenPressure(-50.0);
    other->solve(false, false, false);
    EXPECT_EQ(other->getEquilibriumSection()->getP(), chamberP / 50.0);
}

TEST(FrozenChamber, SolvesItsStationsWithTransportWhateverIsAsked)
{
    const auto chamber = solved(3.0, FrozenChamber::EXPANSION_RATIO);
    EXPECT_GT(chamber->getDerivatives(Chamber::INJECTION_PLANE)->getV(), 0.0);
    EXPECT_GT(chamber->getDerivatives(Chamber::THROAT)->getV(), 0.0);
    EXPECT_EQ(chamber->getEquilibriumSection()->getV(), 0.0);
    const auto asked = posed(3.0, FrozenChamber::EXPANSION_RATIO);
    asked->solve(false, false, true);
    EXPECT_GT(asked->getEquilibriumSection()->getV(), 0.0);
}

// The hint is for the freezing section; the stations and the layer go without.
TEST(FrozenChamber, SolvesItsStationsWithoutTheHintForCondensedPhases)
{
    class Open : public FrozenChamber
    {
    public:
        using FrozenChamber::FrozenChamber;
        using FrozenChamber::isCondensedExpected;
    };
    useShippedSpecies();
    Open chamber(*loxHydrogen(6.0), 3.0, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(chamberP);
    chamber.solve(false, true, false);
    EXPECT_FALSE(chamber.isCondensedExpected());
}

// An area ratio and a pressure at once: the larger number is taken, as an area ratio.
TEST(FrozenChamber, TakesTheLargerOfAnAreaRatioAndAPressureForAnAreaRatio)
{
    const auto chamber = posed(1.5, FrozenChamber::EXPANSION_RATIO);
    chamber->setFrozenPressure(2.5);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 2.5);
}

TEST(FrozenChamber, HasTheStationsOfAChamberInEquilibrium)
{
    const auto frozen = solved(3.0, FrozenChamber::EXPANSION_RATIO);
    const auto shifting = hydrogenChamber();
    for (unsigned int i = 0; i < 3; ++i)
        EXPECT_EQ(stationOf(*frozen, i).getT(), stationOf(*shifting, i).getT());
    EXPECT_EQ(frozen->getCstar_core(), shifting->getCstar_core());
}

TEST(FrozenChamber, MayHaveAFiniteArea)
{
    const auto chamber = posed(3.0, FrozenChamber::EXPANSION_RATIO);
    chamber->setFcr(3.0);
    chamber->solve(true, false, false);
    EXPECT_GT(chamber->getWc(), 0.0);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 3.0);
}

TEST(FrozenChamber, SolvesItsFreezingSectionForTheLayerToo)
{
    const auto chamber = frozenChamber(2.0, true);
    EXPECT_TRUE(chamber->getEquilibriumSection()->isBLC());
}

TEST(FrozenChamber, HasNoFreezingSectionBeforeItIsSolved)
{
    const auto chamber = posed(3.0, FrozenChamber::EXPANSION_RATIO);
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(chamber->getEquilibriumSection(), thermo::Exception, 0,
                               "Not solved");
    EXPECT_EQ(log.errors(), std::vector<std::string>{notSolved});
    EXPECT_EQ(log.tagOf(notSolved), "THERMO");
}

TEST(FrozenChamber, FailsWithOneCodeWhateverHasFailed)
{
    {
        const auto chamber = posed(1e-30, FrozenChamber::PRESSURE);
        LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(chamber->solve(false, false, false), thermo::Exception, 14,
                                   "Could not solve problem");
        ASSERT_FALSE(log.errors().empty());
        EXPECT_EQ(log.errors().back(), failed);
        EXPECT_EQ(log.tagOf(failed), "THERMO");
    }
    {
        // a finite area that nothing defines
        const auto chamber = posed(3.0, FrozenChamber::EXPANSION_RATIO);
        LogCapture log;
        KETRA_EXPECT_THROW_CODE(chamber->solve(true, false, false), thermo::Exception, 14);
        EXPECT_EQ(log.errors().back(), failed);
    }
}

TEST(FrozenChamber, DropsTheFreezingSectionOfAnEarlierSolve)
{
    const auto chamber = solved(3.0, FrozenChamber::EXPANSION_RATIO);
    chamber->setP(chamberP);
    KETRA_EXPECT_THROW_CODE(chamber->solve(true, false, false), thermo::Exception, 14);
    KETRA_EXPECT_THROW_CODE(chamber->getEquilibriumSection(), thermo::Exception, 0);
    chamber->setP(chamberP);
    chamber->solve(false, false, false);
    EXPECT_EQ(chamber->getEquilibriumSection()->getFr(), 3.0);
}

TEST(FrozenChamber, IsBuiltOnAPropellantOrAMixtureWithOrWithoutAnEnthalpyAndPhases)
{
    useShippedSpecies();
    constexpr auto type = FrozenChamber::EXPANSION_RATIO;
    const auto mixture = loxHydrogen(6.0);
    thermo::Propellant propellant(6.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2(L)", 90.17, 101325.0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2(L)", 20.27, 101325.0, 1.0);
    const auto expectStart = [](const FrozenChamber& chamber, double H, bool multiphase,
                                bool ions) {
        EXPECT_DOUBLE_EQ(chamber.getInitialH(), H);
        EXPECT_EQ(stationOf(chamber, 0).isMultiphase(), multiphase);
        EXPECT_EQ(stationOf(chamber, 0).isIons(), ions);
    };
    expectStart(FrozenChamber(*mixture, 2.0, type), mixture->H(), true, false);
    expectStart(FrozenChamber(*mixture, -5.0, 2.0, type), -5.0, true, false);
    expectStart(FrozenChamber(*mixture, false, true, 2.0, type), mixture->H(), false, true);
    expectStart(FrozenChamber(*mixture, -5.0, false, true, 2.0, type), -5.0, false, true);
    expectStart(FrozenChamber(propellant, 2.0, type), propellant.H(), true, false);
    expectStart(FrozenChamber(propellant, -5.0, 2.0, type), -5.0, true, false);
    expectStart(FrozenChamber(propellant, false, true, 2.0, type), propellant.H(), false, true);
    expectStart(FrozenChamber(propellant, -5.0, false, true, 2.0, type), -5.0, false, true);
}

TEST(FrozenChamber, NumbersItsConditionsFromZero)
{
    EXPECT_EQ(FrozenChamber::EXPANSION_RATIO, 0U);
    EXPECT_EQ(FrozenChamber::PRESSURE, 1U);
    EXPECT_EQ(FrozenChamber::PRESSURE_RATIO, 2U);
    EXPECT_EQ(Section::AREA_RATIO, 1U);
    EXPECT_EQ(Section::PRESSURE, 2U);
    EXPECT_EQ(Section::PRESSURE_RATIO, 3U);
}

} // namespace
