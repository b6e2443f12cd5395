#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using namespace ketra_test;
using math::matrix::ColumnVector;
using reaction::Equilibrium;
using reaction::ReactingMixture;
using thermo::gasConstant;

namespace {

using Names = std::vector<std::string>;

class OpenEquilibrium : public Equilibrium
{
public:
    using Equilibrium::_solve;
    using Equilibrium::Equilibrium;
    using Equilibrium::excludeTransitPhase;
};

std::unique_ptr<thermo::Mixture> hydrogenOxygenAluminium()
{
    return mixtureOf({{"AL(cr)", 300.0, 0.3}, {"O2", 300.0, 0.3}, {"H2", 300.0, 0.4}},
                     thermo::_Species::MOLE_FRACTION);
}

std::unique_ptr<ReactingMixture> productsOf(const Equilibrium& problem)
{
    return std::unique_ptr<ReactingMixture>(problem.copyReactingMixture(true, true));
}

bool holdsText(const Names& lines, const std::string& text)
{
    return std::find(lines.begin(), lines.end(), text) != lines.end();
}

class SolverTest : public testing::Test
{
protected:
    SolverTest() { useSpecies(sampleSpecies()); }
    LogCapture log;
};

/// Largest amount by which the moles of an element in the products miss those of the charge,
/// relative to the largest element. The certificate is looked at, too.
double imbalance(const Equilibrium& problem)
{
    EXPECT_EQ(problem.certificate().grade, verification::Grade::A) << problem.certificate().reason;
    const auto products = productsOf(problem);
    double worst = 0.0, largest = 0.0;
    for (unsigned i = 0; i < products->elSize(); ++i) {
        const double given = products->b(i) / products->element(i)->am();
        double present = 0.0;
        for (unsigned j = 0; j < products->size(); ++j)
            present += products->a(i, j) * products->n(j);
        worst = std::max(worst, std::abs(present - given));
        largest = std::max(largest, given);
    }
    return worst / largest;
}

} // namespace

