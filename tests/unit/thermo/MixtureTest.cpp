#include "MixtureSpecies.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

using ketra_test::LogCapture;
using ketra_test::speciesOf;
using ketra_test::tableOf;
using thermo::_Species;
using thermo::ChemicalElement;
using thermo::ChemicalFormula;
using thermo::Exception;
using thermo::Mixture;
using thermo::Species;

namespace {

using Texts = std::vector<std::string>;

constexpr double R = thermo::gasConstant;
constexpr double relative = 1e-12; // sums of a few terms

class MixtureTest : public ::testing::Test
{
protected:
    MixtureTest() { ketra_test::useMixtureSpecies(); }

    /// Enthalpy of a species with H0 = R (c T + h).
    static double H0(double c, double h, double T) { return R * (c * T + h); }

    Mixture byMass{_Species::MASS_FRACTION};
    Mixture byMole{_Species::MOLE_FRACTION};
};

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

// Fractions

TEST_F(MixtureTest, WorksOutTheFractionsOfTheOtherKind)
{
    byMass.addSpecies("H2", 0.2);
    byMass.addSpecies("O2", 0.8);
    const double moles = 0.2 / 2.01588 + 0.8 / 31.9988;
    expectNear(byMass.getMolarFraction(0), 0.2 / 2.01588 / moles);
    expectNear(byMass.getMolarFraction(1), 0.8 / 31.9988 / moles);
    EXPECT_EQ(byMass.getMassFraction(0), 0.2);

    byMole.addSpecies("H2", 0.2);
    byMole.addSpecies("O2", 0.8);
    const double mass = 0.2 * 2.01588 + 0.8 * 31.9988;
    expectNear(byMole.getMassFraction(0), 0.2 * 2.01588 / mass);
    EXPECT_EQ(byMole.getMolarFraction(1), 0.8);
    expectNear(byMole.getM(), 0.4 * 1.00794 + 1.6 * 15.9994); // the atoms' weights
    expectNear(byMole.getMm(), byMole.getM() / 1000);
}

TEST_F(MixtureTest, ASingleEntryHasBothFractionsOne)
{
    byMass.addSpecies("O2", 1.0);
    byMole.addSpecies("O2", 1.0);
    for (Mixture* mixture : {&byMass, &byMole}) {
        EXPECT_EQ(mixture->getMassFraction(0), 1.0);
        EXPECT_EQ(mixture->getMolarFraction(0), 1.0);
    }
}

TEST_F(MixtureTest, AnEmptyMixtureHasNoSumOfFractions)
{
    LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(byMass.checkFractions(false), Exception, 5, "Invalid mass fraction");
    KETRA_EXPECT_THROW_MESSAGE(byMole.checkFractions(false), Exception, 6,
                               "Invalid molar fraction");
    EXPECT_EQ(capture.errors(), (Texts{"Invalid sum of mass fractions 0.000\r\n",
                                       "Invalid sum of mole fractions 0.000\r\n"}));
    EXPECT_EQ(capture.tagOf("Invalid sum of mass fractions 0.000\r\n"), "THERMO");
    EXPECT_EQ(byMass.getRho(), 0.0);
    byMass.checkFractions(true);
    byMole.checkFractions(true);
    EXPECT_EQ(byMass.getRho(), 0.0);
}

TEST_F(MixtureTest, ASpeciesAloneHasMassFractionOneInAMixtureByMoleToo)
{
    LogCapture capture;
    byMole.addSpecies(speciesOf("H2"));
    EXPECT_EQ(byMole._getSpecies(0).getG(), 1.0);
    EXPECT_EQ(byMole._getSpecies(0).getR(), 0.0);
    KETRA_EXPECT_THROW_CODE(byMole.getMolarFraction(0), Exception, 6);
    EXPECT_EQ(capture.errors(), Texts{"Invalid sum of mole fractions 0.000\r\n"});
    byMass.addSpecies("H2");
    EXPECT_EQ(byMass.getMassFraction(0), 1.0);
}

TEST_F(MixtureTest, ASumOffByLessThanTheToleranceStaysAsItIs)
{
    byMass.addSpecies("H2", 0.5);
    byMass.addSpecies("O2", 0.5 + 0.9e-5);
    byMass.checkFractions(false);
    EXPECT_EQ(byMass.getMassFraction(1), 0.5 + 0.9e-5);
}

TEST_F(MixtureTest, ASumOffByMoreFailsOrIsScaled)
{
    LogCapture capture;
    byMass.addSpecies("H2", 0.5);
    byMass.addSpecies("O2", 0.75);
    KETRA_EXPECT_THROW_CODE(byMass.checkFractions(false), Exception, 5);
    EXPECT_EQ(capture.errors(), Texts{"Invalid sum of mass fractions 1.250\r\n"});
    EXPECT_EQ(byMass._getSpecies(1).getG(), 0.75) << "a failed check touches nothing";
    byMass.checkFractions(true);
    expectNear(byMass.getMassFraction(0), 0.4);
    expectNear(byMass.getMassFraction(1), 0.6);
}

TEST_F(MixtureTest, FractionsThatCannotBeScaledAreRefused)
{
    for (const double f : {0.0, std::nan(""), HUGE_VAL}) {
        SCOPED_TRACE(f);
        Mixture mixture;
        mixture.addSpecies("H2", f);
        KETRA_EXPECT_THROW_CODE(mixture.checkFractions(true), Exception, 5);
        KETRA_EXPECT_THROW_CODE(mixture.checkFractions(false), Exception, 5);
    }
}

TEST_F(MixtureTest, AChangedFractionIsCheckedAnew)
{
    byMole.addSpecies("H2", 0.5);
    byMole.addSpecies("O2", 0.5);
    byMole.checkFractions(false);
    byMole.setFraction(0, 0.25);
    KETRA_EXPECT_THROW_CODE(byMole.getMolarFraction(0), Exception, 6);
    byMole.setFraction(1, 0.75);
    EXPECT_EQ(byMole.getMolarFraction(0), 0.25);
}

TEST_F(MixtureTest, AnEntryWithoutSpeciesIsUnknown)
{
    byMass.addSpecies(nullptr, 300.0, 1e5, 1.0, /*check=*/false);
    LogCapture capture;
    KETRA_EXPECT_THROW_CODE(byMass.setFraction(0, 1.0), Exception, 4);
    KETRA_EXPECT_THROW_CODE(byMass.getMassFraction(0), Exception, 4);
    KETRA_EXPECT_THROW_CODE(byMass.getMolarFraction(0), Exception, 4);
    KETRA_EXPECT_THROW_CODE(byMass.getM(), Exception, 4);
    EXPECT_EQ(capture.errors(), Texts(4, "Unknown species 0\r\n"));
    KETRA_EXPECT_THROW_CODE(byMass.addSpecies(static_cast<const Species*>(nullptr)), Exception, 4);
    KETRA_EXPECT_THROW_CODE(byMass.addSpecies(static_cast<const Species*>(nullptr), 300.0, 1.0),
                            Exception, 4);
}

TEST_F(MixtureTest, AnIndexOutOfRangeFails)
{
    byMass.addSpecies("H2", 1.0);
    EXPECT_THROW(byMass.getH(1, false), std::out_of_range);
    EXPECT_THROW(byMass.getH(-1, false), std::out_of_range);
    EXPECT_THROW(byMass.getSpecies(1), std::out_of_range);
    EXPECT_THROW(byMass.setFraction(1, 0.5), std::out_of_range);
}

// Reading

TEST_F(MixtureTest, FindsTheOnlyEntryOfASpecies)
{
    byMass.addSpecies("H2", 300.0, 0.5);
    byMass.addSpecies("O2", 0.5);
    EXPECT_EQ(byMass._getSpecies(speciesOf("O2")).getG(), 0.5);

    LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(byMass._getSpecies(speciesOf("N2")), Exception, 4,
                               "Unknown species");
    EXPECT_EQ(capture.errors(), Texts{"Unknown species N2\r\n"});
    capture.clear();
    byMass.addSpecies("H2", 400.0, 0.0);
    KETRA_EXPECT_THROW_MESSAGE(byMass._getSpecies(speciesOf("H2")), Exception, 0, "Invalid state");
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(MixtureTest, CopiesItsListsAfterACheckOfTheFractions)
{
    byMass.addSpecies("H2", 0.5);
    KETRA_EXPECT_THROW_CODE(delete byMass.copyAllSpecies(), Exception, 5);
    KETRA_EXPECT_THROW_CODE(delete byMass._copyAllSpecies(), Exception, 5);
    byMass.addSpecies("O2", 0.5);
    const std::unique_ptr<std::vector<const Species*>> all(byMass.copyAllSpecies());
    EXPECT_EQ(*all, (std::vector<const Species*>{speciesOf("H2"), speciesOf("O2")}));
}

TEST_F(MixtureTest, FormulaIsThatOfOneMole)
{
    byMole.addSpecies("H2", 0.75);
    byMole.addSpecies("H2O(L)", 0.25);
    const std::unique_ptr<ChemicalFormula> formula(byMole.copyFormula());
    ASSERT_EQ(formula->size(), 2u);
    EXPECT_EQ(ChemicalElement::getName((*formula)[0]->getType()), "H");
    EXPECT_EQ((*formula)[0]->getNumber(), 2.0);
    EXPECT_EQ((*formula)[1]->getNumber(), 0.25);
    EXPECT_EQ(byMole.getValence(), 2.0 - 0.5);
    expectNear(byMole.getM(), 2.0 * 1.00794 + 0.25 * 15.9994);
    expectNear(byMole.getMm2(), byMole.getM() / 1000 / 0.75);
}

TEST_F(MixtureTest, EquivalenceRatioIsOxidizingOverReducingValences)
{
    byMole.addSpecies("H2", 0.25);
    byMole.addSpecies("O2", 0.25);
    byMole.addSpecies("C(cr)", 0.5);
    // H 0.5 and C 0.5 * 4 against O 0.5 * -2
    expectNear(byMole.getEquivalenceRatio(), 1.0 / 2.5);
    const std::vector carbon{ChemicalElement::getAtom("C")->getType()};
    expectNear(byMole.getEquivalenceRatio(carbon), 1.0 / 0.5);
}

TEST_F(MixtureTest, EquivalenceRatioNeedsAReducingElement)
{
    byMole.addSpecies("O2", 0.5);
    byMole.addSpecies("N2", 0.5);
    KETRA_EXPECT_THROW_MESSAGE(
        byMole.getEquivalenceRatio(), Exception, 0,
        "Could not obtain equivalence ratio: sum of reducing valences is equal to 0.");
}

// Enthalpy

TEST_F(MixtureTest, EnthalpyIsTheSumOverMoleFractions)
{
    byMole.addSpecies("H2", 400.0, 0.25);
    byMole.addSpecies("O2", 500.0, 0.75);
    expectNear(byMole.H(), 0.25 * H0(3.5, -1000, 400) + 0.75 * H0(4, -1200, 500));
    EXPECT_EQ(byMole.getH(), byMole.H());
    expectNear(byMole.U(), byMole.H() - R * (0.25 * 400 + 0.75 * 500));
    EXPECT_EQ(byMole.getU(), byMole.U());
}

TEST_F(MixtureTest, GasAtOneAtmosphereHasNoPressureTermAndAtOneBarNoneThatCounts)
{
    const double h = H0(3.5, -1000, 400);
    byMole.addSpecies("H2", 400.0, 101325.0, 1.0);
    expectNear(byMole.H(), h);
    byMole.setP(100000.0); // a term is asked for, and is 0 at one bar
    expectNear(byMole.H(), h);
    byMole.setP(1e6);
    expectNear(byMole.H(), h + R * 400 * std::log(10.0));
    byMole.setP(0.0); // counts as one atmosphere, and differs from it
    expectNear(byMole.H(), h + R * 400 * std::log(1.01325));
}

TEST_F(MixtureTest, CondensedEntryHasAPressureTermAtOneAtmosphereAndNoneAtOneBar)
{
    speciesOf("H2O(L)")->setRhoTable(tableOf(273.15, 373.15, 1e5, 1e7, 1000.0, 1000.0));
    const double h = H0(9, -37000, 300);
    byMole.addSpecies("H2O(L)", 300.0, 100000.0, 1.0);
    expectNear(byMole.H(), h);
    byMole.setP(101325.0);
    const double term = 1325.0 * 0.01801528 / 1000.0; // (p - 1 bar) M / rho
    EXPECT_NEAR(byMole.H() - h, term, 1e-9);
    EXPECT_GT(term, 1e-2);
}

TEST_F(MixtureTest, EnthalpyOfOneEntryWeightsOnlyItsFirstTerm)
{
    byMole.addSpecies("H2", 400.0, 1e6, 0.25);
    byMole.addSpecies("C(cr)", 400.0, 1e5, 0.75);
    const double first = 0.25 * H0(3.5, -1000, 400), pressure = R * 400 * std::log(10.0);
    expectNear(byMole.H(&byMole._getSpecies(0), /*weighted=*/false), first + pressure);
    expectNear(byMole.getH(&byMole._getSpecies(0), /*weighted=*/true), 0.25 * (first + pressure));
    expectNear(byMole.getH(1, /*weighted=*/false), H0(2, -600, 400));
    expectNear(byMole.getH(1, /*weighted=*/true), 0.75 * H0(2, -600, 400));
}

TEST_F(MixtureTest, OneGasAloneIsCorrectedAtOneAtmosphere)
{
    byMole.addSpecies("H2", 400.0, 101325.0, 1.0);
    const double term = R * 400 * std::log(1.01325);
    expectNear(byMole.getH(0, false), H0(3.5, -1000, 400) + term);
    expectNear(byMole.H(), H0(3.5, -1000, 400));
    byMole.setP(100000.0);
    expectNear(byMole.getH(0, false), H0(3.5, -1000, 400));
}

TEST_F(MixtureTest, AssignedEnthalpyIsCarriedToTheTemperatureByTheHeatCapacity)
{
    Species* oxygen = speciesOf("O2(L)");
    byMole.addSpecies(oxygen, 90.17, 1e5, 1.0);
    expectNear(byMole.H(), -12979.0);
    expectNear(byMole.U(), -12979.0);

    oxygen->setCpTable(tableOf(80.0, 120.0, 1e5, 1e7, 54.0, 54.0));
    byMole.setT(100.17);
    EXPECT_EQ(byMole._getSpecies(0).getT(), 100.17);
    // Trapezoids of 0.1 K over 10 K; the last one is left out, and one more or less by rounding.
    EXPECT_NEAR(byMole.H(), -12979.0 + 54.0 * 10.0, 54.0 * 0.11);
    expectNear(byMole.U(), -12979.0);
}

TEST_F(MixtureTest, EnthalpyBesideTheCurveOfACondensedSpeciesIsInvalid)
{
    byMole.addSpecies("C(cr)", 1.0);
    byMole.setTWithoutCheck(3000.0);
    KETRA_EXPECT_THROW_CODE(byMole.H(), Exception, 1);
    KETRA_EXPECT_THROW_CODE(byMole.U(), Exception, 1);
}

// Density

TEST_F(MixtureTest, DensityComesFromTheCallerOrFromTheTable)
{
    speciesOf("H2O(L)")->setRhoTable(tableOf(280.0, 320.0, 1e5, 3e5, 1000.0, 1002.0));
    Mixture mixture;
    mixture.addSpecies("H2O(L)", 300.0, 2e5, 0.5);
    mixture.addSpecies("H2O(L)", 350.0, 9e5, 0.5); // beside the table in both directions
    expectNear(mixture.getRho(), 1 / (0.5 / 1001.0 + 0.5 / 1002.0));
    const_cast<_Species&>(mixture._getSpecies(0)).setRho(500.0);
    expectNear(mixture.getRho(), 1 / (0.5 / 500.0 + 0.5 / 1002.0));
}

TEST_F(MixtureTest, ACopyHasLostTheAssignedDensities)
{
    byMass.addSpecies("H2", 300.0, 2e6, 1.0);
    const_cast<_Species&>(byMass._getSpecies(0)).setRho(70.0);
    expectNear(byMass.getRho(), 70.0);

    LogCapture capture;
    const Mixture copy(byMass);
    EXPECT_EQ(copy.getMassFraction(0), 1.0);
    EXPECT_EQ(copy._getSpecies(0).getP(), 2e6);
    KETRA_EXPECT_THROW_MESSAGE(copy.getRho(), Exception, 0, "Could not get mixture density");
    EXPECT_EQ(capture.errors(),
              Texts{"Could not get density for H2 at T=300.000 K, p=2.000 MPa\r\n"});
    Mixture assigned(_Species::MOLE_FRACTION);
    assigned = byMass;
    EXPECT_EQ(assigned._getSpecies(0).getRho(), 0.0);
    EXPECT_EQ(assigned.getMolarFraction(0), 1.0);
}

} // namespace
