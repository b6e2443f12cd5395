#include <validation/tables/Tables.h>

#include <support/ReferenceChambers.h>
#include <support/ReferenceEngines.h>
#include <support/ReferenceTransport.h>
#include <validation/published/Atmosphere.h>
#include <validation/published/DeliveredEngines.h>
#include <validation/published/Flames.h>
#include <validation/published/Gases.h>
#include <validation/published/Heats.h>
#include <validation/published/StandardStates.h>
#include <validation/tables/Agreement.h>

#include <ketra/runtime/Exception.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace ketra_test {

namespace {

constexpr double nowhere = std::numeric_limits<double>::infinity(); // error of what is not found

constexpr double posed = 1e-12; // limit of the pressure that a chamber is posed with

/// The examples of RP-1311 are named ex01 to ex14.
bool isExample(const ReferenceCase& c) { return c.id.rfind("ex", 0) == 0; }

/// What a state is posed with, which agrees whatever the solution.
bool isGiven(const ReferenceState& state, const std::string& quantity)
{
    static const std::map<std::string, std::string> targets = {
        {"TP", "T p"}, {"HP", "p"}, {"SP", "p s"}, {"TV", "T rho"}, {"UV", "rho u"}};
    return holdsWord(targets.at(state.problem), quantity);
}

/// The set that a quantity of a state is counted in.
std::size_t setOf(const std::string& quantity)
{
    if (quantity == "h" || quantity == "u" || quantity == "s") return 1;
    if (quantity == "M" || quantity == "MW" || quantity == "cp" || quantity == "gamma_s") return 2;
    return quantity == "x" ? 3 : 0;
}

void printStateRows(bool examples)
{
    const std::string whose = examples ? "RP-1311 examples: " : "reference engines: ";
    std::array<Agreement, 5> sets = {
        Agreement{whose + "T, p, density, speed of sound", "(none)", Agreement::NUMBER},
        Agreement{whose + "enthalpy, energy, entropy", "(none)", Agreement::NUMBER},
        Agreement{whose + "molar masses, cp, gamma_s", "(none)", Agreement::NUMBER},
        Agreement{whose + "mole fractions, largest of a state", "(none)", Agreement::NUMBER},
        Agreement{whose + "T and fractions, melting", "(none)", Agreement::NUMBER}};
    for (const ReferenceCase& c : referenceCases()) {
        if (isExample(c) != examples) continue;
        for (const ReferenceState& state : c.states) {
            const FoundState found = findState(c, state, typeOf(state), true);
            const bool melting = found.blend || state.twoPhase;
            for (const Deviation& d : deviationsOf(c, state, found))
                if (!isGiven(state, d.quantity)) sets[melting ? 4 : setOf(d.quantity)].add(d);
        }
    }
    for (const Agreement& set : sets) std::printf("%s\n", set.row().c_str());
}

void addExits(std::map<bool, Agreement>& sets, const ReferenceEngine& engine,
              performance::equilibrium::Chamber& chamber, const ReferenceStation& station)
{
    for (const bool byPressure : waysToPose(station)) {
        Agreement& set = sets.at(byPressure);
        try {
            for (const Deviation& d : deviationsOf(chamber, engine, station, byPressure))
                set.add(d);
        } catch (const runtime::Exception&) {
            set.add(nowhere, limitsOf(engine, station, byPressure, false).T);
        }
    }
}

void printEngineRows()
{
    Agreement stations("chambers and throats: T, p, velocity, c*", "--chambers", Agreement::NUMBER);
    std::map<bool, Agreement> exits = {
        {true, {"nozzle exits at their pressure: T, velocity", "--nozzles", Agreement::NUMBER}},
        {false,
         {"nozzle exits at their area ratio: T, p, impulses", "--nozzles", Agreement::NUMBER}}};
    for (const ReferenceEngine& engine : referenceEngines()) {
        const auto chamber = chamberOf(engine);
        for (const ReferenceStation& row : engine.stations) {
            if (const auto station = chamberStationOf(row.place))
                for (const Deviation& d : chamberDeviationsOf(*chamber, engine, row, *station))
                    if (d.limit > posed) stations.add(d);
            if (row.place == "exit") addExits(exits, engine, *chamber, row);
        }
    }
    std::printf("%s\n%s\n%s\n", stations.row().c_str(), exits.at(true).row().c_str(),
                exits.at(false).row().c_str());
}

void printTransportRow()
{
    constexpr double limit = 0.03; // where all major species have data on both sides
    Agreement set("combustion gas: viscosity, conductivities, Prandtl numbers", "--transport",
                  Agreement::PERCENT);
    for (const ReferenceTransport& reference : referenceTransport())
        for (const double deviation : deviationsOf(reference, findTransport(reference)))
            if (!std::isnan(deviation)) set.add(deviation, limit);
    std::printf("%s\n", set.row().c_str());
}

/// One row for each quantity of the figures.
void printRows(const std::string& name, const std::string& command, Agreement::Style style,
               const std::vector<PublishedFigure>& figures)
{
    std::vector<std::string> order;
    std::map<std::string, Agreement> sets;
    for (const PublishedFigure& figure : figures) {
        const std::string quantity = figure.quantity.substr(0, figure.quantity.rfind(','));
        const auto [set, isNew] =
            sets.try_emplace(quantity, name + ": " + quantity, command, style);
        if (isNew) order.push_back(quantity);
        set->second.add(figure);
    }
    for (const std::string& quantity : order) std::printf("%s\n", sets.at(quantity).row().c_str());
}

} // namespace

void printSummary()
{
    std::printf("| set | figures | beyond | largest error | mean error | limit | option |\n"
                "|---|---:|---:|---:|---:|---:|---|\n");
    printStateRows(/*examples=*/true);
    printStateRows(/*examples=*/false);
    printEngineRows();
    printTransportRow();
    printRows("gases", "--gases", Agreement::PERCENT, gasFigures());
    printRows("key values", "--standard-state", Agreement::SHARE, keyValues());
    printRows("functions of T", "--standard-state", Agreement::PERCENT, standardStates());
    printRows("flames in air", "--flames", Agreement::PERCENT, flameFigures());
    printRows("heats of explosion", "--explosives", Agreement::PERCENT, heatFigures());
    printRows("atmosphere", "--atmosphere", Agreement::PERCENT, atmosphereFigures());
    printRows("engines as built, corrected", "--engines", Agreement::PERCENT, engineFigures());
}

} // namespace ketra_test
