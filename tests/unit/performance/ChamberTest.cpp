#include "Chambers.h"

#include <support/Failures.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

using ketra_test::chamberPressure;
using ketra_test::gasWithAJump;
using ketra_test::JumpingGas;
using ketra_test::OpenChamber;
using ketra_test::throatFlux;
using ketra_test::throatMach;
using ketra_test::velocityAt;
using performance::equilibrium::Chamber;
using performance::equilibrium::Combustor;
using reaction::Derivatives;
using reaction::Equilibrium;

void expectEmpty(const Chamber& chamber)
{
    for (const auto station : {Chamber::CHAMBER_END, Chamber::THROAT}) {
        EXPECT_EQ(chamber.getReaction(station), nullptr);
        EXPECT_EQ(chamber.getDerivatives(station), nullptr);
    }
    EXPECT_EQ(chamber.getDerivatives(), nullptr);
    for (const auto station : {Chamber::INJECTION_PLANE, Chamber::CHAMBER_END, Chamber::THROAT}) {
        EXPECT_EQ(chamber.getBlcReaction(station), nullptr);
        EXPECT_EQ(chamber.getBlcDerivatives(station), nullptr);
    }
    EXPECT_FALSE(chamber.isBLC());
    EXPECT_FALSE(chamber.isNozzleExitTable());
    for (const double value :
         {chamber.getFcr(), chamber.getMr(), chamber.getWc(), chamber.getPc_0(),
          chamber.getSigmaC(), chamber.getCstar_core(), chamber.getBetta_core(), chamber.getBLC(),
          chamber.getPc_0_blc(), chamber.getSigmaC_blc(), chamber.getMr_blc(), chamber.getFcr_blc(),
          chamber.getWc_blc(), chamber.getCstar_blc(), chamber.getBetta_blc(),
          chamber.getCstar(0.0), chamber.getBetta(0.0)})
        EXPECT_EQ(value, 0.0);
}

void expectStart(const Chamber& chamber, double H, double M, bool multiphase, bool ions)
{
    EXPECT_DOUBLE_EQ(chamber.getInitialH(), H);
    EXPECT_DOUBLE_EQ(chamber.getInitialHspec(), H / (M / 1000.0));
    ASSERT_NE(chamber.getReaction(), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::INJECTION_PLANE), chamber.getReaction());
    EXPECT_EQ(chamber.getReaction()->isMultiphase(), multiphase);
    EXPECT_EQ(chamber.getReaction()->isIons(), ions);
    expectEmpty(chamber);
}

TEST(Chamber, OnAMixtureBeginsEmpty)
{
    gasWithAJump().use();
    const auto mixture = JumpingGas::mixture(500.0);
    const double H = mixture->H();
    const double M = mixture->getM();
    EXPECT_GT(H, 1000.0); // J/mol, so that the checks below compare something
    expectStart(Chamber(*mixture), H, M, true, false);
    expectStart(Chamber(*mixture, false, true), H, M, false, true);
    expectStart(Chamber(*mixture, -5000.0), -5000.0, M, true, false);
    expectStart(Chamber(*mixture, -5000.0, false, true), -5000.0, M, false, true);
}

TEST(Chamber, OnAPropellantBeginsEmpty)
{
    gasWithAJump().use();
    thermo::Propellant propellant(1.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "Ar", 400.0, 101325.0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "Ar", 500.0, 101325.0, 1.0);
    const double H = propellant.H();
    const double M = propellant.getM();
    EXPECT_GT(H, 1000.0);
    expectStart(Chamber(propellant), H, M, true, false);
    expectStart(Chamber(propellant, false, true), H, M, false, true);
    expectStart(Chamber(propellant, -5000.0), -5000.0, M, true, false);
    expectStart(Chamber(propellant, -5000.0, false, true), -5000.0, M, false, true);
}

TEST(Chamber, OnFractionsThatDoNotAddUpFailsWithoutALeak)
{
    gasWithAJump().use();
    thermo::Mixture mixture;
    mixture.addSpecies("Ar", 298.15, 0.5);
    KETRA_EXPECT_THROW_CODE(Chamber{mixture}, thermo::Exception, 5);
}

