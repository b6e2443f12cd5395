// Prints the tables of docs/verification.md, one for each option; without an option how far the
// library is from the reference states.

#include <validation/tables/Tables.h>

#include <cstdio>
#include <exception>
#include <string>

using namespace ketra_test;

namespace {

const struct {
    const char* option;
    void (*print)();
    const char* what;
} tables[] = {
    {"--summary", printSummary, "all comparisons in one table"},
    {"", printStates, "equilibrium states against the reference"},
    {"--chambers", printChambers, "chambers and throats against the reference"},
    {"--nozzles", printNozzles, "nozzle exits against the reference"},
    {"--transport", printTransport, "transport properties against the reference"},
    {"--standard-state", printStandardStates, "standard-state functions of species"},
    {"--gases", printGases, "viscosity and conductivity of pure gases and air"},
    {"--flames", printFlames, "adiabatic flame temperatures in air"},
    {"--explosives", printExplosives, "heats of explosion"},
    {"--atmosphere", printAtmosphere, "the standard atmosphere"},
    {"--engines", printEngines, "delivered impulse of engines as built"},
    {"--laws", [] { printLaws(false); }, "laws of equilibrium over random states"},
    {"--failures", [] { printLaws(true); }, "the same with a line for each state that fails"},
    {"--stoichiometric", printStoichiometric, "what fails close to complete combustion"},
};

} // namespace

int main(int argc, char** argv)
{
    try {
        const std::string option = argc > 1 ? argv[1] : "";
        for (const auto& table : tables) {
            if (option != table.option) continue;
            table.print();
            return 0;
        }
        std::fprintf(stderr, "Usage: ketra_deviations [OPTION]\n");
        for (const auto& table : tables)
            std::fprintf(stderr, "  %-18s %s\n", table.option, table.what);
        return option == "--help" ? 0 : 2;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
