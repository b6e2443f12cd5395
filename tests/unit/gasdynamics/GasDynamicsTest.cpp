#include <ketra/gasdynamics/gasdynamics.h>

#include <ketra/math/equation/Exception.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace gasdynamics;
using math::equation::Exception;

// Rounding of a closed form, through powers as high as 1/(1.05 - 1) = 20.
constexpr double rounding = 1e-13;

constexpr double exponents[] = {1.05, 1.1, 1.135, 1.2, 1.25, 1.3, 1.4, 1.5, 1.6, 5.0 / 3.0};

TEST(GasDynamics, TurnsMachNumberIntoReducedVelocityAndBack)
{
    for (const double k : exponents) {
        SCOPED_TRACE(k);
        EXPECT_NEAR(M2L(1.0, k), 1.0, rounding);
        EXPECT_NEAR(L2M(1.0, k), 1.0, rounding);
        EXPECT_EQ(M2L(0.0, k), 0.0);
        EXPECT_EQ(L2M(0.0, k), 0.0);
        for (const double M : {0.01, 0.3, 0.9, 1.1, 2.0, 5.0, 10.0})
            EXPECT_NEAR(L2M(M2L(M, k), k) / M, 1.0, 1e-11) << M;
    }
    // lambda^2 = (k + 1) M^2 / ((k - 1) M^2 + 2): 2.4 * 4 / (0.4 * 4 + 2)
    EXPECT_NEAR(M2L(2.0, 1.4), std::sqrt(9.6 / 3.6), rounding);
    // M^2 = 2 lambda^2 / (k + 1 - (k - 1) lambda^2): 2 * 2.25 / (2.4 - 0.4 * 2.25)
    EXPECT_NEAR(L2M(1.5, 1.4), std::sqrt(4.5 / 1.5), rounding);
}

// Isentropic relations in the Mach number: T0/T = 1 + (k - 1)/2 M^2, and the others by its powers.
TEST(GasDynamics, AgreesWithTheRelationsInTheMachNumber)
{
    for (const double k : exponents)
        for (const double M : {0.05, 0.5, 1.0, 1.7, 3.0, 6.0}) {
            SCOPED_TRACE(testing::Message() << "k " << k << ", M " << M);
            const double lambda = M2L(M, k);
            const double ratio = 1.0 + (k - 1.0) / 2.0 * M * M; // T0/T
            // 1e-16 of t, which may be as small as 0.05, to the power of 21
            EXPECT_NEAR(gf_tau(lambda, k) * ratio, 1.0, 1e-12);
            EXPECT_NEAR(gf_pi(lambda, k) * std::pow(ratio, k / (k - 1.0)), 1.0, 1e-12);
            EXPECT_NEAR(gf_eps(lambda, k) * std::pow(ratio, 1.0 / (k - 1.0)), 1.0, 1e-12);
            // A/A* = 1/M (2/(k + 1) T0/T)^((k + 1)/(2 (k - 1)))
            const double area =
                std::pow(2.0 / (k + 1.0) * ratio, (k + 1.0) / (2.0 * (k - 1.0))) / M;
            EXPECT_NEAR(gf_q(lambda, k) * area, 1.0, 1e-12);
            EXPECT_NEAR(gf_f(lambda, k) / (1.0 + lambda * lambda),
                        std::pow(ratio, -1.0 / (k - 1.0)), 1e-12);
        }
}

// Ames Research Staff: Equations, Tables, and Charts for Compressible Flow. NACA Report 1135, 1953,
// table II, k = 1.4, M = 2: p/p0 = 0.1278, rho/rho0 = 0.2300, T/T0 = 0.5556, A/A* = 1.687. To half
// a unit of the last printed place.
TEST(GasDynamics, AgreesWithPublishedTables)
{
    const double lambda = M2L(2.0, 1.4);
    EXPECT_NEAR(gf_pi(lambda, 1.4), 0.1278, 0.00005);
    EXPECT_NEAR(gf_eps(lambda, 1.4), 0.2300, 0.00005);
    EXPECT_NEAR(gf_tau(lambda, 1.4), 0.5556, 0.00005);
    EXPECT_NEAR(1.0 / gf_q(lambda, 1.4), 1.687, 0.0005);
}

