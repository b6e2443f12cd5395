#include "Parallel.h"
#include "Sweep.h"

#include <support/EngineSweep.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace ketra_test;

namespace convergence {

namespace {

/// All outcomes of one kind of flow.
class Totals
{
public:
    void add(const Outcome& outcome)
    {
        ++engines;
        if (!outcome.solved) {
            ++failures[outcome.failure];
            unclean += !outcome.clean;
            return;
        }
        ++solved;
        blends += outcome.blends;
        misplaced += outcome.misplaced;
        throat = std::max(throat, outcome.throat);
        chamber = std::max(chamber, outcome.chamber);
        laws.worsen(outcome.laws);
        furtherSections += outcome.furtherSections;
        furtherFailures += outcome.furtherFailures;
        for (const Violation& violation : outcome.violations) {
            auto& [count, worst] = violations[violation.law + ", " + violation.where];
            ++count;
            worst = std::max(worst, violation.miss);
        }
    }

    void print(const char* flow) const
    {
        std::printf("| %s | |\n|---|---|\n", flow);
        std::printf("| engines, solved | %d, %d |\n", engines, solved);
        for (const auto& [kind, count] : failures)
            std::printf("| %s | %d |\n", kind.c_str(), count);
        std::printf("| failures without a message or of another family | %d |\n", unclean);
        std::printf("| further sections, failed | %d, %d |\n", furtherSections, furtherFailures);
        std::printf("| sections with a blend of two phases | %d |\n", blends);
        std::printf(
            "| sections with a misplaced phase, a condensed product outside its range | %d |\n",
            misplaced);
        std::printf("| Mach number of the throat against 1 | %.1e |\n", throat);
        std::printf("| enthalpy of the injection plane against the propellant | %.1e |\n", chamber);
        std::printf("| total enthalpy against the injection plane, neither of these | %.1e |\n",
                    laws.enthalpy);
        std::printf("| entropy against the chamber end, neither of these | %.1e |\n", laws.entropy);
        std::printf("| elements, of the largest, neither of these | %.1e |\n", laws.elements);
        std::printf("| mass flow against the throat, neither of these | %.1e |\n\n", laws.flux);

        std::printf("| %s: beyond its limit | times | at most |\n|---|---|---|\n", flow);
        for (const auto& [law, most] : violations)
            std::printf("| %s | %d | %.1e |\n", law.c_str(), most.first, most.second);
        std::printf("\n");
    }

private:
    int engines = 0, solved = 0, unclean = 0, blends = 0, misplaced = 0;
    int furtherSections = 0, furtherFailures = 0;
    std::map<std::string, int> failures;
    std::map<std::string, std::pair<int, double>> violations;
    double throat = 0.0, chamber = 0.0;
    StationLaws laws;
};

void printComparison(const std::vector<EngineOutcome>& outcomes)
{
    int compared = 0;
    double impulse = 1.0, velocity = 1.0;
    for (const EngineOutcome& outcome : outcomes) {
        if (!outcome.compared) continue;
        ++compared;
        impulse = std::min(impulse, outcome.impulseAhead);
        velocity = std::min(velocity, outcome.velocityAhead);
    }
    std::printf("| shifting against frozen | |\n|---|---|\n| engines compared | %d |\n", compared);
    std::printf("| vacuum impulse at the same area ratio, least gain | %.1e |\n", impulse);
    std::printf("| velocity at the same pressure, least gain | %.1e |\n\n", velocity);
}

void printPropellants(const std::vector<RandomEngine>& drawn,
                      const std::vector<EngineOutcome>& outcomes)
{
    std::printf("| propellant | engines | shifting solved | frozen solved |\n|---|---|---|---|\n");
    for (std::size_t kind = 0; kind < enginePropellants().size(); ++kind) {
        int engines = 0, shifting = 0, frozen = 0;
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            if (drawn[i].propellant != kind) continue;
            ++engines;
            shifting += outcomes[i].shifting.solved;
            frozen += outcomes[i].frozen.solved;
        }
        std::printf("| %s | %d | %d | %d |\n", enginePropellants()[kind].name, engines, shifting,
                    frozen);
    }
    std::printf("\n");
}

/// A line for each flow with the law that is missed most.
void printViolations(const RandomEngine& drawn, std::size_t i, const char* flow,
                     const Outcome& outcome)
{
    const auto& all = outcome.violations;
    if (all.empty()) return;
    const auto worst = std::max_element(
        all.begin(), all.end(), [](const auto& a, const auto& b) { return a.miss < b.miss; });
    std::printf("    %zu %s: %s: %zu, %s\n", i, flow, describe(drawn).c_str(), all.size(),
                worst->text().c_str());
}

} // namespace

void printLaws(std::size_t count, const Options& options)
{
    const std::vector<RandomEngine> drawn = randomEngines(options.seed, count);
    std::vector<EngineOutcome> outcomes(count);
    const auto [persistent, warmStart] = options.method;
    forEach(count, options.threads, [&](std::size_t i) {
        outcomes[i] = examine(drawn[i], {persistent, warmStart});
    });
    Totals shifting, frozen;
    for (const EngineOutcome& outcome : outcomes) {
        shifting.add(outcome.shifting);
        frozen.add(outcome.frozen);
    }
    shifting.print("shifting equilibrium");
    frozen.print("frozen");
    printComparison(outcomes);
    printPropellants(drawn, outcomes);
    for (std::size_t i = 0; options.list && i < count; ++i) {
        printViolations(drawn[i], i, "shifting", outcomes[i].shifting);
        printViolations(drawn[i], i, "frozen", outcomes[i].frozen);
    }
}

} // namespace convergence
