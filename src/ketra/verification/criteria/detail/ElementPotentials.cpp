#include <ketra/verification/criteria/detail/ElementPotentials.h>

#include <ketra/verification/criteria/detail/traces.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace verification::detail {

namespace {

using Candidate = EquilibriumState::Candidate;

constexpr double rankLimit = 1e-11; // of a unit column: what is left of one that depends on others
constexpr double parallel = 1e-7;   // atoms along a direction below which a species lies across it

double dot(const double* a, const std::vector<double>& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < b.size(); ++i) sum += a[i] * b[i];
    return sum;
}

/// Reflects column \p k of a column-major matrix on its diagonal and the columns behind it too.
void reflect(std::vector<double>& R, std::size_t rows, std::size_t columns, std::size_t k)
{
    double* v = R.data() + k * rows;
    double norm2 = 0.0;
    for (std::size_t i = k; i < rows; ++i) norm2 += v[i] * v[i];
    const double alpha = v[k] > 0.0 ? -std::sqrt(norm2) : std::sqrt(norm2);
    const double beta = norm2 - v[k] * alpha; // half the square of the reflector
    v[k] -= alpha;
    for (std::size_t c = k + 1; c < columns; ++c) {
        double* column = R.data() + c * rows;
        double sum = 0.0;
        for (std::size_t i = k; i < rows; ++i) sum += v[i] * column[i];
        const double factor = sum / beta;
        for (std::size_t i = k; i < rows; ++i) column[i] -= factor * v[i];
    }
    v[k] = alpha;
}

/// The column with the longest rest. What earlier reflections have left of the squares is known by
/// subtraction, until nothing of it can be trusted any more.
std::size_t longest(const std::vector<double>& R, std::size_t rows, std::vector<double>& rest,
                    std::size_t k)
{
    constexpr double trusted = 1e-4; // of a unit column
    const auto best = [&] {
        return static_cast<std::size_t>(
            std::max_element(rest.begin() + static_cast<std::ptrdiff_t>(k), rest.end()) -
            rest.begin());
    };
    if (rest[best()] > trusted) return best();
    for (std::size_t c = k; c < rest.size(); ++c) {
        const double* column = R.data() + c * rows;
        rest[c] = std::inner_product(column + k, column + rows, column + k, 0.0);
    }
    return best();
}

} // namespace

ElementPotentials::ElementPotentials(const EquilibriumState& source, const Vector& lnX,
                                     double total)
    : state(source), m(source.elements.size()), lambda(m, 0.0)
{
    for (std::size_t i = 0; i < m; ++i)
        anyAbsent =
            anyAbsent || (state.elements[i] == 0.0 && static_cast<int>(i) != state.electron);
    const auto& candidates = state.candidates;
    std::vector<std::size_t> rows;
    rows.reserve(candidates.size());
    for (std::size_t j = 0; j < candidates.size(); ++j)
        if (candidates[j].present && candidates[j].amount > traceFraction * total)
            rows.push_back(j);
    // Heavy rows first keep a factorisation with weights over many powers of ten stable.
    std::sort(rows.begin(), rows.end(), [&](std::size_t left, std::size_t right) {
        return candidates[left].amount > candidates[right].amount;
    });
    fit(rows, lnX, total);
    if (!open.empty()) closeByTraces(lnX, total);
}

// Column-pivoted QR of the weighted rows, the potentials of the species as the last column. Columns
// are scaled to unit length first, so that a rare element counts as much as any.
void ElementPotentials::fit(const std::vector<std::size_t>& species, const Vector& lnX,
                            double total)
{
    const std::size_t rows = std::max(species.size(), m);
    Vector R(rows * (m + 1), 0.0);
    for (std::size_t i = 0; i < species.size(); ++i) {
        const std::size_t j = species[i];
        const double weight = std::sqrt(state.candidates[j].amount / total);
        const double* a = state.row(j);
        for (std::size_t k = 0; k < m; ++k) R[k * rows + i] = weight * a[k];
        R[m * rows + i] = weight * (state.candidates[j].G() + lnX[j]);
    }
    Vector scale(m, 1.0);
    Vector rest(m, 0.0); // of the squares of a column, below the diagonal
    for (std::size_t k = 0; k < m; ++k) {
        double* column = R.data() + k * rows;
        const double norm = std::sqrt(std::inner_product(column, column + rows, column, 0.0));
        if (!(norm > 0.0)) continue;
        scale[k] = norm;
        rest[k] = 1.0;
        for (std::size_t i = 0; i < rows; ++i) column[i] /= norm;
    }

    std::vector<std::size_t> order(m);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::size_t rank = 0;
    for (; rank < m; ++rank) {
        const std::size_t pivot = longest(R, rows, rest, rank);
        if (!(rest[pivot] > rankLimit * rankLimit)) break;
        if (pivot != rank) {
            std::swap(order[pivot], order[rank]);
            std::swap(rest[pivot], rest[rank]);
            std::swap_ranges(R.data() + pivot * rows, R.data() + (pivot + 1) * rows,
                             R.data() + rank * rows);
        }
        reflect(R, rows, m + 1, rank);
        for (std::size_t c = rank + 1; c < m; ++c) {
            const double reflected = R[c * rows + rank];
            rest[c] -= reflected * reflected;
        }
    }
    for (std::size_t i = rank; i-- > 0;) {
        double sum = R[m * rows + i];
        for (std::size_t k = i + 1; k < rank; ++k)
            sum -= R[k * rows + i] * lambda[order[k]] * scale[order[k]];
        lambda[order[i]] = sum / R[i * rows + i] / scale[order[i]];
    }
    if (rank < m) openDirections(R, order, scale, rows, rank);
}

