#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
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
using thermo::input::Component;
using thermo::input::ConfigFile;
using thermo::input::Pressure;
using thermo::input::Ratio;

struct Delete {
    void operator()(ConfigFile* config) const { deleteConfig(config); }
    void operator()(TheoreticalPerformance* performance) const { deletePerformance(performance); }
};
using Config = std::unique_ptr<ConfigFile, Delete>;
using Performance = std::unique_ptr<TheoreticalPerformance, Delete>;

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

    const Config nozzle = hydrazine();
    nozzle->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    EXPECT_EQ(run(nozzle.get()), nullptr);

    EXPECT_EQ(run(static_cast<ConfigFile*>(nullptr)), nullptr);
    EXPECT_EQ(capture.errors().size(), 4U);
}

TEST_F(PerformanceFunctions, ReturnNothingForTheOptimumRatioAndSayWhy)
{
    const Config config = hydrazine();
    config->getPropellant().reset();
    config->getPropellant().setRatio(0.0, Ratio::OPTIMAL);
    config->getPropellant().addOxidizer(new Component("O2", 1.0, 298.15));
    config->getPropellant().addFuel(new Component("H2", 1.0, 298.15));
    ketra_test::LogCapture capture;
    EXPECT_EQ(run(config.get()), nullptr);
    ASSERT_EQ(capture.errors().size(), 1U);
    EXPECT_NE(capture.errors()[0].find("optimum mixture ratio"), std::string::npos);
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
    void* block = std::malloc(64);
    freeObject(block);
}

TEST_F(PerformanceFunctions, DeleteNothingOfANullPointer)
{
    deletePerformance(nullptr);
    deleteConfig(nullptr);
    deleteMixture(nullptr);
    deleteReactingMixture(nullptr);
    deleteSpecies(nullptr);
    deleteChemicalFormula(nullptr);
    freeObject(nullptr);
    // Deletion goes through the virtual destructor, so an object of a derived class is whole.
    EXPECT_TRUE(std::has_virtual_destructor_v<TheoreticalPerformance>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::Mixture>);
    EXPECT_TRUE(std::has_virtual_destructor_v<reaction::ReactingMixture>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::Species>);
    EXPECT_TRUE(std::has_virtual_destructor_v<thermo::ChemicalFormula>);
}

} // namespace
