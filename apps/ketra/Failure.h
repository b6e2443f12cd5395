#pragma once

#include "ExitCode.h"

#include <stdexcept>
#include <string>

namespace host {

/// Ends a command: a sentence for the user and the exit code that goes with it.
class Failure : public std::runtime_error
{
public:
    Failure(ExitCode exitCode, const std::string& sentence)
        : std::runtime_error(sentence), code(exitCode)
    {
    }
    ExitCode getCode() const noexcept { return code; }

private:
    ExitCode code;
};

/// What the program was doing when an exception came; the same code of the library means a fault
/// of the data, of the document or of the calculation, depending on it.
enum class Stage { LOADING, READING, SOLVING, WRITING };

/// Turns the exception in flight into a failure. To be called from a catch handler only.
/// \param subject the document or file that was worked on
Failure describeException(Stage stage, const std::string& subject);

} // namespace host
