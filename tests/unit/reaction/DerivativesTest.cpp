#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/QuasiProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/GasMixture.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace ketra_test;
using reaction::Derivatives;
using reaction::Equilibrium;
using reaction::QuasiProduct;

namespace {

constexpr double R = thermo::gasConstant;
constexpr double relative = 1e-11; // a small linear system and a few sums
constexpr double M2 = 28.0134, MC = 12.0107;

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

/// Nitrogen, its atoms with H_N = R (2.5 T + 56600), and carbon in two phases.
std::vector<Record> carbonAndNitrogen(bool withAtoms)
{
    std::vector<Record> records{
        gasRecord("N2", {{"N", 2}}, M2, -1000.0),
        condensedRecord("C(cr)", {{"C", 1}}, MC, 1, 200.0, 1000.0, -900.0),
        condensedRecord("C(L)", {{"C", 1}}, MC, 2, 1000.0, 3000.0, -600.0),
    };
    if (withAtoms)
        records.push_back(
            {"N", {{"N", 1}}, M2 / 2, 0, 0.0, {constantCp(200.0, 20000.0, 2.5, 56600.0, 5.0)}});
    return records;
}

/// Products of a charge with the amounts and the temperature of a solution.
std::unique_ptr<OpenMixture> solution(const std::vector<Reactant>& reactants, unsigned condensed,
                                      const std::map<std::string, double>& amounts, double T)
{
    auto initial = mixtureOf(reactants, thermo::_Species::MOLE_FRACTION);
    auto products = std::make_unique<OpenMixture>(*initial);
    products->reset();
    for (unsigned c = 0; c < condensed; ++c) products->checkNewCondesedPhases(T, nullptr, 0);
    for (unsigned j = 0; j < products->size(); ++j) {
        products->product(j)->setT(T);
        products->product(j)->setN(amounts.at(products->product(j)->getName()));
    }
    return products;
}

std::unique_ptr<OpenMixture> nitrogen(double T)
{
    useSpecies(carbonAndNitrogen(/*withAtoms=*/false));
    return solution({{"N2", 300.0, 1.0}}, 0, {{"N2", 1.0}}, T);
}

/// 0.8 mol of nitrogen over 0.3 mol of crystalline carbon.
std::unique_ptr<OpenMixture> carbonInNitrogen(double T)
{
    useSpecies(carbonAndNitrogen(/*withAtoms=*/false));
    return solution({{"N2", 300.0, 0.75}, {"C(cr)", 300.0, 0.25}}, 1, {{"N2", 0.8}, {"C(cr)", 0.3}},
                    T);
}

/// The inner operations.
class OpenDerivatives : public Derivatives
{
public:
    using Derivatives::composeMatrix;
    using Derivatives::Derivatives;
    using Derivatives::getNP;
    using Derivatives::getNT;
    using Derivatives::solveSystemP;
    using Derivatives::solveSystemT;
};

std::string printed(const Derivatives& derivatives, unsigned flags)
{
    LogCapture capture;
    derivatives.printResults(flags);
    return capture.report();
}

} // namespace

TEST(Derivatives, OfAnInertGasAreThoseOfTheGas)
{
    Derivatives d(nitrogen(1000.0).release(), 1000.0, 2e6);
    d.solve(false);
    EXPECT_NEAR(d.get_d_lnV_d_lnT(), 1.0, relative);
    EXPECT_NEAR(d.get_d_lnV_d_lnp(), -1.0, relative);
    expectNear(d.getCp(), 3.5 * R);
    expectNear(d.getCv(), 2.5 * R);
    expectNear(d.getGamma(), 1.4);
    expectNear(d.getK(), 1.4);
    // The molar mass of the products is that of the atoms in them.
    const double Mm = 2 * 14.0067 / 1000;
    expectNear(d.getMm(), Mm);
    EXPECT_EQ(d.getMm2(), d.getMm());
    expectNear(d.getM(), 2 * 14.0067);
    expectNear(d.getCp_spec(), 3.5 * R / Mm);
    expectNear(d.getCv_spec(), 2.5 * R / Mm);
    expectNear(d.getR_spec(), R / Mm);
    expectNear(d.getA(), std::sqrt(1.4 * R * 1000.0 / Mm));
    expectNear(d.getRho(), M2 / 1000 * 2e6 / (R * 1000.0));
    EXPECT_EQ(d.getRhoGas(), d.getRho());
    EXPECT_EQ(d.getZ(), 0.0);
    EXPECT_EQ(d.getCpz_spec(), 0.0);
    EXPECT_EQ(d.getP(), 2e6);
    expectNear(d.get_d_lnp_d_lnT(), 3.5 * R * Mm / R);
    expectNear(d.getAlpha_p(), 1.0 / 1000.0);
    expectNear(d.getBetta_t(), 1.0 / 2e6);
    expectNear(d.getGamma_v(), 1.0 / 1000.0);
}

