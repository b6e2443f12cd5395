#include "CommandLine.h"
#include "BombCommandLine.h"
#include "CheckCommand.h"
#include "CommonOptions.h"
#include "CompareCommand.h"
#include "DbCommandLine.h"
#include "ExplosiveCommandLine.h"
#include "Failure.h"
#include "NewCommand.h"
#include "NozzleCommand.h"
#include "Output.h"
#include "RunCommand.h"
#include "SpeciesCommand.h"
#include "ThrottleCommand.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <memory>
#include <sstream>
#include <string>

namespace host {
namespace {

constexpr const char* generalHelp =
    "ketra: what a rocket engine makes of its propellant.\n\n"
    "Reads a document that states a propellant, a chamber and a nozzle, finds the chemical\n"
    "equilibrium of the combustion products, expands them through the nozzle, and prints\n"
    "their state and composition and the performance of the engine.";

constexpr const char* generalFooter =
    "\nExamples:\n"
    "  ketra run examples/10-lox-hydrogen-engine.cfg         the report\n"
    "  ketra run engine.cfg --english                        in US customary units\n"
    "  ketra run engine.cfg --json results.json              and the numbers for a program\n"
    "  ketra compare shifting.cfg frozen.cfg                 key figures beside each other\n"
    "  ketra throttle engine.cfg --ratio 1,0.5,0.1           at a part of its flow\n"
    "  ketra nozzle engine.cfg --stations 50 --csv           the states along the nozzle\n"
    "  ketra explosive --mixture 'RDX(cr)' --density 100     the heat of an explosion\n"
    "  ketra bomb powder.cfg --density 100                   pressure in a closed vessel\n"
    "  ketra check engine.cfg                                what is wrong with a document\n"
    "  ketra new engine.cfg                                  a document to start from\n"
    "  ketra species 'N2H4*'                                 what the species file holds\n"
    "  ketra db lint my-species.inp                          what is wrong with species data\n\n"
    "\"ketra COMMAND --help\" tells more about a command.\n\n"
    "The species files thermo.inp, properties.inp and trans.inp are looked for in the folder\n"
    "given by --resources, else in the one named by the environment variable KETRA_RESOURCES,\n"
    "else in the installed share/ketra/resources, else in ./resources. Species of your own in\n"
    "the folder named by KETRA_USER take the place of those, see \"ketra db add --help\".\n\n"
    "Reports go to standard output; warnings and errors to standard error. Exit status:\n"
    "  0   good\n"
    "  2   the command line cannot be understood\n"
    "  3   the document is unreadable or states something impossible\n"
    "  4   a species, or a file of species data, is missing\n"
    "  5   the calculation found no solution\n"
    "  6   some of several calculations found no solution\n"
    "  70  internal error, or the output could not be written";

constexpr const char* runHelp = "Checks a document, solves its problem and prints the report.";

constexpr const char* runFooter =
    "\nA whole document:\n\n"
    "  combustionChamberConditions: { pressure: { value = 7.0; unit = \"MPa\"; }; };\n"
    "  nozzleFlow: { nozzleExitConditions: { areaRatio = 40.0; }; };\n"
    "  propellant: { components: {\n"
    "      ratio: { value = 6.0; unit = \"O/F\"; };\n"
    "      oxidizer = ( { name = \"O2(L)\"; massFraction = 1.0; } );\n"
    "      fuel     = ( { name = \"H2(L)\"; massFraction = 1.0; } );\n"
    "  }; };\n\n"
    "For the chamber alone write nozzleFlow: { calculateNozzleFlow = false; };\n"
    "For the best mixture ratio write ratio: { unit = \"optimal\"; };\n"
    "Real numbers need a point: 7.0 and not 7. Lines that begin with # or // are comments.\n\n"
    "Behind the report stands what the nozzle delivers at the ambient pressures of the\n"
    "document, and, if it has efficiencies, what the losses of a real engine leave of that.\n"
    "The last line is the certificate of the result: A for a solution to the tolerance of the\n"
    "solver, B for one within the limits of use. What is no solution is not shown.\n\n"
    "Examples:\n"
    "  ketra run engine.cfg\n"
    "  ketra run engine.cfg --transport --corrections\n"
    "  ketra run engine.cfg --json - | python3 -m json.tool\n"
    "  ketra run engine.cfg --log run.log --verbose";

constexpr const char* compareHelp =
    "Solves several documents, prints the report of the first and the key figures of all\n"
    "beside each other.";

constexpr const char* compareFooter =
    "\nWith two documents the last column is the second over the first.\n\n"
    "Examples:\n"
    "  ketra compare shifting.cfg frozen.cfg\n"
    "  ketra compare kerosene.cfg methane.cfg hydrogen.cfg --json results.json";

constexpr const char* throttleHelp =
    "Solves the engine of a document, and what it delivers at other flow rates.";

constexpr const char* throttleFooter =
    "\nThe hardware stays what it is. A ratio is the mass flow over that of the design, from\n"
    "0.000001 to 2. The table shows for each of them the chamber pressure, the mass flux in\n"
    "the throat, c*, the specific impulse in vacuum and at the ambient pressure of the\n"
    "document, the exit pressure, the ambient pressure above which the flow separates from\n"
    "the wall, whether it does, and the grade of the certificate.\n\n"
    "Examples:\n"
    "  ketra throttle engine.cfg --ratio 0.5\n"
    "  ketra throttle engine.cfg --ratio 1,0.8,0.6,0.4,0.2 --json throttled.json";

constexpr const char* nozzleHelp =
    "Solves the engine of a document and the states along its nozzle.";

constexpr const char* nozzleFooter =
    "\nFrom the chamber end through the throat to the exit: area ratio, pressure, temperature,\n"
    "Mach number, velocity, density, molar mass of the gas, ratio of the heat capacities,\n"
    "isentropic exponent and the grade of the certificate. Where the chamber is not stated as\n"
    "one of finite area, the gas rests in it, and the first area ratio is left open.\n\n"
    "Examples:\n"
    "  ketra nozzle engine.cfg --stations 50\n"
    "  ketra nozzle engine.cfg --stations 200 --csv --composition > nozzle.csv";

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

constexpr const char* newHelp =
    "Writes a document to start from: an engine of oxygen and hydrogen.";

constexpr const char* newFooter =
    "\nWithout FILE the document goes to standard output. With --full it has every section of the\n"
    "format and every key, those that exclude each other as comments.\n\n"
    "Examples:\n"
    "  ketra new engine.cfg\n"
    "  ketra new --full | less";

constexpr int mostDocuments = 100;

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
        addCompare();
        addThrottle();
        addNozzle();
        addCheck();
        addNew();
        addSpecies();
        explosive = std::make_unique<ExplosiveCommandLine>(app);
        bomb = std::make_unique<BombCommandLine>(app);
        db = std::make_unique<DbCommandLine>(app);
    }

