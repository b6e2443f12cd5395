#pragma once

#include "LogFile.h"
#include "ReportLogger.h"

#include <string>

namespace host {

/// The log of the process, open as long as this object lives.
class LogSession
{
public:
    /// \param logPath a file that gets everything, too; empty for none
    /// \throws Failure if that file cannot be written
    LogSession(bool verbose, const std::string& logPath, bool crlf);
    LogSession(const LogSession&) = delete;
    LogSession& operator=(const LogSession&) = delete;
    ~LogSession();

    /// The log's own sink, alive as long as this object.
    ReportLogger& reports() { return *reportLogger; }
    /// Sees to it that the log file holds everything. \throws Failure if it does not
    void finish();

private:
    ReportLogger* reportLogger = nullptr; // both belong to the log
    LogFile* logFile = nullptr;
};

} // namespace host
