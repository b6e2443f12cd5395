// The nozzle of a document: exit, separation of an over-expanded flow, sections for a host.

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using ketra_test::engineDocument;
using ketra_test::engineWithExit;
using ketra_test::freeze;
using ketra_test::setAmbientPressure;
using performance::TheoreticalPerformance;
using performance::equilibrium::Chamber;
using thermo::input::ConfigFile;
using thermo::input::Pressure;
using thermo::input::Ratio;
using Section = performance::equilibrium::NozzleSectionConditions;
using FrozenSection = performance::frozen::NozzleSectionConditions;

constexpr double chamberPressure = 7e6; // Pa, of all engines here

bool isFrozen(const Section* section)
{
    return dynamic_cast<const FrozenSection*>(section) != nullptr;
}

// Pressure at the point of separation over the ambient pressure.
double separationRatio(double mach) { return std::pow(1.88 * mach - 1.0, -0.64) / 1.6; }

std::string pressureBeyond(double p, double pEnd)
{
    char text[200];
    std::snprintf(text, sizeof text,
                  "Could not find nozzle section shifting equilibrium conditions: specified "
                  "pressure %.3f exceeds nozzle inlet pressure %.3f.\r\n",
                  p, pEnd);
    return text;
}

std::string noShifting(const std::string& condition)
{
    return "Could not solve shifting equilibrium for nozzle section " + condition +
           ".\r\nPlease set up the reasonable frozen equilibrium model.\r\n";
}

std::string noFrozen(const std::string& condition)
{
    return "Could not solve frozen equilibrium for nozzle section " + condition +
           ".\r\nPlease correct the frozen equilibrium model, moving freezing section upstream of "
           "the nozzle.\r\n";
}

class NozzleOfADocument : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static std::unique_ptr<TheoreticalPerformance> solved(ConfigFile& document)
    {
        auto performance = std::make_unique<TheoreticalPerformance>(&document, false);
        performance->solve(false);
        return performance;
    }

    static thermo::input::NozzleSectionConditions& exitOf(ConfigFile& document)
    {
        return document.getNozzleFlowOptions().getNozzleExitConditions();
    }
};

TEST_F(NozzleOfADocument, EndsAtAnAreaRatioAPressureOrAPressureRatio)
{
    const auto document = engineWithExit(30.0);
    const auto byArea = solved(*document);
    ASSERT_NE(byArea->getExitSection(), nullptr);
    EXPECT_EQ(byArea->getExitSection()->getFr(), 30.0);
    EXPECT_EQ(byArea->getNozzleExitSection(), byArea->getExitSection());

    exitOf(*document).deleteAreaRatio();
    exitOf(*document).setPressure(20.0, Pressure::PSI, true);
    EXPECT_DOUBLE_EQ(solved(*document)->getExitSection()->getP(), 20.0 * 6894.75729316836);

    exitOf(*document).deletePressure();
    exitOf(*document).setPressureRatio(350.0);
    EXPECT_DOUBLE_EQ(solved(*document)->getExitSection()->getP(), chamberPressure / 350.0);
    EXPECT_DOUBLE_EQ(solved(*document)->getExitSection()->getPi(), 350.0);
}

TEST_F(NozzleOfADocument, MustHaveAnExitConditionWithAValue)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleExitConditions();
    for (const double negative : {0.0, -3.0}) {
        if (negative < 0.0) exitOf(*document).setPressureRatio(negative);
        TheoreticalPerformance performance(document.get(), false);
        ketra_test::LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 0, "Invalid state");
        EXPECT_EQ(capture.errors(), std::vector<std::string>{"Unknown nozzle exit condition."});
        EXPECT_EQ(capture.tagOf("Unknown nozzle exit condition."), "THERMO");
        EXPECT_NE(performance.getChamber(), nullptr);
        EXPECT_EQ(performance.getExitSection(), nullptr);
        EXPECT_TRUE(performance.isValid());
    }
}

TEST_F(NozzleOfADocument, SaysWhyAnExitPressureAboveTheChambersHasNoSection)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleExitConditions().setPressure(8e6, Pressure::PA, true);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 11,
                               "Could not find nozzle section equilibrium");
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{pressureBeyond(8e6, chamberPressure),
                                                          noShifting("pe=8000000.00")}));
    EXPECT_NE(performance.getChamber(), nullptr);
    EXPECT_EQ(performance.getExitSection(), nullptr);
    EXPECT_EQ(performance.getPaCrit(), 0.0);
    EXPECT_TRUE(performance.isValid());
}

