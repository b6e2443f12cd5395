#include "TransportMixtures.h"

#include <support/Failures.h>

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/LinearSystem.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>

// What the reactions add, and what becomes of an implausible result.

using namespace ketra_test;
using math::matrix::ColumnVector;
using math::matrix::LinearSystem;

namespace {

constexpr double relative = 1e-12;
constexpr double RKilomole = 8314.472; // J/(kmol K)

const double bands[] = {1e-4, 1e-8, 1e-10};

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

/// Hydrogen in atoms and molecules, and if told a rare molecule of enormous enthalpy.
std::vector<Record> hydrogens(double enthalpy = 0.0)
{
    std::vector<Record> records{
        gasRecord("H", {{"H", 1.0}}, 1.00794, 25500.0),
        gasRecord("H2", {{"H", 2.0}}, 2.01588, -1000.0),
    };
    if (enthalpy != 0.0) records.push_back(gasRecord("H3", {{"H", 3.0}}, 3.02382, enthalpy));
    return records;
}

std::unique_ptr<OpenMixture> hydrogenGas(double T, double rare = 0.0)
{
    std::map<std::string, double> amounts{{"H", 0.001}, {"H2", 0.999}};
    if (rare > 0.0) amounts["H3"] = rare;
    return gasSolution({"H2"}, T, amounts);
}

struct ReactionShare {
    double Cr, Cpr;
};

/// The two sums over all pairs of gases, term by term, for the reactions from the atoms.
ReactionShare sumOverAllPairs(const Involved& g, double T)
{
    const unsigned n = g.n(), nr = n - g.nm;
    math::matrix::Matrix nu(nr, n);
    ColumnVector dH(nr);
    for (unsigned r = 0; r < nr; ++r) {
        const reaction::Product& molecule = *g.list[g.nm + r];
        nu.set(r, g.nm + r, -1.0);
        dH.set(r, -molecule.H0_tilde(T));
        for (unsigned c = 0; c < g.nm; ++c)
            for (int k = 0; k < molecule.size(); ++k)
                if (*molecule.get(k) == *g.list[c]->get(0)) {
                    nu.set(r, c, molecule.get(k)->getNumber());
                    dH.set(r, dH.at(r) + nu.at(r, c) * g.list[c]->H0_tilde(T));
                    break;
                }
    }
    LinearSystem A(nr), B(nr);
    for (unsigned r = 0; r < nr; ++r) {
        for (unsigned q = 0; q < nr; ++q) {
            double a = 0.0, b = 0.0;
            for (unsigned i = 0; i < n; ++i) {
                for (unsigned j = i + 1; j < n; ++j) {
                    if (g.x[i] < 1e-10 && g.x[j] < 1e-10) continue;
                    if (nu.at(r, i) == 0.0 && nu.at(r, j) == 0.0) continue;
                    if (nu.at(q, i) == 0.0 && nu.at(q, j) == 0.0) continue;
                    const double Mi = g.list[i]->getM(), Mj = g.list[j]->getM();
                    const double t = (g.x[j] * nu.at(q, i) - g.x[i] * nu.at(q, j)) *
                                     (g.x[j] * nu.at(r, i) - g.x[i] * nu.at(r, j)) /
                                     (g.x[i] * g.x[j]);
                    a += 5 * Mi * Mj / ((Mi + Mj) * g.eta.at(i, j) * 3.3000000000000003) * t;
                    b += t;
                }
            }
            A.set(r, q, a < 1e-6 ? 0.0 : a);
            B.set(r, q, b);
        }
    }
    const std::unique_ptr<ColumnVector> y(A.solve(&dH, false)), w(B.solve(&dH, false));
    double mass = 0.0;
    ReactionShare share{0.0, 0.0};
    for (unsigned i = 0; i < n; ++i) mass += g.x[i] * g.list[i]->getM();
    for (unsigned r = 0; r < nr; ++r) {
        share.Cr += RKilomole * dH.at(r) * y->at(r);
        share.Cpr += RKilomole * dH.at(r) * w->at(r) / mass;
    }
    return share;
}

} // namespace

