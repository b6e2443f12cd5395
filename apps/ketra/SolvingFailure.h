#pragma once

#include "Failure.h"
#include "HeldMessages.h"

namespace host {

/// Turns the exception in flight, of a calculation, into a failure. Where the library has found
/// that the state asked for lies beyond the species data, that is the reason, with how to mend it,
/// and the messages on the way to it are forgotten. To be called from a catch handler only.
Failure describeSolving(const std::string& subject, HeldMessages& messages);

} // namespace host
