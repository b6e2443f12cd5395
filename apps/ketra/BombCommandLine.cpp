#include "BombCommandLine.h"
#include "CommonOptions.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace host {
namespace {

constexpr const char* help =
    "Burns a charge in a closed vessel: pressure, temperature and products at its density.";

constexpr const char* footer =
    "\nThe charge is the propellant of a document, or stated by mass with --mixture, at 298.15 K.\n"
    "Nothing leaves the vessel and its walls take no heat: the products have the internal energy\n"
    "of the charge. They are an ideal gas, and what is condensed fills no volume: above some\n"
    "10 kg/m^3 the pressure of a real gas is higher.\n\n"
    "Examples:\n"
    "  ketra bomb --mixture 'RDX(cr)' --density 10\n"
    "  ketra bomb examples/19-solid-motor.cfg --density 20 --json results.json";

} // namespace

BombCommandLine::BombCommandLine(CLI::App& parent) : command(parent.add_subcommand("bomb", help))
{
    command->footer(footer);
    addSample(*command, options.sample);
    addDensity(*command, options.density);
    addProductChoice(*command, options.sample);
    command->add_flag("--english", options.english, "The table in US customary units");
    addJson(*command, options.json, "the table");
    addSession(*command, options.session, "the table");
}

bool BombCommandLine::isCalled() const { return command->parsed(); }

} // namespace host
