// The chamber of a document: which kind is built, what it starts from, and what a failure leaves.

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ketra_test::engineDocument;
using ketra_test::engineWithExit;
using ketra_test::freeze;
using performance::TheoreticalPerformance;
using performance::equilibrium::Chamber;
using thermo::input::ConfigFile;
using thermo::input::MassFlux;
using thermo::input::Pressure;
using thermo::input::Ratio;
using FrozenChamber = performance::frozen::Chamber;

class ChamberOfADocument : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static std::unique_ptr<TheoreticalPerformance> solved(ConfigFile& document)
    {
        auto performance = std::make_unique<TheoreticalPerformance>(&document, false);
        performance->solve(false);
        return performance;
    }
};

TEST_F(ChamberOfADocument, IsOneOfInfiniteAreaUnlessToldOtherwise)
{
    const auto document = engineDocument();
    const auto performance = solved(*document);
    ASSERT_NE(performance->getChamber(), nullptr);
    Chamber& chamber = *performance->getChamber();
    EXPECT_EQ(dynamic_cast<FrozenChamber*>(&chamber), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::INJECTION_PLANE)->getP(), 7e6);
    EXPECT_EQ(chamber.getReaction(Chamber::CHAMBER_END), chamber.getReaction());
    EXPECT_EQ(chamber.getSigmaC(), 1.0);
    EXPECT_EQ(chamber.getFcr(), 0.0);
    EXPECT_EQ(chamber.getMr(), 0.0);
    EXPECT_EQ(performance->getEquilibrium(), nullptr);
    EXPECT_EQ(performance->getDerivatives(), nullptr);
    EXPECT_TRUE(performance->isValid());
}

TEST_F(ChamberOfADocument, IsSolvedAloneWithoutANozzleExit)
{
    const auto document = engineDocument();
    ketra_test::setAmbientPressure(*document, 101325.0);
    const auto performance = solved(*document);
    EXPECT_NE(performance->getChamber(), nullptr);
    EXPECT_EQ(performance->getExitSection(), nullptr);
    EXPECT_EQ(performance->getNozzleExitSection(), nullptr);
    EXPECT_EQ(performance->getOverExpansionSection(), nullptr);
    EXPECT_EQ(performance->getPaCrit(), 0.0);
}

TEST_F(ChamberOfADocument, HasTheContractionRatioOfTheDocument)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(2.5);
    const auto performance = solved(*document);
    const Chamber& chamber = *performance->getChamber();
    EXPECT_EQ(chamber.getFcr(), 2.5);
    EXPECT_GT(chamber.getMr(), 0.0);
    EXPECT_LT(chamber.getSigmaC(), 1.0);
    EXPECT_NE(chamber.getReaction(Chamber::CHAMBER_END), chamber.getReaction());
}

TEST_F(ChamberOfADocument, HasTheMassFluxOfTheDocument)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleInletConditions().setMassFlux(
        1000.0, MassFlux::KG_PER_M2_S, true);
    const auto performance = solved(*document);
    Chamber alone(*performance->getPropellant(), /*multiphase=*/true, /*ions=*/false);
    alone.setP(7e6);
    alone.setMr(1000.0);
    alone.solve(/*finiteArea=*/true, /*expectCondensed=*/false, /*calculateTransport=*/false);
    EXPECT_EQ(performance->getChamber()->getMr(), 1000.0);
    EXPECT_GT(performance->getChamber()->getFcr(), 1.0);
    EXPECT_EQ(performance->getChamber()->getFcr(), alone.getFcr());
}

TEST_F(ChamberOfADocument, TakesTheMassFluxInItsOwnUnits)
{
    const auto document = engineDocument();
    auto& inlet = document->getNozzleFlowOptions().setNozzleInletConditions();
    inlet.setMassFlux(1000.0, MassFlux::KG_PER_M2_S, true);
    const double Fcr = solved(*document)->getChamber()->getFcr();
    const double inPounds = inlet.getMassFlux(MassFlux::LBM_PER_FT2_S);
    inlet.setMassFlux(inPounds, MassFlux::LBM_PER_FT2_S, false);
    EXPECT_NEAR(solved(*document)->getChamber()->getFcr(), Fcr, 1e-9 * Fcr);
}

TEST_F(ChamberOfADocument, IsOfInfiniteAreaForAnInletThatStatesNothing)
{
    const auto document = engineDocument();
    document->getNozzleFlowOptions().setNozzleInletConditions();
    EXPECT_EQ(solved(*document)->getChamber()->getSigmaC(), 1.0);
}