TEST(Chamber, IsGivenByContractionOrByMassFlux)
{
    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setFcr(3.0);
    EXPECT_EQ(chamber.getFcr(), 3.0);
    chamber.setMr(100.0);
    EXPECT_EQ(chamber.getFcr(), 0.0);
    EXPECT_EQ(chamber.getMr(), 100.0);
    chamber.setFcr(2.0);
    EXPECT_EQ(chamber.getFcr(), 2.0);
    EXPECT_EQ(chamber.getMr(), 0.0);
}

TEST(Chamber, NumbersItsStationsFromTheInjectionPlane)
{
    EXPECT_EQ(Chamber::INJECTION_PLANE, 0u);
    EXPECT_EQ(Chamber::CHAMBER_END, 1u);
    EXPECT_EQ(Chamber::THROAT, 2u);

    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    chamber.setBLC(0.1, *JumpingGas::mixture(2000.0), false);
    chamber.solve(false, false, false);
    for (const int none : {-1, 3, 100}) {
        const auto station = static_cast<Chamber::CHAMBER_STATION>(none);
        EXPECT_EQ(chamber.getReaction(station), nullptr) << none;
        EXPECT_EQ(chamber.getBlcReaction(station), nullptr) << none;
        EXPECT_EQ(chamber.getDerivatives(none), nullptr) << none;
        EXPECT_EQ(chamber.getBlcDerivatives(none), nullptr) << none;
    }
}

TEST(Chamber, OfInfiniteAreaHasItsEndAtTheInjectionPlane)
{
    ketra_test::useShippedSpecies();
    Chamber chamber(*ketra_test::loxHydrogen(6.0));
    chamber.setP(chamberPressure);
    chamber.solve(/*finiteArea=*/false, false, false);
    EXPECT_EQ(chamber.getSigmaC(), 1.0);
    EXPECT_EQ(chamber.getWc(), 0.0);
    EXPECT_EQ(chamber.getPc_0(), chamberPressure);
    EXPECT_EQ(chamber.getReaction(Chamber::CHAMBER_END), chamber.getReaction());
    EXPECT_EQ(chamber.getDerivatives(Chamber::CHAMBER_END), chamber.getDerivatives());
    EXPECT_EQ(chamber.getDerivatives(Chamber::INJECTION_PLANE), chamber.getDerivatives());
    EXPECT_NE(chamber.getReaction(Chamber::THROAT), nullptr);
    EXPECT_NE(chamber.getReaction(Chamber::THROAT), chamber.getReaction());
}

// Of a perfect gas of constant heat capacities, all ratios at the throat have closed forms.
TEST(Chamber, OfAPerfectGasHasThePublishedThroat)
{
    const JumpingGas gas{{{6000.0, 3.5}}};
    gas.use();
    const double T = 2000.0, k = 3.5 / 2.5, R = thermo::gasConstant / 0.039948;
    Chamber chamber(*JumpingGas::mixture(T));
    chamber.setP(chamberPressure);
    chamber.setRelativeTolerance(1e-3);
    chamber.solve(false, false, false);
    const Equilibrium& throat = *chamber.getReaction(Chamber::THROAT);
    const Derivatives& sonic = *chamber.getDerivatives(Chamber::THROAT);
    const double small = 1e-7; // the Mach number is good to 1e-8
    EXPECT_NEAR(throat.getT() / T, 2.0 / (k + 1.0), small);
    EXPECT_NEAR(throat.getP() / chamberPressure, std::pow(2.0 / (k + 1.0), k / (k - 1.0)), small);
    EXPECT_NEAR(sonic.getA() / std::sqrt(k * R * T * 2.0 / (k + 1.0)), 1.0, small);
    const double gammaK = std::sqrt(k) * std::pow(2.0 / (k + 1.0), (k + 1.0) / (2.0 * (k - 1.0)));
    EXPECT_NEAR(chamber.getCstar_core() * gammaK / std::sqrt(R * T), 1.0, small);
}

struct Engine {
    const char* name;
    std::function<std::unique_ptr<thermo::Mixture>()> mixture;
    bool metals; // condensed products are to be expected
};

