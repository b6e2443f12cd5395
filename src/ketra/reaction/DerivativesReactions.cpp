// What the reactions of the gas add to its conductivity and heat capacity.

#include <ketra/reaction/Derivatives.h>

#include <ketra/reaction/Product.h>
#include <ketra/reaction/detail/GasReactions.h>

#include <algorithm>
#include <memory>

using math::matrix::ColumnVector;
using math::matrix::LinearSystem;
using math::matrix::Matrix;
using math::matrix::RowVector;

namespace reaction {

using detail::GasReactions;

namespace {

constexpr double gasConstantPerKilomole = 8314.472; // J/(kmol K)
constexpr double leastCoefficient = 1e-6; // of the conductivity matrix; what is less counts as 0
constexpr double vanished = 1e-200;       // mole fraction in place of one too small for a double

Matrix ones(unsigned int n)
{
    Matrix all(n, n);
    std::fill_n(all.getData(), std::size_t{n} * n, 1.0);
    return all;
}

/// What is added to the conductivity matrix \p A so that its small and negative entries are 0.
Matrix cutOff(const Matrix& A)
{
    Matrix cut(A.rowCount(), A.rowCount());
    for (unsigned int r = 0; r < A.rowCount(); ++r)
        for (unsigned int q = 0; q < A.rowCount(); ++q)
            if (A.at(r, q) < leastCoefficient) cut.set(r, q, -A.at(r, q));
    return cut;
}

/// A += P C P' for reactions that are combined from others, P nu. As nu is -1 at the molecule of
/// each reaction, from column \p nm on, P stands in the combined numbers with its sign reversed.
void addCombined(Matrix& A, const Matrix& C, const GasReactions& combined, unsigned int nm)
{
    const unsigned int count = combined.count();
    const auto P = [&](unsigned int k, unsigned int r) { return -combined.nu.at(k, nm + r); };
    Matrix half(count, count); // P C
    for (unsigned int k = 0; k < count; ++k)
        for (unsigned int r = 0; r < count; ++r) {
            if (P(k, r) == 0.0) continue;
            for (unsigned int q = 0; q < count; ++q)
                half.set(k, q, half.at(k, q) + P(k, r) * C.at(r, q));
        }
    for (unsigned int l = 0; l < count; ++l)
        for (unsigned int q = 0; q < count; ++q) {
            if (P(l, q) == 0.0) continue;
            for (unsigned int k = 0; k < count; ++k)
                A.set(k, l, A.at(k, l) + half.at(k, q) * P(l, q));
        }
}

/// dH' A^-1 dH
double quadraticForm(const LinearSystem& A, const ColumnVector& dH)
{
    const std::unique_ptr<ColumnVector> y(A.solve(&dH, /*first=*/false));
    double sum = 0.0;
    for (unsigned int r = 0; r < dH.size(); ++r) sum += dH.at(r) * y->at(r);
    return sum;
}

} // namespace

/// Formula of Butler and Brokaw in the form of reactions [Butler1957, Brokaw1960, TM86885], dH over
/// R T:
///
///     lambda_r = R dH' A^-1 dH,   cp_r = R dH' B^-1 dH / M
///
/// with the matrix A of the diffusivities and the matrix B of diffusivities that are all 1. Both
/// are the same for any combination of the reactions, P nu with P A P' and P dH. The matrices are
/// built for reactions from the abundant gases; only the cut of small entries is that of the
/// reactions from the monatomic ones.
void Derivatives::calculateTransportPropertiesR(const std::vector<Product*>& list, unsigned int nm,
                                                unsigned int n, double, double, const double* x,
                                                double, const Matrix* eta, const RowVector*,
                                                double atT)
{
    Cr = Cpr = Prr = 0.0;
    if (n == nm) return; // atoms alone do not react
    std::vector<double> fractions(n);
    double mass = 0.0; // g per mole of the list
    for (unsigned int i = 0; i < n; ++i) {
        fractions[i] = std::max(x[i], vanished);
        mass += x[i] * list[i]->getM();
    }
    const GasReactions reactions = detail::formation(list, nm, atT);
    const GasReactions combined = detail::fromAbundantGases(reactions, fractions);
    const Matrix conduction = detail::diffusion(detail::diffusivities(list, *eta), fractions);
    const Matrix heat = detail::diffusion(ones(n), fractions);
    LinearSystem A(n - nm), B(n - nm);
    detail::formMatrix(reactions, conduction, A);
    const Matrix cut = cutOff(A);
    detail::formMatrix(combined, conduction, A);
    addCombined(A, cut, combined, nm);
    detail::formMatrix(combined, heat, B);

    Cr = gasConstantPerKilomole * quadraticForm(A, combined.dH);
    Cpr = gasConstantPerKilomole * quadraticForm(B, combined.dH) / mass;
    Prr = viscosity * Cpr / Cr;
}

} // namespace reaction