TEST_F(ChamberOfADocument, FreezesAtAnAreaRatioAPressureOrAPressureRatio)
{
    const auto document = engineDocument();
    auto& freezing = freeze(*document);
    const auto section = [&]() {
        const auto performance = solved(*document);
        const auto* chamber = dynamic_cast<FrozenChamber*>(performance->getChamber());
        if (chamber == nullptr) throw std::runtime_error("no frozen chamber");
        return std::pair(chamber->getEquilibriumSection()->getFr(),
                         chamber->getEquilibriumSection()->getP());
    };
    freezing.setExpansionRatio(3.0);
    EXPECT_EQ(section().first, 3.0);
    freezing.setPressure(0.4, Pressure::MPA, true);
    EXPECT_EQ(section().second, 4e5);
    freezing.setPressureRatio(20.0);
    EXPECT_DOUBLE_EQ(section().second, 7e6 / 20.0);
}

TEST_F(ChamberOfADocument, DoesNotFreezeWhenThatIsSwitchedOff)
{
    const auto document = engineDocument();
    freeze(*document).setExpansionRatio(3.0);
    document->getNozzleFlowOptions().getFreezingConditions().setCalculate(false);
    EXPECT_EQ(dynamic_cast<FrozenChamber*>(solved(*document)->getChamber()), nullptr);
}

TEST_F(ChamberOfADocument, MustHaveAPlaceWhereItFreezes)
{
    const auto document = engineDocument();
    freeze(*document);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 0, "Invalid state");
    EXPECT_EQ(performance.getChamber(), nullptr);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{
                  "Could not solve theoretical performance problem: the freezing conditions state "
                  "neither an expansion ratio nor a pressure nor a pressure ratio.\r\n"});
}

TEST_F(ChamberOfADocument, IsThatOfAMixtureLikewise)
{
    const auto premixed = ketra_test::premixedEngine(20.0);
    const auto mixture = solved(*premixed);
    const auto pair = engineWithExit(20.0);
    const auto propellant = solved(*pair);
    EXPECT_EQ(mixture->getPropellant(), nullptr);
    // The same reactants, named in another order.
    EXPECT_NEAR(mixture->getChamber()->getCstar(0.0), propellant->getChamber()->getCstar(0.0),
                1e-6 * propellant->getChamber()->getCstar(0.0));
    EXPECT_NEAR(mixture->getExitSection()->getIs_v(0.0), propellant->getExitSection()->getIs_v(0.0),
                1e-6 * propellant->getExitSection()->getIs_v(0.0));

    freeze(*premixed).setExpansionRatio(3.0);
    EXPECT_NE(dynamic_cast<FrozenChamber*>(solved(*premixed)->getChamber()), nullptr);
}

TEST_F(ChamberOfADocument, TakesTheGeneralOptionsOver)
{
    const auto document = engineDocument();
    for (const bool multiphase : {false, true})
        for (const bool ions : {false, true}) {
            document->getGeneralOptions().setMultiphase(multiphase);
            document->getGeneralOptions().setIons(ions);
            const auto performance = solved(*document);
            const reaction::Equilibrium& problem = *performance->getChamber()->getReaction();
            EXPECT_EQ(problem.isMultiphase(), multiphase);
            EXPECT_EQ(problem.isIons(), ions);
        }
}

TEST_F(ChamberOfADocument, HasTheTolerance)
{
    const auto document = engineWithExit(20.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.setRelativeTolerance(-0.5);
    performance.solve(false);
    EXPECT_EQ(performance.getChamber()->getRelativeTolerance(), 0.5);
    EXPECT_EQ(performance.getChamber()->getReaction()->getRelativeTolerance(), 0.5);
    EXPECT_EQ(performance.getExitSection()->getReaction()->getRelativeTolerance(), 0.5);
}

TEST_F(ChamberOfADocument, StartsFromTheEnthalpyThatWasSet)
{
    const auto document = engineDocument();
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    const double T = performance.getChamber()->getReaction()->getT();
    const double own = performance.getPropellant()->H();

    performance.setH(own - 10000.0); // J/mol, colder reactants
    performance.solve(false);
    EXPECT_NEAR(performance.getChamber()->getReaction()->getH() *
                    performance.getChamber()->getReaction()->getResultingMixtureQuantaty(),
                own - 10000.0, 1.0);
    EXPECT_LT(performance.getChamber()->getReaction()->getT(), T);

    performance.clearForRestart(false); // keeps it
    performance.solve(false);
    EXPECT_LT(performance.getChamber()->getReaction()->getT(), T);

    performance.removeH();
    performance.solve(false);
    EXPECT_EQ(performance.getChamber()->getReaction()->getT(), T);

    performance.setH(own - 10000.0);
    performance.clearForRestart(true); // drops it
    performance.solve(false);
    EXPECT_EQ(performance.getChamber()->getReaction()->getT(), T);
}

TEST_F(ChamberOfADocument, IsSolvedWithTransportWhenAsked)
{
    const auto document = engineDocument();
    TheoreticalPerformance performance(document.get(), false);
    const auto viscosity = [&](bool transport) {
        performance.solve(transport);
        return performance.getChamber()->getDerivatives(Chamber::THROAT)->getV();
    };
    EXPECT_EQ(viscosity(false), 0.0);
    EXPECT_NE(viscosity(true), 0.0);
}

TEST_F(ChamberOfADocument, ExpectsCondensedProductsOfMetals)
{
    const auto document = ketra_test::mixtureDocument({{"AL(cr)", 0.2}, {"O2", 0.4}, {"H2", 0.4}});
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    ketra_test::LogCapture capture;
    const auto performance = solved(*document);
    // Looked for before the first cycle of the injection plane, which starts from 3600 K.
    const std::vector<std::string> lines = capture.warnings();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.rfind("T=3600.0000 Include ", 0) == 0;
    }));
    EXPECT_TRUE(performance->getChamber()->getReaction()->hasCondensedPhase());
}

