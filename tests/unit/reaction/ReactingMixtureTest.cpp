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

long count(const Names& names, const std::string& name)
{
    return std::count(names.begin(), names.end(), name);
}

class ReactingMixtureTest : public SampleSpeciesTest
{
};

} // namespace

TEST_F(ReactingMixtureTest, WithIonsTheElectronLeadsTheElements)
{
    const auto initial = hydrogenOxygen();
    const OpenMixture mixture(*initial, true, true);
    ASSERT_EQ(mixture.elSize(), 3u);
    EXPECT_EQ(thermo::ChemicalElement::getName(mixture.element(0)->getType()), "E");
    EXPECT_EQ(thermo::ChemicalElement::getName(mixture.element(1)->getType()), "H");
    EXPECT_EQ(thermo::ChemicalElement::getName(mixture.element(2)->getType()), "O");
    EXPECT_EQ(mixture.b(0), 0.0);
}

TEST_F(ReactingMixtureTest, TheFreeElectronStandsInTheListOnce)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial, true, true);
    const Names names = namesOf(*mixture.candidates());
    EXPECT_EQ(count(names, "e-"), 1);
    EXPECT_EQ(count(names, "H+"), 1);
    EXPECT_EQ(count(names, "OH-"), 1);
    mixture.reset();
    EXPECT_EQ(count(reactingNames(mixture), "e-"), 1);
    EXPECT_EQ(count(reactingNames(mixture), "H+"), 1);
}

TEST_F(ReactingMixtureTest, WithoutIonsThereIsNoChargedProduct)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    EXPECT_FALSE(mixture.isIons());
    EXPECT_TRUE(mixture.isMultiphase());
    const Names names = namesOf(*mixture.candidates());
    EXPECT_EQ(count(names, "e-") + count(names, "H+") + count(names, "OH-"), 0);
}

TEST_F(ReactingMixtureTest, ADatabaseWithoutTheElectronFailsWhereAnIonIsMet)
{
    std::vector<Record> records = sampleSpecies();
    std::erase_if(records, [](const Record& record) { return record.name == "e-"; });
    useSpecies(records);
    const auto initial = hydrogenOxygen();
    EXPECT_THROW(ReactingMixture(*initial, true, true), thermo::Exception);
    const ReactingMixture withoutIons(*initial, true, false);
    EXPECT_EQ(withoutIons.elSize(), 2u);
}

TEST_F(ReactingMixtureTest, NoProductHoldsAThirdElement)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    ASSERT_EQ(mixture.elSize(), 2u);
    const Names expected{"H2", "O2", "H2O", "H", "H2O(cr)", "H2O(L)", "H2O(transit)"};
    EXPECT_EQ(namesOf(*mixture.candidates()), expected);
}

TEST_F(ReactingMixtureTest, AnEmptyDatabaseGivesNoProducts)
{
    const auto initial = hydrogenOxygen();
    thermo::Database::getInstance();
    OpenMixture mixture(*initial);
    useSpecies({});
    std::unique_ptr<std::vector<Product*>> none(mixture.findRelevantProducts(nullptr, true, false));
    ASSERT_NE(none, nullptr);
    EXPECT_TRUE(none->empty());
}

TEST_F(ReactingMixtureTest, RelevantProductsOfOneKindAreNotEnteredTwice)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    std::unique_ptr<std::vector<Product*>> list(
        mixture.findRelevantProducts(nullptr, false, false));
    const std::size_t size = list->size();
    EXPECT_EQ(mixture.findRelevantProducts(list.get(), false, false), list.get());
    EXPECT_EQ(list->size(), size);
}

TEST_F(ReactingMixtureTest, GasesAreSortedByName)
{
    const auto initial = hydrogenOxygen();
    ReactingMixture mixture(*initial);
    mixture.reset();
    EXPECT_EQ(reactingNames(mixture), (Names{"H", "H2", "H2O", "O2"}));
}

