#include "TransportMixtures.h"

#include <support/Failures.h>

#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

// Selection of the gases, their data, and the transport properties without reactions.

using namespace ketra_test;

namespace {

constexpr double R = thermo::gasConstant;
constexpr double relative = 1e-12; // a few products, roots and logarithms

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

const double bands[] = {1e-4, 1e-8, 1e-10};

/// Hydrogen, oxygen, nitrogen and aluminium as gases with ions, 1.04 mol in all.
std::unique_ptr<OpenMixture> manyGases()
{
    return gasSolution({"H2", "O2", "N2", "AL(cr)"}, 3000.0,
                       {{"H", 0.01},
                        {"AL", 0.0},
                        {"e-", 0.03},
                        {"H2", 0.5},
                        {"H2O", 0.5},
                        {"O2", 1.05e-4},
                        {"N2", 1.05e-5},
                        {"NO", 1.04e-9},
                        {"OH-", 0.99e-10},
                        {"H+", 2e-8}},
                       /*ions=*/true);
}

} // namespace

// Selection

TEST(TransportSelection, TakesAtomsFirstThenMoleculesInBandsOfFallingFraction)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(manyGases().release(), 3000.0, 1e6);
    const Involved gases = d.select(bands, 3);
    EXPECT_EQ(gases.nm, 3u);
    EXPECT_EQ(namesOf(gases.list), (Names{"AL", "H", "e-", "H2", "H2O", "O2", "H+", "N2", "NO"}));
    EXPECT_EQ(gases.counts, (std::vector<double>{3.0, 2.0, 1.0}));
    double n = 0.0, x = 0.0;
    for (std::size_t i = 0; i < gases.list.size(); ++i) {
        n += gases.list[i]->n();
        x += gases.x[i];
        expectNear(gases.x[i], gases.list[i]->n() / gases.nSum);
    }
    expectNear(gases.nSum, n);
    expectNear(x, 1.0);
    EXPECT_EQ(gases.nE, 0.03);
    expectNear(gases.xE, 0.03 / n);
}

TEST(TransportSelection, AThresholdBelongsToTheBandAboveIt)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(manyGases().release(), 3000.0, 1e6);
    const double total = d.select(bands, 3).nSum;
    const double exact[] = {1.05e-4 / (total + 0.99e-10), 1e-8};
    const Involved at = d.select(exact, 2);
    EXPECT_EQ(at.counts[0] + at.counts[1], 5.0);
    const double above[] = {0.2, 0.2};
    EXPECT_EQ(d.select(above, 2).counts, (std::vector<double>{2.0, 0.0}));
}

TEST(TransportSelection, WithOneLevelTakesAllAboveIt)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(manyGases().release(), 3000.0, 1e6);
    const double threshold = 1e-7;
    const Involved gases = d.select(&threshold, 1);
    EXPECT_EQ(namesOf(gases.list), (Names{"AL", "H", "e-", "H2", "H2O", "N2", "O2"}));
    EXPECT_EQ(gases.counts[0], 4.0);
}

TEST(TransportSelection, WithoutElectronsCountsALeastFractionOfThem)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(pureGas("N2", 1000.0).release(), 1000.0, 1e6);
    const Involved gases = d.select(bands, 3);
    EXPECT_EQ(namesOf(gases.list), (Names{"N2"}));
    EXPECT_EQ(gases.nm, 0u);
    EXPECT_EQ(gases.nE, 0.0);
    EXPECT_EQ(gases.xE, 1e-10);
    EXPECT_EQ(gases.x[0], 1.0);
}

// Data and their estimates

