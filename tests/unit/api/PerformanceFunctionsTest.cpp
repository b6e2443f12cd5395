#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

namespace {

using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;
using performance::efficiency::CorrectionFactors;
using performance::equilibrium::NozzleSectionConditions;
using thermo::input::Component;
using thermo::input::ConfigFile;
using thermo::input::Pressure;
using thermo::input::Ratio;

struct Delete {
    void operator()(ConfigFile* config) const { deleteConfig(config); }
    void operator()(TheoreticalPerformance* performance) const { deletePerformance(performance); }
    void operator()(ThrottlingPerformance* performance) const
    {
        deleteThrottlingPerformance(performance);
    }
    void operator()(CorrectionFactors* factors) const { deleteCorrectionFactors(factors); }
};
using Config = std::unique_ptr<ConfigFile, Delete>;
using Performance = std::unique_ptr<TheoreticalPerformance, Delete>;
using Throttled = std::unique_ptr<ThrottlingPerformance, Delete>;
using Factors = std::unique_ptr<CorrectionFactors, Delete>;

class PerformanceFunctions : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static Config hydrazine()
    {
        Config config(newConfig(static_cast<const char*>(nullptr)));
        config->getCombustionChamberConditions().setPressure(1.0, Pressure::MPA, true);
        config->getNozzleFlowOptions().setCalculateNozzleFlow(false);
        config->getPropellant().setRatio(0.0, Ratio::MIXTURE);
        config->getPropellant().addSpecies(new Component("N2H4(L)", 1.0, 298.15));
        return config;
    }

    // Oxygen and hydrogen through a nozzle.
    static Config engine()
    {
        Config config(newConfig(static_cast<const char*>(nullptr)));
        config->getGeneralOptions().setIons(false);
        config->getCombustionChamberConditions().setPressure(7.0, Pressure::MPA, true);
        config->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(30.0, true);
        config->getPropellant().setRatio(6.0, Ratio::KM);
        config->getPropellant().addOxidizer(new Component("O2", 1.0, 298.15));
        config->getPropellant().addFuel(new Component("H2", 1.0, 298.15));
        return config;
    }
};

TEST_F(PerformanceFunctions, RunADocument)
{
    const Config config = hydrazine();
    const Performance performance(run(config.get()));
    ASSERT_NE(performance, nullptr);
    EXPECT_TRUE(performance->isValid());
    EXPECT_EQ(performance->getData(), config.get());
    ASSERT_NE(performance->getEquilibrium(), nullptr);
    ASSERT_NE(performance->getDerivatives(), nullptr);
    EXPECT_EQ(performance->getEquilibrium()->getP(), 1e6);
}

TEST_F(PerformanceFunctions, MakeAPerformanceThatIsNotSolved)
{
    const Config config = hydrazine();
    const Performance performance(newPerformance(config.get(), false));
    ASSERT_NE(performance, nullptr);
    EXPECT_EQ(performance->getEquilibrium(), nullptr);
    EXPECT_NE(performance->getMixture(), nullptr);
}

TEST_F(PerformanceFunctions, HandADocumentOverToAPerformance)
{
    const Performance performance(newPerformance(hydrazine().release(), true));
    EXPECT_NE(performance->getData(), nullptr);
}

TEST_F(PerformanceFunctions, ReturnNothingFromARunThatFails)
{
    ketra_test::LogCapture capture;
    const Config unknown = hydrazine();
    unknown->getPropellant().addSpecies(new Component("Nonsensium", 1.0, 298.15));
    EXPECT_EQ(run(unknown.get()), nullptr);

    const Config fractions = hydrazine();
    fractions->getPropellant().addSpecies(new Component("N2", 0.5, 298.15));
    EXPECT_EQ(run(fractions.get()), nullptr);

    const Config exit = engine();
    auto& conditions = exit->getNozzleFlowOptions().getNozzleExitConditions();
    conditions.setPressure(8.0, Pressure::MPA, true); // more than in the chamber
    conditions.deleteAreaRatio();
    EXPECT_EQ(run(exit.get()), nullptr);

    EXPECT_EQ(run(static_cast<ConfigFile*>(nullptr)), nullptr);
    EXPECT_EQ(capture.errors().size(), 5U);
}

TEST_F(PerformanceFunctions, RunAnEngineWithTransportProperties)
{
    const Config config = engine();
    const Performance performance(run(config.get()));
    ASSERT_NE(performance, nullptr);
    ASSERT_NE(performance->getChamber(), nullptr);
    EXPECT_NE(performance->getChamber()->getDerivatives(2)->getV(), 0.0);
    ASSERT_NE(performance->getExitSection(), nullptr);
    EXPECT_EQ(performance->getExitSection()->getFr(), 30.0);
}

