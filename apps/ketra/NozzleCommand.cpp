#include "NozzleCommand.h"
#include "Certificate.h"
#include "Columns.h"
#include "EnginePerformance.h"
#include "Failure.h"
#include "NozzleStations.h"
#include "Output.h"
#include "Results.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <map>

namespace host {
namespace {

using performance::TheoreticalPerformance;

constexpr unsigned fewestStations = 3; // chamber end, throat, exit
constexpr unsigned mostStations = 10000;
constexpr double leastShown = 1e-4; // mole fraction that a species must reach to get a column

void requireCount(unsigned count)
{
    if (count < fewestStations || count > mostStations)
        throw Failure(USAGE, "--stations " + std::to_string(count) +
                                 ": from 3 (chamber end, throat, exit) to 10000 are possible");
}

void requireSupersonicExit(const Case& engine)
{
    TheoreticalPerformance& performance = engine.getPerformance();
    const auto* const exit = performance.getExitSection();
    if (!exit)
        throw Failure(DOCUMENT, engine.getPath() +
                                    ": the document does not say where the nozzle ends. Add "
                                    "nozzleExitConditions = { areaRatio = 40.0; }; to nozzleFlow");
    if (!performanceOf(performance, *exit))
        throw Failure(DOCUMENT, engine.getPath() +
                                    ": the nozzle ends at the throat or before it. State a lower "
                                    "exit pressure");
}

/// Whatever grade stations have, the engine behind them must be one.
void requireSolution(const Case& engine)
{
    requireGrade(engine.certify(), engine.getPath(), /*strict=*/false);
}

/// Mole fractions of a station by name.
std::map<std::string, double> fractionsOf(const Station& station)
{
    const Composition composition(station);
    const thermo::Mixture& mixture = composition.getMixture();
    std::map<std::string, double> fractions;
    for (int i = 0; i < mixture.size(); ++i)
        fractions[mixture.getSpecies(i)->getName()] += mixture.getMolarFraction(i);
    return fractions;
}

/// The stations as rows, with a column for each species that reaches a visible fraction anywhere.
class Rows
{
public:
    Rows(const std::vector<NozzleStation>& alongNozzle, bool withComposition)
        : stations(alongNozzle), fractions(alongNozzle.size())
    {
        if (!withComposition) return;
        for (std::size_t i = 0; i < stations.size(); ++i)
            if (stations[i].station) fractions[i] = fractionsOf(*stations[i].station);
        std::map<std::string, double> greatest;
        for (const auto& station : fractions)
            for (const auto& [name, x] : station) greatest[name] = std::max(greatest[name], x);
        for (const auto& [name, x] : greatest)
            if (x >= leastShown) species.push_back(name);
    }

    Table table(bool english) const
    {
        std::vector<Column> columns = {plainColumn("area ratio", 5), pressureColumn("p"),
                                       temperatureColumn("T"),       plainColumn("Mach", 5),
                                       velocityColumn("w"),          densityColumn("rho"),
                                       molarMassColumn("M"),         plainColumn("gamma", 5),
                                       plainColumn("k", 5),          plainColumn("grade", 0)};
        for (const std::string& name : species) columns.push_back(plainColumn(name, 6));
        Table result(std::move(columns), english);
        for (std::size_t i = 0; i < stations.size(); ++i) result.add(row(i));
        return result;
    }

private:
    std::vector<Cell> row(std::size_t i) const
    {
        const std::optional<Station>& s = stations[i].station;
        if (!s) {
            std::vector<Cell> failed(10 + species.size());
            failed[1] = stations[i].p;
            if (!stations[i].grade.empty()) failed[9] = stations[i].grade;
            return failed;
        }
        std::vector<Cell> cells = {
            cellOf(s->areaRatio), s->p(), s->T(),           s->Mach(), s->W, s->rho(), s->M(),
            s->gamma(),           s->k(), stations[i].grade};
        for (const std::string& name : species) {
            const auto x = fractions[i].find(name);
            cells.push_back(x == fractions[i].end() ? 0.0 : x->second);
        }
        return cells;
    }

    const std::vector<NozzleStation>& stations;
    std::vector<std::map<std::string, double>> fractions;
    std::vector<std::string> species;
};

std::string jsonOf(const Case& engine, const std::vector<NozzleStation>& stations)
try {
    Json results = resultsHead(engine.getPerformance(), engine.getPath());
    results["stations"] = Json::array();
    for (const NozzleStation& s : stations) {
        Json station = {{"p", s.p},
                        {"failure", s.station ? Json(nullptr) : Json(s.failure)},
                        {"grade", s.grade.empty() ? Json(nullptr) : Json(s.grade)}};
        if (s.station) station.update(stationResults(*s.station, /*transport=*/false));
        results["stations"].push_back(std::move(station));
    }
    results["units"] = resultsLegend();
    return textOf(results);
} catch (...) {
    throw describeException(Stage::WRITING, engine.getPath());
}

ExitCode conclude(const std::vector<NozzleStation>& stations, const NozzleOptions& options)
{
    const auto failed = std::count_if(stations.begin(), stations.end(),
                                      [](const NozzleStation& s) { return !s.station; });
    if (failed == 0) return GOOD;
    writeToStandardError("ketra: error: " + options.document + ": " + std::to_string(failed) +
                         " of " + std::to_string(stations.size()) + " stations have no solution\n");
    if (options.allowFailures) return GOOD;
    const bool refused = std::any_of(stations.begin(), stations.end(), [](const NozzleStation& s) {
        return !s.station && s.grade == "B";
    });
    return refused ? NOT_CONVERGED : SOME_FAILED;
}

} // namespace

ExitCode followNozzle(const NozzleOptions& options)
{
    requireCount(options.stations);
    Case engine(options.document, options.reading);
    Session session(options.session);
    engine.build();
    std::vector<NozzleStation> stations;
    {
        HeldMessages messages(session.reports());
        engine.solve(/*transport=*/false, messages);
        requireSolution(engine);
        requireSupersonicExit(engine);
        stations = stationsAlongNozzle(engine.getPerformance(), options.stations,
                                       options.reading.strict, messages);
        messages.recovered();
    }
    if (options.json != "-") {
        const Table table = Rows(stations, options.composition).table(options.english);
        writeToStandardOutput(session.withLineEnds(options.csv ? table.csv() : table.text()));
    }
    if (!options.json.empty()) writeToFile(options.json, jsonOf(engine, stations));
    session.finish();
    return conclude(stations, options);
}

} // namespace host