TEST(TransportData, AreThoseOfTheSpecies)
{
    useSpecies(sampleSpecies());
    setTransport("H2", 2e-5, 0.4);
    setTransport("O2", 6e-5, 0.1);
    setTransport("H2", "O2", 4e-5);
    const OpenTransport d(
        gasSolution({"H2", "O2"}, 1000.0, {{"H", 0.0}, {"H2", 0.5}, {"H2O", 0.0}, {"O2", 0.5}})
            .release(),
        1000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 1000.0);
    ASSERT_EQ(namesOf(gases.list), (Names{"H", "H2", "O2"}));
    expectNear(gases.eta.at(1, 1), 2e-5);
    expectNear(gases.eta.at(2, 2), 6e-5);
    expectNear(gases.lambda.at(1), 4.0); // mW/(cm K)
    expectNear(gases.lambda.at(2), 1.0);
    expectNear(gases.eta.at(1, 2), 4e-5);
    EXPECT_EQ(gases.eta.at(2, 1), gases.eta.at(1, 2)) << "one order of the pair is enough";
}

TEST(TransportData, OfAPairNeedDataOfTheSpeciesItself)
{
    useSpecies(sampleSpecies());
    setTransport("H2", "O2", 4e-5);
    const OpenTransport d(
        gasSolution({"H2", "O2"}, 1000.0, {{"H", 0.0}, {"H2", 0.5}, {"H2O", 0.0}, {"O2", 0.5}})
            .release(),
        1000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 1000.0);
    EXPECT_GT(std::abs(gases.eta.at(1, 2) - 4e-5), 1e-6);
}

// K = sqrt(7.29764695192136e-43) 3.125e22 = 26.6957082; M = 18 g/mol, T = 3000 K:
// M^4.6 = 594,639.18, T^1.4 = 73,785.285, ln(50 M^4.6 / T^1.4) = 5.9988185,
// eta = sqrt(54000) 26.6957082 / 5.9988185 = 1034.12397 micropoise,
// lambda = 1034.12397 R ((3.5 - 2.5) 0.00132 + 0.00375) / 18 = 2.42183 mW/(cm K).
TEST(TransportData, AGasWithoutAnyIsEstimatedFromItsMass)
{
    useSpecies({gasRecord("HO", {{"H", 1}, {"O", 1}}, 18.0, -1000.0)});
    const OpenTransport d(pureGas("HO", 3000.0).release(), 3000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 3000.0);
    EXPECT_NEAR(gases.eta.at(0, 0), 1.03412397e-4, 1e-12);
    expectNear(gases.lambda.at(0), gases.eta.at(0, 0) * 1e7 * R * 0.00507 / 18.0);
    EXPECT_NEAR(gases.lambda.at(0), 2.42183, 1e-5);
}

// M = 2.01588, T = 3000 K: 50 M^4.6 / T^1.4 = 0.0171, its logarithm is below 0.
TEST(TransportData, TheCrossSectionOfAnEstimateIsAtLeastOne)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(pureGas("H2", 3000.0).release(), 3000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 3000.0);
    const unsigned hydrogen = indexOf(gases, "H2");
    EXPECT_NEAR(gases.eta.at(hydrogen, hydrogen), std::sqrt(2.01588 * 3000.0) * 26.695708178 * 1e-7,
                1e-13);
}

TEST(TransportData, OutsideTheirTemperaturesAreEstimated)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(pureGas("N2", 500.0).release(), 500.0, 1e6);
    const Involved without = d.prepared(bands, 3, 500.0);
    auto hot = std::make_unique<thermo::properties::TransportProperties>();
    hot->addV(newConstant(1000.0, 5000.0, 500.0));
    hot->addC(newConstant(300.0, 5000.0, 800.0));
    thermo::Database::getInstance()->findForUpdate("N2")->setTransportProperties(hot.release());
    const Involved with = d.prepared(bands, 3, 500.0);
    EXPECT_EQ(with.eta.at(0, 0), without.eta.at(0, 0));
    expectNear(with.lambda.at(0), 0.8);
}