TEST(GasDynamics, IsCriticalAtTheSpeedOfSound)
{
    for (const double k : exponents) {
        SCOPED_TRACE(k);
        EXPECT_EQ(gf_q(1.0, k), 1.0); // exactly
        EXPECT_NEAR(gf_tau(1.0, k), 2.0 / (k + 1.0), rounding);
        EXPECT_NEAR(gf_pi(1.0, k), std::pow(2.0 / (k + 1.0), k / (k - 1.0)), rounding);
        EXPECT_NEAR(gf_eps(1.0, k), std::pow(2.0 / (k + 1.0), 1.0 / (k - 1.0)), rounding);
        EXPECT_NEAR(gf_f(1.0, k), 2.0 * gf_eps(1.0, k), rounding);
    }
}

// The critical mass flux rho a over p0 / sqrt(R T0) is sqrt(k) (rho/rho0) sqrt(T/T0) at M = 1.
TEST(GasDynamics, GivesTheFactorOfTheCriticalFlow)
{
    for (const double k : exponents)
        EXPECT_NEAR(A(k), std::sqrt(k * gf_tau(1.0, k)) * gf_eps(1.0, k), rounding) << k;
    EXPECT_NEAR(A(1.4), 0.6847, 0.00005); // sqrt(1.4) / 1.2^3
}

TEST(GasDynamics, FindsTheExponentOfAPolytropicChange)
{
    // From p1, T1 along p / rho^n = const with the gas constant changing on the way.
    for (const double n : {0.9, 1.13, 1.4}) {
        const double rho1 = 5.0, p1 = 2e6, R1 = 350.0;
        const double rho2 = 0.2, p2 = p1 * std::pow(rho2 / rho1, n), R2 = 330.0;
        const double T1 = p1 / (rho1 * R1), T2 = p2 / (rho2 * R2);
        EXPECT_NEAR(n_eff(p1, T1, R1, p2, T2, R2), n, 1e-12);
        EXPECT_NEAR(n_eff(p2, T2, R2, p1, T1, R1), n, 1e-12); // the same the other way
    }
    EXPECT_NEAR(n_eff(7e6, 3000.0, 300.0, 1e6, 3000.0, 300.0), 1.0, 1e-12); // isothermal
    EXPECT_EQ(n_eff(7e6, 3000.0, 300.0, 7e6, 2000.0, 300.0), 0.0);          // isobaric
}

TEST(GasDynamics, ChecksNoArgument)
{
    const double beyond = 1.0001 * std::sqrt(2.4 / 0.4); // of the limiting velocity
    EXPECT_LT(gf_tau(beyond, 1.4), 0.0);
    for (auto function : {gf_pi, gf_eps, gf_q, gf_f})
        EXPECT_TRUE(std::isnan(function(beyond, 1.4)));
    EXPECT_TRUE(std::isnan(L2M(beyond, 1.4)));
    // Here neither the limiting velocity, 3, nor anything on the way is rounded.
    EXPECT_TRUE(std::isinf(L2M(3.0, 1.25)));
    EXPECT_EQ(gf_tau(3.0, 1.25), 0.0);
    // An exponent of 1 raises 1 to an infinite power.
    for (auto function : {gf_pi, gf_eps}) EXPECT_EQ(function(0.5, 1.0), std::pow(1.0, HUGE_VAL));
    EXPECT_TRUE(std::isnan(gf_pi(0.5, std::nan(""))));
}

/// The root on the branch, by bisection.
double bisected(double q, double k, double low, double high)
{
    const bool rises = gf_q(low, k) < gf_q(high, k);
    for (int i = 0; i < 200; ++i) {
        const double middle = (low + high) / 2;
        ((gf_q(middle, k) < q) == rises ? low : high) = middle;
    }
    return (low + high) / 2;
}
double limiting(double k) { return std::sqrt((k + 1.0) / (k - 1.0)); }

/// All isentropic exponents of combustion products, from those with much heat in their reactions to
/// those of an atomic gas.
class Inversions : public testing::TestWithParam<double>
{
};
INSTANTIATE_TEST_SUITE_P(Exponents, Inversions,
                         testing::Values(1.05, 1.0625, 1.08, 1.1, 1.125, 1.15, 1.2, 1.25, 1.3, 1.35,
                                         1.4, 1.45, 1.5, 1.55, 1.6, 1.6224, 1.631, 1.66, 1.664,
                                         5.0 / 3.0, 1.67));

