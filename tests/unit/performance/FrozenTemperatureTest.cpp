#include "Sections.h"

#include <ketra/reaction/Product.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/MadeUpSpecies.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The temperature of a fixed composition, and the temperatures of its species beyond their data.

namespace {

using namespace ketra_test;
using reaction::Product;
using reaction::TransitionProduct;

/// A frozen section whose inner operations a test may reach.
class OpenSection : public FrozenSection
{
public:
    using FrozenSection::FrozenSection;
    using FrozenSection::getT;
    using FrozenSection::solveForFixedPressure;
};

/// An inert charge of two gases: A, known from 50 K on, and B, known from 200 K on.
constexpr double capacity = 3.5; // Cp/R of both
constexpr double lowestB = 200.0;
constexpr double shareOfB = 0.1; // by mole
constexpr double startT = 1000.0;

void useTwoGases()
{
    const auto gas = [](double from, double to) {
        return std::vector<Interval>{constantCp(from, to, capacity, 0.0, 0.0)};
    };
    useSpecies({{"A", {{"AR", 1.0}}, 20.0, 0, 0.0, gas(50.0, 6000.0)},
                {"B", {{"HE", 1.0}}, 20.0, 0, 0.0, gas(lowestB, 6000.0)}});
}

std::unique_ptr<FrozenChamber> inertChamber()
{
    useTwoGases();
    const auto mixture =
        mixtureOf({{"A", startT, 1.0 - shareOfB}, {"B", startT, shareOfB}}); // of equal molar mass
    auto chamber = std::make_unique<FrozenChamber>(*mixture, 1.5, FrozenChamber::EXPANSION_RATIO);
    chamber->setP(chamberP);
    chamber->solve(false, false, false);
    return chamber;
}

/// The pressure at which the charge, with B held at its limit, has the temperature \p T below it.
double pressureFor(double T)
{
    const double lnT =
        (1.0 - shareOfB) * std::log(T / startT) + shareOfB * std::log(lowestB / startT);
    return chamberP * std::exp(capacity * lnT);
}

class TemperatureOfASpecies : public testing::Test
{
protected:
    TemperatureOfASpecies() : chamber(inertChamber())
    {
        section = std::make_unique<OpenSection>(chamber.get(), 2.0, Section::AREA_RATIO, false);
    }
    static std::unique_ptr<Product> product(int phase, double from, double to,
                                            const char* name = "X(a)")
    {
        owners().push_back(makeSpecies(
            {name, {{"AR", 1.0}}, 20.0, phase, 0.0, {constantCp(from, to, capacity, 0.0, 0.0)}},
            7));
        return std::make_unique<Product>(*owners().back());
    }
    // products borrow the data of their species
    static std::vector<std::unique_ptr<thermo::nasa9::NASA9Species>>& owners()
    {
        static std::vector<std::unique_ptr<thermo::nasa9::NASA9Species>> all;
        return all;
    }

