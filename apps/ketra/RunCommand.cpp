#include "RunCommand.h"
#include "Certificate.h"
#include "Failure.h"
#include "Output.h"
#include "Results.h"
#include "Supplement.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/util/Log.h>

namespace host {
namespace {

// Bits of the flags of the report.
constexpr unsigned englishUnits = 128;
constexpr unsigned transportProperties = 256;

std::string jsonOf(const Case& engine, const Certificate& certificate, const RunOptions& options)
try {
    if (options.json.empty()) return {};
    return textOf(
        resultsOf(engine.getPerformance(), engine.getPath(), certificate, options.transport));
} catch (...) {
    throw describeException(Stage::WRITING, engine.getPath());
}

} // namespace

Certificate solveAndCertify(Case& engine, const RunOptions& options, HeldMessages& messages)
{
    engine.solve(options.transport, messages);
    Certificate certificate = engine.certify();
    requireGrade(certificate, engine.getPath(), options.reading.strict);
    return certificate;
}

void report(const Case& engine, const Certificate& certificate, const RunOptions& options)
try {
    performance::TheoreticalPerformance& performance = engine.getPerformance();
    performance.printResults((options.english ? englishUnits : 0) |
                             (options.transport ? transportProperties : 0));
    printSupplement(performance, options.english, options.corrections);
    util::Log::printf("THERMO", "%s%s%s", util::eol, certificate.line().c_str(), util::eol);
} catch (...) {
    throw describeException(Stage::WRITING, engine.getPath());
}

ExitCode runDocument(const RunOptions& options)
{
    Case engine(options.document, options.reading);
    Session session(options.session);
    if (options.transport) session.expectTransport();
    engine.build();
    std::string json;
    {
        HeldMessages messages(session.reports());
        const Certificate certificate = solveAndCertify(engine, options, messages);
        report(engine, certificate, options);
        json = jsonOf(engine, certificate, options);
        messages.recovered();
    }
    if (options.json != "-") writeToStandardOutput(session.report());
    if (!json.empty()) writeToFile(options.json, json);
    session.finish();
    return GOOD;
}

} // namespace host