// 2 H = H2 with nu = (2, -1): t = (2 x2 + x1)^2 / (x1 x2), A = D t, B = t, and dH/(R T) of constant
// heat capacities is 2 (3.5 + 25500/T) - (3.5 - 1000/T).
TEST(ReactionTransport, OfADissociationIsTheFormulaOfOneReaction)
{
    useSpecies(hydrogens());
    const double T = 3000.0, x1 = 0.001, x2 = 0.999;
    OpenTransport d(hydrogenGas(T).release(), T, 1e6);
    const Involved g = d.prepared(bands, 3, T);
    d.calculateTransportProperties(0.0, true);
    const double dH = 3.5 + 52000.0 / T;
    const double t = (2 * x2 + x1) * (2 * x2 + x1) / (x1 * x2);
    const double D = 5 * 1.00794 * 2.01588 / (3.02382 * g.eta.at(0, 1) * 3.3000000000000003);
    const double Cr = RKilomole * dH * dH / (D * t);
    const double Cpr = RKilomole * dH * dH / (t * (x1 * 1.00794 + x2 * 2.01588));
    // The figures of the species file are rounded to nine digits.
    EXPECT_NEAR(d.getCr() / Cr, 1.0, 1e-8);
    EXPECT_NEAR(d.getCpr() / Cpr, 1.0, 1e-8);
    expectNear(d.getPrr(), d.getV() * d.getCpr() / d.getCr());
    expectNear(d.getCeql(), d.getCr() + d.getCfr());
    expectNear(d.getCpeql(), d.getCpr() + d.getCpfr());
    expectNear(d.getPreql(), d.getV() * d.getCpeql() / d.getCeql());
    EXPECT_GT(d.getCr(), 0.0);
}

TEST(ReactionTransport, OfAMonatomicGasIsNothing)
{
    useSpecies({gasRecord("Ar", {{"AR", 1.0}}, 39.948, -745.0)});
    setTransport("Ar", 8e-5, 0.06);
    OpenTransport d(pureGas("Ar", 2000.0).release(), 2000.0, 1e6);
    d.calculateTransportProperties(0.0, true);
    expectNear(d.getV(), 8e-5);
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getCpr(), 0.0);
    EXPECT_EQ(d.getPrr(), 0.0);
    EXPECT_EQ(d.getCeql(), d.getCfr());
    EXPECT_EQ(d.getPreql(), d.getPrfr());
    EXPECT_GT(d.getPrfr(), 0.0);
}

TEST(ReactionTransport, OfAPureMoleculeThatCannotReactIsNothing)
{
    useSpecies({gasRecord("N2", {{"N", 2}}, 28.0134, -1000.0)});
    OpenTransport d(pureGas("N2", 2000.0).release(), 2000.0, 1e6);
    d.calculateTransportProperties(0.0, true);
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getPreql(), d.getPrfr());
}

// Where the atoms are not rare the sums over all pairs can be formed as they stand.
TEST(ReactionTransport, IsTheSumOverAllPairs)
{
    useShippedSpecies();
    thermo::Database::loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
    struct Case {
        std::unique_ptr<thermo::Mixture> charge;
        double p, T;
        bool ions = false;
    };
    const Case cases[] = {{loxHydrogen(6.0), 7e6, 3500.0},
                          {loxHydrogen(4.0), 1e5, 3000.0},
                          {ntoMmh(2.0), 1e6, 3300.0},
                          {loxKerosene(2.7), 1e6, 3600.0},
                          {loxKerosene(2.7), 1e6, 4500.0, true},
                          {aluminisedSolid(0.15), 5e6, 3500.0}};
    for (const Case& c : cases) {
        reaction::Equilibrium problem(*c.charge, true, c.ions);
        problem.setPT(c.p, c.T);
        problem.solve(false);
        OpenTransport d(&problem);
        const Involved g = d.prepared(bands, 3, c.T);
        const ReactionShare expected = sumOverAllPairs(g, c.T);
        d.react(g, c.T);
        // The matrices have conditions up to 1e8.
        EXPECT_NEAR(d.getCr() / expected.Cr, 1.0, 1e-7) << c.p << ' ' << c.T;
        EXPECT_NEAR(d.getCpr() / expected.Cpr, 1.0, 1e-7) << c.p << ' ' << c.T;
    }
}

