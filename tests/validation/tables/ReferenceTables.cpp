#include <validation/tables/Tables.h>

#include <support/ReferenceChambers.h>
#include <support/ReferenceEngines.h>
#include <support/ReferenceStates.h>

#include <ketra/runtime/Exception.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace ketra_test {

namespace {

const char* const quantities[] = {"T", "p", "rho", "M", "MW", "cp", "gamma_s", "a", "x"};

void printRow(const std::string& name, const std::map<std::string, double>& worst, const char* note)
{
    std::printf("| %s |", name.c_str());
    for (const char* quantity : quantities) {
        const auto found = worst.find(quantity);
        if (found == worst.end())
            std::printf(" |");
        else
            std::printf(" %.1e |", found->second);
    }
    std::printf(" %s |\n", note);
}

/// One case: the largest deviation of each quantity over its stations without a blend, and one row
/// for each station with a blend or beyond a limit.
void printCase(const ReferenceCase& c)
{
    std::map<std::string, double> worst;
    for (const ReferenceState& state : c.states) {
        const std::string name = c.id + ", station " + std::to_string(state.station);
        try {
            const FoundState found = findState(c, state, typeOf(state), true);
            const bool blend = found.blend || state.twoPhase;
            std::map<std::string, double> own;
            std::string beyond;
            for (const Deviation& d : deviationsOf(c, state, found)) {
                double& most = blend ? own[d.quantity] : worst[d.quantity];
                most = std::max(most, d.value);
                if (!(d.value <= d.limit)) beyond += " " + d.quantity;
            }
            std::string note = found.blend      ? "blend of two phases"
                               : state.twoPhase ? "melting point, no band"
                                                : "";
            if (!beyond.empty())
                note += (note.empty() ? "" : ", ") + ("beyond its limit:" + beyond);
            if (!note.empty()) printRow(name, own, note.c_str());
        } catch (const runtime::Exception& e) {
            std::printf("| %s: code %u, %s |\n", name.c_str(), e.getType(), e.getMessage());
        }
    }
    printRow(c.id, worst, c.holds("Air") ? "Air" : "");
}

/// A row of the exits of an engine, from their pressure (p) and from their area ratio (A).
void printExits(const std::string& name, const std::map<std::string, double>& worst,
                const char* note)
{
    std::printf("| %s |", name.c_str());
    for (const char* quantity : {"T p", "Isp p", "T A", "p A", "Ivac A", "Isp A"}) {
        const auto found = worst.find(quantity);
        if (found == worst.end())
            std::printf(" |");
        else
            std::printf(" %.1e |", found->second);
    }
    std::printf(" %s |\n", note);
}

/// The deviations of an exit, solved from its pressure or its area ratio, go into \p worst, or,
/// where one is beyond its limit or near a melting point, into a row of its own.
void addExit(std::map<std::string, double>& worst, performance::equilibrium::Chamber& chamber,
             const ReferenceEngine& engine, const ReferenceStation& station, bool byPressure)
{
    const std::string own = engine.id() + ", station " + std::to_string(station.number);
    const std::string way = byPressure ? " p" : " A";
    try {
        std::map<std::string, double> found;
        std::string beyond;
        for (const Deviation& d : deviationsOf(chamber, engine, station, byPressure)) {
            found[d.quantity + way] = d.value;
            if (!(d.value <= d.limit)) beyond += " " + d.quantity;
        }
        if (!beyond.empty())
            printExits(own, found, ("beyond its limit:" + beyond).c_str());
        else if (station.twoPhase)
            printExits(own, found, "melting");
        else
            for (const auto& [quantity, value] : found)
                worst[quantity] = std::max(worst[quantity], value);
    } catch (const runtime::Exception& e) {
        const std::string failure = std::string("from its ") + (byPressure ? "pressure" : "area") +
                                    ": code " + std::to_string(e.getType());
        printExits(own, {}, failure.c_str());
    }
}

} // namespace

void printStates()
{
    std::printf("| case | T | p | rho | M | MW | cp | gamma_s | a | x | |\n");
    std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
    for (const ReferenceCase& c : referenceCases()) printCase(c);
}

/// The stations of the chambers, those of infinite area in front.
void printChambers()
{
    std::printf("| engine | station | T | p | Isp | c* |\n|---|---|---|---|---|---|\n");
    for (const bool finiteArea : {false, true})
        for (const ReferenceEngine& engine : referenceEngines()) {
            if (engine.isFiniteArea() != finiteArea) continue;
            const auto chamber = chamberOf(engine);
            for (const ReferenceStation& row : engine.stations) {
                const auto station = chamberStationOf(row.place);
                if (!station) continue;
                std::map<std::string, double> found;
                for (const Deviation& d : chamberDeviationsOf(*chamber, engine, row, *station))
                    found[d.quantity] = d.value;
                std::printf("| %s | %s |", engine.id().c_str(), row.place.c_str());
                for (const char* quantity : {"T", "p", "Isp", "c*"})
                    if (found.count(quantity))
                        std::printf(" %.1e |", found[quantity]);
                    else
                        std::printf(" |");
                std::printf("\n");
            }
        }
}

void printNozzles()
{
    std::printf("| exits of | T at p | Isp at p | T at A | p at A | Ivac at A | Isp at A | |\n");
    std::printf("|---|---|---|---|---|---|---|---|\n");
    for (const ReferenceEngine& engine : referenceEngines()) {
        const auto chamber = chamberOf(engine);
        std::map<std::string, double> worst;
        for (const ReferenceStation& station : engine.stations)
            if (station.place == "exit")
                for (const bool byPressure : waysToPose(station))
                    addExit(worst, *chamber, engine, station, byPressure);
        printExits(engine.id(), worst,
                   engine.isFreezing()     ? "frozen"
                   : engine.isFiniteArea() ? "finite area"
                                           : "");
    }
}

} // namespace ketra_test
