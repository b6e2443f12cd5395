#pragma once

#include <ketra/export.h>

#include <cstddef>
#include <memory>

namespace math::matrix {

/// A dense matrix of doubles, row-major.
///
/// The accessors stand in the inner loops of the equilibrium solver: they are plain accesses
/// without any check.
class KETRA_API Matrix
{
public:
    /// A matrix of zeros, \p m rows and \p n columns.
    Matrix(unsigned int m, unsigned int n);
    Matrix(const Matrix& other);
    Matrix(Matrix&& other) noexcept;
    Matrix& operator=(const Matrix& other);
    Matrix& operator=(Matrix&& other) noexcept;
    virtual ~Matrix();

    unsigned int rowCount() const noexcept { return rows; }
    unsigned int columnCount() const noexcept { return cols; }

    double at(unsigned int i, unsigned int j) const noexcept
    {
        return data[static_cast<std::size_t>(cols) * i + j];
    }
    void set(unsigned int i, unsigned int j, double v) noexcept
    {
        data[static_cast<std::size_t>(cols) * i + j] = v;
    }

    /// The entries, row after row; the matrix's own, for direct reading and writing.
    double* getData() noexcept { return data.get(); }
    const double* getData() const noexcept { return data.get(); }

    /// Makes all entries zero.
    void clear() noexcept;

private:
    std::size_t size() const noexcept { return static_cast<std::size_t>(rows) * cols; }

    unsigned int rows;
    unsigned int cols;

protected:
    std::unique_ptr<double[]> data; // rows * cols entries
};

} // namespace math::matrix
