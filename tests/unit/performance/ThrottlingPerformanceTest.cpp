#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ketra_test::engineDocument;
using ketra_test::engineWithExit;
using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;
using performance::equilibrium::Chamber;
using thermo::input::ConfigFile;
using thermo::input::MassFlux;
using thermo::input::Pressure;

std::string invalidRatio(const char* ratio)
{
    return std::string("Could not find the throttling characteristics: invalid throttling ratio ") +
           ratio + "\r\n";
}

std::string notInDesign(const char* what)
{
    return std::string("Could not find the throttling characteristics: the design case has no ") +
           what + ". Solve it first.\r\n";
}

class Throttling : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    // A design, solved.
    static std::unique_ptr<TheoreticalPerformance> designOf(std::unique_ptr<ConfigFile> document)
    {
        auto design = std::make_unique<TheoreticalPerformance>(document.release(), true);
        design->solve(false);
        return design;
    }

    static std::unique_ptr<ConfigFile> finiteArea(double Fcr, double Fr)
    {
        auto document = engineWithExit(Fr);
        document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(Fcr);
        return document;
    }

    static double injectionPressure(TheoreticalPerformance& performance)
    {
        return performance.getChamber()->getReaction(Chamber::INJECTION_PLANE)->getP();
    }
};

TEST_F(Throttling, ByARatioOfOneIsTheDesignItself)
{
    auto document = finiteArea(3.0, 30.0);
    ketra_test::setAmbientPressure(*document, 1e6);
    const auto design = designOf(std::move(document));
    ThrottlingPerformance throttled(design.get(), 1.0, false);
    EXPECT_TRUE(throttled.isValid());
    EXPECT_EQ(throttled.getChamber(), design->getChamber());
    EXPECT_EQ(throttled.getExitSection(), design->getExitSection());
    EXPECT_EQ(throttled.getNozzleExitSection(), design->getExitSection());
    EXPECT_EQ(throttled.getOverExpansionSection(), design->getOverExpansionSection());
    EXPECT_NE(throttled.getOverExpansionSection(), nullptr);
    EXPECT_EQ(throttled.getPaCrit(), design->getPaCrit());
    EXPECT_GT(throttled.getPaCrit(), 0.0);
    EXPECT_EQ(throttled.getEquilibrium(), nullptr);

    auto alone = engineDocument();
    alone->getNozzleFlowOptions().setCalculateNozzleFlow(false);
    const auto equilibrium = designOf(std::move(alone));
    ThrottlingPerformance same(equilibrium.get(), 1.0, false);
    EXPECT_EQ(same.getEquilibrium(), equilibrium->getEquilibrium());
    EXPECT_EQ(same.getDerivatives(), equilibrium->getDerivatives());
    EXPECT_NE(same.getDerivatives(), nullptr);
    EXPECT_EQ(same.getChamber(), nullptr);
}

TEST_F(Throttling, HasADocumentOfItsOwn)
{
    const auto design = designOf(engineWithExit(30.0));
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    EXPECT_NE(throttled.getData(), design->getData());
    EXPECT_EQ(throttled.getData()->getCombustionChamberConditions().getPressure(true), 3.5e6);
    EXPECT_EQ(design->getData()->getCombustionChamberConditions().getPressure(true), 7e6);
    // The unit of the document stays.
    EXPECT_EQ(throttled.getData()->getCombustionChamberConditions().getPressureUnit(false),
              Pressure::MPA);
}

TEST_F(Throttling, OfAnInfiniteAreaScalesThePressure)
{
    const auto design = designOf(engineWithExit(30.0));
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    EXPECT_TRUE(throttled.isValid());
    EXPECT_EQ(injectionPressure(throttled), 3.5e6);
    EXPECT_NE(throttled.getChamber(), design->getChamber());
    EXPECT_EQ(throttled.getExitSection()->getFr(), 30.0);

    TheoreticalPerformance plain(throttled.getData(), false);
    plain.solve(false);
    EXPECT_EQ(plain.getExitSection()->getIs_v(0.0), throttled.getExitSection()->getIs_v(0.0));
    EXPECT_EQ(plain.getPaCrit(), throttled.getPaCrit());
    // Less pressure, more dissociation, less impulse.
    EXPECT_LT(throttled.getExitSection()->getIs_v(0.0), design->getExitSection()->getIs_v(0.0));
}

