#pragma once

#include <cstddef>
#include <string>

namespace thermo::detail {

/// Builds the lines of a record of a data file, column by column, behind a text.
///
/// A value that does not fit its column would be read back as another one, or push all that
/// follows out of place: it is refused with a logged error and runtime::Exception 0.
class Columns
{
public:
    /// Lines behind \p text for the species \p name, both of which must outlive this object.
    Columns(std::string& text, const std::string& name) : out(text), species(name) {}

    /// A text, cut or filled with blanks to \p width.
    void text(std::size_t width, const std::string& value);
    /// A number right or left in its column as the format says; \p what names it in the error.
    /// \p filled is the width to which blanks are added behind it.
    [[gnu::format(printf, 5, 6)]] void number(std::size_t width, std::size_t filled,
                                              const char* what, const char* format, ...);
    /// Ends a line after filling it with blanks to \p width, 0 for none.
    void endLine(std::size_t width);

private:
    [[noreturn]] void refuse(const char* what, const std::string& value) const;

    std::string& out;
    const std::string& species;
    std::size_t begin = out.size(); // of the present line
};

/// Appends \p line, filled with blanks to \p width characters, and a line end. Characters of more
/// than one byte of UTF-8 count as one.
void appendLine(std::string& text, const char* line, std::size_t width);

} // namespace thermo::detail
