#include "MixtureSpecies.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/GasMixture.h>

#include <gtest/gtest.h>

#include <cmath>

using ketra_test::LogCapture;
using ketra_test::speciesOf;
using thermo::_Species;
using thermo::Exception;
using thermo::GasMixture;
using thermo::Mixture;

namespace {

constexpr double R = thermo::gasConstant;
constexpr double relative = 1e-12; // sums of a few terms

class GasMixtureTest : public ::testing::Test
{
protected:
    GasMixtureTest() { ketra_test::useMixtureSpecies(); }
};

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

TEST_F(GasMixtureTest, PureNitrogenIsAnIdealGas)
{
    GasMixture nitrogen(300.0, 101325.0, _Species::MOLE_FRACTION);
    nitrogen.addSpecies("N2", 1.0);
    const double Cp = 3.5 * R, Mm = 0.0280134;
    expectNear(nitrogen.Cp0(), Cp);
    expectNear(nitrogen.Cv0(), 2.5 * R);
    expectNear(nitrogen.k(), Cp / (Cp - 8.314472));
    expectNear(nitrogen.R(), R / Mm);
    expectNear(nitrogen.rho(), Mm * 101325.0 / (R * 300.0));
    expectNear(nitrogen.a(), std::sqrt(1.4 * R / Mm * 300.0));
}

TEST_F(GasMixtureTest, HeatCapacityIsTheSumOverMoleFractions)
{
    GasMixture gas(1000.0, 1e6, _Species::MOLE_FRACTION);
    gas.addSpecies("H2", 0.25);
    gas.addSpecies("O2", 0.75);
    expectNear(gas.Cp0(), (0.25 * 3.5 + 0.75 * 4.0) * R);
    const Mixture& base = gas;
    expectNear(base.getRho(), gas.rho());
}

TEST_F(GasMixtureTest, AnotherTemperatureDoesNotTouchTheEntries)
{
    // Cp/R = 1 + T / 1000
    ketra_test::Record record{"X", {{"N", 2}}, 28.0134, 0, 0.0, {}};
    record.intervals = {{200.0, 6000.0, {0.0, 0.0, 1.0, 0.001, 0.0, 0.0, 0.0}, 0.0, 0.0}};
    const auto species = ketra_test::makeSpecies(record, 7000);

    GasMixture gas(300.0, 1e5, _Species::MOLE_FRACTION);
    gas.addSpecies(species.get(), 400.0, 1.0);
    const double H = gas.H(), rho = gas.rho();
    expectNear(gas.Cp0(), 1.3 * R);

    gas.assignT(600.0);
    EXPECT_EQ(gas._getSpecies(0).getT(), 400.0);
    EXPECT_EQ(gas.H(), H);
    expectNear(gas.Cp0(), 1.6 * R);
    expectNear(gas.rho(), rho / 2);
    expectNear(gas.a(), std::sqrt(1.6 / 0.6 * R / 0.0280134 * 600.0));

    gas.assignP(2e5);
    expectNear(gas.getRho(), rho);
    EXPECT_EQ(gas._getSpecies(0).getP(), 101325.0);
}

TEST_F(GasMixtureTest, ACondensedSpeciesIsRefusedOnceAfterEachChange)
{
    const auto refused = [](auto operation) {
        GasMixture gas(300.0, 1e5, _Species::MOLE_FRACTION);
        gas.addSpecies("H2", 0.5);
        gas.addSpecies("C(cr)", 0.5);
        LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(operation(gas), Exception, 7,
                                   "Condensed species in gas mixture");
        EXPECT_EQ(capture.errors(),
                  std::vector<std::string>{"Condensed species C(cr) in gas mixture\r\n"});
        EXPECT_EQ(capture.tagOf("Condensed species C(cr) in gas mixture\r\n"), "THERMO");
        // The fractions count as checked: no second test.
        expectNear(gas.Cp0(), 0.5 * (3.5 + 2.0) * R);
        gas.setFraction(0, 0.5);
        KETRA_EXPECT_THROW_CODE(operation(gas), Exception, 7);
    };
    refused([](GasMixture& gas) { gas.checkFractions(); });
    refused([](GasMixture& gas) { gas.Cp0(); });
    refused([](GasMixture& gas) { gas.Cv0(); });
    refused([](GasMixture& gas) { gas.k(); });
    refused([](GasMixture& gas) { gas.a(); });
}

TEST_F(GasMixtureTest, DensityAndGasConstantOnlyCheckTheFractions)
{
    LogCapture capture;
    GasMixture gas(300.0, 1e5, _Species::MOLE_FRACTION);
    gas.addSpecies("C(cr)", 1.0);
    expectNear(gas.rho(), 0.0120107 * 1e5 / (300.0 * R));
    expectNear(gas.R(), R / 0.0120107);
    EXPECT_TRUE(capture.lines().empty());
    gas.setFraction(0, 0.5);
    KETRA_EXPECT_THROW_CODE(gas.rho(), Exception, 6);
    KETRA_EXPECT_THROW_CODE(gas.R(), Exception, 6);
}

TEST_F(GasMixtureTest, ACopyHasTheStateOfItsSource)
{
    GasMixture gas(300.0, 1e5, _Species::MASS_FRACTION);
    gas.addSpecies("N2", 1.0);
    const GasMixture copy(gas);
    gas.assignT(600.0);
    expectNear(copy.rho(), 2 * gas.rho());
    expectNear(copy.Cp0(), 3.5 * R);
}

} // namespace
