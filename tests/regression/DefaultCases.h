#pragma once

#include <support/EngineCase.h>
#include <support/RandomMixtures.h>

#include <ketra/reaction/Equilibrium.h>

#include <charconv>
#include <cstddef>
#include <string>
#include <vector>

// The engines and equilibria whose results with all defaults are kept bit for bit. Every number is
// drawn and then shortened to five digits, so that the cases are the same with every mathematical
// library.

namespace ketra_test {

/// \p x to five decimal digits.
inline double shortened(double x)
{
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, x, std::chars_format::scientific, 4).ptr;
    double result = 0.0;
    std::from_chars(text, end, result);
    return result;
}

namespace detail {

struct Charge {
    const char* name;
    Stream oxidizer, fuel;
};

inline const std::vector<Charge>& ordinaryCharges()
{
    static const std::vector<Charge> all{
        {"LOX/LH2", {{"O2(L)", 90.17, 1.0}}, {{"H2(L)", 20.27, 1.0}}},
        {"LOX/RP-1", {{"O2(L)", 90.17, 1.0}}, {{"RP-1", 298.15, 1.0}}},
        {"LOX/methane", {{"O2(L)", 90.17, 1.0}}, {{"CH4(L)", 111.643, 1.0}}},
        {"LOX/ethanol", {{"O2(L)", 90.17, 1.0}}, {{"C2H5OH(L)", 298.15, 1.0}}},
        {"LOX/ammonia", {{"O2(L)", 90.17, 1.0}}, {{"NH3(L)", 239.72, 1.0}}},
        {"N2O4/MMH", {{"N2O4(L)", 298.15, 1.0}}, {{"CH6N2(L)", 298.15, 1.0}}},
        {"N2O4/hydrazine", {{"N2O4(L)", 298.15, 1.0}}, {{"N2H4(L)", 298.15, 1.0}}},
        {"N2O4/UDMH", {{"N2O4(L)", 298.15, 1.0}}, {{"C2H8N2(L),UDMH", 298.15, 1.0}}},
        {"peroxide/RP-1",
         {{"H2O2(L)", 298.15, 0.9}, {"H2O(L)", 298.15, 0.1}},
         {{"RP-1", 298.15, 1.0}}},
        {"N2O/HTPB", {{"N2O", 298.15, 1.0}}, {{"HTPB", 298.15, 1.0}}},
        {"air/kerosene", {{"Air", 298.15, 1.0}}, {{"Jet-A(L)", 298.15, 1.0}}},
    };
    return all;
}

/// Charges with condensed products.
inline const std::vector<Charge>& condensedCharges()
{
    static const std::vector<Charge> all{
        {"AP/HTPB+Al",
         {{"NH4CLO4(I)", 298.15, 1.0}},
         {{"HTPB", 298.15, 0.4}, {"AL(cr)", 298.15, 0.6}}},
        {"AP/HTPB", {{"NH4CLO4(I)", 298.15, 1.0}}, {{"HTPB", 298.15, 1.0}}},
        {"LOX/B", {{"O2(L)", 90.17, 1.0}}, {{"B(b)", 298.15, 0.5}, {"H2(L)", 20.27, 0.5}}},
        {"peroxide/Be",
         {{"H2O2(L)", 298.15, 1.0}},
         {{"Be(a)", 298.15, 0.4}, {"N2H4(L)", 298.15, 0.6}}},
        {"N2O4/Al",
         {{"N2O4(L)", 298.15, 1.0}},
         {{"AL(cr)", 298.15, 0.3}, {"N2H4(L)", 298.15, 0.7}}},
        {"LOX/Mg", {{"O2(L)", 90.17, 1.0}}, {{"Mg(cr)", 298.15, 0.5}, {"RP-1", 298.15, 0.5}}},
        {"LOX/Si", {{"O2(L)", 90.17, 1.0}}, {{"Si(cr)", 298.15, 0.3}, {"CH4(L)", 111.643, 0.7}}},
        {"ClF5/Li", {{"CLF5", 298.15, 1.0}}, {{"Li(cr)", 298.15, 0.3}, {"N2H4(L)", 298.15, 0.7}}},
        {"F2/H2", {{"F2(L)", 85.02, 1.0}}, {{"H2(L)", 20.27, 1.0}}},
        {"KClO4/Al", {{"KCLO4(cr)", 298.15, 1.0}}, {{"AL(cr)", 298.15, 1.0}}},
    };
    return all;
}

} // namespace detail

constexpr std::size_t defaultEngineCount = 500;

/// Of every ten engines three of the usual kind, one each frozen, with a contraction, with a mass
/// flux, throttled and with a flow that may separate, and two with condensed products; every
/// seventh has ions.
inline std::vector<EngineCase> defaultEngines()
{
    StateGenerator random(5);
    const auto drawn = [&](double from, double to) {
        return shortened(random.logUniform(from, to));
    };
    std::vector<EngineCase> engines;
    for (std::size_t i = 0; i < defaultEngineCount; ++i) {
        const std::size_t place = i % 10;
        const bool wide = place < 2 || place == 3; // beyond what is built
        const auto& charges = place >= 8 ? detail::condensedCharges() : detail::ordinaryCharges();
        const detail::Charge& charge = charges[random.below(charges.size())];
        EngineCase engine;
        engine.kind = charge.name;
        engine.oxidizer = charge.oxidizer;
        engine.fuel = charge.fuel;
        engine.alpha = wide ? drawn(0.2, 30.0) : drawn(0.4, 2.0);
        engine.p = wide ? drawn(5e4, 5e7) : drawn(5e5, 2e7);
        engine.areaRatio = wide ? drawn(1.2, 400.0) : drawn(2.0, 100.0);
        engine.ions = i % 7 == 0;
        if (place == 3 || (place == 9 && random.uniform() < 0.5))
            engine.freezingRatio = drawn(1.1, 3.0);
        if (place == 4 || (place == 6 && random.uniform() < 0.5))
            engine.contraction = drawn(1.3, 8.0);
        if (place == 5) engine.massFlux = shortened(engine.p / drawn(3e3, 2e4));
        if (place == 6) engine.throttling = drawn(0.2, 1.2);
        if (place == 7) engine.ambient = drawn(1e3, 1e5);
        engines.push_back(engine);
    }
    return engines;
}

constexpr std::size_t defaultEquilibriumCount = 300;

/// A problem of two prescribed quantities, to be posed from a state of its charge.
struct EquilibriumCase {
    RandomState state;
    reaction::Equilibrium::PROCESS_TYPE type;
    bool expectCondensed;
};

/// All six kinds of problems, on propellants and on random elements.
inline std::vector<EquilibriumCase> defaultEquilibria()
{
    StateGenerator random(6);
    std::vector<EquilibriumCase> cases;
    for (std::size_t i = 0; i < defaultEquilibriumCount; ++i) {
        EquilibriumCase one;
        one.state = i % 2 == 0 ? random.propellant() : random.elements();
        one.state.p = shortened(one.state.p);
        one.state.T = shortened(one.state.T);
        for (Reactant& reactant : one.state.reactants)
            reactant.fraction = shortened(reactant.fraction);
        double rest = 1.0;
        for (std::size_t k = 1; k < one.state.reactants.size(); ++k)
            rest -= one.state.reactants[k].fraction;
        one.state.reactants.front().fraction = rest;
        one.type = static_cast<reaction::Equilibrium::PROCESS_TYPE>(i / 2 % 6);
        one.expectCondensed = random.uniform() < 0.3;
        cases.push_back(one);
    }
    return cases;
}

} // namespace ketra_test
