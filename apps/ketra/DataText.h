#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A file of species data as text: its lines, of which the columns hold values.
class DataText
{
public:
    /// Reads a file. \throws Failure if it cannot be read
    explicit DataText(const std::string& dataFile);
    DataText(const DataText&) = delete;
    DataText& operator=(const DataText&) = delete;

    const std::string& getFile() const { return file; }
    /// Line by line, without line feeds. Line 1 is at index 0.
    const std::vector<std::string_view>& getLines() const { return lines; }

private:
    std::string file;
    std::string text;
    std::vector<std::string_view> lines;
};

/// The columns [from, to) of a line, counted from 0, as many as there are.
std::string_view columnsOf(std::string_view line, size_t from, size_t to = std::string_view::npos);
/// A text without blanks, tabs and line ends at its ends.
std::string trimmedText(std::string_view text);
bool isBlank(std::string_view text);

/// The number that fills a field alone, with the exponent letter E or D; nothing where the field is
/// blank or holds anything beside the number.
std::optional<double> numberIn(std::string_view field);
/// The number at the head of a field, as a reader takes it that does not look further; 0 where
/// there is none.
double leadingNumber(std::string_view field);
/// The digit at a place of a line, nothing if another character stands there.
std::optional<int> digitAt(std::string_view line, size_t place);

} // namespace host
