#include <ketra/performance/TheoreticalPerformance.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using ketra_test::bipropellantDocument;
using ketra_test::mixtureDocument;
using performance::TheoreticalPerformance;
using thermo::input::ConfigFile;
using thermo::input::Ratio;

const std::string rule = "***************************************************";

std::string headerWith(const std::string& field)
{
    return "\r\nCase name:" + field + "\r\n\r\n" + rule + "\r\n                 Initial data\r\n" +
           rule + "\r\n";
}

std::string blanks(std::size_t count) { return std::string(count, ' '); }

class ReportOfACase : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static std::string headerOf(const char* name, const char* info)
    {
        const auto document = mixtureDocument({{"H2", 1.0}});
        document->setName(name);
        document->setInfo(info);
        TheoreticalPerformance performance(document.get(), false);
        ketra_test::LogCapture capture;
        performance.printHeader();
        return capture.report();
    }

    static std::string reportOf(TheoreticalPerformance& performance, unsigned int flags)
    {
        ketra_test::LogCapture capture;
        performance.printResults(flags);
        return capture.report();
    }

    // The texts stand in the report in this order.
    static void expectInOrder(const std::string& report, const std::vector<std::string>& texts)
    {
        std::size_t from = 0;
        for (const std::string& text : texts) {
            const std::size_t at = report.find(text, from);
            ASSERT_NE(at, std::string::npos)
                << "no \"" << text << "\" behind position " << from << " of\n"
                << report;
            from = at + text.size();
        }
    }
};

TEST_F(ReportOfACase, CentresAsManyCharactersOfTheNameAsTheTitleHas)
{
    // (41 - 5) / 2 = 18 blanks before, 18 behind
    EXPECT_EQ(headerOf("abcde", "12345"), headerWith(blanks(18) + "abcde" + blanks(18)));
    // (41 - 4) / 2 = 18, and the rest is one longer
    EXPECT_EQ(headerOf("abcd", "1234"), headerWith(blanks(18) + "abcd" + blanks(19)));
}

TEST_F(ReportOfACase, CutsANameThatIsLongerThanTheTitle)
{
    EXPECT_EQ(headerOf("abcdefgh", "123"), headerWith(blanks(19) + "abc" + blanks(19)));
}

TEST_F(ReportOfACase, PlacesAShortNameWhereTheTitleWouldBegin)
{
    EXPECT_EQ(headerOf("ab", "1234567890"), headerWith(blanks(15) + "ab" + blanks(24)));
}

TEST_F(ReportOfACase, ShowsNoNameWithoutATitle)
{
    EXPECT_EQ(headerOf("abcde", ""), headerWith(blanks(41)));
    EXPECT_EQ(headerOf("", ""), headerWith(blanks(41)));
}

TEST_F(ReportOfACase, FillsTheFieldOf41CharactersAtMost)
{
    const std::string longName = "0123456789012345678901234567890123456789ABCDEF";
    EXPECT_EQ(headerOf(longName.c_str(), longName.c_str()), headerWith(longName.substr(0, 41)));
    EXPECT_EQ(headerOf("short", longName.c_str()), headerWith("short" + blanks(36)));
}

TEST_F(ReportOfACase, TakesTheNameAsTextAndNotAsAFormat)
{
    EXPECT_EQ(headerOf("%s%n%d", "123456"), headerWith(blanks(17) + "%s%n%d" + blanks(18)));
}

TEST_F(ReportOfACase, BeginsWithTheHeaderAndThePropellantAndEndsThereWithoutASolution)
{
    const auto mixture = mixtureDocument({{"H2", 0.2}, {"O2", 0.8}});
    TheoreticalPerformance premixed(mixture.get(), false);
    const std::string report = reportOf(premixed, 0);
    expectInOrder(report, {headerWith(blanks(41)) + "\r\nPropellant:\r\n", "      Species  Temp.",
                           "           H2", "           O2", "      Mixture"});
    EXPECT_EQ(report.find("Process type"), std::string::npos);

    const auto pair = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 6.0, Ratio::KM);
    TheoreticalPerformance propellant(pair.get(), false);
    const std::string second = reportOf(propellant, 0);
    expectInOrder(second, {headerWith(blanks(41)) + "\r\nPropellant:\r\n", "    Component  Temp.",
                           "Propellant exploded formula", "alpha", "O/F 0", "rho"});
    EXPECT_EQ(second.find("Process type"), std::string::npos);
}

TEST_F(ReportOfACase, GoesOnWithTheEquilibriumAndItsDerivatives)
{
    const std::vector<std::string> parts{"Initial data",
                                         "Propellant:",
                                         "Process type: (p=const, H=const)",
                                         "Combustion composition:",
                                         "Combustion parameters:",
                                         "Temperature",
                                         "Gibbs energy",
                                         "d_lnV_d_lnT",
                                         "C-phase"};
    const auto mixture = mixtureDocument({{"H2", 0.2}, {"O2", 0.8}});
    TheoreticalPerformance premixed(mixture.get(), false);
    premixed.solve(false);
    expectInOrder(reportOf(premixed, 0), parts);

    const auto pair = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 6.0, Ratio::KM);
    TheoreticalPerformance propellant(pair.get(), false);
    propellant.solve(false);
    expectInOrder(reportOf(propellant, 0), parts);
}

