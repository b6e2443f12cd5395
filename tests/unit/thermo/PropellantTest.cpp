#include "MixtureSpecies.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <cmath>

using ketra_test::LogCapture;
using ketra_test::speciesOf;
using ketra_test::tableOf;
using thermo::ChemicalElement;
using thermo::ChemicalFormula;
using thermo::Exception;
using thermo::Mixture;
using thermo::Propellant;
using thermo::Species;

namespace {

using Texts = std::vector<std::string>;

constexpr double R = thermo::gasConstant;
constexpr double relative = 1e-12; // sums of a few terms
const auto neither = static_cast<Propellant::Type>(2);

// Weights of the formulas, g/mol.
constexpr double MO2 = 2 * 15.9994, MH2 = 2 * 1.00794;
// 2 H2 + O2: half a mole of oxygen for one of hydrogen.
constexpr double km0 = 0.5 * MO2 / MH2;

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

class PropellantTest : public ::testing::Test
{
protected:
    PropellantTest() { ketra_test::useMixtureSpecies(); }

    /// Gaseous oxygen at 400 K and hydrogen at 300 K.
    static Propellant hydrox(double value, bool isAlpha)
    {
        Propellant propellant(value, isAlpha);
        propellant.addComponent(Propellant::OXIDIZER, "O2", 400.0, 101325.0, 1.0);
        propellant.addComponent(Propellant::FUEL, "H2", 300.0, 101325.0, 1.0);
        return propellant;
    }
};

// Ratios

TEST_F(PropellantTest, RatioAndExcessCoefficientFollowFromEachOther)
{
    Propellant propellant(3.0);
    propellant.addComponent(Propellant::OXIDIZER, "O2", 400.0, 101325.0, 1.0);
    propellant.addComponent(Propellant::FUEL, "H2", 300.0, 101325.0, 1.0);
    expectNear(propellant.getMix0(), 0.5);
    expectNear(propellant.getKm0(), km0);
    EXPECT_EQ(propellant.getKm(), 3.0);
    expectNear(propellant.getAlpha(), 3.0 / km0);
    expectNear(propellant.getMix(), 3.0 * MH2 / MO2);
    expectNear(propellant.getGOx(), 0.75);
    expectNear(propellant.getGFuel(), 0.25);

    propellant.assignAlpha(1.0);
    EXPECT_EQ(propellant.getKm(), propellant.getKm0());
    EXPECT_EQ(propellant.getMix(), propellant.getMix0());
    EXPECT_EQ(propellant.getAlpha(), 1.0);
    expectNear(propellant.getNOx(), 1.0 / 3.0);
    expectNear(propellant.getNFuel(), 2.0 / 3.0);

    propellant.assignKm(4.0);
    EXPECT_EQ(propellant.getKm(), 4.0);
    expectNear(propellant.getAlpha(), 4.0 / km0);
}

TEST_F(PropellantTest, TheConstructorTakesEitherNumber)
{
    EXPECT_EQ(hydrox(2.0, true).getAlpha(), 2.0);
    expectNear(hydrox(2.0, true).getKm(), 2.0 * km0);
    EXPECT_EQ(hydrox(2.0, false).getKm(), 2.0);
}

TEST_F(PropellantTest, WithoutValencesTheRatioIsThatOfTheDivision)
{
    Propellant propellant(3.0);
    propellant.addComponent(Propellant::OXIDIZER, "N2", 300.0, 101325.0, 1.0);
    propellant.addComponent(Propellant::FUEL, "H2", 300.0, 101325.0, 1.0);
    EXPECT_TRUE(std::isinf(propellant.getMix0()));
}

TEST_F(PropellantTest, ReadingTwiceComputesOnce)
{
    Propellant propellant = hydrox(3.0, false);
    const double alpha = propellant.getAlpha();
    const double H = propellant.H(), M = propellant.getM();
    // A change behind the propellant's back shows that the kept values are returned.
    propellant.getComponent(Propellant::FUEL)->setFraction(0, 0.5);
    EXPECT_EQ(propellant.getAlpha(), alpha);
    EXPECT_EQ(propellant.getKm(), 3.0);
    EXPECT_EQ(propellant.H(), H);
    EXPECT_EQ(propellant.getM(), M);
    propellant.assignKm(3.0);
    KETRA_EXPECT_THROW_CODE(propellant.getAlpha(), Exception, 5);
}

TEST_F(PropellantTest, EveryAssignmentDropsWhatWasKept)
{
    const auto drops = [this](auto change) {
        Propellant propellant = hydrox(3.0, false);
        propellant.H();
        propellant.U();
        propellant.getAlpha();
        propellant.getMix();
        delete propellant.getMixture();
        propellant.getComponent(Propellant::FUEL)->setFraction(0, 0.5);
        change(propellant);
        KETRA_EXPECT_THROW_CODE(propellant.H(), Exception, 5);
        KETRA_EXPECT_THROW_CODE(propellant.U(), Exception, 5);
        KETRA_EXPECT_THROW_CODE(propellant.getKm0(), Exception, 5);
        KETRA_EXPECT_THROW_CODE(propellant.getM(), Exception, 5);
        KETRA_EXPECT_THROW_CODE(delete propellant.getMixture(), Exception, 5);
    };
    drops([](Propellant& p) { p.assignKm(3.0); });
    drops([](Propellant& p) { p.assignAlpha(1.0); });
    drops([](Propellant& p) { p.assignT0(Propellant::FUEL, 300.0); });
    drops([](Propellant& p) { p.assignP0(Propellant::FUEL, 1e5); });
    drops([](Propellant& p) { p.addComponent(Propellant::OXIDIZER, "N2"); });
    drops([](Propellant& p) { p.addComponent(Propellant::OXIDIZER, "N2", 300.0); });
    drops([](Propellant& p) { p.addComponent(Propellant::OXIDIZER, "N2", 300.0, 1e5, 0.0); });
}

TEST_F(PropellantTest, AddingAMixtureKeepsWhatWasKept)
{
    Propellant propellant = hydrox(3.0, false);
    const double alpha = propellant.getAlpha();
    Mixture nitrogen;
    nitrogen.addSpecies("N2", 300.0, 1.0);
    propellant.addComponent(Propellant::FUEL, nitrogen, 0.5);
    EXPECT_EQ(propellant.getAlpha(), alpha);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->size(), 2);
}

