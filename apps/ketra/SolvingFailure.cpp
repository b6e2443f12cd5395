#include "SolvingFailure.h"

#include <optional>
#include <string>
#include <vector>

namespace host {
namespace {

/// An end of the species data, as the library names it.
struct EndOfData {
    const char* words;
    const char* mending;
};

constexpr EndOfData ends[] = {
    {"where their data begin",
     "The state is too cold: take a smaller area ratio or pressure ratio, or a higher exit "
     "pressure, or a charge with more heat in it"},
    {"where their data end", "The state is too hot: take a charge with less heat in it"},
};

// How the library begins to say of a state that it has not found it.
const std::vector<std::string> unsolved = {
    "Could not solve the equilibrium: ", "Could not solve frozen equilibrium for nozzle section: "};

/// What the library says of the last state that it has not found, if that lies beyond the data, and
/// how to mend it.
std::optional<std::string> beyondData(const HeldMessages& messages)
{
    std::string message = messages.latestWith(unsolved);
    for (const EndOfData& end : ends) {
        if (message.find(end.words) == std::string::npos) continue;
        message.erase(0, message.find(": ") + 2);
        if (message.back() == '.') message.pop_back();
        return message + ". " + end.mending;
    }
    return std::nullopt;
}

} // namespace

Failure describeSolving(const std::string& subject, HeldMessages& messages)
{
    const Failure failure = describeException(Stage::SOLVING, subject);
    if (failure.getCode() != NOT_CONVERGED) return failure;
    const std::optional<std::string> reason = beyondData(messages);
    if (!reason) return failure;
    messages.dismiss();
    return {NOT_CONVERGED, subject + ": the calculation did not converge: " + *reason};
}

} // namespace host
