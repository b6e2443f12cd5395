#pragma once

#include "HeldMessages.h"
#include "Station.h"

#include <memory>
#include <string>
#include <vector>

namespace host {

/// A station along the nozzle with the object that holds it.
struct NozzleStation {
    double p;                       ///< Pa
    std::optional<Station> station; ///< none where there is no solution
    std::string failure;            ///< why not
    std::unique_ptr<performance::equilibrium::NozzleSectionConditions> section;
    std::string grade; ///< "A", "B" or "F"; empty without a solution
};

/// The states of a solved engine from its chamber end through the throat to its nozzle exit.
///
/// On the way to the throat the pressure falls in equal steps, behind it in equal ratios, so that
/// the stations lie where the state changes. A third of them lies before the throat.
/// A station that its certificate shows to be no solution counts as one without; with \p strict
/// only grade A is one.
/// \param count  of all stations, at least 3: the three that every nozzle has are among them
/// \throws thermo::Exception if something else than a single station fails
std::vector<NozzleStation> stationsAlongNozzle(performance::TheoreticalPerformance& performance,
                                               unsigned count, bool strict, HeldMessages& messages);

} // namespace host