TEST_F(ReactingMixtureTest, BalanceIsTheElementMassInOneMoleOfMixture)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    EXPECT_NEAR(mixture.b(0), 1.2 * 1.00794, 1e-12);
    EXPECT_NEAR(mixture.b(1), 0.8 * 15.9994, 1e-12);
    const thermo::Species* water = thermo::Database::getInstance()->find("H2O");
    const std::unique_ptr<ColumnVector> numbers(mixture.MaterialBalanceCoefficients(water));
    EXPECT_EQ(numbers->at(0), 2.0);
    EXPECT_EQ(numbers->at(1), 1.0);
    const auto other = mixtureOf({{"H2O", 300.0, 1.0}}, thermo::_Species::MOLE_FRACTION);
    const std::unique_ptr<ColumnVector> balance(mixture.materialBalance(other.get()));
    EXPECT_NEAR(balance->at(0), 2.01588, 1e-12);
    EXPECT_NEAR(balance->at(1), 15.9994, 1e-12);
    EXPECT_NEAR(mixture.b(1), 0.8 * 15.9994, 1e-12);
}

TEST_F(ReactingMixtureTest, StoichiometryOfAnIonCarriesItsCharge)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial, true, true);
    const auto* database = thermo::Database::getInstance();
    const auto charge = [&](const char* name) {
        const thermo::Species* species =
            const_cast<thermo::Database*>(database)->find(name); // NOLINT: look-up is not const
        const std::unique_ptr<ColumnVector> numbers(mixture.MaterialBalanceCoefficients(species));
        return numbers->at(0);
    };
    EXPECT_EQ(charge("H+"), -1.0);
    EXPECT_EQ(charge("OH-"), 1.0);
    EXPECT_EQ(charge("e-"), 1.0);
    EXPECT_EQ(charge("H2O"), 0.0);
}

TEST_F(ReactingMixtureTest, IncludedAndOmittedSpeciesLimitTheProducts)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    Names none, omitted{"H"}, included{"H", "H2", "O2", "H2O(L)"};
    mixture.setSpecies(none, omitted);
    EXPECT_EQ(reactingNames(mixture), (Names{"H2", "H2O", "O2"}));
    mixture.setSpecies(included, none);
    EXPECT_EQ(namesOf(*mixture.candidates()), (Names{"H2", "O2", "H2O(L)"}));
}

TEST_F(ReactingMixtureTest, TwoEmptyListsChangeNothingAndRebuildTheProducts)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    Names none, omitted{"H"};
    mixture.setSpecies(none, omitted);
    ASSERT_TRUE(mixture.checkNewCondesedPhases(300.0, nullptr, 1));
    ASSERT_GT(mixture.size(), mixture.gasSize());
    mixture.product(0)->setN(0.7);
    mixture.setSpecies(none, none);
    EXPECT_EQ(reactingNames(mixture), (Names{"H2", "H2O", "O2"}));
    EXPECT_EQ(mixture.product(0)->n(), 0.0);
}

TEST_F(ReactingMixtureTest, SetIonsRebuildsNothingAndRemoveIonsDoes)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial, true, true);
    mixture.setIons(false);
    EXPECT_EQ(mixture.elSize(), 3u);
    mixture.reset();
    EXPECT_EQ(reactingNames(mixture), (Names{"H", "H2", "H2O", "O2"})); // `reset` heeds the flag
    mixture.setIons(true);
    mixture.reset();
    EXPECT_EQ(mixture.size(), 7u);
}

TEST_F(ReactingMixtureTest, RemoveIonsBuildsElementsAndProductsAnew)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial, true, true);
    mixture.removeIons();
    EXPECT_FALSE(mixture.isIons());
    EXPECT_EQ(mixture.elSize(), 2u);
    EXPECT_NEAR(mixture.b(0), 1.2 * 1.00794, 1e-12);
    mixture.reset();
    EXPECT_EQ(reactingNames(mixture), (Names{"H", "H2", "H2O", "O2"}));
}

