// Prints the records of all engines and equilibria with all defaults, for
// tests/regression/data/defaults.txt. Made anew only when the default method itself is to change.

#include "DefaultCases.h"
#include "DefaultRecord.h"

#include <cstdio>
#include <exception>

using namespace ketra_test;

int main()
{
    try {
        useShippedSpecies();
        std::printf("mathematics %llx\n",
                    static_cast<unsigned long long>(mathematicsFingerprint()));
        for (std::size_t i = 0; i < defaultEngineCount; ++i)
            std::printf("engine %s\n", lineOf(recordEngine(i)).c_str());
        for (std::size_t i = 0; i < defaultEquilibriumCount; ++i)
            std::printf("equilibrium %s\n", lineOf(recordEquilibrium(i)).c_str());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