TEST_F(SolverTest, AGivenTemperatureStaysAndTheEnthalpyIsTheResult)
{
    useShippedSpecies();
    const auto charge =
        mixtureOf({{"H2", 300.0, 0.6}, {"O2", 300.0, 0.4}}, thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setPT(1e6, 3000.0);
    problem.solve(false);
    EXPECT_EQ(problem.getT(), 3000.0);
    EXPECT_EQ(problem.getP(), 1e6);
    const auto products = productsOf(problem);
    double H = 0.0;
    for (unsigned j = 0; j < products->size(); ++j)
        H += products->n(j) * products->product(j)->H0();
    EXPECT_NEAR(problem.getH(), H / products->getN(), 1e-9 * std::abs(H));
    const std::unique_ptr<thermo::Mixture> resulting(products->copyResultingMixture());
    EXPECT_NEAR(problem.getHspec(), problem.getH() / resulting->getMm(),
                1e-9 * std::abs(problem.getHspec()));
    EXPECT_NEAR(problem.getG(), problem.getH() - 3000.0 * problem.getS(),
                1e-8 * std::abs(problem.getG()));
    EXPECT_NEAR(problem.getU(), problem.getH() - gasConstant * 3000.0,
                1e-8 * std::abs(problem.getU()));
    EXPECT_LT(imbalance(problem), 1e-8);
}

TEST_F(SolverTest, EquilibriumOfOneReactionFollowsTheLawOfMassAction)
{
    const auto charge = hydrogenOxygen();
    for (const double T : {700.0, 1500.0, 2500.0, 4000.0}) {
        SCOPED_TRACE(T);
        Equilibrium problem(*charge);
        problem.setPT(2e5, T);
        problem.solve(false);
        const auto m = productsOf(problem);
        const double N = m->getN();
        const auto mu = [&](const char* name) {
            const auto* product = entryOf(*m, name);
            return product->G0_tilde() + std::log(product->n() / N) + std::log(2.0);
        };
        EXPECT_NEAR(2.0 * mu("H"), mu("H2"), 1e-5);
        EXPECT_NEAR(mu("H2") + 0.5 * mu("O2"), mu("H2O"), 1e-5);
        EXPECT_LT(imbalance(problem), 1e-8);
    }
}

TEST_F(SolverTest, TheLimitOfCyclesIsNeverBelowFifty)
{
    const auto charge = hydrogenOxygen();
    Equilibrium few(*charge), many(*charge);
    few.setMaxCycles(1);
    few.setPT(1e5, 2000.0);
    few.solve(false);
    EXPECT_EQ(few.getMaxCycles(), 1u);
    many.setMaxCycles(50);
    many.setPT(1e5, 2000.0);
    many.solve(false);
    EXPECT_EQ(few.getG(), many.getG());
}

TEST_F(SolverTest, RunningOutOfCyclesIsAFailure)
{
    const auto charge = hydrogenOxygen();
    Equilibrium problem(*charge);
    problem.setRelativeTolerance(0.0); // no correction is small enough
    problem.setPT(1e5, 2000.0);
    KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
    const std::string text =
        "Could not solve the equilibrium: maximum number of iterations is exceeded.\r\n";
    EXPECT_EQ(log.errors(), (Names{text}));
    EXPECT_EQ(log.tagOf(text), "THERMO");
}

TEST_F(SolverTest, AWiderToleranceEndsEarlierAtALessExactResult)
{
    useShippedSpecies();
    const auto charge = loxHydrogen(6.0);
    Equilibrium exact(*charge), rough(*charge);
    exact.setPH(7e6, charge->H());
    exact.setRelativeTolerance(0.01);
    exact.solve(false);
    rough.setPH(7e6, charge->H());
    rough.setRelativeTolerance(1e6);
    rough.solve(false);
    const double error = std::abs(rough.getT() / exact.getT() - 1.0);
    EXPECT_GT(error, 1e-9);
    EXPECT_LT(error, 1e-2);
    Equilibrium normal(*charge);
    normal.setPH(7e6, charge->H());
    normal.solve(false);
    EXPECT_NEAR(normal.getT(), exact.getT(), 1e-6 * exact.getT());
}

TEST_F(SolverTest, ProductsThatAllLeftTheirRangeAreAFailureOfTheEquilibrium)
{
    std::vector<Record> records = sampleSpecies();
    for (Record& record : records)
        record.intervals[0].T2 = std::min(record.intervals[0].T2, 1000.0);
    useSpecies(records);
    const auto charge = hydrogenOxygen();
    Equilibrium problem(*charge);
    problem.setPT(1e5, 2000.0);
    KETRA_EXPECT_THROW_MESSAGE(problem.solve(false), thermo::Exception, 8,
                               "Could not find equilibrium");
    const std::string text = "Could not solve the equilibrium. Probably there are no products that "
                             "exist at the temperature 2000.000 K\r\n";
    EXPECT_EQ(log.errors(), (Names{text}));
    EXPECT_EQ(log.tagOf(text), "THERMO");
    EXPECT_EQ(log.warnings(), (Names{"T=2000.000000 Remove H\n", "T=2000.000000 Remove H2\n",
                                     "T=2000.000000 Remove H2O\n", "T=2000.000000 Remove O2\n"}));
}

TEST_F(SolverTest, AnEmptyProductListIsReportedByOneRunAsAnInvalidState)
{
    std::vector<Record> records = sampleSpecies();
    for (Record& record : records)
        record.intervals[0].T2 = std::min(record.intervals[0].T2, 1000.0);
    useSpecies(records);
    const auto charge = hydrogenOxygen();
    OpenEquilibrium problem(*charge);
    problem.setPT(1e5, 2000.0);
    EXPECT_THROW(problem.solve(false), thermo::Exception);
    KETRA_EXPECT_THROW_MESSAGE(std::unique_ptr<ColumnVector>(problem._solve()), thermo::Exception,
                               0, "Invalid state");
}

TEST_F(SolverTest, AnElementWithoutProductsIsAFailure)
{
    useSpecies({gasRecord("O2", {{"O", 2.0}}, 31.9988, -1000.0),
                condensedRecord("XE(cr)", {{"XE", 1.0}}, 131.0, 1, 200.0, 900.0, -100.0)});
    const auto charge = mixtureOf({{"O2", 300.0, 0.5}, {"XE(cr)", 300.0, 0.5}});
    Names none, omitted{"XE(cr)"};
    Equilibrium problem(*charge);
    problem.setSpecies(none, omitted);
    problem.setPT(1e5, 1000.0);
    KETRA_EXPECT_THROW_CODE(problem.solve(false), thermo::Exception, 8);
}

TEST_F(SolverTest, ACondensedPhaseThatDoesNotPayLeavesAgain)
{
    // Asked for from the start at 2500 K: liquid alumina enters by its plain Gibbs energy, although
    // the charge has no room for it in this gas (there is hardly any oxygen in it).
    const auto charge =
        mixtureOf({{"AL(cr)", 300.0, 1e-9}, {"O2", 300.0, 0.4}, {"H2", 300.0, 0.6 - 1e-9}},
                  thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setPT(1e2, 3500.0);
    problem.solve(true);
    EXPECT_TRUE(holdsText(log.warnings(), "T=3500.0000 Include AL2O3(L)\n"));
    EXPECT_FALSE(problem.hasCondensedPhase());
    Equilibrium gases(*charge, false, false);
    gases.setPT(1e2, 3500.0);
    gases.solve(false);
    EXPECT_NEAR(problem.getGspec(), gases.getGspec(), 1e-9 * std::abs(gases.getGspec()));
}

TEST_F(SolverTest, ACondensedPhaseThatPaysEntersByItself)
{
    const auto charge = hydrogenOxygenAluminium();
    Equilibrium late(*charge), early(*charge);
    late.setPT(1e5, 1500.0);
    late.solve(false);
    ASSERT_EQ(late.getNumberOfCondensedSpecies(), 1u);
    EXPECT_EQ(late.getCondensedSpecies(0u)->getName(), "AL2O3(a)");
    EXPECT_TRUE(holdsText(log.warnings(), "T=1500.0000 Include AL2O3(a)\n"));
    early.setPT(1e5, 1500.0);
    early.solve(true);
    EXPECT_NEAR(early.getGspec(), late.getGspec(), 1e-9 * std::abs(late.getGspec()));
    EXPECT_LT(imbalance(late), 1e-8);
    EXPECT_LT(imbalance(early), 1e-8);
}

TEST_F(SolverTest, InsideTheBandTheBlendIsTheCondensedProduct)
{
    const auto charge = hydrogenOxygenAluminium();
    Equilibrium problem(*charge);
    problem.setPT(1e5, 1950.0);
    problem.solve(true);
    ASSERT_EQ(problem.getNumberOfCondensedSpecies(), 1u);
    EXPECT_EQ(problem.getCondensedSpecies(0u)->getName(), "AL2O3(transit)");
    const auto products = productsOf(problem);
    const std::unique_ptr<thermo::Mixture> resulting(products->copyResultingMixture());
    const int last = resulting->size() - 1;
    EXPECT_EQ(resulting->getSpecies(last)->getName(), "AL2O3(L)");
    EXPECT_NEAR(resulting->getMolarFraction(last - 1) / resulting->getMolarFraction(last), 3.0,
                1e-9);
}

TEST_F(SolverTest, AColdStartLooksForACondensedPhaseUnasked)
{
    const auto charge = hydrogenOxygen();
    Equilibrium problem(*charge);
    problem.setPT(1e5, 372.9);
    problem.reset(false);
    EXPECT_TRUE(problem.hasCondensedPhase());
    problem.setT(373.0);
    problem.reset(false);
    EXPECT_FALSE(problem.hasCondensedPhase());
    problem.reset(true);
    EXPECT_TRUE(problem.hasCondensedPhase());
    Equilibrium gases(*charge, false, false);
    gases.setPT(1e5, 300.0);
    gases.reset(true);
    EXPECT_FALSE(gases.hasCondensedPhase());
}

TEST_F(SolverTest, TheStartIsSevenTenthsOfAMoleOfGas)
{
    const auto charge = hydrogenOxygenAluminium();
    Equilibrium problem(*charge);
    problem.setPT(1e5, 1500.0);
    problem.reset(true);
    EXPECT_EQ(problem.getNg(), 0.7);
    const auto products = productsOf(problem);
    const unsigned ng = products->gasSize();
    ASSERT_EQ(products->size(), ng + 1);
    for (unsigned j = 0; j < ng; ++j) {
        EXPECT_DOUBLE_EQ(products->n(j), 0.7 / ng);
        EXPECT_DOUBLE_EQ(products->ln_n(j), std::log(0.7 / ng));
    }
    EXPECT_EQ(products->n(ng), 0.0);
}

TEST_F(SolverTest, WithoutAnyGasTheFirstCondensedAmountDecides)
{
    useSpecies({condensedRecord("AL(cr)", {{"AL", 1.0}}, 26.9815386, 1, 200.0, 900.0, -900.0),
                condensedRecord("MG(cr)", {{"MG", 1.0}}, 24.305, 1, 200.0, 900.0, -800.0)});
    const auto charge = mixtureOf({{"AL(cr)", 300.0, 1.0}}, thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setVT(0.01, 500.0);
    problem.solve(true);
    const auto products = productsOf(problem);
    ASSERT_EQ(products->size(), 1u);
    EXPECT_EQ(products->gasSize(), 0u);
    EXPECT_NEAR(products->n(0), 1.0, 1e-12);
    EXPECT_NEAR(problem.getH(), gasConstant * (3.0 * 500.0 - 900.0), 1e-8);
    EXPECT_EQ(problem.getNg(), 0.0);
}

TEST_F(SolverTest, AVolumeProblemSumsItsGases)
{
    const auto charge = hydrogenOxygen();
    Equilibrium problem(*charge);
    problem.setVT(0.8, 2600.0);
    problem.solve(false);
    EXPECT_EQ(problem.getP(), 0.0); // the derivatives work the pressure out
    const auto products = productsOf(problem);
    EXPECT_NEAR(problem.getNg(), products->getNg(), 1e-12);
    const double p = problem.getNg() * gasConstant * 2600.0 / (charge->mm() * 0.8);
    Equilibrium same(*charge);
    same.setPT(p, 2600.0);
    same.solve(false);
    EXPECT_NEAR(same.getGspec(), problem.getGspec(), 1e-7 * std::abs(problem.getGspec()));
    EXPECT_NEAR(same.getSspec(), problem.getSspec(), 1e-7 * problem.getSspec());
    EXPECT_NEAR(same.getUspec(), problem.getUspec(), 1e-6 * std::abs(problem.getUspec()));
}

TEST_F(SolverTest, ATargetOfZeroIsReached)
{
    useShippedSpecies();
    const auto charge =
        mixtureOf({{"H2", 298.15, 0.6}, {"O2", 298.15, 0.4}}, thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setPH(1e6, 0.0);
    problem.solve(false);
    Equilibrium near(*charge);
    near.setPH(1e6, 1e-3);
    near.solve(false);
    EXPECT_NEAR(problem.getT(), near.getT(), 1e-5 * near.getT());
    EXPECT_GT(problem.getT(), 2500.0);
}

TEST_F(SolverTest, IonsKeepTheChargeAtZero)
{
    useShippedSpecies();
    const auto charge = mixtureOf({{"Li(cr)", 298.15, 0.25}, {"F2", 298.15, 0.75}});
    Equilibrium problem(*charge, true, true);
    problem.setPT(1e5, 4500.0);
    problem.solve(false);
    const auto products = productsOf(problem);
    double net = 0.0, positive = 0.0;
    for (unsigned j = 0; j < products->size(); ++j) {
        const double q = products->product(j)->getCharge() * products->n(j);
        net += q;
        positive += std::max(q, 0.0);
    }
    EXPECT_GT(positive, 1e-6);
    EXPECT_LT(std::abs(net), 1e-9);
    EXPECT_LT(imbalance(problem), 1e-8);
}

namespace {

/// Gases that hold aluminium and oxygen, and two solids of the composition ALO. At 1000 K the
/// reduced Gibbs energies are -150 and -60: the large formula gains more from the gas, -40 for one
/// ALO, and enters first; per atom the small one is lower and enters next.
std::vector<Record> solidsOfOneComposition()
{
    return {gasRecord("AL", {{"AL", 1.0}}, 26.9815386, 0.0),
            gasRecord("O2", {{"O", 2.0}}, 31.9988, 0.0),
            condensedRecord("AL3O3(cr)", {{"AL", 3.0}, {"O", 3.0}}, 128.9, 1, 200.0, 3000.0,
                            -132280.0, 0.0),
            condensedRecord("ALO(cr)", {{"AL", 1.0}, {"O", 1.0}}, 42.98, 1, 200.0, 3000.0, -42280.0,
                            0.0)};
}

} // namespace

TEST_F(SolverTest, ACondensedSpeciesThatMakesTheMatrixSingularIsNamed)
{
    useSpecies(solidsOfOneComposition());
    const auto charge =
        mixtureOf({{"AL", 300.0, 0.3}, {"O2", 300.0, 0.7}}, thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setPT(1e5, 1000.0);
    KETRA_EXPECT_THROW_MESSAGE(problem.solve(true), thermo::Exception, 18, "ALO(cr)");
    EXPECT_EQ(log.errors(),
              (Names{"Singularity!\r\n", "List of condensed species so far:\r\n", "\tAL3O3(cr)\r\n",
                     "New species added: ALO(cr)\r\n",
                     "Consider to add ALO(cr) into the list of omitted products\r\n"}));
    for (const std::string& line : log.errors()) EXPECT_EQ(log.tagOf(line), "THERMO");
    EXPECT_EQ(log.warnings(),
              (Names{"T=1000.0000 Include AL3O3(cr)\n", "T=1000.0000 Include ALO(cr)\n"}));

    // The advice helps.
    Names none, omitted{"ALO(cr)"};
    problem.setSpecies(none, omitted);
    problem.solve(true);
    EXPECT_EQ(problem.getNumberOfCondensedSpecies(), 1u);
}

TEST_F(SolverTest, BadNumbersAreFailuresAndNeverResults)
{
    useShippedSpecies();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const auto charge = hydrogenOxygen();
    const double H = charge->H();
    using Pose = void (Equilibrium::*)(double, double);
    struct Case {
        const char* name;
        Pose pose;
        double first, second;
    };
    std::vector<Case> cases;
    for (const double bad : {nan, infinity, -infinity, 0.0, -1e5}) {
        cases.push_back({"PT p", &Equilibrium::setPT, bad, 2000.0});
        cases.push_back({"PT T", &Equilibrium::setPT, 1e5, bad});
        cases.push_back({"PH p", &Equilibrium::setPH, bad, H});
        cases.push_back({"PS p", &Equilibrium::setPS, bad, 200.0});
        cases.push_back({"VT v", &Equilibrium::setVT, bad, 2000.0});
        cases.push_back({"VT T", &Equilibrium::setVT, 1.0, bad});
        cases.push_back({"VU v", &Equilibrium::setVU, bad, H});
        cases.push_back({"VS v", &Equilibrium::setVS, bad, 200.0});
    }
    for (const double bad : {nan, infinity, -infinity}) {
        cases.push_back({"PH H", &Equilibrium::setPH, 1e5, bad});
        cases.push_back({"PS S", &Equilibrium::setPS, 1e5, bad});
        cases.push_back({"VU U", &Equilibrium::setVU, 1.0, bad});
        cases.push_back({"VS S", &Equilibrium::setVS, 1.0, bad});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.name << ": " << c.first << ", " << c.second);
        Equilibrium problem(*charge);
        (problem.*c.pose)(c.first, c.second);
        EXPECT_THROW(problem.solve(false), runtime::Exception);
        Equilibrium expecting(*charge);
        (expecting.*c.pose)(c.first, c.second);
        EXPECT_THROW(expecting.solve(true), runtime::Exception);
    }
}

TEST_F(SolverTest, AChargeOfUnknownOrNoComponentsIsRefused)
{
    thermo::Mixture empty;
    KETRA_EXPECT_THROW_CODE(Equilibrium problem(empty), thermo::Exception, 5);
    thermo::Mixture unknown;
    KETRA_EXPECT_THROW_CODE(unknown.addSpecies("Unobtainium", 300.0, 1.0), thermo::Exception, 4);
}

TEST_F(SolverTest, AFailedProblemCanBePosedAnew)
{
    const auto charge = hydrogenOxygen();
    Equilibrium problem(*charge), fresh(*charge);
    problem.setRelativeTolerance(0.0);
    problem.setPT(1e5, 2000.0);
    EXPECT_THROW(problem.solve(false), thermo::Exception);
    problem.setRelativeTolerance(1.0);
    problem.setPT(1e5, 2000.0);
    problem.solve(false);
    fresh.setPT(1e5, 2000.0);
    fresh.solve(false);
    EXPECT_EQ(problem.getG(), fresh.getG());
}

TEST_F(SolverTest, ASeriesOfProblemsStartsAtThePrecedingTemperature)
{
    useShippedSpecies();
    const auto charge = loxHydrogen(6.0);
    Equilibrium series(*charge);
    series.setPH(7e6, charge->H());
    series.solve(false);
    const double chamberT = series.getT();
    const double s = series.getSspec();
    EXPECT_GT(chamberT, 3000.0);
    for (const double p : {4e6, 1e6, 1e5}) {
        series.setPSspec(p, s);
        EXPECT_EQ(series.getT() < 3600.0, true); // T is kept as the start
        series.solve(false);
        Equilibrium fresh(*charge);
        fresh.setPSspec(p, s);
        fresh.solve(false);
        EXPECT_NEAR(series.getT(), fresh.getT(), 1e-6 * fresh.getT());
    }
}

TEST_F(SolverTest, APhaseInTransitCanBeExcluded)
{
    const auto charge = hydrogenOxygenAluminium();
    OpenEquilibrium problem(*charge);
    problem.setPT(1e5, 1950.0);
    problem.solve(true);
    ASSERT_EQ(problem.getCondensedSpecies(0u)->getName(), "AL2O3(transit)");
    problem.excludeTransitPhase();
    // The name of the blend is no species of the database, so the list is built anew as it was:
    // what remains are the gases.
    EXPECT_FALSE(problem.hasCondensedPhase());
    problem.solve(true);
    EXPECT_EQ(problem.getNumberOfCondensedSpecies(), 1u);

    OpenEquilibrium gases(*charge);
    gases.setPT(1e5, 5000.0);
    gases.solve(false);
    const double G = gases.getG();
    gases.excludeTransitPhase(); // nothing to exclude
    EXPECT_EQ(gases.getG(), G);
    EXPECT_EQ(gases.getNumberOfCondensedSpecies(), 0u);
    const auto products = productsOf(gases);
    EXPECT_GT(products->getN(), 0.0);
}
