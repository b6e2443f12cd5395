#include "Systems.h"

#include <ketra/math/matrix/Exception.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

using namespace math_test;
using math::matrix::Exception;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class AnyWay : public testing::TestWithParam<Way>
{
protected:
    std::unique_ptr<ColumnVector> solved(const LinearSystem& a, const ColumnVector& b) const
    {
        return solve(GetParam(), a, b);
    }
    /// The code that each of the three ways has for a failure.
    static unsigned int code(unsigned int lu, unsigned int refined, unsigned int full)
    {
        return GetParam() == Way::lu ? lu : GetParam() == Way::refined ? refined : full;
    }
};

INSTANTIATE_TEST_SUITE_P(LinearSystem, AnyWay, testing::Values(Way::lu, Way::refined, Way::full),
                         [](const auto& way) {
                             return way.param == Way::lu        ? "LU"
                                    : way.param == Way::refined ? "Refined"
                                                                : "FullPivoting";
                         });

TEST_P(AnyWay, SolvesASmallSystem)
{
    // x + 2 y = 5, 3 x + 4 y = 11 has the solution 1, 2.
    const auto x = solved(systemOf(2, {1, 2, 3, 4}), vectorOf({5, 11}));
    EXPECT_NEAR(x->at(0), 1.0, 1e-14);
    EXPECT_NEAR(x->at(1), 2.0, 1e-14);
}

TEST_P(AnyWay, SolvesSystemsOfOrderOneAndNone)
{
    EXPECT_EQ(solved(systemOf(1, {4}), vectorOf({2}))->at(0), 0.5);
    EXPECT_EQ(solved(LinearSystem(0), ColumnVector(0))->size(), 0u);
}

TEST_P(AnyWay, PivotsOnAZeroDiagonal)
{
    const auto x = solved(systemOf(3, {0, 2, 0, 0, 0, 4, 8, 0, 0}), vectorOf({2, 12, 40}));
    EXPECT_EQ(x->at(0), 5.0);
    EXPECT_EQ(x->at(1), 1.0);
    EXPECT_EQ(x->at(2), 3.0);
}

// Orders below, at and above the 40 that need no memory from the heap. The condition numbers are
// below 10; 1e-13 leaves room for the rounding of 60 operations a coefficient.
TEST_P(AnyWay, FindsKnownSolutionsOfRandomSystems)
{
    Numbers numbers(20240901);
    for (const unsigned int n : {1u, 2u, 3u, 5u, 8u, 13u, 20u, 30u, 39u, 40u, 41u, 60u}) {
        SCOPED_TRACE(n);
        for (int repeat = 0; repeat < 20; ++repeat) {
            const LinearSystem a = wellConditioned(n, numbers);
            const ColumnVector known = randomVector(n, numbers);
            EXPECT_LT(relativeError(*solved(a, product(a, known)), known), 1e-13);
        }
    }
}

TEST_P(AnyWay, LeavesMatrixAndRightHandSide)
{
    Numbers numbers(7);
    const LinearSystem a = wellConditioned(10, numbers);
    const ColumnVector b = randomVector(10, numbers);
    const LinearSystem keptA(a);
    const ColumnVector keptB(b);
    const auto first = solved(a, b);
    EXPECT_TRUE(sameEntries(a, keptA));
    EXPECT_TRUE(sameEntries(b, keptB));
    EXPECT_TRUE(sameEntries(*first, *solved(a, b))); // digit by digit the same again
}

// Scaling by powers of two and exchanging rows must not touch a digit of a solution that is exact.
TEST_P(AnyWay, DoesNotMindTheUnitsOfItsRows)
{
    Numbers numbers(11);
    for (const unsigned int n : {3u, 8u, 20u}) {
        SCOPED_TRACE(n);
        LinearSystem a = wellConditioned(n, numbers);
        ColumnVector known = randomVector(n, numbers);
        ColumnVector b = product(a, known);
        for (unsigned int i = 0; i < n; ++i) {
            const double unit = std::pow(10.0, 280.0 * numbers.next());
            for (unsigned int j = 0; j < n; ++j) a.set(i, j, a.at(i, j) * unit);
            b.set(i, b.at(i) * unit);
        }
        EXPECT_LT(relativeError(*solved(a, b), known), 1e-13);
    }
}