TEST_F(NozzleOfADocument, NamesTheConditionThatHasNoSection)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleExitConditions().setPressureRatio(0.5);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 11);
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{pressureBeyond(1.4e7, chamberPressure),
                                                          noShifting("pc/pe=0.50")}));

    capture.clear();
    // The inlet of a chamber of infinite area has no area ratio.
    KETRA_EXPECT_THROW_CODE(performance.solveNozzleSection(2.0, Section::AREA_RATIO, false, false,
                                                           0.0, false, /*supersonic=*/false),
                            thermo::Exception, 11);
    ASSERT_EQ(capture.errors().size(), 2U);
    EXPECT_EQ(capture.errors()[1], noShifting("Ae/At=2.00"));
    EXPECT_EQ(capture.tagOf(noShifting("Ae/At=2.00")), "THERMO");
}

TEST_F(NozzleOfADocument, FreezesDownstreamOfTheFreezingSectionOnly)
{
    const auto document = engineWithExit(30.0);
    freeze(*document).setExpansionRatio(3.0);
    const auto frozen = solved(*document);
    ASSERT_TRUE(isFrozen(frozen->getExitSection()));
    EXPECT_EQ(frozen->getExitSection()->getFr(), 30.0);
    const auto shifting = solved(*engineWithExit(30.0));
    EXPECT_LT(frozen->getExitSection()->getIs_v(0.0), shifting->getExitSection()->getIs_v(0.0));

    freeze(*document).setExpansionRatio(40.0);
    const auto upstream = solved(*document);
    EXPECT_FALSE(isFrozen(upstream->getExitSection()));
    EXPECT_EQ(upstream->getExitSection()->getFr(), 30.0);
    EXPECT_EQ(upstream->getExitSection()->getIs_v(0.0), shifting->getExitSection()->getIs_v(0.0));
}

TEST_F(NozzleOfADocument, SaysWhyAFrozenExitHasNoSection)
{
    const auto document = engineDocument();
    freeze(*document).setExpansionRatio(2.0);
    document->getNozzleFlowOptions().setNozzleExitConditions().setPressure(8e6, Pressure::PA, true);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 11,
                               "Could not find nozzle section equilibrium");
    // First the section in equilibrium, which decides on which side of the freezing section the
    // exit lies.
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{pressureBeyond(8e6, chamberPressure),
                                                          noFrozen("pe=8000000.00")}));
    EXPECT_NE(performance.getChamber(), nullptr);
    EXPECT_EQ(performance.getExitSection(), nullptr);
    EXPECT_TRUE(performance.isValid());
}

TEST_F(NozzleOfADocument, HasTransportPropertiesAtItsExitWhateverIsAsked)
{
    const auto document = engineWithExit(30.0);
    EXPECT_NE(solved(*document)->getExitSection()->getV(), 0.0);
    freeze(*document).setExpansionRatio(3.0);
    EXPECT_NE(solved(*document)->getExitSection()->getV(), 0.0);
}

class Separation : public NozzleOfADocument
{
};

TEST_F(Separation, BeginsAtAnAmbientPressureThatTheExitDetermines)
{
    for (const double Fr : {5.0, 30.0, 100.0}) {
        const auto document = engineWithExit(Fr);
        const auto performance = solved(*document);
        const Section& exit = *performance->getExitSection();
        // p_e 1.6 (1.88 M_e - 1)^0.64
        EXPECT_NEAR(performance->getPaCrit(),
                    exit.getP() * 1.6 * std::pow(1.88 * exit.getMach() - 1.0, 0.64),
                    1e-12 * performance->getPaCrit());
        EXPECT_EQ(performance->getPaCrit(),
                  exit.getP() * 1.6 / std::pow(1.88 * exit.getMach() - 1.0, -0.64));
    }
}

