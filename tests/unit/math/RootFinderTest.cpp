#include <ketra/math/equation/Exception.h>
#include <ketra/math/equation/Function.h>
#include <ketra/math/equation/NewtonsRootFinder.h>
#include <ketra/math/equation/SecantRootFinder.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <utility>

namespace {

using namespace math::equation;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// A function given as a lambda, that counts its evaluations and shows its derivatives.
class Formula : public Function
{
public:
    explicit Formula(std::function<double(double)> formula) : f(std::move(formula)) {}
    double at(double x) override
    {
        ++evaluations;
        return f(x);
    }
    using Function::at1;
    using Function::at2;
    using Function::setSteps;

    int evaluations = 0;

private:
    std::function<double(double)> f;
};

/// A function that gives its derivative itself.
class WithDerivative : public Formula
{
public:
    WithDerivative(std::function<double(double)> formula, std::function<double(double)> slope)
        : Formula(std::move(formula)), derivative(std::move(slope))
    {
    }
    double at1(double x) override { return derivative(x); }

private:
    std::function<double(double)> derivative;
};

/// Steps until the finder says it has converged. \returns the number of steps
template <class Finder> int run(Finder& finder, double x0)
{
    finder.reset(x0);
    int steps = 1;
    while (!finder.step()) ++steps;
    return steps;
}

TEST(Function, DifferentiatesNumerically)
{
    Formula sine([](double x) { return std::sin(x); });
    for (const double x : {-2.0, -0.3, 0.0, 0.01, 1.0, 3.0}) {
        // The error of the central difference is h^2 / 6 of the third derivative, h = 1e-3 |x|.
        EXPECT_NEAR(sine.at1(x), std::cos(x), 2e-6) << x;
        EXPECT_NEAR(sine.at2(x), -std::sin(x), 1e-4) << x;
    }
}

// As an equilibrium calculation converged to 1e-7: a saw of that height on a smooth function.
TEST(Function, DifferentiatesThroughTheNoiseOfAnIteratedFunction)
{
    Formula enthalpy([](double T) {
        const double smooth = 2500.0 * T + 0.3 * T * T;
        return smooth * (1.0 + 1e-7 * std::sin(1e9 * T));
    });
    for (const double T : {300.0, 1000.0, 3500.0})
        EXPECT_NEAR(enthalpy.at1(T) / (2500.0 + 0.6 * T), 1.0, 2e-4) << T;
}

TEST(Function, TakesTheDifferenceOnTheSideWhereItIsFinite)
{
    Formula root([](double x) { return std::sqrt(4.0 - x); });
    const double h = 3.999e-3;
    EXPECT_NEAR(root.at1(3.999), (std::sqrt(0.001) - std::sqrt(0.001 + h)) / h, 1e-9);
    Formula logarithm([](double x) { return std::log(x); });
    EXPECT_NEAR(logarithm.at1(1e-6), std::log(11.0) / 1e-5, 1e-3); // the least step, 1e-5
}

TEST(Function, TakesOtherSteps)
{
    Formula cube([](double x) { return x * x * x; });
    cube.setSteps(1e-2, 1e-5);
    // Central difference of x^3 at 1: 3 + h^2.
    EXPECT_NEAR(cube.at1(1.0), 3.0 + 1e-4, 1e-10);
}

template <class Finder> class AnyFinder : public testing::Test
{
};

using Finders = testing::Types<NewtonsRootFinder, SecantRootFinder>;
TYPED_TEST_SUITE(AnyFinder, Finders);

TYPED_TEST(AnyFinder, FindsRoots)
{
    struct Case {
        std::function<double(double)> f;
        double guess;
        double root;
    };
    const Case cases[] = {
        {[](double x) { return x * x - 2.0; }, 1.0, std::sqrt(2.0)},
        {[](double x) { return x * x - 2.0; }, -3.0, -std::sqrt(2.0)},
        {[](double x) { return std::exp(x) - 1.0; }, 1.0, 0.0},
        {[](double x) { return std::cos(x) - x; }, 0.5, 0.73908513321516064166},
        {[](double x) { return 5.0 - 2.0 * x; }, 100.0, 2.5},
        {[](double T) { return 1.2e7 - 2500.0 * T - 0.3 * T * T; }, 300.0,
         (std::sqrt(2500.0 * 2500.0 + 1.2 * 1.2e7) - 2500.0) / 0.6},
        {[](double x) { return 1e-200 * (x - 3.0); }, 1.0, 3.0},
        {[](double x) { return 1e200 * (x - 3.0); }, 1.0, 3.0},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(example.root);
        Formula f(example.f);
        TypeParam finder(&f, 1e-10);
        EXPECT_LT(run(finder, example.guess), 20);
        EXPECT_NEAR(finder.getXnp1(), example.root, 1e-9 * std::fmax(1.0, example.root));
    }
}

TYPED_TEST(AnyFinder, ComparesTheLastMoveWithTheTolerance)
{
    Formula f([](double x) { return std::exp(x) - 5.0; });
    for (const double tolerance : {1e-2, 1e-4, 1e-8}) {
        TypeParam finder(&f, tolerance);
        run(finder, 1.0);
        EXPECT_LE(std::fabs(finder.getXnp1() - finder.getXn()),
                  tolerance * std::fmax(1.0, finder.getXnp1()));
    }
    // Relative for large positions: a move of 1e-3 at 3000 is less than 1e-6 of it.
    Formula far([](double T) { return std::log(T / 3000.0); });
    TypeParam finder(&far, 1e-6);
    run(finder, 2500.0);
    EXPECT_NEAR(finder.getXnp1(), 3000.0, 0.01);
}

TYPED_TEST(AnyFinder, ConvergesAtOnceOnTheRoot)
{
    for (const double tolerance : {1e-8, 0.0, -1.0}) {
        Formula f([](double x) { return x * x; });
        TypeParam finder(&f, tolerance);
        EXPECT_EQ(run(finder, 0.0), 1);
        EXPECT_EQ(finder.getXn(), 0.0);
        EXPECT_EQ(finder.getXnp1(), 0.0);
    }
}

TYPED_TEST(AnyFinder, MayStepOnAfterItHasConverged)
{
    Formula f([](double x) { return x * x - 2.0; });
    TypeParam finder(&f, 1e-12);
    run(finder, 1.0);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(finder.step());
    EXPECT_NEAR(finder.getXnp1(), std::sqrt(2.0), 1e-12);
}

TYPED_TEST(AnyFinder, PassesAnExceptionOfTheFunctionOn)
{
    Formula f([](double) -> double { throw std::logic_error("equilibrium"); });
    TypeParam finder(&f, 1e-8);
    finder.reset(1.0);
    try {
        finder.step();
        FAIL() << "no exception";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "equilibrium");
    }
}

