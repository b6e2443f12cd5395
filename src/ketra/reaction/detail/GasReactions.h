#pragma once

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/Matrix.h>

#include <vector>

namespace reaction {

class Product;

namespace detail {

/// Independent reactions among n gases, a row each: sum_i nu_ri X_i = 0.
struct GasReactions {
    math::matrix::Matrix nu;       // by reaction and gas
    math::matrix::ColumnVector dH; // heats of reaction over R T

    unsigned int count() const { return dH.size(); }
};

/// The molecules of \p list as reactions from its first \p nm gases, which are monatomic: nu is -1
/// at the molecule, the number of atoms at each component and 0 elsewhere. \p T in K.
GasReactions formation(const std::vector<Product*>& list, unsigned int nm, double T);

/// The same reactions, combined so that each forms one of the rarest gases from the most abundant
/// ones. Where the monatomic gases are rare the formation reactions nearly coincide, and the
/// difference that matters drowns in the last digit of the matrix; here it stands by itself.
/// \p x are the mole fractions.
GasReactions fromAbundantGases(const GasReactions& reactions, const std::vector<double>& x);

/// The diffusion of the gases through each other, as a symmetric matrix L by gas and gas. Reactions
/// nu have the matrix nu L nu', which is the sum over all pairs of gases [TM86885]
///
///     sum_{i<j} D_ij (x_j nu_qi - x_i nu_qj) (x_j nu_ri - x_i nu_rj) / (x_i x_j)
///
/// multiplied out: L_ij = -D_ij and L_ii = sum_j D_ij x_j / x_i. Pairs of gases that are both rare
/// are left out.
math::matrix::Matrix diffusion(const math::matrix::Matrix& D, const std::vector<double>& x);

/// The D of the conductivity, from the interaction viscosities \p eta above the diagonal, Pa s:
///
///     D_ij = 5 M_i M_j / (3 A* (M_i + M_j) eta_ij)
math::matrix::Matrix diffusivities(const std::vector<Product*>& list,
                                   const math::matrix::Matrix& eta);

/// \p result = nu L nu'.
void formMatrix(const GasReactions& reactions, const math::matrix::Matrix& L,
                math::matrix::Matrix& result);

} // namespace detail
} // namespace reaction
