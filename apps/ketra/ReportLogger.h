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
/// go to standard error, each line with "ketra: " and its severity in front.
///
/// While messages are held they wait for the outcome: the library reports a failed attempt as an
/// error even if the next attempt succeeds, and a density it lacks even if the report does without.
/// An iteration that warns at each of its steps is one message then. What the solver of the
/// equilibrium writes of its steps counts as information.
class ReportLogger final : public Sink
{
public:
    /// \param showAll  pass on informations, too, and every single message
    explicit ReportLogger(bool showAll);

    void print(unsigned int channel, const char* text) override;

    void hold() { holding = true; }
    /// Prints the messages held back; errors as warnings if what they interrupted went well after
    /// all.
    void release(bool recovered);
    /// Forgets the messages held back, unless all are to be seen.
    void dismiss();
    /// The last of the messages held back that has one of these wordings; empty if there is none.
    std::string latestWith(const std::vector<std::string>& wordings) const;

    /// The report, with the library's line ends.
    const std::string& getReport() const { return report; }

private:
    /// Messages that differ in their numbers only: the latest stands for all.
    struct Held {
        std::string wording; // the message without its numbers
        std::string latest;
        bool isError;
        unsigned count;
        unsigned at; // number of the latest among all messages
    };

    static void say(const char* severity, const std::string& message);
    void keep(const std::string& message, bool isError);

    std::string report;
    bool verbose;
    bool holding = false;
    std::vector<Held> held;
    unsigned messages = 0;
};

} // namespace host
