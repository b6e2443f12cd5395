#include "Findings.h"
#include "Output.h"

namespace host {
namespace {

std::string counted(size_t n, const char* what)
{
    return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

} // namespace

void Findings::add(const Place& place, const char* severity, const std::string& what)
{
    std::string line = place.file;
    if (place.line > 0) line += ":" + std::to_string(place.line);
    line += std::string(": ") + severity + ": ";
    if (!place.key.empty()) line += place.key + ": ";
    lines.push_back(line + what + "\n");
}

void Findings::warn(const Place& place, const std::string& what) { add(place, "warning", what); }

void Findings::fail(const Place& place, const std::string& what)
{
    add(place, "error", what);
    ++faults;
}

void Findings::miss(const Place& place, const std::string& what)
{
    add(place, "error", what);
    ++missing;
}

ExitCode Findings::code() const
{
    if (faults > 0) return DOCUMENT;
    return missing > 0 ? DATA : GOOD;
}

std::string Findings::summary() const
{
    if (lines.empty()) return "no faults found";
    return counted(errors(), "error") + ", " + counted(warnings(), "warning");
}

void Findings::print()
{
    std::string text;
    for (; printed < lines.size(); ++printed) text += lines[printed];
    writeToStandardError(text);
}

} // namespace host