// For the messages of failed tests.
void PrintTo(const Engine& engine, std::ostream* out) { *out << engine.name; }

std::string nameOf(const testing::TestParamInfo<Engine>& engine) { return engine.param.name; }

class ChamberLaws : public testing::TestWithParam<Engine>
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    // Entropy from the end on, total enthalpy, Mach 1 and mass flux.
    static void expectLaws(const Chamber& chamber, bool finiteArea)
    {
        const Equilibrium& end = *chamber.getReaction(Chamber::CHAMBER_END);
        const Equilibrium& throat = *chamber.getReaction(Chamber::THROAT);
        EXPECT_NEAR(throat.getSspec() / end.getSspec(), 1.0, 1e-5);
        EXPECT_NEAR(throatMach(chamber), 1.0, 1e-5);
        EXPECT_NEAR(chamber.getCstar(0.0) * throatFlux(chamber) / chamber.getPc_0(), 1.0, 1e-12);
        if (!finiteArea) return;

        // Relative to the kinetic energy of the throat, the scale of all enthalpy differences.
        const Derivatives& gas = *chamber.getDerivatives(Chamber::CHAMBER_END);
        const double w = chamber.getWc();
        const double a = chamber.getDerivatives(Chamber::THROAT)->getA();
        const double h = chamber.getReaction()->getHspec();
        EXPECT_NEAR((h - end.getHspec() - w * w / 2.0) / (a * a), 0.0, 1e-12);
        EXPECT_GT(end.getSspec(), chamber.getReaction()->getSspec());
        // Momentum: what burns is accelerated by the fall of the pressure.
        EXPECT_NEAR((end.getP() + gas.getRho() * w * w) / chamberPressure, 1.0, 1e-4);
        const double flux = gas.getRho() * w * chamber.getFcr();
        EXPECT_NEAR(flux / throatFlux(chamber), 1.0, continuityError(chamber.getFcr()));
    }

    // The search reckons the stagnation pressure with rho w^2/2, as at low Mach numbers, which
    // costs some 3 % of the mass flux over the square of the contraction; and it finds the pressure
    // to 1e-5, of which the slow flow of a wide chamber is a small part.
    static double continuityError(double contraction)
    {
        const double square = contraction * contraction;
        return 0.04 / square + 3e-5 * square;
    }
};

TEST_P(ChamberLaws, HoldInAnInfiniteArea)
{
    Chamber chamber(*GetParam().mixture());
    chamber.setP(chamberPressure);
    chamber.solve(false, GetParam().metals, false);
    expectLaws(chamber, false);
}

TEST_P(ChamberLaws, HoldInAFiniteArea)
{
    for (const double contraction : {1.6, 2.5, 6.0}) {
        SCOPED_TRACE(contraction);
        Chamber chamber(*GetParam().mixture());
        chamber.setP(chamberPressure);
        chamber.setFcr(contraction);
        chamber.solve(true, GetParam().metals, false);
        EXPECT_EQ(chamber.getFcr(), contraction);
        EXPECT_GT(chamber.getMr(), 0.0);
        EXPECT_LT(chamber.getSigmaC(), 1.0);
        EXPECT_NEAR(chamber.getPc_0(), chamber.getSigmaC() * chamberPressure, 1e-6);
        expectLaws(chamber, true);
    }
}

// The chamber of a given mass flux is the one of the contraction that has this flux, down to the
// widest gas velocities in use.
TEST_P(ChamberLaws, HoldForAGivenMassFluxWhichLeadsBackToTheContraction)
{
    for (const double contraction : {1.4, 2.0, 3.0, 4.5, 8.0}) {
        SCOPED_TRACE(contraction);
        Chamber known(*GetParam().mixture());
        known.setP(chamberPressure);
        known.setFcr(contraction);
        known.solve(true, GetParam().metals, false);

        Chamber chamber(*GetParam().mixture());
        chamber.setP(chamberPressure);
        chamber.setMr(known.getMr());
        chamber.solve(true, GetParam().metals, false);
        EXPECT_EQ(chamber.getMr(), known.getMr());
        EXPECT_GT(chamber.getFcr(), 1.0);
        expectLaws(chamber, true);
        // Once in the flux of the known chamber and once in the contraction of this one.
        // With condensed products the search looks at the pressure alone.
        const double error = 2.0 * continuityError(contraction) + (GetParam().metals ? 1e-2 : 1e-3);
        EXPECT_NEAR(chamber.getFcr() / contraction, 1.0, error);
        EXPECT_NEAR(chamber.getWc() / known.getWc(), 1.0, error);
        EXPECT_NEAR(chamber.getPc_0() / known.getPc_0(), 1.0, error / (contraction * contraction));
        EXPECT_NEAR(chamber.getCstar_core() / known.getCstar_core(), 1.0, error / 100.0);
    }
}