TEST(TransportData, AConductivityThatIsMissingGoesByTheViscosity)
{
    useSpecies(sampleSpecies());
    setTransport("N2", 5e-5, 0.0);
    const OpenTransport d(pureGas("N2", 1000.0).release(), 1000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 1000.0);
    expectNear(gases.eta.at(0, 0), 5e-5);
    expectNear(gases.lambda.at(0), 500.0 * R * 0.00507 / 28.0134);
}

TEST(TransportData, PairsOfNeutralGasesGoByBothViscosities)
{
    useSpecies(sampleSpecies());
    setTransport("H2", 2e-5, 0.4);
    setTransport("O2", 6e-5, 0.1);
    const OpenTransport d(
        gasSolution({"H2", "O2"}, 1000.0, {{"H", 0.0}, {"H2", 0.5}, {"H2O", 0.0}, {"O2", 0.5}})
            .release(),
        1000.0, 1e6);
    const Involved gases = d.prepared(bands, 3, 1000.0);
    const double Mi = 2.01588, Mj = 31.9988;
    const double e = 1 + std::sqrt(std::sqrt(Mj / Mi) * 2e-5 / 6e-5);
    const double pair = std::sqrt(Mj / (Mi + Mj)) * 2e-5 * 5.656854 / (e * e);
    expectNear(gases.eta.at(1, 2), pair);
    EXPECT_EQ(gases.eta.at(2, 1), gases.eta.at(1, 2));
}

namespace {

/// Collision integrals as functions of temperature and electrons.
double coulomb(double T, double xE)
{
    const double te = T / 1000;
    const double ekt = 4.8032 * 4.8032 / (1.3806503217520556 * te);
    const double c = 100 * 8314.472 / 6.02214179;
    const double debye = c * 7.16197243913529 * (te / xE) / std::pow(ekt, 3);
    const double ionic = std::pow(c * 64.45775195221762 * (te / xE), 2.0 / 3.0) / (ekt * ekt);
    const double lambda = std::max(std::sqrt(debye + ionic), 2.71828183);
    return 100 * ekt * ekt * 1.29 * std::log(lambda);
}

double ionAndMolecule(double T) { return std::exp(6.776 - 0.4 * std::log(T)); }

double interaction(double T, double Mi, double Mj, double Q)
{
    return std::sqrt(2 * T * Mi * Mj / (Mi + Mj)) * 26.695708178442658 * std::numbers::pi /
           (Q * 1e7);
}

} // namespace

TEST(TransportData, ChargesCollideByTheirOwnIntegrals)
{
    useSpecies(sampleSpecies());
    const double T = 5000.0;
    const OpenTransport d(gasSolution({"H2", "O2", "N2"}, T,
                                      {{"e-", 0.01},
                                       {"H", 0.0},
                                       {"H+", 0.2},
                                       {"H2", 0.3},
                                       {"H2O", 0.0},
                                       {"N2", 0.3},
                                       {"NO", 0.0},
                                       {"O2", 0.0},
                                       {"OH-", 0.19}},
                                      /*ions=*/true)
                              .release(),
                          T, 1e6);
    const Involved g = d.prepared(bands, 3, T);
    ASSERT_EQ(namesOf(g.list), (Names{"H", "e-", "H+", "H2", "N2", "OH-"}));
    const unsigned H = 0, e = 1, cation = 2, H2 = 3, N2 = 4, anion = 5;
    const auto M = [&](unsigned i) { return g.list[i]->getM(); };
    expectNear(g.xE, 0.01);
    const double Q = coulomb(T, 0.01), polarised = ionAndMolecule(T);
    // Like charges, and unlike ones.
    for (const auto& [i, j] : {std::pair(e, e), std::pair(cation, cation), std::pair(e, cation),
                               std::pair(cation, anion)})
        expectNear(g.eta.at(i, j), interaction(T, M(i), M(j), Q));
    // A charge behind a molecule or atom counts like two charges, and the electron like an ion.
    for (const auto& [i, j] : {std::pair(H2, anion), std::pair(N2, anion), std::pair(H, e),
                               std::pair(H, cation), std::pair(e, H2)})
        expectNear(g.eta.at(i, j), interaction(T, M(i), M(j), Q));
    // An ion in front of a molecule draws it near.
    expectNear(g.eta.at(cation, H2), interaction(T, M(cation), M(H2), polarised));
    expectNear(g.eta.at(cation, N2), interaction(T, M(cation), M(N2), polarised));
    for (unsigned i = 0; i < 6; ++i)
        for (unsigned j = 0; j < 6; ++j) EXPECT_EQ(g.eta.at(i, j), g.eta.at(j, i)) << i << ' ' << j;
    // Conductivity of an ion and of a molecule, of constant Cp/R = 3.5.
    expectNear(g.lambda.at(cation),
               g.eta.at(cation, cation) * 1e7 * R * (0.000132 + 0.00375) / M(cation));
    expectNear(g.lambda.at(N2), g.eta.at(N2, N2) * 1e7 * R * (0.00132 + 0.00375) / M(N2));
}

