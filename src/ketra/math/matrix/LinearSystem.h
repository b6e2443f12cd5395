#pragma once

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/Matrix.h>

namespace math::matrix {

/// The square matrix A of a system A x = b, of a few dozen rows at most.
///
/// Every solver works on a copy: the matrix and b are as before after each call, whether it
/// returned or threw, so that a failed solve can be repeated with another method. An entry that
/// is not finite, in A or in b, is a failure like a matrix that cannot be solved; x never holds a
/// number that is not finite. Failures are math::matrix::Exception.
class KETRA_API LinearSystem : public Matrix
{
public:
    /// A system of \p n unknowns, all coefficients zero.
    explicit LinearSystem(unsigned int n);
    ~LinearSystem() override;

    /// Makes all coefficients zero, to pose the next system of the same order.
    virtual void reset();

    /// Solves with pivoting on equilibrated rows and columns.
    ///
    /// \param b     right-hand side, the caller's
    /// \param first true: partial pivoting, one step of iterative refinement and a test of the
    ///              residual; false: full pivoting and the refinement, dearer and more robust
    /// \returns a new vector, the caller's
    /// \throws Exception 1 for a \p b of another size; 2 for a row of zeros; 3 for a singular
    ///         matrix; 4 from the first method if the residual is too large or a number is not
    ///         finite (3 from the second)
    ColumnVector* solve(const ColumnVector* b, bool first) const;

    /// Solves by LU decomposition with scaled partial pivoting, the quickest way.
    ///
    /// A pivot below 1e-9 of the largest coefficient of its row counts as zero.
    /// \param b right-hand side, the caller's
    /// \returns a new vector, the caller's
    /// \throws Exception 1 for a \p b of another size; 3 for a singular matrix, an empty row or a
    ///         number that is not finite
    ColumnVector* solveLU(const ColumnVector* b, bool flag) const;

    /// The same into \p x, which has the size of \p b and may be \p b itself; up to order 40
    /// without any allocation. \p x stays as it was if this throws.
    void solveLU(const ColumnVector& b, ColumnVector& x) const;

    /// Solves a system whose rows depend on each other: of all solutions the one nearest to
    /// \p present, so that what the system leaves open keeps its value. Measured on equilibrated
    /// rows and columns, by a complete orthogonal decomposition. \param first  the open directions
    /// have to lie within the unknowns from here on \param last   up to but excluding this one
    /// \throws Exception 1 for a vector of another size; 3 if rows contradict each other, if other
    ///         unknowns are left open too, or for a number that is not finite
    void solveNearest(const ColumnVector& b, const ColumnVector& present, unsigned int first,
                      unsigned int last, ColumnVector& x) const;
};

} // namespace math::matrix
