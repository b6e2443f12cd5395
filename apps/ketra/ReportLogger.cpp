#include "ReportLogger.h"
#include "Output.h"

#include <algorithm>

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

/// Whether the equilibrium solver tells how it goes on, "T=3600.0000 Include AL2O3(L)", which it
/// reports as a warning.
bool isDiary(const std::string& message) { return message.compare(0, 2, "T=") == 0; }

std::string withoutNumbers(std::string text)
{
    const auto inNumber = [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == ' '; };
    text.erase(std::remove_if(text.begin(), text.end(), inNumber), text.end());
    return text;
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

ReportLogger::ReportLogger(bool showAll) : verbose(showAll) { setLevel(verbose ? INFO : WARN); }

void ReportLogger::print(unsigned int channel, const char* text)
{
    if (channel == REPORT) {
        report += text;
        return;
    }
    const std::string message = bare(text);
    if (channel == WARN && isDiary(message) && !verbose) return;
    if (holding && channel != INFO)
        keep(message, channel == ERROR);
    else
        say(channel == ERROR ? "error" : channel == WARN ? "warning" : "info", message);
}

void ReportLogger::keep(const std::string& message, bool isError)
{
    ++messages;
    const std::string wording = verbose ? message : withoutNumbers(message);
    const auto alike =
        std::find_if(held.begin(), held.end(), [&wording, isError](const Held& other) {
            return other.isError == isError && other.wording == wording;
        });
    if (alike == held.end() || verbose) {
        held.push_back({wording, message, isError, 1, messages});
    } else {
        alike->latest = message;
        alike->at = messages;
        ++alike->count;
    }
}

void ReportLogger::release(bool recovered)
{
    holding = false;
    for (const Held& message : held)
        say(message.isError && !recovered ? "error" : "warning",
            message.count == 1
                ? message.latest
                : message.latest + " (" + std::to_string(message.count) + " messages like this)");
    held.clear();
}

void ReportLogger::dismiss()
{
    if (!verbose) held.clear();
}

std::string ReportLogger::latestWith(const std::vector<std::string>& wordings) const
{
    const auto fits = [&wordings](const Held& message) {
        return std::any_of(wordings.begin(), wordings.end(), [&message](const std::string& words) {
            return message.latest.find(words) != std::string::npos;
        });
    };
    const Held* found = nullptr;
    for (const Held& message : held)
        if (fits(message) && (!found || message.at > found->at)) found = &message;
    return found ? found->latest : "";
}

void ReportLogger::say(const char* severity, const std::string& message)
{
    if (!message.empty())
        writeToStandardError(std::string("ketra: ") + severity + ": " + message + "\n");
}

} // namespace host
