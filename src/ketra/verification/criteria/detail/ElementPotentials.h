#pragma once

#include <ketra/verification/criteria/EquilibriumState.h>

#include <cstddef>
#include <vector>

namespace verification::detail {

/// The element potentials of a state over R T, by weighted least squares over the species that are
/// there.
///
/// The fit may leave directions open in the space of the potentials: elements that occur in fixed
/// proportions only, an element that is carried by traces, the electron in a cool gas. Traces close
/// them in the order of their amounts; what stays open concerns no species that could be there, or
/// nothing is known of it.
class ElementPotentials
{
public:
    /// \param lnX  chemical potential of a gas over R T less its standard part, for each candidate
    ///             that is present: ln(x p / 1 bar); 0 of a condensed phase
    /// \param total  moles of all products
    ElementPotentials(const EquilibriumState& state, const std::vector<double>& lnX, double total);

    /// Sum of the potentials of the atoms of candidate \p j.
    double of(std::size_t j) const;
    /// Whether the potentials say anything of candidate \p j.
    bool determines(std::size_t j) const;
    /// Closes an open direction of the electron: the largest fractions of positive and negative
    /// ions agree then, as in a gas without net charge.
    void balanceCharges(double lnP);

private:
    using Vector = std::vector<double>;

    void fit(const std::vector<std::size_t>& rows, const Vector& lnX, double total);
    void openDirections(const Vector& R, const std::vector<std::size_t>& order, const Vector& scale,
                        std::size_t rows, std::size_t rank);
    void closeByTraces(const Vector& lnX, double total);
    void close(std::size_t direction, const double* atoms, double miss);
    bool isAbsent(std::size_t j) const;

    const EquilibriumState& state;
    std::size_t m;            // number of elements
    Vector lambda;            // potentials
    bool anyAbsent = false;   // an element of which there is nothing
    std::vector<Vector> open; // directions that change no fitted potential
};

} // namespace verification::detail
