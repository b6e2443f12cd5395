// The solution of a system whose rows depend on each other, nearest to a present vector.

#include <ketra/math/matrix/Exception.h>
#include <ketra/math/matrix/LinearSystem.h>

#include <Eigen/LU>
#include <Eigen/QR>

namespace math::matrix {

namespace {

using Square = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using Vector = Eigen::VectorXd;

constexpr double dependence = 1e-10;   // pivot of the equilibrated matrix that counts as zero
constexpr double contradiction = 1e-8; // residual that shows rows to contradict each other
constexpr double foreignShare = 1e-6;  // of a dependent direction outside the allowed unknowns
constexpr unsigned int singular = 3;   // code of math::matrix::Exception
constexpr unsigned int wrongDimensions = 1;

/// Scales rows, then columns, to a largest magnitude of 1; an empty one keeps its scale.
void equilibrate(Square& a, Vector& rhs, Vector& columns)
{
    for (Eigen::Index i = 0; i < a.rows(); ++i) {
        const double most = a.row(i).cwiseAbs().maxCoeff();
        if (most == 0.0) continue;
        a.row(i) /= most;
        rhs(i) /= most;
    }
    columns = a.cwiseAbs().colwise().maxCoeff().transpose();
    for (Eigen::Index j = 0; j < a.cols(); ++j) {
        if (columns(j) == 0.0) columns(j) = 1.0;
        a.col(j) /= columns(j);
    }
}

/// Whether the directions that the matrix leaves open lie within the unknowns [first, last).
bool openDirectionsWithin(const Square& a, Eigen::Index first, Eigen::Index last)
{
    Eigen::FullPivLU<Square> lu(a);
    lu.setThreshold(dependence);
    if (lu.dimensionOfKernel() == 0) return true;
    const Square kernel = lu.kernel();
    for (Eigen::Index k = 0; k < kernel.cols(); ++k) {
        const double most = kernel.col(k).cwiseAbs().maxCoeff();
        for (Eigen::Index i = 0; i < kernel.rows(); ++i)
            if ((i < first || i >= last) && std::abs(kernel(i, k)) > foreignShare * most)
                return false;
    }
    return true;
}

} // namespace

void LinearSystem::solveNearest(const ColumnVector& b, const ColumnVector& present,
                                unsigned int first, unsigned int last, ColumnVector& x) const
{
    const Eigen::Index n = rowCount();
    if (b.size() != rowCount() || present.size() != rowCount() || x.size() != rowCount())
        throw Exception(wrongDimensions);
    Square a = Eigen::Map<const Square>(getData(), n, n);
    const Vector start = Eigen::Map<const Vector>(present.getData(), n);
    Vector rhs = Eigen::Map<const Vector>(b.getData(), n) - a * start;
    if (!a.allFinite() || !rhs.allFinite()) throw Exception(singular);

    Vector columns;
    equilibrate(a, rhs, columns);
    if (!openDirectionsWithin(a, first, last)) throw Exception(singular);
    Eigen::CompleteOrthogonalDecomposition<Square> orthogonal;
    orthogonal.setThreshold(dependence);
    orthogonal.compute(a);
    const Vector step = orthogonal.solve(rhs);
    const double left = (a * step - rhs).cwiseAbs().maxCoeff();
    if (!(left <= contradiction * (1.0 + rhs.cwiseAbs().maxCoeff()))) throw Exception(singular);
    const Vector result = start + step.cwiseQuotient(columns);
    if (!result.allFinite()) throw Exception(singular);
    Eigen::Map<Vector>(x.getData(), n) = result;
}

} // namespace math::matrix