TEST_F(ChamberOfADocument, FollowsAChangedDocument)
{
    const auto document = engineWithExit(20.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    ASSERT_NE(performance.getExitSection(), nullptr);
    document->getCombustionChamberConditions().setPressure(1.0, Pressure::MPA, true);
    document->getNozzleFlowOptions().deleteNozzleExitConditions();
    performance.solve(false);
    EXPECT_EQ(performance.getChamber()->getReaction()->getP(), 1e6);
    EXPECT_EQ(performance.getExitSection(), nullptr);
    EXPECT_EQ(performance.getPaCrit(), 0.0);

    document->getNozzleFlowOptions().setCalculateNozzleFlow(false);
    performance.solve(false);
    EXPECT_EQ(performance.getChamber(), nullptr);
    EXPECT_NE(performance.getEquilibrium(), nullptr);
}

TEST_F(ChamberOfADocument, IsDroppedWithItsSections)
{
    const auto document = engineWithExit(20.0);
    ketra_test::setAmbientPressure(*document, 2e6);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    ASSERT_NE(performance.getOverExpansionSection(), nullptr);
    performance.clearForRestart(false);
    EXPECT_EQ(performance.getChamber(), nullptr);
    EXPECT_EQ(performance.getExitSection(), nullptr);
    EXPECT_EQ(performance.getOverExpansionSection(), nullptr);
    performance.solve(false);
    ASSERT_NE(performance.getOverExpansionSection(), nullptr);
    performance.clear(false);
    EXPECT_EQ(performance.getChamber(), nullptr);
    EXPECT_EQ(performance.getExitSection(), nullptr);
    EXPECT_EQ(performance.getOverExpansionSection(), nullptr);
}

// Bit for bit, whatever was solved before.
TEST_F(ChamberOfADocument, IsTheSameInEverySolve)
{
    const auto document = engineWithExit(20.0);
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(true);
    const double cstar = performance.getChamber()->getCstar(0.0);
    const double impulse = performance.getExitSection()->getIs_v(0.0);
    performance.solve(true);
    EXPECT_EQ(performance.getChamber()->getCstar(0.0), cstar);
    EXPECT_EQ(performance.getExitSection()->getIs_v(0.0), impulse);
}

// The injection plane and the chamber say the same of their failures.
const std::string injectionFailed =
    "Shifting Equilibrium Combustor: could not solve the problem.\r\n";
const std::string chamberFailed = injectionFailed;

// Failures on demand, from a scripted gas.
class FailedChamber : public testing::Test
{
protected:
    void SetUp() override
    {
        ketra_test::useDissociatingHydrogen();
        document = ketra_test::mixtureDocument({{"H2", 1.0, 2000.0}}, 1.0);
        document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    }
    void TearDown() override { ketra_test::script().clear(); }

    std::unique_ptr<ConfigFile> document;
};

TEST_F(FailedChamber, LeavesAnInvalidObjectWithoutChamberAndCanBeRepeated)
{
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    ASSERT_NE(performance.getChamber(), nullptr);
    ketra_test::script().failNextSolve(5);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 14,
                               "Could not solve problem");
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{injectionFailed, chamberFailed}));
    EXPECT_TRUE(performance.isInvalid());
    EXPECT_EQ(performance.getChamber(), nullptr);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    EXPECT_NE(performance.getChamber(), nullptr);
}

TEST_F(FailedChamber, OfAFreezingFlowSaysSo)
{
    freeze(*document).setExpansionRatio(2.0);
    TheoreticalPerformance performance(document.get(), false);
    ketra_test::script().failNextSolve(5);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 14);
    EXPECT_EQ(
        capture.errors(),
        (std::vector<std::string>{injectionFailed, chamberFailed,
                                  "Frozen Equilibrium Chamber: could not solve the problem.\r\n"}));
    EXPECT_TRUE(performance.isInvalid());
    EXPECT_EQ(performance.getChamber(), nullptr);
}

TEST_F(FailedChamber, PassesExceptionsOfOtherFamiliesOn)
{
    TheoreticalPerformance performance(document.get(), false);
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    ketra_test::script().failNextSolve(other);
    ketra_test::script().failNextSolve(other);
    EXPECT_THROW(performance.solve(false), std::runtime_error);
    EXPECT_EQ(performance.getChamber(), nullptr);
    EXPECT_TRUE(performance.isInvalid());
    ketra_test::script().clear();
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
}

} // namespace
