#include "ImportCommand.h"
#include "DataKind.h"
#include "Failure.h"
#include "Findings.h"
#include "HeldMessages.h"
#include "LogSession.h"
#include "Nearest.h"
#include "Output.h"
#include "PropepLint.h"
#include "SpeciesText.h"

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace host {
namespace {

using thermo::Database;
using thermo::Species;

struct RemoveDatabase {
    void operator()(Database* database) const { Database::remove(database); }
};
using OwnedDatabase = std::unique_ptr<Database, RemoveDatabase>;

constexpr double ingredientT = 298.15;   // K, at which all ingredients are given
constexpr double ingredientP = 101325.0; // Pa
constexpr size_t suggestions = 3;

/// Reads the file twice: once for what is wrong with it, line by line, and once for its species.
OwnedDatabase read(const ImportOptions& options, ReportLogger& logger)
{
    const DataText text(options.file);
    const std::optional<DataKind> kind = recognise(text);
    if (kind != DataKind::PROPEP)
        throw Failure(DOCUMENT, options.file + ": this is " +
                                    (kind ? std::string("a ") + nameOf(*kind) + ", not a"
                                          : std::string("no")) +
                                    " PROPEP file");
    Findings findings;
    lintPropep(text, findings);
    findings.print();
    // The findings tell more than the messages of the library.
    HeldMessages messages(logger);
    OwnedDatabase database(Database::preloadPROPEPDatabase(options.file.c_str()));
    messages.dismiss();
    return database;
}

std::vector<std::string> namesOf(Database& database)
{
    std::vector<std::string> names;
    for (unsigned i = 0; i < database.size(); ++i) names.push_back(database[i]->getName());
    return names;
}

/// Leaves only the picks, if there are any.
void pick(Database& database, const ImportOptions& options)
{
    if (options.picks.empty()) return;
    const std::vector<std::string> names = namesOf(database);
    for (const std::string& name : options.picks) {
        if (database.find(name) != nullptr) continue;
        const std::vector<std::string> meant = nearest(name, names, suggestions);
        throw Failure(DATA, options.file + ": no ingredient \"" + name +
                                "\" was read; its name is the first word only. " +
                                (meant.empty() ? "" : "Is it " + quotedChoice(meant) + "? ") +
                                "Without --pick all are taken");
    }
    for (const std::string& name : names)
        if (std::find(options.picks.begin(), options.picks.end(), name) == options.picks.end())
            database.remove(name, /*deleteSpecies=*/true);
}

std::string table(Database& database)
{
    constexpr const char* format = "%-18s %-6s %-22s %12s %14s %12s  %s\n";
    std::string text;
    const auto row = [&text](const char* name, const char* phase, const std::string& formula,
                             const std::string& M, const std::string& H, const std::string& rho,
                             const std::string& description) {
        char line[512];
        std::snprintf(line, sizeof line, format, name, phase, formula.c_str(), M.c_str(), H.c_str(),
                      rho.c_str(), description.c_str());
        text += line;
    };
    const auto fixed = [](double value, int decimals) {
        char number[48];
        std::snprintf(number, sizeof number, "%.*f", decimals, value);
        return std::string(number);
    };
    row("name", "phase", "formula", "M, g/mol", "dHf, kJ/mol", "rho, kg/m3", "description");
    for (unsigned i = 0; i < database.size(); ++i) {
        const Species& s = *database[i];
        row(s.getName().c_str(), phaseOf(s), formulaOf(s), fixed(s.getM(), 4),
            fixed(s.getDHf298_15() / 1000.0, 3),
            fixed(s.getInterpolatedRho(ingredientT, ingredientP, /*clampPressure=*/true), 1),
            s.getDescr());
    }
    return text;
}

/// Without elements no record of a species file can be read again.
void leaveOutUnwritable(Database& database)
{
    for (const std::string& name : namesOf(database))
        if (database.find(name)->size() == 0) {
            writeToStandardError("ketra: warning: " + name +
                                 " has no elements and is not written\n");
            database.remove(name, /*deleteSpecies=*/true);
        }
}

/// "dir/name.inp" to "dir/name-properties.inp".
std::string propertiesFileBeside(const std::string& file)
{
    const size_t slash = file.rfind('/');
    const size_t begin = slash == std::string::npos ? 0 : slash + 1;
    const size_t point = file.rfind('.');
    const size_t end = point == std::string::npos || point <= begin ? file.size() : point;
    return file.substr(0, end) + "-properties" + file.substr(end);
}

void write(Database& database, const std::string& file)
{
    const std::string properties = propertiesFileBeside(file);
    std::string at = file;
    try {
        database.saveNASA9(file.c_str(), -1);
        at = properties;
        database.saveProperties(properties.c_str(), -1);
    } catch (const runtime::Exception&) {
        throw Failure(INTERNAL, "cannot write " + at);
    }
    writeToStandardOutput(file + ": " + std::to_string(database.size()) + " species\n" +
                          properties + ": their densities\n");
}

} // namespace

ExitCode importPropep(const ImportOptions& options)
{
    thermo::ChemicalElement::initAtoms();
    LogSession log(options.verbose, "", false);
    const OwnedDatabase database = read(options, log.reports());
    pick(*database, options);
    if (!options.out.empty()) leaveOutUnwritable(*database);
    if (database->size() == 0)
        throw Failure(DATA, options.file + ": there is no ingredient that can be taken over");
    if (options.out.empty())
        writeToStandardOutput(table(*database));
    else
        write(*database, options.out);
    return GOOD;
}

} // namespace host
