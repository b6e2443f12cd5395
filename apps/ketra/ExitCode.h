#pragma once

namespace host {

/// What the program tells its caller by the exit status.
enum ExitCode : int {
    GOOD = 0,
    USAGE = 2,         ///< the command line cannot be understood
    DOCUMENT = 3,      ///< the document is unreadable or states something impossible
    DATA = 4,          ///< a species, or a file of species data, is missing
    NOT_CONVERGED = 5, ///< the calculation was tried and found no solution
    SOME_FAILED = 6,   ///< some cases of many failed; reserved for sweeps
    INTERNAL = 70      ///< a failed write, lack of memory, a fault of the program
};

} // namespace host
