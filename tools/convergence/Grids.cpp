#include "Grids.h"

#include "Certify.h"
#include "Parallel.h"

#include <support/EngineSweep.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/runtime/Exception.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <exception>

namespace convergence {

using ketra_test::Reactant;

namespace {

/// A mixture by moles of its reactants, at one state.
struct GridState {
    std::vector<Reactant> reactants;
    double T;  // K
    double p;  // Pa
    bool ions; // among the products

    std::string name() const
    {
        std::string text;
        for (const Reactant& reactant : reactants) {
            char part[64];
            std::snprintf(part, sizeof part, "%s %.6g ", reactant.name.c_str(), reactant.fraction);
            text += part;
        }
        char state[64];
        std::snprintf(state, sizeof state, "%.6g K %.6g Pa", T, p);
        return text + state;
    }
};

constexpr double atmosphere = 101325.0; // Pa

/// A reactant is left out where there is none of it.
void add(std::vector<Reactant>& reactants, const char* name, double moles)
{
    if (moles > 0.0) reactants.push_back({name, 298.15, moles});
}

void normalise(std::vector<Reactant>& reactants)
{
    double sum = 0.0;
    for (const Reactant& reactant : reactants) sum += reactant.fraction;
    for (Reactant& reactant : reactants) reactant.fraction /= sum;
}

std::vector<GridState> graphiteStates()
{
    constexpr int steps = 200;
    std::vector<GridState> states;
    for (const double T : {300.0, 600.0, 923.0, 2000.0})
        for (int c = 0; c <= steps; ++c)
            for (int h = 0; c + h <= steps; ++h) {
                GridState state{{}, T, atmosphere, false};
                add(state.reactants, "C(gr)", c);
                add(state.reactants, "H2", h / 2.0);
                add(state.reactants, "O2", (steps - c - h) / 2.0);
                normalise(state.reactants);
                states.push_back(state);
            }
    return states;
}

std::vector<GridState> ionStates()
{
    std::vector<GridState> states;
    for (int T = 2000; T <= 20000; T += 10)
        states.push_back({{{"Ar", 298.15, 0.5}, {"N2", 298.15, 0.25}, {"H2", 298.15, 0.25}},
                          static_cast<double>(T),
                          atmosphere,
                          true});
    return states;
}

/// A metal with \p shares of the oxygen atoms of its oxide, at every kelvin.
void addOxides(std::vector<GridState>& states, const char* metal, double oxygenAtoms,
               const std::vector<double>& shares)
{
    for (const double share : shares)
        for (int T = 300; T <= 6000; ++T) {
            GridState state{{}, static_cast<double>(T), atmosphere, false};
            add(state.reactants, metal, 1.0);
            add(state.reactants, "O2", share * oxygenAtoms / 2.0);
            normalise(state.reactants);
            states.push_back(state);
        }
}

struct Oxide {
    const char* name;
    const char* metal;
    double oxygenAtoms; // for one of the metal
};
constexpr std::array<Oxide, 4> oxides{{
    {"Fe-O", "Fe(a)", 1.5},
    {"Al-O", "AL(cr)", 1.5},
    {"B-O", "B(b)", 1.5},
    {"Mg-O", "Mg(cr)", 1.0},
}};

std::vector<GridState> statesOf(const std::string& name)
{
    if (name == "graphite") return graphiteStates();
    if (name == "ions") return ionStates();
    std::vector<GridState> states;
    for (const Oxide& oxide : oxides) {
        if (name == oxide.name)
            addOxides(states, oxide.metal, oxide.oxygenAtoms, {0.0, 0.5, 0.99, 1.01, 2.0});
        if (name == "oxides") addOxides(states, oxide.metal, oxide.oxygenAtoms, {1.0});
    }
    return states;
}

Verdict failure(const std::string& what)
{
    const std::string& text = ketra_test::cause().text;
    Verdict verdict;
    verdict.finding = saysOutsideData(text) ? Finding::REFUSED : Finding::FAILED;
    verdict.kind = what + ", " + ketra_test::kindOf(text);
    verdict.detail = what + ", " + text;
    return verdict;
}

/// The equilibrium alone, without the hint on condensed phases: next to the melting point of a
/// metal there may be hardly a gas, and no derivatives of its amount.
Verdict solveState(const GridState& state, Method method)
{
    ketra_test::cause() = {};
    try {
        const auto charge = ketra_test::mixtureOf(state.reactants, thermo::_Species::MOLE_FRACTION);
        reaction::Equilibrium problem(*charge, /*multiphase=*/true, state.ions);
        problem.setPersistent(method.persistent);
        problem.setWarmStart(method.warmStart);
        problem.setPT(state.p, state.T);
        problem.solve(/*expectCondensed=*/false);
        return certify(problem);
    } catch (const runtime::Exception& e) {
        return failure("code " + std::to_string(e.getType()));
    } catch (const std::exception& e) {
        return failure(e.what());
    }
}

} // namespace

const std::vector<Grid>& grids()
{
    static const std::vector<Grid> all{
        {"graphite", "C-H-O with graphite, all compositions, 300, 600, 923, 2,000 K"},
        {"ions", "Ar, N2, H2 with ions, 2,000 to 20,000 K"},
        {"Fe-O", "Fe-O, 300 to 6,000 K"},
        {"Al-O", "Al-O, 300 to 6,000 K"},
        {"B-O", "B-O, 300 to 6,000 K"},
        {"Mg-O", "Mg-O, 300 to 6,000 K"},
        {"oxides", "Fe2O3, Al2O3, B2O3, MgO alone, 300 to 6,000 K"},
    };
    return all;
}

Tally solveGrid(const std::string& name, const Options& options)
{
    const std::vector<GridState> states = statesOf(name);
    const std::size_t step = options.coarseness;
    const std::size_t count = (states.size() + step - 1) / step;
    std::vector<Verdict> verdicts(count);
    forEach(count, options.threads,
            [&](std::size_t i) { verdicts[i] = solveState(states[i * step], options.method); });
    Tally tally;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string state = states[i * step].name();
        tally.add(verdicts[i], state);
        if (options.list && !isCertified(verdicts[i].finding))
            std::printf("    %s: %s: %s\n", name.c_str(), state.c_str(),
                        verdicts[i].detail.c_str());
    }
    return tally;
}

} // namespace convergence
