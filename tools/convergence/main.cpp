// Solves random engines and grids of states as a host does, judges every result by its certificate
// and tells what fails. See usage in Options.cpp.

#include "Engines.h"
#include "Grids.h"
#include "Options.h"
#include "Parallel.h"
#include "RandomCases.h"
#include "Sweep.h"
#include "Tally.h"

#include <support/EngineSweep.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace convergence;

namespace {

constexpr std::size_t usualCases = 100'000, usualEngines = 2'000;

// The least shares of certified results among those that are not refused, in percent.
constexpr double casesDemanded = 99.9;
constexpr double warmExitsDemanded = 99.8; // above 300 K
constexpr double coldExitsDemanded = 85.0; // 200 to 300 K
constexpr double gridsDemanded = 100.0;

/// What is demanded of the results, and what is missed.
class Demands
{
public:
    explicit Demands(const Options& options) : demanding(!options.isLiteral()) {}

    void share(const Tally& tally, double percent, const std::string& of)
    {
        if (100.0 * tally.share() < percent) miss(of + ": less than the share that is demanded");
        none(tally.count(Finding::FALSE_SUCCESS), of + ": false successes");
    }
    void none(std::size_t count, const std::string& what)
    {
        if (count > 0) miss(what);
    }
    bool met() const { return missed.empty(); }
    void print() const
    {
        for (const std::string& what : missed) std::printf("MISSED: %s\n", what.c_str());
    }

private:
    void miss(const std::string& what)
    {
        if (demanding) missed.push_back(what);
    }

    bool demanding;
    std::vector<std::string> missed;
};

void runCases(const Options& options, Demands& demands)
{
    const std::size_t count = options.cases.value_or(usualCases);
    std::vector<RandomCase> drawn(count);
    std::vector<Verdict> verdicts(count);
    forEach(count, options.threads, [&](std::size_t i) {
        drawn[i] = drawCase(options.seed, i, options.suite);
        const Verdict verdict =
            solveEngine(drawn[i].engine, options.method, drawn[i].flow == Flow::OPTIMUM);
        // With all defaults every fifth case fails, and nothing is demanded.
        verdicts[i] = options.isLiteral() ? verdict : withExitRange(drawn[i].engine, verdict);
    });
    std::array<std::array<Tally, flowCount>, familyCount> tallies;
    std::array<Tally, familyCount> families;
    Tally all;
    for (std::size_t i = 0; i < count; ++i) {
        const auto& [family, flow, engine] = drawn[i];
        const std::string name = std::to_string(i);
        const auto row = static_cast<std::size_t>(family);
        tallies[row][static_cast<std::size_t>(flow)].add(verdicts[i], name);
        families[row].add(verdicts[i], name);
        all.add(verdicts[i], name);
        if (options.list && !isCertified(verdicts[i].finding))
            std::printf("    %zu, %s, %s: %s: %s\n", i, nameOf(family), nameOf(flow),
                        describe(engine).c_str(), verdicts[i].detail.c_str());
    }
    Tally::printHead("random cases");
    for (std::size_t row = 0; row < families.size(); ++row) {
        const std::string family = nameOf(static_cast<Family>(row));
        for (std::size_t k = 0; k < flowCount; ++k)
            if (tallies[row][k].cases() > 0)
                tallies[row][k].printRow(family + ", " + nameOf(static_cast<Flow>(k)));
        families[row].printRow(family);
    }
    all.printRow("all");
    all.printKinds("random cases");
    std::printf("\n");
    demands.share(all, casesDemanded, "random cases");
}

/// One case with all that is known of it.
void runCase(const Options& options, std::size_t i)
{
    const RandomCase drawn = drawCase(options.seed, i, options.suite);
    const Verdict verdict = withExitRange(
        drawn.engine, solveEngine(drawn.engine, options.method, drawn.flow == Flow::OPTIMUM));
    Tally tally;
    tally.add(verdict, describe(drawn.engine));
    Tally::printHead("case");
    tally.printRow(std::to_string(i));
    std::printf("\n%s, %s: %s\n%s\nexit at %.6f K\n", nameOf(drawn.family), nameOf(drawn.flow),
                describe(drawn.engine).c_str(), verdict.detail.c_str(), verdict.exitT);
}

void runGrid(const Grid& grid, const Options& options, Demands& demands)
{
    const Tally tally = solveGrid(grid.name, options);
    Tally::printHead("grid");
    tally.printRow(grid.what);
    tally.printKinds(grid.name);
    std::printf("\n");
    demands.share(tally, gridsDemanded, grid.name);
}

void runEngines(const Options& options, Demands& demands)
{
    const std::size_t count = options.engines.value_or(usualEngines);
    if (options.laws) {
        printLaws(count, options);
        return;
    }
    const Sweep sweep = sweepEngines(count, options);
    sweep.print();
    demands.share(sweep.of(ExitRange::ABOVE_300), warmExitsDemanded, "exits above 300 K");
    demands.share(sweep.of(ExitRange::FROM_200_TO_300), coldExitsDemanded, "exits at 200 to 300 K");
    demands.none(sweep.all.count(Finding::FALSE_SUCCESS), "engines: false successes");
}

/// Runs a suite and tells how long it took.
template <class Suite> void run(const char* name, Suite suite)
{
    const auto start = std::chrono::steady_clock::now();
    suite();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %.1f s\n", name, elapsed.count());
}

/// \returns whether all demands are met. \throws std::invalid_argument for an unknown suite
bool runAll(const Options& options)
{
    const std::string& suite = options.suite;
    const auto isAsked = [&](const char* name) { return suite.empty() || suite == name; };
    Demands demands(options);
    bool known = false;
    const auto runIf = [&](bool asked, const char* name, auto body) {
        if (!asked) return;
        known = true;
        run(name, body);
    };
    runIf(isAsked("cases") || isPartOfCases(suite), "cases", [&] { runCases(options, demands); });
    runIf(isAsked("engines"), "engines", [&] { runEngines(options, demands); });
    for (const Grid& grid : grids())
        runIf(isAsked(grid.name), grid.name, [&] { runGrid(grid, options, demands); });
    if (!known) throw std::invalid_argument("unknown suite " + suite);
    demands.print();
    return demands.met();
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc == 2 && std::string_view(argv[1]) == "--help") {
            std::printf("%s", usage);
            return 0;
        }
        const Options options = parse(argc, argv);
        ketra_test::useShippedSpecies();
        const ketra_test::CauseLog log;
        if (options.only) {
            runCase(options, *options.only);
            return 0;
        }
        return runAll(options) ? 0 : 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
}
