#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

using namespace ketra_test;
using reaction::Equilibrium;
using thermo::gasConstant;

namespace {

// A gas of Cp/R = 2.5, H/R = 2.5 T, S/R = 2.5 ln T + 3 at 1000 K and 1 bar, or in 0.5 m^3/kg: all
// figures of the reports follow from these formulas.
class ReportTest : public testing::Test
{
protected:
    ReportTest()
    {
        useSpecies({{"Ar",
                     {{"AR", 1.0}},
                     39.948,
                     0,
                     0.0,
                     {constantCp(200.0, 20000.0, 2.5, 0.0, 3.0)},
                     "gas"}});
        initial = mixtureOf({{"Ar", 300.0, 1.0}});
    }
    std::string report(Equilibrium& problem, unsigned flags)
    {
        problem.solve(false);
        const LogCapture log;
        problem.printResults(flags);
        return log.report();
    }
    std::unique_ptr<thermo::Mixture> initial;
};

} // namespace

TEST_F(ReportTest, ShowsCompositionAndStateInSIUnits)
{
    Equilibrium problem(*initial);
    problem.setPT(1e5, 1000.0);
    EXPECT_EQ(report(problem, 0),
              "\r\n"
              "Process type: (p=const, T=const)\r\n"
              "\r\n"
              "Combustion composition:\r\n"
              "-------------------------------------------------------------\r\n"
              "             Product\t       Mass\t       Mole\r\n"
              "                    \t  fractions\t  fractions\r\n"
              "-------------------------------------------------------------\r\n"
              "                  Ar\t  1.0000000\t  1.0000000\r\n"
              "-------------------------------------------------------------\r\n"
              "Combustion parameters:\r\n"
              "-------------------------------------------------------------\r\n"
              "        Temperature:\t 1000.00000\t          K\r\n"
              "           Pressure:\t    0.10000\t        MPa\r\n"
              "           Enthalpy:\t  20786.180\t      J/mol\r\n"
              "                    \t    520.331\t      kJ/kg\r\n"
              "            Entropy:\t    168.529\t  J/(mol K)\r\n"
              "                    \t      4.219\t  kJ/(kg K)\r\n"
              "    Internal energy:\t  12471.708\t      J/mol\r\n"
              "                    \t    312.199\t      kJ/kg\r\n"
              "       Gibbs energy:\t -147743.081\t      J/mol\r\n"
              "                    \t  -3698.385\t      kJ/kg\r\n");
}

TEST_F(ReportTest, ShowsEnglishUnitsWithALineInFahrenheit)
{
    Equilibrium problem(*initial);
    problem.setPT(1e5, 1000.0);
    EXPECT_EQ(report(problem, 0x80),
              "\r\n"
              "Process type: (p=const, T=const)\r\n"
              "\r\n"
              "Combustion composition:\r\n"
              "-------------------------------------------------------------\r\n"
              "             Product\t       Mass\t       Mole\r\n"
              "                    \t  fractions\t  fractions\r\n"
              "-------------------------------------------------------------\r\n"
              "                  Ar\t  1.0000000\t  1.0000000\r\n"
              "-------------------------------------------------------------\r\n"
              "Combustion parameters:\r\n"
              "-------------------------------------------------------------\r\n"
              "        Temperature:\t 1800.00000\t          R\r\n"
              "                    \t 1340.33000\t          F\r\n"
              "           Pressure:\t   14.50377\t        psi\r\n"
              "           Enthalpy:\t   8936.449\t Btu/lb-mol\r\n"
              "                    \t    223.702\t    Btu/lbm\r\n"
              "            Entropy:\t      0.040\t Btu/(lb-mol R)\r\n"
              "                    \t      1.008\t Btu/(lbm R)\r\n"
              "    Internal energy:\t   5361.869\t Btu/lb-mol\r\n"
              "                    \t    134.221\t    Btu/lbm\r\n"
              "       Gibbs energy:\t -63518.091\t Btu/lb-mol\r\n"
              "                    \t  -1590.019\t    Btu/lbm\r\n");
}

TEST_F(ReportTest, ShowsTheVolumeWhereItIsGiven)
{
    Equilibrium problem(*initial);
    problem.setVT(0.5, 1000.0);
    EXPECT_EQ(report(problem, 0),
              "\r\n"
              "Process type: (v=const, T=const)\r\n"
              "\r\n"
              "Combustion composition:\r\n"
              "-------------------------------------------------------------\r\n"
              "             Product\t       Mass\t       Mole\r\n"
              "                    \t  fractions\t  fractions\r\n"
              "-------------------------------------------------------------\r\n"
              "                  Ar\t  1.0000000\t  1.0000000\r\n"
              "-------------------------------------------------------------\r\n"
              "Combustion parameters:\r\n"
              "-------------------------------------------------------------\r\n"
              "        Temperature:\t 1000.00000\t          K\r\n"
              "    Specific volume:\t    0.50000\t     m^3/kg\r\n"
              "           Enthalpy:\t  20786.180\t      J/mol\r\n"
              "                    \t    520.331\t      kJ/kg\r\n"
              "            Entropy:\t    156.672\t  J/(mol K)\r\n"
              "                    \t      3.922\t  kJ/(kg K)\r\n"
              "    Internal energy:\t  12471.708\t      J/mol\r\n"
              "                    \t    312.199\t      kJ/kg\r\n"
              "       Gibbs energy:\t -135885.386\t      J/mol\r\n"
              "                    \t  -3401.557\t      kJ/kg\r\n");
    EXPECT_NE(report(problem, 0x80).find("    Specific volume:\t    8.00923\t   ft^3/lbm\r\n"),
              std::string::npos);
}

TEST_F(ReportTest, NamesTheTypeOfEachProblem)
{
    Equilibrium problem(*initial);
    problem.setPT(1e5, 1000.0);
    problem.solve(false);
    const double H = problem.getH(), S = problem.getS(), U = problem.getU();
    const double v = gasConstant * 1000.0 / (0.039948 * 1e5);
    const std::vector<std::pair<std::function<void()>, std::string>> problems{
        {[&] { problem.setPH(1e5, H); }, "\r\nProcess type: (p=const, H=const)\r\n"},
        {[&] { problem.setPS(1e5, S); }, "\r\nProcess type: (p=const, S=const)\r\n"},
        {[&] { problem.setPT(1e5, 900.0); }, "\r\nProcess type: (p=const, T=const)\r\n"},
        {[&] { problem.setVU(v, U); }, "\r\nProcess type: (v=const, U=const)\r\n"},
        {[&] { problem.setVS(v, S); }, "\r\nProcess type: (v=const, S=const)\r\n"},
        {[&] { problem.setVT(v, 900.0); }, "\r\nProcess type: (v=const, T=const)\r\n"}};
    for (const auto& [pose, title] : problems) {
        pose();
        EXPECT_EQ(report(problem, 0).substr(0, title.size()), title);
    }
}
