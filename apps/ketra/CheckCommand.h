#pragma once

#include "Case.h"
#include "ExitCode.h"

#include <string>

namespace host {

/// What the user asks of `ketra check`.
struct CheckOptions {
    std::string document;
    std::string resources; ///< folder; empty: to be looked for
    ReadingOptions reading;
    bool verbose = false;
};

/// The part of a check that needs no species: text, syntax, format, recipe. No log may be open.
/// A group with a fault of the format is not looked into further: what has the wrong kind would
/// show up again as missing. \returns whether the propellant can be read, so that its species can
/// be looked up
bool checkWithoutSpecies(const Document& document, Findings& findings);

/// Reads a document and says what is wrong with it, where, and how to mend it. \throws Failure
ExitCode checkDocument(const CheckOptions& options);

} // namespace host
