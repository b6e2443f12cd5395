#pragma once

#include <cstddef>
#include <vector>

namespace reaction::detail {

/// What is minimised: the Gibbs energy (given pressure) or the Helmholtz energy (given volume) of
/// an ideal gas and pure condensed phases at one temperature, for given amounts of the elements.
struct GibbsProblem {
    bool constantPressure = true;
    std::vector<double> b; // mol of atoms of each element
    int electron = -1;     // index of the electron among them, -1 without ions

    std::vector<double> gasRows; // atoms: a row for each gas
    std::vector<double> gasG;    // g: ln x_j = a pi - g, or ln n_j = a pi - g at given volume
    std::vector<double> phaseRows;
    std::vector<double> phaseG; // G/(R T)

    std::size_t elements() const { return b.size(); }
    std::size_t gases() const { return gasG.size(); }
    std::size_t phases() const { return phaseG.size(); }
    const double* gasRow(std::size_t j) const { return gasRows.data() + j * b.size(); }
    const double* phaseRow(std::size_t c) const { return phaseRows.data() + c * b.size(); }
};

/// Element potentials, and the amounts that follow from them.
struct Assemblage {
    std::vector<double> pi;     // potential of each element over R T
    double Ng = 0.0;            // mol of gas; 0: there is none
    std::vector<double> nPhase; // mol of each phase; 0: absent
};

/// Minimisation over the element potentials, the dual of the problem [Smith1982]:
///
///     max  b pi   with  ln sum_j exp(a_j pi - g_j) <= 0  and  a_c pi <= g_c
///
/// at given pressure, and b pi - sum_j exp(a_j pi - g_j) at given volume. It is concave with as
/// many unknowns as elements, whatever the number of species, and the amounts are its multipliers.
/// A barrier method finds the phases that are present from any start; Newton steps on the
/// conditions of equilibrium, with phases entering and leaving by their driving force, give the
/// last digits.
class GibbsMinimum
{
public:
    explicit GibbsMinimum(const GibbsProblem& newProblem);

    /// Minimises. \param state  the result, and with \p warm the start
    /// \returns false if no minimum was found; \p state is of no use then
    bool solve(Assemblage& state, bool warm);

private:
    bool searchInside(Assemblage& state);
    void moveInside(std::vector<double>& pi) const;
    double barrierAt(const std::vector<double>& pi, double mu);
    void differentiate(const std::vector<double>& pi, double mu);
    bool newtonInside(std::vector<double>& pi, double mu);
    void readAmounts(const std::vector<double>& pi, double mu, Assemblage& state);
    std::vector<std::size_t> independentPhases(const std::vector<double>& pi, double within);

    bool finish(Assemblage& state);
    bool findPhases(Assemblage& state);
    bool newtonOnPhases(Assemblage& state, const std::vector<std::size_t>& present);
    void saturateGas(Assemblage& state, const std::vector<std::size_t>& present);
    std::vector<double> meanOfGas(const std::vector<double>& y);
    bool gasComesOrGoes(Assemblage& state, const std::vector<std::size_t>& present);
    bool leave(Assemblage& state, std::vector<std::size_t>& present) const;
    bool enter(Assemblage& state, std::vector<std::size_t>& present);
    void exchange(std::size_t entering, Assemblage& state, std::vector<std::size_t>& present);

    void chooseComponents(const std::vector<double>& gasAmounts,
                          const std::vector<double>& phaseAmounts);
    std::vector<double> potentialsOf(const std::vector<double>& pi) const;
    std::vector<double> elementsFrom(const std::vector<double>& y) const;
    const double* gasRow(std::size_t j) const { return gasRows.data() + j * m; }
    const double* phaseRow(std::size_t c) const { return phaseRows.data() + c * m; }
    double dot(const double* row, const std::vector<double>& pi) const;
    /// Fills `share` with exp(a pi - g). \returns the logarithm of their sum.
    double gasTerm(const std::vector<double>& pi);
    double slack(std::size_t c, const std::vector<double>& pi) const;

    const GibbsProblem& problem;
    const std::size_t m;
    // The problem in terms of components, which are the m most abundant independent species: what
    // elements that are bound in one abundant species leave over is no small difference then.
    std::vector<double> b;
    std::vector<double> gasRows;
    std::vector<double> phaseRows;
    std::vector<double> components; // atoms of each element: m rows
    std::vector<double> inverse;    // of `components`
    double scale = 0.0;             // mol: all atoms
    std::vector<double> share;      // x_j, or n_j at given volume
    std::vector<double> gradient;   // of the barrier function
    std::vector<double> matrix;
    std::vector<double> rhs;
    std::vector<double> step;
};

} // namespace reaction::detail