    ExitCode execute(int argc, const char* const* argv)
    {
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& e) {
            return explain(e);
        }
        if (run->parsed()) return runDocument(runOptions);
        if (compare->parsed()) return compareDocuments(compareOptions);
        if (throttle->parsed()) return throttleDocument(throttleOptions);
        if (nozzle->parsed()) return followNozzle(nozzleOptions);
        if (check->parsed()) return checkDocument(checkOptions);
        if (newDocument->parsed()) return writeNewDocument(newOptions);
        if (species->parsed()) return listSpecies(speciesOptions);
        if (explosive->isCalled()) return explosive->execute();
        if (bomb->isCalled()) return bomb->execute();
        if (db->isCalled()) return db->execute();
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
        addReportFlags(*run, runOptions);
        addJson(*run, runOptions.json, "the report");
        addSolving(*run, runOptions.reading);
        addSession(*run, runOptions.session, "report and table");
    }

    void addCompare()
    {
        compare = app.add_subcommand("compare", compareHelp);
        compare->footer(compareFooter);
        compare->add_option("DOCUMENTS", compareOptions.documents, "The documents to compare")
            ->required()
            ->expected(2, mostDocuments)
            ->option_text("TEXT TEXT... REQUIRED");
        addReportFlags(*compare, compareOptions.run);
        addJson(*compare, compareOptions.run.json, "report and table");
        addSolving(*compare, compareOptions.run.reading);
        addSession(*compare, compareOptions.run.session, "report and table");
    }

    void addThrottle()
    {
        throttle = app.add_subcommand("throttle", throttleHelp);
        throttle->footer(throttleFooter);
        throttle->add_option("DOCUMENT", throttleOptions.document, "The document of the design")
            ->required();
        throttle->add_option("--ratio", throttleOptions.ratios, "The mass flow over the design's")
            ->required()
            ->delimiter(',')
            ->allow_extra_args(false)
            ->type_name("R[,R...]");
        addTableFlags(*throttle, throttleOptions.english, throttleOptions.allowFailures);
        addJson(*throttle, throttleOptions.json, "the table");
        addSolving(*throttle, throttleOptions.reading);
        addSession(*throttle, throttleOptions.session, "report and table");
    }

    void addNozzle()
    {
        nozzle = app.add_subcommand("nozzle", nozzleHelp);
        nozzle->footer(nozzleFooter);
        nozzle->add_option("DOCUMENT", nozzleOptions.document, "The document of the engine")
            ->required();
        nozzle
            ->add_option("--stations", nozzleOptions.stations,
                         "How many stations, with chamber end, throat and exit; 20 if not given")
            ->type_name("N");
        nozzle->add_flag("--csv", nozzleOptions.csv, "The table as comma-separated values");
        nozzle->add_flag("--composition", nozzleOptions.composition,
                         "With the mole fractions of what reaches 0.0001 anywhere");
        addTableFlags(*nozzle, nozzleOptions.english, nozzleOptions.allowFailures);
        addJson(*nozzle, nozzleOptions.json, "the table");
        addSolving(*nozzle, nozzleOptions.reading);
        addSession(*nozzle, nozzleOptions.session, "report and table");
    }

    void addCheck()
    {
        check = app.add_subcommand("check", checkHelp);
        check->footer(checkFooter);
        check->add_option("DOCUMENT", checkOptions.document, "The document to check")->required();
        addCommon(*check, checkOptions.resources, checkOptions.verbose);
        addReading(*check, checkOptions.reading);
    }

    void addNew()
    {
        newDocument = app.add_subcommand("new", newHelp);
        newDocument->footer(newFooter);
        newDocument->add_option("FILE", newOptions.file, "The document to write");
        newDocument->add_flag("--full", newOptions.full, "With every section and key");
        newDocument->add_flag("--force", newOptions.force, "Write over a file that is there");
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

    static void addReportFlags(CLI::App& command, RunOptions& options)
    {
        command.add_flag("--english", options.english, "Report in US customary units");
        command.add_flag("--transport", options.transport,
                         "With viscosity, conductivity and Prandtl number");
        command.add_flag("--corrections", options.corrections,
                         "With the estimate of a real engine, which a document asks for by "
                         "stating efficiencies");
    }

    static void addTableFlags(CLI::App& command, bool& english, bool& allowFailures)
    {
        command.add_flag("--english", english, "The table in US customary units");
        command.add_flag("--allow-failures", allowFailures,
                         "Exit status 0 even if some of the calculations have no solution");
    }

    CLI::App app{generalHelp};
    CLI::App* run = nullptr; // the commands belong to app
    CLI::App* compare = nullptr;
    CLI::App* throttle = nullptr;
    CLI::App* nozzle = nullptr;
    CLI::App* check = nullptr;
    CLI::App* newDocument = nullptr;
    CLI::App* species = nullptr;
    std::unique_ptr<ExplosiveCommandLine> explosive;
    std::unique_ptr<BombCommandLine> bomb;
    std::unique_ptr<DbCommandLine> db;
    RunOptions runOptions;
    CompareOptions compareOptions;
    ThrottleOptions throttleOptions;
    NozzleOptions nozzleOptions;
    CheckOptions checkOptions;
    NewOptions newOptions;
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
