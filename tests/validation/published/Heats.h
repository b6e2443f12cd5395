#pragma once

#include <support/Reactants.h>
#include <validation/published/PublishedFigure.h>

#include <ketra/explosion/HeatOfExplosion.h>

#include <map>
#include <string>
#include <vector>

// Published heats of explosion.

namespace ketra_test {

// Of a figure that is calculated in the same way, and of one that is measured on a detonation.
inline constexpr double calculatedBand = 0.035;
inline constexpr double measuredBand = 0.08;

/// A published heat, and the vessel in which it is compared.
struct PublishedHeat {
    std::string explosive;
    std::string origin; // calculated or measured
    std::string water;  // liquid or gas
    double rho;         // kg/m^3
    double T;           // K
    std::string Q;      // kJ/kg
    std::string source;
    double deviation; // of the library as documented, %

    std::map<std::string, std::string> finalState() const
    {
        return {{"H2O", water == "liquid" ? "H2O(L)" : "H2O"}};
    }
};

inline std::vector<PublishedHeat> publishedHeats()
{
    std::vector<PublishedHeat> all;
    for (const auto& row : referenceRows("explosives.csv"))
        all.push_back({row.at(0), row.at(1), row.at(2), numberOf(row.at(3)), numberOf(row.at(4)),
                       row.at(5), row.at(6), numberOf(row.at(7))});
    return all;
}

/// Heat of explosion by the exact method, J/kg, of a sample at 298.15 K.
inline double heatOf(const PublishedHeat& published)
{
    useShippedSpecies();
    const auto sample = mixtureOf({{published.explosive, 298.15, 1.0}});
    auto finalState = published.finalState();
    return explosion::HeatOfExplosion(*sample).runExactMethod(published.rho, published.T,
                                                              finalState);
}

inline std::vector<PublishedFigure> heatFigures()
{
    std::vector<PublishedFigure> all;
    for (const PublishedHeat& heat : publishedHeats())
        all.push_back({heat.explosive + ", water " + heat.water, heat.origin + ", kJ/kg", heat.Q,
                       heatOf(heat) / 1000.0,
                       heat.origin == "calculated" ? calculatedBand : measuredBand, true,
                       heat.source, ""});
    return all;
}

} // namespace ketra_test
