#include <ketra/api/ketra.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <cstdlib>

void deleteConfig(thermo::input::ConfigFile* config) { delete config; }

void deletePerformance(performance::TheoreticalPerformance* performance) { delete performance; }

void deleteThrottlingPerformance(performance::ThrottlingPerformance* performance)
{
    delete performance;
}

void deleteCorrectionFactors(performance::efficiency::CorrectionFactors* factors)
{
    delete factors;
}

void deleteNozzleSectionConditions(performance::equilibrium::NozzleSectionConditions* section)
{
    delete section;
}

void deleteMixture(thermo::Mixture* mixture) { delete mixture; }

void deleteReactingMixture(reaction::ReactingMixture* mixture) { delete mixture; }

void deleteSpecies(thermo::Species* species) { delete species; }

void deleteChemicalFormula(thermo::ChemicalFormula* formula) { delete formula; }

void freeObject(void* block) { std::free(block); }
