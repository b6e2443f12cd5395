#include "NozzleStations.h"
#include "Certificate.h"
#include "EnginePerformance.h"
#include "SolvingFailure.h"
#include "Text.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <cmath>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using performance::equilibrium::NozzleSectionConditions;

NozzleStation known(const Station& station) { return {station.p(), station, "", nullptr, ""}; }

NozzleStation solved(TheoreticalPerformance& performance, double p, bool supersonic,
                     HeldMessages& messages)
{
    NozzleStation result{p, std::nullopt, "", nullptr, ""};
    try {
        result.section.reset(performance.solveNozzleSection(
            p, NozzleSectionConditions::PRESSURE, isFrozen(performance), /*overExpansion=*/false,
            /*ambientPressure=*/0.0, /*calculateTransport=*/true, supersonic));
        if (result.section)
            result.station = stationOf(*result.section);
        else
            result.failure = plainText(p) + " Pa: no solution";
    } catch (...) {
        const Failure failure = describeSolving(plainText(p) + " Pa", messages);
        if (failure.getCode() == INTERNAL) throw failure;
        result.failure = failure.what();
    }
    return result;
}

void grade(NozzleStation& station, const Certificate& certificate, bool strict)
{
    station.grade = verification::letter(certificate.grade);
    station.failure = refusalOf(certificate, strict);
    if (!station.failure.empty()) station.station.reset();
}

/// \param throat  index of the throat among the stations; the first and the last are the chamber
/// end
///                and the exit
void gradeAll(std::vector<NozzleStation>& stations, std::size_t throat,
              TheoreticalPerformance& performance, bool strict)
{
    std::vector<const NozzleSectionConditions*> sections;
    std::vector<NozzleStation*> solvedStations;
    for (NozzleStation& station : stations) {
        if (!station.section) continue;
        sections.push_back(station.section.get());
        solvedStations.push_back(&station);
    }
    sections.push_back(performance.getExitSection());
    solvedStations.push_back(&stations.back());
    const StationCertificates certificates = certificatesOf(performance, sections);
    grade(stations.front(), certificates.chamberEnd, strict);
    grade(stations[throat], certificates.throat, strict);
    for (std::size_t i = 0; i < sections.size(); ++i)
        grade(*solvedStations[i], certificates.sections[i], strict);
}

} // namespace

std::vector<NozzleStation> stationsAlongNozzle(TheoreticalPerformance& performance, unsigned count,
                                               bool strict, HeldMessages& messages)
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
        stations.push_back(solved(performance, end.p() + share * (throat.p() - end.p()),
                                  /*supersonic=*/false, messages));
    }
    stations.push_back(known(throat));
    for (unsigned i = 1; i <= supersonic; ++i) {
        const double share = double(i) / (supersonic + 1);
        stations.push_back(solved(performance, throat.p() * std::pow(exit.p() / throat.p(), share),
                                  /*supersonic=*/true, messages));
    }
    stations.push_back(known(exit));
    gradeAll(stations, subsonic + 1, performance, strict);
    return stations;
}

} // namespace host
