#pragma once

#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <exception>
#include <optional>

namespace performance::equilibrium {

/// The temperature, K, at which an expansion to a section starts: from equal amounts of all
/// products the iteration finds nothing where hardly any of them can exist.
inline double startTemperature(double T)
{
    constexpr double floorT = 700.0;
    return T > floorT ? T : floorT;
}

/// Solves the core of one section: finds its pressure, expands the products to it, and works out
/// the performance. Lives as long as the constructor of the section.
class NozzleSectionConditions::Solver
{
public:
    /// \throws thermo::Exception 0 for a chamber without chamber end or throat
    Solver(NozzleSectionConditions& section, Chamber& chamber, bool supersonic,
           bool expectCondensed, bool calculateTransport, int tableSize);

    void solve(double value, CONDITION_TYPE type);
    /// The side of the throat on which the solved section lies.
    bool isSupersonic() const { return supersonic; }

private:
    /// Two pressures between which the area ratio lies: the logarithms of pressure and of the area
    /// ratio over the one sought.
    struct Bracket {
        performance::detail::BracketedRoot::Point throatSide, farSide;
    };

    /// The last state in front of a section that has not been found.
    struct Coldest {
        double T = 0.0; // K
        double Fr = 0.0;
        bool isAtEndOfData = false;
    };

    // What a section is given by.
    double limitedToInlet(double Fr) const;
    void solveInInlet(double Fr);
    double pressureInInlet(double Fr);
    std::optional<double> tabulatedInExit(double Fr);
    double limitedToEnd(double p) const;

    // Expansion.
    void solveAt(double p, double guessedRatio);
    void solveAtGiven(double p);
    void findAreaRatio(double Fr);
    void searchAreaRatio(double Fr);
    double guess(double Fr);
    double limitedToThroat(double p) const;
    void expand(double T, bool transport);
    double areaRatio() const;

    // The searches of a chamber with warm starts, and of a persistent one.
    const reaction::Equilibrium& start() const;
    void improve(double Fr);
    bool stepToAreaRatio(double Fr);
    void bracketAreaRatio(double Fr);
    Bracket bracketBehind(double Fr);
    [[noreturn]] void failBehind(double Fr, std::exception_ptr failure) const;
    bool isAtEndOfData() const;
    void keepJump(const performance::detail::BracketedRoot& root, double Fr);
    double excessAt(double lnP, double Fr);
    double areaSlope() const;

    void storePerformance();
    void tabulateExit();

    NozzleSectionConditions& section;
    Chamber& chamber;
    bool supersonic;
    const bool expectCondensed;
    const bool calculateTransport;
    const int tableSize;
    const reaction::Equilibrium& injection;
    const reaction::Equilibrium& end; // of the chamber
    const reaction::Derivatives& endDerivatives;
    const reaction::Equilibrium& throat;
    const reaction::Derivatives& throatDerivatives;
    const double S;          // entropy of the products, J/K per mole of reactants
    const double throatFlux; // kg/(m^2 s)
    Coldest coldest;
};

} // namespace performance::equilibrium
