#pragma once

#include "ReportLogger.h"
#include "Sink.h"

#include <fstream>
#include <string>

namespace host {

/// A sink that writes everything to a file: report text as it comes, severities with their name in
/// front, information too.
class LogFile final : public Sink
{
public:
    /// Makes the file anew. \throws Failure if it cannot be written
    LogFile(const std::string& filePath, bool crlf);

    void print(unsigned int channel, const char* text) override;

    /// Sees to it that all is written. \throws Failure if something is not
    void finish();

private:
    std::string path;
    LineEnds lineEnds;
    std::ofstream file;
};

} // namespace host