TEST_F(ReactingMixtureTest, APropellantGivesItsMixture)
{
    thermo::Propellant propellant(8.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2");
    propellant.getComponent(thermo::Propellant::OXIDIZER)->setFraction(0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2");
    propellant.getComponent(thermo::Propellant::FUEL)->setFraction(0, 1.0);
    const ReactingMixture mixture(propellant);
    EXPECT_TRUE(mixture.isMultiphase());
    EXPECT_FALSE(mixture.isIons());
    ASSERT_EQ(mixture.elSize(), 2u);
    EXPECT_EQ(thermo::ChemicalElement::getName(mixture.element(0)->getType()), "H");
    EXPECT_NEAR(mixture.b(1) / mixture.b(0), 8.0, 1e-9);
    const ReactingMixture withIons(propellant, false, true);
    EXPECT_FALSE(withIons.isMultiphase());
    EXPECT_TRUE(withIons.isIons());
    const std::unique_ptr<thermo::Mixture> initial(mixture.copyInitialMixture());
    EXPECT_EQ(initial->size(), 2);
}

TEST_F(ReactingMixtureTest, APairOfPhasesBecomesLowHighAndBlend)
{
    const auto initial = aluminiumOxygen();
    OpenMixture mixture(*initial);
    const auto list = mixture.candidates();
    const Names names = namesOf(*list);
    // AL(cr) has no partner and stays in front of the three products made of the pair.
    EXPECT_EQ(names, (Names{"O2", "AL", "AL(cr)", "AL2O3(a)", "AL2O3(L)", "AL2O3(transit)"}));
    const Product* low = (*list)[3];
    const Product* high = (*list)[4];
    const Product* blend = (*list)[5];
    EXPECT_EQ(low->getCondensed(), 99);
    EXPECT_EQ(high->getCondensed(), 101);
    EXPECT_EQ(blend->getCondensed(), 100);
    EXPECT_EQ(low->getMinimalT(), 200.0);
    EXPECT_EQ(low->getMaximalT(), 1900.0);
    EXPECT_EQ(blend->getMinimalT(), 1900.0);
    EXPECT_EQ(blend->getMaximalT(), 2100.0);
    EXPECT_EQ(high->getMinimalT(), 2100.0);
    EXPECT_EQ(high->getMaximalT(), 6000.0);
    EXPECT_EQ(blend->getType(), 10000 * low->getType());
    for (const Product* product : {low, high, blend}) {
        EXPECT_EQ(product->a(0), 2.0);
        EXPECT_EQ(product->a(1), 3.0);
    }
}

TEST_F(ReactingMixtureTest, TheBandDependsOnTheNameOfTheFirstPhase)
{
    const auto bandOf = [](const std::string& first, const std::string& second, double boundary) {
        useSpecies(
            {gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0),
             condensedRecord(first, {{"MG", 1.0}, {"O", 1.0}}, 40.3, 1, 200.0, boundary, -7e4),
             condensedRecord(second, {{"MG", 1.0}, {"O", 1.0}}, 40.3, 2, boundary, 6000.0, -6e4),
             condensedRecord("MG(cr)", {{"MG", 1.0}}, 24.3, 1, 200.0, 900.0, 0.0)});
        const auto initial = mixtureOf({{"O2", 300.0, 0.5}, {"MG(cr)", 300.0, 0.5}});
        OpenMixture mixture(*initial);
        const auto list = mixture.candidates();
        const Product* blend = list->back();
        EXPECT_EQ(blend->getCondensed(), 100);
        return std::pair(blend->getMinimalT(), blend->getMaximalT());
    };
    EXPECT_EQ(bandOf("MgO(cr)", "MgO(L)", 2000.0), std::pair(1900.0, 2100.0));
    EXPECT_EQ(bandOf("AL2O3(a)", "AL2O3(L)", 2000.0), std::pair(1900.0, 2100.0));
    EXPECT_EQ(bandOf("H2O(cr)", "H2O(L)", 2000.0), std::pair(1980.0, 2020.0));
    EXPECT_EQ(bandOf("XO(cr)", "XO(L)", 2000.0), std::pair(1965.0, 2035.0));
    EXPECT_EQ(bandOf("XMgO(cr)", "XMgO(L)", 2000.0), std::pair(1965.0, 2035.0));
    EXPECT_EQ(bandOf("XO(cr)", "MgO(L)", 2000.0), std::pair(1965.0, 2035.0));
}

TEST_F(ReactingMixtureTest, ThePhaseThatBeginsFirstIsTheLowerOneInEitherOrder)
{
    std::vector<Record> records = sampleSpecies();
    const auto phase = [&](const char* name) {
        return std::find_if(records.begin(), records.end(),
                            [&](const Record& record) { return record.name == name; });
    };
    std::iter_swap(phase("AL2O3(a)"), phase("AL2O3(L)"));
    useSpecies(records);
    const auto initial = aluminiumOxygen();
    OpenMixture mixture(*initial);
    const auto list = mixture.candidates();
    // Tb is the lower end of the first entry of the list, the liquid.
    const Product* low = *std::find_if(list->begin(), list->end(), [](const Product* product) {
        return product->getCondensed() == 99;
    });
    EXPECT_EQ(low->getName(), "AL2O3(a)");
    EXPECT_EQ(low->getMaximalT(), 1900.0);
    EXPECT_EQ(list->back()->getMinimalT(), 1900.0);
    EXPECT_EQ(list->back()->getName(), "AL2O3(transit)");
}

TEST_F(ReactingMixtureTest, OfThreePhasesTheThirdStaysAsItIs)
{
    useSpecies(
        {gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0),
         condensedRecord("BeO(a)", {{"BE", 1.0}, {"O", 1.0}}, 25.0, 1, 200.0, 1000.0, -7e4),
         condensedRecord("BeO(b)", {{"BE", 1.0}, {"O", 1.0}}, 25.0, 2, 1000.0, 2000.0, -6.9e4),
         condensedRecord("BeO(L)", {{"BE", 1.0}, {"O", 1.0}}, 25.0, 3, 2000.0, 6000.0, -6e4),
         condensedRecord("Be(a)", {{"BE", 1.0}}, 9.0, 1, 200.0, 900.0, 0.0)});
    const auto initial = mixtureOf({{"O2", 300.0, 0.5}, {"Be(a)", 300.0, 0.5}});
    OpenMixture mixture(*initial);
    EXPECT_EQ(namesOf(*mixture.candidates()),
              (Names{"O2", "BeO(L)", "Be(a)", "BeO(a)", "BeO(b)", "BeO(transit)"}));

    // A copy keeps the pairs: the phases meet in another order in its list, yet the liquid stays
    // plain.
    mixture.reset();
    ASSERT_TRUE(mixture.checkNewCondesedPhases(1000.0, nullptr, 1));
    ASSERT_NE(entryOf(mixture, "BeO(transit)"), nullptr);
    mixture.checkPresentCondesedPhases(1010.0, false, false, 0.0);
    entryOf(mixture, "BeO(transit)")->setN(0.25);
    ReactingMixture copy(mixture);
    ReactingMixture second(copy);
    for (ReactingMixture* each : {&copy, &second}) {
        const Product* blend = entryOf(*each, "BeO(transit)");
        ASSERT_NE(blend, nullptr);
        EXPECT_EQ(blend->n(), 0.25);
        EXPECT_EQ(blend->T(), 1010.0);
        EXPECT_EQ(blend->getMinimalT(), 965.0);
        EXPECT_EQ(blend->getMaximalT(), 1035.0);
        EXPECT_TRUE(each->checkPresentCondesedPhases(1500.0, false, false, 0.0));
        ASSERT_NE(entryOf(*each, "BeO(b)"), nullptr);
        EXPECT_EQ(entryOf(*each, "BeO(b)")->getCondensed(), 101);
        EXPECT_TRUE(each->checkPresentCondesedPhases(2100.0, false, false, 0.0));
        ASSERT_NE(entryOf(*each, "BeO(L)"), nullptr);
        EXPECT_EQ(entryOf(*each, "BeO(L)")->getCondensed(), 3);
        EXPECT_EQ(entryOf(*each, "BeO(L)")->n(), 0.25);
    }
}

