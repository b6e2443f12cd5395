#include "Sections.h"

#include <support/CapturingLogger.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>

// The printed report of a section, in equilibrium and frozen.

namespace {

using namespace ketra_test;

constexpr unsigned int si = 0, english = 0x80, transport = 0x100;
constexpr double foot = 0.3048;                    // m
constexpr double pound = 0.45359237;               // kg
constexpr double densityUnit = 16.018463373960138; // kg/m^3 in lbm/ft^3
const std::string stars(51, '*');
const std::string dashes(51, '-');
const std::string lineEnd = "\r\n";

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...)
{
    char buffer[200];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

std::string row(const char* name, double value, const char* unit)
{
    return formatted("%19s:\t %10.5f\t %10s\r\n", name, value, unit);
}

std::string row3(const char* name, double value, const char* unit)
{
    return formatted("%19s:\t %10.3f\t %10s\r\n", name, value, unit);
}

std::string row7(const char* name, double value, const char* unit)
{
    return formatted("%19s:\t %10.7f\t %10s\r\n", name, value, unit);
}

std::string bare7(const char* name, double value)
{
    return formatted("%19s:\t %10.7f\r\n", name, value);
}

std::string more(double value, const char* unit)
{
    return formatted("%20s\t %10.5f\t %10s\r\n", "", value, unit);
}

std::string more3(double value, const char* unit)
{
    return formatted("%20s\t %10.3f\t %10s\r\n", "", value, unit);
}

std::string frame(const std::string& title)
{
    return lineEnd + stars + lineEnd + title + stars + lineEnd;
}

/// What an operation prints.
template <class Action> std::string printed(Action action)
{
    const LogCapture log;
    action();
    for (const LogLine& line : log.lines())
        EXPECT_EQ(line.level, util::Logger::REPORT) << line.text;
    return log.report();
}

/// The rows of the performance, from numbers of the test's own.
std::string performanceRows(const Section& s, double vacuum, double optimum, double kVacuum,
                            double kOptimum, unsigned int flags)
{
    const bool us = (flags & english) != 0;
    const char* unit = us ? "ft/s" : "m/s";
    const auto velocity = [&](double w) { return us ? w / foot : w; };
    return row("Velocity", velocity(s.getW()), unit) + row7("Mach number", s.getMach(), "") +
           row("Pressure ratio", s.getPi(), "") +
           row("Specific impulse (vac)", velocity(vacuum), unit) +
           row("Specific impulse (opt)", velocity(optimum), unit) +
           row("Thrust coeff. (vac)", kVacuum, "") + row("Thrust coeff. (opt)", kOptimum, "");
}

class SectionReport : public testing::Test
{
protected:
    static Chamber& chamber()
    {
        static const std::unique_ptr<Chamber> shared = hydrogenChamber();
        return *shared;
    }
    static const Section& section()
    {
        static const Section shared(&chamber(), 10.0, Section::AREA_RATIO, true, false, true, -1);
        return shared;
    }
};

TEST_F(SectionReport, IsTitleProblemDerivativesAndPerformance)
{
    const Section& s = section();
    for (const unsigned int flags : {si, english, transport, english | transport}) {
        const std::string problem = printed([&] { s.getReaction()->printResults(flags); });
        const std::string derivatives = printed([&] { s.getDerivatives()->printResults(flags); });
        EXPECT_EQ(printed([&] { s.printResults(flags); }),
                  frame("      Nozzle section e= 10.000 (equilibrium)\r\n") + problem +
                      derivatives +
                      performanceRows(s, s.getIs_v_core(), s.getIs_core(), s.getKp_v_core(),
                                      s.getKp_core(), flags));
    }
}

TEST_F(SectionReport, AddsTransportOnlyWhenAsked)
{
    const Section& s = section();
    const auto holdsViscosity = [&](unsigned int flags) {
        return printed([&] { s.printResults(flags); }).find("Viscosity") != std::string::npos;
    };
    EXPECT_FALSE(holdsViscosity(si));
    EXPECT_TRUE(holdsViscosity(transport));
}

TEST_F(SectionReport, WeightsThePerformanceByTheLayer)
{
    const auto layered = layeredChamber(0.1);
    const Section s = byArea(*layered, 10.0);
    const double vacuum = 0.9 * s.getIs_v_core() + 0.1 * s.getIs_v_blc();
    const double optimum = 0.9 * s.getIs_core() + 0.1 * s.getIs_v_blc();
    const double c = 0.9 * layered->getBetta(0.0) + 0.1 * layered->getBetta_blc();
    for (const unsigned int flags : {si, english}) {
        const std::string report = printed([&] { s.printResults(flags); });
        const std::string rows =
            performanceRows(s, vacuum, optimum, vacuum / c, optimum / c, flags);
        ASSERT_GT(report.size(), rows.size());
        EXPECT_EQ(report.substr(report.size() - rows.size()), rows);
    }
}

TEST_F(SectionReport, NamesTheSectionWhereTheFlowSeparates)
{
    const Section& s = section();
    const std::string header = lineEnd + stars + lineEnd +
                               "     Sea level performance with respect to\r\n"
                               "     flow separation at e= 10.000\r\n" +
                               stars + lineEnd;
    EXPECT_EQ(printed([&] { s.printOverexpansionPerformanceHeader(si); }), header);
    EXPECT_EQ(printed([&] { s.printOverexpansionPerformance(si); }),
              header + row("Specific impulse", s.getIs_core(), "m/s") +
                  row("Thrust coeff.", s.getKp_core(), ""));
    EXPECT_EQ(printed([&] { s.printOverexpansionPerformance(english); }),
              header + row("Specific impulse", s.getIs_core() / foot, "ft/s") +
                  row("Thrust coeff.", s.getKp_core(), ""));
}

TEST_F(SectionReport, ShowsAnAreaRatioOfAnyLength)
{
    const Section narrow = byArea(chamber(), 1.5);
    EXPECT_EQ(printed([&] { narrow.printHeader(si); }),
              frame("      Nozzle section e=  1.500 (equilibrium)\r\n"));
    const Section wide = byArea(chamber(), 123.4567);
    EXPECT_EQ(printed([&] { wide.printHeader(si); }),
              frame("      Nozzle section e= 123.457 (equilibrium)\r\n"));
}

class FrozenReport : public testing::Test
{
protected:
    static const FrozenSection& section()
    {
        static const std::unique_ptr<FrozenChamber> chamber = frozenChamber();
        static const FrozenSection shared(chamber.get(), 40.0, Section::AREA_RATIO, true);
        return shared;
    }
    static std::string composition(unsigned int flags)
    {
        const std::unique_ptr<thermo::Mixture> mixture(section().getResultingMixture());
        return printed([&] { mixture->print("Product", flags); });
    }
};

TEST_F(FrozenReport, HasItsOwnTitle)
{
    const FrozenSection& s = section();
    EXPECT_EQ(printed([&] { s.printHeader(si); }),
              frame("      Nozzle section e= 40.000 (frozen)\r\n"));
}

TEST_F(FrozenReport, ShowsTheFrozenStateInSIUnits)
{
    const FrozenSection& s = section();
    EXPECT_EQ(printed([&] { s.printConditions(si); }),
              "\r\nCombustion composition:\r\n" + composition(si) + "Combustion parameters:\r\n" +
                  dashes + lineEnd + row("Temperature", s.getT(), "K") +
                  row("Pressure", s.getP() / 1e6, "MPa") + row3("Enthalpy", s.getH(), "J/mol") +
                  more3(s.getH_spec() / 1e3, "kJ/kg") + row3("Entropy", s.getS(), "J/(mol K)") +
                  more3(s.getS_spec() / 1e3, "kJ/(kg K)") +
                  row3("Internal energy", s.getU(), "J/mol") + more3(s.getU_spec() / 1e3, "kJ/kg") +
                  row3("Gibbs energy", s.getG(), "J/mol") + more3(s.getG_spec() / 1e3, "kJ/kg") +
                  bare7("M", s.getM()) + row7("Molar mass", s.getMm(), "kg/mol") +
                  row("Cp (eq)", s.getCp(), "J/(mol K)") + more(s.getCp_spec() / 1e3, "kJ/(kg K)") +
                  row("Cv (eq)", s.getCv(), "J/(mol K)") + more(s.getCv_spec() / 1e3, "kJ/(kg K)") +
                  bare7("k", s.getK()) + row("R", s.getR_spec(), "J/(kg K)") +
                  row("a", s.getA(), "m/s") + row("rho", s.getRho(), "kg/m^3") +
                  row("C-ph", 0.0, "Condensed phase mass fraction") + dashes + lineEnd +
                  "Thermal transport properties\r\n" + dashes + lineEnd +
                  row7("Viscosity", s.getV() * 1e4, "x10^-4 kg/(m s)") +
                  row7("Conductivity", s.getCfr(), "W/(m K)") +
                  row7("Cp", s.getCpfr() / 1e3, "kJ/(kg K)") + row7("Pr", s.getPrfr(), "") +
                  dashes + lineEnd);
}

TEST_F(FrozenReport, ShowsTheFrozenStateInEnglishUnits)
{
    const FrozenSection& s = section();
    constexpr double psi = 6894.757293168361; // Pa
    constexpr double molar = 2.326, specific = 2326.0, perRankine = 4186.8;
    constexpr double viscosity = 1.4881639435695537, conductivity = 0.9615192590952172;
    EXPECT_EQ(
        printed([&] { s.printConditions(english); }),
        "\r\nCombustion composition:\r\n" + composition(english) + "Combustion parameters:\r\n" +
            dashes + lineEnd + row("Temperature", s.getT() * 1.8, "R") +
            more(s.getT() * 1.8 - 459.67, "F") + row("Pressure", s.getP() / psi, "psi") +
            row3("Enthalpy", s.getH() / molar, "Btu/lb-mol") +
            more3(s.getH_spec() / specific, "Btu/lbm") +
            row3("Entropy", s.getS() / perRankine, "Btu/(lb-mol R)") +
            more3(s.getS_spec() / perRankine, "Btu/(lbm R)") +
            row3("Internal energy", s.getU() / molar, "Btu/lb-mol") +
            more3(s.getU_spec() / specific, "Btu/lbm") +
            row3("Gibbs energy", s.getG() / molar, "Btu/lb-mol") +
            more3(s.getG_spec() / specific, "Btu/lbm") + bare7("M", s.getM()) +
            row7("Molar mass", s.getMm() / pound, "lbm/mol") +
            row("Cp (eq)", s.getCp() / perRankine, "Btu/(lb-mol R)") +
            more(s.getCp_spec() / perRankine, "Btu/(lbm R)") +
            row("Cv (eq)", s.getCv() / perRankine, "Btu/(lb-mol R)") +
            more(s.getCv_spec() / perRankine, "Btu/(lbm R)") + bare7("k", s.getK()) +
            row("R", s.getR_spec() / perRankine, "Btu/(lbm R)") +
            row("a", s.getA() / foot, "ft/s") + row("rho", s.getRho() / densityUnit, "lbm/ft^3") +
            row("C-ph", 0.0, "Condensed phase mass fraction") + dashes + lineEnd +
            "Thermal transport properties\r\n" + dashes + lineEnd +
            row7("Viscosity", s.getV() * 1e4 / viscosity, "x10^-4 lb/(ft s)") +
            row7("Conductivity", s.getCfr() / conductivity, "Btu/(hr ft R)") +
            row7("Cp", s.getCpfr() / perRankine, "Btu/(lbm R)") + row7("Pr", s.getPrfr(), "") +
            dashes + lineEnd);
}

TEST_F(FrozenReport, IsTitleStateAndPerformance)
{
    const FrozenSection& s = section();
    for (const unsigned int flags : {si, english})
        EXPECT_EQ(printed([&] { s.printResults(flags); }),
                  printed([&] { s.printHeader(flags); }) +
                      printed([&] { s.printConditions(flags); }) +
                      performanceRows(s, s.getIs_v_core(), s.getIs_core(), s.getKp_v_core(),
                                      s.getKp_core(), flags));
}

TEST_F(FrozenReport, NamesTheSectionWhereTheFlowSeparates)
{
    const FrozenSection& s = section();
    EXPECT_EQ(printed([&] { s.printOverexpansionPerformance(si); }),
              lineEnd + stars + lineEnd +
                  "     Sea level performance with respect to\r\n"
                  "     flow separation at e= 40.000\r\n" +
                  stars + lineEnd + row("Specific impulse", s.getIs_core(), "m/s") +
                  row("Thrust coeff.", s.getKp_core(), ""));
}

} // namespace
