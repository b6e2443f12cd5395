#pragma once

#include <support/RandomMixtures.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ketra_test {

/// How the laws hold over many random states.
struct LawStatistics {
    int states = 0; // posed
    int solved = 0; // at given pressure and temperature
    int blends = 0; // of them with a blend of two phases
    LawFindings worst;
    int missingPhases = 0; // states that lack a condensed phase which would lower the Gibbs energy
    double worstClosing = 0.0;           // of T, problems of other types against the state
    double worstBlendClosing = 0.0;      // the same where a blend is present
    int notClosing = 0;                  // problems that ended at another temperature
    std::map<char, int> grades;          // of all solutions
    int unblendedB = 0;                  // solutions of grade B without a blend of two phases
    std::map<std::string, int> failures; // by type of problem, temperature and code
    std::vector<std::string> lines;      // what failed, one line each
};

inline const char* nameOf(reaction::Equilibrium::PROCESS_TYPE type)
{
    static const char* const names[] = {"PH", "PS", "PT", "VU", "VS", "VT"};
    return names[type];
}

inline std::string describe(const RandomState& state)
{
    std::string text;
    for (const Reactant& reactant : state.reactants)
        append(text, "%s %.4f ", reactant.name.c_str(), reactant.fraction);
    append(text, "p=%.4g Pa T=%.1f K%s", state.p, state.T, state.ions ? " ions" : "");
    return text;
}

/// A metal burns to condensed products, which are then looked for from the start.
inline bool expectsCondensed(const RandomState& state)
{
    for (const Reactant& reactant : state.reactants)
        if (reactant.name == "AL(cr)") return true;
    return false;
}

/// Solves a state at its p and T, holds the solution against the laws and comes back to it from its
/// enthalpy, entropy, internal energy and volume.
inline void examine(const RandomState& state, StateGenerator& random, LawStatistics& statistics)
{
    using reaction::Equilibrium;
    const auto charge = mixtureOf(state.reactants);
    const bool expect = expectsCondensed(state);
    ++statistics.states;
    const auto fails = [&](Equilibrium& problem) {
        try {
            problem.solve(expect);
            const auto certificate = problem.certificate();
            ++statistics.grades[letter(certificate.grade)];
            if (certificate.grade == verification::Grade::B && !certificate.blended)
                ++statistics.unblendedB;
            if (certificate.grade == verification::Grade::F)
                statistics.lines.push_back(std::string(nameOf(problem.getProcessType())) +
                                           " is F: " + certificate.reason + ": " + describe(state));
            return false;
        } catch (const runtime::Exception& e) {
            std::string kind;
            append(kind, "%s, %s, code %u", nameOf(problem.getProcessType()),
                   state.T < 600.0    ? "below 600 K"
                   : state.T < 1000.0 ? "600 to 1000 K"
                                      : "above 1000 K",
                   e.getType());
            ++statistics.failures[kind];
            statistics.lines.push_back(kind + ": " + describe(state));
            return true;
        }
    };
    Equilibrium problem(*charge, true, state.ions);
    problem.setPT(state.p, state.T);
    if (fails(problem)) return;
    ++statistics.solved;

    const LawFindings found = findingsOf(problem, state.p, random);
    LawFindings& worst = statistics.worst;
    worst.balance = std::max(worst.balance, found.balance);
    worst.charge = std::max(worst.charge, found.charge);
    worst.leastAmount = std::min(worst.leastAmount, found.leastAmount);
    worst.descent = std::min(worst.descent, found.descent);
    if (found.blend)
        ++statistics.blends;
    else // the phases of a blend stand at other temperatures than the rest
        worst.energies = std::max(worst.energies, found.energies);
    if (found.drive < -1e-4) {
        ++statistics.missingPhases;
        statistics.lines.push_back(found.missing + " is missing: " + describe(state));
    }

    const double v = problem.getNg() * thermo::gasConstant * state.T / (state.p * charge->mm());
    for (const auto type :
         {Equilibrium::PH, Equilibrium::PS, Equilibrium::VT, Equilibrium::VU, Equilibrium::VS}) {
        // Transition products have no internal energy, which leaves volume problems without sense.
        if (type >= Equilibrium::VU && found.transition) continue;
        Equilibrium back(*charge, true, state.ions);
        switch (type) {
        case Equilibrium::PH:
            back.setPHspec(state.p, problem.getHspec());
            break;
        case Equilibrium::PS:
            back.setPSspec(state.p, problem.getSspec());
            break;
        case Equilibrium::VT:
            back.setVT(v, state.T);
            break;
        case Equilibrium::VU:
            back.setVUspec(v, problem.getUspec());
            break;
        case Equilibrium::VS:
            back.setVSspec(v, problem.getSspec());
            break;
        case Equilibrium::PT:
            break;
        }
        if (fails(back)) continue;
        // At given T the Gibbs energy tells whether the state is the same.
        const double miss =
            type == Equilibrium::VT
                ? std::abs(back.getGspec() - problem.getGspec()) * charge->mm() / problem.getRT()
                : std::abs(back.getT() / state.T - 1.0);
        if (found.blend && miss < 2e-2)
            statistics.worstBlendClosing = std::max(statistics.worstBlendClosing, miss);
        else if (miss <
                 5e-5) // a run may end by its period detector, which looks at 1e-5 to 1e-4 of T
            statistics.worstClosing = std::max(statistics.worstClosing, miss);
        else {
            ++statistics.notClosing;
            statistics.lines.push_back(std::string(nameOf(type)) +
                                       " ends elsewhere: " + describe(state));
        }
    }
}

inline LawStatistics examinePropellants(unsigned seed, int count)
{
    useShippedSpecies();
    StateGenerator random(seed);
    LawStatistics statistics;
    for (int i = 0; i < count; ++i) examine(random.propellant(), random, statistics);
    return statistics;
}

inline LawStatistics examineElements(unsigned seed, int count)
{
    useShippedSpecies();
    StateGenerator random(seed);
    LawStatistics statistics;
    for (int i = 0; i < count; ++i) examine(random.elements(), random, statistics);
    return statistics;
}

} // namespace ketra_test
