#include "Samples.h"

#include <ketra/explosion/HeatOfExplosion.h>
#include <ketra/thermo/Exception.h>

#include <support/Failures.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <cmath>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using explosion::HeatOfExplosion;
using ketra_test::LogCapture;
using ketra_test::Names;
using ketra_test::ownWarnings;
using ketra_test::productsOf;
using ketra_test::productsUspec;
using ketra_test::Replacements;
using ketra_test::sampleOf;
using ketra_test::sampleUspec;
using ketra_test::script;

constexpr double rho = 100.0; // kg/m^3
constexpr double T = 1500.0;  // K
// Sums of some ten products in another order than the library's.
constexpr double rounding = 1e-10;

const std::string addedWater =
    "HEX Exact Method: Automatically added replacement H2O -> H2O(L)!\r\n";

std::string notReplaced(const std::string& product, const std::string& replacement)
{
    return "HEX Exact Method: Could not replace " + product + " with " + replacement + "!\r\n";
}

const Replacements gaseousWater = {{"H2O", "H2O"}};
const Replacements liquidWater = {{"H2O", "H2O(L)"}};

TEST(ExactMethod, TakesTheProductsOfTheTemperatureInTheVolume)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    heat.runExactMethod(rho, T);
    ASSERT_NE(heat.getReaction(), nullptr);
    EXPECT_EQ(heat.getReaction()->getProcessType(), reaction::Equilibrium::VT);
    EXPECT_EQ(heat.getReaction()->getV(), 1.0 / rho);
    EXPECT_EQ(heat.getReaction()->getT(), T);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
}

TEST(ExactMethod, IsTheDifferenceOfInternalEnergies)
{
    for (const char* const name : {"RDX(cr)", "TNT(cr)", "NG(L)"}) {
        SCOPED_TRACE(name);
        HeatOfExplosion heat(*sampleOf(name));
        const double Q = heat.runExactMethod(rho, T);
        const double expected = sampleUspec(name) - productsUspec(*heat.getReaction(), liquidWater);
        EXPECT_NEAR(Q, expected, rounding * expected);
        EXPECT_GT(Q, 1e6); // gives off heat
    }
}

// C3H5N3O9 -> 3 CO2 + 2.5 H2O(L) + 1.5 N2 + 0.25 O2: with no other product allowed there is nothing
// left to calculate but the sum of the heats of formation, and the work of 4.75 mol of gas. The
// solver closes the balance of the elements within some 1e-5.
TEST(ExactMethod, AgreesWithTheHeatsOfFormation)
{
    const auto sample = sampleOf("NG(L)");
    HeatOfExplosion heat(*sample);
    Replacements replacements;
    Names included = {"CO2", "H2O", "N2", "O2"}, omitted;
    const double Q = heat.runExactMethod(rho, 2000.0, replacements, included, omitted);
    // dHf, J/mol: CO2 -393510, H2O(L) -285830, NG(L) -370700 in the records of the species file
    const double dH = -370700.0 - 3.0 * -393510.0 - 2.5 * -285830.0;
    const double gas = 4.75 * thermo::gasConstant * 298.15;
    EXPECT_NEAR(Q, (dH + gas) / 0.2270865, 1e-5 * Q);
    EXPECT_EQ(included, (Names{"CO2", "H2O", "N2", "O2"}));
    EXPECT_TRUE(omitted.empty());
}

TEST(ExactMethod, LeavesOutOmittedProducts)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    Replacements replacements;
    Names included, omitted = {"CH4", "CO"};
    const double Q = heat.runExactMethod(1000.0, T, replacements, included, omitted);
    EXPECT_EQ(productsOf(*heat.getReaction()).count("CH4"), 0U);
    EXPECT_EQ(productsOf(*heat.getReaction()).count("CO"), 0U);
    EXPECT_EQ(productsOf(*heat.getReaction()).count("CO2"), 1U);
    EXPECT_NE(Q, heat.runExactMethod(1000.0, T));
    EXPECT_EQ(omitted, (Names{"CH4", "CO"}));
    EXPECT_TRUE(included.empty());
}

TEST(ExactMethod, CondensesTheWaterOfItsOwnAccord)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    LogCapture capture;
    Replacements replacements;
    const double Q = heat.runExactMethod(rho, T, replacements);
    EXPECT_EQ(ownWarnings(capture), Names{addedWater});
    EXPECT_EQ(capture.tagOf(addedWater), "THERMO");
    EXPECT_EQ(replacements, liquidWater);
    EXPECT_DOUBLE_EQ(heat.runExactMethod(rho, T), Q);
}

