#pragma once

#include <string>

namespace host {

/// Prepares the three standard descriptors: a closed one must not be handed to the next file that
/// is opened, and a reader that goes away or a file at its limit must end a write with an error and
/// not with a signal.
void guardStandardStreams();

/// Writes a text to standard output. A reader that has gone away is no failure: what it wanted it
/// has. \throws Failure if the text could not be written in full
void writeToStandardOutput(const std::string& text);

/// Writes a line to standard error; there is nowhere to report a failure of that.
void writeToStandardError(const std::string& text) noexcept;

/// Writes a text to a file, whole or not at all: a new file takes the place of the old one only
/// after it has reached the disk. A device or pipe is written to directly; "-" is standard output.
/// \throws Failure if the text could not be written in full; the old file is then untouched
void writeToFile(const std::string& path, const std::string& text);

} // namespace host