    std::unique_ptr<FrozenChamber> chamber;
    std::unique_ptr<OpenSection> section;
};

TEST_F(TemperatureOfASpecies, IsThatOfTheMixtureInItsRange)
{
    const auto gas = product(0, 200.0, 6000.0);
    LogCapture log;
    for (const double T : {200.0, 200.1, 3000.0, 6000.0}) EXPECT_EQ(section->getT(gas.get(), T), T);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TemperatureOfASpecies, StaysAtTheLowerLimitWithAWarning)
{
    const auto gas = product(0, 200.0, 6000.0);
    LogCapture log;
    EXPECT_EQ(section->getT(gas.get(), 151.0), 200.0);
    EXPECT_EQ(section->getT(gas.get(), 150.001), 200.0);
    ASSERT_EQ(log.warnings().size(), 2U);
    EXPECT_EQ(log.warnings().front(),
              "Frozen equilibrium solver: the temperature 151.000 is lower than Tmin=200.000 for "
              "species X(a). The temperature for the species is frozen as well. \r\n");
    EXPECT_EQ(log.tagOf(log.warnings().front()), "THERMO");
    EXPECT_TRUE(log.errors().empty());
}

// The warning names the lower limit in place of the upper one.
TEST_F(TemperatureOfASpecies, StaysAtTheUpperLimitWithAWarning)
{
    const auto gas = product(0, 200.0, 6000.0);
    LogCapture log;
    EXPECT_EQ(section->getT(gas.get(), 6049.0), 6000.0);
    EXPECT_EQ(log.warnings(),
              std::vector<std::string>{
                  "Frozen equilibrium solver: The temperature 6049.000 is higher than Tmax=200.000 "
                  "for species X(a). The temperature for the species is frozen as well.\r\n"});
}

TEST_F(TemperatureOfASpecies, OfAGasIsNowhereFrom50KOutsideOn)
{
    const auto gas = product(0, 200.0, 6000.0);
    const auto expectFailure = [&](double T, const std::string& shown, const std::string& word) {
        LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(section->getT(gas.get(), T), thermo::Exception, 13,
                                   "Could not find nozzle section frozen conditions");
        EXPECT_EQ(log.errors(), std::vector<std::string>{
                                    "Could not solve frozen equilibrium for nozzle section:\r\n"
                                    "temperature " +
                                    shown + " K is too " + word +
                                    " for species X(a).\r\n"
                                    "\r\n"
                                    "Please correct the frozen equilibrium model,\r\n"
                                    "moving freezing section downstream of the nozzle.\r\n"});
        EXPECT_EQ(log.tagOf(log.errors().front()), "THERMO");
        EXPECT_TRUE(log.warnings().empty());
    };
    expectFailure(150.0, "150.000", "low");
    expectFailure(20.0, " 20.000", "low");
    expectFailure(6050.0, "6050.000", "high");
}

TEST_F(TemperatureOfASpecies, OfACondensedProductMayBeAnyDistanceAway)
{
    const auto solid = product(1, 800.0, 1200.0);
    LogCapture log;
    EXPECT_EQ(section->getT(solid.get(), 10.0), 800.0);
    EXPECT_EQ(section->getT(solid.get(), 5000.0), 1200.0);
    EXPECT_EQ(log.warnings().size(), 2U);
    EXPECT_TRUE(log.errors().empty());
}

TEST_F(TemperatureOfASpecies, OfATransitionIsTheNearestLimitOfItsBand)
{
    const auto lower = product(1, 200.0, 2000.0, "X(a)");
    const auto upper = product(2, 2000.0, 6000.0, "X(L)");
    TransitionProduct low(lower.get(), 0.0, 1900.0), high(upper.get(), 2100.0, 0.0);
    TransitionProduct blend(product(1, 200.0, 2000.0, "X(a)").release(), 1900.0, 2100.0);
    blend.makeTransit(product(2, 2000.0, 6000.0, "X(L)").release());

    LogCapture log;
    EXPECT_EQ(section->getT(&low, 1899.0), 1899.0);
    EXPECT_EQ(section->getT(&low, 1950.0), 1900.0); // inside the phase, beyond its share of it
    EXPECT_EQ(section->getT(&low, 100.0), 200.0);
    EXPECT_EQ(section->getT(&high, 2050.0), 2100.0);
    EXPECT_EQ(section->getT(&high, 7000.0), 6000.0);
    EXPECT_EQ(section->getT(&blend, 2000.0), 2000.0);
    EXPECT_EQ(section->getT(&blend, 300.0), 1900.0);
    EXPECT_EQ(section->getT(&blend, 4000.0), 2100.0);
    EXPECT_EQ(log.warnings().size(), 6U);
    EXPECT_EQ(log.warnings()[3],
              "Frozen equilibrium solver: The temperature 7000.000 is higher than "
              "Tmax=2100.000 for species X(L). The temperature for the species is frozen as "
              "well.\r\n");
    EXPECT_TRUE(log.errors().empty());
    for (TransitionProduct* transition : {&low, &high, &blend}) {
        const double T = section->getT(transition, 2000.0);
        EXPECT_NO_THROW(transition->S0_tilde(T));
    }
}

TEST(FrozenExpansion, OfAnInertGasFollowsTheIsentrope)
{
    const auto chamber = inertChamber();
    for (const double p : {1e6, 1e5, 2.6e4}) {
        const FrozenSection s(chamber.get(), p, Section::PRESSURE, false);
        const double T = startT * std::pow(p / chamberP, 1 / capacity);
        EXPECT_NEAR(s.getT(), T, 5e-4 * T);
        EXPECT_NEAR(s.getK(), capacity / (capacity - 1), 1e-12);
    }
}

TEST(FrozenExpansion, GoesOnWithASpeciesHeldAtItsLimit)
{
    const auto chamber = inertChamber();
    LogCapture log;
    const FrozenSection s(chamber.get(), pressureFor(151.0), Section::PRESSURE, false);
    EXPECT_NEAR(s.getT(), 151.0, 1e-3 * 151.0);
    ASSERT_FALSE(log.warnings().empty());
    for (const std::string& warning : log.warnings())
        EXPECT_NE(warning.find("is lower than Tmin=200.000 for species B."), std::string::npos);
    // Cp is that of the limit for B, and B's energy follows the mixture
    EXPECT_NEAR(s.getCp(), capacity * thermo::gasConstant, 1e-9 * s.getCp());
    EXPECT_NEAR(s.getH(), capacity * thermo::gasConstant * s.getT(), 1e-9 * s.getH());
}

TEST(FrozenExpansion, FailsWhereAGasIsTooFarOutside)
{
    const auto chamber = inertChamber();
    LogCapture log;
    KETRA_EXPECT_THROW_CODE(
        FrozenSection(chamber.get(), pressureFor(149.0), Section::PRESSURE, false),
        thermo::Exception, 13);
    ASSERT_EQ(log.errors().size(), 1U);
    EXPECT_NE(log.errors().front().find(" K is too low for species B."), std::string::npos);
}

/// A mixture that a test may compose.
class OpenMixture : public reaction::ReactingMixture
{
public:
    using ReactingMixture::addProduct;
    using ReactingMixture::ReactingMixture;
};

// The entropy of a condensed product beyond its range does not change any more: the search walks on
// without coming nearer.
TEST(FrozenExpansion, GivesUpAfter50Steps)
{
    const auto chamber = inertChamber();
    const OpenSection section(chamber.get(), 2.0, Section::AREA_RATIO, false);
    useSpecies({{"A", {{"AR", 1.0}}, 20.0, 0, 0.0, {constantCp(50.0, 6e5, 3.5, 0.0, 0.0)}},
                {"A(cr)", {{"AR", 1.0}}, 20.0, 1, 0.0, {constantCp(50.0, 300.0, 3.0, 0.0, 0.0)}}});
    const auto initial = mixtureOf({{"A", 298.15, 1.0}});
    OpenMixture mixture(*initial);
    mixture.reset();
    Product solid(*thermo::Database::getInstance()->find("A(cr)"));
    solid.setN(1.0);
    mixture.addProduct(&solid);
    ASSERT_EQ(mixture.size(), 2U);
    mixture.product(0)->setN(0.0, -100.0);

    const double S = thermo::gasConstant * 3.0 * std::log(300.0); // of the solid at its limit
    const double step = 0.01;                                     // in ln T
    const double short50 = S + step * 3.0 * thermo::gasConstant;
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(section.solveForFixedPressure(short50, &mixture, 1.0, 0.0, 400.0),
                               thermo::Exception, 13,
                               "Could not find nozzle section frozen conditions");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not solve frozen equilibrium for nozzle section: maximum "
                                "number of iterations is succeed.\r\n"});
    EXPECT_EQ(log.warnings().size(), 50U);
    // within its tolerance it returns the temperature as it stands, without the last correction
    EXPECT_EQ(section.solveForFixedPressure(S + 4e-4 * 3.0 * thermo::gasConstant, &mixture, 1.0,
                                            0.0, 400.0),
              400.0);
}

// Liquid alumina beyond its limit follows the cooling gas with an energy that rises: the area grows
// faster than the pressure falls, and the search swings.
TEST(FrozenExpansion, ByAreaRatioGivesUpAfter100Passes)
{
    useShippedSpecies();
    FrozenChamber chamber(*aluminisedSolid(0.3), 1.1, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(chamberP);
    chamber.solve(false, false, false);
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(FrozenSection(&chamber, 1100.0, Section::AREA_RATIO, false),
                               thermo::Exception, 13,
                               "Could not find nozzle section frozen conditions");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not solve frozen equilibrium for nozzle section: maximum "
                                "number of iterations is exceeded.\r\n"});
}

} // namespace
