#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation2D.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

using math::interpolation::Exception;
using math::interpolation::Interpolation2D;
using Axis = std::vector<double>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Interpolation2D table(const Axis& x, const Axis& y, const std::vector<double>& v)
{
    return Interpolation2D(static_cast<unsigned int>(x.size()), x.data(),
                           static_cast<unsigned int>(y.size()), y.data(), v.data());
}

/// v = 1 + 2 x + 3 y + 4 x y, which a bilinear table reproduces.
double surface(double x, double y) { return 1.0 + 2.0 * x + 3.0 * y + 4.0 * x * y; }

Interpolation2D surfaceTable(const Axis& x, const Axis& y)
{
    std::vector<double> v;
    for (const double xi : x)
        for (const double yj : y) v.push_back(surface(xi, yj));
    return table(x, y, v);
}

const Axis risingX{0, 1, 3, 7}, risingY{-2, 0, 5}, fallingX{7, 3, 1, 0}, fallingY{5, 0, -2};

TEST(Interpolation2D, CopiesItsArrays)
{
    Axis x{1, 2}, y{3, 4, 5};
    std::vector<double> v{1, 2, 3, 4, 5, 6};
    const Interpolation2D t = table(x, y, v);
    x.assign(2, 0.0);
    y.assign(3, 0.0);
    v.assign(6, 0.0);
    EXPECT_EQ(t.getX()->size(), 2u);
    EXPECT_EQ(t.getX()->at(1), 2.0);
    EXPECT_EQ(t.getY()->size(), 3u);
    EXPECT_EQ(t.getY()->at(2), 5.0);
    EXPECT_EQ(t.getValues()->rowCount(), 2u);
    EXPECT_EQ(t.getValues()->columnCount(), 3u);
    EXPECT_EQ(t.getValues()->at(1, 0), 4.0);
    EXPECT_EQ(t.bilinearInterpolation(2.0, 5.0), 6.0);
}

TEST(Interpolation2D, IsMadeByItsFactory)
{
    const Axis x{1, 2}, y{3};
    const std::vector<double> v{10, 20};
    const std::unique_ptr<Interpolation2D> t(
        Interpolation2D::createInterpolation2D(2, x.data(), 1, y.data(), v.data()));
    EXPECT_EQ(t->bilinearInterpolation(1.5, 3.0), 15.0);
}

TEST(Interpolation2D, InterpolatesInXAloneWithASingleColumn)
{
    const Interpolation2D t = table({298.15, 308.15}, {101325.0}, {1000.0, 990.0});
    EXPECT_DOUBLE_EQ(t.bilinearInterpolation(303.15, 101325.0), 995.0);
    EXPECT_EQ(t.bilinearInterpolation(298.15, 101325.0), 1000.0);
    EXPECT_EQ(t.bilinearInterpolation(308.15, 101325.0), 990.0);
    EXPECT_DOUBLE_EQ(t.bilinearInterpolation(303.15, 1e5), 995.0);
    EXPECT_EQ(t.getMinY(), 101325.0);
    EXPECT_EQ(t.getMaxY(), 101325.0);
    KETRA_EXPECT_THROW_CODE(t.bilinearInterpolation(303.15, nan), Exception, 0);
    KETRA_EXPECT_THROW_CODE(t.bilinearInterpolation(309.0, 101325.0), Exception, 0);
}

TEST(Interpolation2D, InterpolatesInYAloneWithASingleRow)
{
    const Interpolation2D t = table({300}, {1, 3}, {10, 30});
    EXPECT_EQ(t.bilinearInterpolation(300, 2), 20.0);
}

TEST(Interpolation2D, MayHaveASinglePoint)
{
    EXPECT_EQ(table({300}, {1e5}, {7}).bilinearInterpolation(300, 1e5), 7.0);
}