// The heat of the reactions is a matter of equilibrium and not of diffusion: frozen and reacting
// parts together are the equilibrium heat capacity of the gas. The atoms of carbon and nitrogen are
// as rare as 1e-60 here.
TEST(ReactionTransport, HeatCapacityIsThatOfTheEquilibrium)
{
    useShippedSpecies();
    thermo::Database::loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
    const std::unique_ptr<thermo::Mixture> charges[] = {loxHydrogen(5.0), loxKerosene(2.5),
                                                        ntoMmh(2.0)};
    for (const auto& charge : charges) {
        reaction::Equilibrium problem(*charge);
        for (const double T : {3500.0, 3000.0, 2500.0, 2000.0, 1500.0, 1000.0, 700.0}) {
            problem.setPT(2e6, T);
            problem.solve(false);
            reaction::Derivatives d(&problem);
            d.solve(true);
            if (problem.hasCondensedPhase()) continue;
            // Molecules below 1e-10 are left out, and solutions are good to 1e-7.
            EXPECT_NEAR(d.getCpeql() / d.getCp_spec(), 1.0, 2e-6) << T;
            EXPECT_GT(d.getCr(), 0.0) << T;
        }
    }
}

TEST(ReactionTransport, AnAtomTooRareForANumberDoesNotStopIt)
{
    useSpecies({gasRecord("H", {{"H", 1.0}}, 1.00794, 25500.0),
                gasRecord("H2", {{"H", 2.0}}, 2.01588, -1000.0),
                gasRecord("H4", {{"H", 4.0}}, 4.03176, -6000.0)});
    const double T = 1000.0;
    const auto share = [&](double atoms) {
        OpenTransport d(
            gasSolution({"H2"}, T, {{"H", atoms}, {"H2", 0.999}, {"H4", 0.001}}).release(), T, 1e6);
        d.calculateTransportProperties(0.0, true);
        return d.getCr();
    };
    EXPECT_GT(share(0.0), 0.0);
    EXPECT_EQ(share(0.0), share(1e-250));
    EXPECT_NEAR(share(0.0) / share(1e-30), 1.0, 1e-10);
}

// Recovery

// Of 1e-8 of the molecule comes a conductivity beyond all reason. The first recovery leaves out
// what is below 1e-7, the next below 1e-5, the last below 1e-3.
TEST(TransportRecovery, AnImplausibleConductivityIsFoundAgainFromFewerSpecies)
{
    const double T = 3000.0;
    const struct {
        double rare, H, threshold;
    } cases[] = {{1e-8, 3e9, 1e-7}, {1e-6, 3e8, 1e-5}, {1e-4, 3e7, 1e-3}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rare);
        useSpecies(hydrogens(c.H));
        OpenTransport d(hydrogenGas(T, c.rare).release(), T, 1e6);
        const Involved all = d.prepared(bands, 3, T);
        ASSERT_EQ(all.n(), 3u);
        d.react(all, T);
        ASSERT_GT(d.getCr(), 10.0) << "what is to be recovered";
        const Involved fewer = d.prepared(&c.threshold, 1, T);
        ASSERT_EQ(fewer.n(), 2u);

        d.calculateTransportProperties(0.0, true);
        const double Cr = d.getCr(), Cpr = d.getCpr(), Prr = d.getPrr();
        d.react(fewer, T);
        EXPECT_EQ(Cr, d.getCr());
        EXPECT_EQ(Cpr, d.getCpr());
        EXPECT_EQ(Prr, d.getPrr());
        EXPECT_GT(Cr, 0.0);
        EXPECT_LT(Cr, 10.0);
        expectNear(d.getCeql(), d.getCfr() + Cr);
    }
}

