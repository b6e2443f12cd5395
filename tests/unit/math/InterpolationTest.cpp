#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

using math::interpolation::Exception;
using math::interpolation::Interpolation;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Interpolation table(const std::vector<double>& x, const std::vector<double>& y)
{
    return Interpolation(static_cast<unsigned int>(x.size()), x.data(), y.data());
}

TEST(Interpolation, CopiesItsArrays)
{
    std::vector<double> x{1, 2, 3}, y{10, 20, 40};
    const Interpolation t = table(x, y);
    x.assign(3, 0.0);
    y.assign(3, 0.0);
    EXPECT_EQ(t.getMinX(), 1.0);
    EXPECT_EQ(t.getMaxX(), 3.0);
    EXPECT_EQ(t.getValues()->size(), 3u);
    EXPECT_EQ(t.getValues()->at(2), 40.0);
    EXPECT_EQ(t.linearInterpolation(2.5), 30.0);
}

TEST(Interpolation, IsLinearBetweenThePointsAndExactAtThem)
{
    const std::vector<double> x{0.1, 0.3, 1.0, 7.0}, y{1e-3, 5.0, -2.0, 1e9};
    const Interpolation t = table(x, y);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_EQ(t.linearInterpolation(x[i]), y[i]);
    EXPECT_DOUBLE_EQ(t.linearInterpolation(0.2), 2.5005);
    EXPECT_DOUBLE_EQ(t.linearInterpolation(0.65), 1.5);
}

TEST(Interpolation, ReturnsAValueOfAPointThatRepeats)
{
    // Boiling temperatures that were cut at the end of a table: the last ones are equal.
    const Interpolation t = table({300, 400, 400, 400}, {2.0, 1.5, 1.2, 1.0});
    EXPECT_EQ(t.linearInterpolation(400.0), 1.0);
    EXPECT_DOUBLE_EQ(t.linearInterpolation(350.0), 1.75);
    const Interpolation middle = table({1, 2, 2, 3}, {0, 10, 20, 30});
    EXPECT_EQ(middle.linearInterpolation(2.0), 20.0);
    EXPECT_EQ(middle.linearInterpolation(1.5), 5.0);
    EXPECT_EQ(middle.linearInterpolation(2.5), 25.0);
}

TEST(Interpolation, ReturnsAValueWhereAllXAreTheSame)
{
    const Interpolation t = table({373, 373, 373, 373, 373}, {1, 2, 3, 4, 5});
    EXPECT_EQ(t.getMinX(), 373.0);
    EXPECT_EQ(t.getMaxX(), 373.0);
    EXPECT_EQ(t.linearInterpolation(373.0), 5.0);
    EXPECT_DOUBLE_EQ(t.polynomialInterpolation(373.0), 3.0);
}

TEST(Interpolation, MayHaveASinglePoint)
{
    const Interpolation t = table({5}, {7});
    EXPECT_EQ(t.linearInterpolation(5.0), 7.0);
    EXPECT_EQ(t.polynomialInterpolation(5.0), 7.0);
    KETRA_EXPECT_THROW_CODE(t.linearInterpolation(5.1), Exception, 0);
    KETRA_EXPECT_THROW_CODE(t.polynomialInterpolation(4.9), Exception, 0);
}

TEST(Interpolation, FailsOutsideTheTable)
{
    const Interpolation t = table({1, 2, 3, 4, 5}, {1, 2, 3, 4, 5});
    for (const double x :
         {std::nextafter(1.0, 0.0), std::nextafter(5.0, 6.0), -infinity, infinity, nan, 1e300}) {
        KETRA_EXPECT_THROW_MESSAGE(t.linearInterpolation(x), Exception, 0,
                                   "Invalid interval or argument");
        KETRA_EXPECT_THROW_MESSAGE(t.polynomialInterpolation(x), Exception, 0,
                                   "Invalid interval or argument");
    }
}

