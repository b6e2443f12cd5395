#include <ketra/math/matrix/Matrix.h>

#include <algorithm>
#include <utility>

namespace math::matrix {

Matrix::Matrix(unsigned int m, unsigned int n)
    : rows(m), cols(n), data(std::make_unique<double[]>(size()))
{
}

Matrix::Matrix(const Matrix& other)
    : rows(other.rows), cols(other.cols), data(std::make_unique_for_overwrite<double[]>(size()))
{
    std::copy_n(other.data.get(), size(), data.get());
}

Matrix::Matrix(Matrix&& other) noexcept
    : rows(std::exchange(other.rows, 0)), cols(std::exchange(other.cols, 0)),
      data(std::move(other.data))
{
}

Matrix& Matrix::operator=(const Matrix& other)
{
    if (size() != other.size()) data = std::make_unique_for_overwrite<double[]>(other.size());
    rows = other.rows;
    cols = other.cols;
    if (this != &other) std::copy_n(other.data.get(), size(), data.get());
    return *this;
}

Matrix& Matrix::operator=(Matrix&& other) noexcept
{
    std::swap(rows, other.rows);
    std::swap(cols, other.cols);
    data.swap(other.data);
    return *this;
}

Matrix::~Matrix() = default;

void Matrix::clear() noexcept { std::fill_n(data.get(), size(), 0.0); }

} // namespace math::matrix