TEST_P(AnyWay, DoesNotMindTheOrderOfItsRows)
{
    Numbers numbers(13);
    const unsigned int n = 12;
    const LinearSystem a = wellConditioned(n, numbers);
    const ColumnVector known = randomVector(n, numbers);
    const ColumnVector b = product(a, known);
    for (unsigned int shift = 1; shift < n; ++shift) {
        LinearSystem shifted(n);
        ColumnVector shiftedB(n);
        for (unsigned int i = 0; i < n; ++i) {
            const unsigned int from = (5 * i + shift) % n; // 5 and 12 have no common divisor
            for (unsigned int j = 0; j < n; ++j) shifted.set(i, j, a.at(from, j));
            shiftedB.set(i, b.at(from));
        }
        EXPECT_LT(relativeError(*solved(shifted, shiftedB), known), 1e-13) << shift;
    }
}

TEST_P(AnyWay, RefusesARightHandSideOfAnotherSize)
{
    const LinearSystem a = systemOf(2, {1, 0, 0, 1});
    KETRA_EXPECT_THROW_MESSAGE(solved(a, ColumnVector(3)), Exception, 1, "Invalid dimensions");
    KETRA_EXPECT_THROW_CODE(solved(a, ColumnVector(1)), Exception, 1);
    KETRA_EXPECT_THROW_CODE(solved(a, ColumnVector(0)), Exception, 1);
}

TEST_P(AnyWay, ReportsDependentRows)
{
    KETRA_EXPECT_THROW_MESSAGE(solved(systemOf(2, {1, 2, 2, 4}), vectorOf({1, 2})), Exception, 3,
                               "Singular");
    KETRA_EXPECT_THROW_CODE(solved(systemOf(2, {1, 2, 2, 4}), vectorOf({1, 3})), Exception, 3);
    // The second row is three times the first only up to rounding.
    KETRA_EXPECT_THROW_CODE(solved(systemOf(2, {0.1, 0.2, 0.3, 0.6}), vectorOf({1, 3})), Exception,
                            3);
    KETRA_EXPECT_THROW_CODE(solved(systemOf(3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), vectorOf({1, 1, 1})),
                            Exception, 3);
}

TEST_P(AnyWay, ReportsAnEmptyColumn)
{
    KETRA_EXPECT_THROW_CODE(solved(systemOf(2, {1, 0, 2, 0}), vectorOf({1, 2})), Exception, 3);
}

TEST_P(AnyWay, ReportsAnEmptyRow)
{
    for (const unsigned int row : {0u, 1u, 2u}) {
        LinearSystem a = systemOf(3, {1, 2, 3, 4, 5, 6, 7, 8, 10});
        for (unsigned int j = 0; j < 3; ++j) a.set(row, j, 0.0);
        KETRA_EXPECT_THROW_CODE(solved(a, vectorOf({1, 1, 1})), Exception, code(3, 2, 2));
    }
    KETRA_EXPECT_THROW_CODE(solved(LinearSystem(4), ColumnVector(4)), Exception, code(3, 2, 2));
    KETRA_EXPECT_THROW_CODE(solved(LinearSystem(50), ColumnVector(50)), Exception, code(3, 2, 2));
}

TEST_P(AnyWay, RefusesNumbersThatAreNotFinite)
{
    for (const double bad : {nan, infinity, -infinity}) {
        for (unsigned int place = 0; place < 9; ++place) {
            SCOPED_TRACE(place);
            LinearSystem a = systemOf(3, {1, 2, 3, 4, 5, 6, 7, 8, 10});
            a.getData()[place] = bad;
            KETRA_EXPECT_THROW_CODE(solved(a, vectorOf({1, 1, 1})), Exception, code(3, 4, 3));
        }
        for (unsigned int place = 0; place < 3; ++place) {
            ColumnVector b = vectorOf({1, 1, 1});
            b.set(place, bad);
            KETRA_EXPECT_THROW_CODE(solved(systemOf(3, {1, 2, 3, 4, 5, 6, 7, 8, 10}), b), Exception,
                                    code(3, 4, 3));
        }
    }
}