TEST(Interpolation, RefusesATableWithoutPointsOrWithNumbersThatAreNotFinite)
{
    const double one[] = {1.0};
    KETRA_EXPECT_THROW_CODE(Interpolation(0, one, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation(1, nullptr, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation(1, one, nullptr), Exception, 0);
    for (const double bad : {nan, infinity, -infinity}) {
        KETRA_EXPECT_THROW_CODE(table({1, bad, 3}, {1, 2, 3}), Exception, 0);
        KETRA_EXPECT_THROW_CODE(table({1, 2, 3}, {1, bad, 3}), Exception, 0);
    }
}

TEST(Interpolation, IsSmoothAndExactAtThePoints)
{
    std::vector<double> x, y;
    for (int i = 0; i <= 40; ++i) {
        x.push_back(1.0 + 0.1 * i);
        y.push_back(std::exp(-x.back()));
    }
    const Interpolation t = table(x, y);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_EQ(t.polynomialInterpolation(x[i]), y[i]);
    // The cubic is of third order here, the broken line of second: 1e-4 against 5e-4.
    for (double at = 1.25; at < 4.5; at += 0.0837)
        EXPECT_NEAR(t.polynomialInterpolation(at) / std::exp(-at), 1.0, 1e-4) << at;
}

TEST(Interpolation, ReproducesAStraightLine)
{
    const Interpolation t = table({0, 1, 4, 5, 9}, {1, 3, 9, 11, 19});
    for (double x = 0.0; x <= 9.0; x += 0.25)
        EXPECT_NEAR(t.polynomialInterpolation(x), 1.0 + 2.0 * x, 1e-13) << x;
}

TEST(Interpolation, NeverSwingsBetweenThePoints)
{
    // Plateaus, steps and a peak: a polynomial through these would swing far beyond.
    const std::vector<double> x{0, 1, 2, 3, 3.1, 4, 5, 6, 6.01, 9};
    const std::vector<double> y{0, 0, 0, 100, 100, 100, 50, 1e6, -3, -3};
    const Interpolation t = table(x, y);
    for (std::size_t i = 1; i < x.size(); ++i) {
        const auto [low, high] = std::minmax(y[i - 1], y[i]);
        double former = y[i - 1];
        for (int k = 1; k <= 100; ++k) {
            const double value =
                t.polynomialInterpolation(std::fmin(x[i], x[i - 1] + k * (x[i] - x[i - 1]) / 100));
            EXPECT_GE(value, low);
            EXPECT_LE(value, high);
            // Monotonic between two points, up to the rounding of the largest value.
            EXPECT_GE((value - former) * (y[i] < y[i - 1] ? -1.0 : 1.0), -1e-9);
            former = value;
        }
    }
}

TEST(Interpolation, TakesTheMeanOfPointsThatRepeatForTheSmoothCurve)
{
    const Interpolation t = table({1, 2, 2, 2, 3, 4, 5}, {1, 1, 2, 3, 3, 4, 5});
    EXPECT_DOUBLE_EQ(t.polynomialInterpolation(2.0), 2.0);
    EXPECT_DOUBLE_EQ(t.polynomialInterpolation(1.5), 1.5);
}

TEST(Interpolation, IsABrokenLineThroughFewPoints)
{
    const Interpolation three = table({1, 2, 3}, {1, 5, 2});
    EXPECT_DOUBLE_EQ(three.polynomialInterpolation(1.5), 3.0);
    EXPECT_DOUBLE_EQ(three.polynomialInterpolation(2.5), 3.5);
    const Interpolation two = table({1, 2, 1, 2, 1}, {1, 5, 1, 5, 1});
    EXPECT_DOUBLE_EQ(two.polynomialInterpolation(1.5), 3.0);
}

TEST(Interpolation, TakesPointsInAnyOrder)
{
    const std::vector<double> x{5, 4, 3, 2, 1}, y{25, 16, 9, 4, 1};
    const Interpolation falling = table(x, y);
    const Interpolation mixed = table({1, 3, 2, 5, 4}, {1, 9, 4, 25, 16});
    EXPECT_EQ(falling.getMinX(), 1.0);
    EXPECT_EQ(falling.getMaxX(), 5.0);
    EXPECT_EQ(falling.getValues()->at(0), 25.0); // as given
    for (double at = 1.0; at <= 5.0; at += 0.3) {
        EXPECT_EQ(falling.linearInterpolation(at), mixed.linearInterpolation(at));
        EXPECT_EQ(falling.polynomialInterpolation(at), mixed.polynomialInterpolation(at));
    }
    EXPECT_DOUBLE_EQ(mixed.linearInterpolation(2.5), 6.5);
}

TEST(Interpolation, TakesTheLargestAndSmallestNumbers)
{
    const Interpolation t = table({-1.5e308, -1e308, 1e308, 1.5e308}, {-1.5e308, 0, 0, 1.5e308});
    for (const double x : {-1.2e308, 0.0, 1.2e308}) {
        EXPECT_TRUE(std::isfinite(t.linearInterpolation(x)));
        EXPECT_TRUE(std::isfinite(t.polynomialInterpolation(x)));
    }
    const Interpolation tiny = table({0, 5e-324, 1e-323, 1}, {1, 2, 3, 4});
    EXPECT_EQ(tiny.linearInterpolation(5e-324), 2.0);
    EXPECT_EQ(tiny.polynomialInterpolation(5e-324), 2.0);
}

TEST(Interpolation, GivesTheSameValuesInACopy)
{
    const auto source = std::make_unique<Interpolation>(table({1, 2, 3, 4}, {1, 4, 9, 16}));
    Interpolation copy(*source);
    const double before = source->polynomialInterpolation(2.3);
    EXPECT_EQ(copy.polynomialInterpolation(2.3), before);
    EXPECT_NE(copy.getValues(), source->getValues());
    Interpolation assigned = table({0}, {0});
    assigned = copy;
    EXPECT_EQ(assigned.polynomialInterpolation(2.3), before);
    EXPECT_EQ(assigned.getValues()->size(), 4u);
}

} // namespace
