#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace ketra_test;
using math::matrix::ColumnVector;
using reaction::Product;
using reaction::ReactingMixture;
using reaction::TransitionProduct;
using thermo::gasConstant;

namespace {

class ReactingMixtureStateTest : public SampleSpeciesTest
{
};

} // namespace

TEST_F(ReactingMixtureStateTest, AmountsSumOverTheList)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    EXPECT_EQ(mixture.getN(), 0.0);
    EXPECT_EQ(mixture.getNg(), 0.0);
    mixture.reset();
    mixture.checkNewCondesedPhases(1000.0, nullptr, 1);
    mixture.product(0)->setN(0.2);
    mixture.product(1)->setN(0.5);
    mixture.product(2)->setN(0.3);
    EXPECT_DOUBLE_EQ(mixture.getN(), 1.0);
    EXPECT_DOUBLE_EQ(mixture.getResultingMixtureQuantaty(), 1.0);
    EXPECT_DOUBLE_EQ(mixture.getNg(), 0.7);
    EXPECT_DOUBLE_EQ(mixture.getResultingGasMixtureQuantaty(), 0.7);
    EXPECT_EQ(mixture.n(1), 0.5);
    EXPECT_DOUBLE_EQ(mixture.ln_n(1), std::log(0.5));
    EXPECT_EQ(mixture.a(0, 2), 2.0);
    EXPECT_EQ(mixture.a(1, 2), 3.0);
    EXPECT_EQ(mixture.a(1, 1), 2.0);
}

TEST_F(ReactingMixtureStateTest, EnthalpyAndEntropyAreThoseOfTheNaiveSums)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(1000.0, nullptr, 1);
    const double n[3] = {0.2, 0.5, 0.3};
    for (unsigned j = 0; j < 3; ++j) mixture.product(j)->setN(n[j]);
    const double T = 1200.0;
    const double h = mixture.setT(T);
    const double H[3] = {3.5 * T + 39000.0, 3.5 * T - 1000.0, 3.0 * T - 202000.0};
    const double expectedH = gasConstant * (n[0] * H[0] + n[1] * H[1] + n[2] * H[2]);
    EXPECT_NEAR(h, expectedH, 1e-12 * std::abs(expectedH));
    EXPECT_EQ(mixture.getH(), h);
    const double mass = (0.2 * 26.9815386 + 0.5 * 31.9988 + 0.3 * 101.9612772) / 1000.0;
    EXPECT_NEAR(mixture.getHspec(), h / mass, 1e-9 * std::abs(h / mass));

    const double p = 3e5;
    const double S = n[0] * (3.5 * std::log(T) + 5.0 - std::log(n[0] / 0.7) - std::log(3.0)) +
                     n[1] * (3.5 * std::log(T) + 5.0 - std::log(n[1] / 0.7) - std::log(3.0)) +
                     n[2] * (3.0 * std::log(T) - 50.0);
    EXPECT_NEAR(mixture.getS(p), S * gasConstant, 1e-11 * std::abs(S * gasConstant));
    EXPECT_NEAR(mixture.getSspec(p), S * gasConstant / mass,
                1e-9 * std::abs(S * gasConstant / mass));
}

TEST_F(ReactingMixtureStateTest, SetTCanMoveEachProductIntoItsRange)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(1000.0, nullptr, 1);
    for (unsigned j = 0; j < 3; ++j) mixture.product(j)->setN(1.0);
    mixture.setT(3000.0, true);
    EXPECT_EQ(mixture.product(0)->T(), 3000.0);
    EXPECT_EQ(mixture.product(2)->T(), 1900.0);
    KETRA_EXPECT_THROW_CODE(mixture.setT(3000.0, false), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(mixture.setT(3000.0), thermo::Exception, 1);
}

TEST_F(ReactingMixtureStateTest, SetHFindsTheTemperatureOfAnEnthalpy)
{
    const auto initial = hydrogenOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    for (unsigned j = 0; j < mixture.size(); ++j) mixture.product(j)->setN(0.25);
    const double wanted = mixture.setT(2345.0);
    for (const double from : {1000.0, 4000.0}) {
        SCOPED_TRACE(from);
        mixture.setT(from);
        const double T = mixture.setH(wanted);
        EXPECT_EQ(mixture.product(0)->T(), T);
        // It stops at 1e-4 of the enthalpy.
        EXPECT_LE(std::abs((mixture.getH() - wanted) / mixture.getH()), 1e-4);
        EXPECT_NEAR(T, 2345.0, 5.0);
    }
}

