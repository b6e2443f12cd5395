#include "ExplosiveCommandLine.h"
#include "CommonOptions.h"

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

} // namespace

ExplosiveCommandLine::ExplosiveCommandLine(CLI::App& parent)
    : command(parent.add_subcommand("explosive", help))
{
    command->footer(footer);
    addSample(*command, options.sample);
    addVessel();
    addProducts();
    addJson(*command, options.json, "the table");
    addSession(*command, options.session, "the table");
}

bool ExplosiveCommandLine::isCalled() const { return command->parsed(); }

void ExplosiveCommandLine::addVessel()
{
    addDensity(*command, options.density);
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
    addProductChoice(*command, options.sample);
}

} // namespace host
