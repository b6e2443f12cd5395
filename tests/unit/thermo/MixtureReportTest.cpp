#include "MixtureSpecies.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <gtest/gtest.h>

using ketra_test::LogCapture;
using ketra_test::speciesOf;
using ketra_test::tableOf;
using thermo::_Species;
using thermo::Exception;
using thermo::Mixture;

namespace {

const std::string rule = "-------------------------------------------------------------\r\n";

class MixtureReportTest : public ::testing::Test
{
protected:
    MixtureReportTest() { ketra_test::useMixtureSpecies(); }

    std::string printed(const Mixture& mixture, unsigned flags) const
    {
        LogCapture capture;
        mixture.print("Title", flags);
        return capture.report();
    }

    /// Two gases and a trace. H0 = R (c T + h): R 400 and R 300 J/mol.
    static Mixture sample()
    {
        Mixture mixture(_Species::MOLE_FRACTION);
        mixture.addSpecies("H2", 400.0, 101325.0, 0.75);
        mixture.addSpecies("O2", 375.0, 100000.0, 0.25);
        mixture.addSpecies("N2", 300.0, 100000.0, 1e-8);
        return mixture;
    }
};

// With R = 8.314472 and M = 2.01588 and 31.9988 g/mol: the entry of hydrogen shows
// 0.75 R 400 + R 400 ln 1.01325 J/mol (a single entry is corrected at one atmosphere), that of
// oxygen 0.25 R 300. The mean has no such term: 0.75 R 400 + 0.25 R 300 over 9.51161 g/mol.

TEST_F(MixtureReportTest, ShortTableListsBothFractions)
{
    EXPECT_EQ(printed(sample(), 0), rule +
                                        "               Title\t       Mass\t       Mole\r\n"
                                        "                    \t  fractions\t  fractions\r\n" +
                                        rule +
                                        "                  H2\t  0.1589542\t  0.7500000\r\n"
                                        "                  O2\t  0.8410458\t  0.2500000\r\n" +
                                        rule);
}

TEST_F(MixtureReportTest, ListsTracesAndTotalOnRequest)
{
    EXPECT_EQ(printed(sample(), Mixture::PRINT_ALL | Mixture::TOTAL),
              rule +
                  "               Title\t       Mass\t       Mole\r\n"
                  "                    \t  fractions\t  fractions\r\n" +
                  rule +
                  "                  H2\t  0.1589542\t  0.7500000\r\n"
                  "                  O2\t  0.8410458\t  0.2500000\r\n"
                  "                  N2\t  0.0000000\t  0.0000000\r\n" +
                  rule + "              Total:\t  1.0000000\t  1.0000000\r\n" + rule);
}

TEST_F(MixtureReportTest, LongTableShowsStatesAndEnthalpies)
{
    EXPECT_EQ(printed(sample(), Mixture::LONG_TABLE),
              rule +
                  "        Title  Temp.\t Pressure\t   Enthalpy\t           \t       Mass\r\n"
                  "                 [K]\t    [MPa]\t   [kJ/mol]\t    [kJ/kg]\t   fraction\r\n" +
                  rule +
                  "           H2  400.0\t   0.1013\t     2.5381\t   1259.063\t  0.1589542\r\n"
                  "           O2  375.0\t   0.1000\t     0.6236\t     19.488\t  0.8410458\r\n" +
                  rule + "      Mixture       \t         \t     3.1179\t    327.802\t\r\n" + rule);
}

TEST_F(MixtureReportTest, LongTableInEnglishUnits)
{
    EXPECT_EQ(printed(sample(), Mixture::LONG_TABLE | Mixture::ENGLISH),
              rule +
                  "        Title  Temp.\t Pressure\t   Enthalpy\t           \t       Mass\r\n"
                  "                 [F]\t    [psi]\t [Btu/lb-mol]\t  [Btu/lbm]\t   fraction\r\n" +
                  rule +
                  "           H2  260.3\t  14.6959\t  1091.1947\t    541.299\t  0.1589542\r\n"
                  "           O2  215.3\t  14.5038\t   268.0935\t      8.378\t  0.8410458\r\n" +
                  rule + "      Mixture       \t         \t  1340.4673\t    140.930\t\r\n" + rule);
}

TEST_F(MixtureReportTest, TotalTakesThePlaceOfTheMean)
{
    const std::string report = printed(sample(), Mixture::LONG_TABLE | Mixture::TOTAL);
    const std::string end = rule + "              Total:\t  1.0000000\t  1.0000000\r\n" + rule;
    EXPECT_TRUE(report.ends_with(end));
    EXPECT_EQ(report.find("Mixture"), std::string::npos);
}

TEST_F(MixtureReportTest, AnEntryWithoutAPressureShowsOneAtmosphere)
{
    Mixture mixture = sample();
    for (const double p : {0.0, -1.0}) {
        mixture.setP(p);
        EXPECT_NE(printed(mixture, Mixture::LONG_TABLE).find("400.0\t   0.1013\t"),
                  std::string::npos);
    }
}

TEST_F(MixtureReportTest, ExplodedFormulaOfAMoleAndOfHundredGrams)
{
    const std::string table = printed(sample(), 0);
    EXPECT_EQ(printed(sample(), Mixture::FORMULA).substr(table.size()),
              "Exploded formula   \r\n"
              "1)  based on 1 mole:\t (H)1.500000 (O)0.500000 (N)0.000000 \r\n"
              "         molar mass:\t    9.51161\t x10^-3 kg/mol\r\n"
              "2)   based on 100 g:\t (H)15.770200 (O)5.256733 (N)0.000000 \r\n"
              "         molar mass:\t  100.00000\t x10^-3 kg/mol\r\n"
              "\r\n"
              "  Equivalence ratio:\t    0.66667\t           \r\n");
}

TEST_F(MixtureReportTest, ExplodedFormulaInEnglishUnits)
{
    const std::string table = printed(sample(), 0);
    EXPECT_EQ(printed(sample(), Mixture::FORMULA | Mixture::ENGLISH).substr(table.size()),
              "Exploded formula   \r\n"
              "1)  based on 1 mole:\t (H)1.500000 (O)0.500000 (N)0.000000 \r\n"
              "         molar mass:\t   95.11610\t x10^-6 lbm/lb-mol\r\n"
              "2)   based on 100 g:\t (H)15.770200 (O)5.256733 (N)0.000000 \r\n"
              "         molar mass:\t 1000.00000\t x10^-6 lbm/lb-mol\r\n"
              "\r\n"
              "  Equivalence ratio:\t    0.66667\t           \r\n");
}

TEST_F(MixtureReportTest, AFormulaWithoutReducingElementsFails)
{
    Mixture mixture;
    mixture.addSpecies("O2", 1.0);
    LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(
        mixture.print("Title", Mixture::FORMULA), Exception, 0,
        "Could not obtain equivalence ratio: sum of reducing valences is equal to 0.");
}

TEST_F(MixtureReportTest, DensityIsPrintedLastOrUnknown)
{
    speciesOf("H2O(L)")->setRhoTable(tableOf(280.0, 320.0, 1e5, 3e5, 1000.0, 1000.0));
    Mixture water;
    water.addSpecies("H2O(L)", 300.0, 1e5, 1.0);
    const std::string table = printed(water, 0);
    EXPECT_EQ(printed(water, Mixture::DENSITY).substr(table.size()),
              "            Density:\t 1000.00000\t     kg/m^3\r\n");
    // 1000 / 16.018463373960138
    EXPECT_EQ(printed(water, Mixture::DENSITY | Mixture::ENGLISH).substr(table.size()),
              "            Density:\t   62.42796\t   lbm/ft^3\r\n");
    EXPECT_TRUE(printed(sample(), Mixture::DENSITY)
                    .ends_with(rule + "            Density:\t    unknown\r\n"));
}

TEST_F(MixtureReportTest, AnEmptyMixtureHasNothingToPrint)
{
    LogCapture capture;
    KETRA_EXPECT_THROW_CODE(Mixture().print("Title", 0), Exception, 5);
    EXPECT_EQ(capture.report(), "");
}

} // namespace
