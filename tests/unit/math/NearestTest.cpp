// The nearest solution of a system whose rows depend on each other.

#include <ketra/math/matrix/Exception.h>
#include <ketra/math/matrix/LinearSystem.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace {

using math::matrix::ColumnVector;
using math::matrix::Exception;
using math::matrix::LinearSystem;

LinearSystem systemOf(std::initializer_list<std::initializer_list<double>> rows)
{
    LinearSystem system(static_cast<unsigned>(rows.size()));
    unsigned i = 0;
    for (const auto& row : rows) {
        unsigned j = 0;
        for (const double value : row) system.set(i, j++, value);
        ++i;
    }
    return system;
}

ColumnVector columnOf(std::initializer_list<double> values)
{
    ColumnVector column(static_cast<unsigned>(values.size()));
    unsigned i = 0;
    for (const double value : values) column.set(i++, value);
    return column;
}

// x + 2 y = 5 twice over, and z = 3: the line of solutions through (5, 0) and (1, 2).
class Dependent : public ::testing::Test
{
protected:
    const LinearSystem system = systemOf({{1, 2, 0}, {2, 4, 0}, {0, 0, 1}});
    const ColumnVector b = columnOf({5, 10, 3});
    ColumnVector x = columnOf({-1, -1, -1});
};

TEST_F(Dependent, APresentSolutionStaysAsItIs)
{
    system.solveNearest(b, columnOf({1, 2, 3}), 0, 2, x);
    EXPECT_NEAR(x.at(0), 1, 1e-14);
    EXPECT_NEAR(x.at(1), 2, 1e-14);
    EXPECT_NEAR(x.at(2), 3, 1e-14);
}

TEST_F(Dependent, TheOpenDirectionKeepsItsPart)
{
    // Columns are scaled to their largest entries, 1/2 and 1 after the rows: in u = x/2 and y the
    // line is 2 u + 2 y = 5 and the open direction (1, -1). From the origin the nearest point is
    // u = y = 5/4.
    system.solveNearest(b, columnOf({0, 0, 0}), 0, 2, x);
    EXPECT_NEAR(x.at(0), 2.5, 1e-14);
    EXPECT_NEAR(x.at(1), 1.25, 1e-14);
    EXPECT_NEAR(x.at(2), 3, 1e-14);
}

TEST_F(Dependent, MatrixAndRightHandSideStayAsTheyWere)
{
    system.solveNearest(b, columnOf({0, 0, 0}), 0, 2, x);
    EXPECT_EQ(system.at(1, 1), 4);
    EXPECT_EQ(b.at(1), 10);
}

TEST_F(Dependent, ContradictingRowsAreSingular)
{
    KETRA_EXPECT_THROW_CODE(system.solveNearest(columnOf({5, 11, 3}), columnOf({1, 2, 3}), 0, 2, x),
                            Exception, 3);
    EXPECT_EQ(x.at(0), -1); // as it was
}

TEST_F(Dependent, AnotherOpenUnknownIsSingular)
{
    KETRA_EXPECT_THROW_CODE(system.solveNearest(b, columnOf({1, 2, 3}), 1, 3, x), Exception, 3);
}

TEST_F(Dependent, AVectorOfAnotherSizeIsRefused)
{
    KETRA_EXPECT_THROW_CODE(system.solveNearest(columnOf({5, 10}), columnOf({1, 2, 3}), 0, 2, x),
                            Exception, 1);
    KETRA_EXPECT_THROW_CODE(system.solveNearest(b, columnOf({1, 2}), 0, 2, x), Exception, 1);
    ColumnVector small(2);
    KETRA_EXPECT_THROW_CODE(system.solveNearest(b, columnOf({1, 2, 3}), 0, 2, small), Exception, 1);
}

TEST_F(Dependent, ANumberThatIsNotFiniteIsSingular)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    KETRA_EXPECT_THROW_CODE(
        system.solveNearest(columnOf({5, nan, 3}), columnOf({1, 2, 3}), 0, 2, x), Exception, 3);
    const LinearSystem broken = systemOf({{1, nan, 0}, {2, 4, 0}, {0, 0, 1}});
    KETRA_EXPECT_THROW_CODE(broken.solveNearest(b, columnOf({1, 2, 3}), 0, 2, x), Exception, 3);
}

TEST(Nearest, ARegularSystemIsSolvedWhateverIsPresent)
{
    const LinearSystem system = systemOf({{2, 1}, {1, 3}});
    ColumnVector x(2);
    system.solveNearest(columnOf({5, 10}), columnOf({-40, 7}), 0, 0, x);
    EXPECT_NEAR(x.at(0), 1, 1e-13);
    EXPECT_NEAR(x.at(1), 3, 1e-13);
}

} // namespace