TEST_P(Inversions, FindBothVelocitiesOfAnAreaRatio)
{
    const double k = GetParam();
    for (int i = 1; i <= 3000; ++i) {
        const double F = std::pow(10.0, i / 1000.0); // 1.002 to 1,000
        SCOPED_TRACE(F);
        const double slow = lambda_q(1.0 / F, k, false);
        const double fast = lambda_q(1.0 / F, k, true);
        ASSERT_LT(slow, 1.0);
        ASSERT_GT(slow, 0.0);
        ASSERT_GT(fast, 1.0);
        ASSERT_LT(fast, limiting(k));
        ASSERT_NEAR(slow, bisected(1.0 / F, k, 0.0, 1.0), 1e-8);
        ASSERT_NEAR(fast, bisected(1.0 / F, k, 1.0, limiting(k)), 1e-8);
    }
}

TEST_P(Inversions, FindTheVelocitiesBesideTheThroat)
{
    const double k = GetParam();
    for (const double gap : {1e-3, 1e-6, 1e-9, 1e-12}) {
        SCOPED_TRACE(gap);
        const double q = 1.0 - gap;
        // q = 1 - (k + 1)/2 (lambda - 1)^2 beside its maximum; the next term is of the order of gap
        const double distance = std::sqrt(2.0 * gap / (k + 1.0));
        const double width = 3.0 * gap + 1e-4 * distance + 1e-8;
        EXPECT_NEAR(lambda_q(q, k, false), 1.0 - distance, width);
        EXPECT_NEAR(lambda_q(q, k, true), 1.0 + distance, width);
    }
    // Both branches meet at 1, a double root: the rounding of q moves it by its square root.
    EXPECT_NEAR(lambda_q(1.0, k, false), 1.0, 1e-7);
    EXPECT_NEAR(lambda_q(1.0, k, true), 1.0, 1e-7);
}

TEST_P(Inversions, FindTheVelocityOfAPressureRatioFromEitherSide)
{
    const double k = GetParam();
    for (int i = 1; i <= 1000; ++i) {
        const double pi = std::pow(10.0, -i / 200.0); // 0.99 to 1e-5
        SCOPED_TRACE(pi);
        const double expected =
            std::sqrt((1.0 - std::pow(pi, (k - 1.0) / k)) * (k + 1.0) / (k - 1.0));
        ASSERT_NEAR(lambda_pi(pi, k, true), expected, 2e-8);
        ASSERT_NEAR(lambda_pi(pi, k, false), expected, 2e-8);
    }
    EXPECT_NEAR(lambda_pi(1.0, k, false), 0.0, 1e-6); // a double root again
}

TEST_P(Inversions, EndWithTheFinderWhereThereIsNoRoot)
{
    const double k = GetParam();
    for (const bool supersonic : {false, true}) {
        EXPECT_THROW(lambda_q(1.001, k, supersonic), Exception);
        EXPECT_THROW(lambda_q(3.0, k, supersonic), Exception);
        EXPECT_THROW(lambda_pi(1.001, k, supersonic), Exception);
        EXPECT_THROW(lambda_pi(3.0, k, supersonic), Exception);
        EXPECT_THROW(lambda_pi(-0.001, k, supersonic), Exception);
        KETRA_EXPECT_THROW_CODE(lambda_q(std::nan(""), k, supersonic), Exception, 0);
        KETRA_EXPECT_THROW_CODE(lambda_pi(std::nan(""), k, supersonic), Exception, 0);
    }
}

TEST(QFunction, IsTheReducedFluxLessTheTarget)
{
    Q_Function function(0.3, 1.2);
    for (const double lambda : {0.1, 1.0, 2.5})
        EXPECT_EQ(function.at(lambda), gf_q(lambda, 1.2) - 0.3);
    EXPECT_TRUE(std::isnan(function.at(10.0)));
    Q_Function copy(function);
    EXPECT_EQ(copy.at(0.7), function.at(0.7));
    copy = Q_Function(0.1, 1.4);
    EXPECT_EQ(copy.at(0.7), gf_q(0.7, 1.4) - 0.1);
}

TEST(PIFunction, IsThePressureRatioLessTheTarget)
{
    PI_Function function(0.3, 1.2);
    for (const double lambda : {0.1, 1.0, 2.5})
        EXPECT_EQ(function.at(lambda), gf_pi(lambda, 1.2) - 0.3);
    EXPECT_TRUE(std::isnan(function.at(10.0)));
    PI_Function copy(function);
    EXPECT_EQ(copy.at(0.7), function.at(0.7));
    copy = PI_Function(0.1, 1.4);
    EXPECT_EQ(copy.at(0.7), gf_pi(0.7, 1.4) - 0.1);
}

} // namespace