TEST_P(AnyWay, RefusesASolutionThatOverflows)
{
    KETRA_EXPECT_THROW_CODE(solved(systemOf(1, {1e-300}), vectorOf({1e300})), Exception,
                            code(3, 4, 3));
}

TEST_P(AnyWay, SolvesWithTheLargestAndSmallestNumbers)
{
    const auto x = solved(systemOf(2, {1e308, 0, 0, 1e-307}), vectorOf({-1.5e308, 3e-307}));
    EXPECT_DOUBLE_EQ(x->at(0), -1.5);
    EXPECT_DOUBLE_EQ(x->at(1), 3.0);
}

TEST(LinearSystem, RefusesNoRightHandSide)
{
    const LinearSystem a = systemOf(1, {1});
    KETRA_EXPECT_THROW_CODE(std::unique_ptr<ColumnVector>(a.solve(nullptr, true)), Exception, 1);
    KETRA_EXPECT_THROW_CODE(std::unique_ptr<ColumnVector>(a.solveLU(nullptr, false)), Exception, 1);
}

// Backward stable methods leave the error of the Hilbert matrix at its condition number times
// 1e-16: 5e5 for order 5, 1.6e13 for order 10.
TEST(LinearSystem, SolvesHilbertMatricesAsWellAsTheirConditionAllows)
{
    Numbers numbers(3);
    for (const auto& [n, limit] : {std::pair{3u, 1e-13}, {5u, 1e-10}, {8u, 1e-5}, {10u, 1e-2}}) {
        SCOPED_TRACE(n);
        const LinearSystem a = hilbert(n);
        const ColumnVector known = randomVector(n, numbers);
        const ColumnVector b = product(a, known);
        EXPECT_LT(relativeError(*solve(Way::refined, a, b), known), limit);
        EXPECT_LT(relativeError(*solve(Way::full, a, b), known), limit);
    }
}

TEST(LinearSystem, CallsAHilbertMatrixSingularThatHasNoDigitLeft)
{
    ColumnVector b(20);
    b.set(0, 1.0);
    KETRA_EXPECT_THROW_CODE(solve(Way::refined, hilbert(20), b), Exception, 3);
    KETRA_EXPECT_THROW_CODE(solve(Way::full, hilbert(20), b), Exception, 3);
}

TEST(LinearSystem, DoesNotMindTheUnitsOfItsUnknowns)
{
    Numbers numbers(17);
    const unsigned int n = 9;
    LinearSystem a = wellConditioned(n, numbers);
    ColumnVector known = randomVector(n, numbers);
    const ColumnVector b = product(a, known);
    for (unsigned int j = 0; j < n; ++j) {
        const double unit = std::ldexp(1.0, 100 - 25 * static_cast<int>(j));
        for (unsigned int i = 0; i < n; ++i) a.set(i, j, a.at(i, j) * unit);
        known.set(j, known.at(j) / unit);
    }
    for (const Way way : {Way::refined, Way::full}) {
        const auto x = solve(way, a, b);
        for (unsigned int j = 0; j < n; ++j) EXPECT_NEAR(x->at(j) / known.at(j), 1.0, 1e-12) << j;
    }
}

// The growth of partial pivoting, 2^(n-1), swallows all digits of the right-hand side; full
// pivoting has no growth here. The condition number is about n.
TEST(LinearSystem, AdmitsThatTheQuickMethodFailedAndTheRobustOneMendsIt)
{
    Numbers numbers(5);
    const unsigned int n = 150;
    const LinearSystem a = wilkinson(n);
    const ColumnVector known = randomVector(n, numbers);
    const ColumnVector b = product(a, known);
    const LinearSystem keptA(a);
    const ColumnVector keptB(b);

    KETRA_EXPECT_THROW_MESSAGE(solve(Way::refined, a, b), Exception, 4, "No convergence");
    EXPECT_TRUE(sameEntries(a, keptA));
    EXPECT_TRUE(sameEntries(b, keptB));
    EXPECT_LT(relativeError(*solve(Way::full, a, b), known), 1e-12);
}

} // namespace
