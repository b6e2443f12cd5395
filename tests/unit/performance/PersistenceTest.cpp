// Engines that the method alone does not solve, or not lawfully, and a persistent calculation does.

#include <ketra/math/equation/Exception.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include "Chambers.h"
#include "Engines.h"
#include "Sections.h"

#include <support/CapturingLogger.h>
#include <support/EngineLaws.h>
#include <support/Failures.h>
#include <support/MadeUpSpecies.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace ketra_test;
using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;
using thermo::input::ConfigFile;
using thermo::input::Ratio;

class Persistence : public testing::Test
{
protected:
    void SetUp() override { useShippedSpecies(); }

    /// N2O4 and hydrazine at 6.9 MPa.
    static std::unique_ptr<ConfigFile> storable(double alpha, double Fr)
    {
        auto document =
            bipropellantDocument({"N2O4(L)", 1.0}, {"N2H4(L)", 1.0}, alpha, Ratio::ALPHA, 6.9);
        document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
        document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(Fr, true);
        return document;
    }
};

bool holds(const std::vector<std::string>& lines, const std::string& part)
{
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(part) != std::string::npos;
    });
}

// The solver of the default method overshoots below the range of the data from its start of equal
// amounts, and its further attempts begin there.
TEST_F(Persistence, SolvesTheStorableEngineThatTheMethodDoesNot)
{
    const auto document = storable(1.0, 29.0);
    TheoreticalPerformance engine(document.get(), false);
    KETRA_EXPECT_THROW_CODE(engine.solve(false), thermo::Exception, 11);

    for (const bool warm : {false, true}) {
        SCOPED_TRACE(warm);
        engine.setPersistent(true);
        engine.setWarmStart(warm);
        engine.solve(false);
        ASSERT_NE(engine.getExitSection(), nullptr);
        const Section& exit = *engine.getExitSection();
        EXPECT_NEAR(exit.getT(), 1370.0, 30.0); // warm enough for any other start
        EXPECT_EQ(exit.getReaction()->certificate().grade, verification::Grade::A);
        const StationLaws laws = lawsOf(*engine.getChamber(), exit);
        EXPECT_LT(laws.enthalpy, 1e-5);
        EXPECT_LT(laws.entropy, 1e-6);
        EXPECT_LT(laws.flux, 5e-4);
        EXPECT_LT(laws.elements, 1e-7);
    }
}

TEST_F(Persistence, TellsOfAnExitBelowTheDataOfTheProducts)
{
    const auto document = storable(20.0, 300.0);
    TheoreticalPerformance engine(document.get(), false);
    engine.setPersistent(true);
    engine.setWarmStart(true);
    LogCapture log;
    KETRA_EXPECT_THROW_CODE(engine.solve(false), thermo::Exception, 11);
    EXPECT_TRUE(holds(log.errors(), "where their data begin"));
    EXPECT_NE(engine.getChamber(), nullptr); // the chamber stays
    EXPECT_EQ(engine.getExitSection(), nullptr);
}

/// Where the speed of sound jumps no state has Mach 1.
TEST_F(Persistence, PutsTheThroatWhereTheMassFluxIsLargest)
{
    gasWithAJump().use();
    for (const double T : {1230.0, 1280.0, 1330.0}) {
        SCOPED_TRACE(T);
        OpenChamber byMethod(*JumpingGas::mixture(T)), chamber(*JumpingGas::mixture(T));
        byMethod.setP(chamberPressure);
        byMethod.solve(false, false, false);
        const reaction::Derivatives& sonic = *byMethod.getDerivatives(Chamber::THROAT);
        EXPECT_EQ(byMethod.getThroatFlux(), sonic.getRho() * sonic.getA());

        LogCapture log;
        chamber.setPersistent(true);
        chamber.setP(chamberPressure);
        chamber.solve(false, false, false);
        EXPECT_TRUE(holds(log.infos(), "Nozzle throat: the Mach number jumps from"));
        EXPECT_NEAR(chamber.getReaction(Chamber::THROAT)->getT(), 1000.0, 1e-4);
        const double flux = chamber.getThroatFlux();
        const reaction::Derivatives& throat = *chamber.getDerivatives(Chamber::THROAT);
        EXPECT_NEAR(flux / (throat.getRho() * velocityAt(chamber, Chamber::THROAT)), 1.0, 1e-12);
        EXPECT_NEAR(chamber.getCstar_core() * flux / chamberPressure, 1.0, 1e-12);
        // Neither side of the jump passes more.
        const double p = chamber.getReaction(Chamber::THROAT)->getP();
        for (const double factor : {0.9, 0.99, 1.01, 1.1}) {
            SCOPED_TRACE(factor);
            const Section beside = byPressure(chamber, factor * p);
            EXPECT_LT(beside.getRho() * beside.getW(), flux * (1.0 - 1e-6));
        }
    }
}

