#include "MadeUpMixtures.h"

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

using namespace ketra_test;
using math::matrix::ColumnVector;
using reaction::Equilibrium;
using reaction::ReactingMixture;
using thermo::gasConstant;

namespace {

class OpenEquilibrium : public Equilibrium
{
public:
    using Equilibrium::Equilibrium;
    using Equilibrium::setH;
    using Equilibrium::setS;
    using Equilibrium::setU;
    using Equilibrium::solveSystemP;
    using Equilibrium::solveSystemV;
};

// The reduced systems, row by row against the public sums, at a solved state with a new target.
class SystemTest : public testing::Test
{
protected:
    SystemTest() { useSpecies(sampleSpecies()); }

    /// A solved state with a condensed product.
    std::unique_ptr<OpenEquilibrium> solved(bool constantVolume)
    {
        charge = mixtureOf({{"AL(cr)", 300.0, 0.3}, {"O2", 300.0, 0.3}, {"H2", 300.0, 0.4}},
                           thermo::_Species::MOLE_FRACTION);
        auto problem = std::make_unique<OpenEquilibrium>(*charge);
        if (constantVolume)
            problem->setVT(0.4, 800.0);
        else
            problem->setPT(3e5, 800.0);
        problem->solve(true);
        products.reset(problem->copyReactingMixture(true, true));
        return problem;
    }

    /// Checks one row: coefficients times solution against the right-hand side.
    static void expectRow(const std::vector<double>& row, const ColumnVector& x, double rhs)
    {
        ASSERT_EQ(row.size(), x.size());
        double sum = 0.0, scale = std::abs(rhs);
        for (unsigned k = 0; k < x.size(); ++k) {
            sum += row[k] * x.at(k);
            scale += std::abs(row[k] * x.at(k));
        }
        EXPECT_NEAR(sum, rhs, 1e-10 * scale);
    }

    double balanceOf(unsigned i) const
    {
        double present = 0.0;
        for (unsigned j = 0; j < products->size(); ++j)
            present += products->a(i, j) * products->n(j);
        return products->b(i) / products->element(i)->am() - present;
    }

    std::unique_ptr<thermo::Mixture> charge;
    std::unique_ptr<ReactingMixture> products;
};

} // namespace

TEST_F(SystemTest, AtConstantPressure)
{
    using Type = Equilibrium::PROCESS_TYPE;
    for (const Type type : {Equilibrium::PT, Equilibrium::PH, Equilibrium::PS}) {
        SCOPED_TRACE(type);
        const auto problem = solved(false);
        OpenEquilibrium& e = *problem;
        if (type == Equilibrium::PH) e.setH(e.getH() * 0.9 + 1e4);
        if (type == Equilibrium::PS) e.setS(e.getS() * 1.1);
        ASSERT_EQ(e.getProcessType(), type);
        const std::unique_ptr<ColumnVector> x(e.solveSystemP());
        const unsigned m = products->elSize(), ng = products->gasSize(), N = products->size();
        ASSERT_GT(N, ng);
        const unsigned C = N - ng, hasT = type == Equilibrium::PT ? 0 : 1;
        ASSERT_EQ(x->size(), m + 1 + C + hasT);
        const unsigned dn = m + 1 + hasT;
        const auto product = [&](unsigned c) { return products->product(ng + c); };
        for (unsigned i = 0; i < m; ++i) {
            std::vector<double> row(x->size(), 0.0);
            row[0] = e.sum_an(i, 0, ng);
            for (unsigned k = 0; k < m; ++k) row[1 + k] = e.sum_aan(i, k, 0, ng);
            if (hasT) row[m + 1] = e.sum_anH(i, 0, ng);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = products->a(i, ng + c);
            expectRow(row, *x, balanceOf(i) + e.sum_anPSI(i, 0, ng));
        }
        {
            std::vector<double> row(x->size(), 0.0);
            row[0] = e.sum_n(0, ng) - e.getNg();
            for (unsigned k = 0; k < m; ++k) row[1 + k] = e.sum_an(k, 0, ng);
            if (hasT) row[m + 1] = e.sum_nH(0, ng);
            expectRow(row, *x, e.getNg() - e.sum_n(0, ng) + e.sum_nPSI(0, ng));
        }
        if (type == Equilibrium::PH) {
            std::vector<double> row(x->size(), 0.0);
            row[0] = e.sum_nH(0, ng);
            for (unsigned k = 0; k < m; ++k) row[1 + k] = e.sum_anH(k, 0, ng);
            row[m + 1] = e.sum_nH_nCp(0, ng, 0, N);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = product(c)->H0_tilde();
            expectRow(row, *x, e.getH() / e.getRT() - e.sum_nH(0, N) + e.sum_nHPSI(0, ng));
        }
        if (type == Equilibrium::PS) {
            std::vector<double> row(x->size(), 0.0);
            row[0] = e.sum_nS_L(0, ng);
            for (unsigned k = 0; k < m; ++k) row[1 + k] = e.sum_anS_L_1(k, 0, ng);
            row[m + 1] = e.sum_nHS_nCp(0, ng, 0, N);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = product(c)->S0_tilde();
            expectRow(row, *x,
                      e.getS() / gasConstant - e.sum_nS_L(0, ng) - e.sum_nS(ng, N) +
                          e.sum_nS_L_1_PSI(0, ng));
        }
        for (unsigned c = 0; c < C; ++c) {
            std::vector<double> row(x->size(), 0.0);
            for (unsigned k = 0; k < m; ++k) row[1 + k] = products->a(k, ng + c);
            if (hasT) row[m + 1] = product(c)->H0_tilde();
            expectRow(row, *x, product(c)->G0_tilde());
        }
    }
}

