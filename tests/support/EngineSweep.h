#pragma once

#include <support/Certificates.h>
#include <support/EngineLaws.h>
#include <support/RandomEngines.h>

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>
#include <ketra/util/Logger.h>

#include <cstdarg>
#include <cstdio>
#include <exception>
#include <memory>
#include <regex>
#include <string>
#include <typeinfo>
#include <vector>

// Solves random engines and says what fails and which law does not hold.

namespace ketra_test {

/// What went wrong for a thread since this was cleared: the last error before those that close a
/// failed chamber or section.
struct Cause {
    std::string text;
    bool closed = false;
};

inline Cause& cause()
{
    thread_local Cause last;
    return last;
}

/// Whether an error names only what could not be solved, a chamber or an exit, and not why.
inline bool isClosing(const std::string& error)
{
    return error.find("could not solve the problem") != std::string::npos ||
           error.find("for nozzle section Ae/At") != std::string::npos;
}

/// Keeps the cause of each thread's failure: an engine is solved by one thread.
class Causes : public util::Logger
{
public:
    void print(unsigned int channel, const char* text) override
    {
        if (channel != ERROR || cause().closed) return;
        cause().closed = isClosing(text);
        if (!cause().closed) cause().text = text;
    }
    void println(unsigned int channel, const char* text) override { print(channel, text); }
    [[gnu::format(printf, 3, 0)]] void vprintf(unsigned int, const char*, std::va_list) override {}
};

/// While it lives the log keeps the cause of each thread's failure.
class CauseLog
{
public:
    CauseLog() { util::Log::createLog("sweep")->addLogger(new Causes); }
    ~CauseLog() { util::Log::finalize(); }
    CauseLog(const CauseLog&) = delete;
    CauseLog& operator=(const CauseLog&) = delete;
};

/// A message without tag, numbers, name of a species and line ends.
inline std::string kindOf(std::string message)
{
    using std::regex;
    message = std::regex_replace(message, regex("^THERMO: "), "");
    message = std::regex_replace(message, regex("[\r\n]+"), " ");
    message = std::regex_replace(message, regex("species [^ ]*\\. "), "species S. ");
    message = std::regex_replace(message, regex("=? *\\b[0-9]+(\\.[0-9]+)?"), " #");
    message = std::regex_replace(message, regex(" +$"), "");
    return message;
}

/// A law that does not hold.
struct Violation {
    std::string law;
    std::string where;
    double miss; // relative

    std::string text() const
    {
        char number[32];
        std::snprintf(number, sizeof number, " %.1e", miss);
        return law + number + ", " + where;
    }
};

/// What became of one flow through one engine.
struct Outcome {
    bool solved = false;
    std::string failure;  // stage, code, cause
    bool clean = true;    // a thermo::Exception with a message in front of it
    double throat = 0.0;  // Mach number less 1
    double chamber = 0.0; // enthalpy of the injection plane against the propellant's
    StationLaws laws;     // worst of all sections without blend and misplaced phase
    int blends = 0;       // sections with one
    int misplaced = 0;    // sections with a condensed product outside its range
    int furtherSections = 0;
    int furtherFailures = 0;
    std::vector<Violation> violations;
    verification::EngineCertificate certificate; // of chamber and exit