TEST_F(Persistence, FindsAThroatThatTheMethodCirclesAround)
{
    gasWithTwoJumps().use();
    Chamber chamber(*JumpingGas::mixture(circlingT));
    chamber.setP(chamberPressure);
    KETRA_EXPECT_THROW_CODE(chamber.solve(false, false, false), thermo::Exception, 14);

    chamber.setPersistent(true);
    chamber.setP(chamberPressure);
    chamber.solve(false, false, false);
    const double flux = chamber.getThroatFlux();
    const double p = chamber.getReaction(Chamber::THROAT)->getP();
    for (const double factor : {0.7, 0.9, 1.1, 1.3}) {
        SCOPED_TRACE(factor);
        const Section beside = byPressure(chamber, factor * p);
        EXPECT_LT(beside.getRho() * beside.getW(), flux * (1.0 + 1e-9));
    }
}

/// The speed of sound jumps in the nozzle, and with it the step of the search by area.
TEST_F(Persistence, FindsTheThroatOfALayerInAFiniteAreaToo)
{
    gasWithTwoJumps().use();
    Chamber chamber(*JumpingGas::mixture(circlingT));
    chamber.setPersistent(true);
    chamber.setP(chamberPressure);
    chamber.setFcr(3.0);
    chamber.setBLC(0.1, *JumpingGas::mixture(circlingT), false);
    chamber.solve(true, false, false);
    EXPECT_GT(chamber.getWc(), 0.0);
    EXPECT_LT(chamber.getWc(), velocityAt(chamber, Chamber::THROAT));
    ASSERT_NE(chamber.getBlcDerivatives(Chamber::THROAT), nullptr);
    EXPECT_GT(layerVelocityAt(chamber, Chamber::THROAT), 0.0);
}

// The method takes p/(2350 m/s) for the largest mass flux. A solid propellant has a lower
// characteristic velocity, and so more flux.
TEST_F(Persistence, SolvesAChamberOfAMassFluxAboveTheFirstGuess)
{
    const double p = 5e6;
    const double flux = 1.2 * p / 2350.0;
    Chamber chamber(*aluminisedSolid(0.0));
    chamber.setP(p);
    chamber.setMr(flux);
    EXPECT_THROW(chamber.solve(true, false, false), math::equation::Exception);

    LogCapture log;
    chamber.setPersistent(true);
    chamber.setP(p);
    chamber.setMr(flux);
    chamber.solve(true, false, false);
    EXPECT_TRUE(holds(log.infos(), "Chamber end: the search by momentum has not settled"));
    EXPECT_EQ(chamber.getMr(), flux);
    EXPECT_GT(chamber.getFcr(), 1.0);
    const reaction::Derivatives& end = *chamber.getDerivatives(Chamber::CHAMBER_END);
    const double Wc = chamber.getWc();
    EXPECT_NEAR(end.getRho() * Wc / flux, 1.0, 0.04); // the momentum of the method, at low c
    const double momentum =
        chamber.getReaction(Chamber::CHAMBER_END)->getP() + end.getRho() * Wc * Wc;
    EXPECT_NEAR(momentum / p, 1.0, 0.01);
    EXPECT_NEAR(throatMach(chamber), 1.0, 1e-5);
}

TEST_F(Persistence, LeavesAChamberNarrowerThanItsThroatAFailure)
{
    Chamber chamber(*loxHydrogen(6.0));
    chamber.setPersistent(true);
    chamber.setP(chamberP);
    chamber.setFcr(0.5);
    EXPECT_THROW(chamber.solve(true, false, false), math::equation::Exception);
    chamber.setP(chamberP);
    chamber.setMr(2.0 * chamberP / 2350.0); // above that of the sonic throat
    KETRA_EXPECT_THROW_CODE(chamber.solve(true, false, false), thermo::Exception, 14);
}

