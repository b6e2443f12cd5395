#include "Chambers.h"

#include <support/Failures.h>

#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/matrix/RowVector.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

namespace {

using ketra_test::chamberPressure;
using ketra_test::JumpingGas;
using ketra_test::throatFlux;
using math::interpolation::Interpolation;
using performance::equilibrium::Chamber;
using performance::equilibrium::Combustor;
using reaction::Derivatives;
using reaction::Equilibrium;

constexpr double contraction = 3.0;
const double nothing = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<Chamber> solved(std::unique_ptr<thermo::Mixture> reactants, bool finiteArea)
{
    auto chamber = std::make_unique<Chamber>(*reactants);
    chamber->setP(chamberPressure);
    if (finiteArea) chamber->setFcr(contraction);
    chamber->solve(finiteArea, false, false);
    return chamber;
}

std::unique_ptr<Chamber> hydrogenChamber(bool finiteArea)
{
    ketra_test::useShippedSpecies();
    return solved(ketra_test::loxHydrogen(6.0), finiteArea);
}

double endPressure(const Chamber& chamber)
{
    return chamber.getReaction(Chamber::CHAMBER_END)->getP();
}
double throatPressure(const Chamber& chamber)
{
    return chamber.getReaction(Chamber::THROAT)->getP();
}

/// Area ratio at a pressure, from a start of its own.
double areaRatioAt(const Chamber& chamber, double p)
{
    const Equilibrium& end = *chamber.getReaction(Chamber::CHAMBER_END);
    Equilibrium section(end);
    section.setPS(p, end.getS() * end.getResultingMixtureQuantaty());
    const std::unique_ptr<Derivatives> gas(Combustor::solveReaction(&section, 1.0, false, false));
    const double w = std::sqrt(2.0 * (chamber.getReaction()->getHspec() - section.getHspec()));
    return throatFlux(chamber) / (gas->getRho() * w);
}

TEST(NozzleInput, BunchesItsPointsAtThroatAndChamberEnd)
{
    const auto chamber = hydrogenChamber(true);
    const Interpolation& table = *chamber->getNozzleInput(false, 90);
    const math::matrix::RowVector& p = *table.getValues();
    ASSERT_EQ(p.size(), 90u);
    const double from = throatPressure(*chamber), to = endPressure(*chamber);
    const double quarterPi = 0.7853981633974483;
    EXPECT_EQ(p.at(0), from);
    for (unsigned i = 0; i < 30; ++i)
        EXPECT_DOUBLE_EQ(p.at(i), from + (to - from) * std::sin(i * quarterPi / 29.0)) << i;
    for (unsigned i = 30; i < 90; ++i)
        EXPECT_DOUBLE_EQ(p.at(i),
                         from + (to - from) * std::sin((i - 30) * quarterPi / 59.0 + quarterPi))
            << i;
    EXPECT_DOUBLE_EQ(p.at(89), to);
    EXPECT_EQ(table.linearInterpolation(contraction), p.at(89));
    EXPECT_NEAR(table.getMinX(), 1.0, 1e-6);
}

TEST(NozzleInput, HoldsSolvedSections)
{
    const auto chamber = hydrogenChamber(true);
    const Interpolation& table = *chamber->getNozzleInput(false, 12);
    for (const unsigned i : {2u, 4u, 7u, 10u}) {
        const double p = table.getValues()->at(i);
        EXPECT_NEAR(table.linearInterpolation(areaRatioAt(*chamber, p)) / p, 1.0, 1e-5) << i;
    }
}

// An infinite area has no area ratio at its end: the point before stands there.
TEST(NozzleInput, OfAnInfiniteAreaEndsWithItsLastPointTwice)
{
    const auto chamber = hydrogenChamber(false);
    const Interpolation& table = *chamber->getNozzleInput(false, 30);
    const double last = table.getValues()->at(28);
    EXPECT_NEAR(table.getMaxX() / areaRatioAt(*chamber, last), 1.0, 1e-5);
    EXPECT_GT(table.getMaxX(), 10.0);
    EXPECT_EQ(table.linearInterpolation(table.getMaxX()), endPressure(*chamber));
}

TEST(NozzleExit, ApproachesTheExitExponentially)
{
    const auto chamber = hydrogenChamber(false);
    const double exit = 2e4, ratio = 40.0;
    const Interpolation& table = *chamber->getNozzleExit(exit, ratio, false, 120);
    const math::matrix::RowVector& p = *table.getValues();
    ASSERT_EQ(p.size(), 120u);
    const double from = throatPressure(*chamber);
    EXPECT_EQ(p.at(0), from);
    EXPECT_EQ(p.at(119), exit);
    for (unsigned i = 1; i < 119; ++i)
        EXPECT_DOUBLE_EQ(p.at(i), from - (1.0 - std::exp(-(i / 10.0))) * (from - exit)) << i;
    EXPECT_EQ(table.getMaxX(), ratio);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), ratio);
    EXPECT_NEAR(table.getMinX(), 1.0, 1e-6);
}

