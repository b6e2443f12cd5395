#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

namespace thermo::detail {

/// What counts as blank at the ends of names and lines.
inline constexpr const char* blanks = " \t\r\n";

/// All that \p stream still holds. A species file has over a megabyte and is read in every run:
/// it is fetched in one piece and cut without copies.
std::string readAll(std::istream& stream);

/// True if the lines end in carriage returns alone, so that the text is one single line.
bool hasBareReturnsOnly(std::string_view text);

/// Walks the lines of a text; a last line without an end counts, what follows the last end does
/// not.
class LineReader
{
public:
    explicit LineReader(std::string_view text) : rest(text) {}
    /// Moves on to the next line. \returns false behind the last one.
    bool next(std::string_view& line)
    {
        if (rest.empty()) return false;
        const std::size_t end = rest.find('\n');
        line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        ++count;
        return true;
    }
    /// Number of the line, from 1.
    unsigned int getCount() const { return count; }

private:
    std::string_view rest;
    unsigned int count = 0;
};

/// The columns [from, to) of a line, as many as there are.
inline std::string_view slice(std::string_view line, std::size_t from,
                              std::size_t to = std::string_view::npos)
{
    return from < line.size() ? line.substr(from, to - from) : std::string_view();
}

/// \p text without blanks at both ends.
std::string_view trimmed(std::string_view text);

/// The number at the head of \p text in the manner of atof: leading blanks are passed over, the
/// conversion stops at the first character it cannot use, and where there is no number it is 0.
/// The locale does not matter. A number beyond the range of a double is infinite.
double toNumber(std::string_view text);
/// toNumber() for data. \throws runtime::Exception 1 for an infinity or not-a-number.
double number(std::string_view text);
/// number() for fields that may bear the exponent letter D of Fortran.
double fortranNumber(std::string_view text);
/// The integer at the head of \p text in the manner of atoi.
/// \throws runtime::Exception 1 if it is out of range.
int integer(std::string_view text);
/// integer() that moves \p text behind what it has read. \returns false, \p value unchanged, if
/// there is no integer or it is out of range.
bool takeInteger(std::string_view& text, int& value);

} // namespace thermo::detail
