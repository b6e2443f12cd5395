#pragma once

#include <charconv>
#include <string>

namespace verification::detail {

/// \p text with its '#' replaced by \p value to two digits, whatever the locale.
inline std::string withNumber(std::string text, double value)
{
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific, 1);
    return text.replace(text.find('#'), 1, std::string(digits, end.ptr));
}

} // namespace verification::detail
