// Prints the tables of docs/verification.md: how far the library is from the reference states, or
// with the argument --chambers or --nozzles how far chambers and nozzle exits are from the
// reference engines, or
// with --laws how the laws of equilibrium hold over random states; --failures lists
// those that do not converge or not close, and --stoichiometric counts what fails close to complete
// combustion. With --transport it prints how far the transport properties are.

#include <support/LawStatistics.h>
#include <support/Reactants.h>
#include <support/ReferenceChambers.h>
#include <support/ReferenceEngines.h>
#include <support/ReferenceStates.h>
#include <support/ReferenceTransport.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <cmath>
#include <cstdio>
#include <exception>
#include <map>
#include <string>

using namespace ketra_test;

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

/// One case: the largest deviation of each quantity over its stations without a blend, and one row
/// for each station with a blend.
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
            if (blend)
                printRow(name, own, found.blend ? "blend of two phases" : "melting point, no band");
            if (!beyond.empty())
                std::printf("| %s: beyond its limit:%s |\n", name.c_str(), beyond.c_str());
        } catch (const runtime::Exception& e) {
            std::printf("| %s: code %u, %s |\n", name.c_str(), e.getType(), e.getMessage());
        }
    }
    printRow(c.id, worst, c.holds("Air") ? "Air" : "");
}

/// One line for each state, deviations in per cent, with the major species that lack data.
void printTransport()
{
    std::printf("| case, station | T, K |");
    for (const char* name : transportNames) std::printf(" %s |", name);
    std::printf(" without data |\n|---|---|---|---|---|---|---|---|\n");
    for (const ReferenceTransport& reference : referenceTransport()) {
        const FoundTransport found = findTransport(reference);
        std::printf("| %s, %d%s | %.0f |", reference.id.c_str(), reference.station,
                    reference.isFrozen() ? ", frozen" : "", reference.T);
        for (const double deviation : deviationsOf(reference, found)) {
            if (std::isnan(deviation))
                std::printf(" |");
            else
                std::printf(" %.3f |", 100.0 * deviation);
        }
        for (const std::string& name : found.estimated) std::printf(" %s", name.c_str());
        std::printf(" |\n");
    }
}

void printStatistics(const char* name, const LawStatistics& s, bool lines)
{
    std::printf("| %s | |\n|---|---|\n", name);
    std::printf("| states, solved at given p and T | %d, %d |\n", s.states, s.solved);
    std::printf("| with a blend of two phases | %d |\n", s.blends);
    std::printf("| element balance, of the largest element | %.1e |\n", s.worst.balance);
    std::printf("| net charge, of the largest element | %.1e |\n", s.worst.charge);
    std::printf("| least amount, mol | %.1e |\n", s.worst.leastAmount);
    std::printf("| most by which a feasible change lowers G/(R T n) | %.1e |\n", -s.worst.descent);
    std::printf("| G against H - T S, U against H - p v, of R T | %.1e |\n", s.worst.energies);
    std::printf("| T of the five other problems, relative | %.1e |\n", s.worstClosing);
    std::printf("| the same with a blend | %.1e |\n", s.worstBlendClosing);
    std::printf("| problems that end at another T | %d |\n", s.notClosing);
    std::printf("| states that lack a condensed phase | %d |\n", s.missingPhases);
    for (const auto& [kind, count] : s.failures)
        std::printf("| no convergence: %s | %d |\n", kind.c_str(), count);
    if (lines)
        for (const std::string& line : s.lines) std::printf("%s\n", line.c_str());
}

/// States of given p and T on a grid of fuel shares around complete combustion.
void printStoichiometric(const char* oxidizer, const char* fuel, double least, double most)
{
    useShippedSpecies();
    int states = 0;
    int failures = 0;
    for (int i = 0; i < 50; ++i) {
        const double share = least + (most - least) * i / 50.0;
        const auto charge = mixtureOf({{oxidizer, 298.15, 1.0 - share}, {fuel, 298.15, share}});
        for (const double p : {5e4, 1e6, 2e7}) {
            for (double T = 650.0; T <= 1000.0; T += 50.0) {
                reaction::Equilibrium problem(*charge, true, false);
                problem.setPT(p, T);
                ++states;
                try {
                    problem.solve(false);
                } catch (const runtime::Exception&) {
                    ++failures;
                }
            }
        }
    }
    std::printf("| %s, %s | %.4f to %.4f | %d | %d |\n", fuel, oxidizer, least, most, states,
                failures);
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

} // namespace

int main(int argc, char** argv)
{
    try {
        const std::string option = argc > 1 ? argv[1] : "";
        if (option == "--transport") {
            printTransport();
            return 0;
        }
        if (option == "--chambers") {
            printChambers();
            return 0;
        }
        if (option == "--nozzles") {
            printNozzles();
            return 0;
        }
        if (option == "--laws" || option == "--failures") {
            const bool lines = option == "--failures";
            printStatistics("propellants", examinePropellants(1, 3000), lines);
            printStatistics("random elements", examineElements(1, 3000), lines);
            return 0;
        }
        if (option == "--stoichiometric") {
            std::printf(
                "| charge | mass fraction of fuel | states | failures |\n|---|---|---|---|\n");
            printStoichiometric("O2", "H2", 0.1105, 0.1136);
            printStoichiometric("O2", "CH4", 0.1961, 0.2041);
            printStoichiometric("Air", "Jet-A(L)", 0.0585, 0.0645);
            printStoichiometric("N2O4(L)", "CH6N2(L)", 0.2823, 0.2895);
            return 0;
        }
        std::printf("| case | T | p | rho | M | MW | cp | gamma_s | a | x | |\n");
        std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
        for (const ReferenceCase& c : referenceCases()) printCase(c);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
