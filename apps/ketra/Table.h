#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host {

/// A quantity in the units of a table: a number in SI base units times a factor.
struct Scale {
    const char* unit;
    double factor;
};

/// A column: what it holds, in SI and in US customary units, and how many decimals are shown.
struct Column {
    std::string name;
    Scale si;
    Scale english;
    int decimals;
};

/// What stands in a cell: nothing, a number in SI base units, or a word.
using Cell = std::variant<std::monostate, double, std::string>;

Cell cellOf(const std::optional<double>& value);

/// Rows under columns, for people or for programs.
class Table
{
public:
    Table(std::vector<Column> columnsShown, bool inEnglishUnits)
        : columns(std::move(columnsShown)), english(inEnglishUnits)
    {
    }
    /// A row of as many cells as there are columns.
    void add(std::vector<Cell> row) { rows.push_back(std::move(row)); }

    /// Aligned columns under their names and units; "-" for an empty cell.
    std::string text() const;
    /// Comma-separated values under one header line, as "p [MPa]"; full precision, a point as the
    /// decimal sign, nothing in an empty cell.
    std::string csv() const;

private:
    const Scale& scale(const Column& column) const { return english ? column.english : column.si; }
    std::string shown(const Cell& cell, const Column& column) const;
    std::string exact(const Cell& cell, const Column& column) const;

    std::vector<Column> columns;
    bool english;
    std::vector<std::vector<Cell>> rows;
};

} // namespace host
