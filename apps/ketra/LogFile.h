#pragma once

#include "ReportLogger.h"

#include <ketra/util/Logger.h>

#include <fstream>
#include <string>

namespace host {

/// A sink that writes everything to a file: report text as it comes, severities with their name in
/// front, information too.
class LogFile final : public util::Logger
{
public:
    /// Makes the file anew. \throws Failure if it cannot be written
    LogFile(const std::string& filePath, bool crlf);

    void print(unsigned int channel, const char* text) override;
    void println(unsigned int channel, const char* text) override;
    void vprintf(unsigned int channel, const char* format, std::va_list arguments) override;

    /// Sees to it that all is written. \throws Failure if something is not
    void finish();

private:
    std::string path;
    LineEnds lineEnds;
    std::ofstream file;
};

} // namespace host
