#include "CheckCommand.h"
#include "Failure.h"
#include "FormatCheck.h"
#include "LogSession.h"
#include "Output.h"
#include "PropellantCheck.h"
#include "Resources.h"

#include <ketra/api/ketra.h>
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
    if (options.strict && findings.warnings() > 0 && code == GOOD) code = DOCUMENT;
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
    const std::unique_ptr<thermo::input::ConfigFile, decltype(&deleteConfig)> config(
        loadConfig(path.c_str()), &deleteConfig);
    config->validate();
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
    if (findings.errors() == before) PropellantCheck(document, findings).checkRecipe();
}

ExitCode checkDocument(const CheckOptions& options)
{
    Findings findings;
    const Document document(options.document, options.allowInclude, findings);
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
