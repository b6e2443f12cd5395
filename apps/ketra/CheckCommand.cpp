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

ExitCode conclude(const CheckOptions& options, Findings& findings)
{
    findings.print();
    ExitCode code = findings.code();
    if (options.reading.strict && findings.warnings() > 0 && code == GOOD) code = DOCUMENT;
    writeToStandardOutput(options.document + ": " + findings.summary() + "\n");
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

/// The species, and if all is well what the library makes of the document. Without species data
/// nothing is left to say of a document that has faults already.
void checkSpecies(const CheckOptions& options, const Document& document, Findings& findings)
try {
    const Resources resources(options.resources);
    const LogSession log(options.verbose, "", false);
    resources.load();
    PropellantCheck(document, findings).checkSpecies();
    findings.print();
    if (findings.errors() == 0) validate(options.document);
} catch (const Failure&) {
    if (findings.errors() == 0) throw;
}

} // namespace

bool checkWithoutSpecies(const Document& document, Findings& findings)
{
    if (!document.isParsed()) return false;
    FormatCheck format(document, findings);
    format.run();
    if (!format.isGood("propellant")) return false;
    PropellantCheck(document, findings).checkRecipe();
    if (format.isGood("nozzleFlow")) FlowCheck(document, findings).run();
    return true;
}

ExitCode checkDocument(const CheckOptions& options)
{
    Findings findings;
    const Document document(options.document, options.reading.allowInclude, findings);
    const bool readable = checkWithoutSpecies(document, findings);
    findings.print();
    if (readable) checkSpecies(options, document, findings);
    return conclude(options, findings);
}

} // namespace host
