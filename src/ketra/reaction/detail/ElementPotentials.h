#pragma once

#include <ketra/reaction/detail/GibbsMinimum.h>

#include <vector>

namespace reaction {

class Equilibrium;
class Product;

namespace detail {

/// Solves a problem of equilibrium over the element potentials: at given temperature one
/// minimisation; else a bracket on the temperature, in which the enthalpy, entropy or energy of the
/// minimum rises, around it. Where it rises by a step, at a phase change, both sides are mixed.
///
/// Dear and sure: it does not depend on a start, and phases enter and leave by their driving force.
class ElementPotentials
{
public:
    /// \p problem must outlive the object, with its list of products as it is.
    explicit ElementPotentials(Equilibrium& newProblem);

    /// Leaves the problem in its solution, with its results.
    /// \param startT  first temperature, K
    /// \throws thermo::Exception 8 if there is none
    void solve(double startT);

    enum class Side { WITHIN, BELOW, ABOVE, UNKNOWN };
    /// Where the posed target lies, against what the products have at the ends of their data.
    /// \param endT  temperature of the end it lies beyond, K
    Side sideOfTarget(double& endT);

private:
    /// A minimum at one temperature.
    struct Point {
        double T = 0.0;
        double value = 0.0;    // of the target quantity: H, S or U
        double capacity = 0.0; // Cp or Cv of the products, unchanged, J/K
        std::vector<Product*> gases;
        std::vector<Product*> phases;
        std::vector<double> n;   // gases, then phases, mol
        std::vector<double> lnN; // gases
        double Ng = 0.0;
    };

    static bool hasData(const Product& product, double T);
    bool findRange();
    bool carriesAllElements(double T) const;
    bool evaluate(double T, Point& point);
    bool minimise(double T, Point& point);
    void pose(double T, Point& point);
    void takeAmounts(Point& point);
    void bracket(double startT, Point& low, Point& high);
    double nextT(double T, bool up, double factor) const;
    double miss(const Point& point) const;
    void narrow(Point& low, Point& high);
    Point mixed(const Point& low, const Point& high) const;
    void store(const Point& point);

    Equilibrium& eq;
    const double wanted; // H, S or U, per mole of initial mixture
    std::vector<Product*> candidates;
    double lowest = 0.0; // K, between which products for all elements exist
    double highest = 0.0;
    std::vector<double> edges; // K, of the ranges of the candidates
    GibbsProblem minimum;
    Assemblage last;
    std::vector<Product*> lastPhases; // those of `last`
};

} // namespace detail
} // namespace reaction