TEST_F(Separation, IsLookedForOnlyAboveTheCriticalPressure)
{
    const auto document = engineWithExit(30.0);
    const double critical = solved(*document)->getPaCrit();
    setAmbientPressure(*document, 0.9999 * critical);
    EXPECT_EQ(solved(*document)->getOverExpansionSection(), nullptr);
    setAmbientPressure(*document, critical);
    EXPECT_EQ(solved(*document)->getOverExpansionSection(), nullptr);
    setAmbientPressure(*document, 1.0001 * critical);
    const auto performance = solved(*document);
    ASSERT_NE(performance->getOverExpansionSection(), nullptr);
    EXPECT_GT(performance->getOverExpansionSection()->getP(),
              performance->getExitSection()->getP());
}

TEST_F(Separation, IsLookedForOnlyWhenAskedAndAtAFixedAmbientPressure)
{
    const auto document = engineWithExit(30.0);
    setAmbientPressure(*document, 1e6);
    ASSERT_NE(solved(*document)->getOverExpansionSection(), nullptr);

    document->getGeneralOptions().setFlowSeparation(false);
    EXPECT_EQ(solved(*document)->getOverExpansionSection(), nullptr);
    document->getGeneralOptions().setFlowSeparation(true);

    auto& ambient = document->getNozzleFlowOptions().getAmbientConditions();
    ambient.deleteFixedPressure();
    ambient.setRangePressureMin(0.0, Pressure::PA, true);
    ambient.setRangePressureMax(1e6, Pressure::PA, true);
    EXPECT_EQ(solved(*document)->getOverExpansionSection(), nullptr);
    document->getNozzleFlowOptions().deleteAmbientConditions();
    EXPECT_EQ(solved(*document)->getOverExpansionSection(), nullptr);
}

// p = pa (1.88 M - 1)^-0.64 / 1.6 with the Mach number M at p itself, to 0.1 %.
TEST_F(Separation, LiesWhereThePressureIsThatOfTheCriterion)
{
    const auto document = engineWithExit(60.0);
    for (const double pa : {101325.0, 3e5, 1e6}) {
        SCOPED_TRACE(pa);
        setAmbientPressure(*document, pa);
        const auto performance = solved(*document);
        ASSERT_NE(performance->getOverExpansionSection(), nullptr);
        const Section& separated = *performance->getOverExpansionSection();
        EXPECT_NEAR(pa * separationRatio(separated.getMach()), separated.getP(),
                    0.001 * separated.getP());
        EXPECT_LT(separated.getFr(), 60.0);
        EXPECT_LT(separated.getIs(0.0), performance->getExitSection()->getIs(0.0));
        EXPECT_FALSE(isFrozen(&separated));
    }
}

TEST_F(Separation, CanLieInTheFrozenFlow)
{
    const auto document = engineWithExit(60.0);
    setAmbientPressure(*document, 101325.0);
    freeze(*document).setExpansionRatio(2.0);
    const auto performance = solved(*document);
    ASSERT_TRUE(isFrozen(performance->getOverExpansionSection()));
    const Section& separated = *performance->getOverExpansionSection();
    EXPECT_NEAR(101325.0 * separationRatio(separated.getMach()), separated.getP(),
                0.001 * separated.getP());

    freeze(*document).setExpansionRatio(50.0);
    setAmbientPressure(*document, 1e6);
    const auto upstream = solved(*document);
    EXPECT_TRUE(isFrozen(upstream->getExitSection()));
    ASSERT_NE(upstream->getOverExpansionSection(), nullptr);
    EXPECT_FALSE(isFrozen(upstream->getOverExpansionSection()));
}

// The ambient pressure is so high that the criterion asks for more than the chamber's pressure.
TEST_F(Separation, ThatIsNotFoundLeavesTheExitAlone)
{
    const auto document = engineWithExit(5.0);
    const auto plain = solved(*document);
    const double pa = 5e7; // Pa
    setAmbientPressure(*document, pa);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    EXPECT_EQ(performance.getOverExpansionSection(), nullptr);
    ASSERT_NE(performance.getExitSection(), nullptr);
    EXPECT_EQ(performance.getExitSection()->getIs_v(0.0), plain->getExitSection()->getIs_v(0.0));
    const double p = pa * std::pow(1.88 * plain->getExitSection()->getMach() - 1.0, -0.64) / 1.6;
    char condition[40];
    std::snprintf(condition, sizeof condition, "pe=%.2f", p);
    EXPECT_EQ(capture.errors(),
              (std::vector<std::string>{pressureBeyond(p, chamberPressure), noShifting(condition),
                                        "Could not find nozzle overexpansion condition.\r\n"}));
}

