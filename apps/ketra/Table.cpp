#include "Table.h"
#include "Text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace host {
namespace {

std::string fixed(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

/// A value of CSV, quoted where it has to be.
std::string quoted(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string result = "\"";
    for (const char c : text) result += c == '"' ? "\"\"" : std::string(1, c);
    return result + '"';
}

std::string padded(const std::string& text, std::size_t width)
{
    return std::string(width > text.size() ? width - text.size() : 0, ' ') + text;
}

std::string joined(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) line += "  " + padded(cells[i], widths[i]);
    line.erase(line.find_last_not_of(' ') + 1);
    return line.empty() ? "" : line.substr(2) + "\n"; // no units at all: no line of units
}

} // namespace

Cell cellOf(const std::optional<double>& value)
{
    return value && std::isfinite(*value) ? Cell(*value) : Cell();
}

std::string Table::shown(const Cell& cell, const Column& column) const
{
    if (const double* value = std::get_if<double>(&cell))
        return fixed(*value * scale(column).factor, column.decimals);
    const std::string* word = std::get_if<std::string>(&cell);
    return word ? *word : "-";
}

std::string Table::exact(const Cell& cell, const Column& column) const
{
    if (const double* value = std::get_if<double>(&cell))
        return realText(*value * scale(column).factor);
    const std::string* word = std::get_if<std::string>(&cell);
    return word ? quoted(*word) : "";
}

std::string Table::text() const
{
    std::vector<std::vector<std::string>> lines(2);
    for (const Column& column : columns) {
        lines[0].push_back(column.name);
        lines[1].emplace_back(scale(column).unit);
    }
    for (const std::vector<Cell>& row : rows) {
        std::vector<std::string>& line = lines.emplace_back();
        for (std::size_t i = 0; i < row.size(); ++i) line.push_back(shown(row[i], columns[i]));
    }
    std::vector<std::size_t> widths(columns.size(), 0);
    for (const std::vector<std::string>& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    std::string result;
    for (const std::vector<std::string>& line : lines) result += joined(line, widths);
    return result;
}

std::string Table::csv() const
{
    std::string result;
    for (const Column& column : columns) {
        const std::string unit = scale(column).unit;
        result += (result.empty() ? "" : ",") +
                  quoted(column.name + (unit.empty() ? "" : " [" + unit + "]"));
    }
    result += '\n';
    for (const std::vector<Cell>& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += (i == 0 ? "" : ",") + exact(row[i], columns[i]);
        result += line + '\n';
    }
    return result;
}

} // namespace host
