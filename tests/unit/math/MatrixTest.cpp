#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/LinearSystem.h>
#include <ketra/math/matrix/Matrix.h>
#include <ketra/math/matrix/RowVector.h>

#include <gtest/gtest.h>

#include <utility>

namespace {

using namespace math::matrix;

/// Rows by columns, the entries being 10 i + j.
Matrix numbered(unsigned int rows, unsigned int cols)
{
    Matrix m(rows, cols);
    for (unsigned int i = 0; i < rows; ++i)
        for (unsigned int j = 0; j < cols; ++j) m.set(i, j, 10.0 * i + j);
    return m;
}

void expectNumbered(const Matrix& m, unsigned int rows, unsigned int cols)
{
    ASSERT_EQ(m.rowCount(), rows);
    ASSERT_EQ(m.columnCount(), cols);
    for (unsigned int i = 0; i < rows; ++i)
        for (unsigned int j = 0; j < cols; ++j) EXPECT_EQ(m.at(i, j), 10.0 * i + j);
}

TEST(Matrix, IsFilledWithZeros)
{
    const Matrix m(3, 4);
    for (unsigned int i = 0; i < 12; ++i) EXPECT_EQ(m.getData()[i], 0.0);
    EXPECT_EQ(m.rowCount(), 3u);
    EXPECT_EQ(m.columnCount(), 4u);
}

TEST(Matrix, LiesRowByRow)
{
    const Matrix m = numbered(2, 3);
    const double expected[] = {0, 1, 2, 10, 11, 12};
    for (unsigned int i = 0; i < 6; ++i) EXPECT_EQ(m.getData()[i], expected[i]);
}

TEST(Matrix, IsCopiedWithItsEntries)
{
    Matrix source = numbered(2, 3);
    const Matrix copy(source);
    source.set(0, 0, 99.0);
    expectNumbered(copy, 2, 3);
}

TEST(Matrix, IsAssignedWhateverItsFormer)
{
    const Matrix source = numbered(2, 3);
    for (const auto& [rows, cols] : {std::pair{2u, 3u}, {3u, 2u}, {5u, 5u}, {0u, 0u}}) {
        Matrix target(rows, cols);
        target = source;
        expectNumbered(target, 2, 3);
    }
    Matrix self = numbered(4, 2);
    const Matrix& same = self;
    self = same;
    expectNumbered(self, 4, 2);
}

TEST(Matrix, IsMovedWithItsEntries)
{
    Matrix source = numbered(2, 3);
    Matrix moved(std::move(source));
    expectNumbered(moved, 2, 3);
    EXPECT_EQ(source.rowCount(), 0u);
    Matrix target(1, 1);
    target = std::move(moved);
    expectNumbered(target, 2, 3);
}

TEST(Matrix, MayBeEmpty)
{
    const Matrix m(0, 5);
    const Matrix copy(m);
    EXPECT_EQ(copy.rowCount(), 0u);
    EXPECT_EQ(copy.columnCount(), 5u);
}

TEST(Matrix, IsClearedToZeros)
{
    Matrix m = numbered(2, 2);
    m.clear();
    for (unsigned int i = 0; i < 4; ++i) EXPECT_EQ(m.getData()[i], 0.0);
}

TEST(RowVector, HoldsARow)
{
    RowVector v(3);
    v.set(2, 5.0);
    EXPECT_EQ(v.size(), 3u);
    EXPECT_EQ(v.rowCount(), 1u);
    EXPECT_EQ(v.at(0), 0.0);
    EXPECT_EQ(v.at(2), 5.0);
    EXPECT_EQ(v.at(0, 2), 5.0);
}

TEST(ColumnVector, HoldsAColumnThatMayBeWrittenDirectly)
{
    ColumnVector v(3);
    v.getData()[1] = 7.0;
    v.set(2, 5.0);
    EXPECT_EQ(v.size(), 3u);
    EXPECT_EQ(v.columnCount(), 1u);
    EXPECT_EQ(v.at(1), 7.0);
    EXPECT_EQ(v.at(2, 0), 5.0);
    const ColumnVector copy(v);
    v.set(1, 0.0);
    EXPECT_EQ(copy.size(), 3u);
    EXPECT_EQ(copy.at(1), 7.0);
}

TEST(LinearSystem, IsResetToZeros)
{
    LinearSystem system(2);
    system.set(1, 0, 3.0);
    system.reset();
    for (unsigned int i = 0; i < 4; ++i) EXPECT_EQ(system.getData()[i], 0.0);
    EXPECT_EQ(system.rowCount(), 2u);
    EXPECT_EQ(system.columnCount(), 2u);
}

} // namespace