// Between its points too the table is the expansion itself, but for the neighbourhood of the
// throat, where the pressure falls with the root of the area.
TEST(NozzleExit, IsReadToTwoPartsInTenThousand)
{
    const auto chamber = hydrogenChamber(false);
    const double exit = 2e4;
    const double ratio = areaRatioAt(*chamber, exit);
    const Interpolation& table = *chamber->getNozzleExit(exit, ratio, false, 120);
    for (double p = 2e6; p > exit; p *= 0.83)
        EXPECT_NEAR(table.polynomialInterpolation(areaRatioAt(*chamber, p)) / p, 1.0, 2e-4) << p;
}

TEST(NozzleTables, AreBuiltOnce)
{
    const auto chamber = hydrogenChamber(true);
    EXPECT_FALSE(chamber->isNozzleExitTable());
    const Interpolation* input = chamber->getNozzleInput(false, 10);
    EXPECT_EQ(chamber->getNozzleInput(true, 20), input);
    EXPECT_EQ(chamber->getNozzleInput(false, 20)->getValues()->size(), 10u);
    EXPECT_FALSE(chamber->isNozzleExitTable());
    const Interpolation* exit = chamber->getNozzleExit(1e5, 10.0, false, 8);
    EXPECT_TRUE(chamber->isNozzleExitTable());
    EXPECT_EQ(chamber->getNozzleExit(0.0, 0.0, false, 120), exit);
    EXPECT_EQ(exit->getValues()->size(), 8u);
}

TEST(NozzleTables, AreDroppedOnDemandAndWithTheNextSolve)
{
    const auto chamber = hydrogenChamber(true);
    KETRA_EXPECT_THROW_MESSAGE(static_cast<void>(chamber->getNozzleExitTableMaxFr()),
                               thermo::Exception, 0, "Invalid state");
    chamber->getNozzleExit(1e5, 10.0, false, 8);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), 10.0);
    chamber->deleteNozzleExitTable();
    EXPECT_FALSE(chamber->isNozzleExitTable());
    KETRA_EXPECT_THROW_CODE(static_cast<void>(chamber->getNozzleExitTableMaxFr()),
                            thermo::Exception, 0);
    chamber->deleteNozzleExitTable();

    chamber->getNozzleExit(2e5, 6.0, false, 9);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), 6.0);
    chamber->getNozzleInput(false, 10);
    chamber->setP(2.0 * chamberPressure);
    chamber->solve(true, false, false);
    EXPECT_FALSE(chamber->isNozzleExitTable());
    EXPECT_EQ(chamber->getNozzleInput(false, 11)->getValues()->at(0), throatPressure(*chamber));
}

