#include "DataKind.h"
#include "Text.h"

#include <algorithm>

namespace host {
namespace {

bool startsWith(std::string_view line, std::string_view word)
{
    return line.substr(0, word.size()) == word;
}

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool isNumberOrBlank(std::string_view field) { return isBlank(field) || numberIn(field); }

/// "NAME  12,20" in front of a table.
bool isPropertiesHead(std::string_view line)
{
    const size_t blank = line.find(' ');
    if (blank == 0 || blank == std::string_view::npos) return false;
    const std::string counts = trimmedText(line.substr(blank));
    const size_t comma = counts.find(',');
    return comma != std::string::npos && numberIn(counts.substr(0, comma)) &&
           numberIn(counts.substr(comma + 1));
}

/// "NAME ... V3C2" in the columns of a transport file.
bool isTransportHead(std::string_view line)
{
    return line.size() > 37 && line[34] == 'V' && digitAt(line, 35) && line[36] == 'C' &&
           digitAt(line, 37);
}

/// Five fields of an element, and numbers behind them.
bool isSpeciesHeader(std::string_view line)
{
    return line.size() >= 65 && numberIn(columnsOf(line, 0, 2)) && isLetter(line[10]) &&
           numberIn(columnsOf(line, 12, 18)) && isNumberOrBlank(columnsOf(line, 52, 65)) &&
           isNumberOrBlank(columnsOf(line, 65, 80));
}

bool isPropepRecord(std::string_view line)
{
    if (line.size() < 44 || isBlank(columnsOf(line, 4, 39))) return false;
    for (size_t at = 39; at < 69; at += 5)
        if (!isNumberOrBlank(columnsOf(line, at, at + 3)) ||
            numberIn(columnsOf(line, at + 3, at + 5)))
            return false;
    return numberIn(columnsOf(line, 39, 42)) && isNumberOrBlank(columnsOf(line, 69, 74)) &&
           isNumberOrBlank(columnsOf(line, 74, 80));
}

} // namespace

const char* nameOf(DataKind kind)
{
    switch (kind) {
    case DataKind::SPECIES:
        return "species file";
    case DataKind::PROPERTIES:
        return "properties file";
    case DataKind::TRANSPORT:
        return "transport file";
    default:
        return "PROPEP file";
    }
}

std::optional<DataKind> recognise(const DataText& text)
{
    size_t propepRecords = 0;
    for (const std::string_view line : text.getLines()) {
        if (isBlank(line)) continue;
        if (line[0] == '!') {
            const std::string comment = lowered(std::string(line));
            if (comment.find("format version ") != std::string::npos) return DataKind::PROPERTIES;
            continue;
        }
        if (startsWith(line, "thermo")) return DataKind::SPECIES;
        if (startsWith(line, "transport property coefficients") || isTransportHead(line))
            return DataKind::TRANSPORT;
        if (isPropertiesHead(line)) return DataKind::PROPERTIES;
        if (isSpeciesHeader(line)) return DataKind::SPECIES;
        // Names of species may look like one of these lines; two of them are no accident.
        if (isPropepRecord(line) && ++propepRecords == 2) return DataKind::PROPEP;
    }
    if (propepRecords > 0) return DataKind::PROPEP;
    return {};
}

} // namespace host