TEST(Derivatives, AreZeroBeforeTheSolve)
{
    const Derivatives d(nitrogen(1000.0).release(), 1000.0, 2e6);
    EXPECT_EQ(d.getCp(), 0.0);
    EXPECT_EQ(d.getK(), 0.0);
    EXPECT_EQ(d.getRho(), 0.0);
    EXPECT_EQ(d.getP(), 2e6);
    EXPECT_GT(d.getMm(), 0.0);
    for (const double transport :
         {d.getV(), d.getCfr(), d.getCr(), d.getCpfr(), d.getCpr(), d.getPrfr(), d.getPrr(),
          d.getCeql(), d.getCpeql(), d.getPreql()})
        EXPECT_EQ(transport, 0.0);
}

// A gas that is dissociated to the degree alpha, N2 = 2 N, has n = 1 + alpha moles. With q the heat
// of dissociation over R T, the law of mass action alpha^2 p / (1 - alpha^2) = const(T) gives
//   d alpha / d ln T = q alpha (1 - alpha^2) / 2,  d alpha / d ln p = -alpha (1 - alpha^2) / 2.
TEST(Derivatives, OfADissociatingGasFollowTheLawOfMassAction)
{
    useSpecies(carbonAndNitrogen(/*withAtoms=*/true));
    const double alpha = 0.3, T = 5000.0;
    auto products = solution({{"N2", 300.0, 1.0}}, 0, {{"N2", 1 - alpha}, {"N", 2 * alpha}}, T);
    OpenDerivatives d(products.release(), T, 1e5);
    d.solve(false);

    const double q = (2 * (2.5 * T + 56600.0) - (3.5 * T - 1000.0)) / T;
    const double dT = 1 + q * alpha * (1 - alpha) / 2, dp = -1 - alpha * (1 - alpha) / 2;
    expectNear(d.get_d_lnV_d_lnT(), dT);
    expectNear(d.get_d_lnV_d_lnp(), dp);
    const double c =
        R * ((1 - alpha) * 3.5 + 2 * alpha * 2.5 + q * q * alpha * (1 - alpha * alpha) / 2);
    const double cv = c + (1 + alpha) * R * dT * dT / dp;
    expectNear(d.getCp(), c / (1 + alpha));
    expectNear(d.getCv(), cv / (1 + alpha));
    expectNear(d.getGamma(), c / cv);
    expectNear(d.getK(), -c / cv / dp);
    expectNear(d.getA(), std::sqrt(-c / cv * R * T / (d.getMm2() * dp)));
    expectNear(d.getBetta_t(), -dp / 1e5);
    expectNear(d.getAlpha_p(), dT / T);

    // d ln n_N / d ln p = (d alpha / d ln p) / alpha, d ln n_N2 / d ln p = -.. / (1 - alpha)
    const std::unique_ptr<math::matrix::LinearSystem> system(d.composeMatrix());
    const std::unique_ptr<math::matrix::ColumnVector> xP(d.solveSystemP(system.get()));
    const std::unique_ptr<math::matrix::ColumnVector> nP(d.getNP(xP.get()));
    const std::unique_ptr<math::matrix::ColumnVector> xT(d.solveSystemT(system.get()));
    const std::unique_ptr<math::matrix::ColumnVector> nT(d.getNT(xT.get()));
    ASSERT_EQ(reactingNames(*d.getReactingMixture()), (std::vector<std::string>{"N", "N2"}));
    const double change = alpha * (1 - alpha * alpha) / 2;
    expectNear(nP->at(0), -change / alpha);
    expectNear(nP->at(1), change / (1 - alpha));
    expectNear(nT->at(0), q * change / alpha);
    expectNear(nT->at(1), -q * change / (1 - alpha));
}