class SectionsForAHost : public NozzleOfADocument
{
protected:
    static std::unique_ptr<Section> section(TheoreticalPerformance& performance, double value,
                                            Section::CONDITION_TYPE type, bool frozen = false,
                                            bool supersonic = true)
    {
        return std::unique_ptr<Section>(performance.solveNozzleSection(
            value, type, frozen, false, 0.0, /*calculateTransport=*/false, supersonic));
    }
};

TEST_F(SectionsForAHost, NeedASolvedChamber)
{
    const auto document = engineWithExit(30.0);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(section(performance, 30.0, Section::AREA_RATIO), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(
        performance.solveNozzleExit(document->getNozzleFlowOptions(), true, true),
        thermo::Exception, 0);
    const std::string noChamber = "Could not solve nozzle section: there is no solved chamber.\r\n";
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{noChamber, noChamber}));
}

TEST_F(SectionsForAHost, AreTheSameAsTheExit)
{
    const auto document = engineWithExit(30.0);
    const auto performance = solved(*document);
    const auto exit = section(*performance, 30.0, Section::AREA_RATIO);
    EXPECT_EQ(exit->getIs_v(0.0), performance->getExitSection()->getIs_v(0.0));
    EXPECT_NE(exit.get(), performance->getExitSection());
}

TEST_F(SectionsForAHost, LieUpstreamOfTheThroatToo)
{
    const auto document = engineWithExit(30.0);
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(4.0);
    const auto performance = solved(*document);
    const auto subsonic =
        section(*performance, 2.0, Section::AREA_RATIO, false, /*supersonic=*/false);
    EXPECT_LT(subsonic->getMach(), 1.0);
    EXPECT_EQ(subsonic->getIs_v(0.0), 0.0);
    const auto supersonic = section(*performance, 2.0, Section::AREA_RATIO);
    EXPECT_GT(supersonic->getMach(), 1.0);
}

TEST_F(SectionsForAHost, OfAFreezingFlowAreInEquilibriumUpstreamOfTheThroat)
{
    const auto document = engineWithExit(30.0);
    freeze(*document).setExpansionRatio(2.0);
    const auto performance = solved(*document);
    const auto subsonic = section(*performance, 6.5e6, Section::PRESSURE, true, false);
    EXPECT_FALSE(isFrozen(subsonic.get()));
    EXPECT_TRUE(isFrozen(section(*performance, 20.0, Section::AREA_RATIO, true).get()));
    EXPECT_FALSE(isFrozen(section(*performance, 1.5, Section::AREA_RATIO, true).get()));
    EXPECT_FALSE(isFrozen(section(*performance, 20.0, Section::AREA_RATIO, false).get()));

    ketra_test::LogCapture capture;
    EXPECT_EQ(section(*performance, 8e6, Section::PRESSURE, true, false), nullptr);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{pressureBeyond(8e6, chamberPressure)});
}

TEST_F(SectionsForAHost, AreNotFrozenInAChamberThatIsNot)
{
    const auto document = engineWithExit(30.0);
    const auto performance = solved(*document);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(section(*performance, 30.0, Section::AREA_RATIO, true),
                            thermo::Exception, 0);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{"Could not solve nozzle section: there is no freezing "
                                       "section in the chamber.\r\n"});
}

TEST_F(SectionsForAHost, OfASeparatingFlowNeedTheExit)
{
    const auto document = engineDocument();
    const auto performance = solved(*document);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance->solveNozzleSection(30.0, Section::AREA_RATIO, false,
                                                            /*overExpansion=*/true, 1e6, false,
                                                            true),
                            thermo::Exception, 0);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{"Could not solve nozzle section: there is no nozzle exit "
                                       "from which the flow could separate.\r\n"});
}

TEST_F(SectionsForAHost, OfASeparatingFlowAreThatOfTheSolveOrTheExitItself)
{
    const auto document = engineWithExit(60.0);
    setAmbientPressure(*document, 1e6);
    const auto performance = solved(*document);
    ASSERT_NE(performance->getOverExpansionSection(), nullptr);
    const auto at = [&](double pa) {
        return std::unique_ptr<Section>(performance->solveNozzleSection(
            60.0, Section::AREA_RATIO, false, /*overExpansion=*/true, pa, false, true));
    };
    EXPECT_EQ(at(1e6)->getP(), performance->getOverExpansionSection()->getP());
    EXPECT_EQ(at(0.99 * performance->getPaCrit())->getFr(), 60.0);
    // At the critical pressure itself the flow separates at the exit, and nothing is in front of
    // it.
    EXPECT_NEAR(at(performance->getPaCrit())->getFr(), 60.0, 60.0 * 5e-4);
}

