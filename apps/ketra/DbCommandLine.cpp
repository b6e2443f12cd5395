#include "DbCommandLine.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <string>

namespace host {
namespace {

constexpr const char* dbHelp = "Looks after files of species data, and after the user's own ones.";

constexpr const char* lintHelp =
    "Reads files of species data and says what is wrong with them: where, and how to mend it.";

constexpr const char* lintFooter =
    "\nA file is recognised by its content: species, properties, transport or PROPEP file.\n"
    "Tables are looked up among the species files beside them, else among the species of the\n"
    "resources. Files are never changed. Each finding is one line, FILE:LINE: error or\n"
    "warning: RECORD: what is wrong. How to mend it. An error is a record that is dropped,\n"
    "loses data or is read otherwise than it stands there, or data that contradict each other.\n\n"
    "Warned of is a molar mass off its formula by more than 0.01 %, an H(298.15) off the heat\n"
    "of formation by more than 5 J/mol + 0.001 %, and a jump where two intervals meet of more\n"
    "than 0.2 % of Cp, 0.002 R T of H, 0.002 R of S, 2 % of viscosity or conductivity.\n\n"
    "Examples:\n"
    "  ketra db lint resources/*.inp\n"
    "  ketra db lint my-species.inp my-tables.inp --strict";

constexpr const char* importHelp =
    "Reads the ingredients of a PROPEP file and lists them, or writes them as species.";

constexpr const char* importFooter =
    "\nA species has the first word of its ingredient's name, 298.15 K as its one temperature,\n"
    "and a table of its density. With --out FILE.inp the tables are written to\n"
    "FILE-properties.inp. What is left out and why goes to standard error; the last ingredient\n"
    "of a file is always left out.\n\n"
    "Examples:\n"
    "  ketra db import-propep ingredients.txt\n"
    "  ketra db import-propep ingredients.txt --pick AMMONIUM HTPB --out mine.inp\n"
    "  ketra db add mine.inp mine-properties.inp";

constexpr const char* exportHelp = "Writes species for scripts.";

constexpr const char* exportFooter =
    "\nThe form is close to JSON: a comment at its head, single quotes around keys and most\n"
    "words. With --strict it is JSON, numbers have all their digits, and a record of a single\n"
    "temperature has that as T. An old file is kept with a ~ in its name unless --strict is\n"
    "given.\n\n"
    "Examples:\n"
    "  ketra db export-json species.json\n"
    "  ketra db export-json - --strict | python3 -m json.tool\n"
    "  ketra db export-json mine.json --species mine.inp";

constexpr const char* addHelp = "Adds species and property tables to the user's own files.";

constexpr const char* userFooter =
    "\nThe user's files are resources/usr_thermo.inp and resources/usr_properties.inp in the\n"
    "folder given by --user, else in the one that the environment variable KETRA_USER names.\n"
    "With KETRA_USER set all commands load them over the species that come with the program,\n"
    "record by record. Of each file that is written the one before is kept with a ~ in its name.";

constexpr const char* removeHelp = "Takes species, with their tables, out of the user's own files.";

constexpr int mostWords = 1000;

void addCommon(CLI::App& command, std::string& resources, bool& verbose)
{
    command.add_option("--resources", resources, "Folder of the species files")->type_name("DIR");
    command.add_flag("--verbose", verbose, "With the library's remarks on its progress");
}

} // namespace

DbCommandLine::DbCommandLine(CLI::App& parent) : db(parent.add_subcommand("db", dbHelp))
{
    db->footer("\n\"ketra db COMMAND --help\" tells more about a command.");
    db->require_subcommand(1);
    addLint();
    addImport();
    addExport();
    addUser();
}

bool DbCommandLine::isCalled() const { return db->parsed(); }

ExitCode DbCommandLine::execute() const
{
    if (lint->parsed()) return lintFiles(lintOptions);
    if (importer->parsed()) return importPropep(importOptions);
    if (exporter->parsed()) return exportSpecies(exportOptions);
    if (add->parsed()) return addToUser(addOptions);
    return removeFromUser(removeOptions);
}

void DbCommandLine::addLint()
{
    lint = db->add_subcommand("lint", lintHelp);
    lint->footer(lintFooter);
    lint->add_option("FILES", lintOptions.files, "The files to check")
        ->required()
        ->expected(1, mostWords)
        ->option_text("FILE... REQUIRED");
    lint->add_flag("--strict", lintOptions.strict, "A warning makes the exit status 3, too");
    addCommon(*lint, lintOptions.resources, lintOptions.verbose);
}

void DbCommandLine::addImport()
{
    importer = db->add_subcommand("import-propep", importHelp);
    importer->footer(importFooter);
    importer->add_option("FILE", importOptions.file, "The PROPEP file")->required();
    importer->add_option("--pick", importOptions.picks, "Only these species, by their names")
        ->expected(1, mostWords)
        ->option_text("NAME...");
    importer->add_option("--out", importOptions.out, "The species file to write")
        ->type_name("FILE");
    importer->add_flag("--verbose", importOptions.verbose,
                       "With the library's remarks on its progress");
}

void DbCommandLine::addExport()
{
    exporter = db->add_subcommand("export-json", exportHelp);
    exporter->footer(exportFooter);
    exporter->add_option("FILE", exportOptions.file, "The file to write")->required();
    exporter->add_flag("--strict", exportOptions.strict, "Write JSON as it is standardised");
    exporter
        ->add_option("--species", exportOptions.species,
                     "The species file to export, in place of the resources")
        ->type_name("FILE");
    addCommon(*exporter, exportOptions.resources, exportOptions.verbose);
}

void DbCommandLine::addUser()
{
    const auto command = [this](const char* name, const char* help, const char* words,
                                const char* wordsText, UserOptions& options) {
        CLI::App* const added = db->add_subcommand(name, help);
        added->footer(userFooter);
        added->add_option(words, options.words, wordsText)->required()->expected(1, mostWords);
        added->add_option("--user", options.user, "Folder of the user's files")->type_name("DIR");
        addCommon(*added, options.resources, options.verbose);
        return added;
    };
    add = command("add", addHelp, "FILES", "Species and properties files", addOptions);
    remove = command("remove", removeHelp, "NAMES", "Names of species", removeOptions);
}

} // namespace host
