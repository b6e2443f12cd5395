#include "ReportLogger.h"
#include "Output.h"

#include <cstdio>

namespace host {
namespace {

/// The message without its tag and without line ends behind it.
std::string bare(const std::string& text)
{
    const size_t begin = text.compare(0, 8, "THERMO: ") == 0 ? 8
                         : text.compare(0, 6, "ROOT: ") == 0 ? 6
                                                             : 0;
    const size_t end = text.find_last_not_of("\r\n");
    return end == std::string::npos || end < begin ? "" : text.substr(begin, end + 1 - begin);
}

} // namespace

std::string LineEnds::apply(const std::string& text) const
{
    std::string result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (text[i] == '\n' && crlf) result += '\r';
        result += text[i];
    }
    return result;
}

ReportLogger::ReportLogger(bool verbose) { setLevel(verbose ? INFO : WARN); }

void ReportLogger::print(unsigned int channel, const char* text)
{
    if (channel == REPORT) {
        report += text;
    } else if (channel == ERROR) {
        if (holding)
            held.push_back(bare(text));
        else
            say("error", bare(text));
    } else {
        say(channel == WARN ? "warning" : "info", bare(text));
    }
}

void ReportLogger::releaseErrors(bool recovered)
{
    holding = false;
    for (const std::string& message : held) say(recovered ? "warning" : "error", message);
    held.clear();
}

void ReportLogger::say(const char* severity, const std::string& message)
{
    if (!message.empty())
        writeToStandardError(std::string("ketra: ") + severity + ": " + message + "\n");
}

} // namespace host
