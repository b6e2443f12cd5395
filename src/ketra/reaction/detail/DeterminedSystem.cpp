#include <ketra/reaction/detail/DeterminedSystem.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace reaction::detail {

namespace {

constexpr double rounding = 1e-12; // a pivot below it, of the largest one, is open

} // namespace

void solveWhatIsDetermined(std::vector<double>& A, std::vector<double>& b, std::vector<double>& x)
{
    const std::size_t n = b.size();
    std::vector<double> columnScale(n, 0.0);
    std::vector<std::size_t> column(n);
    std::iota(column.begin(), column.end(), std::size_t{0});
    for (int pass = 0; pass < 2; ++pass) { // rows, then columns, by powers of two: no rounding
        for (std::size_t i = 0; i < n; ++i) {
            double most = 0.0;
            for (std::size_t k = 0; k < n; ++k)
                most = std::max(most, std::abs(pass == 0 ? A[i * n + k] : A[k * n + i]));
            int exponent = 0;
            if (most > 0.0) std::frexp(most, &exponent);
            const double factor = std::ldexp(1.0, -exponent);
            for (std::size_t k = 0; k < n; ++k) (pass == 0 ? A[i * n + k] : A[k * n + i]) *= factor;
            if (pass == 0)
                b[i] *= factor;
            else
                columnScale[i] = factor;
        }
    }
    std::size_t rank = 0;
    for (; rank < n; ++rank) {
        std::size_t row = rank, col = rank;
        for (std::size_t i = rank; i < n; ++i)
            for (std::size_t k = rank; k < n; ++k)
                if (std::abs(A[i * n + k]) > std::abs(A[row * n + col])) row = i, col = k;
        if (!(std::abs(A[row * n + col]) > rounding)) break;
        for (std::size_t k = 0; k < n; ++k) std::swap(A[row * n + k], A[rank * n + k]);
        std::swap(b[row], b[rank]);
        for (std::size_t i = 0; i < n; ++i) std::swap(A[i * n + col], A[i * n + rank]);
        std::swap(column[col], column[rank]);
        for (std::size_t i = rank + 1; i < n; ++i) {
            const double factor = A[i * n + rank] / A[rank * n + rank];
            if (factor == 0.0) continue;
            for (std::size_t k = rank; k < n; ++k) A[i * n + k] -= factor * A[rank * n + k];
            b[i] -= factor * b[rank];
        }
    }
    x.assign(n, 0.0);
    for (std::size_t i = rank; i-- > 0;) {
        double sum = b[i];
        for (std::size_t k = i + 1; k < rank; ++k) sum -= A[i * n + k] * x[column[k]];
        x[column[i]] = sum / A[i * n + i];
    }
    for (std::size_t i = 0; i < n; ++i) x[i] *= columnScale[i];
}

} // namespace reaction::detail
