#include "MixtureSpecies.h"

#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <gtest/gtest.h>

using ketra_test::speciesOf;
using thermo::_Species;
using thermo::ChemicalFormula;
using thermo::Exception;
using thermo::Mixture;
using thermo::Species;

namespace {

class MixtureEntryTest : public ::testing::Test
{
protected:
    MixtureEntryTest() { ketra_test::useMixtureSpecies(); }

    Mixture byMass;
};

TEST_F(MixtureEntryTest, StartsAtTheStandardState)
{
    const Species* species = byMass.addSpecies(speciesOf("H2"), 1.0);
    const _Species& e = byMass._getSpecies(0);
    EXPECT_EQ(species, speciesOf("H2"));
    EXPECT_EQ(e.getSpecies(), species);
    EXPECT_EQ(e.getG(), 1.0);
    EXPECT_EQ(e.getR(), 0.0);
    EXPECT_EQ(e.getT(), 298.15);
    EXPECT_EQ(e.getP(), 101325.0);
    EXPECT_EQ(e.getRho(), 0.0);
    EXPECT_EQ(e.getM(), 2.01588);
}

TEST_F(MixtureEntryTest, TakesOnlyTheGivenTemperatureOfASpeciesThatIsNotAt298K)
{
    byMass.addSpecies("O2(L)", 90.17, 1.0);
    EXPECT_EQ(byMass._getSpecies(0).getT(), 90.17);
    byMass.addSpecies("O2(L)", 90.5, 2e5, 0.0);
    EXPECT_EQ(byMass._getSpecies(1).getT(), 90.17) << "a record's temperature within 1 K";
    EXPECT_EQ(byMass._getSpecies(1).getP(), 2e5);
    KETRA_EXPECT_THROW_CODE(byMass.addSpecies("O2(L)", 298.15, 1.0), Exception, 1);
    KETRA_EXPECT_THROW_CODE(byMass.addSpecies("O2(L)", 1.0), Exception, 1);
    EXPECT_EQ(byMass.size(), 2) << "a failed entry is not appended";
}

TEST_F(MixtureEntryTest, StoresAnUncheckedTemperatureAsItStands)
{
    byMass.addSpecies(speciesOf("H2"), 20.0, 5e5, 0.25, /*check=*/false);
    EXPECT_EQ(byMass._getSpecies(0).getT(), 20.0);
    EXPECT_EQ(byMass._getSpecies(0).getP(), 5e5);
    EXPECT_EQ(byMass._getSpecies(0).getG(), 0.25);
    KETRA_EXPECT_THROW_CODE(byMass.addSpecies(speciesOf("H2"), 20.0, 5e5, 0.25, /*check=*/true),
                            Exception, 1);
}

TEST_F(MixtureEntryTest, ATemperatureNotAboveZeroMeans298K)
{
    for (const double T : {0.0, -5.0}) {
        SCOPED_TRACE(T);
        byMass.addSpecies(speciesOf("H2"), T, 1e5, 0.5, /*check=*/false);
        EXPECT_EQ(byMass._getSpecies(byMass.size() - 1).getT(), 298.15);
    }
}

TEST_F(MixtureEntryTest, AssignmentKeepsTheDensityAndACopyDoesNot)
{
    byMass.addSpecies(speciesOf("H2"), 1.0);
    std::unique_ptr<std::vector<_Species*>> entries(byMass._copyAllSpecies());
    const std::unique_ptr<_Species> source((*entries)[0]);
    EXPECT_EQ(source->setRho(70.0), 70.0);
    EXPECT_EQ(source->setP(3e5), 3e5);
    EXPECT_EQ(source->setT(400.0, true), 400.0);

    entries.reset(byMass._copyAllSpecies());
    const std::unique_ptr<_Species> target((*entries)[0]);
    *target = *source;
    EXPECT_EQ(target->getRho(), 70.0);
    EXPECT_EQ(target->getP(), 3e5);
    EXPECT_EQ(target->getT(), 400.0);
}

TEST_F(MixtureEntryTest, ComparesBySpeciesEntryAndFormula)
{
    byMass.addSpecies(speciesOf("H2"), 0.5);
    byMass.addSpecies(speciesOf("O2"), 0.5);
    const _Species& hydrogen = byMass._getSpecies(0);
    EXPECT_TRUE(hydrogen == speciesOf("H2"));
    EXPECT_FALSE(hydrogen == speciesOf("O2"));
    EXPECT_TRUE(hydrogen == &hydrogen);
    EXPECT_FALSE(hydrogen == &byMass._getSpecies(1));
    const std::unique_ptr<ChemicalFormula> formula(speciesOf("H2")->copyFormula());
    EXPECT_TRUE(hydrogen == *formula);
    EXPECT_FALSE(byMass._getSpecies(1) == *formula);
}

TEST_F(MixtureEntryTest, TemperatureOfTheWholeMixtureIsCheckedClampedOrNeither)
{
    byMass.addSpecies("H2", 0.5);
    byMass.addSpecies("H2O(L)", 0.5);
    KETRA_EXPECT_THROW_CODE(byMass.setT(500.0), Exception, 1);
    KETRA_EXPECT_THROW_CODE(byMass.setT(500.0, /*clamp=*/false), Exception, 1);
    byMass.setT(500.0, /*clamp=*/true);
    EXPECT_EQ(byMass._getSpecies(0).getT(), 500.0);
    EXPECT_EQ(byMass._getSpecies(1).getT(), 373.15);
    byMass.setT(250.0, /*clamp=*/true);
    EXPECT_EQ(byMass._getSpecies(0).getT(), 250.0);
    EXPECT_EQ(byMass._getSpecies(1).getT(), 273.15);
    byMass.setTWithoutCheck(10.0);
    EXPECT_EQ(byMass._getSpecies(1).getT(), 10.0);
    byMass.setP(7e6);
    EXPECT_EQ(byMass._getSpecies(0).getP(), 7e6);
    EXPECT_EQ(byMass._getSpecies(1).getP(), 7e6);
}

} // namespace
