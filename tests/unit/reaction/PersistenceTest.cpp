// A persistent problem: the further attempts where the default method fails, on the shipped
// species.

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using namespace ketra_test;
using reaction::Equilibrium;
using reaction::ReactingMixture;
using verification::Grade;

namespace {

using Mixtures = std::unique_ptr<thermo::Mixture>;

Mixtures hydrogenFluorine()
{
    return mixtureOf({{"F2", 298.15, 0.582247}, {"H2", 298.15, 0.417753}});
}
constexpr double hydrogenFluorineP = 10629.2; // Pa
constexpr double hydrogenFluorineT = 818.9237;

Mixtures tetroxideHydrazine()
{
    return mixtureOf({{"N2O4(L)", 298.15, 0.494067}, {"N2H4(L)", 298.15, 0.505933}});
}

Mixtures hydrogenOxygenNitrogen()
{
    return mixtureOf({{"H2", 298.15, 0.4}, {"O2", 298.15, 0.3}, {"N2", 298.15, 0.3}},
                     thermo::_Species::MOLE_FRACTION);
}

std::unique_ptr<ReactingMixture> productsOf(const Equilibrium& problem)
{
    return std::unique_ptr<ReactingMixture>(problem.copyReactingMixture(true, true));
}

/// Entropy of the products, J/(mol K) of initial mixture: what a PS problem asks for.
double entropyOf(const Equilibrium& problem)
{
    return problem.getS() * problem.getResultingMixtureQuantaty();
}

/// Where the attempts of the last solve began.
std::vector<std::string> startsOf(const Equilibrium& problem)
{
    std::vector<std::string> starts;
    for (const Equilibrium::Attempt& attempt : problem.getAttempts())
        starts.push_back(attempt.start);
    return starts;
}

bool anyHolds(const std::vector<std::string>& lines, const std::string& part)
{
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(part) != std::string::npos;
    });
}

/// The two problems stand in the same state, to the last bit.
void expectSameBits(const Equilibrium& a, const Equilibrium& b)
{
    EXPECT_EQ(a.getT(), b.getT());
    EXPECT_EQ(a.getNg(), b.getNg());
    EXPECT_EQ(a.getH(), b.getH());
    EXPECT_EQ(a.getS(), b.getS());
    EXPECT_EQ(a.getU(), b.getU());
    EXPECT_EQ(a.getGspec(), b.getGspec());
    const auto left = productsOf(a);
    const auto right = productsOf(b);
    ASSERT_EQ(left->size(), right->size());
    for (unsigned j = 0; j < left->size(); ++j) {
        EXPECT_EQ(left->product(j)->getName(), right->product(j)->getName());
        EXPECT_EQ(left->n(j), right->n(j));
    }
}

class PersistenceTest : public testing::Test
{
protected:
    PersistenceTest() { useShippedSpecies(); }

    /// A persistent problem at given pressure and temperature.
    static std::unique_ptr<Equilibrium> atPT(thermo::Mixture& charge, double p, double T)
    {
        auto problem = std::make_unique<Equilibrium>(charge);
        problem->setPersistent(true);
        problem->setPT(p, T);
        return problem;
    }

    LogCapture log;
};

TEST_F(PersistenceTest, IsOffByDefaultAndCopied)
{
    const Mixtures charge = hydrogenFluorine();
    Equilibrium problem(*charge);
    EXPECT_FALSE(problem.isPersistent());
    EXPECT_FALSE(problem.isWarmStart());
    EXPECT_FALSE(Equilibrium(problem).isPersistent());
    problem.setPersistent(true);
    EXPECT_TRUE(Equilibrium(problem).isPersistent());
    EXPECT_FALSE(Equilibrium(problem).isWarmStart());
    problem.setPersistent(false);
    EXPECT_FALSE(Equilibrium(problem).isPersistent());
}

