#pragma once

#include <support/ReferenceTransport.h>
#include <validation/published/PublishedFigure.h>

#include <string>
#include <vector>

// Viscosity and conductivity of pure gases and of air against measurements.

namespace ketra_test {

/// Viscosity, 1e-6 Pa s, and conductivity, mW/(m K).
struct GasTransport {
    double viscosity, conductivity;
};

/// Dry air as a mixture of its three chief gases.
inline GasTransport transportOfAir(double T)
{
    const auto air = mixtureOf({{"N2", T, 0.7812}, {"O2", T, 0.2096}, {"Ar", T, 0.0092}},
                               thermo::_Species::MOLE_FRACTION);
    reaction::Equilibrium problem(*air);
    problem.setPT(101325.0, T);
    problem.solve(false);
    reaction::Derivatives derivatives(&problem);
    derivatives.solve(true);
    return {1e6 * derivatives.getV(), 1e3 * derivatives.getCfr()};
}

inline GasTransport transportOf(const std::string& gas, double T)
{
    useShippedTransport();
    if (gas == "Air") return transportOfAir(T);
    const thermo::Species& species = *thermo::Database::getInstance()->find(gas);
    return {1e6 * species.getViscosity(T), 100.0 * species.getConductivity(T)}; // of mW/(cm K)
}

/// Data from kinetic theory are good to 2 %, and so are measured viscosities. The conductivities of
/// the handbook are less certain.
inline constexpr double transportLimit = 0.02;
inline constexpr double handbookConductivityLimit = 0.03;

inline std::vector<PublishedFigure> gasFigures()
{
    std::vector<PublishedFigure> all;
    for (const auto& row : referenceRows("gases.csv")) {
        const GasTransport found = transportOf(row.at(0), numberOf(row.at(1)));
        const auto add = [&](const char* key, const char* quantity, std::size_t column,
                             double value, double limit) {
            if (row.at(column).empty()) return;
            all.push_back({subjectOf(row[0], row[1]), quantity, row[column], value, limit, true,
                           row.at(4), holdsWord(row.at(5), key) ? row.at(6) : ""});
        };
        add("viscosity", "viscosity, uPa s", 2, found.viscosity, transportLimit);
        add("conductivity", "conductivity, mW/(m K)", 3, found.conductivity,
            row.at(4) == "CRC" ? handbookConductivityLimit : transportLimit);
    }
    return all;
}

} // namespace ketra_test
