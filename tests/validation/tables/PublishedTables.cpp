#include <validation/tables/Tables.h>

#include <support/ReferenceTransport.h>
#include <validation/published/Atmosphere.h>
#include <validation/published/Flames.h>
#include <validation/published/Gases.h>
#include <validation/published/StandardStates.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace ketra_test {

namespace {

/// The error of a figure: per cent, or in the unit of the figure.
std::string errorOf(const PublishedFigure& figure)
{
    char text[32];
    if (figure.relative)
        std::snprintf(text, sizeof text, "%+.3f %%", 100.0 * figure.error());
    else
        std::snprintf(text, sizeof text, "%+.4f", figure.error());
    return text;
}

/// One row for each subject, with a published figure and its error for each quantity; behind it
/// the figures that are beyond their limits, with the reason.
void printPivot(const char* subject, const std::vector<std::string>& quantities,
                const std::vector<PublishedFigure>& figures)
{
    std::printf("| %s |", subject);
    for (const std::string& quantity : quantities) std::printf(" %s | error |", quantity.c_str());
    std::printf(" source |\n|---|");
    for (std::size_t i = 0; i < quantities.size(); ++i) std::printf("---:|---:|");
    std::printf("---|\n");
    for (std::size_t first = 0, next = 0; first < figures.size(); first = next) {
        std::map<std::string, const PublishedFigure*> row;
        while (next < figures.size() && figures[next].subject == figures[first].subject &&
               figures[next].source == figures[first].source) {
            row[figures[next].quantity] = &figures[next];
            ++next;
        }
        std::printf("| %s |", figures[first].subject.c_str());
        for (const std::string& quantity : quantities)
            if (row.count(quantity))
                std::printf(" %s | %s |", row[quantity]->text.c_str(),
                            errorOf(*row[quantity]).c_str());
            else
                std::printf(" | |");
        std::printf(" [%s] |\n", figures[first].source.c_str());
    }
}

void printBeyond(const std::vector<PublishedFigure>& figures)
{
    std::printf("\n| beyond its limit | error | limit | reason |\n|---|---:|---:|---|\n");
    for (const PublishedFigure& figure : figures) {
        if (figure.isWithin()) continue;
        std::printf("| %s: %s | %s |", figure.subject.c_str(), figure.quantity.c_str(),
                    errorOf(figure).c_str());
        if (figure.relative)
            std::printf(" %.1f %% |", 100.0 * figure.limit);
        else
            std::printf(" %.4f |", figure.limit);
        std::printf(" %s |\n", figure.reason.c_str());
    }
}

} // namespace

/// One line for each state, deviations in per cent, with the major species that lack data.
void printTransport()
{
    std::printf("| case, station | T, K |");
    for (const char* name : transportNames) std::printf(" %s |", name);
    std::printf(" without data |\n|---|---|---|---|---|---|---|---|\n");
    for (const ReferenceTransport& reference : referenceTransport()) {
        const FoundTransport found = findTransport(reference);
        std::printf("| %s, %d%s | %.0f |", reference.id.c_str(), reference.station,
                    reference.isFrozen() ? ", frozen" : "", reference.T);
        for (const double deviation : deviationsOf(reference, found)) {
            if (std::isnan(deviation))
                std::printf(" |");
            else
                std::printf(" %.3f |", 100.0 * deviation);
        }
        for (const std::string& name : found.estimated) std::printf(" %s", name.c_str());
        std::printf(" |\n");
    }
}

void printStandardStates()
{
    const auto keys = keyValues();
    printPivot("species", {"dfH, kJ/mol", "S, J/(mol K)", "H - H(0), kJ/mol"}, keys);
    printBeyond(keys);
    std::printf("\n");
    const auto functions = standardStates();
    printPivot(
        "species",
        {"Cp, J/(mol K)", "S, J/(mol K)", "H - H(298), kJ/mol", "-(G - H(298))/T, J/(mol K)"},
        functions);
    printBeyond(functions);
}

void printGases()
{
    const auto figures = gasFigures();
    printPivot("gas", {"viscosity, uPa s", "conductivity, mW/(m K)"}, figures);
    printBeyond(figures);
}

void printFlames() { printPivot("fuel", {"T, K"}, flameFigures()); }

void printAtmosphere()
{
    printPivot("altitude, m", {"T, K", "p, Pa", "rho, kg/m3", "a, m/s"}, atmosphereFigures());
}

} // namespace ketra_test
