#include "Chambers.h"

#include <support/CapturingLogger.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace {

using ketra_test::chamberPressure;
using ketra_test::JumpingGas;
using performance::equilibrium::Chamber;
using reaction::Derivatives;
using reaction::Equilibrium;

constexpr unsigned english = 0x80;
const std::string stars = "***************************************************\r\n";

std::string printed(const std::function<void()>& print)
{
    ketra_test::LogCapture capture;
    print();
    return capture.report();
}

std::string station(const std::string& title, const Equilibrium* problem,
                    const Derivatives* derivatives, unsigned flags)
{
    return "\r\n" + stars + title + "\r\n" + stars +
           printed([&] { problem->printResults(flags); }) +
           printed([&] { derivatives->printResults(flags); });
}

std::string core(const Chamber& chamber, Chamber::CHAMBER_STATION at, const std::string& title,
                 unsigned flags)
{
    return station(title, chamber.getReaction(at), chamber.getDerivatives(at), flags);
}

std::string layer(const Chamber& chamber, Chamber::CHAMBER_STATION at, const std::string& title,
                  unsigned flags)
{
    return station(title, chamber.getBlcReaction(at), chamber.getBlcDerivatives(at), flags);
}

class ChamberReport : public testing::Test
{
protected:
    void SetUp() override
    {
        const JumpingGas gas{{{6000.0, 3.5}}};
        gas.use();
        chamber = std::make_unique<Chamber>(*JumpingGas::mixture(2000.0));
        chamber->setP(chamberPressure);
        chamber->setFcr(2.0);
    }
    void solve(bool finiteArea, bool withLayer)
    {
        if (withLayer) chamber->setBLC(0.1, *JumpingGas::mixture(1500.0), false);
        chamber->solve(finiteArea, false, false);
    }

    std::unique_ptr<Chamber> chamber;
};

class ChamberReportInUnits : public ChamberReport, public testing::WithParamInterface<unsigned>
{
};

TEST_P(ChamberReportInUnits, OfAnInfiniteAreaHasTwoStations)
{
    solve(false, false);
    const unsigned flags = GetParam();
    EXPECT_EQ(
        printed([&] { chamber->printResults(flags); }),
        core(*chamber, Chamber::INJECTION_PLANE, "                Combustion chamber", flags) +
            core(*chamber, Chamber::THROAT, "                      Throat", flags));
    EXPECT_EQ(printed([&] { chamber->printBlcResults(flags); }), "");
}

TEST_P(ChamberReportInUnits, OfAFiniteAreaHasThreeStations)
{
    solve(true, false);
    const unsigned flags = GetParam();
    EXPECT_EQ(
        printed([&] { chamber->printResults(flags); }),
        core(*chamber, Chamber::INJECTION_PLANE, "                Combustion chamber", flags) +
            core(*chamber, Chamber::CHAMBER_END, "              Combustion chamber end", flags) +
            core(*chamber, Chamber::THROAT, "                      Throat", flags));
}

TEST_P(ChamberReportInUnits, OfALayerHasTheSameStations)
{
    const unsigned flags = GetParam();
    solve(false, true);
    const std::string injection = "                Combustion chamber (BLC)";
    const std::string throat = "                      Throat (BLC)";
    EXPECT_EQ(printed([&] { chamber->printBlcResults(flags); }),
              layer(*chamber, Chamber::INJECTION_PLANE, injection, flags) +
                  layer(*chamber, Chamber::THROAT, throat, flags));
    chamber->setP(chamberPressure);
    solve(true, true);
    EXPECT_EQ(printed([&] { chamber->printBlcResults(flags); }),
              layer(*chamber, Chamber::INJECTION_PLANE, injection, flags) +
                  layer(*chamber, Chamber::CHAMBER_END,
                        "              Combustion chamber end (BLC)", flags) +
                  layer(*chamber, Chamber::THROAT, throat, flags));
}

INSTANTIATE_TEST_SUITE_P(SIAndEnglish, ChamberReportInUnits, testing::Values(0u, english));

TEST_F(ChamberReport, LeavesOutWhatIsNotSolved)
{
    EXPECT_EQ(printed([&] { chamber->printResults(0); }), "");
    chamber->setBLC(0.1, *JumpingGas::mixture(1500.0), false);
    EXPECT_EQ(printed([&] { chamber->printBlcResults(0); }), "");
}

TEST_F(ChamberReport, StandsUnderTheTagOfAllReports)
{
    solve(false, false);
    ketra_test::LogCapture capture;
    chamber->printResults(0);
    for (const ketra_test::LogLine& line : capture.lines())
        EXPECT_EQ(line.level, util::Logger::REPORT);
}

} // namespace