// Components

TEST_F(PropellantTest, ComponentsByNameStartWithoutAFraction)
{
    Propellant propellant(3.0);
    EXPECT_EQ(propellant.addComponent(Propellant::FUEL, "H2"), speciesOf("H2"));
    EXPECT_EQ(propellant.addComponent(Propellant::FUEL, "N2", 400.0), speciesOf("N2"));
    EXPECT_EQ(propellant.addComponent(Propellant::FUEL, "O2", 500.0, 2e6, 0.5), speciesOf("O2"));
    const Mixture& fuel = *propellant.getComponent(Propellant::FUEL);
    ASSERT_EQ(fuel.size(), 3);
    EXPECT_EQ(fuel._getSpecies(0).getG(), 0.0);
    EXPECT_EQ(fuel._getSpecies(0).getT(), 298.15);
    EXPECT_EQ(fuel._getSpecies(1).getT(), 400.0);
    EXPECT_EQ(fuel._getSpecies(1).getP(), 101325.0);
    EXPECT_EQ(fuel._getSpecies(2).getG(), 0.5);
    EXPECT_EQ(fuel._getSpecies(2).getP(), 2e6);
    EXPECT_EQ(propellant.getComponent(Propellant::OXIDIZER)->size(), 0);
}

TEST_F(PropellantTest, ThereIsNoThirdComponent)
{
    Propellant propellant(3.0);
    EXPECT_EQ(propellant.getComponent(neither), nullptr);
    EXPECT_EQ(propellant.addComponent(neither, "H2"), speciesOf("H2"));
    Mixture hydrogen;
    hydrogen.addSpecies("H2", 1.0);
    propellant.addComponent(neither, hydrogen, 1.0);
    propellant.assignT0(neither, 300.0);
    propellant.assignP0(neither, 300.0);
    EXPECT_EQ(propellant.getComponent(Propellant::OXIDIZER)->size(), 0);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->size(), 0);
}

