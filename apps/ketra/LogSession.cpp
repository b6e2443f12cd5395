#include "LogSession.h"

#include <ketra/util/Log.h>

#include <memory>

namespace host {

LogSession::LogSession(bool verbose, const std::string& logPath, bool crlf)
{
    auto reportSink = std::make_unique<ReportLogger>(verbose);
    auto fileSink = logPath.empty() ? nullptr : std::make_unique<LogFile>(logPath, crlf);
    reportLogger = reportSink.get();
    logFile = fileSink.get();
    util::Log* const log = util::Log::createLog("ketra");
    log->addLogger(reportSink.release());
    if (fileSink) log->addLogger(fileSink.release());
}

LogSession::~LogSession() { util::Log::finalize(); }

void LogSession::finish()
{
    if (logFile) logFile->finish();
}

} // namespace host
