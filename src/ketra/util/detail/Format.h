#pragma once

#include <ketra/util/detail/NumericLocale.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace util::detail {

/// The text of a `printf` format and its arguments, numbers as in the "C" locale.
[[gnu::format(printf, 1, 0)]] inline std::string vformat(const char* format, std::va_list arguments)
{
    const NumericLocale numbers;
    char buffer[512];
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    std::string text;
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof buffer) {
        text.assign(buffer, static_cast<std::size_t>(length));
    } else if (length >= 0) {
        try {
            text.resize(static_cast<std::size_t>(length));
        } catch (...) {
            va_end(again);
            throw;
        }
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

/// The same with the arguments behind the format.
[[gnu::format(printf, 1, 2)]] inline std::string format(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text;
    try {
        text = vformat(format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    return text;
}

} // namespace util::detail
