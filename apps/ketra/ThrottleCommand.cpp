#include "ThrottleCommand.h"
#include "Columns.h"
#include "EnginePerformance.h"
#include "Failure.h"
#include "Output.h"
#include "Results.h"
#include "SolvingFailure.h"
#include "Text.h"

#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/NozzleSectionConditions.h>

#include <memory>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using performance::ThrottlingPerformance;

constexpr double leastRatio = 1e-6; // the range in which an engine can be throttled
constexpr double greatestRatio = 2.0;

/// The design at one ratio.
struct Throttled {
    double ratio;
    std::unique_ptr<ThrottlingPerformance> performance; // null without a solution
    std::string failure;                                // why there is none
    std::optional<Certificate> certificate;             // of what there is
};

void requireRatios(const std::vector<double>& ratios)
{
    for (const double ratio : ratios)
        if (!(ratio >= leastRatio && ratio <= greatestRatio))
            throw Failure(USAGE, "--ratio " + plainText(ratio) +
                                     ": a throttling ratio is the mass flow over that of the "
                                     "design, from 0.000001 to 2");
}

void requireNozzle(const Case& design)
{
    if (design.getPerformance().getChamber()) return;
    throw Failure(DOCUMENT, design.getPath() +
                                ": there is no flow to throttle, since the document asks for the "
                                "chamber alone. Add nozzleExitConditions = { areaRatio = 40.0; }; "
                                "to nozzleFlow and take calculateNozzleFlow away");
}

/// The nozzle was built for the design: however its exit is stated, its area ratio is what stays.
void holdExit(TheoreticalPerformance& design)
{
    const auto* const exit = design.getExitSection();
    if (exit && performanceOf(design, *exit))
        design.getData()->getNozzleFlowOptions().getNozzleExitConditions().setAreaRatio(
            exit->getFr(), /*supersonic=*/true);
}

Throttled throttle(const Case& design, double ratio, bool strict, ReportLogger& reports)
{
    Throttled result{ratio, nullptr, "", std::nullopt};
    const std::string subject = design.getPath() + ", ratio " + plainText(ratio);
    HeldMessages messages(reports);
    try {
        result.performance = std::make_unique<ThrottlingPerformance>(
            &design.getPerformance(), ratio, /*calculateTransport=*/false);
        result.certificate = certificateOf(*result.performance);
        requireGrade(*result.certificate, subject, strict);
        messages.recovered();
    } catch (...) {
        const Failure failure = describeSolving(subject, messages);
        if (failure.getCode() == INTERNAL) throw failure;
        result.performance.reset();
        result.failure = failure.what();
    }
    return result;
}

/// Empty where nothing was found that could be certified.
std::string gradeOf(const Throttled& throttled)
{
    if (!throttled.certificate) return "";
    return std::string(1, verification::letter(throttled.certificate->grade));
}

/// The cells behind the chamber's, for an engine with a nozzle.
void addNozzle(std::vector<Cell>& row, TheoreticalPerformance& performance)
{
    const auto* const exit = performance.getExitSection();
    const auto delivers = exit ? performanceOf(performance, *exit) : std::nullopt;
    if (!delivers) return;
    row[4] = delivers->vacuum.Is;
    row[6] = exit->getP();
    row[7] = performance.getPaCrit();
    const std::vector<AmbientPerformance> ambient = ambientPerformanceOf(performance);
    if (ambient.empty()) return;
    const AmbientPerformance& at = ambient.back(); // of a range, the higher pressure
    if (at.impulse) row[5] = at.impulse->Is;
    row[8] = at.separated ? "separated" : "attached";
}

std::vector<Cell> rowOf(const Throttled& throttled)
{
    std::vector<Cell> row(10);
    row[0] = throttled.ratio;
    if (throttled.certificate) row[9] = gradeOf(throttled);
    if (!throttled.performance) {
        row[8] = "failed";
        return row;
    }
    TheoreticalPerformance& performance = *throttled.performance;
    const auto& chamber = *performance.getChamber();
    row[1] = injectionPlaneOf(chamber).p();
    row[2] = throatOf(chamber).massFlux();
    row[3] = chamber.getCstar(0.0);
    addNozzle(row, performance);
    return row;
}

std::string tableOf(const std::vector<Throttled>& cases, bool english)
{
    Table table({plainColumn("ratio", 6), pressureColumn("pc"), massFluxColumn("throat flux"),
                 velocityColumn("c*"), velocityColumn("Is vac"), velocityColumn("Is amb"),
                 pressureColumn("pe"), pressureColumn("PaCrit"), plainColumn("flow", 0),
                 plainColumn("grade", 0)},
                english);
    for (const Throttled& throttled : cases) table.add(rowOf(throttled));
    return table.text();
}

Json resultsOf(const Throttled& throttled)
{
    Json result = {{"ratio", throttled.ratio},
                   {"failure", nullptr},
                   {"engine", nullptr},
                   {"stations", nullptr},
                   {"certificate", nullptr}};
    if (!throttled.performance) {
        result["failure"] = throttled.failure;
    } else {
        result["engine"] = engineOf(*throttled.performance);
        result["stations"] = stationsOf(*throttled.performance, /*transport=*/false);
        result["certificate"] = throttled.certificate->results;
    }
    return result;
}

std::string jsonOf(const Case& design, const std::vector<Throttled>& cases)
try {
    Json results = resultsHead(design.getPerformance(), design.getPath());
    results["cases"] = Json::array();
    for (const Throttled& throttled : cases) results["cases"].push_back(resultsOf(throttled));
    results["units"] = resultsLegend();
    return textOf(results);
} catch (...) {
    throw describeException(Stage::WRITING, design.getPath());
}

ExitCode conclude(const std::vector<Throttled>& cases, bool allowFailures)
{
    std::size_t failed = 0;
    bool refused = false; // only because the user takes no grade but A
    for (const Throttled& throttled : cases) {
        if (throttled.performance) continue;
        ++failed;
        refused = refused || gradeOf(throttled) == "B";
        writeToStandardError("ketra: error: " + throttled.failure + "\n");
    }
    if (failed == 0) return GOOD;
    if (failed == cases.size()) return NOT_CONVERGED;
    if (allowFailures) return GOOD;
    return refused ? NOT_CONVERGED : SOME_FAILED;
}

} // namespace

ExitCode throttleDocument(const ThrottleOptions& options)
{
    requireRatios(options.ratios);
    Case design(options.document, options.reading);
    Session session(options.session);
    design.build();
    {
        HeldMessages messages(session.reports());
        design.solve(/*transport=*/false, messages);
        requireGrade(design.certify(), design.getPath(), options.reading.strict);
        messages.recovered();
    }
    requireNozzle(design);
    holdExit(design.getPerformance());
    std::vector<Throttled> cases;
    for (const double ratio : options.ratios)
        cases.push_back(throttle(design, ratio, options.reading.strict, session.reports()));
    if (options.json != "-")
        writeToStandardOutput(session.withLineEnds(tableOf(cases, options.english)));
    if (!options.json.empty()) writeToFile(options.json, jsonOf(design, cases));
    session.finish();
    return conclude(cases, options.allowFailures);
}

} // namespace host
