#include <ketra/reaction/detail/Oscillation.h>

#include <algorithm>
#include <cmath>

namespace reaction::detail {

bool Oscillation::standsAtBest(double T, double g, double r, std::size_t keep, bool gasOnly)
{
    if (wait == 0 || --wait == 0) {
        const bool back = targetT > 0.0 && std::abs(T - targetT) / T < r;
        if (back && (lastG == 0.0 || g <= lastG)) return true;
        findPeriod(T, r);
    }
    historyT.push_back(T);
    historyG.push_back(g);
    lastG = gasOnly ? g : 0.0;
    while (historyT.size() > keep) historyT.pop_front();
    while (historyG.size() > keep) historyG.pop_front();
    return false;
}

// The latest earlier state at the same temperature closes a period; the state of lowest Gibbs
// energy in it is the one to stop at when it comes round again. The oldest state is not looked at.
void Oscillation::findPeriod(double T, double r)
{
    targetT = 0.0;
    wait = 0;
    for (std::size_t start = historyT.size(); start-- > 1;) {
        if (!(std::abs(T - historyT[start]) / T < r)) continue;
        const auto first = historyG.begin() + static_cast<std::ptrdiff_t>(start);
        const auto lowest = std::min_element(first, historyG.end());
        wait = static_cast<std::size_t>(lowest - first);
        targetT = historyT[start + wait];
        return;
    }
}

} // namespace reaction::detail
