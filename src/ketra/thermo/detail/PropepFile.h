#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

namespace thermo {
class Species;
} // namespace thermo

namespace thermo::detail {

/// Reads the propellant ingredients of a PROPEP file: one line of fixed columns an ingredient, with
/// name, formula, heat of formation per gram and density. Each becomes a reactant at 298.15 K.
///
/// An ingredient is taken when the line of the next one is met, so that the last one of a file is
/// left out. One whose formula cannot be used is dropped with an error in the log.
std::vector<std::unique_ptr<Species>> readPropepFile(std::istream& stream);

} // namespace thermo::detail
