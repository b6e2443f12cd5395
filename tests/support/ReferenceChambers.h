#pragma once

#include <support/ReferenceEngines.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

// How far chamber, chamber end and throat are from those of the reference engines.

namespace ketra_test {

using ChamberStation = performance::equilibrium::Chamber::CHAMBER_STATION;

/// The station of a chamber that a place of the reference is; none for an exit and for the
/// stagnation state of a finite area, which is no station here.
inline std::optional<ChamberStation> chamberStationOf(const std::string& place)
{
    using performance::equilibrium::Chamber;
    if (place == "chamber" || place == "injector") return Chamber::INJECTION_PLANE;
    if (place == "combustor_end") return Chamber::CHAMBER_END;
    if (place == "throat") return Chamber::THROAT;
    return std::nullopt;
}

/// The limits of a station, relative; 0 for a quantity that is not compared.
struct ChamberLimits {
    double T, p, w, cstar;
};

/// In an infinite area both methods agree to their tolerances: the Mach number of the throat is
/// good to 1e-5, which is as much of the pressure, and a seventh of it in the temperature. In a
/// finite area the chamber end is found by momentum with the dynamic pressure of slow flow. At the
/// contraction ratio c that costs some 0.01/c^2 of its pressure, and 0.03/c^2 of its velocity,
/// which comes from what the pressure has fallen. The characteristic velocity is referred to
/// another stagnation pressure and not compared.
inline ChamberLimits chamberLimitsOf(const ReferenceEngine& engine,
                                     const performance::equilibrium::Chamber& chamber,
                                     ChamberStation station)
{
    using performance::equilibrium::Chamber;
    if (station == Chamber::INJECTION_PLANE) return {1e-6, 1e-15, 0.0, 0.0};
    if (!engine.isFiniteArea()) return {3e-6, 3e-5, 3e-5, 3e-5};
    const double c = chamber.getFcr();
    if (station == Chamber::CHAMBER_END) return {1e-3, 2e-2 / (c * c), 5e-2 / (c * c), 0.0};
    return {1e-3, 2e-2 / (c * c), 1e-3, 0.0};
}

/// All deviations of a station of a solved chamber that have a limit.
inline std::vector<Deviation> chamberDeviationsOf(const performance::equilibrium::Chamber& chamber,
                                                  const ReferenceEngine& engine,
                                                  const ReferenceStation& row,
                                                  ChamberStation station)
{
    const reaction::Equilibrium& problem = *chamber.getReaction(station);
    const ChamberLimits limits = chamberLimitsOf(engine, chamber, station);
    std::vector<Deviation> all;
    const auto relative = [&](const char* quantity, double found, double reference, double limit) {
        if (limit != 0.0 && !std::isnan(reference))
            all.push_back({quantity, std::abs(found / reference - 1.0), limit});
    };
    relative("T", problem.getT(), row.T, limits.T);
    relative("p", problem.getP(), row.p, limits.p);
    relative("Isp", std::sqrt(2.0 * (chamber.getReaction()->getHspec() - problem.getHspec())),
             row.isp, limits.w);
    relative("c*", chamber.getCstar(0.0), row.cstar, limits.cstar);
    return all;
}

} // namespace ketra_test