TEST_F(PersistenceTest, WhatTheDefaultMethodFindsIsReturnedAsItIs)
{
    const Mixtures charge = mixtureOf({{"O2(L)", 90.17, 0.85}, {"H2(L)", 20.27, 0.15}});
    Equilibrium plain(*charge), persistent(*charge), reset(*charge);
    persistent.setPersistent(true);
    reset.setPersistent(true);
    reset.setWarmStart(true);
    reset.setPersistent(false);
    reset.setWarmStart(false);
    for (Equilibrium* problem : {&plain, &persistent, &reset}) {
        problem->setPHspec(7e6, -1e6);
        problem->solve(false);
    }
    expectSameBits(plain, persistent);
    expectSameBits(plain, reset);
    EXPECT_TRUE(plain.getAttempts().empty());
    EXPECT_TRUE(reset.getAttempts().empty());
    ASSERT_EQ(startsOf(persistent), std::vector<std::string>{"from equal amounts"});
    EXPECT_EQ(persistent.getAttempts()[0].grade, Grade::A);
    EXPECT_TRUE(persistent.getAttempts()[0].finished);
    EXPECT_EQ(persistent.getAttempts()[0].T, persistent.getT());
    EXPECT_TRUE(log.infos().empty());
}

TEST_F(PersistenceTest, AHotCompositionIsTheStartWhereEqualAmountsFail)
{
    const Mixtures charge = hydrogenFluorine();
    Equilibrium plain(*charge);
    plain.setPT(hydrogenFluorineP, hydrogenFluorineT);
    KETRA_EXPECT_THROW_CODE(plain.solve(false), thermo::Exception, 8);
    log.clear();

    const auto problem = atPT(*charge, hydrogenFluorineP, hydrogenFluorineT);
    problem->solve(false);
    EXPECT_EQ(problem->getT(), hydrogenFluorineT);
    EXPECT_EQ(problem->certificate().grade, Grade::A);
    EXPECT_EQ(startsOf(*problem), (std::vector<std::string>{"from equal amounts", "from 3600 K"}));
    EXPECT_FALSE(problem->getAttempts()[0].finished);
    EXPECT_EQ(problem->getAttempts()[0].grade, Grade::F);
    EXPECT_EQ(problem->getAttempts()[1].grade, Grade::A);
}

TEST_F(PersistenceTest, EachAttemptIsLoggedAsInformation)
{
    const Mixtures charge = hydrogenFluorine();
    atPT(*charge, hydrogenFluorineP, hydrogenFluorineT)->solve(false);
    EXPECT_TRUE(log.errors().empty());
    EXPECT_TRUE(
        anyHolds(log.infos(), "Equilibrium, attempt 1, from equal amounts: failed at 818.924 K"));
    EXPECT_TRUE(
        anyHolds(log.infos(), "Equilibrium, attempt 2, from 3600 K: grade A at 818.924 K\r\n"));
}

// An ordinary nozzle exit: thirty gases of hydrogen, nitrogen and oxygen, half of them energetic.
TEST_F(PersistenceTest, ANozzleExitIsFoundFromAnyGuess)
{
    const Mixtures charge =
        mixtureOf({{"N2O4(L)", 298.15, 0.58945}, {"N2H4(L)", 298.15, 0.41055}}); // stoichiometric
    const auto known = atPT(*charge, 2e4, 1356.0);
    known->solve(false);
    for (const double guess : {800.0, 1200.0, 1356.0, 1450.0}) {
        Equilibrium plain(*charge);
        plain.setPSspec(2e4, known->getSspec());
        plain.setT(guess);
        bool failed = false;
        try {
            plain.solve(false);
        } catch (const thermo::Exception&) {
            failed = true;
        }
        EXPECT_TRUE(failed || plain.certificate().grade == Grade::F) << guess;

        Equilibrium problem(*charge);
        problem.setPersistent(true);
        problem.setPSspec(2e4, known->getSspec());
        problem.setT(guess);
        problem.solve(false);
        EXPECT_NEAR(problem.getT(), 1356.0, 1e-6) << guess;
        EXPECT_EQ(problem.certificate().grade, Grade::A);
        EXPECT_EQ(startsOf(problem).back(), "from 3600 K");
    }
}

