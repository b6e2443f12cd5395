#pragma once

#include <validation/published/PublishedFigure.h>

#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <cmath>
#include <string>
#include <vector>

// Standard-state functions of the shipped species file against the tables of the literature.

namespace ketra_test {

inline constexpr double referenceT = 298.15; // K

inline const thermo::Species& shippedSpecies(const std::string& name)
{
    useShippedSpecies();
    return *thermo::Database::getInstance()->find(name);
}

/// Enthalpy of formation, entropy and enthalpy above 0 K at 298.15 K. The limit is the published
/// uncertainty, and what rounding took from the figure.
inline std::vector<PublishedFigure> keyValues()
{
    std::vector<PublishedFigure> all;
    for (const auto& row : referenceRows("key-values.csv")) {
        const thermo::Species& species = shippedSpecies(row.at(0));
        const auto add = [&](const char* key, const char* quantity, std::size_t column,
                             double found) {
            const std::string& text = row.at(column);
            if (text.empty()) return;
            all.push_back({row[0], quantity, text, found,
                           numberOf(row.at(column + 1)) + roundingOf(text), false, row.at(7),
                           holdsWord(row.at(8), key) ? row.at(9) : ""});
        };
        add("dfH", "dfH, kJ/mol", 1, species.H0(referenceT) / 1000.0);
        add("S", "S, J/(mol K)", 3, species.S0(referenceT));
        add("H0", "H - H(0), kJ/mol", 5, species.getDH298_15_0() / 1000.0);
    }
    return all;
}

/// What careful evaluations of one and the same gas differ by: the tables rest on spectra and
/// corrections of the 1960s to the 1980s, the species file on those of 1989 to 2002.
struct StandardStateLimits {
    static constexpr double Cp = 5e-3;
    static constexpr double S = 1e-3;
    static constexpr double H = 3e-3;
};

/// Heat capacity, entropy, enthalpy above 298.15 K and Gibbs energy function over temperature.
inline std::vector<PublishedFigure> standardStates()
{
    using Limits = StandardStateLimits;
    std::vector<PublishedFigure> all;
    for (const auto& row : referenceRows("standard-states.csv")) {
        const thermo::Species& species = shippedSpecies(row.at(0));
        const double T = numberOf(row.at(1));
        const double dfH = species.H0(referenceT);
        const auto add = [&](const char* key, const char* quantity, std::size_t column,
                             double found, double limit) {
            if (row.at(column).empty()) return;
            all.push_back({subjectOf(row[0], row[1]), quantity, row[column], found, limit, true,
                           row.at(6), holdsWord(row.at(7), key) ? row.at(8) : ""});
        };
        add("Cp", "Cp, J/(mol K)", 2, species.Cp0(T), Limits::Cp);
        add("S", "S, J/(mol K)", 3, species.S0(T), Limits::S);
        add("H", "H - H(298), kJ/mol", 4, (species.H0(T) - dfH) / 1000.0, Limits::H);
        add("G", "-(G - H(298))/T, J/(mol K)", 5, (dfH - species.G0(T)) / T, Limits::S);
    }
    return all;
}

} // namespace ketra_test