TEST_F(SystemTest, AtConstantVolume)
{
    using Type = Equilibrium::PROCESS_TYPE;
    for (const Type type : {Equilibrium::VT, Equilibrium::VU, Equilibrium::VS}) {
        SCOPED_TRACE(type);
        const auto problem = solved(true);
        OpenEquilibrium& e = *problem;
        if (type == Equilibrium::VU) e.setU(e.getU() * 0.9 + 1e4);
        if (type == Equilibrium::VS) e.setS(e.getS() * 1.1);
        ASSERT_EQ(e.getProcessType(), type);
        const std::unique_ptr<ColumnVector> x(e.solveSystemV());
        const unsigned m = products->elSize(), ng = products->gasSize(), N = products->size();
        ASSERT_GT(N, ng);
        const unsigned C = N - ng, hasT = type == Equilibrium::VT ? 0 : 1;
        ASSERT_EQ(x->size(), m + C + hasT);
        const unsigned dn = m + hasT;
        const auto product = [&](unsigned c) { return products->product(ng + c); };
        for (unsigned i = 0; i < m; ++i) {
            std::vector<double> row(x->size(), 0.0);
            for (unsigned k = 0; k < m; ++k) row[k] = e.sum_aan(i, k, 0, ng);
            if (hasT) row[m] = e.sum_anU(i, 0, ng);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = products->a(i, ng + c);
            expectRow(row, *x, balanceOf(i) + e.sum_anPSI_V(i, 0, ng));
        }
        if (type == Equilibrium::VU) {
            std::vector<double> row(x->size(), 0.0);
            for (unsigned k = 0; k < m; ++k) row[k] = e.sum_anU(k, 0, ng);
            row[m] = e.sum_nU_nCv(0, ng, 0, N);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = product(c)->U0_tilde();
            expectRow(row, *x, e.getU() / e.getRT() - e.sum_nU(0, N) + e.sum_nUPSI(0, ng));
        }
        if (type == Equilibrium::VS) {
            std::vector<double> row(x->size(), 0.0);
            for (unsigned k = 0; k < m; ++k) row[k] = e.sum_anS_L_V_1(k, 0, ng);
            row[m] = e.sum_nUS_nCv(0, ng, 0, N);
            for (unsigned c = 0; c < C; ++c) row[dn + c] = product(c)->S0_tilde();
            expectRow(row, *x,
                      e.getS() / gasConstant - e.sum_nS_L_V(0, ng) - e.sum_nS(ng, N) +
                          e.sum_nS_L_V_1_PSI_V(0, ng));
        }
        for (unsigned c = 0; c < C; ++c) {
            std::vector<double> row(x->size(), 0.0);
            for (unsigned k = 0; k < m; ++k) row[k] = products->a(k, ng + c);
            if (hasT) row[m] = product(c)->U0_tilde();
            expectRow(row, *x, product(c)->G0_tilde());
        }
    }
}
