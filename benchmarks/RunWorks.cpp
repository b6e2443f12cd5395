#include "Work.h"

#include <ketra/api/ketra.h>
#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <tbb/global_control.h>

#include <memory>
#include <stdexcept>

namespace ketra_bench {

namespace {

constexpr const char* document = KETRA_SOURCE_DIR "/examples/01-lox-hydrogen-chamber.cfg";
constexpr const char* engineDocument = KETRA_SOURCE_DIR "/examples/10-lox-hydrogen-engine.cfg";
constexpr const char* openDocument = KETRA_SOURCE_DIR "/examples/17-optimum-mixture-ratio.cfg";
constexpr double p = 10.0e6;              // Pa, as in the document
constexpr double closureTolerance = 1e-6; // the solver stops at 1e-7

struct Delete {
    void operator()(thermo::input::ConfigFile* config) const { deleteConfig(config); }
    void operator()(performance::TheoreticalPerformance* solved) const
    {
        deletePerformance(solved);
    }
};
using Config = std::unique_ptr<thermo::input::ConfigFile, Delete>;
using Performance = std::unique_ptr<performance::TheoreticalPerformance, Delete>;

/// The temperature of the same chamber, posed through the classes, K.
double flameTemperature()
{
    thermo::Propellant propellant(6.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2(L)", 90.17, p, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2(L)", 20.27, p, 1.0);
    reaction::Equilibrium problem(propellant);
    problem.setPH(p, propellant.H());
    problem.solve(/*expectCondensed=*/false);
    requireCertified("chamber", problem);
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

/// Vacuum impulse of the engine of the document, posed through the classes, m/s.
double engineImpulse()
{
    using performance::equilibrium::NozzleSectionConditions;
    thermo::Propellant propellant(5.88);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2(L)", 90.17, 4.4e6, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2(L)", 20.27, 4.4e6, 1.0);
    performance::equilibrium::Chamber chamber(propellant, /*multiphase=*/true, /*ions=*/true);
    chamber.setP(4.4e6);
    chamber.solve(/*finiteArea=*/false, /*expectCondensed=*/false, /*calculateTransport=*/false);
    const NozzleSectionConditions exit(&chamber, 84.0, NozzleSectionConditions::AREA_RATIO,
                                       /*supersonic=*/true, /*expectCondensed=*/false,
                                       /*calculateTransport=*/false, /*tableSize=*/-1);
    requireCertified("engine", chamber, exit);
    return exit.getIs_v(0.0);
}

/// The same with a nozzle: chamber, throat and exit.
Body engine()
{
    useShippedSpecies();
    const auto once = [] {
        const Config config(loadConfig(engineDocument));
        const Performance performance(run(config.get()));
        return performance ? performance->getExitSection()->getIs_v(0.0) : 0.0;
    };
    requireClose("vacuum impulse", once(), engineImpulse(), closureTolerance);
    return [once] { once(); };
}

/// The oxidizer excess coefficient of the highest impulse, found by at most \p threads threads.
/// \param certify  hold its engine against its certificate
double optimum(std::size_t threads, bool certify)
{
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    const Config config(loadConfig(openDocument));
    const Performance performance(run(config.get()));
    if (performance && certify)
        requireCertified("optimum", *performance->getChamber(), *performance->getExitSection());
    return performance ? performance->getPropellant()->getAlpha() : 0.0;
}

/// \throws std::runtime_error if a neighbour of \p alpha is better by more than its bracket is wide
void requireMaximum(double alpha)
{
    performance::SpecificImpulseFinder finder(loadConfig(openDocument));
    const auto impulse = [&finder](double at) {
        finder.run(at);
        return finder.getIs_v();
    };
    const double highest = impulse(alpha);
    if (!(highest > impulse(alpha * 0.99) && highest > impulse(alpha * 1.01)))
        throw std::runtime_error("optimum: a neighbour has a higher impulse");
}

/// The search for the optimum mixture ratio: some thirty engines, two at a time.
Body optimumSearch(std::size_t threads)
{
    useShippedSpecies();
    requireMaximum(optimum(threads, /*certify=*/true));
    return [threads] { optimum(threads, /*certify=*/false); };
}

} // namespace

std::vector<Work> runWorks()
{
    return {{"Run/LoxHydrogenChamber", chamber},
            {"Run/LoxHydrogenEngine", engine},
            {"Run/OptimumSearch/1Thread", [] { return optimumSearch(1); }},
            {"Run/OptimumSearch/2Threads", [] { return optimumSearch(2); }}};
}

} // namespace ketra_bench
