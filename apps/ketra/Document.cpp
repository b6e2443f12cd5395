#include "Document.h"
#include "Literals.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include <sys/stat.h>

namespace host {
namespace {

constexpr off_t largestDocument = off_t{16} << 20; // bytes; a hundred times any real one
constexpr unsigned deepestInclude = 10;            // as the configuration library has it

/// Reads a regular file of a sensible size. \returns whether \p text holds it
bool readText(const std::string& path, const Place& cause, std::string& text, Findings& findings)
{
    struct stat state = {};
    std::string why;
    if (::stat(path.c_str(), &state) != 0)
        why = std::strerror(errno);
    else if (!S_ISREG(state.st_mode))
        why = "it is not a file";
    else if (state.st_size > largestDocument)
        why = "it is larger than 16 MiB";
    if (why.empty()) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream content;
        if (file && state.st_size > 0) content << file.rdbuf();
        if (!file || file.bad() || content.bad())
            why = std::strerror(errno != 0 ? errno : EIO);
        else
            text = content.str();
    }
    if (why.empty()) return true;
    findings.fail(cause, "cannot read \"" + path + "\": " + why);
    return false;
}

/// \returns whether the text may be given to the parser
bool checkText(const std::string& file, const std::string& text, Findings& findings)
{
    const size_t zero = text.find('\0');
    if (zero != std::string::npos) {
        const auto line =
            1 + std::count(text.begin(), text.begin() + static_cast<long>(zero), '\n');
        findings.fail({file, static_cast<unsigned>(line), ""},
                      "a byte of value 0: this is not a text file");
        return false;
    }
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        findings.fail({file, 0, ""}, "the document is empty");
        return false;
    }
    if (text.find('\r') != std::string::npos && text.find('\n') == std::string::npos)
        findings.warn({file, 0, ""}, "the lines end in CR alone, so that a comment hides all that "
                                     "follows it. Save the file with LF or CR LF");
    return true;
}

/// Checks the numbers of a file, and of those it includes.
/// \returns whether the text may be given to the parser
bool checkFile(const std::string& file, const Place& cause, bool allowInclude, unsigned depth,
               Findings& findings)
{
    std::string text;
    if (!readText(file, cause, text, findings) || !checkText(file, text, findings)) return false;
    const Literals literals(text);
    for (const NumberLiteral& number : literals.numbers) {
        const std::string fault = faultOf(number.text);
        if (!fault.empty()) findings.fail({file, number.line, ""}, fault);
    }
    bool good = true;
    for (const IncludeLine& include : literals.includes) {
        const Place place{file, include.line, ""};
        if (!allowInclude) {
            findings.fail(place, "@include \"" + include.file +
                                     "\" would read another file. Give --allow-include if you "
                                     "trust this document");
            good = false;
        } else if (depth == deepestInclude) {
            findings.fail(place, "@include is nested more than 10 deep");
            good = false;
        } else if (!checkFile(include.file, place, allowInclude, depth + 1, findings)) {
            good = false;
        }
    }
    return good;
}

/// "components.fuel.[0].name" as "components.fuel[0].name".
std::string readable(std::string settingPath)
{
    for (size_t at; (at = settingPath.find(".[")) != std::string::npos;) settingPath.erase(at, 1);
    return settingPath;
}

} // namespace

Document::Document(const std::string& documentPath, bool allowInclude, Findings& findings)
    : path(documentPath)
{
    if (checkFile(path, {path, 0, ""}, allowInclude, 0, findings)) parse(findings);
}

void Document::parse(Findings& findings)
try {
    config.setAutoConvert(true);
    config.readFile(path.c_str());
    parsed = true;
} catch (const libconfig::ParseException& e) {
    const char* file = e.getFile();
    const auto line = static_cast<unsigned>(std::max(0, e.getLine()));
    findings.fail({file ? file : path, line, ""},
                  std::string(e.getError()) +
                      ". Look here and at the end of the line before: a semicolon, a quote or a "
                      "bracket may be missing, or a key may stand twice");
} catch (const libconfig::ConfigException& e) {
    findings.fail({path, 0, ""}, std::string("cannot be read: ") + e.what());
}

Place Document::place(const libconfig::Setting& setting) const
{
    const char* file = setting.getSourceFile();
    return {file ? file : path, setting.getSourceLine(), readable(setting.getPath())};
}

Place Document::placeOfAbsent(const libconfig::Setting& group, const char* key) const
{
    Place place = this->place(group);
    if (group.isRoot()) place = {path, 0, ""};
    place.key += (place.key.empty() ? "" : ".") + std::string(key);
    return place;
}

} // namespace host
