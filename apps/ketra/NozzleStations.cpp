#include "NozzleStations.h"
#include "EnginePerformance.h"
#include "Failure.h"
#include "Text.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <cmath>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using performance::equilibrium::NozzleSectionConditions;

NozzleStation known(const Station& station) { return {station.p(), station, "", nullptr}; }

NozzleStation solved(TheoreticalPerformance& performance, double p, bool supersonic)
{
    NozzleStation result{p, std::nullopt, "", nullptr};
    try {
        result.section.reset(performance.solveNozzleSection(
            p, NozzleSectionConditions::PRESSURE, isFrozen(performance), /*overExpansion=*/false,
            /*ambientPressure=*/0.0, /*calculateTransport=*/true, supersonic));
        if (result.section)
            result.station = stationOf(*result.section);
        else
            result.failure = plainText(p) + " Pa: no solution";
    } catch (...) {
        const Failure failure = describeException(Stage::SOLVING, plainText(p) + " Pa");
        if (failure.getCode() == INTERNAL) throw failure;
        result.failure = failure.what();
    }
    return result;
}

} // namespace

std::vector<NozzleStation> stationsAlongNozzle(TheoreticalPerformance& performance, unsigned count)
{
    const auto& chamber = *performance.getChamber();
    const Station end = chamberEndOf(chamber);
    const Station throat = throatOf(chamber);
    const Station exit = stationOf(*performance.getExitSection());
    const unsigned between = count - 3;
    const unsigned subsonic = between / 3;
    const unsigned supersonic = between - subsonic;

    std::vector<NozzleStation> stations;
    stations.push_back(known(end));
    for (unsigned i = 1; i <= subsonic; ++i) {
        const double share = double(i) / (subsonic + 1);
        stations.push_back(
            solved(performance, end.p() + share * (throat.p() - end.p()), /*supersonic=*/false));
    }
    stations.push_back(known(throat));
    for (unsigned i = 1; i <= supersonic; ++i) {
        const double share = double(i) / (supersonic + 1);
        stations.push_back(solved(performance, throat.p() * std::pow(exit.p() / throat.p(), share),
                                  /*supersonic=*/true));
    }
    stations.push_back(known(exit));
    return stations;
}

} // namespace host
