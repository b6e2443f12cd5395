#pragma once

#include <support/ReferenceStates.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

// Published figures of tests/validation/data, each beside what the library makes of it.

namespace ketra_test {

/// One published figure and the library's.
struct PublishedFigure {
    std::string subject;  // whose figure: a species and a temperature, an altitude, an engine
    std::string quantity; // with its unit
    std::string text;     // as published
    double found;
    double limit; // of the error
    bool relative;
    std::string source; // a key of docs/bibliography.md
    std::string reason; // why it is beyond its limit; empty for one within

    double published() const { return std::stod(text); }
    double error() const { return relative ? found / published() - 1.0 : found - published(); }
    bool isWithin() const { return std::abs(error()) <= limit; }
};

/// The subject of a figure at a temperature.
inline std::string subjectOf(const std::string& name, const std::string& T)
{
    return name + ", " + T + " K";
}

/// Half of the last digit of a figure as published.
inline double roundingOf(const std::string& text)
{
    const auto point = text.find('.');
    const auto digits = point == std::string::npos ? 0 : text.size() - point - 1;
    return 0.5 * std::pow(10.0, -static_cast<double>(digits));
}

/// The words of \p list, between blanks, hold \p word.
inline bool holdsWord(const std::string& list, const std::string& word)
{
    std::istringstream words(list);
    for (std::string each; words >> each;)
        if (each == word) return true;
    return false;
}

} // namespace ketra_test
