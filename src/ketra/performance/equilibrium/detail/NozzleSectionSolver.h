#pragma once

#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

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
    // What a section is given by.
    double limitedToInlet(double Fr) const;
    double pressureInInlet(double Fr);
    std::optional<double> tabulatedInExit(double Fr);
    double limitedToEnd(double p) const;

    // Expansion.
    void solveAt(double p, double guessedRatio);
    void solveAtGiven(double p);
    void searchAreaRatio(double Fr);
    double guess(double Fr);
    double limitedToThroat(double p) const;
    void expand(double T, bool transport);
    double areaRatio() const;

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
};

} // namespace performance::equilibrium