// The wider the chamber, the slower the gas in it.
TEST_P(ChamberLaws, OfAWideChamberAreThoseOfAnInfiniteOne)
{
    Chamber infinite(*GetParam().mixture());
    infinite.setP(chamberPressure);
    infinite.solve(false, GetParam().metals, false);
    double lastSigma = 0.0;
    for (const double contraction : {5.0, 20.0, 100.0}) {
        SCOPED_TRACE(contraction);
        Chamber finite(*GetParam().mixture());
        finite.setP(chamberPressure);
        finite.setFcr(contraction);
        finite.solve(true, GetParam().metals, false);
        const double effect = 1.0 / (contraction * contraction); // of M^2, and so of all else
        EXPECT_GT(finite.getSigmaC(), lastSigma);
        EXPECT_NEAR(finite.getSigmaC(), 1.0, effect);
        EXPECT_NEAR(finite.getReaction(Chamber::CHAMBER_END)->getP() / chamberPressure, 1.0,
                    effect);
        EXPECT_NEAR(finite.getCstar_core() / infinite.getCstar_core(), 1.0, effect + 1e-5);
        EXPECT_NEAR(finite.getReaction(Chamber::THROAT)->getT() /
                        infinite.getReaction(Chamber::THROAT)->getT(),
                    1.0, effect + 1e-5);
        lastSigma = finite.getSigmaC();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Engines, ChamberLaws,
    testing::Values(Engine{"LoxHydrogen", [] { return ketra_test::loxHydrogen(6.0); }, false},
                    Engine{"LoxKerosene", [] { return ketra_test::loxKerosene(2.4); }, false},
                    Engine{"NtoMmh", [] { return ketra_test::ntoMmh(2.0); }, false},
                    Engine{"Solid", [] { return ketra_test::aluminisedSolid(0.12); }, true}),
    nameOf);

TEST(Chamber, FollowsItsRelativeTolerance)
{
    ketra_test::useShippedSpecies();
    for (const double tolerance : {1.0, 1e-2, 1e-4}) {
        Chamber chamber(*ketra_test::loxHydrogen(5.0));
        chamber.setP(chamberPressure);
        chamber.setRelativeTolerance(tolerance);
        chamber.solve(false, false, false);
        EXPECT_NEAR(throatMach(chamber), 1.0, tolerance * 1e-5);
        EXPECT_EQ(chamber.getReaction(Chamber::THROAT)->getRelativeTolerance(), tolerance);
    }
}

TEST(Chamber, CalculatesTransportPropertiesAtEveryStationOrNone)
{
    ketra_test::useShippedSpecies();
    const auto reactants = ketra_test::loxHydrogen(6.0);
    for (const bool finiteArea : {false, true})
        for (const bool wanted : {false, true}) {
            SCOPED_TRACE(testing::Message() << finiteArea << wanted);
            Chamber chamber(*reactants);
            chamber.setP(chamberPressure);
            chamber.setFcr(2.0);
            chamber.solve(finiteArea, false, wanted);
            for (const int station : {0, 1, 2}) {
                EXPECT_EQ(chamber.getDerivatives(station)->getV() > 0.0, wanted) << station;
                EXPECT_EQ(chamber.getDerivatives(station)->getCpeql() > 0.0, wanted) << station;
            }
        }
}

TEST(Chamber, HandsTheHintOnToEveryStation)
{
    // With the hint the solver looks for condensed products first; here it is the way to them.
    ketra_test::useShippedSpecies();
    Chamber chamber(*ketra_test::aluminisedSolid(0.16));
    chamber.setP(chamberPressure);
    chamber.setFcr(3.0);
    chamber.solve(true, /*expectCondensed=*/true, false);
    for (const auto station : {Chamber::INJECTION_PLANE, Chamber::CHAMBER_END, Chamber::THROAT})
        EXPECT_TRUE(chamber.getReaction(station)->hasCondensedPhase()) << station;
}

TEST(Chamber, SolvesTheInjectionPlaneAloneAsACombustor)
{
    gasWithAJump().use();
    Chamber chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    chamber.solve(false, false);
    EXPECT_NE(chamber.getDerivatives(), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::CHAMBER_END), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::THROAT), nullptr);

    chamber.setP(chamberPressure);
    chamber.solve(false, false, false);
    Combustor& combustor = chamber;
    combustor.setP(chamberPressure);
    combustor.solve(false, false); // the end is the injection plane still, with its new derivatives
    EXPECT_EQ(chamber.getDerivatives(Chamber::CHAMBER_END), chamber.getDerivatives());
    EXPECT_NE(chamber.getDerivatives(), nullptr);
}

