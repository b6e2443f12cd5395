#pragma once

#include "Case.h"

#include <memory>
#include <string>

namespace thermo {
class Mixture;
}

namespace host {

/// An energetic material, and what may become of it.
struct ExplosiveSample {
    std::unique_ptr<thermo::Mixture> mixture;
    bool multiphase = true; ///< with condensed products
    bool ions = true;
    std::string document; ///< the path; empty for a sample from the command line
    std::string name;
    std::string info;
};

/// The propellant of a document that is built. \throws Failure
ExplosiveSample sampleOf(const Case& engine);

/// A sample by mass, as "TNT(cr)=0.4,RDX(cr)=0.6", at 298.15 K; the species must be loaded. A
/// single name needs no fraction. \throws Failure
ExplosiveSample sampleOf(const std::string& recipe);

} // namespace host