TEST_F(Throttling, OfAnEquilibriumAloneScalesThePressure)
{
    auto document = engineDocument();
    document->getNozzleFlowOptions().setCalculateNozzleFlow(false);
    const auto design = designOf(std::move(document));
    ThrottlingPerformance throttled(design.get(), 2.0, false);
    ASSERT_NE(throttled.getEquilibrium(), nullptr);
    EXPECT_NE(throttled.getEquilibrium(), design->getEquilibrium());
    EXPECT_NE(throttled.getDerivatives(), design->getDerivatives());
    EXPECT_EQ(throttled.getEquilibrium()->getP(), 1.4e7);
    EXPECT_EQ(throttled.getChamber(), nullptr);
}

TEST_F(Throttling, OfAFiniteAreaMeetsTheMassFlux)
{
    const auto design = designOf(finiteArea(3.0, 30.0));
    const double flux = design->getChamber()->getMr();
    for (const double ratio : {2.0, 1.5, 0.9, 0.5, 0.1, 0.01}) {
        SCOPED_TRACE(ratio);
        ThrottlingPerformance throttled(design.get(), ratio, false);
        EXPECT_TRUE(throttled.isValid());
        EXPECT_LT(std::abs(1.0 - throttled.getChamber()->getMr() / (ratio * flux)), 1e-8);
        EXPECT_EQ(throttled.getChamber()->getFcr(), 3.0);
        EXPECT_EQ(throttled.getExitSection()->getFr(), 30.0);
        // The characteristic velocity changes little, so that the pressure nearly has the ratio.
        EXPECT_NEAR(injectionPressure(throttled) / 7e6, ratio, 0.06 * ratio);
    }
}

TEST_F(Throttling, OfADesignByMassFluxHoldsItsContraction)
{
    auto document = engineWithExit(30.0);
    document->getNozzleFlowOptions().setNozzleInletConditions().setMassFlux(
        1000.0, MassFlux::KG_PER_M2_S, true);
    const auto design = designOf(std::move(document));
    const double Fcr = design->getChamber()->getFcr();
    ASSERT_GT(Fcr, 1.0);
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    const auto& inlet = throttled.getData()->getNozzleFlowOptions().getNozzleInletConditions();
    EXPECT_FALSE(inlet.isMassFluxSet());
    EXPECT_EQ(inlet.getContractionAreaRatio(), Fcr);
    EXPECT_EQ(throttled.getChamber()->getFcr(), Fcr);
    EXPECT_LT(std::abs(1.0 - throttled.getChamber()->getMr() / 500.0), 1e-8);
    EXPECT_TRUE(
        design->getData()->getNozzleFlowOptions().getNozzleInletConditions().isMassFluxSet());
}

TEST_F(Throttling, HoldsTheExitHoweverItWasGiven)
{
    auto byPressure = finiteArea(3.0, 30.0);
    auto& exit = byPressure->getNozzleFlowOptions().getNozzleExitConditions();
    exit.deleteAreaRatio();
    exit.setPressure(20000.0, Pressure::PA, true);
    const auto design = designOf(std::move(byPressure));
    const double Fr = design->getExitSection()->getFr();
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    EXPECT_EQ(throttled.getExitSection()->getFr(), Fr);
    EXPECT_LT(throttled.getExitSection()->getP(), 12000.0);
}

// Without an inlet the exit of the document is solved as it stands: at half the pressure another
// section has its pressure.
TEST_F(Throttling, OfAnInfiniteAreaFollowsTheDocumentsExit)
{
    auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleExitConditions().setPressure(20000.0, Pressure::PA,
                                                                           true);
    const auto design = designOf(std::move(document));
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    EXPECT_EQ(throttled.getExitSection()->getP(), 20000.0);
    EXPECT_LT(throttled.getExitSection()->getFr(), design->getExitSection()->getFr());
}

TEST_F(Throttling, EndsAtTheChamberWithoutAnExit)
{
    auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
    const auto design = designOf(std::move(document));
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    EXPECT_NE(throttled.getChamber(), nullptr);
    EXPECT_EQ(throttled.getExitSection(), nullptr);
    EXPECT_EQ(throttled.getPaCrit(), 0.0);
}

TEST_F(Throttling, FindsWhereTheThrottledFlowSeparates)
{
    auto document = finiteArea(3.0, 30.0);
    ketra_test::setAmbientPressure(*document, 101325.0);
    const auto design = designOf(std::move(document));
    ASSERT_EQ(design->getOverExpansionSection(), nullptr);
    ThrottlingPerformance throttled(design.get(), 0.2, false);
    ASSERT_NE(throttled.getOverExpansionSection(), nullptr);
    EXPECT_LT(throttled.getOverExpansionSection()->getFr(), 30.0);
    EXPECT_LT(throttled.getPaCrit(), 101325.0);

    auto unasked = finiteArea(3.0, 30.0);
    ketra_test::setAmbientPressure(*unasked, 101325.0);
    unasked->getGeneralOptions().setFlowSeparation(false);
    const auto attached = designOf(std::move(unasked));
    EXPECT_EQ(ThrottlingPerformance(attached.get(), 0.2, false).getOverExpansionSection(), nullptr);
}

