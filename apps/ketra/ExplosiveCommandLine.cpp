#include "ExplosiveCommandLine.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace host {
namespace {

constexpr const char* help =
    "Computes the heat that an energetic material gives off in a closed vessel, and its products.";

constexpr const char* footer =
    "\nThe sample is the propellant of a document, or stated by mass with --mixture, at 298.15 K.\n"
    "The exact method takes the products of the equilibrium in the vessel at 1500 K, or at\n"
    "--temperature, cools them to 298.15 K, water liquid, and compares internal energies. The\n"
    "inert diluent method burns one part per thousand of sample in argon of 298.15 K, or of\n"
    "--temperature, and takes the heat from the rise of its temperature.\n\n"
    "Examples:\n"
    "  ketra explosive --mixture 'RDX(cr)' --density 100\n"
    "  ketra explosive --mixture 'RDX(cr)=0.6,TNT(cr)=0.4' --density 1000 --replace H2O=H2O\n"
    "  ketra explosive examples/21-composition-b.cfg --density 100 --json results.json\n"
    "  ketra explosive --mixture 'NG(L)' --density 1 --method inert-diluent \\\n"
    "      --include Ar CO2 CO H2O N2 O2 NO OH";

constexpr int mostNames = 1000;

} // namespace

ExplosiveCommandLine::ExplosiveCommandLine(CLI::App& parent)
    : command(parent.add_subcommand("explosive", help))
{
    command->footer(footer);
    addSample();
    addVessel();
    addProducts();
    command
        ->add_option("--json", options.json,
                     "Write the results to FILE in SI units, as JSON; \"-\" is standard output, in "
                     "place of the table")
        ->type_name("FILE");
    addSession();
}

bool ExplosiveCommandLine::isCalled() const { return command->parsed(); }

void ExplosiveCommandLine::addSample()
{
    command->add_option("DOCUMENT", options.document, "The document whose propellant it is");
    command->add_option("--mixture", options.mixture, "The sample by mass")
        ->type_name("NAME=FRACTION,...");
    command->add_flag("--allow-include", options.reading.allowInclude,
                      "Let the document read other files with @include");
    command->add_flag("--strict", options.reading.strict, "Refuse a document with warnings, too");
}

void ExplosiveCommandLine::addVessel()
{
    command->add_option("--density", options.density, "The loading density, kg/m^3")
        ->required()
        ->type_name("RHO");
    command
        ->add_option("--temperature", options.temperature,
                     "Temperature of the products, or of the argon, K")
        ->type_name("T");
    command->add_option("--method", options.method, "How it is computed; exact if not given")
        ->check(CLI::IsMember({"exact", "inert-diluent"}))
        ->type_name("exact|inert-diluent");
}

void ExplosiveCommandLine::addProducts()
{
    command
        ->add_option("--replace", options.replacements,
                     "The species B stands for the product A in the final state; H2O=H2O leaves "
                     "water gaseous")
        ->allow_extra_args(false)
        ->type_name("A=B");
    command->add_option("--include", options.included, "The only products to consider")
        ->expected(1, mostNames)
        ->option_text("NAME...");
    command->add_option("--omit", options.omitted, "Products to leave out")
        ->expected(1, mostNames)
        ->option_text("NAME...");
}

void ExplosiveCommandLine::addSession()
{
    SessionOptions& session = options.session;
    command->add_option("--log", session.log, "Write the library's messages to FILE, too")
        ->type_name("FILE");
    command->add_flag("--crlf", session.crlf, "End the lines of the table in CR LF");
    command->add_option("--resources", session.resources, "Folder of the species files")
        ->type_name("DIR");
    command->add_flag("--verbose", session.verbose, "With the library's remarks on its progress");
}

} // namespace host