TYPED_TEST(AnyFinder, GoesOnAfterAnExceptionOfTheFunction)
{
    bool broken = false;
    Formula f([&broken](double x) {
        if (broken) throw std::runtime_error("once");
        return x - 3.0;
    });
    TypeParam finder(&f, 1e-8);
    finder.reset(1.0);
    finder.step();
    broken = true;
    EXPECT_THROW(finder.step(), std::runtime_error);
    broken = false;
    while (!finder.step()) {
    }
    EXPECT_NEAR(finder.getXnp1(), 3.0, 1e-8);
}

TYPED_TEST(AnyFinder, EndsAfterAHundredSteps)
{
    // The derivative has the wrong sign: it runs away for ever.
    WithDerivative f([](double x) { return std::fabs(x) + 1.0; }, [](double) { return -1.0; });
    Formula wave([](double x) { return 2.0 + std::sin(37.0 * x); });
    Function* const function =
        std::is_same_v<TypeParam, NewtonsRootFinder> ? static_cast<Function*>(&f) : &wave;
    TypeParam finder(function, 0.0);
    finder.reset(0.0);
    int steps = 0;
    try {
        for (; steps < 1000; ++steps) EXPECT_FALSE(finder.step());
        FAIL() << "no limit";
    } catch (const Exception& e) {
        EXPECT_EQ(e.getType(), 1u);
        EXPECT_STREQ(e.getMessage(), "Iteration count exceeded");
    }
    EXPECT_EQ(steps, 100);
    finder.reset(0.0);
    EXPECT_FALSE(finder.step()); // a reset gives another hundred
}

