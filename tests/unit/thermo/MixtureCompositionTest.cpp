#include "MixtureSpecies.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <gtest/gtest.h>

using ketra_test::LogCapture;
using ketra_test::speciesOf;
using thermo::_Species;
using thermo::Exception;
using thermo::Mixture;

namespace {

using Texts = std::vector<std::string>;

class MixtureCompositionTest : public ::testing::Test
{
protected:
    MixtureCompositionTest() { ketra_test::useMixtureSpecies(); }

    /// Names, given fractions by mass and temperatures, as one text.
    static std::string listOf(const Mixture& mixture)
    {
        std::string all;
        for (int i = 0; i < mixture.size(); ++i) {
            char text[64];
            std::snprintf(text, sizeof text, "%s %.4g at %.4g; ",
                          mixture.getSpecies(i)->getName().c_str(), mixture._getSpecies(i).getG(),
                          mixture._getSpecies(i).getT());
            all += text;
        }
        return all;
    }

    Mixture mixture;
    Mixture other;
};

// Names

TEST_F(MixtureCompositionTest, ACrystalModificationFallsBackToTheCrystal)
{
    for (const char* const name : {"FE(a)", "FE(c)", "FE(b)", "FE(I)", "FE(IV)", "FE(III)"}) {
        SCOPED_TRACE(name);
        LogCapture capture;
        EXPECT_EQ(mixture.addSpecies(name, 0.0), speciesOf("FE(cr)"));
        const std::string expected =
            std::string("Unknown species \"") + name + "\". Replacing with \"FE(cr)\".\r\n";
        EXPECT_EQ(capture.warnings(), Texts{expected});
        EXPECT_EQ(capture.tagOf(expected), "THERMO");
        EXPECT_TRUE(capture.errors().empty());
    }
}

TEST_F(MixtureCompositionTest, AnUnknownNameIsAnError)
{
    // A liquid, a plain name, a modification of nothing known, an ending without its parenthesis.
    for (const char* const name : {"FE(L)", "XX", "XX(a)", "FE a)", "FE(d)", "fe(cr)", ""}) {
        SCOPED_TRACE(name);
        LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(mixture.addSpecies(name, 1.0), Exception, 4, "Unknown species");
        EXPECT_EQ(capture.errors(), Texts{std::string("Unknown species \"") + name +
                                          "\". Please check propellant specification.\r\n"});
        EXPECT_TRUE(capture.warnings().empty());
    }
    EXPECT_EQ(mixture.size(), 0);
}

TEST_F(MixtureCompositionTest, EveryFormTakesNames)
{
    EXPECT_EQ(mixture.addSpecies("H2"), speciesOf("H2"));
    EXPECT_EQ(mixture.addSpecies("O2", 0.25), speciesOf("O2"));
    EXPECT_EQ(mixture.addSpecies("N2", 400.0, 0.5), speciesOf("N2"));
    EXPECT_EQ(mixture.addSpecies("H2", 500.0, 2e5, 0.125), speciesOf("H2"));
    EXPECT_EQ(listOf(mixture), "H2 1 at 298.1; O2 0.25 at 298.1; N2 0.5 at 400; H2 0.125 at 500; ");
    EXPECT_EQ(mixture._getSpecies(3).getP(), 2e5);
    EXPECT_EQ(mixture._getSpecies(2).getP(), 101325.0);
}

// Replacing

TEST_F(MixtureCompositionTest, ReplacingKeepsFractionAndTemperatureButNotThePressure)
{
    mixture.addSpecies("N2", 300.0, 1e6, 0.5);
    mixture.addSpecies("H2", 500.0, 1e6, 0.5);
    mixture.checkFractions(false);
    EXPECT_EQ(mixture.replaceSpecies("H2", "O2"), 1u);
    EXPECT_EQ(listOf(mixture), "N2 0.5 at 300; O2 0.5 at 500; ");
    EXPECT_EQ(mixture._getSpecies(1).getP(), 101325.0);
    EXPECT_EQ(mixture._getSpecies(1).getR(), 0.0) << "until the next check";
    EXPECT_NEAR(mixture.getMolarFraction(1), 28.0134 / (28.0134 + 31.9988), 1e-12);
}

TEST_F(MixtureCompositionTest, ReplacingNeedsBothSpecies)
{
    KETRA_EXPECT_THROW_MESSAGE(mixture.replaceSpecies("H2", "O2"), Exception, 4, "Unknown species");
    mixture.addSpecies("H2", 300.0, 1.0);
    KETRA_EXPECT_THROW_MESSAGE(mixture.replaceSpecies("N2", "O2"), Exception, 4, "Unknown species");
    KETRA_EXPECT_THROW_CODE(mixture.replaceSpecies("H2", "XX"), Exception, 4);
    KETRA_EXPECT_THROW_CODE(mixture.replaceSpecies("H2", "O2(L)"), Exception, 1);
    EXPECT_EQ(listOf(mixture), "H2 1 at 300; ");
}

// Mixing

TEST_F(MixtureCompositionTest, MixingScalesWhatHasBeenChecked)
{
    mixture.addSpecies("H2", 300.0, 1.0);
    mixture.checkFractions(false);
    other.addSpecies("O2", 300.0, 2e5, 1.0);
    mixture.addMixture(other, 0.25, /*ignoreT=*/false);
    EXPECT_EQ(listOf(mixture), "H2 0.75 at 300; O2 0.25 at 300; ");
    EXPECT_EQ(mixture._getSpecies(1).getP(), 2e5);
    mixture.checkFractions(false);
}

TEST_F(MixtureCompositionTest, MixingLeavesUncheckedFractionsUnscaled)
{
    mixture.addSpecies("H2", 300.0, 0.75);
    other.addSpecies("O2", 300.0, 1.0);
    mixture.addMixture(other, 0.25, /*ignoreT=*/false);
    EXPECT_EQ(listOf(mixture), "H2 0.75 at 300; O2 0.25 at 300; ");
}

TEST_F(MixtureCompositionTest, MixingScalesTheFractionsOfTheOtherToOne)
{
    other.addSpecies("H2", 300.0, 1.0);
    other.addSpecies("O2", 300.0, 3.0);
    mixture.addMixture(other, 1.0, /*ignoreT=*/false);
    EXPECT_EQ(listOf(mixture), "H2 0.25 at 300; O2 0.75 at 300; ");
}

TEST_F(MixtureCompositionTest, MixingMergesEntriesOfTheSameTemperature)
{
    mixture.addSpecies("H2", 300.0, 1.0);
    mixture.checkFractions(false);
    other.addSpecies("H2", 400.0, 0.5);
    other.addSpecies("H2", 300.0, 0.5);
    Mixture ignoring(mixture), byName(mixture);
    mixture.addMixture(other, 0.5, /*ignoreT=*/false);
    EXPECT_EQ(listOf(mixture), "H2 0.75 at 300; H2 0.25 at 400; ");
    ignoring.addMixture(other, 0.5, /*ignoreT=*/true);
    EXPECT_EQ(listOf(ignoring), "H2 1 at 300; ");
    byName.addMixture(other, 0.5);
    EXPECT_EQ(listOf(byName), "H2 0.75 at 300; H2 0.25 at 400; ");
}

TEST_F(MixtureCompositionTest, MixingByMoleTakesMoleFractions)
{
    Mixture byMole(_Species::MOLE_FRACTION);
    other.addSpecies("H2", 300.0, 0.5);
    other.addSpecies("O2", 300.0, 0.5);
    byMole.addMixture(other, 1.0, /*ignoreT=*/false);
    EXPECT_NEAR(byMole.getMolarFraction(0), 31.9988 / (31.9988 + 2.01588), 1e-12);
}

TEST_F(MixtureCompositionTest, MixingKeepsUncheckedTemperaturesInTheLongFormOnly)
{
    other.addSpecies(speciesOf("O2"), 90.0, 1e5, 1.0, /*check=*/false);
    mixture.addMixture(other, 1.0, /*ignoreT=*/false);
    EXPECT_EQ(listOf(mixture), "O2 1 at 90; ");
    Mixture byName;
    KETRA_EXPECT_THROW_CODE(byName.addMixture(other, 1.0), Exception, 1);
}

TEST_F(MixtureCompositionTest, AMergeWithoutNewEntriesCountsAsChecked)
{
    mixture.addSpecies("H2", 300.0, 0.5);
    mixture.addSpecies("O2", 300.0, 0.5);
    mixture.checkFractions(false);
    const double r = mixture.getMolarFraction(0);
    other.addSpecies("O2", 300.0, 1.0);
    mixture.addMixture(other, 0.5);
    EXPECT_EQ(mixture.getMassFraction(0), 0.25);
    EXPECT_EQ(mixture.getMolarFraction(0), r) << "the twin fractions are not worked out anew";

    Mixture longForm(mixture);
    longForm.addMixture(other, 0.5, /*ignoreT=*/false);
    EXPECT_NE(longForm.getMolarFraction(0), r);
}

TEST_F(MixtureCompositionTest, AMixtureCanBeAddedToItself)
{
    mixture.addSpecies("H2", 300.0, 0.25);
    mixture.addSpecies("O2", 300.0, 0.75);
    mixture.checkFractions(false);
    mixture.addMixture(mixture, 0.5, /*ignoreT=*/false);
    EXPECT_EQ(mixture.size(), 2);
    mixture.checkFractions(true);
    EXPECT_NEAR(mixture.getMassFraction(0), 0.25, 1e-12);
    EXPECT_NEAR(mixture.getMassFraction(1), 0.75, 1e-12);
}

TEST_F(MixtureCompositionTest, MixingAMixtureWithoutFractionsFails)
{
    mixture.addSpecies("H2", 300.0, 1.0);
    other.addSpecies("O2", 300.0, 0.0);
    KETRA_EXPECT_THROW_CODE(mixture.addMixture(other, 0.5, /*ignoreT=*/false), Exception, 5);
    KETRA_EXPECT_THROW_CODE(mixture.addMixture(other, 0.5), Exception, 5);
}

// Removing

TEST_F(MixtureCompositionTest, RemovingIonsScalesTheRest)
{
    mixture.addSpecies("H2", 300.0, 0.25);
    mixture.addSpecies("H+", 300.0, 0.5);
    mixture.addSpecies("O2", 300.0, 0.25);
    mixture.removeIons();
    EXPECT_EQ(listOf(mixture), "H2 0.5 at 300; O2 0.5 at 300; ");
    mixture.removeIons();
    EXPECT_EQ(mixture.size(), 2);
}

TEST_F(MixtureCompositionTest, RemovingCondensedSpeciesThatCannotBe)
{
    mixture.addSpecies("H2O(L)", 300.0, 0.25);
    mixture.addSpecies("H2", 300.0, 0.25);
    mixture.addSpecies("C(cr)", 300.0, 0.5);
    mixture.removeCondensed(2500.0);
    EXPECT_EQ(listOf(mixture), "H2 1 at 300; ");
    mixture.removeCondensed(300.0); // nothing is left that would be examined for ever
    EXPECT_EQ(mixture.size(), 1);
}

} // namespace
