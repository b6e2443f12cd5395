#include <ketra/performance/detail/BracketedRoot.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// The search for a root between two positions of different sign.

namespace {

using performance::detail::BracketedRoot;

struct Counted {
    double (*function)(double);
    int evaluations = 0;
    double last = 0.0;

    double operator()(double x)
    {
        ++evaluations;
        last = x;
        return function(x);
    }
};

BracketedRoot rootOf(Counted& counted, double a, double b)
{
    return BracketedRoot([&](double x) { return counted(x); }, {a, counted.function(a)},
                         {b, counted.function(b)});
}

TEST(BracketedRoot, EndsAtThePositionOfItsLastEvaluation)
{
    for (const auto& [a, b] : {std::pair(0.0, 2.0), std::pair(2.0, 0.0)}) {
        SCOPED_TRACE(a);
        Counted cubic{[](double x) { return x * x * x - 2.0; }};
        EXPECT_TRUE(rootOf(cubic, a, b).close(1e-12, 1e-15));
        EXPECT_NEAR(cubic.last, std::cbrt(2.0), 1e-12);
        EXPECT_LE(cubic.evaluations, 12);
    }
}

TEST(BracketedRoot, NeedsFarFewerEvaluationsThanBisection)
{
    Counted steep{[](double x) { return std::exp(x) - 1e-3; }};
    EXPECT_TRUE(rootOf(steep, -30.0, 10.0).close(1e-12, 1e-15));
    EXPECT_NEAR(steep.last, std::log(1e-3), 1e-8);
    EXPECT_LE(steep.evaluations, 30);
}

TEST(BracketedRoot, BisectsFromAnInfiniteEnd)
{
    Counted pole{[](double x) { return 1.0 / (1.0 - x) - 3.0; }};
    BracketedRoot root([&](double x) { return pole(x); }, {0.0, -2.0},
                       {1.0, std::numeric_limits<double>::infinity()});
    EXPECT_TRUE(root.close(1e-12, 1e-15));
    EXPECT_NEAR(pole.last, 2.0 / 3.0, 1e-12);
}

TEST(BracketedRoot, ClosesAroundAJump)
{
    constexpr double width = 1e-9;
    Counted jump{[](double x) { return x < 0.7 ? x - 2.0 : x + 3.0; }};
    BracketedRoot root = rootOf(jump, 0.0, 1.0);
    EXPECT_FALSE(root.close(1e-6, width));
    EXPECT_LE(jump.evaluations, 60);
    EXPECT_NEAR(root.best().x, 0.7, width);
    EXPECT_NEAR(root.other().x, 0.7, width);
    EXPECT_LT(root.best().x, root.other().x);
    EXPECT_NEAR(root.best().value, -1.3, 1e-8); // the nearer side
    EXPECT_NEAR(root.other().value, 3.7, 1e-8);
}

} // namespace
