#include "DataLint.h"
#include "DatabaseSources.h"
#include "PropepLint.h"
#include "TableLint.h"

#include <ketra/thermo/Species.h>

namespace host {

namespace {

size_t lintRecords(const DataText& text, DataKind kind, KnownSpecies& known, Findings& findings)
{
    switch (kind) {
    case DataKind::SPECIES:
        return SpeciesLint(text, findings, known).run();
    case DataKind::PROPERTIES:
        return lintProperties(text, known, findings);
    case DataKind::TRANSPORT:
        return lintTransport(text, known, findings);
    default:
        return lintPropep(text, findings);
    }
}

/// Whether all of the text is one line, as the library reads it, but not as its writer meant it.
bool isOneLine(const DataText& text)
{
    const std::vector<std::string_view>& lines = text.getLines();
    return lines.size() == 1 && trimmedText(lines.front()).find('\r') != std::string::npos;
}

} // namespace

size_t lintDataFile(const DataText& text, DataKind kind, KnownSpecies& known, Findings& findings)
{
    const size_t records = lintRecords(text, kind, known, findings);
    const Place whole = {text.getFile(), 0, ""};
    if (isOneLine(text))
        findings.fail(whole, "the lines end in carriage returns alone, which are no line ends. "
                             "Convert them to line feeds");
    else if (records == 0 && findings.errors() == 0)
        findings.warn(whole, "the file holds no record. Add some, or take the file away");
    return records;
}

KnownSpecies knownSpecies(thermo::Database& database)
{
    KnownSpecies known;
    for (unsigned i = 0; i < database.size(); ++i) {
        const thermo::Species& species = *database[i];
        known[species.getName()] = {DatabaseSources::nameOf(database, species.getSourceId()), 0,
                                    species.getName()};
    }
    return known;
}

} // namespace host
