#pragma once

#include "LogSession.h"
#include "Resources.h"

#include <string>

namespace host {

/// Where species data come from, and what becomes of messages.
struct SessionOptions {
    std::string resources; ///< folder; empty: to be looked for
    std::string log;       ///< file for all messages and the report; empty: none
    bool verbose = false;
    bool crlf = false;
};

/// What a command works in: the species loaded, and the log open.
class Session
{
public:
    /// \throws Failure if the species cannot be loaded or the log cannot be written
    explicit Session(const SessionOptions& options);

    ReportLogger& reports() { return log.reports(); }
    /// Sees to it that the log file holds everything. \throws Failure if it does not
    void finish() { log.finish(); }
    /// The report so far, with the line ends that the user wants.
    std::string report() { return withLineEnds(log.reports().getReport()); }
    std::string withLineEnds(const std::string& text) const { return lineEnds.apply(text); }
    /// Says so if the files lack what transport properties are made of.
    void expectTransport() const;

private:
    Resources resources;
    LogSession log;
    LineEnds lineEnds;
};

} // namespace host
