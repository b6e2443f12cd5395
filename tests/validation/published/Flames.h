#pragma once

#include <validation/published/PublishedFigure.h>

#include <ketra/reaction/Equilibrium.h>

#include <memory>
#include <string>
#include <vector>

// Adiabatic flame temperatures against the tables of the literature.

namespace ketra_test {

/// The flame of one mole of a gaseous fuel with \p oxygen moles of O2 in air of
/// 21 parts of oxygen to 79 of nitrogen, from 298.15 K at 1 atm.
inline std::unique_ptr<reaction::Equilibrium> solvedFlame(const std::string& fuel, double oxygen)
{
    useShippedSpecies();
    const double nitrogen = oxygen * 79.0 / 21.0;
    const double sum = 1.0 + oxygen + nitrogen;
    const auto charge = mixtureOf(
        {{fuel, 298.15, 1.0 / sum}, {"O2", 298.15, oxygen / sum}, {"N2", 298.15, nitrogen / sum}},
        thermo::_Species::MOLE_FRACTION);
    auto flame = std::make_unique<reaction::Equilibrium>(*charge, /*multiphase=*/true,
                                                         /*ions=*/false);
    flame->setPH(101325.0, charge->H());
    flame->solve(false);
    return flame;
}

/// The table rests on another collection of data, and is rounded to 1 K.
inline constexpr double flameLimit = 2e-3;

inline std::vector<PublishedFigure> flameFigures()
{
    std::vector<PublishedFigure> all;
    for (const auto& row : referenceRows("flames.csv"))
        all.push_back({row.at(0), "T, K", row.at(2),
                       solvedFlame(row[0], numberOf(row.at(1)))->getT(), flameLimit, true,
                       row.at(3), ""});
    return all;
}

} // namespace ketra_test
