#include "Engines.h"

#include "Certify.h"

#include <support/EngineSweep.h>

#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/runtime/Exception.h>

#include <exception>
#include <memory>
#include <string>

namespace convergence {

using ketra_test::EngineCase;
using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;

namespace {

/// The search for the mixture ratio ends at this relative width.
constexpr double optimumWidth = 1e-3;

std::string nameOf(Stage stage)
{
    if (stage == Stage::THROTTLING) return "throttling";
    return stage == Stage::EXIT ? "exit" : "chamber";
}

/// The failure that has just been caught, with its cause from the log.
Verdict failureAt(Stage stage, const std::string& what)
{
    const std::string& text = ketra_test::cause().text;
    Verdict verdict;
    verdict.stage = stage;
    verdict.finding = saysOutsideData(text) ? Finding::REFUSED : Finding::FAILED;
    const std::string start = nameOf(stage) + ", " + what + ", ";
    verdict.kind = start + ketra_test::kindOf(text);
    verdict.detail = start + text;
    return verdict;
}

/// Runs \p calculation, which keeps \p stage up to date. \returns what it returns, or its failure
template <class Calculation> Verdict verdictOf(const Stage& stage, Calculation calculation)
{
    ketra_test::cause() = {};
    try {
        return calculation();
    } catch (const runtime::Exception& e) {
        return failureAt(stage, "code " + std::to_string(e.getType()));
    } catch (const std::exception& e) {
        return failureAt(stage, e.what());
    }
}

} // namespace

Verdict solveEngine(const EngineCase& engine, Method method, bool optimum)
{
    Stage stage = Stage::CHAMBER;
    std::unique_ptr<TheoreticalPerformance> design;
    std::unique_ptr<ThrottlingPerformance> throttled;
    Verdict verdict = verdictOf(stage, [&] {
        design = std::make_unique<TheoreticalPerformance>(documentOf(engine).release(), true);
        design->setPersistent(method.persistent);
        design->setWarmStart(method.warmStart);
        if (optimum) design->optimizeForSpecificImpulse(0.3, 1.8, optimumWidth);
        // Where the impulse falls from the lower bound on, the search leaves the engine unsolved.
        if (design->getExitSection() == nullptr) design->solve(/*calculateTransport=*/false);
        Verdict solved = certify(*design);
        if (!isCertified(solved.finding) || !engine.isThrottled()) return solved;
        stage = Stage::THROTTLING;
        throttled = std::make_unique<ThrottlingPerformance>(design.get(), engine.throttling,
                                                            /*calculateTransport=*/false);
        Verdict atFlow = certify(*throttled);
        return solved.finding == Finding::GRADE_B && atFlow.finding == Finding::GRADE_A ? solved
                                                                                        : atFlow;
    });
    const std::string chamber = nameOf(Stage::CHAMBER), exit = nameOf(Stage::EXIT);
    if (stage == Stage::CHAMBER && verdict.kind.starts_with(chamber + ", ") && design &&
        design->getChamber() != nullptr) {
        verdict.kind.replace(0, chamber.size(), exit);
        verdict.detail.replace(0, chamber.size(), exit);
    }
    return verdict;
}

} // namespace convergence
