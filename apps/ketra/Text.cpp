#include "Text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace host {

std::string realText(double value)
{
    char text[32];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
    std::string result(text, end.ptr);
    if (result.find_first_of(".en") == std::string::npos) result += ".0";
    return result;
}

std::string plainText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

} // namespace host