TEST_F(PersistenceTest, TheHintIsReversedWhereAPhaseIsNeededFromTheStart)
{
    const Mixtures charge =
        mixtureOf({{"NH4CLO4(I)", 298.15, 0.62115}, {"AL(cr)", 298.15, 0.37885}});
    const auto known = atPT(*charge, 13486.7, 681.2846);
    known->solve(false);
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPHspec(13486.7, known->getHspec());
    problem.setT(1.05 * 681.2846);
    problem.solve(false);
    EXPECT_NEAR(problem.getT(), 681.2846, 1e-4);
    EXPECT_EQ(problem.certificate().grade, Grade::A);
    ASSERT_EQ(problem.getAttempts().size(), 3u);
    EXPECT_EQ(problem.getAttempts()[2].start, "from 3600 K with the hint reversed");
}

// Down an expansion the products of the state before are the last start that works near 200 K.
TEST_F(PersistenceTest, TheNearestSolutionIsAStart)
{
    const Mixtures charge = mixtureOf({{"O2(L)", 90.17, 0.9}, {"NH3(L)", 239.72, 0.1}});
    std::vector<std::unique_ptr<Equilibrium>> stations;
    stations.push_back(atPT(*charge, 2e6, 2200.0));
    stations.back()->solve(false);
    const double S = entropyOf(*stations.back());
    unsigned fromNearest = 0;
    while (stations.back()->getT() > 215.0) {
        auto next = std::make_unique<Equilibrium>(*stations.back());
        next->setPS(0.55 * stations.back()->getP(), S);
        next->solve(false);
        ASSERT_NE(next->certificate().grade, Grade::F) << next->getT();
        ASSERT_LT(next->getT(), stations.back()->getT() + 1e-6);
        fromNearest += startsOf(*next).back() == "from the nearest solution";
        stations.push_back(std::move(next));
    }
    EXPECT_GT(fromNearest, 0u);
}

TEST_F(PersistenceTest, TheMainSpeciesAloneAreAStart)
{
    const Mixtures charge =
        mixtureOf({{"NH4CLO4(I)", 298.15, 0.832019}, {"AL(cr)", 298.15, 0.167981}});
    const auto problem = atPT(*charge, 5351090.0, 442.9514);
    problem->solve(false);
    EXPECT_EQ(startsOf(*problem).back(), "main species first");
    EXPECT_EQ(problem->certificate().grade, Grade::A);
}

TEST_F(PersistenceTest, TheElementPotentialsAreTheLastResort)
{
    const Mixtures charge = tetroxideHydrazine();
    const auto known = atPT(*charge, 565670.0, 307.2234);
    known->solve(false);
    ASSERT_EQ(known->certificate().grade, Grade::A);
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPSspec(565670.0, known->getSspec());
    problem.solve(false);
    EXPECT_NEAR(problem.getT(), 307.2234, 1e-6);
    EXPECT_EQ(problem.certificate().grade, Grade::A);
    EXPECT_EQ(startsOf(problem),
              (std::vector<std::string>{"from equal amounts", "from 3600 K",
                                        "from 3600 K with the hint reversed", "main species first",
                                        "over the element potentials"}));
    EXPECT_NEAR(problem.getHspec(), known->getHspec(), 1e-6 * std::abs(known->getHspec()));
}