/// A subsonic section by the straight lines of a table misses its area, by the more the fewer
/// points the table has.
TEST_F(Persistence, MeetsASubsonicAreaRatioThatTheTableMisses)
{
    const auto missOf = [](bool persistent) {
        Chamber chamber(*loxHydrogen(6.0));
        chamber.setPersistent(persistent);
        chamber.setP(chamberP);
        chamber.setFcr(3.0);
        chamber.solve(true, false, false);
        const Section section(&chamber, 1.7, Section::AREA_RATIO, false, false, false, 9);
        EXPECT_LT(section.getMach(), 1.0);
        return lawsOf(chamber, section).flux;
    };
    EXPECT_GT(missOf(false), 5e-4);
    EXPECT_LT(missOf(true), 5e-4);
}

/// A gas whose data begin at 290 K, with a capacity that is much higher below 350 K: from above
/// Newton's method steps far below the data.
class FrozenPersistence : public testing::Test
{
protected:
    static constexpr double startT = 1000.0; // K
    static constexpr double lowestT = 290.0; // K, where the data begin
    static constexpr double bound = 350.0;   // K
    static constexpr double warm = 2.5;      // Cp/R above
    static constexpr double cold = 12.0;     // and below
    static constexpr double sought = 300.0;  // K

    static std::unique_ptr<FrozenChamber> chamberOf(bool persistent)
    {
        const double step = cold - warm;
        useSpecies(
            {{"Ar",
              {{"AR", 1.0}},
              39.948,
              0,
              0.0,
              {constantCp(lowestT, bound, cold, 0.0, 10.0),
               constantCp(bound, 6000.0, warm, step * bound, 10.0 + step * std::log(bound))}}});
        auto chamber = std::make_unique<FrozenChamber>(*JumpingGas::mixture(startT), 1.5,
                                                       FrozenChamber::EXPANSION_RATIO);
        chamber->setPersistent(persistent);
        chamber->setP(chamberPressure);
        chamber->solve(false, false, false);
        return chamber;
    }
    /// The pressure of the gas expanded to \p T, K, below the bound.
    static double pressureAt(double T)
    {
        return chamberPressure *
               std::exp(warm * std::log(bound / startT) + cold * std::log(T / bound));
    }
};

TEST_F(FrozenPersistence, FindsTheTemperatureThatNewtonsMethodStepsOver)
{
    const auto byMethod = chamberOf(false);
    LogCapture log;
    KETRA_EXPECT_THROW_CODE(
        FrozenSection(byMethod.get(), pressureAt(sought), FrozenSection::PRESSURE, false),
        thermo::Exception, 13);
    EXPECT_TRUE(holds(log.errors(), "too low for species Ar"));

    log.clear();
    const auto chamber = chamberOf(true);
    const FrozenSection section(chamber.get(), pressureAt(sought), FrozenSection::PRESSURE, false);
    EXPECT_NEAR(section.getT(), sought, 1e-3);
    EXPECT_TRUE(log.errors().empty());
    EXPECT_TRUE(holds(log.infos(), "Frozen nozzle section: the search for the temperature"));
}

TEST_F(FrozenPersistence, FindsAnAreaRatioBehindSuchATemperature)
{
    const auto chamber = chamberOf(true);
    const FrozenSection there(chamber.get(), pressureAt(sought), FrozenSection::PRESSURE, false);
    const FrozenSection section(chamber.get(), there.getFr(), FrozenSection::AREA_RATIO, false);
    EXPECT_NEAR(section.getP() / there.getP(), 1.0, 2e-3);
    EXPECT_NEAR(section.getT(), sought, 0.5);
    EXPECT_LT(lawsOf(*chamber, section).flux, 5e-4);
}

TEST_F(FrozenPersistence, TellsOfAnEntropyBelowTheData)
{
    const auto chamber = chamberOf(true);
    LogCapture log;
    KETRA_EXPECT_THROW_CODE(
        FrozenSection(chamber.get(), pressureAt(270.0), FrozenSection::PRESSURE, false),
        thermo::Exception, 13);
    EXPECT_TRUE(holds(log.errors(), "lies below that of the products at 290.00 K, where their data "
                                    "begin"));
}