TEST_F(PropellantTest, AnUnknownComponentIsAnError)
{
    LogCapture capture;
    Propellant propellant(3.0);
    KETRA_EXPECT_THROW_MESSAGE(propellant.addComponent(Propellant::FUEL, "XX"), Exception, 4,
                               "Unknown species");
    EXPECT_EQ(capture.errors(),
              Texts{"Unknown species \"XX\". Please check propellant specification.\r\n"});
    EXPECT_EQ(propellant.addComponent(Propellant::FUEL, "FE(a)"), speciesOf("FE(cr)"));
}

TEST_F(PropellantTest, AnImpossibleTemperatureIsReplacedWithAWarning)
{
    struct Case {
        const char* name;
        double T, stored;
        const char* warning;
    };
    const Case cases[] = {
        {"H2", 20.0, 298.15,
         "T=20.00 K could not be assigned to the species \"H2\". Using "
         "T=298.15 K"},
        {"O2(L)", 300.0, 90.17,
         "T=300.00 K could not be assigned to the species \"O2(L)\". Using "
         "T=90.17 K"},
        {"O2(L)", 90.5, 90.17, nullptr},
        {"O2(L)", 0.0, 90.17, nullptr},
        {"O2(L)", -1.0, 90.17, nullptr},
        {"H2", 0.0, 298.15, nullptr},
        {"H2", 250.0, 250.0, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name + std::to_string(c.T));
        LogCapture capture;
        Propellant propellant(3.0);
        propellant.addComponent(Propellant::FUEL, c.name, c.T);
        EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->_getSpecies(0).getT(), c.stored);
        if (c.warning) {
            const std::string text = std::string("Temperature ") + c.warning + " instead.\r\n";
            EXPECT_EQ(capture.warnings(), Texts{text});
            EXPECT_EQ(capture.tagOf(text), "THERMO");
        } else {
            EXPECT_TRUE(capture.lines().empty());
        }
    }
}

TEST_F(PropellantTest, ASolidOfOneIntervalWithoutATemperatureStandsAt298K)
{
    Propellant propellant(3.0);
    propellant.addComponent(Propellant::FUEL, "C(cr)");
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->_getSpecies(0).getT(), 298.15);
}

TEST_F(PropellantTest, TemperatureAndPressureOfOnePart)
{
    Propellant propellant = hydrox(3.0, false);
    propellant.assignT0(Propellant::FUEL, 350.0);
    propellant.assignP0(Propellant::OXIDIZER, 5e6);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->_getSpecies(0).getT(), 350.0);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->_getSpecies(0).getP(), 101325.0);
    EXPECT_EQ(propellant.getComponent(Propellant::OXIDIZER)->_getSpecies(0).getT(), 400.0);
    EXPECT_EQ(propellant.getComponent(Propellant::OXIDIZER)->_getSpecies(0).getP(), 5e6);
    propellant.assignT0(Propellant::FUEL, 0.0);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->_getSpecies(0).getT(), 298.15);
    KETRA_EXPECT_THROW_CODE(propellant.assignT0(Propellant::FUEL, 20.0), Exception, 1);
}

TEST_F(PropellantTest, AMixtureOfTheOxidizerStandsInBothParts)
{
    Propellant propellant(3.0);
    Mixture oxygen, hydrogen;
    oxygen.addSpecies("O2", 300.0, 1.0);
    hydrogen.addSpecies("H2", 300.0, 1.0);
    propellant.addComponent(Propellant::FUEL, hydrogen, 1.0);
    propellant.addComponent(Propellant::OXIDIZER, oxygen, 0.5);
    const Mixture& fuel = *propellant.getComponent(Propellant::FUEL);
    const Mixture& oxidizer = *propellant.getComponent(Propellant::OXIDIZER);
    ASSERT_EQ(fuel.size(), 2);
    EXPECT_EQ(fuel.getSpecies(1), speciesOf("O2"));
    EXPECT_EQ(fuel._getSpecies(1).getG(), 0.5);
    ASSERT_EQ(oxidizer.size(), 1);
    EXPECT_EQ(oxidizer._getSpecies(0).getG(), 0.5);
}

