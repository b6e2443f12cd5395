#include "Tally.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <utility>

namespace convergence {

namespace {

constexpr std::size_t shownCases = 5; // of a kind

const char* nameOf(Finding finding)
{
    switch (finding) {
    case Finding::GRADE_A:
        return "A";
    case Finding::GRADE_B:
        return "B";
    case Finding::REFUSED:
        return "refused";
    case Finding::FAILED:
        return "failed";
    case Finding::FALSE_SUCCESS:
        return "false success";
    }
    return "";
}

} // namespace

void Tally::add(const Verdict& verdict, const std::string& name)
{
    ++counts[static_cast<std::size_t>(verdict.finding)];
    if (verdict.finding == Finding::GRADE_A) return;
    Kind& kind = kinds[std::string(nameOf(verdict.finding)) + ": " + verdict.kind];
    ++kind.count;
    if (kind.first.size() < shownCases) kind.first.push_back(name);
}

std::size_t Tally::cases() const
{
    return std::accumulate(counts.begin(), counts.end(), std::size_t{0});
}

double Tally::share() const
{
    const std::size_t asked = cases() - count(Finding::REFUSED);
    return asked == 0 ? 1.0 : static_cast<double>(certified()) / static_cast<double>(asked);
}

void Tally::printHead(const char* what)
{
    std::printf(
        "| %s | cases | A | B | refused | failed | false success | certified of the rest |\n"
        "|---|---|---|---|---|---|---|---|\n",
        what);
}

void Tally::printRow(const std::string& name) const
{
    std::printf("| %s | %zu |", name.c_str(), cases());
    for (const std::size_t number : counts) std::printf(" %zu |", number);
    std::printf(" %.3f %% |\n", 100.0 * share());
}

void Tally::printKinds(const std::string& title) const
{
    if (kinds.empty()) return;
    std::vector<std::pair<std::string, const Kind*>> sorted;
    for (const auto& [name, kind] : kinds) sorted.emplace_back(name, &kind);
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
        return a.second->count > b.second->count;
    });
    std::printf("\n| %s | times | first |\n|---|---|---|\n", title.c_str());
    for (const auto& [name, kind] : sorted) {
        std::printf("| %s | %zu |", name.c_str(), kind->count);
        for (const std::string& first : kind->first)
            std::printf("%s %s", &first == &kind->first.front() ? "" : ";", first.c_str());
        std::printf(" |\n");
    }
}

} // namespace convergence