TEST(Derivatives, CondensedPhasesCountInTheWholeAndNotInTheGas)
{
    const double T = 500.0, p = 2e6;
    Derivatives d(carbonInNitrogen(T).release(), T, p);
    d.solve(false);
    const double gas = 0.8 * M2, all = gas + 0.3 * MC, N = 1.1;
    EXPECT_NEAR(d.get_d_lnV_d_lnT(), 1.0, relative);
    EXPECT_NEAR(d.get_d_lnV_d_lnp(), -1.0, relative);
    expectNear(d.getMm(), all / N / 1000);
    expectNear(d.getMm2(), all / 0.8 / 1000);
    expectNear(d.getZ(), 1 - gas / all);
    const double c = R * (0.8 * 3.5 + 0.3 * 3.0);
    expectNear(d.getCp(), c / N);
    expectNear(d.getCv(), (c - 0.8 * R) / N);
    expectNear(d.getGamma(), c / (c - 0.8 * R));
    expectNear(d.getCpz_spec(), 0.3 * 3.0 * R / MC * 1000);
    expectNear(d.getRho(), all / 1000 * p / (0.8 * R * T));
    expectNear(d.getRhoGas(), gas / 1000 * p / (0.8 * R * T));
    EXPECT_LT(d.getRhoGas(), d.getRho());
    expectNear(d.getR_spec(), R * 0.8 * 1000 / all);
}

TEST(Derivatives, HandOutTheGasesAlone)
{
    const Derivatives d(carbonInNitrogen(500.0).release(), 500.0, 2e6);
    thermo::GasMixture& gas = *d.getGasMixture();
    ASSERT_EQ(gas.size(), 1);
    EXPECT_EQ(gas.getMolarFraction(0), 1.0);
    expectNear(gas.Cp0(), 3.5 * R);
    expectNear(gas.rho(), 2 * 14.0067 / 1000 * 2e6 / (R * 500.0));
}

TEST(Derivatives, TwoPhasesOfAFormulaAreMerged)
{
    // The crystal and the blend with the melt both exist at the lower edge of the band.
    useSpecies(carbonAndNitrogen(/*withAtoms=*/false));
    const double T = 965.0;
    LogCapture capture;
    auto products = solution({{"N2", 300.0, 0.75}, {"C(cr)", 300.0, 0.25}}, 2,
                             {{"N2", 0.8}, {"C(cr)", 0.2}, {"C(transit)", 0.1}}, T);
    ASSERT_EQ(products->size(), 3u);
    const double first = products->n(1); // the moles of the second one are gone from the list

    Derivatives d(products.release(), T, 1e5);
    ASSERT_EQ(d.getReactingMixture()->size(), 2u);
    const auto* merged = dynamic_cast<const QuasiProduct*>(d.getReactingMixture()->product(1));
    ASSERT_NE(merged, nullptr);
    expectNear(merged->getTotalN(), 0.3);
    EXPECT_EQ(merged->getMembers().size(), 1u);

    d.solve(false);
    // Both phases are crystal here: Cp = 3 R.
    expectNear(d.getCp(), R * (0.8 * 3.5 + first * 3.0) / (0.8 + first));
    expectNear(d.getMm2(), d.getMm() / (1 - first / (0.8 + first)));
}

TEST(Derivatives, ASystemWithoutASolutionIsAnError)
{
    // Without any oxygen its row is empty; an amount that is no number fails in both methods.
    for (const double amount : {0.0, std::nan("")}) {
        SCOPED_TRACE(amount);
        useSpecies({gasRecord("N2", {{"N", 2}}, M2, -1000.0),
                    gasRecord("O2", {{"O", 2}}, 31.9988, -1000.0)});
        auto products = solution({{"N2", 300.0, 0.5}, {"O2", 300.0, 0.5}}, 0,
                                 {{"N2", 0.5}, {"O2", 0.5}}, 1000.0);
        const auto oxygen = entryOf(*products, "O2");
        Derivatives d(products.release(), 1000.0, 1e5);
        oxygen->setN(amount, 0.0);
        LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(d.solve(false), thermo::Exception, 12,
                                   "Could not obtain thermodynamic derivatives");
        const std::string text = "Could not obtain thermodynamic derivatives.\r\n";
        EXPECT_EQ(capture.errors(), std::vector<std::string>{text});
        EXPECT_EQ(capture.tagOf(text), "THERMO");
    }
}