TEST_F(Throttling, KeepsTheKindOfTheFlow)
{
    auto document = finiteArea(3.0, 30.0);
    ketra_test::freeze(*document).setExpansionRatio(2.0);
    const auto design = designOf(std::move(document));
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    using performance::frozen::NozzleSectionConditions;
    EXPECT_NE(dynamic_cast<performance::frozen::Chamber*>(throttled.getChamber()), nullptr);
    EXPECT_NE(dynamic_cast<NozzleSectionConditions*>(throttled.getExitSection()), nullptr);
}

TEST_F(Throttling, HasTheSettingsOfTheDesign)
{
    const auto document = finiteArea(3.0, 30.0);
    TheoreticalPerformance design(document.get(), false);
    design.setRelativeTolerance(10.0);
    design.setH(design.getPropellant()->H() - 10000.0);
    design.solve(false);
    ThrottlingPerformance throttled(&design, 0.5, false);
    EXPECT_EQ(throttled.getRelativeTolerance(), 10.0);
    // Ten times the tolerance, ten times the error that the mass flux may have.
    EXPECT_LT(
        std::abs(1.0 - throttled.getChamber()->getMr() / (0.5 * design.getChamber()->getMr())),
        1e-7);
    const reaction::Equilibrium& problem = *throttled.getChamber()->getReaction();
    EXPECT_NEAR(problem.getH() * problem.getResultingMixtureQuantaty(),
                design.getPropellant()->H() - 10000.0, 1.0);
}

TEST_F(Throttling, AcceptsRatiosFromAMillionthToTwo)
{
    const auto design = designOf(engineDocument());
    EXPECT_EQ(injectionPressure(*std::make_unique<ThrottlingPerformance>(design.get(), 2.0, false)),
              1.4e7);
    EXPECT_DOUBLE_EQ(
        injectionPressure(*std::make_unique<ThrottlingPerformance>(design.get(), 1e-6, false)),
        7.0);

    struct Case {
        double ratio;
        const char* shown;
    };
    for (const Case& refused :
         {Case{2.0001, "2.000"}, Case{9.99e-7, "0.000"}, Case{0.0, "0.000"}, Case{-0.5, "-0.500"},
          Case{1000.0, "1000.000"}, Case{std::numeric_limits<double>::quiet_NaN(), "  nan"}}) {
        SCOPED_TRACE(refused.ratio);
        ThrottlingPerformance throttled(design.get(), 0.5, false);
        ketra_test::LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(throttled.throttle(refused.ratio, false), thermo::Exception, 0,
                                   "Invalid state");
        EXPECT_EQ(capture.errors(), std::vector<std::string>{invalidRatio(refused.shown)});
        EXPECT_EQ(capture.tagOf(invalidRatio(refused.shown)), "THERMO");
        EXPECT_TRUE(throttled.isInvalid());
        EXPECT_EQ(throttled.getChamber(), nullptr);
        // The document stands where it stood.
        EXPECT_EQ(throttled.getData()->getCombustionChamberConditions().getPressure(true), 3.5e6);
        KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(design.get(), refused.ratio, false),
                                thermo::Exception, 0);
    }
}

TEST_F(Throttling, AgainScalesThePressureThatTheLastOneLeft)
{
    const auto design = designOf(engineDocument());
    ThrottlingPerformance throttled(design.get(), 0.5, false);
    throttled.throttle(0.5, false);
    EXPECT_EQ(injectionPressure(throttled), 1.75e6);
    throttled.throttle(1.0, false); // reads the design
    EXPECT_EQ(throttled.getChamber(), design->getChamber());
    throttled.throttle(2.0, false);
    EXPECT_EQ(injectionPressure(throttled), 3.5e6);
}

// The mass flux is that of the design all the same: the pressure is only where its search starts.
TEST_F(Throttling, AgainMeetsTheMassFluxOfTheDesign)
{
    const auto design = designOf(finiteArea(3.0, 30.0));
    ThrottlingPerformance once(design.get(), 0.6, false);
    ThrottlingPerformance twice(design.get(), 0.8, false);
    twice.throttle(0.6, false);
    EXPECT_LT(std::abs(1.0 - twice.getChamber()->getMr() / once.getChamber()->getMr()), 2e-8);
    EXPECT_NEAR(injectionPressure(twice), injectionPressure(once), 1e-7 * injectionPressure(once));
}