// Sums

TEST_F(PropellantTest, TheMixtureHoldsTheFuelFirst)
{
    const Propellant propellant = hydrox(3.0, false);
    for (int i = 0; i < 2; ++i) { // the second one is a copy of what was kept
        const std::unique_ptr<Mixture> mixture(propellant.getMixture());
        ASSERT_EQ(mixture->size(), 2);
        EXPECT_EQ(mixture->getSpecies(0), speciesOf("H2"));
        EXPECT_EQ(mixture->getMassFraction(0), 0.25);
        EXPECT_EQ(mixture->_getSpecies(0).getT(), 300.0);
        EXPECT_EQ(mixture->getMassFraction(1), 0.75);
        EXPECT_EQ(mixture->_getSpecies(1).getT(), 400.0);
        mixture->setFraction(0, 0.0);
    }
}

TEST_F(PropellantTest, ASpeciesInBothPartsIsOneEntryAtOneTemperatureAndTwoAtTwo)
{
    for (const double T : {400.0, 500.0}) {
        Propellant propellant = hydrox(3.0, false);
        propellant.addComponent(Propellant::FUEL, "O2", T, 101325.0, 0.5);
        propellant.getComponent(Propellant::FUEL)->setFraction(0, 0.5);
        const std::unique_ptr<Mixture> mixture(propellant.getMixture());
        if (T == 400.0) {
            ASSERT_EQ(mixture->size(), 2);
            expectNear(mixture->getMassFraction(1), 0.25 * 0.5 + 0.75);
        } else {
            ASSERT_EQ(mixture->size(), 3);
            EXPECT_EQ(mixture->_getSpecies(1).getT(), 500.0);
            EXPECT_EQ(mixture->_getSpecies(2).getT(), 400.0);
        }
    }
}

TEST_F(PropellantTest, FormulaAndMassAreThoseOfOneMoleOfTheCharge)
{
    const Propellant propellant = hydrox(1.0, true); // 1/3 O2 + 2/3 H2
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<ChemicalFormula> formula(propellant.getFormula());
        ASSERT_EQ(formula->size(), 2u);
        EXPECT_EQ(ChemicalElement::getName((*formula)[0]->getType()), "O");
        expectNear((*formula)[0]->getNumber(), 2.0 / 3.0);
        expectNear((*formula)[1]->getNumber(), 4.0 / 3.0);
    }
    expectNear(propellant.getM(), MO2 / 3 + MH2 * 2 / 3);
}

TEST_F(PropellantTest, EnthalpyAndEnergyAreWeightedByMoles)
{
    const Propellant propellant = hydrox(1.0, true);
    const double Hox = R * (4.0 * 400 - 1200), Hf = R * (3.5 * 300 - 1000);
    expectNear(propellant.H(), Hox / 3 + Hf * 2 / 3);
    EXPECT_EQ(propellant.getH(), propellant.H());
    expectNear(propellant.U(), (Hox - R * 400) / 3 + (Hf - R * 300) * 2 / 3);
    EXPECT_EQ(propellant.getU(), propellant.U());
    const std::unique_ptr<Mixture> mixture(propellant.getMixture());
    // The mixture goes by the species' molar masses, the propellant by those of the atoms.
    EXPECT_NEAR(mixture->H(), propellant.H(), 1e-6 * std::abs(propellant.H()));
}

