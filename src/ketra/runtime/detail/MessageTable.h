#pragma once

#include <cstddef>

namespace runtime::detail {

/// One row of a family's table of texts.
struct Message {
    unsigned int code;
    const char* text;
};

/// The text of \p code in \p table, "Unknown" if the table does not name it.
template <std::size_t size>
constexpr const char* messageOf(const Message (&table)[size], unsigned int code)
{
    for (const Message& row : table)
        if (row.code == code) return row.text;
    return "Unknown";
}

} // namespace runtime::detail
