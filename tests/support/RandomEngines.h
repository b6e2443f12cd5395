#pragma once

#include <support/EngineCase.h>
#include <support/RandomMixtures.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

// Random rocket engines with a fixed seed, far beyond what is built.

namespace ketra_test {

struct EnginePropellant {
    const char* name;
    Stream oxidizer, fuel;
};

inline const std::array<EnginePropellant, 10>& enginePropellants()
{
    static const std::array<EnginePropellant, 10> all{{
        {"LOX/LH2", {{"O2(L)", 90.17, 1.0}}, {{"H2(L)", 20.27, 1.0}}},
        {"LOX/RP-1", {{"O2(L)", 90.17, 1.0}}, {{"RP-1", 298.15, 1.0}}},
        {"LOX/methane", {{"O2(L)", 90.17, 1.0}}, {{"CH4(L)", 111.643, 1.0}}},
        {"LOX/ethanol", {{"O2(L)", 90.17, 1.0}}, {{"C2H5OH(L)", 298.15, 1.0}}},
        {"LOX/ammonia", {{"O2(L)", 90.17, 1.0}}, {{"NH3(L)", 239.72, 1.0}}},
        {"N2O4/MMH", {{"N2O4(L)", 298.15, 1.0}}, {{"CH6N2(L)", 298.15, 1.0}}},
        {"N2O4/hydrazine", {{"N2O4(L)", 298.15, 1.0}}, {{"N2H4(L)", 298.15, 1.0}}},
        {"N2O4/UDMH", {{"N2O4(L)", 298.15, 1.0}}, {{"C2H8N2(L),UDMH", 298.15, 1.0}}},
        {
            "peroxide/RP-1",
            {{"H2O2(L)", 298.15, 0.9}, {"H2O(L)", 298.15, 0.1}},
            {{"RP-1", 298.15, 1.0}},
        },
        {
            "AP/HTPB+Al",
            {{"NH4CLO4(I)", 298.15, 1.0}},
            {{"HTPB", 298.15, 0.4}, {"AL(cr)", 298.15, 0.6}},
        },
    }};
    return all;
}

struct RandomEngine {
    std::size_t propellant;
    double alpha; // mixture ratio over the stoichiometric one
    double MPa;   // chamber pressure
    double areaRatio;
    double freezingRatio; // area ratio where a frozen flow freezes

    const EnginePropellant& kind() const { return enginePropellants()[propellant]; }
};

/// How far the engines range.
struct EngineRange {
    double leastAlpha = 0.2, mostAlpha = 30.0;
    double leastMPa = 0.05, mostMPa = 50.0;
    double leastAreaRatio = 1.2, mostAreaRatio = 400.0;
};

/// \p count engines, all propellants in turn, the rest with even logarithms.
inline std::vector<RandomEngine> randomEngines(unsigned seed, std::size_t count,
                                               const EngineRange& range = {})
{
    StateGenerator random(seed);
    std::vector<RandomEngine> engines;
    for (std::size_t i = 0; i < count; ++i) {
        RandomEngine engine{};
        engine.propellant = i % enginePropellants().size();
        engine.alpha = random.logUniform(range.leastAlpha, range.mostAlpha);
        engine.MPa = random.logUniform(range.leastMPa, range.mostMPa);
        engine.areaRatio = random.logUniform(range.leastAreaRatio, range.mostAreaRatio);
        engine.freezingRatio = random.logUniform(1.1, 3.0);
        engines.push_back(engine);
    }
    return engines;
}

/// One line that says what the engine is.
inline std::string describe(const RandomEngine& engine)
{
    char line[160];
    std::snprintf(line, sizeof line, "%s alpha %.4f, %.4f MPa, area ratio %.3f, freezing at %.3f",
                  engine.kind().name, engine.alpha, engine.MPa, engine.areaRatio,
                  engine.freezingRatio);
    return line;
}

/// The engine with a chamber of infinite area, in shifting equilibrium or \p frozen.
inline EngineCase caseOf(const RandomEngine& drawn, bool frozen)
{
    EngineCase engine;
    engine.kind = drawn.kind().name;
    engine.oxidizer = drawn.kind().oxidizer;
    engine.fuel = drawn.kind().fuel;
    engine.alpha = drawn.alpha;
    engine.p = drawn.MPa * 1e6;
    engine.areaRatio = drawn.areaRatio;
    if (frozen) engine.freezingRatio = drawn.freezingRatio;
    return engine;
}

/// Its document.
inline std::unique_ptr<thermo::input::ConfigFile> documentOf(const RandomEngine& drawn, bool frozen)
{
    return documentOf(caseOf(drawn, frozen));
}

} // namespace ketra_test
