// The derivatives of a state that holds two phases of one formula at their melting point: the
// masses and the densities count both where the problem is a persistent one.

#include <support/Reactants.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/QuasiProduct.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using namespace ketra_test;
using reaction::Derivatives;
using reaction::Equilibrium;
using reaction::QuasiProduct;
using reaction::ReactingMixture;

namespace {

constexpr double R = thermo::gasConstant;
constexpr double p = 2e5;          // Pa
constexpr double melting = 2851.0; // K, of beryllium oxide
constexpr double relative = 1e-11; // sums over a hundred products

std::unique_ptr<thermo::Mixture> oxygenHydrogenBeryllium()
{
    return mixtureOf({{"O2(L)", 90.17, 0.778}, {"H2(L)", 20.27, 0.111}, {"Be(a)", 298.15, 0.111}});
}

/// What the products of a problem are made of, counted entry by entry.
struct Composition {
    double gas = 0.0, condensed = 0.0;         // mol
    double gasMass = 0.0, condensedMass = 0.0; // kg
    unsigned int phases = 0;

    explicit Composition(const Equilibrium& problem)
    {
        const std::unique_ptr<ReactingMixture> products(problem.copyReactingMixture(true, true));
        for (unsigned int j = 0; j < products->size(); ++j) {
            const reaction::Product& product = *products->product(j);
            const double n = products->n(j);
            const double mass = n * product.getM() / 1000.0;
            (product.isCondensed() ? condensed : gas) += n;
            (product.isCondensed() ? condensedMass : gasMass) += mass;
            if (product.isCondensed() && n > 0.0) ++phases;
        }
    }
    double mass() const { return gasMass + condensedMass; }
    double moles() const { return gas + condensed; }
};

double enthalpyAt(double T)
{
    auto charge = oxygenHydrogenBeryllium();
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPT(p, T);
    problem.solve(false);
    return problem.getH() * problem.getResultingMixtureQuantaty();
}

/// The inner operations.
class OpenDerivatives : public Derivatives
{
public:
    using Derivatives::composeMatrix;
    using Derivatives::Derivatives;
    using Derivatives::getNT;
    using Derivatives::solveSystemT;
};

/// A state amid the melting of the oxide.
class Plateau : public testing::Test
{
protected:
    void SetUp() override
    {
        useShippedSpecies();
        charge = oxygenHydrogenBeryllium();
        problem = std::make_unique<Equilibrium>(*charge);
        problem->setPersistent(true);
        const double solid = enthalpyAt(melting - 5.0);
        const double liquid = enthalpyAt(melting + 5.0);
        problem->setPH(p, solid + 0.5 * (liquid - solid));
        problem->solve(false);
        ASSERT_NEAR(problem->getT(), melting, 1e-6);
        ASSERT_EQ(problem->certificate().grade, verification::Grade::A);
    }

