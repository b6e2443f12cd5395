#pragma once

#include "Verdict.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace convergence {

/// What became of many cases.
class Tally
{
public:
    /// \p name tells the case from the others: its number, or its state.
    void add(const Verdict& verdict, const std::string& name);

    std::size_t cases() const;
    std::size_t count(Finding finding) const { return counts[static_cast<std::size_t>(finding)]; }
    std::size_t certified() const { return count(Finding::GRADE_A) + count(Finding::GRADE_B); }
    /// Certified cases of those that are not refused; 1 of none.
    double share() const;

    /// The head of a table of tallies, and a row of it.
    static void printHead(const char* what);
    void printRow(const std::string& name) const;
    /// A table of all kinds of findings but grade A: how often, and the first cases.
    void printKinds(const std::string& title) const;

private:
    struct Kind {
        std::size_t count = 0;
        std::vector<std::string> first;
    };

    std::array<std::size_t, findingCount> counts{};
    std::map<std::string, Kind> kinds;
};

} // namespace convergence
