#include "RunCommand.h"
#include "CheckCommand.h"
#include "Failure.h"
#include "LogSession.h"
#include "Output.h"
#include "PropellantCheck.h"
#include "Resources.h"
#include "Results.h"

#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>

#include <memory>

namespace host {
namespace {

// Bits of the flags of the report.
constexpr unsigned englishUnits = 128;
constexpr unsigned transportProperties = 256;

using Config = std::unique_ptr<thermo::input::ConfigFile, decltype(&deleteConfig)>;

/// Prints what has been found so far and ends the command if the document cannot be used.
void requireGood(const RunOptions& options, Findings& findings)
{
    findings.print();
    ExitCode code = findings.code();
    if (options.strict && findings.warnings() > 0 && code == GOOD) code = DOCUMENT;
    if (code != GOOD)
        throw Failure(code, options.document + ": the document is not run, because of the " +
                                (findings.errors() > 0 ? "errors" : "warnings") + " above");
}

Config loadDocument(const std::string& path)
try {
    Config config(loadConfig(path.c_str()), &deleteConfig);
    config->validate();
    return config;
} catch (...) {
    throw describeException(Stage::READING, path);
}

/// What the library cannot calculate yet.
void requireSupported(const std::string& path, thermo::input::ConfigFile& config)
{
    if (config.getNozzleFlowOptions().isCalculateNozzleFlow())
        throw Failure(DOCUMENT, path +
                                    ": nozzle flow cannot be calculated yet. For the chamber "
                                    "alone write nozzleFlow = { calculateNozzleFlow = false; };");
    if (config.getPropellant().getRatioType() == thermo::input::Ratio::OPTIMAL)
        throw Failure(DOCUMENT,
                      path + ": the optimum mixture ratio cannot be searched yet. State one with "
                             "ratio = { value = ...; unit = \"O/F\"; };");
}

std::unique_ptr<performance::TheoreticalPerformance> build(const std::string& path,
                                                           thermo::input::ConfigFile& config)
try {
    return std::make_unique<performance::TheoreticalPerformance>(&config, /*ownsDocument=*/false);
} catch (...) {
    throw describeException(Stage::READING, path);
}

/// Solves the problem and prints the report into the log. Errors of the library wait for the
/// outcome. \returns the results as JSON text, if they are asked for
std::string solve(const RunOptions& options, performance::TheoreticalPerformance& performance,
                  ReportLogger& reports)
{
    Stage stage = Stage::SOLVING;
    std::string json;
    reports.holdErrors();
    try {
        performance.solve(options.transport);
        if (performance.isInvalid())
            throw Failure(NOT_CONVERGED, options.document + ": the calculation found no solution");
        stage = Stage::WRITING;
        performance.printResults((options.english ? englishUnits : 0) |
                                 (options.transport ? transportProperties : 0));
        if (!options.json.empty()) json = resultsAsJson(performance, options.document);
    } catch (...) {
        reports.releaseErrors(/*recovered=*/false);
        throw describeException(stage, options.document);
    }
    reports.releaseErrors(/*recovered=*/true);
    return json;
}

} // namespace

ExitCode runDocument(const RunOptions& options)
{
    Findings findings;
    const Document document(options.document, options.allowInclude, findings);
    checkWithoutSpecies(document, findings);
    requireGood(options, findings);

    const Resources resources(options.resources);
    LogSession log(options.verbose, options.log, options.crlf);
    resources.load();
    PropellantCheck(document, findings).checkSpecies();
    requireGood(options, findings);

    const Config config = loadDocument(options.document);
    requireSupported(options.document, *config);
    const auto performance = build(options.document, *config);
    const std::string json = solve(options, *performance, log.reports());
    if (options.json != "-")
        writeToStandardOutput(LineEnds(options.crlf).apply(log.reports().getReport()));
    if (!json.empty()) writeToFile(options.json, json);
    log.finish();
    return GOOD;
}

} // namespace host
