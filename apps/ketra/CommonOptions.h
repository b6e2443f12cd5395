#pragma once

#include "ExplosiveSample.h"
#include "Session.h"

#include <string>

namespace CLI {
class App;
}

namespace host {

// Options that several commands have, in the same words.

/// Where species data come from, and how much is said.
void addCommon(CLI::App& command, std::string& resources, bool& verbose);
/// How a document is read.
void addReading(CLI::App& command, ReadingOptions& options);
/// The same for a command that solves: which method, and which results are good enough.
void addSolving(CLI::App& command, ReadingOptions& options);
/// Species data, log and line ends of a command with a report or table.
void addSession(CLI::App& command, SessionOptions& options, const std::string& output);
/// \param otherwise  what standard output shows without the option
void addJson(CLI::App& command, std::string& json, const std::string& otherwise);
/// The sample of a closed vessel: a document or a recipe.
void addSample(CLI::App& command, SampleOptions& options);
/// Its only products, and those that it cannot have.
void addProductChoice(CLI::App& command, SampleOptions& options);
/// How densely the vessel is loaded.
void addDensity(CLI::App& command, double& density);

} // namespace host