    void require(bool holds, const char* law, const std::string& where, double by)
    {
        if (!holds) violations.push_back({law, where, by});
    }
};

/// Both flows of one engine, and how far the shifting one is ahead.
struct EngineOutcome {
    Outcome shifting;
    Outcome frozen;
    bool compared = false;
    double impulseAhead = 0.0;  // in vacuum, at the same area ratio, relative
    double velocityAhead = 0.0; // at the pressure of the frozen exit, relative
};

/// Runs one step. \returns whether it went well; \p outcome has the kind of its failure.
template <class Step> bool succeeds(Outcome& outcome, const char* stage, Step step)
{
    cause() = {};
    std::string what;
    try {
        step();
        return true;
    } catch (const thermo::Exception& e) {
        what = "code " + std::to_string(e.getType());
        outcome.clean = !cause().text.empty();
    } catch (const runtime::Exception& e) {
        what = typeid(e).name() + (" code " + std::to_string(e.getType()));
        outcome.clean = false;
    } catch (const std::exception& e) {
        what = e.what();
        outcome.clean = false;
    }
    outcome.failure = std::string(stage) + ", " + what + ", " + kindOf(cause().text);
    return false;
}

using SolvedEngine = std::unique_ptr<performance::TheoreticalPerformance>;

/// How the engines are posed; with all defaults unless told otherwise.
struct EngineMethod {
    bool persistent = false;
    bool warmStart = false;
};

/// The solved engine, null after a failure.
inline SolvedEngine solvedEngine(const RandomEngine& drawn, bool frozen, Outcome& outcome,
                                 EngineMethod method)
{
    SolvedEngine engine;
    const bool solved = succeeds(outcome, "chamber", [&] {
        engine = std::make_unique<performance::TheoreticalPerformance>(
            documentOf(drawn, frozen).release(), true);
        engine->setPersistent(method.persistent);
        engine->setWarmStart(method.warmStart);
        engine->solve(/*calculateTransport=*/false);
    });
    if (solved) return engine;
    if (engine && engine->getChamber() != nullptr)
        outcome.failure.replace(0, std::string("chamber").size(), "exit");
    return nullptr;
}

/// Of a section with a blend of two phases, and of one with a misplaced phase, a condensed product
/// outside its range.
inline std::string noteOf(bool blend, bool misplaced)
{
    if (blend) return misplaced ? " (blend, misplaced phase)" : " (blend)";
    return misplaced ? " (misplaced phase)" : "";
}

/// Enthalpy, entropy, mass flow and elements at a section. An area ratio is solved to 5e-4; the
/// search that takes more than 20 steps is content with less.
inline void checkSection(Outcome& outcome, const std::string& name,
                         performance::TheoreticalPerformance& engine, const NozzleSection& section)
{
    const StationLaws laws = lawsOf(*engine.getChamber(), section);
    const bool blend = hasBlend(section);
    const bool misplaced = hasMisplacedPhase(*engine.getChamber(), section);
    const std::string where = name + noteOf(blend, misplaced);
    outcome.require(laws.enthalpy <= 1e-5, "total enthalpy", where, laws.enthalpy);
    outcome.require(laws.entropy <= entropyLimit(section), "entropy", where, laws.entropy);
    outcome.require(laws.flux <= 5e-4, "mass flow", where, laws.flux);
    outcome.require(laws.elements <= 1e-6, "elements", where, laws.elements);
    outcome.blends += blend;
    outcome.misplaced += misplaced;
    if (!blend && !misplaced) outcome.laws.worsen(laws);
}

/// The impulse in vacuum and that of optimum expansion rise from one section to the next.
inline void checkRise(Outcome& outcome, const NozzleSection& from, const NozzleSection& to,
                      const performance::equilibrium::Chamber& chamber, const char* name)
{
    const std::string where =
        name + noteOf(hasBlend(from) || hasBlend(to),
                      hasMisplacedPhase(chamber, from) || hasMisplacedPhase(chamber, to));
    const double vacuum = to.getIs_v(0.0) / from.getIs_v(0.0) - 1.0;
    const double optimum = to.getIs(0.0) / from.getIs(0.0) - 1.0;
    outcome.require(vacuum > 0.0, "vacuum impulse falls by", where, -vacuum);
    outcome.require(optimum > 0.0, "optimum impulse falls by", where, -optimum);
}

/// A further section of a solved engine, null if it has no solution.
inline std::unique_ptr<NozzleSection>
furtherSection(Outcome& outcome, performance::TheoreticalPerformance& engine, double value,
               NozzleSection::CONDITION_TYPE type, bool frozen)
{
    std::unique_ptr<NozzleSection> section;
    Outcome own;
    ++outcome.furtherSections;
    const bool solved = succeeds(own, "section", [&] {
        section.reset(engine.solveNozzleSection(value, type, frozen, /*overExpansion=*/false, 0.0,
                                                /*calculateTransport=*/false, /*supersonic=*/true));
    });
    if (!solved) ++outcome.furtherFailures;
    return section;
}

/// Chamber, throat, exit, and two further sections around it.
inline void checkEngine(Outcome& outcome, performance::TheoreticalPerformance& engine,
                        const RandomEngine& drawn, bool frozen)
{
    const auto& chamber = *engine.getChamber();
    const NozzleSection& exit = *engine.getExitSection();
    outcome.throat = throatMiss(chamber);
    outcome.require(outcome.throat <= 1e-5, "Mach number", "throat", outcome.throat);
    const double enthalpy = chamberMiss(engine, exit);
    outcome.require(enthalpy <= 1e-5, "enthalpy of the propellant", "injection plane", enthalpy);
    outcome.chamber = enthalpy;
    const StationLaws throat = lawsOf(chamber, /*finiteArea=*/false);
    outcome.require(throat.entropy <= 1e-5, "entropy", "throat", throat.entropy);
    outcome.require(throat.elements <= 1e-6, "elements", "throat", throat.elements);
    checkSection(outcome, "exit", engine, exit);
    outcome.certificate = certificateOf(chamber, exit);

    const auto before = furtherSection(outcome, engine, std::sqrt(drawn.areaRatio),
                                       NozzleSection::AREA_RATIO, frozen);
    const auto behind =
        furtherSection(outcome, engine, 1.5 * drawn.areaRatio, NozzleSection::AREA_RATIO, frozen);
    if (before) {
        checkSection(outcome, "section in front of the exit", engine, *before);
        checkRise(outcome, *before, exit, chamber, "from a section to the exit");
    }
    if (behind) {
        checkSection(outcome, "section behind the exit", engine, *behind);
        checkRise(outcome, exit, *behind, chamber, "from the exit to a section");
    }
}

/// At the same pressure the shifting flow is the faster one: of all compositions of an entropy the
/// equilibrium has the least enthalpy. At the same area ratio it has the higher impulse.
inline void compareFlows(EngineOutcome& outcome, performance::TheoreticalPerformance& shifting,
                         performance::TheoreticalPerformance& frozen)
{
    const NozzleSection& fast = *shifting.getExitSection();
    const NozzleSection& slow = *frozen.getExitSection();
    outcome.compared = true;
    outcome.impulseAhead = fast.getIs_v(0.0) / slow.getIs_v(0.0) - 1.0;
    // The vacuum impulse rises with the area by p dF, and each area is met to its miss.
    const double pressurePart = 1.0 - slow.getW() / slow.getIs_v(0.0);
    const double areas =
        lawsOf(*shifting.getChamber(), fast).flux + lawsOf(*frozen.getChamber(), slow).flux;
    outcome.frozen.require(outcome.impulseAhead >= -velocityLimit(slow) - pressurePart * areas,
                           "vacuum impulse above that of the shifting flow", "exit",
                           -outcome.impulseAhead);
    if (const auto* section =
            dynamic_cast<const performance::frozen::NozzleSectionConditions*>(&slow))
        outcome.frozen.certificate =
            verification::certify(*frozen.getChamber(), std::array{&fast}, std::array{section});
    const auto same = furtherSection(outcome.shifting, shifting, slow.getP(),
                                     NozzleSection::PRESSURE, /*frozen=*/false);
    if (!same) return;
    outcome.velocityAhead = same->getW() / slow.getW() - 1.0;
    outcome.frozen.require(outcome.velocityAhead >= -velocityLimit(slow),
                           "velocity above that of the shifting flow", "exit pressure",
                           -outcome.velocityAhead);
}

inline EngineOutcome examine(const RandomEngine& drawn, EngineMethod method = {})
{
    EngineOutcome outcome;
    const SolvedEngine shifting = solvedEngine(drawn, false, outcome.shifting, method);
    const SolvedEngine frozen = solvedEngine(drawn, true, outcome.frozen, method);
    if (shifting) {
        outcome.shifting.solved = true;
        checkEngine(outcome.shifting, *shifting, drawn, false);
    }
    if (frozen) {
        outcome.frozen.solved = true;
        checkEngine(outcome.frozen, *frozen, drawn, true);
    }
    if (shifting && frozen) compareFlows(outcome, *shifting, *frozen);
    return outcome;
}

} // namespace ketra_test
