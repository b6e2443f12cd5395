#pragma once

namespace verification::detail {

/// Of all moles: what a species must exceed for its potential to be judged. Below, an error of the
/// potential is none of the composition, and the solver does not look at it either.
inline constexpr double traceFraction = 1e-10;

} // namespace verification::detail