// What the method finds a persistent section finds by the same steps.
TEST_F(FrozenPersistence, KeepsTheDigitsOfTheMethod)
{
    useShippedSpecies();
    const auto digitsOf = [](bool persistent) {
        FrozenChamber chamber(*loxHydrogen(6.0), 2.0, FrozenChamber::EXPANSION_RATIO);
        chamber.setPersistent(persistent);
        chamber.setP(chamberP);
        chamber.solve(false, false, false);
        std::vector<double> digits;
        for (const double Fr : {3.0, 20.0, 60.0}) {
            const FrozenSection section(&chamber, Fr, FrozenSection::AREA_RATIO, false);
            digits.insert(digits.end(), {section.getT(), section.getP(), section.getIs_v(0.0)});
        }
        return digits;
    };
    EXPECT_EQ(digitsOf(true), digitsOf(false));
}

// The data of the electron begin at 298.15 K: a frozen flow keeps it below, but has no heat
// capacity of it for the transport properties.
TEST_F(Persistence, TakesTransportPropertiesFromTheEndOfTheData)
{
    auto document =
        bipropellantDocument({"O2(L)", 1.0, 90.17}, {"C2H5OH(L)", 1.0}, 0.212, Ratio::ALPHA, 2.1);
    document->getGeneralOptions().setIons(true);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(45.85, true);
    freeze(*document).setExpansionRatio(1.1233);
    TheoreticalPerformance engine(document.get(), false);
    KETRA_EXPECT_THROW_CODE(engine.solve(false), thermo::Exception, 11);

    engine.setPersistent(true);
    LogCapture log;
    engine.solve(false);
    EXPECT_TRUE(holds(log.infos(), "Taking those at 298.15 K"));
    const Section& exit = *engine.getExitSection();
    EXPECT_LT(exit.getT(), 298.15);
    EXPECT_GT(exit.getT(), 248.15);
    EXPECT_GT(exit.getV(), 5e-6);
    EXPECT_LT(exit.getV(), 3e-5);
    EXPECT_GT(exit.getCfr(), 0.0);
}

// The same holds of a shifting flow that the method solves.
TEST_F(Persistence, AloneKeepsTheDigitsOfTheMethod)
{
    const auto digitsOf = [](bool persistent) {
        const auto document = engineWithExit(40.0);
        document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
        TheoreticalPerformance engine(document.get(), false);
        engine.setPersistent(persistent);
        engine.solve(true);
        const Section& exit = *engine.getExitSection();
        return std::vector<double>{exit.getT(),
                                   exit.getP(),
                                   exit.getIs_v(0.0),
                                   exit.getV(),
                                   engine.getChamber()->getCstar_core(),
                                   engine.getChamber()->getMr()};
    };
    EXPECT_EQ(digitsOf(true), digitsOf(false));
}

// A mass flux to a tolerance below the digits of the equilibria: the relaxation does not settle.
TEST_F(Persistence, ThrottlesWhereTheMassFluxDoesNotSettle)
{
    const auto document = engineWithExit(30.0);
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
    TheoreticalPerformance design(document.get(), false);
    design.solve(false);
    const auto start = [&](bool persistent) {
        auto throttled = std::make_unique<ThrottlingPerformance>(&design, 1.0, false);
        throttled->setRelativeTolerance(1e-6);
        throttled->setPersistent(persistent);
        return throttled;
    };
    KETRA_EXPECT_THROW_CODE(start(false)->throttle(0.5, false), thermo::Exception, 0);

    const auto throttled = start(true);
    LogCapture log;
    throttled->throttle(0.5, false);
    EXPECT_TRUE(holds(log.infos(), "Throttling: the mass flux has not settled"));
    EXPECT_NEAR(throttled->getChamber()->getMr() / design.getChamber()->getMr(), 0.5, 1e-10);
    EXPECT_TRUE(throttled->isValid());
}

// A point without a solution counts as one without impulse, and is warned of.
TEST_F(Persistence, LeavesNoPointOfAnOptimumSearchUnsolved)
{
    const auto warningsOf = [](bool persistent) {
        const auto document = storable(1.0, 29.0);
        TheoreticalPerformance engine(document.get(), false);
        engine.setPersistent(persistent);
        engine.setWarmStart(persistent);
        LogCapture log;
        try {
            engine.optimizeForSpecificImpulse(0.6, 1.4, 0.001);
        } catch (const thermo::Exception&) {
            EXPECT_FALSE(persistent);
        }
        if (persistent) {
            EXPECT_EQ(engine.getExitSection()->getReaction()->certificate().grade,
                      verification::Grade::A);
        }
        return holds(log.warnings(), "Could not solve the engine at");
    };
    EXPECT_TRUE(warningsOf(false));
    EXPECT_FALSE(warningsOf(true));
}

} // namespace
