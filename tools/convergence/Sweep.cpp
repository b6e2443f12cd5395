#include "Sweep.h"

#include "Parallel.h"

#include <support/RandomEngines.h>

#include <cstdio>
#include <string>

namespace convergence {

using ketra_test::RandomEngine;

namespace {

Verdict solve(const RandomEngine& drawn, Method method)
{
    const ketra_test::EngineCase engine = caseOf(drawn, /*frozen=*/false);
    Verdict verdict = withExitRange(engine, solveEngine(engine, method, /*optimum=*/false));
    if (isCertified(verdict.finding))
        verdict.range = exitRange(verdict.exitT);
    else if (verdict.finding == Finding::FALSE_SUCCESS)
        verdict.range = exitRange(engine);
    return verdict;
}

} // namespace

Sweep sweepEngines(std::size_t count, const Options& options)
{
    const std::vector<RandomEngine> drawn = ketra_test::randomEngines(options.seed, count);
    std::vector<Verdict> verdicts(count);
    forEach(count, options.threads,
            [&](std::size_t i) { verdicts[i] = solve(drawn[i], options.method); });
    Sweep sweep;
    sweep.byPropellant.resize(ketra_test::enginePropellants().size());
    for (std::size_t i = 0; i < count; ++i) {
        const Verdict& verdict = verdicts[i];
        const std::string name = std::to_string(i);
        sweep.all.add(verdict, name);
        sweep.byExit[static_cast<std::size_t>(verdict.range)].add(verdict, name);
        sweep.byPropellant[drawn[i].propellant].add(verdict, name);
        if (options.list && !isCertified(verdict.finding))
            std::printf("    %zu, %s: %s\n", i, describe(caseOf(drawn[i], false)).c_str(),
                        verdict.detail.c_str());
    }
    return sweep;
}

void Sweep::print() const
{
    Tally::printHead("engines of the sweep");
    for (std::size_t i = 0; i < byExit.size(); ++i)
        byExit[i].printRow(nameOf(static_cast<ExitRange>(i)));
    for (std::size_t i = 0; i < byPropellant.size(); ++i)
        byPropellant[i].printRow(ketra_test::enginePropellants()[i].name);
    all.printRow("all");
    all.printKinds("engines of the sweep");
    std::printf("\n");
}

} // namespace convergence
