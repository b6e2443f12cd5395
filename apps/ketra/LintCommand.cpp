#include "LintCommand.h"
#include "DataLint.h"
#include "LogSession.h"
#include "Output.h"
#include "Resources.h"

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>

#include <algorithm>
#include <memory>

namespace host {
namespace {

/// A file, and what was found in it.
struct LintedFile {
    explicit LintedFile(const std::string& file) : text(file), kind(recognise(text)) {}
    bool is(DataKind other) const { return kind == other; }
    bool needsSpecies() const { return is(DataKind::PROPERTIES) || is(DataKind::TRANSPORT); }

    DataText text;
    std::optional<DataKind> kind;
    Findings findings;
    size_t records = 0;
};
using LintedFiles = std::vector<std::unique_ptr<LintedFile>>;

template <class Condition> bool any(const LintedFiles& files, Condition condition)
{
    return std::any_of(files.begin(), files.end(),
                       [&](const std::unique_ptr<LintedFile>& file) { return condition(*file); });
}

void lint(LintedFile& file, KnownSpecies& known)
{
    if (file.kind)
        file.records = lintDataFile(file.text, *file.kind, known, file.findings);
    else
        file.findings.fail({file.text.getFile(), 0, ""},
                           "this is no species, properties, transport or PROPEP file: no line of "
                           "it looks like one of those. See docs/data.md for their formats");
}

/// The species of the resources, which tables without a species file beside them are made for.
KnownSpecies shippedSpecies(const LintOptions& options)
{
    const Resources resources(options.resources);
    const LogSession log(options.verbose, "", false);
    resources.load();
    return knownSpecies(*thermo::Database::getInstance());
}

void report(LintedFile& file)
{
    file.findings.print();
    const std::string what = file.kind ? std::string(nameOf(*file.kind)) + ", " +
                                             std::to_string(file.records) +
                                             (file.records == 1 ? " record: " : " records: ")
                                       : "";
    writeToStandardOutput(file.text.getFile() + ": " + what + file.findings.summary() + "\n");
}

} // namespace

ExitCode lintFiles(const LintOptions& options)
{
    thermo::ChemicalElement::initAtoms();
    LintedFiles files;
    for (const std::string& file : options.files)
        files.push_back(std::make_unique<LintedFile>(file));

    // The species come first, so that tables may stand before them on the command line.
    KnownSpecies known;
    const auto isSpecies = [](const LintedFile& file) { return file.is(DataKind::SPECIES); };
    for (const auto& file : files)
        if (isSpecies(*file)) lint(*file, known);
    if (!any(files, isSpecies) && any(files, [](const auto& file) { return file.needsSpecies(); }))
        known = shippedSpecies(options);
    for (const auto& file : files)
        if (!isSpecies(*file)) lint(*file, known);

    ExitCode code = GOOD;
    for (const auto& file : files) {
        report(*file);
        const bool faulty = options.strict && file->findings.warnings() > 0;
        code = std::max(code, faulty ? DOCUMENT : file->findings.code());
    }
    return code;
}

} // namespace host
