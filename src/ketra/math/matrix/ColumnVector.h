#pragma once

#include <ketra/math/matrix/Matrix.h>

namespace math::matrix {

/// A column of numbers; accessors without any check.
class KETRA_API ColumnVector : public Matrix
{
public:
    /// A column of \p n zeros.
    explicit ColumnVector(unsigned int n) : Matrix(n, 1) {}

    unsigned int size() const noexcept { return rowCount(); }
    using Matrix::at;
    using Matrix::set;
    double at(unsigned int i) const noexcept { return data[i]; }
    void set(unsigned int i, double v) noexcept { data[i] = v; }
};

} // namespace math::matrix