TEST_F(Throttling, NeedsASolvedDesign)
{
    const auto document = finiteArea(3.0, 30.0);
    TheoreticalPerformance design(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(nullptr, 0.5, false), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(&design, 0.5, false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(),
              (std::vector<std::string>{notInDesign("document"), notInDesign("solved chamber")}));

    ThrottlingPerformance throttled(&design, 1.0, false);
    EXPECT_EQ(throttled.getChamber(), nullptr);
    KETRA_EXPECT_THROW_CODE(throttled.throttle(0.5, false), thermo::Exception, 0);
    EXPECT_TRUE(throttled.isInvalid());

    // A document that has got its exit after the design was solved.
    document->getNozzleFlowOptions().deleteNozzleExitConditions();
    design.solve(false);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(30.0, true);
    capture.clear();
    KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(&design, 0.5, false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{notInDesign("solved nozzle exit")});

    TheoreticalPerformance emptied(new ConfigFile(*document), true);
    emptied.clear(true);
    capture.clear();
    KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(&emptied, 0.5, false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{notInDesign("document")});
}

// A mass flux to 1e-14 of its value is more than the digits of the equilibria give.
TEST_F(Throttling, EndsAfter20ChambersThatMissTheMassFlux)
{
    const auto design = designOf(finiteArea(3.0, 30.0));
    ThrottlingPerformance throttled(design.get(), 1.0, false);
    throttled.setRelativeTolerance(1e-6);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(throttled.throttle(0.5, false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{"Could not find the throttling characteristics within 20 "
                                       "iterations!\r\n"});
    EXPECT_TRUE(throttled.isInvalid());
}

class FailedThrottling : public testing::Test
{
protected:
    void SetUp() override
    {
        ketra_test::useDissociatingHydrogen();
        auto document = ketra_test::mixtureDocument({{"H2", 1.0, 2000.0}}, 1.0);
        document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
        design = std::make_unique<TheoreticalPerformance>(document.release(), true);
        design->solve(false);
    }
    void TearDown() override { ketra_test::script().clear(); }

    std::unique_ptr<TheoreticalPerformance> design;
};

TEST_F(FailedThrottling, KeepsTheCodeAndCanBeRepeated)
{
    ThrottlingPerformance throttled(design.get(), 1.0, false);
    ketra_test::script().failNextSolve(5);
    KETRA_EXPECT_THROW_MESSAGE(throttled.throttle(0.5, false), thermo::Exception, 14,
                               "Could not solve problem");
    EXPECT_TRUE(throttled.isInvalid());
    EXPECT_EQ(throttled.getChamber(), nullptr);
    throttled.throttle(0.5, false);
    EXPECT_TRUE(throttled.isValid());
}

TEST_F(FailedThrottling, OfAConstructionLeavesNothing)
{
    ketra_test::script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(ThrottlingPerformance(design.get(), 0.5, false), thermo::Exception, 14);
    EXPECT_NE(design->getChamber(), nullptr);
}

TEST_F(FailedThrottling, PassesExceptionsOfOtherFamiliesOn)
{
    ThrottlingPerformance throttled(design.get(), 1.0, false);
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    ketra_test::script().failNextSolve(other);
    ketra_test::script().failNextSolve(other);
    EXPECT_THROW(throttled.throttle(0.5, false), std::runtime_error);
}

// The chamber of a finite area is solved without the nozzle; a failure in between leaves it so.
TEST_F(FailedThrottling, OfAFiniteAreaLeavesTheNozzleOut)
{
    auto document = std::make_unique<ConfigFile>(*design->getData());
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(5.0, true);
    TheoreticalPerformance finite(document.get(), false);
    finite.solve(false);
    ThrottlingPerformance throttled(&finite, 1.0, false);
    ketra_test::script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(throttled.throttle(0.5, false), thermo::Exception, 14);
    throttled.throttle(0.4, false);
    EXPECT_NE(throttled.getExitSection(), nullptr); // a further throttling solves it again
    ketra_test::script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(throttled.throttle(0.5, false), thermo::Exception, 14);
    throttled.solve(false);
    EXPECT_NE(throttled.getChamber(), nullptr);
    EXPECT_EQ(throttled.getExitSection(), nullptr);
}

} // namespace
