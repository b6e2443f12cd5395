#include "Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace host {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

unsigned distance(std::string_view a, std::string_view b)
{
    // row[j]: distance of the letters of a seen so far to the first j letters of b [Levenshtein]
    std::vector<unsigned> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (size_t i = 0; i < a.size(); ++i) {
        unsigned diagonal = row[0];
        row[0] = static_cast<unsigned>(i + 1);
        for (size_t j = 0; j < b.size(); ++j) {
            const unsigned change = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::vector<std::string> nearest(std::string_view word, const std::vector<std::string>& words,
                                 size_t atMost)
{
    // A third of the letters may be wrong; in a short word one.
    const auto limit = static_cast<unsigned>(std::max<size_t>(1, word.size() / 3));
    std::vector<std::pair<unsigned, std::string>> near;
    for (const std::string& candidate : words) {
        const size_t longer = std::max(word.size(), candidate.size());
        if (longer - std::min(word.size(), candidate.size()) > limit) continue;
        const unsigned d = distance(word, candidate);
        if (d <= limit) near.emplace_back(d, candidate);
    }
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (size_t i = 0; i < near.size() && i < atMost; ++i) result.push_back(near[i].second);
    return result;
}

std::string quotedChoice(const std::vector<std::string>& words)
{
    std::string text;
    for (size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " or " : ", ";
        text += '"' + words[i] + '"';
    }
    return text;
}

} // namespace host