TEST_F(PropellantTest, OneAtmosphereIsUncorrectedForLiquidsToo)
{
    speciesOf("H2O(L)")->setRhoTable(tableOf(273.15, 373.15, 1e5, 1e7, 1000.0, 1000.0));
    Propellant propellant(1.0);
    propellant.addComponent(Propellant::OXIDIZER, "H2O(L)", 300.0, 101325.0, 1.0);
    propellant.addComponent(Propellant::FUEL, "H2O(L)", 300.0, 101325.0, 1.0);
    const double h = R * (9.0 * 300 - 37000);
    expectNear(propellant.H(), h);
    propellant.assignP0(Propellant::FUEL, 1e5);
    expectNear(propellant.H(), h);
    propellant.assignP0(Propellant::FUEL, 0.0); // as it stands: below one bar nothing is added
    expectNear(propellant.H(), h);
    propellant.assignP0(Propellant::FUEL, 101e5);
    EXPECT_NEAR(propellant.H() - h, 0.5 * 1e7 * 0.01801528 / 1000.0, 1e-8);

    const std::unique_ptr<Mixture> mixture(propellant.getMixture());
    EXPECT_GT(mixture->H(), propellant.H()) << "which corrects the other half too";
}

TEST_F(PropellantTest, DensityIsThatOfTheTwoVolumes)
{
    speciesOf("H2O(L)")->setRhoTable(tableOf(280.0, 320.0, 1e5, 3e5, 1000.0, 1002.0));
    speciesOf("O2(L)")->setRhoTable(tableOf(80.0, 100.0, 1e5, 3e5, 1140.0, 1140.0));
    Propellant propellant(3.0);
    propellant.addComponent(Propellant::OXIDIZER, "O2(L)", 90.17, 1e5, 1.0);
    EXPECT_EQ(propellant.getComponent(Propellant::FUEL)->size(), 0);
    KETRA_EXPECT_THROW_CODE(propellant.getRho(), Exception, 5);
    propellant.addComponent(Propellant::FUEL, "H2O(L)", 300.0, 2e5, 0.5);
    propellant.addComponent(Propellant::FUEL, "H2O(L)", 350.0, 9e5, 0.5);
    const double fuel = 1 / (0.5 / 1001.0 + 0.5 / 1002.0);
    expectNear(propellant.getRho(), 1 / (0.75 / 1140.0 + 0.25 / fuel));

    // An assigned density plays no part.
    const_cast<thermo::_Species&>(propellant.getComponent(Propellant::FUEL)->_getSpecies(0))
        .setRho(500.0);
    expectNear(propellant.getRho(), 1 / (0.75 / 1140.0 + 0.25 / fuel));
}

TEST_F(PropellantTest, AnUnknownDensityIsAnError)
{
    LogCapture capture;
    const Propellant propellant = hydrox(3.0, false);
    KETRA_EXPECT_THROW_MESSAGE(propellant.getRho(), Exception, 0, "Could not get mixture density");
    EXPECT_EQ(capture.errors(),
              Texts{"Could not get density for O2 at T=400.000 K, p=0.101 MPa\r\n"});
}

TEST_F(PropellantTest, AWrongSumOfFractionsShowsAtTheFirstReading)
{
    LogCapture capture;
    Propellant propellant(3.0);
    propellant.addComponent(Propellant::OXIDIZER, "O2", 400.0, 101325.0, 0.5);
    propellant.addComponent(Propellant::FUEL, "H2", 300.0, 101325.0, 1.0);
    EXPECT_TRUE(capture.lines().empty());
    KETRA_EXPECT_THROW_CODE(propellant.getMix(), Exception, 5);
    KETRA_EXPECT_THROW_CODE(propellant.H(), Exception, 5);
    KETRA_EXPECT_THROW_CODE(propellant.getRho(), Exception, 5);
    KETRA_EXPECT_THROW_CODE(delete propellant.getFormula(), Exception, 5);
    KETRA_EXPECT_THROW_CODE(delete propellant.getMixture(), Exception, 5);
    EXPECT_EQ(capture.errors(), Texts(5, "Invalid sum of mass fractions 0.500\r\n"));
    EXPECT_EQ(propellant.getKm(), 3.0) << "needs no composition";
}