TEST_F(PerformanceFunctions, SearchTheOptimumRatioWhereTheDocumentAsksForIt)
{
    const Config config = engine();
    config->getPropellant().setRatio(0.0, Ratio::OPTIMAL);
    const Performance performance(run(config.get()));
    ASSERT_NE(performance, nullptr);
    EXPECT_TRUE(performance->isOptimized());

    const Config other = engine();
    TheoreticalPerformance searched(other.get(), false);
    EXPECT_EQ(searched.optimizeForSpecificImpulse(0.2, 1.8, 0.001),
              performance->getPropellant()->getAlpha());
    EXPECT_EQ(config->getPropellant().getRatio(), other->getPropellant().getRatio());
}

TEST_F(PerformanceFunctions, RunAThrottledEngine)
{
    const Config config = engine();
    const Performance design(run(config.get()));
    ASSERT_NE(design, nullptr);
    const Throttled half(run(design.get(), 0.5, true));
    ASSERT_NE(half, nullptr);
    EXPECT_TRUE(half->isValid());
    EXPECT_EQ(half->getChamber()->getReaction()->getP(), 3.5e6);
    EXPECT_NE(half->getChamber()->getDerivatives(2)->getV(), 0.0);
    const Throttled same(run(design.get(), 1.0, true));
    ASSERT_NE(same, nullptr);
    EXPECT_EQ(same->getChamber(), design->getChamber());
}

TEST_F(PerformanceFunctions, ReturnNothingFromAThrottlingThatFails)
{
    const Config config = engine();
    const Performance design(run(config.get()));
    ASSERT_NE(design, nullptr);
    ketra_test::LogCapture capture;
    EXPECT_EQ(run(design.get(), 2.0001, false), nullptr);
    EXPECT_EQ(run(nullptr, 0.5, false), nullptr);
    EXPECT_EQ(capture.errors().size(), 2U);
}

TEST_F(PerformanceFunctions, GiveTheFactorsOfTheRealEngine)
{
    const Config config = engine();
    const Performance performance(run(config.get()));
    ASSERT_NE(performance, nullptr);
    const Factors factors(getCorrectionFactors(performance.get()));
    ASSERT_NE(factors, nullptr);
    EXPECT_GT(factors->getOverallEfficiency(), 0.9);
    EXPECT_LT(factors->getOverallEfficiency(), 1.0);
}

TEST_F(PerformanceFunctions, LetTheFailuresOfAConstructionOut)
{
    const Config config = hydrazine();
    config->getPropellant().addSpecies(new Component("Nonsensium", 1.0, 298.15));
    KETRA_EXPECT_THROW_CODE(newPerformance(config.get(), false), thermo::Exception, 4);
}

// That they release what they get is for the address sanitizer to see.
TEST_F(PerformanceFunctions, DeleteWhatTheLibraryHandsOut)
{
    const Config config = hydrazine();
    const Performance performance(run(config.get()));
    ASSERT_NE(performance, nullptr);
    reaction::ReactingMixture* products =
        performance->getEquilibrium()->copyReactingMixture(true, true);
    thermo::Mixture* composition = products->copyResultingMixture();
    thermo::ChemicalFormula* formula = composition->copyFormula();
    deleteChemicalFormula(formula);
    deleteMixture(composition);
    deleteReactingMixture(products);
    deleteSpecies(ketra_test::makeSpecies({"X", {{"H", 1.0}}, 1.0, 0, 0.0, {}}, 1).release());
    const Config engineConfig = engine();
    const Performance nozzle(run(engineConfig.get()));
    ASSERT_NE(nozzle, nullptr);
    deleteNozzleSectionConditions(nozzle->solveNozzleSection(
        10.0, NozzleSectionConditions::AREA_RATIO, false, false, 0.0, false, true));
    deleteThrottlingPerformance(run(nozzle.get(), 0.5, false));
    deleteCorrectionFactors(getCorrectionFactors(nozzle.get()));
    void* block = std::malloc(64);
    freeObject(block);
}

TEST_F(PerformanceFunctions, DeleteNothingOfANullPointer)
{
    deletePerformance(nullptr);
    deleteThrottlingPerformance(nullptr);
    deleteCorrectionFactors(nullptr);
    deleteNozzleSectionConditions(nullptr);
    deleteConfig(nullptr);
    deleteMixture(nullptr);
    deleteReactingMixture(nullptr);
    deleteSpecies(nullptr);
    deleteChemicalFormula(nullptr);
    freeObject(nullptr);
    // Deletion goes through the virtual destructor, so an object of a derived class is whole.
    EXPECT_TRUE(std::has_virtual_destructor_v<TheoreticalPerformance>);
    EXPECT_TRUE(std::has_virtual_destructor_v<ThrottlingPerformance>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CorrectionFactors>);
    EXPECT_TRUE(std::has_virtual_destructor_v<NozzleSectionConditions>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::Mixture>);
    EXPECT_TRUE(std::has_virtual_destructor_v<reaction::ReactingMixture>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::Species>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::ChemicalFormula>);
}

} // namespace