TEST_F(ReactingMixtureTest, ListsAreSearchedByIdentityOfTheSpecies)
{
    const auto initial = hydrogenOxygen();
    OpenMixture mixture(*initial);
    const auto list = mixture.candidates();
    const Product water(*thermo::Database::getInstance()->find("H2O"));
    const Product nitrogen(*thermo::Database::getInstance()->find("N2"));
    EXPECT_EQ(OpenMixture::getIndexOf(list.get(), &water), 2);
    EXPECT_EQ(OpenMixture::getIndexOf(list.get(), &nitrogen), -1);
    EXPECT_TRUE(OpenMixture::containsProduct(list.get(), &water));
    EXPECT_FALSE(OpenMixture::containsProduct(list.get(), &nitrogen));
    const auto elements = mixture.findRelevantElements();
    const thermo::ChemicalElement oxygen("O", 7.0), neon("NE", 1.0);
    EXPECT_TRUE(OpenMixture::containsElement(elements, &oxygen));
    EXPECT_FALSE(OpenMixture::containsElement(elements, &neon));
}

TEST_F(ReactingMixtureTest, AMixtureWithWrongFractionsIsRefused)
{
    const auto off =
        mixtureOf({{"H2", 300.0, 0.6}, {"O2", 300.0, 0.3}}, thermo::_Species::MOLE_FRACTION);
    KETRA_EXPECT_THROW_CODE(ReactingMixture mixture(*off), thermo::Exception, 6);
    thermo::Mixture empty;
    KETRA_EXPECT_THROW_CODE(ReactingMixture mixture(empty), thermo::Exception, 5);
}