TEST(TransportData, AnIonWithDataKeepsThem)
{
    useSpecies(sampleSpecies());
    setTransport("e-", 3e-8, 0.02);
    setTransport("e-", "N2", 1e-7);
    const double T = 5000.0;
    const OpenTransport d(
        gasSolution({"N2"}, T, {{"e-", 0.1}, {"N2", 0.9}}, /*ions=*/true).release(), T, 1e6);
    const Involved g = d.prepared(bands, 3, T);
    expectNear(g.eta.at(0, 0), 3e-8);
    expectNear(g.lambda.at(0), 0.2);
    expectNear(g.eta.at(0, 1), 1e-7);
    EXPECT_EQ(g.eta.at(1, 0), g.eta.at(0, 1));
}

TEST(TransportData, WithoutElectronsTheShieldingStaysFinite)
{
    useSpecies(sampleSpecies());
    const double T = 4000.0;
    const OpenTransport d(
        gasSolution({"N2", "H2"}, T,
                    {{"e-", 0.0}, {"H", 0.0}, {"H+", 0.1}, {"H2", 0.0}, {"N2", 0.9}},
                    /*ions=*/true)
            .release(),
        T, 1e6);
    const Involved g = d.prepared(bands, 3, T);
    EXPECT_EQ(g.xE, 1e-10);
    const unsigned cation = indexOf(g, "H+");
    const double M = g.list[cation]->getM();
    expectNear(g.eta.at(cation, cation), interaction(T, M, M, coulomb(T, 1e-10)));
    EXPECT_TRUE(std::isfinite(g.eta.at(cation, cation)));
    // The same where the caller's number is 0.
    Involved bare = d.select(bands, 3);
    bare.xE = 0.0;
    EXPECT_EQ(d.withData(bare, T).eta.at(cation, cation), g.eta.at(cation, cation));
}

// At 200 K and x = 1 of electrons the ratio of the lengths comes out as 1.56; e stands in its
// place, so that Q = 129 (4.8032^2 / (1.38065 0.2))^2.
TEST(TransportData, TheShieldingOfADenseGasOfElectronsIsAtLeastE)
{
    useSpecies(sampleSpecies());
    const OpenTransport d(gasSolution({"H2"}, 200.0, {{"e-", 1.0}, {"H+", 1e-3}}, true).release(),
                          200.0, 1e6);
    const Involved g = d.prepared(bands, 3, 200.0);
    const unsigned e = indexOf(g, "e-");
    const double ekt = 4.8032 * 4.8032 / (1.3806503217520556 * 0.2), M = g.list[e]->getM();
    EXPECT_NEAR(g.eta.at(e, e) / interaction(200.0, M, M, 129.0 * ekt * ekt), 1.0, 1e-9);
}

// Without reactions

