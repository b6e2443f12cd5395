#include "Systems.h"

#include <ketra/math/matrix/Exception.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocations{0};

} // namespace

// Counts the allocations of this program and of the library. Not inlined: the compiler would pair
// `new` with `free`.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size > 0 ? size : 1);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using namespace math_test;
using math::matrix::Exception;

TEST(SolveLU, CallsASingularSystemSingular)
{
    KETRA_EXPECT_THROW_MESSAGE(solve(Way::lu, systemOf(2, {1, 1, 1, 1}), vectorOf({1, 1})),
                               Exception, 3, "Singular");
}

// The second pivot is that of the row 1, 1 + d after the row 1, 1: d over the scale 1 + d.
TEST(SolveLU, TakesAPivotBelow1em9OfItsRowForZero)
{
    const auto solveWith = [](double d, double unit) {
        return solve(Way::lu, systemOf(2, {1, 1, unit, unit * (1 + d)}), vectorOf({1, unit}));
    };
    for (const double unit : {1e-200, 1.0, 1e200}) {
        SCOPED_TRACE(unit);
        EXPECT_NEAR(solveWith(2e-9, unit)->at(0), 1.0, 1e-6);
        KETRA_EXPECT_THROW_CODE(solveWith(0.5e-9, unit), Exception, 3);
        KETRA_EXPECT_THROW_CODE(solveWith(1e-14, unit), Exception, 3);
    }
}

TEST(SolveLU, SolvesHilbertMatricesUpToItsZeroPivot)
{
    Numbers numbers(23);
    for (const auto& [n, limit] : {std::pair{3u, 1e-13}, {5u, 1e-10}, {6u, 1e-8}}) {
        SCOPED_TRACE(n);
        const LinearSystem a = hilbert(n);
        const ColumnVector known = randomVector(n, numbers);
        EXPECT_LT(relativeError(*solve(Way::lu, a, product(a, known)), known), limit);
    }
    KETRA_EXPECT_THROW_CODE(solve(Way::lu, hilbert(12), ColumnVector(12)), Exception, 3);
}

TEST(SolveLU, TakesEitherFlag)
{
    const LinearSystem a = systemOf(2, {1, 2, 3, 4});
    const ColumnVector b = vectorOf({5, 11});
    const std::unique_ptr<ColumnVector> x(a.solveLU(&b, true));
    const std::unique_ptr<ColumnVector> y(a.solveLU(&b, false));
    EXPECT_TRUE(sameEntries(*x, *y));
}

TEST(SolveLU, GivesTheSameDigitsInAVectorOfTheCaller)
{
    Numbers numbers(29);
    for (const unsigned int n : {1u, 7u, 40u, 45u}) {
        SCOPED_TRACE(n);
        const LinearSystem a = wellConditioned(n, numbers);
        ColumnVector b = randomVector(n, numbers);
        const auto expected = solve(Way::lu, a, b);
        ColumnVector x(n);
        a.solveLU(b, x);
        EXPECT_TRUE(sameEntries(x, *expected));
        a.solveLU(b, b);
        EXPECT_TRUE(sameEntries(b, *expected));
    }
}

TEST(SolveLU, LeavesTheVectorOfTheCallerWhenItFails)
{
    ColumnVector x = vectorOf({8, 9});
    KETRA_EXPECT_THROW_CODE(systemOf(2, {1, 2, 2, 4}).solveLU(vectorOf({1, 2}), x), Exception, 3);
    KETRA_EXPECT_THROW_CODE(systemOf(2, {0, 0, 2, 4}).solveLU(vectorOf({1, 2}), x), Exception, 3);
    KETRA_EXPECT_THROW_CODE(systemOf(2, {1e-300, 0, 0, 1}).solveLU(vectorOf({1e300, 2}), x),
                            Exception, 3);
    EXPECT_EQ(x.at(0), 8.0);
    EXPECT_EQ(x.at(1), 9.0);
}

TEST(SolveLU, RefusesAVectorOfAnotherSize)
{
    const LinearSystem a = systemOf(2, {1, 0, 0, 1});
    ColumnVector small(1), right(2);
    KETRA_EXPECT_THROW_CODE(a.solveLU(right, small), Exception, 1);
    KETRA_EXPECT_THROW_CODE(a.solveLU(small, right), Exception, 1);
}

TEST(SolveLU, AllocatesNothingUpToOrder40)
{
    Numbers numbers(31);
    for (const unsigned int n : {3u, 15u, 30u, 40u}) {
        const LinearSystem a = wellConditioned(n, numbers);
        const ColumnVector b = randomVector(n, numbers);
        ColumnVector x(n);
        const long before = allocations;
        a.solveLU(b, x);
        EXPECT_EQ(allocations - before, 0) << n;
    }
    const LinearSystem a = wellConditioned(41, numbers);
    ColumnVector x(41);
    const long before = allocations;
    a.solveLU(ColumnVector(x), x);
    EXPECT_GT(allocations - before, 0);
}

} // namespace