TEST(NozzleTables, NeedASolvedChamber)
{
    ketra_test::useShippedSpecies();
    Chamber chamber(*ketra_test::loxHydrogen(6.0));
    chamber.setP(chamberPressure);
    KETRA_EXPECT_THROW_CODE(chamber.getNozzleInput(false, 90), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(chamber.getNozzleExit(1e5, 10.0, false, 120), thermo::Exception, 0);
    EXPECT_FALSE(chamber.isNozzleExitTable());
}

TEST(NozzleTables, OfFewPointsAreTables)
{
    const auto chamber = hydrogenChamber(true);
    for (const int n : {-5, 0, 1, 2, 3, 4, 5, 6, 7}) {
        SCOPED_TRACE(n);
        const auto expected = static_cast<unsigned>(n < 2 ? 2 : n);
        chamber->deleteNozzleExitTable();
        const Interpolation& exit = *chamber->getNozzleExit(1e5, 10.0, false, n);
        EXPECT_EQ(exit.getValues()->size(), expected);
        EXPECT_EQ(exit.getMaxX(), 10.0);
        EXPECT_EQ(exit.linearInterpolation(10.0), 1e5);
        EXPECT_NEAR(exit.getMinX(), 1.0, 1e-6);

        chamber->setP(chamberPressure);
        chamber->solve(true, false, false);
        const Interpolation& input = *chamber->getNozzleInput(false, n);
        EXPECT_EQ(input.getValues()->size(), expected);
        EXPECT_EQ(input.getMaxX(), contraction);
        EXPECT_DOUBLE_EQ(input.linearInterpolation(contraction), endPressure(*chamber));
        for (unsigned i = 0; i < expected; ++i)
            EXPECT_TRUE(std::isfinite(input.getValues()->at(i))) << i;
    }
}

// The gas has no data from 300 to 800 K, where the last points of the table would be.
TEST(NozzleTables, TakeAFailedPointFromItsNeighbours)
{
    using ketra_test::constantCp;
    ketra_test::useSpecies(
        {{"Ar",
          {{"AR", 1.0}},
          39.948,
          0,
          0.0,
          {constantCp(200.0, 300.0, 3.5, 0.0, 10.0), constantCp(800.0, 6000.0, 3.5, 0.0, 10.0)}}});
    const double T0 = 2000.0, cp = 3.5, k = 1.4, R = thermo::gasConstant / 0.039948;
    const auto chamber =
        std::make_unique<Chamber>(*JumpingGas::mixture(T0), thermo::gasConstant * cp * T0);
    chamber->setP(chamberPressure);
    chamber->solve(false, false, false);

    const double exit = 1e4, ratio = 50.0;
    const Interpolation& table = *chamber->getNozzleExit(exit, ratio, false, 40);
    const auto temperature = [&](double p) {
        return T0 * std::pow(p / chamberPressure, (k - 1.0) / k);
    };
    const auto areaRatio = [&](double p) { // of a perfect gas
        const double T = temperature(p);
        return throatFlux(*chamber) * R * T / (p * std::sqrt(2.0 * cp * R * (T0 - T)));
    };
    double before = 1.0;
    int repaired = 0;
    for (unsigned i = 1; i < 39; ++i) {
        const double p = table.getValues()->at(i);
        if (temperature(p) > 800.0) {
            before = areaRatio(p);
        } else {
            before = (before + ratio) / 2.0; // the next good point is the last
            ++repaired;
        }
        EXPECT_NEAR(table.linearInterpolation(before) / p, 1.0, 1e-4) << i;
    }
    EXPECT_GT(repaired, 5);
}

TEST(NozzleTables, TakeFailedFirstPointsFromTheNextGoodOne)
{
    const auto chamber = hydrogenChamber(true);
    chamber->setRelativeTolerance(nothing); // with which no solution ever settles
    const Interpolation& exit = *chamber->getNozzleExit(1e5, 10.0, false, 5);
    EXPECT_EQ(exit.getMinX(), 10.0);
    EXPECT_EQ(exit.getMaxX(), 10.0);
    const Interpolation& input = *chamber->getNozzleInput(false, 6);
    EXPECT_EQ(input.getMinX(), contraction);
    EXPECT_EQ(input.getMaxX(), contraction);
}

TEST(NozzleTables, WithoutAGoodPointHoldNoNozzle)
{
    const auto chamber = hydrogenChamber(false);
    chamber->setRelativeTolerance(nothing);
    const Interpolation& input = *chamber->getNozzleInput(false, 6);
    EXPECT_EQ(input.getMinX(), 0.0);
    EXPECT_EQ(input.getMaxX(), 0.0);
    EXPECT_THROW(static_cast<void>(input.linearInterpolation(1.5)), math::interpolation::Exception);
}

// Beyond the limit of the number formats nothing is stored.
TEST(NozzleTables, WithAnExitThatIsNoNumberAreRefused)
{
    const auto chamber = hydrogenChamber(false);
    KETRA_EXPECT_THROW_CODE(chamber->getNozzleExit(nothing, 10.0, false, 5),
                            math::interpolation::Exception, 0);
    KETRA_EXPECT_THROW_CODE(chamber->getNozzleExit(1e5, nothing, false, 5),
                            math::interpolation::Exception, 0);
    EXPECT_FALSE(chamber->isNozzleExitTable());
    EXPECT_EQ(chamber->getNozzleExit(1e5, 10.0, false, 5)->getMaxX(), 10.0);
}

} // namespace