TEST_F(ReportOfACase, IsInEnglishUnitsThroughoutWhenAsked)
{
    const auto document = mixtureDocument({{"H2", 0.2}, {"O2", 0.8}});
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    const std::string report = reportOf(performance, 0x80);
    expectInOrder(report,
                  {"[F]", "[psi]", "[Btu/lb-mol]", "Temperature", " R\r\n", " F\r\n", "psi\r\n",
                   "Btu/lb-mol\r\n", "Cp (eq)", "Btu/(lb-mol R)\r\n", "ft/s\r\n"});
    for (const char* unit : {"MPa", "kJ/kg", "J/mol", " K\r\n", "m/s"})
        EXPECT_EQ(report.find(unit), std::string::npos) << unit;
}

TEST_F(ReportOfACase, GoesOnWithChamberExitAndSeparation)
{
    const auto document = ketra_test::engineWithExit(30.0);
    ketra_test::setAmbientPressure(*document, 1e6);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    expectInOrder(
        reportOf(performance, 0),
        {headerWith(blanks(41)) + "\r\nPropellant:\r\n",
         "\r\n" + rule + "\r\n                Combustion chamber\r\n" + rule + "\r\n",
         "Process type: (p=const, H=const)",
         "\r\n" + rule + "\r\n                      Throat\r\n" + rule + "\r\n",
         "Process type: (p=const, S=const)",
         "\r\n" + rule + "\r\n      Nozzle section e= 30.000 (equilibrium)\r\n" + rule + "\r\n",
         "Velocity", "Specific impulse (vac)",
         "\r\n" + rule +
             "\r\n     Sea level performance with respect to\r\n     flow "
             "separation at e= ",
         "Specific impulse:", "Thrust coeff.:"});
}

TEST_F(ReportOfACase, ShowsTheChamberEndOfAFiniteArea)
{
    const auto document = ketra_test::engineWithExit(30.0);
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(3.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    expectInOrder(reportOf(performance, 0),
                  {"                Combustion chamber\r\n",
                   "              Combustion chamber end\r\n", "                      Throat\r\n",
                   "      Nozzle section e= 30.000 (equilibrium)"});
}

TEST_F(ReportOfACase, HasNoBlockForWhatTheDocumentDoesNotAskFor)
{
    const auto document = ketra_test::engineDocument();
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    const std::string chamberOnly = reportOf(performance, 0);
    expectInOrder(chamberOnly, {"Combustion chamber", "Throat"});
    EXPECT_EQ(chamberOnly.find("Combustion chamber end"), std::string::npos);
    EXPECT_EQ(chamberOnly.find("Nozzle section"), std::string::npos);
    EXPECT_EQ(chamberOnly.find("Sea level performance"), std::string::npos);

    const auto attached = ketra_test::engineWithExit(30.0);
    TheoreticalPerformance engine(attached.get(), false);
    engine.solve(false);
    ketra_test::setAmbientPressure(*attached, 0.9999 * engine.getPaCrit());
    engine.solve(false);
    const std::string withExit = reportOf(engine, 0);
    expectInOrder(withExit, {"Combustion chamber", "Throat", "Nozzle section"});
    EXPECT_EQ(withExit.find("Sea level performance"), std::string::npos);
}

TEST_F(ReportOfACase, NamesAFrozenExit)
{
    const auto document = ketra_test::engineWithExit(30.0);
    ketra_test::freeze(*document).setExpansionRatio(3.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    expectInOrder(reportOf(performance, 0),
                  {"Throat", "      Nozzle section e= 30.000 (frozen)\r\n"});
}

TEST_F(ReportOfACase, OfAnEngineIsInEnglishUnitsThroughoutWhenAsked)
{
    const auto document = ketra_test::engineWithExit(30.0);
    ketra_test::setAmbientPressure(*document, 1e6);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    const std::string report = reportOf(performance, 0x80);
    for (const char* unit : {"MPa", "kJ/kg", "J/mol", " K\r\n", "m/s", "kg/m^3"})
        EXPECT_EQ(report.find(unit), std::string::npos) << unit;
    EXPECT_NE(report.find("ft/s"), std::string::npos);
}

TEST_F(ReportOfACase, HasTransportPropertiesWhenAsked)
{
    const auto document = ketra_test::engineWithExit(30.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(true);
    EXPECT_EQ(reportOf(performance, 0).find("Viscosity"), std::string::npos);
    expectInOrder(reportOf(performance, 0x100), {"Combustion chamber", "Viscosity", "Throat",
                                                 "Viscosity", "Nozzle section", "Viscosity"});
}

TEST_F(ReportOfACase, CallsTheHeaderOfASubclass)
{
    class OwnHeader : public TheoreticalPerformance
    {
    public:
        using TheoreticalPerformance::TheoreticalPerformance;
        void printHeader() override { util::Log::printf("THERMO", "own header%s", util::eol); }
    };
    const auto document = mixtureDocument({{"H2", 1.0}});
    OwnHeader performance(document.get(), false);
    EXPECT_EQ(reportOf(performance, 0).rfind("own header\r\n\r\nPropellant:\r\n", 0), 0U);
}

} // namespace
