#include <ketra/math/matrix/LinearSystem.h>

#include <ketra/math/matrix/Exception.h>

#include <Eigen/LU>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace math::matrix {

namespace {

constexpr unsigned int stackOrder = 40; // systems up to this order need no memory from the heap
constexpr double zeroPivot = 1e-9;      // of the largest coefficient of its row, see solveLU
constexpr double extreme = 1e100;       // magnitude above which solveLU scales a row
constexpr double residualLimit = 1e-10; // of the sum of the magnitudes in a row; 1e-16 is usual

// Codes of math::matrix::Exception.
constexpr unsigned int invalidDimensions = 1;
constexpr unsigned int zeroRow = 2;
constexpr unsigned int singular = 3;
constexpr unsigned int noConvergence = 4;

/// Largest magnitude of \p n numbers; NaN if one of them is not finite.
double largest(const double* values, unsigned int n)
{
    double most = 0.0;
    double check = 0.0; // 0 times each number: NaN as soon as one is not finite
    for (unsigned int i = 0; i < n; ++i) {
        const double magnitude = std::fabs(values[i]);
        most = magnitude > most ? magnitude : most;
        check += values[i] * 0.0;
    }
    return most + check;
}

/// Storage of one elimination, without initial values: the rows of (A | b) and what belongs to a
/// row. On the stack up to stackOrder, above it on the heap.
class Work
{
public:
    explicit Work(unsigned int n)
    {
        if (n <= stackOrder) return;
        moreNumbers = std::make_unique_for_overwrite<double[]>(std::size_t{n} * (n + 2));
        moreRows.resize(n);
        rows = moreRows.data();
        scales = moreNumbers.get();
        entries = scales + n;
    }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

private:
    double fewNumbers[stackOrder * (stackOrder + 2)];
    double* fewRows[stackOrder];
    std::unique_ptr<double[]> moreNumbers;
    std::vector<double*> moreRows;

public:
    double** rows = fewRows;                   // rows in the order of elimination
    double* scales = fewNumbers;               // 1 / largest coefficient of each row
    double* entries = fewNumbers + stackOrder; // (A | b), n + 1 columns
};

/// The power of two that brings \p magnitude into 1 to 2: scaling by it costs no digit.
double powerFor(double magnitude) { return std::ldexp(1.0, -std::ilogb(magnitude)); }

/// Copies (A | b) and finds the scale of each row; a row without a normal number is empty. A row
/// of extreme magnitude is brought to 1, so that the quotient of two rows cannot overflow.
void load(Work& work, const double* a, const double* b, unsigned int n)
{
    for (unsigned int i = 0; i < n; ++i) {
        double* const row = work.entries + std::size_t{i} * (n + 1);
        std::copy_n(a + std::size_t{i} * n, n, row);
        row[n] = b[i];
        double scale = largest(row, n);
        if (!(scale >= DBL_MIN)) throw Exception(singular);
        if (scale > extreme || scale < 1.0 / extreme) {
            const double power = powerFor(scale);
            for (unsigned int j = 0; j <= n; ++j) row[j] *= power;
            scale *= power;
        }
        work.scales[i] = 1.0 / scale;
        work.rows[i] = row;
    }
}

/// Brings the row with the largest scaled coefficient of column \p k to place \p k.
void pivot(Work& work, unsigned int k, unsigned int n)
{
    unsigned int chosen = k;
    double best = 0.0;
    for (unsigned int i = k; i < n; ++i) {
        const double candidate = std::fabs(work.rows[i][k]) * work.scales[i];
        if (candidate > best) {
            best = candidate;
            chosen = i;
        }
    }
    if (!(best >= zeroPivot)) throw Exception(singular);
    std::swap(work.rows[k], work.rows[chosen]);
    std::swap(work.scales[k], work.scales[chosen]);
}

/// row -= factor * upper.
void subtract(double* __restrict__ row, const double* __restrict__ upper, double factor,
              std::size_t n)
{
    for (std::size_t j = 0; j < n; ++j) row[j] -= factor * upper[j];
}

/// Subtracts the pivot row \p k from the rows below, right-hand side included.
void eliminate(Work& work, unsigned int k, unsigned int n)
{
    const double* const upper = work.rows[k];
    for (unsigned int i = k + 1; i < n; ++i) {
        double* const row = work.rows[i];
        if (row[k] == 0.0) continue; // many coefficients are exact zeros
        subtract(row + k + 1, upper + k + 1, row[k] / upper[k], n - k);
    }
}

/// Back substitution, column by column; the result stands in \p x. \returns whether it is finite.
bool substitute(const Work& work, double* x, unsigned int n)
{
    for (unsigned int i = 0; i < n; ++i) x[i] = work.rows[i][n];
    for (unsigned int k = n; k-- > 0;) {
        x[k] /= work.rows[k][k];
        for (unsigned int i = 0; i < k; ++i) x[i] -= work.rows[i][k] * x[k];
    }
    return std::isfinite(largest(x, n));
}

template <int order>
using Square = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor, order, order>;
template <int order>
using Column = Eigen::Matrix<double, Eigen::Dynamic, 1, Eigen::ColMajor, order, 1>;

/// The system R A C y = R b, x = C y, with rows and columns brought to magnitude 1, so that a small
/// pivot means dependence and not a choice of units.
template <int order> class Equilibrated
{
public:
    /// \param unusable the code for numbers that are not finite
    Equilibrated(const double* coefficients, const double* rhs, unsigned int n,
                 unsigned int unusable)
        : a(Eigen::Map<const Square<order>>(coefficients, n, n)),
          b(Eigen::Map<const Column<order>>(rhs, n)), columns(n)
    {
        if (!std::isfinite(largest(coefficients, n * n)) || !std::isfinite(largest(rhs, n)))
            throw Exception(unusable);
        for (unsigned int i = 0; i < n; ++i) scaleRow(i);
        for (unsigned int j = 0; j < n; ++j) scaleColumn(j);
    }

    /// Solves by the decomposition \p LU with one step of iterative refinement.
    template <class LU> void solve()
    {
        const LU lu(a);
        // Eigen leaves out the division by a pivot that is 0; none may pass to the substitution.
        const double least = std::numeric_limits<double>::epsilon() * static_cast<double>(a.rows());
        if (!(lu.matrixLU().diagonal().cwiseAbs().minCoeff() > least)) throw Exception(singular);
        y = lu.solve(b);
        y += lu.solve(b - a * y);
    }

    /// Whether each row closes: |b - A y| against the magnitudes that are summed in it.
    bool closes() const
    {
        const Column<order> residual = (b - a * y).cwiseAbs();
        const Column<order> magnitude = a.cwiseAbs() * y.cwiseAbs() + b.cwiseAbs();
        return (residual.array() <= residualLimit * magnitude.array()).all();
    }

    /// x, in the caller's scale. \returns whether it is finite.
    bool store(double* x) const
    {
        const auto n = static_cast<unsigned int>(y.size());
        for (unsigned int j = 0; j < n; ++j) x[j] = y[j] * columns[j];
        return std::isfinite(largest(x, n));
    }

private:
    void scaleRow(unsigned int i)
    {
        const double most = a.row(i).cwiseAbs().maxCoeff();
        if (most < DBL_MIN) throw Exception(zeroRow);
        a.row(i) *= powerFor(most);
        b[i] *= powerFor(most);
    }
    void scaleColumn(unsigned int j)
    {
        const double most = a.col(j).cwiseAbs().maxCoeff();
        if (most < DBL_MIN) throw Exception(singular);
        columns[j] = powerFor(most);
        a.col(j) *= columns[j];
    }

    Square<order> a;       // R A C
    Column<order> b;       // R b
    Column<order> y;       // solution
    Column<order> columns; // C
};

template <int order>
void solvePivoted(const double* a, const double* b, double* x, unsigned int n, bool first)
{
    const unsigned int unusable = first ? noConvergence : singular;
    Equilibrated<order> system(a, b, n, unusable);
    if (first)
        system.template solve<Eigen::PartialPivLU<Square<order>>>();
    else
        system.template solve<Eigen::FullPivLU<Square<order>>>();
    if (first && !system.closes()) throw Exception(noConvergence);
    if (!system.store(x)) throw Exception(unusable);
}

} // namespace

