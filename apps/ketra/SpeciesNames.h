#pragma once

#include <string>

namespace thermo {
class Species;
}

namespace host {

/// The species that a component of that name is made of: the one that is called so, or the crystal
/// that stands in for its forms; null if there is none.
const thermo::Species* speciesOfComponent(const std::string& name);

/// That the database has no species of that name, and which ones were perhaps meant.
std::string unknownSpecies(const std::string& name);

} // namespace host