// Water and ice come and go by turns here, and no state settles. In the band of the blend, from 253
// to 293 K, two temperatures can have the same enthalpy.
TEST_F(PersistenceTest, WaterAndIceAreDecidedByTheirDrivingForce)
{
    const Mixtures charge = hydrogenOxygenNitrogen();
    for (double T = 240.0; T < 310.0; T += 4.0) {
        const auto known = atPT(*charge, 1e5, T);
        known->solve(false);
        EXPECT_NE(known->certificate().grade, Grade::F) << T;
        for (const bool entropy : {false, true}) {
            Equilibrium problem(*charge);
            problem.setPersistent(true);
            if (entropy)
                problem.setPSspec(1e5, known->getSspec());
            else
                problem.setPHspec(1e5, known->getHspec());
            problem.solve(false);
            if (T < 250.0 || T > 293.15) {
                EXPECT_NEAR(problem.getT(), T, 1e-7 * T);
            }
            EXPECT_NE(problem.certificate().grade, Grade::F) << T;
            EXPECT_GT(problem.getNumberOfCondensedSpecies(), 0u);
        }
    }
}

TEST_F(PersistenceTest, OxidesOfIronAreFoundAtEveryTemperature)
{
    const Mixtures charge =
        mixtureOf({{"Fe(a)", 298.15, 0.62}, {"O2", 298.15, 0.38}}, thermo::_Species::MOLE_FRACTION);
    unsigned byPotentials = 0;
    for (double T = 300.0; T < 4000.0; T += 93.0) {
        const auto problem = atPT(*charge, 101325.0, T);
        ASSERT_NO_THROW(problem->solve(false)) << T;
        EXPECT_NE(problem->certificate().grade, Grade::F) << T;
        byPotentials += startsOf(*problem).back() == "over the element potentials";
    }
    EXPECT_GT(byPotentials, 0u);
}

TEST_F(PersistenceTest, GraphiteIsFoundAtItsEdge)
{
    for (const double T : {300.0, 600.0, 923.0, 2000.0}) {
        for (int carbon = 1; carbon < 10; ++carbon) {
            const Mixtures charge = mixtureOf({{"C(gr)", 298.15, 0.1 * carbon},
                                               {"O2", 298.15, 0.7 - 0.07 * carbon},
                                               {"H2", 298.15, 0.3 - 0.03 * carbon}},
                                              thermo::_Species::MOLE_FRACTION);
            const auto problem = atPT(*charge, 1e5, T);
            ASSERT_NO_THROW(problem->solve(false)) << T << " " << carbon;
            EXPECT_EQ(problem->certificate().grade, Grade::A) << T << " " << carbon;
        }
    }
}

TEST_F(PersistenceTest, AnExcessOfAMillionthOfAMetalIsItsPhase)
{
    const Mixtures charge = mixtureOf({{"AL(cr)", 298.15, 0.571429}, {"O2", 298.15, 0.428571}},
                                      thermo::_Species::MOLE_FRACTION);
    const auto problem = atPT(*charge, 101325.0, 594.0);
    problem->solve(false);
    EXPECT_EQ(problem->certificate().grade, Grade::A);
    const auto products = productsOf(*problem);
    ASSERT_EQ(problem->getNumberOfCondensedSpecies(), 2u);
    const unsigned metal = products->gasSize();
    EXPECT_EQ(products->product(metal)->getName(), "AL(cr)");
    EXPECT_NEAR(products->n(metal), 1e-6, 1e-12); // 0.571429 - 4/3 0.428571
}

// The oxide holds its elements exactly: their potentials are open between two ends.
TEST_F(PersistenceTest, AnOxideAloneIsAState)
{
    const Mixtures charge = mixtureOf({{"AL(cr)", 298.15, 4.0 / 7.0}, {"O2", 298.15, 3.0 / 7.0}},
                                      thermo::_Species::MOLE_FRACTION);
    for (const double T : {595.0, 900.0, 1500.0, 2600.0}) {
        const auto problem = atPT(*charge, 101325.0, T);
        ASSERT_NO_THROW(problem->solve(false)) << T;
        EXPECT_EQ(problem->certificate().grade, Grade::A) << T;
        EXPECT_EQ(problem->getNumberOfCondensedSpecies(), 1u);
        EXPECT_LT(problem->getNg(), 1e-6);
    }
}

