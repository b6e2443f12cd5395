#pragma once

#include <ketra/math/matrix/Matrix.h>

namespace math::matrix {

/// A row of numbers; accessors without any check.
class KETRA_API RowVector : public Matrix
{
public:
    /// A row of \p n zeros.
    explicit RowVector(unsigned int n) : Matrix(1, n) {}

    unsigned int size() const noexcept { return columnCount(); }
    using Matrix::at;
    using Matrix::set;
    double at(unsigned int i) const noexcept { return data[i]; }
    void set(unsigned int i, double v) noexcept { data[i] = v; }
};

} // namespace math::matrix