TEST(FrozenTransport, OfAPureGasIsThatOfTheGas)
{
    useSpecies(sampleSpecies());
    setTransport("N2", 5e-5, 0.08);
    OpenTransport d(pureGas("N2", 1000.0).release(), 1000.0, 1e6);
    d.calculateTransportProperties(0.0, false);
    expectNear(d.getV(), 5e-5);
    expectNear(d.getCfr(), 0.08);
    expectNear(d.getCpfr(), 3.5 * R / 28.0134 * 1000);
    expectNear(d.getPrfr(), 5e-5 * d.getCpfr() / 0.08);
}

// Two gases by hand, one given pair.
TEST(FrozenTransport, OfTwoGasesFollowsTheRulesOfMixture)
{
    useSpecies(sampleSpecies());
    setTransport("H2", 2e-5, 0.4);
    setTransport("O2", 6e-5, 0.1);
    setTransport("H2", "O2", 4e-5);
    OpenTransport d(
        gasSolution({"H2", "O2"}, 1000.0, {{"H", 0.0}, {"H2", 0.3}, {"H2O", 0.0}, {"O2", 0.9}})
            .release(),
        1000.0, 1e6);
    d.calculateTransportProperties(0.0, false);
    const double M1 = 2.01588, M2 = 31.9988, s = M1 + M2, x1 = 0.25, x2 = 0.75;
    const double phi12 = 2 * M2 * 2e-5 / (4e-5 * s), phi21 = 2 * M1 * 6e-5 / (4e-5 * s);
    const double psi12 = phi12 * (1 + 2.41 * (M1 - 0.142 * M2) * (M1 - M2) / (s * s));
    const double psi21 = phi21 * (1 + 2.41 * (M2 - 0.142 * M1) * (M2 - M1) / (s * s));
    expectNear(d.getV(), 2e-5 * x1 / (x1 + phi12 * x2) + 6e-5 * x2 / (x2 + phi21 * x1));
    expectNear(d.getCfr(), 0.4 * x1 / (x1 + psi12 * x2) + 0.1 * x2 / (x2 + psi21 * x1));
    const double Cp = 1000 * 3.5 * R / (x1 * M1 + x2 * M2);
    expectNear(d.getCpfr(), Cp);
    expectNear(d.getPrfr(), d.getV() * Cp / d.getCfr());
}

// A gas in two halves is the gas: the sums leave no trace of the division.
TEST(FrozenTransport, OfTwoGasesThatAreTheSameIsThatOfEither)
{
    useSpecies({gasRecord("N2", {{"N", 2}}, 28.0134, -1000.0),
                gasRecord("N2twin", {{"N", 2}}, 28.0134, -1000.0)});
    setTransport("N2", 5e-5, 0.08);
    setTransport("N2twin", 5e-5, 0.08);
    for (const double part : {0.001, 0.3, 0.5}) {
        OpenTransport d(
            gasSolution({"N2"}, 1000.0, {{"N2", part}, {"N2twin", 1.0 - part}}).release(), 1000.0,
            1e6);
        d.calculateTransportProperties(0.0, false);
        // The factor of a pair, 5.656854, is the fourth of sqrt(512) to seven digits.
        EXPECT_NEAR(d.getV(), 5e-5, 1e-7 * 5e-5);
        EXPECT_NEAR(d.getCfr(), 0.08, 1e-7 * 0.08);
    }
}

TEST(FrozenTransport, DoesNotDependOnTheAmountOfGas)
{
    useSpecies(sampleSpecies());
    std::vector<double> viscosities;
    for (const double amount : {1.0, 1e-3, 1e3}) {
        OpenTransport d(gasSolution({"H2", "O2"}, 2000.0,
                                    {{"H", 0.1 * amount},
                                     {"H2", 0.4 * amount},
                                     {"H2O", 0.3 * amount},
                                     {"O2", 0.2 * amount}})
                            .release(),
                        2000.0, 1e6);
        d.calculateTransportProperties(0.0, false);
        viscosities.push_back(d.getV());
    }
    expectNear(viscosities[1], viscosities[0]);
    expectNear(viscosities[2], viscosities[0]);
}

