#pragma once

#include <validation/published/PublishedFigure.h>

#include <ketra/gasdynamics/StandardAtmosphere.h>

#include <string>
#include <vector>

// The standard atmosphere against its tables.

namespace ketra_test {

/// The radius of the earth is 6369 km here and 6356.766 km in the standard: up to 2 m of altitude
/// at 80 km, in air that thins by a factor e in 6 to 8 km.
struct AtmosphereLimits {
    static constexpr double T = 5e-5;
    static constexpr double p = 4e-4;
    static constexpr double rho = 5e-4;
    static constexpr double a = 5e-5;
};

/// Temperature, pressure, density and speed of sound over geometric altitude. The temperature is
/// the ratio to that at sea level times the standard's 288.15 K.
inline std::vector<PublishedFigure> atmosphereFigures()
{
    using Limits = AtmosphereLimits;
    std::vector<PublishedFigure> all;
    for (const auto& row : referenceRows("atmosphere.csv")) {
        StandardAtmosphere air;
        air.setAltitude(numberOf(row.at(0)));
        const auto add = [&](const char* quantity, std::size_t column, double found, double limit) {
            if (row.at(column).empty()) return;
            all.push_back({row[0], quantity, row[column], found, limit, true, "USSA1976", ""});
        };
        add("T, K", 1, 288.15 * air.getTemperatureRatio(), Limits::T);
        add("p, Pa", 2, air.getPressure(), Limits::p);
        add("rho, kg/m3", 3, 1000.0 * air.getDensity(), Limits::rho);
        add("a, m/s", 4, air.getSpeedOfSound(), Limits::a);
    }
    return all;
}

} // namespace ketra_test
