#include "CommonOptions.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace host {
namespace {

constexpr int mostNames = 1000;

void addInclude(CLI::App& command, ReadingOptions& options)
{
    command.add_flag("--allow-include", options.allowInclude,
                     "Let the document read other files with @include");
}

} // namespace

void addCommon(CLI::App& command, std::string& resources, bool& verbose)
{
    command.add_option("--resources", resources, "Folder of the species files")->type_name("DIR");
    command.add_flag("--verbose", verbose, "With the library's remarks on its progress");
}

void addReading(CLI::App& command, ReadingOptions& options)
{
    addInclude(command, options);
    command.add_flag("--strict", options.strict, "Refuse a document with warnings, too");
}

void addSolving(CLI::App& command, ReadingOptions& options)
{
    addInclude(command, options);
    command.add_flag("--strict", options.strict,
                     "Refuse a document with warnings, and results whose certificate is not A");
    command.add_flag(
        "--literal", options.literal,
        "The default method alone: no warm starts, no further attempts where it fails");
}

void addSession(CLI::App& command, SessionOptions& options, const std::string& output)
{
    command
        .add_option("--log", options.log,
                    "Write the library's report and all messages to FILE, too")
        ->type_name("FILE");
    command.add_flag("--crlf", options.crlf, "End the lines of " + output + " in CR LF");
    addCommon(command, options.resources, options.verbose);
}

void addJson(CLI::App& command, std::string& json, const std::string& otherwise)
{
    command
        .add_option("--json", json,
                    "Write the results to FILE in SI units, as JSON; \"-\" is standard output, in "
                    "place of " +
                        otherwise)
        ->type_name("FILE");
}

void addSample(CLI::App& command, SampleOptions& options)
{
    command.add_option("DOCUMENT", options.document, "The document whose propellant it is");
    command.add_option("--mixture", options.mixture, "The sample by mass")
        ->type_name("NAME=FRACTION,...");
    addSolving(command, options.reading);
}

void addProductChoice(CLI::App& command, SampleOptions& options)
{
    command.add_option("--include", options.included, "The only products to consider")
        ->expected(1, mostNames)
        ->option_text("NAME...");
    command.add_option("--omit", options.omitted, "Products to leave out")
        ->expected(1, mostNames)
        ->option_text("NAME...");
}

void addDensity(CLI::App& command, double& density)
{
    command.add_option("--density", density, "The loading density, kg/m^3")
        ->required()
        ->type_name("RHO");
}

} // namespace host
