#pragma once

#include <array>
#include <cstddef>

/// The correlations behind the correction factors, in percent: for the estimate of a design, from
/// engines built and nozzles calculated. Data alone.
namespace performance::efficiency::detail {

/// A row of a table: a point of the first axis and the entries over the second.
template <std::size_t columns> struct Row {
    double x;
    std::array<double, columns> entries;
};

/// Loss of thrust by friction at the wall, from 0.27991 to 2.08909, over the square root of the
/// area ratio and a second axis that falls.
inline constexpr std::array<double, 9> frictionAxis = {16.0, 14.0, 12.0, 10.0, 8.0,
                                                       6.0,  4.0,  2.0,  0.0};
extern const std::array<Row<9>, 293> frictionLosses;

/// Loss by incomplete reaction, from 0 to 2.3472, over the oxidizer excess coefficient and the
/// class of the products: 2 with CO, 3 with N2, 1 without either.
inline constexpr std::array<double, 3> reactionAxis = {1.0, 2.0, 3.0};
extern const std::array<Row<3>, 97> reactionLosses;

/// Thrust kept in a bell nozzle, from 96.2228 to 99.1766, over its length in percent of that of the
/// equivalent cone of 15 degrees, and over the area ratio.
inline constexpr std::array<double, 6> divergenceAxis = {10.0, 20.0, 30.0, 40.0, 100.0, 200.0};
extern const std::array<Row<6>, 105> divergenceEfficiencies;

} // namespace performance::efficiency::detail