TEST(Derivatives, ACopyOutlivesItsSource)
{
    auto source = std::make_unique<Derivatives>(nitrogen(1000.0).release(), 1000.0, 2e6);
    source->solve(false);
    const Derivatives copy(*source);
    Derivatives assigned(nitrogen(500.0).release(), 500.0, 1e5);
    assigned = *source;
    source.reset();
    for (const Derivatives* d : {&copy, static_cast<const Derivatives*>(&assigned)}) {
        EXPECT_EQ(d->getReactingMixture()->size(), 1u);
        EXPECT_EQ(d->getGasMixture()->size(), 1);
        expectNear(d->getCp(), 3.5 * R);
        EXPECT_EQ(d->getP(), 2e6);
    }
}

TEST(Derivatives, OfAProblemOfGivenPressureTakeItsState)
{
    useSpecies(carbonAndNitrogen(/*withAtoms=*/false));
    auto initial = mixtureOf({{"N2", 300.0, 1.0}});
    Equilibrium problem(*initial);
    problem.setPT(3e6, 1500.0);
    problem.solve(false);
    Derivatives d(&problem);
    EXPECT_EQ(d.getP(), 3e6);
    d.solve(false);
    EXPECT_EQ(d.getP(), 3e6);
    expectNear(d.getCp(), 3.5 * R);
    EXPECT_NEAR(d.getRho(), M2 / 1000 * 3e6 / (R * 1500.0), 1e-6);
    EXPECT_NE(d.getReactingMixture(), nullptr);
}

TEST(Derivatives, OfAProblemOfGivenVolumeSupplyThePressure)
{
    useSpecies(carbonAndNitrogen(/*withAtoms=*/false));
    auto initial = mixtureOf({{"N2", 300.0, 1.0}});
    Equilibrium problem(*initial);
    problem.setVT(0.5, 3000.0);
    problem.solve(false);
    Derivatives d(&problem);
    EXPECT_EQ(d.getP(), 0.0) << "before the solve";
    d.solve(false);
    EXPECT_EQ(d.getRho(), 2.0);
    EXPECT_EQ(d.getRhoGas(), 2.0);
    const double p = R / (2 * 14.0067 / 1000) * 3000.0 * 2.0;
    expectNear(d.getP(), p);
    expectNear(d.getBetta_t(), 1 / p);
    EXPECT_EQ(problem.getP(), 0.0);
    const std::string report = printed(d, 0);
    EXPECT_NE(report.find("           Pressure:\t    1.78082\t        MPa\r\n"), std::string::npos)
        << report;
    EXPECT_EQ(report.find("Specific volume"), std::string::npos);
    // 1.78082 MPa / 6894.757 Pa/psi
    EXPECT_NE(printed(d, 0x80).find("           Pressure:\t  258.28615\t        psi\r\n"),
              std::string::npos);
}

// Report

// 0.8 mol of nitrogen and 0.3 mol of carbon at 500 K and 2 MPa: Cp = R (0.8 3.5 + 0.3 3) / 1.1, and
// the gas alone weighs 0.8 28.0134 of the whole's 0.8 28.0134 + 0.3 12.0107 g.

TEST(Derivatives, ReportInSiUnits)
{
    Derivatives d(carbonInNitrogen(500.0).release(), 500.0, 2e6);
    d.solve(false);
    const std::string expected =
        "        d_lnV_d_lnT:\t  1.0000000\r\n"
        "        d_lnV_d_lnp:\t -1.0000000\r\n"
        "Molecular weight, M:\t 32.5174125\r\n"
        "Molecular weight, MW:\t 23.6490273\t \r\n"
        "            Cp (eq):\t   27.96686\t  J/(mol K)\r\n"
        "                    \t    1.18258\t  kJ/(kg K)\r\n"
        "            Cv (eq):\t   21.91997\t  J/(mol K)\r\n"
        "                    \t    0.92689\t  kJ/(kg K)\r\n"
        "              gamma:\t  1.2758621\r\n"
        "                  k:\t  1.2758621\r\n"
        "                  R:\t  255.69292\t   J/(kg K)\r\n"
        "                  a:\t  403.87429\t        m/s\r\n"
        "    Specific volume:\t    0.06392\t     m^3/kg\r\n"
        "                rho:\t   15.64377\t     kg/m^3\r\n"
        "     rho (gas only):\t   13.47694\t     kg/m^3\r\n"
        "            C-phase:\t  0.1385108\t Condensed phase mass fraction\r\n";
    EXPECT_EQ(printed(d, 0), expected);
    EXPECT_EQ(printed(d, 0x01 | 0x1f), expected) << "the flags of the composition";
}

