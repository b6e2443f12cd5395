#include "Case.h"
#include "Certificate.h"
#include "CheckCommand.h"
#include "Failure.h"
#include "Progress.h"
#include "PropellantCheck.h"
#include "SolvingFailure.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/FreezingConditions.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>

namespace host {
namespace {

namespace input = thermo::input;

// Range and resolution of the search for the best mixture ratio, oxidizer excess coefficients.
constexpr double leastAlpha = 0.2;
constexpr double greatestAlpha = 1.8;
constexpr double alphaTolerance = 0.001;

/// To the format, freezing conditions are complete with an area ratio or a pressure. A ratio of the
/// chamber pressure to that of the freezing section is as good to the calculation; for the
/// validation the pressure itself stands in its place.
void validate(const input::ConfigFile& config)
{
    input::ConfigFile validated(config);
    input::NozzleFlowOptions& flow = validated.getNozzleFlowOptions();
    if (flow.isFreezingConditionsSet() && flow.getFreezingConditions().isPressureRatioSet()) {
        const double p = config.getCombustionChamberConditions().getPressure(/*si=*/true);
        const double ratio = flow.getFreezingConditions().getPressureRatio();
        flow.getFreezingConditions().setPressure(p / ratio, input::Pressure::PA, /*keepUnit=*/true);
    }
    validated.validate();
}

std::unique_ptr<performance::TheoreticalPerformance> build(const std::string& path,
                                                           input::ConfigFile& config)
try {
    return std::make_unique<performance::TheoreticalPerformance>(&config, /*ownsDocument=*/false);
} catch (...) {
    throw describeException(Stage::READING, path);
}

} // namespace

std::unique_ptr<input::ConfigFile> loadDocument(const std::string& path)
try {
    auto config = std::make_unique<input::ConfigFile>(path.c_str());
    config->read(nullptr);
    validate(*config);
    return config;
} catch (...) {
    throw describeException(Stage::READING, path);
}

Case::Case(const std::string& path, const ReadingOptions& options)
    : strict(options.strict), literal(options.literal),
      document(std::make_unique<Document>(path, options.allowInclude, findings))
{
    checkWithoutSpecies(*document, findings);
    requireGood();
}

Case::Case(Case&&) noexcept = default;
Case::~Case() = default;

/// Prints what has been found so far and ends the command if the document cannot be used.
void Case::requireGood()
{
    findings.print();
    ExitCode code = findings.code();
    if (strict && findings.warnings() > 0 && code == GOOD) code = DOCUMENT;
    if (code != GOOD)
        throw Failure(code, getPath() + ": the document is not run, because of the " +
                                (findings.errors() > 0 ? "errors" : "warnings") + " above");
}

void Case::build()
{
    PropellantCheck(*document, findings).checkSpecies();
    requireGood();
    config = loadDocument(getPath());
    performance = host::build(getPath(), *config);
    performance->setPersistent(!literal);
    performance->setWarmStart(!literal);
}

void Case::solve(bool transport, HeldMessages& messages)
try {
    solveNow(transport, messages);
    if (performance->isInvalid())
        throw Failure(NOT_CONVERGED, getPath() + ": the calculation found no solution");
} catch (...) {
    throw describeSolving(getPath(), messages);
}

Certificate Case::certify() const
try {
    return certificateOf(*performance);
} catch (...) {
    throw describeException(Stage::WRITING, getPath());
}

void Case::solveNow(bool transport, HeldMessages& messages)
{
    if (config->getPropellant().getRatioType() == input::Ratio::OPTIMAL)
        searchMixtureRatio(messages);
    // After a search, once more at the best ratio, for the messages that belong to it.
    performance->solve(transport);
}

/// Leaves the best ratio in the document. What the library reports of the trials is of no use to
/// the user: some of them lie where nothing burns.
void Case::searchMixtureRatio(HeldMessages& messages)
{
    const Progress progress("searching for the best mixture ratio");
    performance->optimizeForSpecificImpulse(leastAlpha, greatestAlpha, alphaTolerance);
    messages.dismiss();
    if (!performance->isOptimized())
        throw Failure(NOT_CONVERGED,
                      getPath() + ": there is no best mixture ratio from alpha = 0.2 to 1.8: the "
                                  "impulse falls from the lower end on. State a ratio with ratio = "
                                  "{ value = ...; unit = \"O/F\"; };");
}

} // namespace host