TEST_F(ReactingMixtureStateTest, TheResultingMixtureShowsABlendAsItsTwoPhases)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(1950.0, nullptr, 1);
    mixture.checkPresentCondesedPhases(1950.0, false, false, 0.0);
    mixture.product(0)->setN(0.2);
    mixture.product(1)->setN(0.4);
    mixture.product(2)->setN(0.4);
    const std::unique_ptr<thermo::Mixture> resulting(mixture.copyResultingMixture());
    ASSERT_EQ(resulting->size(), 4);
    EXPECT_EQ(resulting->getSpecies(0), mixture.product(0)); // not copied
    EXPECT_EQ(resulting->getSpecies(2)->getName(), "AL2O3(a)");
    EXPECT_EQ(resulting->getSpecies(3)->getName(), "AL2O3(L)");
    // A quarter of the way through the band 1900 to 2100 K.
    EXPECT_DOUBLE_EQ(resulting->getMolarFraction(2), 0.3);
    EXPECT_DOUBLE_EQ(resulting->getMolarFraction(3), 0.1);
    EXPECT_EQ(resulting->_getSpecies(2).getT(), 1950.0);
    EXPECT_EQ(resulting->_getSpecies(3).getT(), 2000.0);
}

TEST_F(ReactingMixtureStateTest, CondensedSpeciesAreTheRealPhasesAndNothingForABlend)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(800.0, nullptr, 1);
    mixture.checkNewCondesedPhases(800.0, nullptr, 1);
    using List = std::unique_ptr<std::vector<const thermo::Species*>>;
    const List cold(mixture.copyAllCondensedSpecies());
    ASSERT_EQ(cold->size(), 2u);
    EXPECT_EQ((*cold)[0]->getName(), "AL(cr)");
    EXPECT_EQ((*cold)[1]->getName(), "AL2O3(a)");
    EXPECT_EQ((*cold)[1]->getCondensed(), 1); // the phase, not the product that stands for it
    mixture.checkPresentCondesedPhases(1950.0, false, false, 0.0);
    const List blended(mixture.copyAllCondensedSpecies());
    EXPECT_TRUE(blended->empty());
}

TEST_F(ReactingMixtureStateTest, ACopyIsIndependentOfItsSource)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(1950.0, nullptr, 1);
    mixture.checkPresentCondesedPhases(1960.0, false, false, 0.0);
    mixture.product(0)->setN(0.2);
    mixture.product(1)->setN(0.4);
    mixture.product(2)->setN(0.4);
    ReactingMixture copy(mixture);
    EXPECT_EQ(reactingNames(copy), reactingNames(mixture));
    EXPECT_EQ(copy.gasSize(), 2u);
    EXPECT_EQ(copy.elSize(), mixture.elSize());
    EXPECT_EQ(copy.element(1), mixture.element(1)); // shared
    EXPECT_EQ(copy.b(1), mixture.b(1));
    for (unsigned j = 0; j < 3; ++j) {
        EXPECT_NE(copy.product(j), mixture.product(j));
        EXPECT_EQ(copy.n(j), mixture.n(j));
        EXPECT_EQ(copy.product(j)->T(), mixture.product(j)->T());
        EXPECT_EQ(copy.product(j)->G0_tilde(), mixture.product(j)->G0_tilde());
    }
    copy.product(2)->setN(0.9);
    copy.checkPresentCondesedPhases(3000.0, false, false, 0.0);
    EXPECT_EQ(mixture.n(2), 0.4);
    EXPECT_EQ(mixture.product(2)->getName(), "AL2O3(transit)");
    EXPECT_EQ(copy.product(2)->getName(), "AL2O3(L)");
}

TEST_F(ReactingMixtureStateTest, ACopyWithoutCondensedProductsHasGasesOnly)
{
    const auto initial = aluminiumOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.checkNewCondesedPhases(1000.0, nullptr, 1);
    const ReactingMixture copy(mixture, false, true);
    EXPECT_EQ(copy.size(), copy.gasSize());
    EXPECT_EQ(reactingNames(copy), (Names{"AL", "O2"}));
}

TEST_F(ReactingMixtureStateTest, ACopyWithoutIonsHasAsManyEntriesAsItSays)
{
    const auto initial = hydrogenOxygen();
    ReactingMixture mixture(*initial, true, true);
    mixture.reset();
    ASSERT_EQ(mixture.size(), 7u);
    const ReactingMixture copy(mixture, true, false);
    EXPECT_EQ(reactingNames(copy), (Names{"H", "H2", "H2O", "O2"}));
    EXPECT_EQ(copy.size(), 4u);
    EXPECT_EQ(copy.gasSize(), 4u);
    EXPECT_EQ(copy.elSize(), 3u);
}

TEST_F(ReactingMixtureStateTest, ACopyOfAMixtureNeverResetHasNoList)
{
    const auto initial = hydrogenOxygen();
    const ReactingMixture mixture(*initial);
    ReactingMixture copy(mixture);
    EXPECT_EQ(copy.size(), 0u);
    copy.reset();
    EXPECT_EQ(copy.size(), 4u);
}
