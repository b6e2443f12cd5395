#include "Samples.h"

#include <ketra/explosion/HeatOfExplosion.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/thermo/Exception.h>

#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <cmath>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using explosion::HeatOfExplosion;
using ketra_test::LogCapture;
using ketra_test::Names;
using ketra_test::ownWarnings;
using ketra_test::productsOf;
using ketra_test::Replacements;
using ketra_test::sampleOf;
using ketra_test::sampleUspec;
using ketra_test::script;

constexpr double rho = 1.0;  // kg/m^3
constexpr double T = 298.15; // K

const std::string notDefined =
    "HEX Inert Diluent Method: Included or omitted species are not defined.\r\n";
const std::string argonAdded =
    "HEX Inert Diluent Method: \"Ar\" automatically added into the list of included species!\r\n";
const std::string argonRemoved =
    "HEX Inert Diluent Method: \"Ar\" automatically removed into the list of omitted "
    "species!\r\n";

/// Internal energy of 0.999 kg of argon at \p atT and 0.001 kg of a sample, J.
double loadU(double sampleU, double atT)
{
    const double argon = ketra_test::recordedU("Ar", atT);
    return 0.999 * argon / (ketra_test::speciesOf("Ar").getM() / 1000.0) + 0.001 * sampleU;
}

TEST(InertDiluentMethod, BurnsTheSampleInArgonOfTheGivenDensity)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    heat.runInertDiluentMethod(rho, T);
    const reaction::Equilibrium& burnt = *heat.getReaction();
    EXPECT_EQ(burnt.getProcessType(), reaction::Equilibrium::VU);
    EXPECT_EQ(burnt.getV(), 1.0 / rho);
    const double U = loadU(sampleUspec("RDX(cr)"), T);
    EXPECT_NEAR(burnt.getUspec(), U, 1e-5 * std::abs(U));
    const double argon = 0.999 / ketra_test::speciesOf("Ar").getM();
    EXPECT_NEAR(productsOf(burnt)["Ar"], argon / (argon + 0.001 * 9.0 / 222.11634), 1e-4);
}

TEST(InertDiluentMethod, ReadsTheHeatFromTheTemperatureRise)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    const double Q = heat.runInertDiluentMethod(rho, T);
    ASSERT_NE(heat.getDerivatives(), nullptr);
    const reaction::Derivatives& gas = *heat.getDerivatives();
    const double rise = heat.getReaction()->getT() - T;
    EXPECT_GT(rise, 10.0);
    EXPECT_DOUBLE_EQ(Q, rise * gas.getCpfr() * 1000.0 / gas.getGamma());
    // Argon, the bulk of the gas: cv = 3/2 R / M
    const double cv = 1.5 * thermo::gasConstant / (ketra_test::speciesOf("Ar").getM() / 1000.0);
    EXPECT_NEAR(Q, rise * cv * 1000.0, 5e-3 * Q);
}

// With only the gases of a complete combustion allowed both methods burn to the same products: the
// exact one with gaseous water, cooled to 298.15 K, and this one in a gas 20 K warmer.
TEST(InertDiluentMethod, AgreesWithTheExactMethod)
{
    const auto sample = sampleOf("NG(L)");
    HeatOfExplosion heat(*sample);
    Names included = {"Ar", "CO2", "H2O", "N2", "O2"}, omitted;
    const double diluted = heat.runInertDiluentMethod(rho, T, included, omitted);
    Replacements gaseousWater = {{"H2O", "H2O"}};
    const double exact = heat.runExactMethod(100.0, 2000.0, gaseousWater, included, omitted);
    EXPECT_NEAR(diluted, exact, 2e-3 * exact);
}

TEST(InertDiluentMethod, StartsFromTheTemperatureOfTheArgon)
{
    HeatOfExplosion heat(*sampleOf("NG(L)"));
    Names included = {"Ar", "CO2", "H2O", "N2", "O2"}, omitted;
    heat.runInertDiluentMethod(rho, 400.0, included, omitted);
    const double U = loadU(sampleUspec("NG(L)"), 400.0);
    EXPECT_NEAR(heat.getReaction()->getUspec(), U, 1e-6 * std::abs(U));
    EXPECT_GT(heat.getReaction()->getT(), 410.0);
}

TEST(InertDiluentMethod, SaysThatNoProductsAreGiven)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    LogCapture capture;
    const double Q = heat.runInertDiluentMethod(rho, T);
    EXPECT_EQ(ownWarnings(capture), Names{notDefined});
    EXPECT_EQ(capture.tagOf(notDefined), "THERMO");
    capture.clear();
    Names included, omitted;
    EXPECT_EQ(heat.runInertDiluentMethod(rho, T, included, omitted), Q);
    EXPECT_EQ(ownWarnings(capture), Names{notDefined});
    EXPECT_TRUE(included.empty());
    EXPECT_TRUE(omitted.empty());
}

TEST(InertDiluentMethod, AddsArgonToTheIncludedProducts)
{
    HeatOfExplosion heat(*sampleOf("NG(L)"));
    Names with = {"CO2", "H2O", "N2", "O2", "Ar"}, without = {"CO2", "H2O", "N2", "O2"}, omitted;
    LogCapture capture;
    const double Q = heat.runInertDiluentMethod(rho, T, with, omitted);
    EXPECT_TRUE(ownWarnings(capture).empty());
    EXPECT_EQ(heat.runInertDiluentMethod(rho, T, without, omitted), Q);
    EXPECT_EQ(ownWarnings(capture), Names{argonAdded});
    EXPECT_EQ(capture.tagOf(argonAdded), "THERMO");
    EXPECT_EQ(without, (Names{"CO2", "H2O", "N2", "O2"}));
    EXPECT_EQ(productsOf(*heat.getReaction()).size(), 5U);
}