TYPED_TEST(AnyFinder, CannotMoveOnAConstant)
{
    Formula f([](double) { return 1.0; });
    TypeParam finder(&f, 1e-8);
    finder.reset(1.0);
    KETRA_EXPECT_THROW_MESSAGE(finder.step(), Exception, 2, "Position unchanged");
}

TYPED_TEST(AnyFinder, RefusesPositionsAndValuesThatAreNotFinite)
{
    Formula line([](double x) { return x; });
    for (const double bad : {nan, infinity, -infinity}) {
        TypeParam finder(&line, 1e-8);
        finder.reset(bad);
        KETRA_EXPECT_THROW_MESSAGE(finder.step(), Exception, 0, "Invalid interval");
        Formula f([bad](double) { return bad; });
        TypeParam other(&f, 1e-8);
        other.reset(1.0);
        KETRA_EXPECT_THROW_CODE(other.step(), Exception, 0);
    }
    // A slope so small that the next position overflows.
    WithDerivative huge([](double) { return 1e300; }, [](double) { return 1e-300; });
    NewtonsRootFinder finder(&huge, 1e-8);
    finder.reset(1.0);
    KETRA_EXPECT_THROW_CODE(finder.step(), Exception, 0);
}

TYPED_TEST(AnyFinder, HasToBeResetFirst)
{
    Formula f([](double x) { return x; });
    TypeParam finder(&f, 1e-8);
    KETRA_EXPECT_THROW_CODE(finder.step(), Exception, 0);
    EXPECT_EQ(f.evaluations, 0);
}

TYPED_TEST(AnyFinder, NeedsAFunction)
{
    KETRA_EXPECT_THROW_CODE(TypeParam(nullptr, 1e-8), Exception, 0);
}

TEST(NewtonsRootFinder, StepsByValueAndDerivative)
{
    WithDerivative f([](double x) { return x * x - 2.0; }, [](double x) { return 2.0 * x; });
    NewtonsRootFinder finder(&f, 1e-12);
    finder.reset(2.0);
    EXPECT_FALSE(finder.step());
    EXPECT_EQ(finder.getXn(), 2.0);
    EXPECT_EQ(finder.getXnp1(), 1.5); // 2 - 2 / 4
    EXPECT_FALSE(finder.step());
    EXPECT_EQ(finder.getXn(), 1.5);
    EXPECT_DOUBLE_EQ(finder.getXnp1(), 17.0 / 12.0);
}

TEST(NewtonsRootFinder, SpendsThreeEvaluationsAStepAndOneOnTheRoot)
{
    Formula f([](double x) { return x * x - 2.0; });
    NewtonsRootFinder finder(&f, 1e-8);
    finder.reset(1.0);
    finder.step();
    EXPECT_EQ(f.evaluations, 3);
    Formula zero([](double) { return 0.0; });
    NewtonsRootFinder there(&zero, 1e-8);
    there.reset(1.0);
    EXPECT_TRUE(there.step());
    EXPECT_EQ(zero.evaluations, 1);
}

TEST(NewtonsRootFinder, CannotMoveBesideAnInfiniteSlope)
{
    WithDerivative f([](double) { return 1.0; }, [](double) { return infinity; });
    NewtonsRootFinder finder(&f, 1e-8);
    finder.reset(1.0);
    KETRA_EXPECT_THROW_CODE(finder.step(), Exception, 2);
}

// No move is small enough for a tolerance below 0: when the position stands still there is nothing
// left to do.
TEST(NewtonsRootFinder, SaysThatThePositionIsUnchangedWhenItHasNotConverged)
{
    WithDerivative f([](double x) { return 1e-30 + 0.0 * x; }, [](double) { return 1.0; });
    for (const double tolerance : {-1.0, nan}) {
        NewtonsRootFinder finder(&f, tolerance);
        finder.reset(1.0);
        KETRA_EXPECT_THROW_MESSAGE(finder.step(), Exception, 2, "Position unchanged");
    }
    NewtonsRootFinder finder(&f, 0.0);
    finder.reset(1.0);
    EXPECT_TRUE(finder.step());
}

