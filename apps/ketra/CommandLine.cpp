#include "CommandLine.h"
#include "CheckCommand.h"
#include "Failure.h"
#include "Output.h"
#include "RunCommand.h"
#include "SpeciesCommand.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <sstream>
#include <string>

namespace host {
namespace {

constexpr const char* generalHelp =
    "ketra: what a rocket propellant burns to.\n\n"
    "Reads a document that states a propellant and a chamber pressure, finds the chemical\n"
    "equilibrium of the combustion products, and prints their state and composition.";

constexpr const char* generalFooter =
    "\nExamples:\n"
    "  ketra run examples/01-lox-hydrogen-chamber.cfg        the report\n"
    "  ketra run engine.cfg --english                        in US customary units\n"
    "  ketra run engine.cfg --json results.json              and the numbers for a program\n"
    "  ketra check engine.cfg                                what is wrong with a document\n"
    "  ketra species 'N2H4*'                                 what the species file holds\n\n"
    "\"ketra COMMAND --help\" tells more about a command.\n\n"
    "The species files thermo.inp and properties.inp are looked for in the folder given by\n"
    "--resources, else in the one named by the environment variable KETRA_RESOURCES, else in\n"
    "the installed share/ketra/resources, else in ./resources.\n\n"
    "Reports go to standard output; warnings and errors to standard error. Exit status:\n"
    "  0   good\n"
    "  2   the command line cannot be understood\n"
    "  3   the document is unreadable or states something impossible\n"
    "  4   a species, or a file of species data, is missing\n"
    "  5   the calculation found no solution\n"
    "  70  internal error, or the output could not be written";

constexpr const char* runHelp = "Checks a document, solves its problem and prints the report.";

constexpr const char* runFooter =
    "\nA whole document:\n\n"
    "  combustionChamberConditions: { pressure: { value = 7.0; unit = \"MPa\"; }; };\n"
    "  nozzleFlow: { calculateNozzleFlow = false; };\n"
    "  propellant: { components: {\n"
    "      ratio: { value = 6.0; unit = \"O/F\"; };\n"
    "      oxidizer = ( { name = \"O2(L)\"; massFraction = 1.0; } );\n"
    "      fuel     = ( { name = \"H2(L)\"; massFraction = 1.0; } );\n"
    "  }; };\n\n"
    "Real numbers need a point: 7.0 and not 7. Lines that begin with # or // are comments.\n\n"
    "Examples:\n"
    "  ketra run chamber.cfg\n"
    "  ketra run chamber.cfg --json - | python3 -m json.tool\n"
    "  ketra run chamber.cfg --log run.log --verbose";

constexpr const char* checkHelp =
    "Reads a document and says what is wrong with it: where, and how to mend it.";

constexpr const char* checkFooter =
    "\nChecks the syntax, every number, every key and unit, the sums of mass fractions, and\n"
    "whether the species exist. The file is never changed. Each finding is one line,\n"
    "FILE:LINE: error or warning: KEY: what is wrong. How to mend it.\n\n"
    "Examples:\n"
    "  ketra check engine.cfg\n"
    "  ketra check engine.cfg --strict        a warning makes the exit status 3, too";

constexpr const char* speciesHelp =
    "Lists the species of the database: name, phase, formula, molar mass, heat of formation,\n"
    "temperature range and source file.";

constexpr const char* speciesFooter =
    "\nPATTERN is a part of a name, or a whole name with * ? [ ] as in a shell; upper and lower\n"
    "case do not count. A species with \"only\" in its temperature column has one assigned\n"
    "enthalpy, at that temperature.\n\n"
    "Examples:\n"
    "  ketra species                  all of them\n"
    "  ketra species al2o3            AL2O3 and its condensed phases\n"
    "  ketra species 'C?H*(L)*'       liquid hydrocarbons and alcohols\n"
    "  ketra species --json=all.json  all of them, for a program";

/// The commands and where their words go.
class CommandLine
{
public:
    CommandLine()
    {
        app.name("ketra");
        app.set_version_flag("--version", "ketra " KETRA_VERSION, "Print the version and exit");
        app.footer(generalFooter);
        app.require_subcommand(0, 1);
        addRun();
        addCheck();
        addSpecies();
    }