TEST(TransportRecovery, KeepsTheFrozenPartOfAllSpecies)
{
    const double T = 3000.0;
    useSpecies(hydrogens(3e7));
    OpenTransport d(hydrogenGas(T, 1e-4).release(), T, 1e6);
    d.calculateTransportProperties(0.0, false);
    const double viscosity = d.getV(), Cfr = d.getCfr(), Cpfr = d.getCpfr();
    d.calculateTransportProperties(0.0, true);
    EXPECT_GT(d.getCr(), 0.0);
    EXPECT_EQ(d.getV(), viscosity);
    EXPECT_EQ(d.getCfr(), Cfr);
    EXPECT_EQ(d.getCpfr(), Cpfr);
}

TEST(TransportRecovery, WithoutSuccessLeavesTheReactionsOut)
{
    const double T = 3000.0;
    useSpecies(hydrogens(3e7));
    OpenTransport d(hydrogenGas(T, 0.01).release(), T, 1e6);
    const double threshold = 1e-3;
    d.react(d.prepared(&threshold, 1, T), T);
    ASSERT_GT(d.getCr(), 10.0);
    d.calculateTransportProperties(0.0, true);
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getCpr(), 0.0);
    EXPECT_EQ(d.getPrr(), 0.0);
    EXPECT_EQ(d.getCeql(), d.getCfr());
    EXPECT_EQ(d.getCpeql(), d.getCpfr());
    EXPECT_EQ(d.getPreql(), d.getPrfr());
}

// Half of the hydrogen in atoms: dH^2 R / (t M) is 1e5 J/(kg K), whatever the viscosity.
TEST(TransportRecovery, AHeatCapacityAboveTenKilojoulesIsImplausible)
{
    const double T = 3000.0;
    useSpecies(hydrogens());
    setTransport("H", 1e-6, 0.4);
    setTransport("H2", 1e-6, 0.4);
    OpenTransport d(gasSolution({"H2"}, T, {{"H", 0.5}, {"H2", 0.5}}).release(), T, 1e6);
    d.react(d.prepared(bands, std::size(bands), T), T);
    EXPECT_GT(d.getCpr(), 10000.0);
    EXPECT_LT(d.getCr(), 10.0);
    d.calculateTransportProperties(0.0, true);
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getCpr(), 0.0);
    EXPECT_GT(d.getCfr(), 0.0);
}

// An interaction viscosity beyond the least normal number makes a diffusivity infinite.
TEST(TransportRecovery, AFailureOfTheMatricesIsNoFailureOfTheWhole)
{
    const double T = 3000.0;
    useSpecies(hydrogens());
    setTransport("H2", 2e-5, 0.4);
    thermo::Database::getInstance()->findForUpdate("H2")->setTransportProperties(
        "H", newTransport(1e-320, 0.0));
    OpenTransport d(hydrogenGas(T).release(), T, 1e6);
    EXPECT_ANY_THROW(d.react(d.prepared(bands, 3, T), T));
    EXPECT_NO_THROW(d.calculateTransportProperties(0.0, true));
    EXPECT_EQ(d.getCr(), 0.0);
    EXPECT_EQ(d.getCpr(), 0.0);
    EXPECT_EQ(d.getCeql(), d.getCfr());
}

// By the derivatives

TEST(ReactionTransport, IsPartOfASolutionThatAsksForIt)
{
    useShippedSpecies();
    const auto charge = loxHydrogen(6.0);
    reaction::Equilibrium problem(*charge);
    problem.setPT(7e6, 3500.0);
    problem.solve(false);
    reaction::Derivatives without(&problem), with(&problem), later(&problem);
    without.solve(false);
    EXPECT_EQ(without.getV(), 0.0);
    EXPECT_EQ(without.getPreql(), 0.0);
    with.solve(true);
    EXPECT_GT(with.getV(), 0.0);
    EXPECT_GT(with.getCr(), 0.0);
    later.calculateTransportProperties(3500.0, true);
    EXPECT_EQ(with.getV(), later.getV());
    EXPECT_EQ(with.getCeql(), later.getCeql());
    EXPECT_EQ(with.getA(), without.getA());
}