TEST(NewtonsRootFinder, ComesBackFromOutsideTheRegionOfTheFunction)
{
    // From 5 the first step of log(x) goes to -3.
    Formula f([](double x) { return std::log(x); });
    NewtonsRootFinder finder(&f, 1e-10);
    run(finder, 5.0);
    EXPECT_NEAR(finder.getXnp1(), 1.0, 1e-9);
}

TEST(NewtonsRootFinder, GivesUpWhenAlmostNothingOfItsMoveIsUsable)
{
    Formula f([](double x) { return x >= 1.0 && x < 1.0 + 1e-5 ? -1.0 + 1e-3 * x : nan; });
    NewtonsRootFinder finder(&f, 1e-10);
    finder.reset(1.000001);
    KETRA_EXPECT_THROW_CODE(
        {
            while (!finder.step()) {
            }
        },
        Exception, 0);
}

TEST(NewtonsRootFinder, HalvesAMoveAtABound)
{
    // From 3 the step of x^2 - 2 goes to 11/6, below the bound; half the way is inside.
    WithDerivative f([](double x) { return x * x - 2.0; }, [](double x) { return 2.0 * x; });
    NewtonsRootFinder finder(&f, 1e-12);
    finder.setBounds(2.0, 10.0);
    finder.reset(3.0);
    EXPECT_FALSE(finder.step());
    EXPECT_DOUBLE_EQ(finder.getXnp1(), 3.0 - 7.0 / 12.0);
    // A reset keeps the bounds, and takes a start on one of them.
    finder.reset(10.0);
    finder.step();
    EXPECT_EQ(finder.getXnp1(), 10.0 - 98.0 / 20.0);
}

TEST(NewtonsRootFinder, StaysOnTheBranchOfItsBounds)
{
    // Both roots of x exp(1 - x) = 0.1; unbounded, the search from 1.05 leaves for the other one.
    const auto flux = [](double x) { return x * std::exp(1.0 - x) - 0.1; };
    Formula f(flux);
    for (const double start : {1.05, 1.5, 4.0, 8.0}) {
        SCOPED_TRACE(start);
        NewtonsRootFinder finder(&f, 1e-10);
        finder.setBounds(1.0, 8.0);
        run(finder, start);
        EXPECT_GT(finder.getXnp1(), 1.0);
        EXPECT_NEAR(flux(finder.getXnp1()), 0.0, 1e-11);
    }
    for (const double start : {0.0, 0.5, 0.95}) {
        SCOPED_TRACE(start);
        NewtonsRootFinder finder(&f, 1e-10);
        finder.setBounds(-1.0, 1.0);
        run(finder, start);
        EXPECT_LT(finder.getXnp1(), 1.0);
        EXPECT_NEAR(flux(finder.getXnp1()), 0.0, 1e-11);
    }
}

TEST(NewtonsRootFinder, DoesNotTakeABoundForARoot)
{
    Formula f([](double x) { return x + 1.0; }); // the root is at -1
    NewtonsRootFinder finder(&f, 1e-8);
    finder.setBounds(0.0, 5.0);
    EXPECT_THROW(run(finder, 3.0), Exception);
    EXPECT_THROW(run(finder, 0.0), Exception);
    KETRA_EXPECT_THROW_CODE(run(finder, -3.0), Exception, 0); // it starts outside
}

TEST(NewtonsRootFinder, IsCopiedWithItsState)
{
    Formula f([](double x) { return x * x - 2.0; });
    NewtonsRootFinder finder(&f, 1e-12);
    finder.reset(2.0);
    finder.step();
    NewtonsRootFinder copy(finder);
    copy.step();
    finder.step();
    EXPECT_EQ(copy.getXnp1(), finder.getXnp1());
}

TEST(SecantRootFinder, SpendsOneEvaluationAStepAfterTheFirst)
{
    Formula f([](double x) { return x * x - 2.0; });
    SecantRootFinder finder(&f, 1e-10);
    finder.reset(1.0);
    finder.step();
    EXPECT_EQ(f.evaluations, 2);
    finder.step();
    EXPECT_EQ(f.evaluations, 3);
}

} // namespace