// Hydrogen, liquid potassium and its hydride: by the phase rule the pressure fixes the temperature,
// and the enthalpy divides the phases.
TEST_F(PersistenceTest, APhaseChangeAtOneTemperatureIsDividedByTheEnthalpy)
{
    const Mixtures charge =
        mixtureOf({{"H2", 298.15, 0.6948989620281215}, {"K(cr)", 298.15, 0.30510103797187843}},
                  thermo::_Species::MOLE_FRACTION);
    double hydride = 1.0;
    for (const double H : {13000.0, 13075.965861438133, 13200.0}) { // J per mole
        Equilibrium problem(*charge);
        problem.setPersistent(true);
        problem.setPH(357880.0760339908, H);
        problem.solve(false);
        EXPECT_NEAR(problem.getT(), 745.823, 1e-3);
        EXPECT_EQ(problem.certificate().grade, Grade::A);
        const auto products = productsOf(problem);
        ASSERT_EQ(problem.getNumberOfCondensedSpecies(), 2u);
        const unsigned c = products->gasSize();
        const unsigned which = products->product(c)->getName() == "KH(cr)" ? c : c + 1;
        EXPECT_EQ(products->product(which)->getName(), "KH(cr)");
        EXPECT_LT(products->n(which), hydride); // the more enthalpy, the less
        hydride = products->n(which);
        EXPECT_GT(hydride, 0.0);
    }
}

TEST_F(PersistenceTest, AfterAFurtherAttemptAllResultsStandAsUsual)
{
    const Mixtures charge = tetroxideHydrazine();
    const auto known = atPT(*charge, 565670.0, 307.2234);
    known->solve(false);
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPSspec(565670.0, known->getSspec());
    problem.solve(false);
    ASSERT_GT(problem.getAttempts().size(), 1u);

    const auto products = productsOf(problem);
    const unsigned size = products->size();
    EXPECT_GT(products->gasSize(), 20u);
    for (unsigned j = 1; j < size; ++j)
        EXPECT_TRUE(*products->product(j - 1) < products->product(j)) << j;
    const double N = problem.getResultingMixtureQuantaty();
    EXPECT_NEAR(problem.getH() * N, problem.getRT() * problem.sum_nH(0, size),
                1e-9 * std::abs(problem.getH() * N));
    EXPECT_NEAR(
        problem.getS() * N,
        problem.getRT() / problem.getT() *
            (problem.sum_nS_L(0, products->gasSize()) + problem.sum_nS(products->gasSize(), size)),
        1e-9 * problem.getS() * N);
    EXPECT_NEAR(problem.getG(), problem.getH() - problem.getT() * problem.getS(),
                1e-8 * std::abs(problem.getG()));
    EXPECT_NEAR(problem.getNg(), problem.sum_n(0, products->gasSize()), 1e-9 * N);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PS);
    reaction::Derivatives derivatives(&problem);
    EXPECT_NO_THROW(derivatives.solve(false));
}

TEST_F(PersistenceTest, IonsStayAsPosed)
{
    const Mixtures charge = hydrogenFluorine();
    Equilibrium problem(*charge, true, true);
    problem.setPersistent(true);
    problem.setPT(hydrogenFluorineP, 250.0);
    problem.solve(false);
    EXPECT_NE(problem.certificate().grade, Grade::F);
    EXPECT_TRUE(problem.isIons());
    reaction::Derivatives derivatives(&problem); // of a state without any ion
    EXPECT_NO_THROW(derivatives.solve(false));
    EXPECT_TRUE(std::isfinite(derivatives.getA()));

    problem.setPT(hydrogenFluorineP, hydrogenFluorineT);
    problem.solve(false);
    EXPECT_NE(problem.certificate().grade, Grade::F);
    problem.setPT(hydrogenFluorineP, 9000.0);
    problem.solve(false);
    EXPECT_EQ(problem.certificate().grade, Grade::A);
    std::vector<std::string> names;
    problem.getAllSpeciesNames(&names, 1e-4);
    EXPECT_NE(std::find(names.begin(), names.end(), "e-"), names.end());
}