// The null space of the fitted rows: one open unknown is 1, the fitted ones follow.
void ElementPotentials::openDirections(const Vector& R, const std::vector<std::size_t>& order,
                                       const Vector& scale, std::size_t rows, std::size_t rank)
{
    for (std::size_t free = rank; free < m; ++free) {
        Vector scaled(m, 0.0); // in the order of the columns
        scaled[free] = scale[order[free]];
        for (std::size_t i = rank; i-- > 0;) {
            double sum = -R[free * rows + i] * scaled[free];
            for (std::size_t k = i + 1; k < rank; ++k) sum -= R[k * rows + i] * scaled[k];
            scaled[i] = sum / R[i * rows + i];
        }
        Vector direction(m, 0.0);
        for (std::size_t k = 0; k < m; ++k) direction[order[k]] = scaled[k] / scale[order[k]];
        open.push_back(std::move(direction));
    }
}

void ElementPotentials::closeByTraces(const Vector& lnX, double total)
{
    const auto& candidates = state.candidates;
    std::vector<std::size_t> traces;
    for (std::size_t j = 0; j < candidates.size(); ++j) {
        const Candidate& c = candidates[j];
        if (c.present && c.amount > 0.0 && c.amount <= traceFraction * total && c.charge == 0.0 &&
            !isAbsent(j))
            traces.push_back(j);
    }
    std::sort(traces.begin(), traces.end(), [&](std::size_t left, std::size_t right) {
        return candidates[left].amount > candidates[right].amount;
    });
    for (const std::size_t j : traces) {
        if (open.empty()) return;
        std::size_t widest = 0;
        double largest = 0.0;
        for (std::size_t d = 0; d < open.size(); ++d) {
            const double along = std::abs(dot(state.row(j), open[d]));
            if (along <= largest) continue;
            largest = along;
            widest = d;
        }
        if (largest > parallel) close(widest, state.row(j), candidates[j].G() + lnX[j] - of(j));
    }
}

// Moves along a direction until a species has its potential, and makes the other directions those
// that leave it there.
void ElementPotentials::close(std::size_t direction, const double* atoms, double miss)
{
    const Vector v = open[direction];
    const double along = dot(atoms, v);
    open.erase(open.begin() + static_cast<std::ptrdiff_t>(direction));
    for (Vector& other : open) {
        const double share = dot(atoms, other) / along;
        for (std::size_t i = 0; i < m; ++i) other[i] -= share * v[i];
    }
    for (std::size_t i = 0; i < m; ++i) lambda[i] += v[i] * miss / along;
}

void ElementPotentials::balanceCharges(double lnP)
{
    if (state.electron < 0) return;
    const auto electron = static_cast<std::size_t>(state.electron);
    const auto found = std::find_if(open.begin(), open.end(), [&](const Vector& v) {
        return std::abs(v[electron]) > parallel;
    });
    if (found == open.end()) return;

    struct Ion {
        double lnX;   // logarithm of the mole fraction at the present potentials
        double slope; // along the direction
    };
    std::vector<Ion> ions;
    for (std::size_t j = 0; j < state.candidates.size(); ++j) {
        const Candidate& c = state.candidates[j];
        if (c.charge == 0.0 || !c.isGas() || isAbsent(j)) continue;
        if (state.T < c.minT || state.T > c.maxT) continue;
        ions.push_back({of(j) - c.G() - lnP, dot(state.row(j), *found)});
    }
    // The largest of straight lines is convex: its least value lies where the slope changes sign.
    double low = -1e5;
    double high = 1e5;
    for (int halving = 0; halving < 80; ++halving) {
        const double t = 0.5 * (low + high);
        double largest = -std::numeric_limits<double>::infinity();
        double slope = 0.0;
        for (const Ion& ion : ions) {
            const double value = ion.lnX + ion.slope * t;
            if (value <= largest) continue;
            largest = value;
            slope = ion.slope;
        }
        (slope > 0.0 ? high : low) = t;
    }
    const double t = 0.5 * (low + high);
    for (std::size_t i = 0; i < m; ++i) lambda[i] += t * (*found)[i];
    open.erase(found);
}

double ElementPotentials::of(std::size_t j) const { return dot(state.row(j), lambda); }

bool ElementPotentials::determines(std::size_t j) const
{
    if (anyAbsent && isAbsent(j)) return false;
    return std::all_of(open.begin(), open.end(),
                       [&](const Vector& v) { return std::abs(dot(state.row(j), v)) <= parallel; });
}

// A species with an element that the mixture does not hold.
bool ElementPotentials::isAbsent(std::size_t j) const
{
    const double* a = state.row(j);
    for (std::size_t i = 0; i < m; ++i)
        if (a[i] != 0.0 && state.elements[i] == 0.0 && static_cast<int>(i) != state.electron)
            return true;
    return false;
}

} // namespace verification::detail
