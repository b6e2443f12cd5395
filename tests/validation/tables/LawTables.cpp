#include <validation/tables/Tables.h>

#include <support/LawStatistics.h>
#include <support/Reactants.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Mixture.h>

#include <cstdio>

namespace ketra_test {

namespace {

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

} // namespace

void printLaws(bool lines)
{
    printStatistics("propellants", examinePropellants(1, 3000), lines);
    printStatistics("random elements", examineElements(1, 3000), lines);
}

void printStoichiometric()
{
    std::printf("| charge | mass fraction of fuel | states | failures |\n|---|---|---|---|\n");
    printStoichiometric("O2", "H2", 0.1105, 0.1136);
    printStoichiometric("O2", "CH4", 0.1961, 0.2041);
    printStoichiometric("Air", "Jet-A(L)", 0.0585, 0.0645);
    printStoichiometric("N2O4(L)", "CH6N2(L)", 0.2823, 0.2895);
}

} // namespace ketra_test