TEST(Derivatives, ReportInEnglishUnits)
{
    Derivatives d(carbonInNitrogen(500.0).release(), 500.0, 2e6);
    d.solve(false);
    EXPECT_EQ(printed(d, 0x80),
              "        d_lnV_d_lnT:\t  1.0000000\r\n"
              "        d_lnV_d_lnp:\t -1.0000000\r\n"
              "Molecular weight, M:\t 32.5174125\r\n"
              "Molecular weight, MW:\t 23.6490273\t \r\n"
              "            Cp (eq):\t    0.00668\t Btu/(lb-mol R)\r\n"
              "                    \t    0.28245\t Btu/(lbm R)\r\n"
              "            Cv (eq):\t    0.00524\t Btu/(lb-mol R)\r\n"
              "                    \t    0.22138\t Btu/(lbm R)\r\n"
              "              gamma:\t  1.2758621\r\n"
              "                  k:\t  1.2758621\r\n"
              "                  R:\t    0.06107\t Btu/(lbm R)\r\n"
              "                  a:\t 1325.04690\t       ft/s\r\n"
              "    Specific volume:\t    1.02395\t   ft^3/lbm\r\n"
              "                rho:\t    0.97661\t   lbm/ft^3\r\n"
              "     rho (gas only):\t    0.84134\t   lbm/ft^3\r\n"
              "            C-phase:\t  0.1385108\t Condensed phase mass fraction\r\n");
}

TEST(Derivatives, ReportOfAGasHasNoLineForTheGasAlone)
{
    Derivatives d(nitrogen(1000.0).release(), 1000.0, 2e6);
    d.solve(false);
    EXPECT_EQ(printed(d, 0).find("gas only"), std::string::npos);
}

// The laws of the derivatives, on a real reacting gas.

class RealGas : public ::testing::Test
{
    static std::unique_ptr<thermo::Mixture> charge()
    {
        useShippedSpecies();
        return loxHydrogen(6.0);
    }

protected:
    /// Central differences over 1/1000 of problems that are solved to 1e-7.
    static constexpr double differenceTolerance = 2e-4;

    std::unique_ptr<thermo::Mixture> initial = charge();
    Equilibrium problem{*initial};
};

TEST_F(RealGas, DerivativesAreTheSlopesOfVolumeAndEnthalpy)
{
    const double p = 5e6, T = 3400.0, step = 1e-3;
    const auto stateAt = [&](double atP, double atT) {
        problem.setPT(atP, atT);
        problem.solve(false);
        Derivatives d(&problem);
        d.solve(false);
        return std::pair(problem.getHspec(), std::log(1 / d.getRho()));
    };
    const auto [hHot, vHot] = stateAt(p, T * (1 + step));
    const auto [hCold, vCold] = stateAt(p, T * (1 - step));
    const auto [hHigh, vHigh] = stateAt(p * (1 + step), T);
    const auto [hLow, vLow] = stateAt(p * (1 - step), T);
    problem.setPT(p, T);
    problem.solve(false);
    Derivatives d(&problem);
    d.solve(false);
    const double slopeT = (vHot - vCold) / (2 * step), slopeP = (vHigh - vLow) / (2 * step);
    const double Cp = (hHot - hCold) / (2 * step * T);
    EXPECT_NEAR(d.get_d_lnV_d_lnT(), slopeT, differenceTolerance * slopeT);
    EXPECT_NEAR(d.get_d_lnV_d_lnp(), slopeP, differenceTolerance);
    EXPECT_NEAR(d.getCp_spec(), Cp, differenceTolerance * Cp);
    EXPECT_GT(d.get_d_lnV_d_lnT(), 1.1) << "the gas dissociates";
}

TEST_F(RealGas, SpeedOfSoundIsTheIsentropicSlopeOfPressure)
{
    const double p = 5e6, step = 1e-3;
    problem.setPT(p, 3400.0);
    problem.solve(false);
    Derivatives d(&problem);
    d.solve(false);
    const double s = problem.getSspec();
    const auto densityAt = [&](double atP) {
        problem.setPSspec(atP, s);
        problem.solve(false);
        Derivatives there(&problem);
        there.solve(false);
        return there.getRho();
    };
    const double high = densityAt(p * (1 + step)), low = densityAt(p * (1 - step));
    const double a = std::sqrt(2 * step * p / (high - low));
    EXPECT_NEAR(d.getA(), a, differenceTolerance * a);
    const double k = 2 * step / std::log(high / low);
    EXPECT_NEAR(d.getK(), k, differenceTolerance * k);
}
