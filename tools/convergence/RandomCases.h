#pragma once

#include <support/EngineCase.h>

#include <cstddef>
#include <string>

// The random cases: engines of every kind with a fixed seed.

namespace convergence {

/// Seven of ten cases are ordinary, two extreme, one exotic.
enum class Family { ORDINARY, EXTREME, EXOTIC };
constexpr int familyCount = 3;

/// What is asked of the engine. Frozen, of finite area and separated are 12 of 100 each, throttled
/// 8, and the search for the optimum mixture ratio 1 (of exotic cases none).
enum class Flow { SHIFTING, FROZEN, FINITE_AREA, THROTTLING, SEPARATION, OPTIMUM };
constexpr int flowCount = 6;

const char* nameOf(Family family);
const char* nameOf(Flow flow);

struct RandomCase {
    Family family = Family::ORDINARY;
    Flow flow = Flow::SHIFTING;
    ketra_test::EngineCase engine;
};

/// Case \p i of \p seed; of the family or the flow \p suite alone, if it is the name of one. Each
/// case has random numbers of its own, so that it can be drawn alone.
RandomCase drawCase(unsigned seed, std::size_t i, const std::string& suite);
/// The name of a family or of a flow.
bool isPartOfCases(const std::string& suite);

} // namespace convergence