LinearSystem::LinearSystem(unsigned int n) : Matrix(n, n) {}

LinearSystem::~LinearSystem() = default;

void LinearSystem::reset() { clear(); }

ColumnVector* LinearSystem::solve(const ColumnVector* b, bool first) const
{
    const unsigned int n = rowCount();
    if (b == nullptr || b->size() != n) throw Exception(invalidDimensions);
    auto x = std::make_unique<ColumnVector>(n);
    if (n == 0) return x.release();
    if (n <= stackOrder)
        solvePivoted<stackOrder>(getData(), b->getData(), x->getData(), n, first);
    else
        solvePivoted<Eigen::Dynamic>(getData(), b->getData(), x->getData(), n, first);
    return x.release();
}

ColumnVector* LinearSystem::solveLU(const ColumnVector* b, bool) const
{
    if (b == nullptr) throw Exception(invalidDimensions);
    auto x = std::make_unique<ColumnVector>(b->size());
    solveLU(*b, *x);
    return x.release();
}

void LinearSystem::solveLU(const ColumnVector& b, ColumnVector& x) const
{
    const unsigned int n = rowCount();
    if (b.size() != n || x.size() != n) throw Exception(invalidDimensions);
    Work work(n);
    load(work, getData(), b.getData(), n);
    for (unsigned int k = 0; k < n; ++k) {
        pivot(work, k, n);
        eliminate(work, k, n);
    }
    // The scales are not needed any more; x is written only when all is well.
    double* const solution = work.scales;
    if (!substitute(work, solution, n)) throw Exception(singular);
    std::copy_n(solution, n, x.getData());
}

} // namespace math::matrix
