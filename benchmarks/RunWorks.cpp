#include "Work.h"

#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Propellant.h>

namespace ketra_bench {

namespace {

constexpr const char* document = KETRA_SOURCE_DIR "/examples/01-lox-hydrogen-chamber.cfg";
constexpr double p = 10.0e6;              // Pa, as in the document
constexpr double closureTolerance = 1e-6; // the solver stops at 1e-7

/// The temperature of the same chamber, posed through the classes, K.
double flameTemperature()
{
    thermo::Propellant propellant(6.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2(L)", 90.17, p, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2(L)", 20.27, p, 1.0);
    reaction::Equilibrium problem(propellant);
    problem.setPH(p, propellant.H());
    problem.solve(/*expectCondensed=*/false);
    return problem.getT();
}

/// Reads a document, solves it and drops the result, as a host does for every case.
Body chamber()
{
    useShippedSpecies();
    const auto once = [] {
        thermo::input::ConfigFile* config = loadConfig(document);
        performance::TheoreticalPerformance* performance = run(config);
        const double T = performance ? performance->getEquilibrium()->getT() : 0.0;
        deletePerformance(performance);
        deleteConfig(config);
        return T;
    };
    requireClose("chamber temperature", once(), flameTemperature(), closureTolerance);
    return [once] { once(); };
}

} // namespace

std::vector<Work> runWorks() { return {{"Run/LoxHydrogenChamber", chamber}}; }

} // namespace ketra_bench
