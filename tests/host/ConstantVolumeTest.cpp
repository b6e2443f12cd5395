// Products of a closed vessel: the temperature is searched with equilibria of given temperature.

#include "ConstantVolume.h"
#include "Failure.h"

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Mixture.h>

#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using host::Kept;
using host::solveAtConstantVolume;
using reaction::Derivatives;
using reaction::Equilibrium;

// The iteration in all variables stops at corrections of 1e-7; the search at 1e-9.
constexpr double sameT = 1e-6; // relative

class ConstantVolume : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    /// What the products of a charge hold at a temperature, J/kg and J/(kg K).
    struct Held {
        double u;
        double s;
    };

    static Held heldAt(thermo::Mixture& charge, double v, double T)
    {
        Equilibrium problem(charge);
        problem.setPersistent(true);
        problem.setVT(v, T);
        problem.solve(false);
        return {host::internalEnergyOf(problem), problem.getSspec()};
    }

    static double found(thermo::Mixture& charge, Kept kept, double v, double target)
    {
        Equilibrium problem(charge);
        problem.setPersistent(true);
        problem.setWarmStart(true);
        const std::unique_ptr<Derivatives> derivatives =
            solveAtConstantVolume(problem, kept, v, target, /*calculateTransport=*/false);
        EXPECT_EQ(problem.getProcessType(), Equilibrium::VT);
        EXPECT_EQ(problem.getV(), v);
        return problem.getT();
    }

    static std::string failureOf(thermo::Mixture& charge, double v, double u)
    {
        try {
            found(charge, Kept::ENERGY, v, u);
        } catch (const host::Failure& failure) {
            EXPECT_EQ(failure.getCode(), host::NOT_CONVERGED);
            return failure.what();
        }
        return "";
    }
};

// u = 3/2 R T/M and a constant: argon is an ideal gas without reactions in its file, too.
TEST_F(ConstantVolume, HeatsArgonByThreeHalvesOfTheGasConstant)
{
    const auto argon = ketra_test::mixtureOf({{"Ar", 298.15, 1.0}});
    const double R = thermo::gasConstant / argon->getMm();
    const double before = argon->getU() / argon->getMm();
    EXPECT_NEAR(found(*argon, Kept::ENERGY, 0.6, before + 1.5 * R * 500.0), 798.15, 798.15 * sameT);
}

TEST_F(ConstantVolume, AgreesWithTheDirectProblemWhereAllIsGas)
{
    for (const double v : {1.0, 0.1, 0.01}) {
        SCOPED_TRACE(v);
        const auto charge = ketra_test::mixtureOf(
            {{"H2", 298.15, 0.12}, {"O2", 298.15, 0.78}, {"N2", 298.15, 0.1}});
        Equilibrium direct(*charge);
        direct.setVU(v, charge->getU());
        direct.solve(false);
        const double T = found(*charge, Kept::ENERGY, v, charge->getU() / charge->getMm());
        EXPECT_NEAR(T / direct.getT(), 1.0, sameT);
        const double s = heldAt(*charge, v, T).s;
        direct.setVSspec(v, s);
        direct.solve(false);
        EXPECT_NEAR(found(*charge, Kept::ENTROPY, v, s) / direct.getT(), 1.0, sameT);
    }
}

// Corundum, alumina in its melting band, and liquid.
TEST_F(ConstantVolume, FindsTheTemperatureOfProductsThatMelt)
{
    const auto charge = ketra_test::mixtureOf({{"AL(cr)", 298.15, 0.3}, {"O2", 298.15, 0.7}});
    constexpr double v = 0.05;
    for (const double T : {900.0, 1900.0, 2327.0, 3000.0, 3800.0}) {
        SCOPED_TRACE(T);
        const Held held = heldAt(*charge, v, T);
        EXPECT_NEAR(found(*charge, Kept::ENERGY, v, held.u), T, T * sameT);
        EXPECT_NEAR(found(*charge, Kept::ENTROPY, v, held.s), T, T * sameT);
    }
}

// Posed at once, the problem counts no energy for the alumina: thousands of kelvin, or no end.
TEST_F(ConstantVolume, TakesTheEnergyOfEachPhaseIntoAccount)
{
    const auto charge = ketra_test::mixtureOf({{"AL(cr)", 298.15, 0.3}, {"O2", 298.15, 0.7}});
    constexpr double v = 0.05, T = 3000.0;
    Equilibrium problem(*charge);
    problem.setVT(v, T);
    problem.solve(false);
    const std::unique_ptr<reaction::ReactingMixture> products(
        problem.copyReactingMixture(true, true));
    const std::unique_ptr<thermo::Mixture> phases(products->copyResultingMixture());
    const double u = phases->getU() / phases->getMm();
    EXPECT_NEAR(host::internalEnergyOf(problem), u, 1e-9 * std::abs(u));
    // A tenth of R T apart: far more than the rounding of either.
    EXPECT_GT(std::abs(problem.getUspec() - u), 0.1 * thermo::gasConstant * T / phases->getMm());
}

// Beryllia has no band around its melting point: no temperature has half of the heat of melting.
TEST_F(ConstantVolume, SaysWhereAPhaseChangesAtOneTemperature)
{
    const auto charge = ketra_test::mixtureOf({{"Be(a)", 298.15, 0.3}, {"O2", 298.15, 0.7}});
    constexpr double v = 0.01;
    const double u = 0.5 * (heldAt(*charge, v, 2830.0).u + heldAt(*charge, v, 2870.0).u);
    EXPECT_NE(failureOf(*charge, v, u).find("jumps over that of the charge"), std::string::npos);
}

TEST_F(ConstantVolume, SaysWhereTheDataEnd)
{
    const auto argon = ketra_test::mixtureOf({{"Ar", 298.15, 1.0}});
    const double before = argon->getU() / argon->getMm();
    const double R = thermo::gasConstant / argon->getMm();
    EXPECT_NE(failureOf(*argon, 0.6, before - 1.5 * R * 120.0).find("colder than 200 K"),
              std::string::npos);
    EXPECT_NE(failureOf(*argon, 0.6, before + 1.5 * R * 1e6).find("hotter than 20000 K"),
              std::string::npos);
}

} // namespace