TEST_F(PropellantTest, ACopyStartsWithAnEmptyCache)
{
    Propellant source = hydrox(3.0, false);
    source.getAlpha();
    source.getComponent(Propellant::FUEL)->setFraction(0, 0.5);
    const Propellant copy(source);
    EXPECT_EQ(copy.getKm(), 3.0);
    KETRA_EXPECT_THROW_CODE(copy.getAlpha(), Exception, 5);
    Propellant assigned(1.0);
    assigned = hydrox(2.0, true);
    EXPECT_EQ(assigned.getAlpha(), 2.0);
    expectNear(assigned.getKm(), 2.0 * km0);
}

// Report

const std::string rule = "-------------------------------------------------------------\r\n";

std::string printed(const Propellant& propellant, unsigned flags)
{
    LogCapture capture;
    propellant.print(flags);
    return capture.report();
}

// A mole of charge is 1/3 O2 at 400 K and 2/3 H2 at 300 K; the entries show the pressure term
// R T ln 1.01325 that a single entry has at one atmosphere.
TEST_F(PropellantTest, ReportInSiUnits)
{
    EXPECT_EQ(printed(hydrox(1.0, true), 0),
              "\r\nPropellant:\r\n" + rule +
                  "    Component  Temp.\t Pressure\t   Enthalpy\t           \t       Mass\r\n"
                  "                 [K]\t    [MPa]\t   [kJ/mol]\t    [kJ/kg]\t   fraction\r\n" +
                  rule +
                  "           H2  300.0\t   0.1013\t     0.3100\t    153.770\t  0.1118983\r\n"
                  "           O2  400.0\t   0.1013\t     1.1524\t     36.013\t  0.8881017\r\n" +
                  rule + "      Mixture       \t         \t     1.3857\t    115.381\t\r\n" + rule +
                  "Propellant exploded formula: (O)0.666667 (H)1.333333 \r\n"
                  "              alpha:\t  1.0000000 (oxidizer excess coefficient)\r\n"
                  "                O/F:\t  7.9366827\r\n"
                  "              O/F 0:\t  7.9366827 (stoichiometric)\r\n"
                  "                rho:\t    unknown\r\n");
}

TEST_F(PropellantTest, ReportInEnglishUnits)
{
    const std::string report = printed(hydrox(1.0, true), Mixture::ENGLISH);
    for (const char* const line :
         {"                 [F]\t    [psi]\t [Btu/lb-mol]\t  [Btu/lbm]\t   fraction\r\n",
          "           H2   80.3\t  14.6959\t   133.2683\t     66.109\t  0.1118983\r\n",
          "           O2  260.3\t  14.6959\t   495.4315\t     15.483\t  0.8881017\r\n",
          "      Mixture       \t         \t   595.7633\t     49.605\t\r\n"})
        EXPECT_NE(report.find(line), std::string::npos) << line << report;
}

TEST_F(PropellantTest, ReportOfAKnownDensity)
{
    speciesOf("O2(L)")->setRhoTable(tableOf(80.0, 100.0, 1e5, 3e5, 1000.0, 1000.0));
    speciesOf("H2O(L)")->setRhoTable(tableOf(280.0, 320.0, 1e5, 3e5, 1000.0, 1000.0));
    Propellant propellant(1.0);
    propellant.addComponent(Propellant::OXIDIZER, "O2(L)", 90.17, 1e5, 1.0);
    propellant.addComponent(Propellant::FUEL, "H2O(L)", 300.0, 1e5, 1.0);
    EXPECT_TRUE(
        printed(propellant, 0).ends_with("                rho:\t 1000.00000\t     kg/m^3\r\n"));
    // 1000 / 16.018463373960138
    EXPECT_TRUE(printed(propellant, Mixture::ENGLISH)
                    .ends_with("                rho:\t   62.42796\t   lbm/ft^3\r\n"));
}

} // namespace
