#pragma once

#include <support/ReferenceStates.h>
#include <validation/published/PublishedFigure.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ketra_test {

/// How a set of figures agrees with the library: one row of the summary. A figure beyond its limit
/// is counted, and left out of largest and mean error.
class Agreement
{
public:
    /// How the errors are shown: as they are, in per cent, or as a share of their limits.
    enum Style { NUMBER, PERCENT, SHARE };

    Agreement(std::string newName, std::string newCommand, Style newStyle)
        : name(std::move(newName)), command(std::move(newCommand)), style(newStyle)
    {
    }

    void add(double error, double limit)
    {
        ++figures;
        lowestLimit = std::min(lowestLimit, limit);
        highestLimit = std::max(highestLimit, limit);
        if (!(std::abs(error) <= limit)) {
            ++beyond;
            return;
        }
        const double shown = style == SHARE ? std::abs(error) / limit : std::abs(error);
        largest = std::max(largest, shown);
        sum += shown;
    }
    void add(const Deviation& deviation) { add(deviation.value, deviation.limit); }
    void add(const PublishedFigure& figure) { add(figure.error(), figure.limit); }

    /// | set | figures | beyond | largest | mean | limit | command |
    std::string row() const
    {
        const int within = figures - beyond;
        std::string limit = "the published uncertainty";
        if (style != SHARE) limit = shown(lowestLimit);
        if (style != SHARE && highestLimit > lowestLimit) limit += " to " + shown(highestLimit);
        return "| " + name + " | " + std::to_string(figures) + " | " + std::to_string(beyond) +
               " | " + shown(largest) + " | " + shown(within > 0 ? sum / within : 0.0) + " | " +
               limit + " | " + command + " |";
    }

private:
    std::string shown(double value) const
    {
        char text[32];
        if (style == NUMBER)
            std::snprintf(text, sizeof text, "%.1e", value);
        else if (style == PERCENT)
            std::snprintf(text, sizeof text, "%.3g %%", 100.0 * value);
        else
            std::snprintf(text, sizeof text, "%.2f of it", value);
        return text;
    }

    std::string name;
    std::string command;
    Style style;
    int figures = 0;
    int beyond = 0;
    double largest = 0.0;
    double sum = 0.0;
    double lowestLimit = std::numeric_limits<double>::infinity();
    double highestLimit = 0.0;
};

} // namespace ketra_test