TEST(InertDiluentMethod, TakesArgonFromTheOmittedProducts)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    Names included, with = {"CH4", "Ar", "C2H6"}, without = {"CH4", "C2H6"};
    LogCapture capture;
    const double Q = heat.runInertDiluentMethod(rho, T, included, without);
    EXPECT_TRUE(ownWarnings(capture).empty());
    EXPECT_EQ(heat.runInertDiluentMethod(rho, T, included, with), Q);
    EXPECT_EQ(ownWarnings(capture), Names{argonRemoved});
    EXPECT_EQ(capture.tagOf(argonRemoved), "THERMO");
    EXPECT_EQ(with, (Names{"CH4", "Ar", "C2H6"}));
    EXPECT_TRUE(included.empty());
    const auto products = productsOf(*heat.getReaction());
    EXPECT_EQ(products.count("Ar"), 1U);
    EXPECT_EQ(products.count("CH4"), 0U);
}

TEST(InertDiluentMethod, TreatsBothListsInOneCall)
{
    HeatOfExplosion heat(*sampleOf("NG(L)"));
    Names included = {"CO2", "H2O", "N2", "O2"}, omitted = {"Ar"};
    LogCapture capture;
    EXPECT_GT(heat.runInertDiluentMethod(rho, T, included, omitted), 5e6);
    EXPECT_EQ(ownWarnings(capture), (Names{argonAdded, argonRemoved}));
    EXPECT_EQ(included, (Names{"CO2", "H2O", "N2", "O2"}));
    EXPECT_EQ(omitted, Names{"Ar"});
}

// Nitrogen at 200 K takes heat from argon at 298.15 K: 98 K times the heat capacity of 743 J/(kg
// K).
TEST(InertDiluentMethod, IsPositiveWhenTheArgonCools)
{
    HeatOfExplosion heat(*sampleOf({{"N2", 200.0, 1.0}}));
    Names included = {"N2"}, omitted;
    const double Q = heat.runInertDiluentMethod(rho, T, included, omitted);
    EXPECT_LT(heat.getReaction()->getT(), T);
    EXPECT_NEAR(Q, 98.15 * 743.0, 2e-2 * Q);
}

TEST(InertDiluentMethod, ScalesTheFractionsOfTheSample)
{
    const auto parts = sampleOf({{"NG(L)", 298.15, 3.0}, {"EGDN(L)", 298.15, 1.0}});
    const auto shares = sampleOf({{"NG(L)", 298.15, 0.75}, {"EGDN(L)", 298.15, 0.25}});
    Names included = {"CO2", "H2O", "N2", "O2"}, omitted;
    const double Q = HeatOfExplosion(*shares).runInertDiluentMethod(rho, T, included, omitted);
    EXPECT_NEAR(HeatOfExplosion(*parts).runInertDiluentMethod(rho, T, included, omitted), Q,
                1e-6 * Q);
}

/// Hydrogen in argon, both of constant heat capacity.
class InertDiluentFailures : public testing::Test
{
protected:
    void SetUp() override
    {
        ketra_test::useDissociatingHydrogen();
        ketra_test::addScriptedGas("Ar", "AR", 1.0, 39.948,
                                   std::make_unique<ketra_test::ScriptedPolynomial>(
                                       200.0, 6000.0, 2.5, -2.5 * 298.15, 4.4));
        script().clear();
    }
    void TearDown() override { script().clear(); }
};

TEST_F(InertDiluentFailures, PassOnWhatTheSolverGaveUpWith)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    LogCapture capture;
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(heat.runInertDiluentMethod(rho, T), thermo::Exception, 5);
    EXPECT_TRUE(capture.errors().empty());
    EXPECT_NE(heat.getReaction(), nullptr);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
}

TEST_F(InertDiluentFailures, OfAnotherFamilyBecomeOnesOfThisCalculation)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    LogCapture capture;
    for (int attempt = 0; attempt < 2; ++attempt)
        script().failNextSolve(std::make_exception_ptr(std::runtime_error("made up")));
    KETRA_EXPECT_THROW_MESSAGE(heat.runInertDiluentMethod(rho, T), thermo::Exception, 0,
                               "Invalid state");
    const std::string text = "HEX Inert Diluent Method: Could not find heat of explosion.\r\n";
    EXPECT_EQ(capture.errors(), Names{text});
    EXPECT_EQ(capture.tagOf(text), "THERMO");
    EXPECT_EQ(heat.getDerivatives(), nullptr);
}

TEST_F(InertDiluentFailures, LeaveNoDerivativesOfAnEarlierRun)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    heat.runInertDiluentMethod(rho, T);
    ASSERT_NE(heat.getDerivatives(), nullptr);
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(heat.runInertDiluentMethod(rho, T), thermo::Exception, 5);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
}

TEST(InertDiluentMethod, NeedsArgonInTheSpeciesFile)
{
    ketra_test::useDissociatingHydrogen();
    HeatOfExplosion heat(*ketra_test::hydrogen());
    LogCapture capture;
    KETRA_EXPECT_THROW_CODE(heat.runInertDiluentMethod(rho, T), thermo::Exception, 4);
    EXPECT_EQ(capture.errors(),
              Names{"Unknown species \"Ar\". Please check propellant specification.\r\n"});
    script().clear();
}

} // namespace