    std::unique_ptr<thermo::Mixture> charge;
    std::unique_ptr<Equilibrium> problem;
};

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

TEST_F(Plateau, DerivativesCountBothPhases)
{
    const Composition products(*problem);
    ASSERT_EQ(products.phases, 2u);
    Derivatives d(problem.get());
    d.solve(false);

    expectNear(d.getMm(), products.mass() / products.moles());
    expectNear(d.getMm2(), products.mass() / products.gas);
    expectNear(d.getM(), d.getMm2() * 1000.0);
    expectNear(d.getR_spec(), R * products.gas / products.mass());
    expectNear(d.getZ(), products.condensedMass / products.mass());
    const double volume = products.gas * R * problem->getT() / p; // m^3
    expectNear(d.getRho(), products.mass() / volume);
    expectNear(d.getRhoGas(), products.gasMass / volume);
    // The mass is that of the charge.
    EXPECT_NEAR(products.mass(), charge->getMm(), 1e-6 * charge->getMm());
    // The problem comes to its molar mass by the elements.
    EXPECT_NEAR(d.getMm(), problem->getS() / problem->getSspec(), 1e-6 * d.getMm());
}

TEST_F(Plateau, HeatCapacitiesPerMassAreThoseOfTheWholeMass)
{
    const Composition products(*problem);
    Derivatives d(problem.get());
    d.solve(false);
    // c_p - c_v = -R/M_2 (d ln V/d ln T)^2/(d ln V/d ln p), M_2 being the mass per mole of gas.
    const double difference = -R * products.gas / products.mass() * d.get_d_lnV_d_lnT() *
                              d.get_d_lnV_d_lnT() / d.get_d_lnV_d_lnp();
    EXPECT_NEAR(d.getCp_spec() - d.getCv_spec(), difference, 1e-9 * difference);
    const double volume = products.gas * R * problem->getT() / p; // m^3
    expectNear(d.getA() * d.getA(), d.getK() * p * volume / products.mass());
}

// c = sum n_j Cp_j + sum_gas n_j H_j/T (d ln n_j/d ln T) + sum_c H_c/T (d n_c/d ln T), the two
// phases taking part in their shares.
TEST_F(Plateau, HeatCapacitiesHoldTheHeatOfBothPhases)
{
    OpenDerivatives d(problem.get());
    const std::unique_ptr<math::matrix::LinearSystem> system(d.composeMatrix());
    const std::unique_ptr<math::matrix::ColumnVector> xT(d.solveSystemT(system.get()));
    const std::unique_ptr<math::matrix::ColumnVector> nT(d.getNT(xT.get()));
    d.solve(false);

    const std::unique_ptr<ReactingMixture> list(problem->copyReactingMixture(true, true));
    const double T = problem->getT();
    double gas = 0.0, phases = 0.0, enthalpy = 0.0; // J/K, J/K, J
    for (unsigned int j = 0; j < list->size(); ++j) {
        const reaction::Product& product = *list->product(j);
        const double heat = product.n() * product.Cp0();
        if (product.isCondensed()) {
            phases += heat;
            enthalpy += product.n() * product.H0();
        } else {
            gas += heat + product.n() * product.H0() * nT->at(j) / T;
        }
    }
    const Composition products(*problem);
    phases += enthalpy / products.condensed / T * xT->at(list->elSize() + 1);
    EXPECT_NEAR(d.getCp_spec(), (gas + phases) / products.mass(), 1e-9 * d.getCp_spec());
    const double M = list->product(list->gasSize())->getM() / 1000.0; // kg/mol
    EXPECT_NEAR(d.getCpz_spec(), phases / M, 1e-9 * std::abs(phases / M));
}

TEST_F(Plateau, TheMatrixKeepsOneGroup)
{
    const Composition products(*problem);
    const Derivatives d(problem.get());
    const ReactingMixture& merged = *d.getReactingMixture();
    ASSERT_EQ(merged.size(), merged.gasSize() + 1);
    const auto* oxide = dynamic_cast<const QuasiProduct*>(merged.product(merged.gasSize()));
    ASSERT_NE(oxide, nullptr);
    expectNear(oxide->getTotalN(), products.condensed);
    EXPECT_LT(oxide->n(), 0.95 * oxide->getTotalN());
}

TEST_F(Plateau, TheDefaultCountsTheFirstPhaseAlone)
{
    problem->setPersistent(false);
    Derivatives d(problem.get());
    d.solve(false);

    const Composition products(*problem);
    const std::unique_ptr<ReactingMixture> list(problem->copyReactingMixture(true, true));
    const double first = list->n(list->gasSize());
    const double M = list->product(list->gasSize())->getM() / 1000.0;
    ASSERT_LT(first, 0.95 * products.condensed);
    const double mass = products.gasMass + first * M;
    const double N = problem->getNg() + first;
    // To the last bit: the sums of the merged list.
    const std::unique_ptr<thermo::Mixture> resulting(
        d.getReactingMixture()->copyResultingMixture());
    EXPECT_EQ(d.getMm(), resulting->getMm());
    EXPECT_EQ(d.getMm2(), resulting->getMm() / (1 - first / N));
    expectNear(d.getMm(), mass / N);
    expectNear(d.getZ(), first * M / mass);
    expectNear(d.getRho(), mass * p / (problem->getNg() * R * problem->getT()));
}

TEST(SinglePhases, AreCountedAlikeByBoth)
{
    useShippedSpecies();
    auto charge = oxygenHydrogenBeryllium();
    Equilibrium problem(*charge);
    problem.setPersistent(true);
    problem.setPT(p, melting - 100.0);
    problem.solve(false);
    Derivatives persistent(&problem);
    persistent.solve(false);
    ASSERT_GT(persistent.getZ(), 0.0);
    problem.setPersistent(false);
    Derivatives plain(&problem);
    plain.solve(false);
    EXPECT_EQ(persistent.getMm(), plain.getMm());
    EXPECT_EQ(persistent.getMm2(), plain.getMm2());
    EXPECT_EQ(persistent.getRho(), plain.getRho());
    EXPECT_EQ(persistent.getRhoGas(), plain.getRhoGas());
    EXPECT_EQ(persistent.getZ(), plain.getZ());
    EXPECT_EQ(persistent.getCp(), plain.getCp());
    EXPECT_EQ(persistent.getCv(), plain.getCv());
    EXPECT_EQ(persistent.getCpz_spec(), plain.getCpz_spec());
    EXPECT_EQ(persistent.getA(), plain.getA());
    EXPECT_EQ(persistent.getK(), plain.getK());
}

} // namespace
