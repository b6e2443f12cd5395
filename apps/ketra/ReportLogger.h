#pragma once

#include "Sink.h"

#include <string>
#include <vector>

namespace host {

/// Turns the library's line ends, CR LF, into what the user wants.
class LineEnds
{
public:
    explicit LineEnds(bool keepCrLf) : crlf(keepCrLf) {}
    /// A text with LF, or with CR LF, at each line end, whichever it came with.
    std::string apply(const std::string& text) const;

private:
    bool crlf;
};

/// The program's sink of the log: report text is kept until the command asks for it, severities
/// go to standard error at once, each line with "ketra: " and its severity in front.
///
/// While errors are held back they wait for the outcome: the library reports a failed attempt as an
/// error even if the next attempt succeeds, and a density it lacks even if the report does without.
class ReportLogger final : public Sink
{
public:
    explicit ReportLogger(bool verbose);

    void print(unsigned int channel, const char* text) override;

    void holdErrors() { holding = true; }
    /// Prints the errors held back; as warnings if what they interrupted went well after all.
    void releaseErrors(bool recovered);

    /// The report, with the library's line ends.
    const std::string& getReport() const { return report; }

private:
    static void say(const char* severity, const std::string& message);

    std::string report;
    bool holding = false;
    std::vector<std::string> held;
};

} // namespace host