TEST(Interpolation2D, ReproducesABilinearSurfaceOnAxesThatRiseOrFall)
{
    for (const Axis& xs : {risingX, fallingX})
        for (const Axis& ys : {risingY, fallingY}) {
            SCOPED_TRACE(testing::Message() << xs[0] << " " << ys[0]);
            const Interpolation2D t = surfaceTable(xs, ys);
            EXPECT_EQ(t.getMinX(), 0.0);
            EXPECT_EQ(t.getMaxX(), 7.0);
            EXPECT_EQ(t.getMinY(), -2.0);
            EXPECT_EQ(t.getMaxY(), 5.0);
            for (double x = 0.0; x <= 7.0; x += 0.25)
                for (double y = -2.0; y <= 5.0; y += 0.25)
                    EXPECT_NEAR(t.bilinearInterpolation(x, y), surface(x, y), 1e-12);
            for (const double x : xs) // exact at the points
                for (const double y : ys) EXPECT_EQ(t.bilinearInterpolation(x, y), surface(x, y));
        }
}

TEST(Interpolation2D, FailsOutsideTheTable)
{
    const Interpolation2D t = surfaceTable(fallingX, risingY);
    for (const double x : {std::nextafter(0.0, -1.0), std::nextafter(7.0, 8.0), nan, infinity})
        KETRA_EXPECT_THROW_MESSAGE(t.bilinearInterpolation(x, 0), Exception, 0,
                                   "Invalid interval or argument");
    for (const double y : {std::nextafter(-2.0, -3.0), std::nextafter(5.0, 6.0), nan, -infinity})
        KETRA_EXPECT_THROW_CODE(t.bilinearInterpolation(1, y), Exception, 0);
}

TEST(Interpolation2D, DoesNotDivideByZeroWhereAnAxisRepeats)
{
    const Interpolation2D t = table({1, 2, 2, 3}, {0}, {0, 10, 20, 30});
    EXPECT_EQ(t.bilinearInterpolation(2, 0), 20.0);
    EXPECT_EQ(t.bilinearInterpolation(1.5, 0), 5.0);
    const Interpolation2D same = table({2, 2}, {0}, {10, 20});
    EXPECT_EQ(same.bilinearInterpolation(2, 0), 20.0);
}

TEST(Interpolation2D, RefusesBadArguments)
{
    const double one[] = {1.0};
    KETRA_EXPECT_THROW_CODE(Interpolation2D(0, one, 1, one, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation2D(1, one, 0, one, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation2D(1, nullptr, 1, one, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation2D(1, one, 1, nullptr, one), Exception, 0);
    KETRA_EXPECT_THROW_CODE(Interpolation2D(1, one, 1, one, nullptr), Exception, 0);
    KETRA_EXPECT_THROW_CODE(table({1, 3, 2}, {1}, {1, 2, 3}), Exception, 0);
    KETRA_EXPECT_THROW_CODE(table({1}, {1, 3, 2}, {1, 2, 3}), Exception, 0);
    for (const double bad : {nan, infinity, -infinity}) {
        KETRA_EXPECT_THROW_CODE(table({1, bad}, {1}, {1, 2}), Exception, 0);
        KETRA_EXPECT_THROW_CODE(table({1, 2}, {bad}, {1, 2}), Exception, 0);
        KETRA_EXPECT_THROW_CODE(table({1, 2}, {1}, {1, bad}), Exception, 0);
    }
}

TEST(Interpolation2D, FindsItsWayInALargeTable)
{
    Axis axis;
    for (int i = 0; i < 1000; ++i) axis.push_back(200.0 + 3.0 * i);
    const Interpolation2D t = surfaceTable(axis, axis);
    for (int i = 0; i < 1000; i += 37) {
        const double x = axis[static_cast<std::size_t>(i)] + (i < 999 ? 1.1 : 0.0);
        EXPECT_NEAR(t.bilinearInterpolation(x, 3197.0) / surface(x, 3197.0), 1.0, 1e-14);
    }
}

TEST(Interpolation2D, GivesTheSameValuesInACopy)
{
    const Interpolation2D source = surfaceTable(risingX, risingY);
    Interpolation2D copy(source);
    EXPECT_EQ(copy.bilinearInterpolation(2, 2), surface(2, 2));
    EXPECT_NE(copy.getValues(), source.getValues());
    copy = surfaceTable({0, 1}, {0, 1});
    EXPECT_EQ(copy.getMaxX(), 1.0);
    EXPECT_EQ(copy.bilinearInterpolation(1, 1), surface(1, 1));
}

} // namespace
