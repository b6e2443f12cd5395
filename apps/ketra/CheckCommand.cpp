#include "CheckCommand.h"
#include "Failure.h"
#include "FlowCheck.h"
#include "FormatCheck.h"
#include "LogSession.h"
#include "Output.h"
#include "PropellantCheck.h"
#include "Resources.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <memory>

namespace host {
namespace {

std::string counted(size_t n, const char* what)
{
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

ExitCode conclude(const CheckOptions& options, Findings& findings)
{
    findings.print();
    ExitCode code = findings.code();
    if (options.reading.strict && findings.warnings() > 0 && code == GOOD) code = DOCUMENT;
    const std::string result =
        findings.errors() + findings.warnings() == 0
            ? "no faults found"
            : counted(findings.errors(), "error") + ", " + counted(findings.warnings(), "warning");
    writeToStandardOutput(options.document + ": " + result + "\n");
    return code;
}

/// The library's own validation, and the propellant built of the document.
void validate(const std::string& path)
try {
    const std::unique_ptr<thermo::input::ConfigFile> config = loadDocument(path);
    const performance::TheoreticalPerformance built(config.get(), /*ownsDocument=*/false);
} catch (...) {
    throw describeException(Stage::READING, path);
}

} // namespace

void checkWithoutSpecies(const Document& document, Findings& findings)
{
    if (!document.isParsed()) return;
    const size_t before = findings.errors();
    FormatCheck(document, findings).run();
    // Values of a wrong kind would show up again as missing ones.
    if (findings.errors() > before) return;
    PropellantCheck(document, findings).checkRecipe();
    FlowCheck(document, findings).run();
}

ExitCode checkDocument(const CheckOptions& options)
{
    Findings findings;
    const Document document(options.document, options.reading.allowInclude, findings);
    checkWithoutSpecies(document, findings);
    if (findings.errors() > 0) return conclude(options, findings);

    findings.print();
    const Resources resources(options.resources);
    const LogSession log(options.verbose, "", false);
    resources.load();
    PropellantCheck(document, findings).checkSpecies();
    findings.print();
    if (findings.errors() == 0) validate(options.document);
    return conclude(options, findings);
}

} // namespace host
