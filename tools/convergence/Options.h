#pragma once

#include "Verdict.h"

#include <cstddef>
#include <optional>
#include <string>

namespace convergence {

/// What the command line asks for.
struct Options {
    std::optional<std::size_t> cases;   // random cases
    std::optional<std::size_t> engines; // of the sweep
    std::string suite;                  // the only one to run; empty for all
    std::optional<std::size_t> only;    // the only random case to run
    unsigned coarseness = 1;            // every how manieth state of a grid is solved
    unsigned threads = 1;
    unsigned seed = 1;
    bool list = false; // every case that is not certified
    bool laws = false; // the laws of nozzle flow over the engines of the sweep
    Method method;

    bool isLiteral() const { return !method.persistent; }
};

/// The text of `--help`.
extern const char* const usage;

/// \throws std::invalid_argument with a text for the user
Options parse(int argc, char** argv);

} // namespace convergence