TEST(Chamber, ChangesBetweenInfiniteAndFiniteAreaAtWill)
{
    ketra_test::useShippedSpecies();
    const auto reactants = ketra_test::loxHydrogen(6.0);
    Chamber chamber(*reactants);
    chamber.setFcr(2.0);
    const auto solve = [&](bool finiteArea) {
        chamber.setP(chamberPressure);
        chamber.solve(finiteArea, false, false);
        return chamber.getCstar_core();
    };
    const double infinite = solve(false);
    const double finite = solve(true);
    EXPECT_NE(chamber.getReaction(Chamber::CHAMBER_END), chamber.getReaction());
    EXPECT_GT(chamber.getWc(), 100.0);
    const double again = solve(true);
    EXPECT_NEAR(again / finite, 1.0, 1e-5);
    const double back = solve(false);
    EXPECT_NEAR(back / infinite, 1.0, 1e-5);
    EXPECT_EQ(chamber.getReaction(Chamber::CHAMBER_END), chamber.getReaction());
    EXPECT_EQ(chamber.getWc(), 0.0);
    EXPECT_EQ(chamber.getSigmaC(), 1.0);
    EXPECT_EQ(chamber.getPc_0(), chamberPressure);
}

TEST(Chamber, DropsItsResultsWithNewSpecies)
{
    ketra_test::useShippedSpecies();
    Chamber chamber(*ketra_test::loxHydrogen(6.0));
    chamber.setP(chamberPressure);
    chamber.setFcr(3.0);
    chamber.solve(true, false, false);
    const double all = chamber.getCstar_core();
    std::vector<std::string> none, radicals{"H", "O", "OH", "HO2", "H2O2", "O3"};
    chamber.setSpecies(none, radicals);
    EXPECT_EQ(chamber.getDerivatives(), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::CHAMBER_END), nullptr);
    EXPECT_EQ(chamber.getReaction(Chamber::THROAT), nullptr);
    chamber.setP(chamberPressure);
    chamber.solve(true, false, false);
    EXPECT_GT(chamber.getCstar_core() / all, 1.001); // no heat goes into dissociation
}

// The layer is solved by a virtual operation, as the last step.
TEST(Chamber, LetsASubclassSolveTheLayer)
{
    class Counting : public Chamber
    {
    public:
        using Chamber::Chamber;
        void blc_solve(bool calculateTransport) override
        {
            ++calls;
            transport = calculateTransport;
            EXPECT_GT(getCstar_core(), 0.0);
        }
        int calls = 0;
        bool transport = false;
    };
    gasWithAJump().use();
    Counting chamber(*JumpingGas::mixture(2000.0));
    chamber.setP(chamberPressure);
    chamber.solve(false, false, true);
    EXPECT_EQ(chamber.calls, 1);
    EXPECT_TRUE(chamber.transport);
}

} // namespace
