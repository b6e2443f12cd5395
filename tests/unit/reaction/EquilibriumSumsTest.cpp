#include "MadeUpMixtures.h"

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

using namespace ketra_test;
using reaction::Equilibrium;
using reaction::ReactingMixture;
using thermo::gasConstant;

namespace {

/// Naive sum of a term over entries of the products of a problem.
double naive(const ReactingMixture& m, unsigned from, unsigned to,
             const std::function<double(unsigned)>& term)
{
    double total = 0.0;
    for (unsigned j = from; j < to && j < m.size(); ++j) total += term(j);
    return total;
}

} // namespace

TEST(EquilibriumSums, AreThoseOfTheirFormulas)
{
    useSpecies(sampleSpecies());
    const auto charge = mixtureOf({{"AL(cr)", 300.0, 0.3}, {"O2", 300.0, 0.3}, {"H2", 300.0, 0.4}},
                                  thermo::_Species::MOLE_FRACTION);
    for (const bool constantVolume : {false, true}) {
        SCOPED_TRACE(constantVolume);
        Equilibrium e(*charge);
        if (constantVolume)
            e.setVT(0.4, 800.0);
        else
            e.setPT(3e5, 800.0);
        e.solve(true);
        const std::unique_ptr<ReactingMixture> copy(e.copyReactingMixture(true, true));
        const ReactingMixture& m = *copy;
        const unsigned ng = m.gasSize(), N = m.size(), el = m.elSize();
        ASSERT_GT(N, ng);
        const auto n = [&](unsigned j) { return m.n(j); };
        const auto H = [&](unsigned j) { return m.product(j)->H0_tilde(); };
        const auto U = [&](unsigned j) { return m.product(j)->U0_tilde(); };
        const auto S = [&](unsigned j) { return m.product(j)->S0_tilde(); };
        const auto G = [&](unsigned j) { return m.product(j)->G0_tilde(); };
        const auto Cp = [&](unsigned j) { return m.product(j)->Cp0_tilde(); };
        const auto Cv = [&](unsigned j) { return m.product(j)->Cv0_tilde(); };
        const double lnNg = std::log(e.getNg());
        const double p = constantVolume ? 1e5 : e.getP(); // ln(p) counts 0 at constant volume
        const double lnPvNow =
            constantVolume ? std::log(gasConstant * 800.0 / (charge->mm() * 0.4 * 1e5)) : 0.0;
        const auto L = [&](unsigned j) {
            return j < ng ? m.ln_n(j) - lnNg + std::log(p / 1e5) : 0.0;
        };
        const auto L_V = [&](unsigned j) { return j < ng ? m.ln_n(j) + lnPvNow : 0.0; };
        const auto PSI = [&](unsigned j) { return G(j) + L(j); };
        const auto PSI_V = [&](unsigned j) { return G(j) + L_V(j); };
        for (unsigned j = 0; j < N; ++j) {
            EXPECT_NEAR(e.L(j), L(j), 1e-12 * std::abs(L(j)));
            EXPECT_NEAR(e.L_V(j), L_V(j), 1e-11 * (1.0 + std::abs(L_V(j))));
            EXPECT_NEAR(e.PSI(j), PSI(j), 1e-12 * std::abs(PSI(j)));
            EXPECT_NEAR(e.PSI_V(j), PSI_V(j), 1e-11 * std::abs(PSI_V(j)));
        }

        struct Range {
            unsigned from, to;
        };
        for (const Range& r : {Range{0, ng}, Range{0, N}, Range{ng, N}, Range{1, 2}, Range{2, 2}}) {
            const auto f = r.from, t = r.to;
            SCOPED_TRACE(testing::Message() << f << ".." << t);
            const auto same = [](double value, double expected) {
                EXPECT_NEAR(value, expected, 1e-11 * std::abs(expected));
            };
            const auto term = [&](const std::function<double(unsigned)>& g) {
                return naive(m, f, t, g);
            };
            same(e.sum_n(f, t), term([&](unsigned j) { return n(j); }));
            same(e.sum_nH(f, t), term([&](unsigned j) { return n(j) * H(j); }));
            same(e.sum_nU(f, t), term([&](unsigned j) { return n(j) * U(j); }));
            same(e.sum_nS(f, t), term([&](unsigned j) { return n(j) * S(j); }));
            same(e.sum_nPSI(f, t), term([&](unsigned j) { return n(j) * PSI(j); }));
            same(e.sum_nPSI_V(f, t), term([&](unsigned j) { return n(j) * PSI_V(j); }));
            same(e.sum_nHPSI(f, t), term([&](unsigned j) { return n(j) * H(j) * PSI(j); }));
            same(e.sum_nUPSI(f, t), term([&](unsigned j) { return n(j) * U(j) * PSI_V(j); }));
            same(e.sum_nS_L(f, t), term([&](unsigned j) { return n(j) * (S(j) - L(j)); }));
            same(e.sum_nS_L_V(f, t), term([&](unsigned j) { return n(j) * (S(j) - L_V(j)); }));
            same(e.sum_nS_L_1_PSI(f, t),
                 term([&](unsigned j) { return n(j) * (S(j) - L(j) - 1.0) * PSI(j); }));
            same(e.sum_nS_L_V_1_PSI_V(f, t),
                 term([&](unsigned j) { return n(j) * (S(j) - L_V(j) - 1.0) * PSI_V(j); }));
            same(Equilibrium::sum_n(f, t, &m), e.sum_n(f, t));
            same(Equilibrium::sum_nH(f, t, &m), e.sum_nH(f, t));
            same(Equilibrium::sum_nU(f, t, &m), e.sum_nU(f, t));
            same(Equilibrium::sum_nS(f, t, &m), e.sum_nS(f, t));
            const double squareH = term([&](unsigned j) { return n(j) * H(j) * H(j); });
            const double squareU = term([&](unsigned j) { return n(j) * U(j) * U(j); });
            const double allCp = naive(m, 0, N, [&](unsigned j) { return n(j) * Cp(j); });
            const double allCv = naive(m, 0, N, [&](unsigned j) { return n(j) * Cv(j); });
            same(e.sum_nH_nCp(f, t, 0, N), squareH + allCp);
            same(e.sum_nU_nCv(f, t, 0, N), squareU + allCv);
            same(Equilibrium::sum_nH_nCp(f, t, 0, N, &m), e.sum_nH_nCp(f, t, 0, N));
            same(Equilibrium::sum_nU_nCv(f, t, 0, N, &m), e.sum_nU_nCv(f, t, 0, N));
            same(e.sum_nHS_nCp(f, t, 0, N),
                 term([&](unsigned j) { return n(j) * (S(j) - L(j) - 1.0) * H(j); }) + allCp);
            same(e.sum_nUS_nCv(f, t, 0, N),
                 term([&](unsigned j) { return n(j) * (S(j) - L_V(j) - 1.0) * U(j); }) + allCv);
            for (unsigned i = 0; i < el; ++i) {
                const auto a = [&](unsigned j) { return m.a(i, j); };
                same(e.sum_an(i, f, t), term([&](unsigned j) { return a(j) * n(j); }));
                same(e.sum_anH(i, f, t), term([&](unsigned j) { return a(j) * n(j) * H(j); }));
                same(e.sum_anU(i, f, t), term([&](unsigned j) { return a(j) * n(j) * U(j); }));
                same(e.sum_anPSI(i, f, t), term([&](unsigned j) { return a(j) * n(j) * PSI(j); }));
                same(e.sum_anPSI_V(i, f, t),
                     term([&](unsigned j) { return a(j) * n(j) * PSI_V(j); }));
                same(e.sum_anS_L_1(i, f, t),
                     term([&](unsigned j) { return a(j) * n(j) * (S(j) - L(j) - 1.0); }));
                same(e.sum_anS_L_V_1(i, f, t),
                     term([&](unsigned j) { return a(j) * n(j) * (S(j) - L_V(j) - 1.0); }));
                same(Equilibrium::sum_an(i, f, t, &m), e.sum_an(i, f, t));
                same(Equilibrium::sum_anH(i, f, t, &m), e.sum_anH(i, f, t));
                same(Equilibrium::sum_anU(i, f, t, &m), e.sum_anU(i, f, t));
                for (unsigned k = 0; k < el; ++k) {
                    same(e.sum_aan(i, k, f, t),
                         term([&](unsigned j) { return a(j) * m.a(k, j) * n(j); }));
                    same(Equilibrium::sum_aan(i, k, f, t, &m), e.sum_aan(i, k, f, t));
                }
            }
        }
        EXPECT_EQ(e.sum_n(2, 2), 0.0);
        EXPECT_NE(e.sum_nH_nCp(0, ng, 0, N), e.sum_nH(0, ng));
    }
}