TEST(ExactMethod, KeepsTheAddedReplacementInTheCallersMap)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    Replacements replacements;
    const double Q = heat.runExactMethod(rho, T, replacements);
    LogCapture capture;
    EXPECT_DOUBLE_EQ(heat.runExactMethod(rho, T, replacements), Q);
    EXPECT_TRUE(ownWarnings(capture).empty());
    EXPECT_EQ(replacements, liquidWater);
}

TEST(ExactMethod, LeavesTheWaterToTheCaller)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    const double liquid = heat.runExactMethod(rho, T);
    LogCapture capture;
    Replacements replacements = gaseousWater;
    const double gaseous = heat.runExactMethod(rho, T, replacements);
    EXPECT_TRUE(ownWarnings(capture).empty());
    EXPECT_EQ(replacements, gaseousWater);
    const double expected =
        sampleUspec("RDX(cr)") - productsUspec(*heat.getReaction(), gaseousWater);
    EXPECT_NEAR(gaseous, expected, rounding * expected);
    EXPECT_LT(gaseous, liquid);
}

// The map asks for something else in the place of water; there is no second opinion.
TEST(ExactMethod, DoesNotOverruleAnEntryForWater)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    Replacements replacements = {{"H2O", "H2O(cr)"}};
    const double Q = heat.runExactMethod(rho, T, replacements);
    EXPECT_EQ(replacements, (Replacements{{"H2O", "H2O(cr)"}}));
    // Ice cannot be had at 298.15 K: the entry stays gaseous, with a warning.
    Replacements gas = gaseousWater;
    EXPECT_DOUBLE_EQ(Q, heat.runExactMethod(rho, T, gas));
}

TEST(ExactMethod, DoesWithoutAReplacementOfWhatIsNotThere)
{
    const auto sample = sampleOf({{"CO", 298.15, 0.6}, {"O2", 298.15, 0.4}});
    HeatOfExplosion heat(*sample);
    LogCapture capture;
    Replacements replacements;
    const double Q = heat.runExactMethod(rho, T, replacements);
    EXPECT_EQ(ownWarnings(capture), (Names{addedWater, notReplaced("H2O", "H2O(L)")}));
    EXPECT_EQ(capture.tagOf(notReplaced("H2O", "H2O(L)")), "THERMO");
    const double Uspec = sample->getU() / sample->getMm();
    EXPECT_NEAR(Q, Uspec - productsUspec(*heat.getReaction(), {}), rounding * Q);
}

TEST(ExactMethod, WarnsOfEachReplacementThatFailsAndMakesTheOthers)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    LogCapture capture;
    Replacements replacements = {{"CO", "no such species"}, {"H2O", "H2O(L)"}, {"Xe", "N2"}};
    const double Q = heat.runExactMethod(rho, T, replacements);
    EXPECT_EQ(ownWarnings(capture),
              (Names{notReplaced("CO", "no such species"), notReplaced("Xe", "N2")}));
    EXPECT_EQ(capture.errors(), Names{"Unknown species \"no such species\". Please check "
                                      "propellant specification.\r\n"});
    const double expected =
        sampleUspec("RDX(cr)") - productsUspec(*heat.getReaction(), liquidWater);
    EXPECT_NEAR(Q, expected, rounding * expected);
}

// CO becomes graphite before CO2 becomes CO: in the other order both would be graphite.
TEST(ExactMethod, ReplacesInTheOrderOfTheNames)
{
    HeatOfExplosion heat(*sampleOf("PETN(cr)"));
    Replacements replacements = {{"CO2", "CO"}, {"CO", "C(gr)"}, {"H2O", "H2O"}};
    Names included = {"CO", "CO2", "H2", "H2O", "N2"}, omitted;
    const double Q = heat.runExactMethod(rho, T, replacements, included, omitted);
    double U = 0.0, mass = 0.0;
    for (const auto& [name, n] : productsOf(*heat.getReaction())) {
        const std::string counted = name == "CO" ? "C(gr)" : name == "CO2" ? "CO" : name;
        U += n * ketra_test::recordedU(counted, 298.15);
        mass += n * ketra_test::speciesOf(counted).getM() / 1000.0; // other masses, too
    }
    EXPECT_NEAR(Q, std::abs(U / mass - sampleUspec("PETN(cr)")), rounding * Q);
}