    ExitCode execute(int argc, const char* const* argv)
    {
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& e) {
            return explain(e);
        }
        if (run->parsed()) return runDocument(runOptions);
        if (check->parsed()) return checkDocument(checkOptions);
        if (species->parsed()) return listSpecies(speciesOptions);
        writeToStandardError(app.help());
        return USAGE;
    }

private:
    /// Help and version end in a parse error of their own, with exit code 0.
    ExitCode explain(const CLI::ParseError& e)
    {
        std::ostringstream out;
        std::ostringstream err;
        const int code = app.exit(e, out, err);
        if (code == 0) {
            writeToStandardOutput(out.str());
            return GOOD;
        }
        writeToStandardError("ketra: error: " + err.str());
        return USAGE;
    }

    void addRun()
    {
        run = app.add_subcommand("run", runHelp);
        run->footer(runFooter);
        run->add_option("DOCUMENT", runOptions.document, "The document to run")->required();
        run->add_flag("--english", runOptions.english, "Report in US customary units");
        run->add_flag("--transport", runOptions.transport,
                      "With viscosity, conductivity and Prandtl number");
        run->add_option("--json", runOptions.json,
                        "Write the results to FILE in SI units, as JSON; \"-\" is standard output, "
                        "in place of the report")
            ->type_name("FILE");
        run->add_option("--log", runOptions.log, "Write the report and all messages to FILE, too")
            ->type_name("FILE");
        run->add_flag("--crlf", runOptions.crlf, "End the lines of the report in CR LF");
        addCommon(*run, runOptions.resources, runOptions.verbose);
        addDocumentFlags(*run, runOptions.allowInclude, runOptions.strict);
    }

    void addCheck()
    {
        check = app.add_subcommand("check", checkHelp);
        check->footer(checkFooter);
        check->add_option("DOCUMENT", checkOptions.document, "The document to check")->required();
        addCommon(*check, checkOptions.resources, checkOptions.verbose);
        addDocumentFlags(*check, checkOptions.allowInclude, checkOptions.strict);
    }

    void addSpecies()
    {
        species = app.add_subcommand("species", speciesHelp);
        species->footer(speciesFooter);
        species->add_option("PATTERN", speciesOptions.pattern, "Part of a name, or shell pattern");
        // A flag with a value: the word behind it stays the pattern.
        species->add_flag("--json{-}", speciesOptions.json,
                          "As JSON in SI units, to standard output, or to a file with --json=FILE");
        addCommon(*species, speciesOptions.resources, speciesOptions.verbose);
    }

    static void addCommon(CLI::App& command, std::string& resources, bool& verbose)
    {
        command.add_option("--resources", resources, "Folder of the species files")
            ->type_name("DIR");
        command.add_flag("--verbose", verbose, "With the library's remarks on its progress");
    }

    static void addDocumentFlags(CLI::App& command, bool& allowInclude, bool& strict)
    {
        command.add_flag("--allow-include", allowInclude,
                         "Let the document read other files with @include");
        command.add_flag("--strict", strict, "Refuse a document with warnings, too");
    }

    CLI::App app{generalHelp};
    CLI::App* run = nullptr; // the three commands belong to app
    CLI::App* check = nullptr;
    CLI::App* species = nullptr;
    RunOptions runOptions;
    CheckOptions checkOptions;
    SpeciesOptions speciesOptions;
};

} // namespace

ExitCode runCommandLine(int argc, const char* const* argv) noexcept
try {
    try {
        return CommandLine().execute(argc, argv);
    } catch (...) {
        const Failure failure = describeException(Stage::WRITING, "internal error");
        writeToStandardError(std::string("ketra: error: ") + failure.what() + "\n");
        return failure.getCode();
    }
} catch (...) {
    return INTERNAL; // not even memory for a message
}

} // namespace host
