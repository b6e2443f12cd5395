#include "RandomCases.h"

#include "Charges.h"

#include <support/RandomMixtures.h>

#include <array>
#include <cstdint>
#include <optional>

namespace convergence {

using ketra_test::EngineCase;
using ketra_test::Reactant;
using ketra_test::StateGenerator;
using ketra_test::Stream;

namespace {

constexpr std::array<const char*, familyCount> families{"ordinary", "extreme", "exotic"};
constexpr std::array<const char*, flowCount> flows{"shifting",   "frozen",     "finite-area",
                                                   "throttling", "separation", "optimum"};

/// Spreads the seeds of neighbouring cases over all numbers (the finaliser of MurmurHash3).
unsigned seedOf(unsigned seed, std::size_t i)
{
    std::uint64_t x = (static_cast<std::uint64_t>(seed) << 32) + i;
    x = (x ^ (x >> 33)) * 0xff51afd7ed558ccd;
    x = (x ^ (x >> 33)) * 0xc4ceb9fe1a85ec53;
    return static_cast<unsigned>(x ^ (x >> 33));
}

Family drawFamily(StateGenerator& random)
{
    const double share = random.uniform();
    if (share < 0.7) return Family::ORDINARY;
    return share < 0.9 ? Family::EXTREME : Family::EXOTIC;
}

Flow drawFlow(StateGenerator& random)
{
    const double share = random.uniform();
    if (share < 0.12) return Flow::FROZEN;
    if (share < 0.24) return Flow::FINITE_AREA;
    if (share < 0.36) return Flow::SEPARATION;
    if (share < 0.44) return Flow::THROTTLING;
    return share < 0.45 ? Flow::OPTIMUM : Flow::SHIFTING;
}

template <class Name, std::size_t count>
std::optional<Name> find(const std::array<const char*, count>& names, const std::string& name)
{
    for (std::size_t i = 0; i < count; ++i)
        if (name == names[i]) return static_cast<Name>(i);
    return std::nullopt;
}

void take(EngineCase& engine, const Charge& charge)
{
    engine.kind = charge.name;
    engine.oxidizer = charge.oxidizer;
    engine.fuel = charge.fuel;
}

const Charge& anyOf(const std::vector<Charge>& charges, StateGenerator& random)
{
    return charges[random.below(charges.size())];
}

/// As engines are built, and somewhat beyond.
void drawOrdinary(EngineCase& engine, StateGenerator& random)
{
    take(engine, anyOf(ordinaryCharges(), random));
    engine.alpha = random.logUniform(0.3, 2.5);
    engine.p = random.logUniform(1e5, 3e7);
    engine.areaRatio = random.logUniform(1.5, 300.0);
}

void drawExtreme(EngineCase& engine, StateGenerator& random)
{
    take(engine, anyOf(ordinaryCharges(), random));
    engine.alpha = random.logUniform(0.05, 20.0);
    engine.p = random.logUniform(1e3, 1e8);
    engine.areaRatio = random.logUniform(1.01, 1000.0);
}

/// An inert gas, heated as an arc does.
void drawInert(EngineCase& engine, StateGenerator& random)
{
    static const std::array<const char*, 5> gases{"He", "Ne", "Ar", "Kr", "Xe"};
    engine.kind = "inert gas";
    engine.oxidizer = {
        {gases[random.below(gases.size())], random.logUniform(1000.0, 15000.0), 1.0}};
    engine.fuel.clear();
    engine.ions = random.uniform() < 0.5;
}

/// A propellant at the fuel-rich or oxidizer-rich end, where the gas is cold.
void drawColdIons(EngineCase& engine, StateGenerator& random)
{
    take(engine, anyOf(ordinaryCharges(), random));
    engine.alpha = random.uniform() < 0.5 ? random.uniform(0.1, 0.4) : random.uniform(3.0, 12.0);
    engine.ions = true;
}

/// One element is a billionth of the charge.
void drawTrace(EngineCase& engine, StateGenerator& random)
{
    static const std::array<const char*, 6> traces{"S(a)", "Na(cr)", "AL(cr)",
                                                   "CL2",  "Ar",     "Fe(a)"};
    take(engine, anyOf(ordinaryCharges(), random));
    engine.kind += " with a trace";
    Stream& fuel = engine.fuel;
    for (Reactant& part : fuel) part.fraction *= 1.0 - 1e-9;
    fuel.push_back({traces[random.below(traces.size())], 298.15, 1e-9});
}

void drawExotic(EngineCase& engine, StateGenerator& random)
{
    engine.alpha = random.logUniform(0.3, 3.0);
    engine.p = random.logUniform(1e5, 3e7);
    engine.areaRatio = random.logUniform(1.5, 100.0);
    const double kind = random.uniform();
    if (kind < 0.1)
        drawInert(engine, random);
    else if (kind < 0.25)
        drawColdIons(engine, random);
    else if (kind < 0.4)
        drawTrace(engine, random);
    else
        take(engine, anyOf(exoticCharges(), random));
}

void pose(EngineCase& engine, Family family, Flow flow, StateGenerator& random)
{
    const bool extreme = family == Family::EXTREME;
    switch (flow) {
    case Flow::SHIFTING:
    case Flow::OPTIMUM:
        break;
    case Flow::FROZEN:
        engine.freezingRatio = random.logUniform(1.1, 3.0);
        break;
    case Flow::FINITE_AREA:
        engine.contraction = extreme ? random.logUniform(1.1, 20.0) : random.logUniform(1.3, 10.0);
        if (random.uniform() < 0.25) { // by its mass flux, below the one that the search asks for
            engine.massFlux = engine.p / (2350.0 * random.logUniform(1.15, 8.0));
            engine.contraction = 0.0;
        }
        break;
    case Flow::THROTTLING:
        engine.throttling = random.logUniform(0.1, 1.2);
        if (random.uniform() < 0.5) engine.contraction = random.logUniform(1.5, 8.0);
        break;
    case Flow::SEPARATION:
        engine.ambient = random.logUniform(1e3, 1.01325e5);
        break;
    }
}

} // namespace

const char* nameOf(Family family) { return families[static_cast<std::size_t>(family)]; }
const char* nameOf(Flow flow) { return flows[static_cast<std::size_t>(flow)]; }

bool isPartOfCases(const std::string& suite)
{
    return find<Family>(families, suite) || find<Flow>(flows, suite);
}

RandomCase drawCase(unsigned seed, std::size_t i, const std::string& suite)
{
    StateGenerator random(seedOf(seed, i));
    RandomCase drawn;
    drawn.family = drawFamily(random);
    drawn.flow = drawFlow(random);
    drawn.family = find<Family>(families, suite).value_or(drawn.family);
    drawn.flow = find<Flow>(flows, suite).value_or(drawn.flow);
    switch (drawn.family) {
    case Family::ORDINARY:
        drawOrdinary(drawn.engine, random);
        break;
    case Family::EXTREME:
        drawExtreme(drawn.engine, random);
        break;
    case Family::EXOTIC:
        drawExotic(drawn.engine, random);
        break;
    }
    if (random.uniform() < 0.1) drawn.engine.ions = true;
    // Only two streams have a mixture ratio, and an optimum of it.
    if (drawn.flow == Flow::OPTIMUM && drawn.family == Family::EXOTIC) drawn.flow = Flow::SHIFTING;
    pose(drawn.engine, drawn.family, drawn.flow, random);
    return drawn;
}

} // namespace convergence
