// The change from elements to components and back.

#include <ketra/reaction/detail/GibbsMinimum.h>
#include <ketra/reaction/detail/RowBasis.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace reaction::detail {

namespace {

constexpr double noAtoms = 1e-11; // a number of atoms that is the rest of a rounding

/// Inverse by Gauss-Jordan elimination with row pivots.
std::vector<double> inverseOf(std::vector<double> A, std::size_t m)
{
    std::vector<double> inverse(m * m, 0.0);
    for (std::size_t i = 0; i < m; ++i) inverse[i * m + i] = 1.0;
    for (std::size_t k = 0; k < m; ++k) {
        std::size_t row = k;
        for (std::size_t i = k + 1; i < m; ++i)
            if (std::abs(A[i * m + k]) > std::abs(A[row * m + k])) row = i;
        for (std::size_t i = 0; i < m; ++i) {
            std::swap(A[row * m + i], A[k * m + i]);
            std::swap(inverse[row * m + i], inverse[k * m + i]);
        }
        const double pivot = A[k * m + k];
        for (std::size_t i = 0; i < m; ++i) {
            A[k * m + i] /= pivot;
            inverse[k * m + i] /= pivot;
        }
        for (std::size_t r = 0; r < m; ++r) {
            const double factor = A[r * m + k];
            if (r == k || factor == 0.0) continue;
            for (std::size_t i = 0; i < m; ++i) {
                A[r * m + i] -= factor * A[k * m + i];
                inverse[r * m + i] -= factor * inverse[k * m + i];
            }
        }
    }
    return inverse;
}

/// row times matrix, with the rests of roundings cleared.
void multiply(const double* row, const std::vector<double>& matrix, std::size_t m, bool clear,
              double* result)
{
    for (std::size_t k = 0; k < m; ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < m; ++i) sum += row[i] * matrix[i * m + k];
        result[k] = clear && std::abs(sum) < noAtoms ? 0.0 : sum;
    }
}

} // namespace

void GibbsMinimum::chooseComponents(const std::vector<double>& gasAmounts,
                                    const std::vector<double>& phaseAmounts)
{
    const std::size_t ng = problem.gases();
    std::vector<std::size_t> order(ng + problem.phases());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto amount = [&](std::size_t j) {
        return j < ng ? gasAmounts[j] : phaseAmounts[j - ng];
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t l, std::size_t r) { return amount(l) > amount(r); });
    RowBasis basis(m);
    for (const std::size_t j : order) {
        basis.offer(j < ng ? problem.gasRow(j) : problem.phaseRow(j - ng));
        if (basis.isFull()) break;
    }
    for (std::size_t i = 0; i < m; ++i) { // directions that no species has
        std::vector<double> unit(m, 0.0);
        unit[i] = 1.0;
        basis.offer(unit.data());
    }
    components = basis.rows();
    inverse = inverseOf(components, m);
    multiply(problem.b.data(), inverse, m, false, b.data());
    for (std::size_t j = 0; j < ng; ++j)
        multiply(problem.gasRow(j), inverse, m, true, &gasRows[j * m]);
    for (std::size_t c = 0; c < problem.phases(); ++c)
        multiply(problem.phaseRow(c), inverse, m, true, &phaseRows[c * m]);
}

std::vector<double> GibbsMinimum::potentialsOf(const std::vector<double>& pi) const
{
    std::vector<double> y(m, 0.0);
    for (std::size_t k = 0; k < m; ++k)
        for (std::size_t i = 0; i < m; ++i) y[k] += components[k * m + i] * pi[i];
    return y;
}

std::vector<double> GibbsMinimum::elementsFrom(const std::vector<double>& y) const
{
    std::vector<double> pi(m, 0.0);
    for (std::size_t i = 0; i < m; ++i)
        for (std::size_t k = 0; k < m; ++k) pi[i] += inverse[i * m + k] * y[k];
    return pi;
}

} // namespace reaction::detail