TEST_F(SectionsForAHost, ReplaceTheExitOnDemand)
{
    const auto document = engineWithExit(30.0);
    setAmbientPressure(*document, 1e6);
    const auto performance = solved(*document);
    thermo::input::NozzleFlowOptions other = document->getNozzleFlowOptions();
    other.getNozzleExitConditions().setAreaRatio(10.0, true);
    performance->solveNozzleExit(other, /*flowSeparation=*/false, false);
    EXPECT_EQ(performance->getExitSection()->getFr(), 10.0);
    EXPECT_EQ(performance->getOverExpansionSection(), nullptr);
    performance->solveNozzleExit(other, /*flowSeparation=*/true, false);
    EXPECT_NE(performance->getOverExpansionSection(), nullptr);

    other.getNozzleExitConditions().setPressure(8e6, Pressure::PA, true);
    other.getNozzleExitConditions().deleteAreaRatio();
    KETRA_EXPECT_THROW_CODE(performance->solveNozzleExit(other, true, false), thermo::Exception,
                            11);
    EXPECT_EQ(performance->getExitSection(), nullptr);
    EXPECT_EQ(performance->getOverExpansionSection(), nullptr);
    EXPECT_EQ(performance->getPaCrit(), 0.0);
    EXPECT_NE(performance->getChamber(), nullptr);
}

class LayerOfAHost : public NozzleOfADocument
{
protected:
    // A fuel-rich layer along the wall.
    static std::unique_ptr<thermo::Mixture> layer()
    {
        return ketra_test::bipropellant({"O2", 298.15, 1.0}, {"H2", 298.15, 1.0}, 3.0);
    }
};

TEST_F(LayerOfAHost, IsCarriedToTheSections)
{
    const auto document = engineWithExit(60.0);
    setAmbientPressure(*document, 1e6);
    const auto performance = solved(*document);
    performance->propagateChamberBLC(); // there is none yet
    EXPECT_FALSE(performance->getExitSection()->isBLC());

    const auto mixture = layer();
    performance->getChamber()->setBLC(0.1, *mixture, true);
    performance->propagateChamberBLC();
    for (const Section* section :
         {performance->getExitSection(), performance->getOverExpansionSection()}) {
        ASSERT_NE(section, nullptr);
        ASSERT_TRUE(section->isBLC());
        EXPECT_EQ(section->getBLC(), 0.1);
        EXPECT_EQ(section->getBlcReaction()->getP(), section->getP());
        EXPECT_LT(section->getT_blc(), section->getT());
        EXPECT_NEAR(section->getIs_v(0.0),
                    0.1 * section->getIs_v_blc() + 0.9 * section->getIs_v_core(), 1e-9);
    }
}

TEST_F(LayerOfAHost, MustBeSolvedInTheChamberFirst)
{
    const auto document = engineWithExit(60.0);
    const auto performance = solved(*document);
    thermo::Propellant propellant(3.0, /*ratioIsAlpha=*/false);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2", 298.15, 101325.0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2", 298.15, 101325.0, 1.0);
    // A layer given by propellant waits for the next solve of the chamber.
    performance->getChamber()->setBLC(0.1, propellant, true);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance->propagateChamberBLC(), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{"Could not solve boundary layer of nozzle section: the "
                                       "layer of the chamber is not solved.\r\n"});
    performance->getChamber()->blc_solve(true);
    performance->propagateChamberBLC();
    EXPECT_TRUE(performance->getExitSection()->isBLC());
}

TEST_F(LayerOfAHost, IsNothingWithoutAnExitOrAChamber)
{
    const auto document = engineDocument();
    TheoreticalPerformance performance(document.get(), false);
    performance.propagateChamberBLC();
    performance.solve(false);
    const auto mixture = layer();
    performance.getChamber()->setBLC(0.1, *mixture, true);
    performance.propagateChamberBLC();
    EXPECT_EQ(performance.getExitSection(), nullptr);
}

} // namespace