TEST_F(PersistenceTest, ATargetBelowTheDataIsRefusedByName)
{
    const Mixtures charge = hydrogenOxygenNitrogen();
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPHspec(1e5, -3e7);
    problem.setT(1500.0);
    log.clear();
    KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not solve the equilibrium: the prescribed enthalpy lies "
                                "below that of the products at 200.00 K, where their data begin."
                                "\r\n"});
    EXPECT_EQ(problem.getT(), 1500.0);
    EXPECT_NEAR(problem.getH(), -3e7 * charge->mm(), 1e-3); // as posed
    EXPECT_EQ(problem.certificate().grade, Grade::F);
    EXPECT_GT(problem.getAttempts().size(), 1u);

    problem.setPSspec(1e5, 100.0);
    log.clear();
    KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
    EXPECT_TRUE(anyHolds(log.errors(), "the prescribed entropy lies below"));
}

TEST_F(PersistenceTest, ATargetAboveTheDataIsRefusedByName)
{
    const Mixtures charge = hydrogenOxygenNitrogen();
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setVUspec(1.0, 1e10);
    KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Could not solve the equilibrium: the prescribed internal energy "
                                "lies above that of the products at 20000.00 K, where their data "
                                "end.\r\n"});
}

TEST_F(PersistenceTest, AProblemWithoutAnySolutionFailsAsByDefault)
{
    const Mixtures charge = hydrogenOxygenNitrogen();
    const auto problem = atPT(*charge, 1e5, 100.0); // no product has data there
    KETRA_EXPECT_THROW_CODE(problem->solve(false), thermo::Exception, 8);
    EXPECT_TRUE(anyHolds(log.errors(), "Could not solve the equilibrium: none of "));
    for (const Equilibrium::Attempt& attempt : problem->getAttempts()) {
        EXPECT_FALSE(attempt.finished);
        EXPECT_EQ(attempt.grade, Grade::F);
    }
    problem->setPT(1e5, 3000.0);
    problem->solve(false);
    EXPECT_EQ(problem->certificate().grade, Grade::A);
    EXPECT_EQ(problem->getAttempts().size(), 1u);
}

TEST_F(PersistenceTest, BadNumbersAreFailures)
{
    const Mixtures charge = hydrogenFluorine();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {nan, infinity, -infinity, -1.0, 0.0, 1e300}) {
        for (int which = 0; which < 4; ++which) {
            Equilibrium problem(*charge);
            problem.setPersistent(true);
            problem.setWarmStart(true);
            if (which == 0) problem.setPT(1e5, bad);
            if (which == 1) problem.setPT(bad, 1000.0);
            if (which == 2) problem.setPHspec(1e5, bad);
            if (which == 3) problem.setVT(bad, 1000.0);
            bool failed = false;
            try {
                problem.solve(false);
            } catch (const thermo::Exception&) {
                failed = true;
            }
            EXPECT_EQ(failed, problem.certificate().grade == Grade::F) << bad << " " << which;
        }
    }
}

// Gas, water and ice at given volume, and the targets that lead back to the same states.
TEST_F(PersistenceTest, ProblemsOfGivenVolumeAreSolvedToo)
{
    const Mixtures charge = hydrogenOxygenNitrogen();
    for (const double T : {280.0, 320.0, 700.0, 3000.0}) {
        Equilibrium known(*charge);
        known.setPersistent(true);
        known.setVT(1.2, T);
        ASSERT_NO_THROW(known.solve(false)) << T;
        EXPECT_NE(known.certificate().grade, Grade::F) << T;
        Equilibrium problem(*charge);
        problem.setPersistent(true);
        problem.setVSspec(1.2, known.getSspec());
        ASSERT_NO_THROW(problem.solve(false)) << T;
        EXPECT_NE(problem.certificate().grade, Grade::F) << T;
        if (T > 293.15) {
            EXPECT_NEAR(problem.getT(), T, 1e-7 * T);
        }
    }
}

} // namespace
