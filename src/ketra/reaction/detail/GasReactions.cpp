#include <ketra/reaction/detail/GasReactions.h>

#include <ketra/reaction/Product.h>

#include <algorithm>
#include <cmath>
#include <numeric>

using math::matrix::Matrix;

namespace reaction::detail {

namespace {

constexpr double leastFraction = 1e-10; // two gases that are both rarer do not diffuse
// 3 A*, A* = 1.1: the ratio of the collision integrals of viscosity and diffusion.
constexpr double diffusionFactor = 3.3000000000000003;
constexpr double leastNumber = 1e-9; // stoichiometric number that is the rest of a rounding

/// The row from \p k on in which column \p i is largest, or the number of rows if it is empty.
unsigned int pivotRow(const Matrix& nu, unsigned int i, unsigned int k)
{
    unsigned int row = nu.rowCount();
    double most = leastNumber;
    for (unsigned int r = k; r < nu.rowCount(); ++r) {
        if (std::fabs(nu.at(r, i)) <= most) continue;
        most = std::fabs(nu.at(r, i));
        row = r;
    }
    return row;
}

void swapRows(GasReactions& reactions, unsigned int r, unsigned int k)
{
    if (r == k) return;
    double* const numbers = reactions.nu.getData();
    const std::size_t n = reactions.nu.columnCount();
    std::swap_ranges(numbers + r * n, numbers + (r + 1) * n, numbers + k * n);
    std::swap(reactions.dH.getData()[r], reactions.dH.getData()[k]);
}

/// Makes reaction \p k form one mole of gas \p i, and takes that gas out of the others.
void isolate(GasReactions& reactions, unsigned int k, unsigned int i)
{
    Matrix& nu = reactions.nu;
    const double scale = -1.0 / nu.at(k, i);
    if (scale != 1.0) {
        for (unsigned int j = 0; j < nu.columnCount(); ++j) nu.set(k, j, nu.at(k, j) * scale);
        reactions.dH.set(k, reactions.dH.at(k) * scale);
    }
    for (unsigned int r = 0; r < nu.rowCount(); ++r) {
        const double factor = nu.at(r, i);
        if (r == k || factor == 0.0) continue;
        for (unsigned int j = 0; j < nu.columnCount(); ++j) {
            const double number = nu.at(r, j) + factor * nu.at(k, j);
            nu.set(r, j, std::fabs(number) < leastNumber ? 0.0 : number);
        }
        reactions.dH.set(r, reactions.dH.at(r) + factor * reactions.dH.at(k));
    }
}

/// One gas of a reaction. A reaction has a handful of them.
struct Term {
    unsigned int gas;
    double nu;
};

/// Appends the gases of all reactions. \returns the place of the first one of each, and the end
std::vector<std::size_t> collectTerms(const Matrix& nu, std::vector<Term>& terms)
{
    std::vector<std::size_t> first(1, 0);
    for (unsigned int r = 0; r < nu.rowCount(); ++r) {
        for (unsigned int i = 0; i < nu.columnCount(); ++i)
            if (nu.at(r, i) != 0.0) terms.push_back({i, nu.at(r, i)});
        first.push_back(terms.size());
    }
    return first;
}

} // namespace

GasReactions formation(const std::vector<Product*>& list, unsigned int nm, double T)
{
    const auto n = static_cast<unsigned int>(list.size());
    GasReactions reactions{Matrix(n - nm, n), math::matrix::ColumnVector(n - nm)};
    std::vector<double> H(nm); // enthalpies of the components over R T
    for (unsigned int c = 0; c < nm; ++c) H[c] = list[c]->H0_tilde(T);
    for (unsigned int r = 0; r < reactions.count(); ++r) {
        const Product& molecule = *list[nm + r];
        reactions.nu.set(r, nm + r, -1.0);
        double dH = -molecule.H0_tilde(T);
        for (unsigned int c = 0; c < nm; ++c) {
            for (int k = 0; k < molecule.size(); ++k) {
                if (!(*molecule.get(k) == *list[c]->get(0))) continue;
                reactions.nu.set(r, c, molecule.get(k)->getNumber());
                dH += molecule.get(k)->getNumber() * H[c];
                break;
            }
        }
        reactions.dH.set(r, dH);
    }
    return reactions;
}

GasReactions fromAbundantGases(const GasReactions& reactions, const std::vector<double>& x)
{
    GasReactions combined = reactions;
    std::vector<unsigned int> rarestFirst(x.size());
    std::iota(rarestFirst.begin(), rarestFirst.end(), 0u);
    std::stable_sort(rarestFirst.begin(), rarestFirst.end(),
                     [&](unsigned int i, unsigned int j) { return x[i] < x[j]; });
    unsigned int k = 0;
    for (const unsigned int i : rarestFirst) {
        if (k == combined.count()) break;
        const unsigned int row = pivotRow(combined.nu, i, k);
        if (row == combined.count()) continue; // the rarer ones form it already
        swapRows(combined, row, k);
        isolate(combined, k, i);
        ++k;
    }
    return combined;
}

Matrix diffusivities(const std::vector<Product*>& list, const Matrix& eta)
{
    const auto n = static_cast<unsigned int>(list.size());
    Matrix D(n, n);
    for (unsigned int i = 0; i < n; ++i) {
        const double Mi = list[i]->getM();
        for (unsigned int j = i + 1; j < n; ++j) {
            const double Mj = list[j]->getM();
            D.set(i, j, 5 * Mi * Mj / ((Mi + Mj) * eta.at(i, j) * diffusionFactor));
            D.set(j, i, D.at(i, j));
        }
    }
    return D;
}

Matrix diffusion(const Matrix& D, const std::vector<double>& x)
{
    const auto n = static_cast<unsigned int>(x.size());
    Matrix L(n, n);
    for (unsigned int i = 0; i < n; ++i) {
        double sum = 0.0;
        for (unsigned int j = 0; j < n; ++j) {
            if (j == i || (x[i] < leastFraction && x[j] < leastFraction)) continue;
            L.set(i, j, -D.at(i, j));
            sum += D.at(i, j) * x[j];
        }
        L.set(i, i, sum / x[i]);
    }
    return L;
}

void formMatrix(const GasReactions& reactions, const Matrix& L, Matrix& result)
{
    const unsigned int count = reactions.count(), n = reactions.nu.columnCount();
    std::vector<Term> terms;
    const std::vector<std::size_t> first = collectTerms(reactions.nu, terms);
    std::vector<double> row(n); // of nu L
    for (unsigned int r = 0; r < count; ++r) {
        std::fill(row.begin(), row.end(), 0.0);
        for (std::size_t k = first[r]; k < first[r + 1]; ++k)
            for (unsigned int j = 0; j < n; ++j) row[j] += terms[k].nu * L.at(terms[k].gas, j);
        for (unsigned int q = r; q < count; ++q) {
            double sum = 0.0;
            for (std::size_t k = first[q]; k < first[q + 1]; ++k)
                sum += row[terms[k].gas] * terms[k].nu;
            result.set(r, q, sum);
            result.set(q, r, sum);
        }
    }
}

} // namespace reaction::detail
