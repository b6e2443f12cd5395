#include "TransportMixtures.h"

#include <gtest/gtest.h>

#include <string>

// The transport block of the report of the derivatives.

using namespace ketra_test;

namespace {

/// What the transport flag adds to the report of nitrogen of 5e-5 Pa s and 0.08 W/(m K) at 1000 K;
/// Cp is 3.5 R / 28.0134 g/mol = 1.038811854 kJ/(kg K), the Prandtl number 5e-5 Cp / 0.08.
std::string block(unsigned flags)
{
    useSpecies({gasRecord("N2", {{"N", 2}}, 28.0134, -1000.0)});
    setTransport("N2", 5e-5, 0.08);
    reaction::Derivatives d(pureGas("N2", 1000.0).release(), 1000.0, 2e6);
    d.solve(true);
    LogCapture capture;
    d.printResults(flags);
    const std::string without = capture.report();
    capture.clear();
    d.printResults(flags | 0x100);
    const std::string with = capture.report();
    EXPECT_EQ(with.substr(0, without.size()), without);
    return with.substr(without.size());
}

} // namespace

TEST(TransportReport, InSiUnits)
{
    EXPECT_EQ(block(0), "-------------------------------------------------------------\r\n"
                        "Thermal transport properties\r\n"
                        "-------------------------------------------------------------\r\n"
                        "          Viscosity:\t  0.5000000\t x10^-4 kg/(m s)\r\n"
                        "Frozen parameters:\r\n"
                        "       Conductivity:\t  0.0800000\t    W/(m K)\r\n"
                        "                 Cp:\t  1.0388119\t  kJ/(kg K)\r\n"
                        "                 Pr:\t  0.6492574\t           \r\n"
                        "Effective parameters with equilibrium:\r\n"
                        "       Conductivity:\t  0.0800000\t    W/(m K)\r\n"
                        "                 Cp:\t  1.0388119\t  kJ/(kg K)\r\n"
                        "                 Pr:\t  0.6492574\t           \r\n");
}

// 0.5 / 1.4881639435695537, 0.08 / 0.9615192590952172, 1038.81185 / 4186.8.
TEST(TransportReport, InEnglishUnits)
{
    EXPECT_EQ(block(0x80), "-------------------------------------------------------------\r\n"
                           "Thermal transport properties\r\n"
                           "-------------------------------------------------------------\r\n"
                           "          Viscosity:\t  0.3359845\t x10^-4 lb/(ft s)\r\n"
                           "Frozen parameters:\r\n"
                           "       Conductivity:\t  0.0832017\t Btu/(hr ft R)\r\n"
                           "                 Cp:\t  0.2481159\t Btu/(lbm R)\r\n"
                           "                 Pr:\t  0.6492574\t           \r\n"
                           "Effective parameters with equilibrium:\r\n"
                           "       Conductivity:\t  0.0832017\t Btu/(hr ft R)\r\n"
                           "                 Cp:\t  0.2481159\t Btu/(lbm R)\r\n"
                           "                 Pr:\t  0.6492574\t           \r\n");
}

TEST(TransportReport, ShowsFrozenAndEffectiveValuesApart)
{
    useSpecies({gasRecord("H", {{"H", 1.0}}, 1.00794, 25500.0),
                gasRecord("H2", {{"H", 2.0}}, 2.01588, -1000.0)});
    reaction::Derivatives d(gasSolution({"H2"}, 3000.0, {{"H", 0.001}, {"H2", 0.999}}).release(),
                            3000.0, 1e6);
    d.solve(true);
    LogCapture capture;
    d.printResults(0x100);
    const std::string report = capture.report();
    std::string frozen, effective;
    for (auto* const out : {&frozen, &effective}) out->clear();
    append(frozen,
           "Frozen parameters:\r\n"
           "       Conductivity:\t %10.7f\t    W/(m K)\r\n"
           "                 Cp:\t %10.7f\t  kJ/(kg K)\r\n"
           "                 Pr:\t %10.7f\t           \r\n",
           d.getCfr(), d.getCpfr() / 1000, d.getPrfr());
    append(effective,
           "Effective parameters with equilibrium:\r\n"
           "       Conductivity:\t %10.7f\t    W/(m K)\r\n"
           "                 Cp:\t %10.7f\t  kJ/(kg K)\r\n"
           "                 Pr:\t %10.7f\t           \r\n",
           d.getCeql(), d.getCpeql() / 1000, d.getPreql());
    EXPECT_GT(d.getCeql(), 1.01 * d.getCfr());
    EXPECT_NE(report.find(frozen + effective), std::string::npos) << report;
}