// Alumina is molten at 3000 K. Its record ends at the melting point, and so does its cooling.
TEST(ExactMethod, CoolsAProductToTheEndOfItsRecord)
{
    const auto sample = sampleOf({{"RDX(cr)", 298.15, 0.8}, {"AL(cr)", 298.15, 0.2}});
    HeatOfExplosion heat(*sample);
    const double Q = heat.runExactMethod(1000.0, 3000.0);
    ASSERT_EQ(productsOf(*heat.getReaction()).count("AL2O3(L)"), 1U);
    EXPECT_GT(ketra_test::speciesOf("AL2O3(L)").getMinimalT(), 2000.0);
    const double Uspec = sample->getU() / sample->getMm();
    // Molar masses of the records are rounded to 1e-7 g/mol, those of the mixture are not.
    EXPECT_NEAR(Q, Uspec - productsUspec(*heat.getReaction(), liquidWater), 1e-8 * Q);
}

// Atoms of nitrogen stay atoms when they cool down: the final state has the higher energy.
TEST(ExactMethod, IsPositiveForAnEndothermicChange)
{
    HeatOfExplosion heat(*sampleOf("N2"));
    Replacements replacements = gaseousWater;
    const double Q = heat.runExactMethod(1.0, 6000.0, replacements);
    const double change =
        productsUspec(*heat.getReaction(), {}) -
        ketra_test::recordedU("N2", 298.15) / (ketra_test::speciesOf("N2").getM() / 1000.0);
    EXPECT_GT(change, 1e5);
    EXPECT_NEAR(Q, change, 1e-8 * change);
}

TEST(ExactMethod, ScalesTheFractionsOfTheSample)
{
    ketra_test::useShippedSpecies();
    const auto parts = sampleOf({{"RDX(cr)", 298.15, 60.0}, {"TNT(cr)", 298.15, 40.0}});
    const auto shares = sampleOf({{"RDX(cr)", 298.15, 0.6}, {"TNT(cr)", 298.15, 0.4}});
    const double Q = HeatOfExplosion(*shares).runExactMethod(rho, T);
    EXPECT_NEAR(HeatOfExplosion(*parts).runExactMethod(rho, T), Q, 1e-9 * Q);
    // The sample was copied: the caller's own mixture is as it was.
    EXPECT_THROW(parts->getMassFraction(0), thermo::Exception);
}

// The denser, the fewer moles of gas: methane forms, and more heat comes free.
TEST(ExactMethod, RisesWithTheLoadingDensity)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    double before = 0.0;
    for (double density = 1.0; density < 2000.0; density *= 1.5) {
        SCOPED_TRACE(density);
        const double Q = heat.runExactMethod(density, T);
        const double expected =
            sampleUspec("RDX(cr)") - productsUspec(*heat.getReaction(), liquidWater);
        EXPECT_NEAR(Q, expected, rounding * expected);
        EXPECT_GT(Q, before);
        before = Q;
    }
    EXPECT_GT(before, 6e6);
}

class ExactMethodFailures : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useDissociatingHydrogen(); }
    void TearDown() override { script().clear(); }
};

TEST_F(ExactMethodFailures, PassOnWhatTheSolverGaveUpWith)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    LogCapture capture;
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(heat.runExactMethod(rho, T), thermo::Exception, 5);
    EXPECT_TRUE(capture.errors().empty());
    EXPECT_NE(heat.getReaction(), nullptr);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
}

TEST_F(ExactMethodFailures, OfAnotherFamilyBecomeOnesOfThisCalculation)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    LogCapture capture;
    for (int attempt = 0; attempt < 2; ++attempt)
        script().failNextSolve(std::make_exception_ptr(std::runtime_error("made up")));
    KETRA_EXPECT_THROW_MESSAGE(heat.runExactMethod(rho, T), thermo::Exception, 0, "Invalid state");
    const std::string text = "HEX Exact Method: Could not find heat of explosion.\r\n";
    EXPECT_EQ(capture.errors(), Names{text});
    EXPECT_EQ(capture.tagOf(text), "THERMO");
}

TEST_F(ExactMethodFailures, EndBeforeTheMapIsTouched)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    Replacements replacements;
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(heat.runExactMethod(rho, T, replacements), thermo::Exception, 5);
    EXPECT_TRUE(replacements.empty());
}

TEST_F(ExactMethodFailures, AreForgottenByTheNextRun)
{
    HeatOfExplosion heat(*ketra_test::hydrogen());
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(heat.runExactMethod(rho, T), thermo::Exception, 5);
    const double Q = heat.runExactMethod(rho, T);
    EXPECT_DOUBLE_EQ(Q, HeatOfExplosion(*ketra_test::hydrogen()).runExactMethod(rho, T));
}

} // namespace
