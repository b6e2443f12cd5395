#pragma once

#include "ExitCode.h"

namespace host {

/// Reads the command line, runs the command, and turns whatever goes wrong into a message and an
/// exit code. Nothing is thrown.
ExitCode runCommandLine(int argc, const char* const* argv) noexcept;

} // namespace host
