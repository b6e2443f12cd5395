#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// How many letters have to be changed, added or taken away to turn one word into the other;
/// upper and lower case count as equal.
unsigned distance(std::string_view a, std::string_view b);

/// The words that a writer of \p word may have meant, the likeliest first; empty if none is near.
std::vector<std::string> nearest(std::string_view word, const std::vector<std::string>& words,
                                 size_t atMost);

/// 'a', 'b' or 'c', each in double quotes; empty for an empty list.
std::string quotedChoice(const std::vector<std::string>& words);

} // namespace host