TEST(FrozenTransport, CondensedPhasesTakeNoPart)
{
    useSpecies({gasRecord("N2", {{"N", 2}}, 28.0134, -1000.0),
                gasRecord("CN", {{"C", 1}, {"N", 1}}, 26.0174, 2000.0),
                condensedRecord("C(cr)", {{"C", 1}}, 12.0107, 1, 200.0, 1000.0, -900.0)});
    const auto viscosity = [](double condensed) {
        auto mixture = gasSolution({"N2", "C(cr)"}, 500.0,
                                   {{"N2", 0.5}, {"CN", 0.4}, {"C(cr)", condensed}}, false, 1);
        EXPECT_EQ(mixture->size(), mixture->gasSize() + 1);
        OpenTransport d(mixture.release(), 500.0, 1e6);
        d.calculateTransportProperties(0.0, false);
        return d.getV();
    };
    EXPECT_GT(viscosity(0.1), 0.0);
    EXPECT_EQ(viscosity(2.0), viscosity(0.1));
}

TEST(FrozenTransport, OfNothingButCondensedPhasesIsZero)
{
    useSpecies({condensedRecord("C(cr)", {{"C", 1}}, 12.0107, 1, 200.0, 1000.0, -900.0)});
    auto products = gasSolution({"C(cr)"}, 500.0, {{"C(cr)", 1.0}}, false, 1);
    ASSERT_EQ(products->gasSize(), 0u);
    OpenTransport d(products.release(), 500.0, 1e6);
    d.calculateTransportProperties(0.0, true);
    for (const double result : {d.getV(), d.getCfr(), d.getCr(), d.getCpfr(), d.getCpr(),
                                d.getPrfr(), d.getPrr(), d.getCeql(), d.getCpeql(), d.getPreql()})
        EXPECT_EQ(result, 0.0);
}

TEST(FrozenTransport, TakesAnyTemperature)
{
    useSpecies(sampleSpecies());
    OpenTransport d(pureGas("H2O", 3000.0).release(), 3000.0, 1e6);
    d.calculateTransportProperties(0.0, false);
    const double own = d.getV();
    d.calculateTransportProperties(1500.0, false);
    EXPECT_LT(d.getV(), own);
    d.calculateTransportProperties(3000.0, false);
    EXPECT_EQ(d.getV(), own);
}

TEST(FrozenTransport, OutsideTheRangeOfAGasIsAnError)
{
    useSpecies(sampleSpecies());
    OpenTransport d(pureGas("H2O", 3000.0).release(), 3000.0, 1e6);
    KETRA_EXPECT_THROW_MESSAGE(d.calculateTransportProperties(100.0, true), thermo::Exception, 1,
                               "Invalid temperature");
    KETRA_EXPECT_THROW_CODE(d.calculateTransportProperties(20000.1, false), thermo::Exception, 1);
}

TEST(FrozenTransport, AloneLeavesTheReactionsOut)
{
    useSpecies(sampleSpecies());
    OpenTransport d(gasSolution({"H2"}, 3000.0, {{"H", 0.001}, {"H2", 0.999}}).release(), 3000.0,
                    1e6);
    d.calculateTransportProperties(0.0, true);
    EXPECT_GT(d.getCr(), 0.0);
    d.calculateTransportProperties(0.0, false);
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getCpr(), 0.0);
    EXPECT_EQ(d.getPrr(), 0.0);
    EXPECT_GT(d.getCfr(), 0.0);
    EXPECT_EQ(d.getCeql(), d.getCfr());
    EXPECT_EQ(d.getCpeql(), d.getCpfr());
    EXPECT_EQ(d.getPreql(), d.getPrfr());
}
