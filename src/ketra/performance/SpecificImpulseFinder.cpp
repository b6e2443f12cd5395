#include <ketra/performance/SpecificImpulseFinder.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/util/Log.h>

namespace performance {

namespace {

constexpr unsigned int invalidState = 0;

} // namespace

SpecificImpulseFinder::SpecificImpulseFinder(thermo::input::ConfigFile* document)
    : util::Thread(/*waits=*/false, /*stack=*/0), data(document),
      performance(std::make_unique<TheoreticalPerformance>(document, /*ownsDocument=*/false))
{
    data->getGeneralOptions().setFlowSeparation(false);
}

SpecificImpulseFinder::~SpecificImpulseFinder() { wait(); }

void SpecificImpulseFinder::clear()
{
    wait();
    performance.reset();
    data.reset();
}

TheoreticalPerformance& SpecificImpulseFinder::requirePerformance() const
{
    if (performance) return *performance;
    util::Log::errorf("THERMO", "Could not find specific impulse: the finder is cleared.%s",
                      util::eol);
    throw thermo::Exception(invalidState);
}

double SpecificImpulseFinder::getRelativeTolerance() const
{
    return requirePerformance().getRelativeTolerance();
}

void SpecificImpulseFinder::setRelativeTolerance(double multiplier)
{
    requirePerformance().setRelativeTolerance(multiplier);
}

bool SpecificImpulseFinder::isPersistent() const { return requirePerformance().isPersistent(); }

void SpecificImpulseFinder::setPersistent(bool persistent)
{
    requirePerformance().setPersistent(persistent);
}

bool SpecificImpulseFinder::isWarmStart() const { return requirePerformance().isWarmStart(); }

void SpecificImpulseFinder::setWarmStart(bool warmStart)
{
    requirePerformance().setWarmStart(warmStart);
}

// The propellant that is there takes the new coefficient; the document keeps it for the propellant
// that is built anew after a failed run.
void SpecificImpulseFinder::setAlpha(double alpha)
{
    const TheoreticalPerformance& engine = requirePerformance();
    if (engine.getPropellant() != nullptr) engine.getPropellant()->assignAlpha(alpha);
    thermo::input::Propellant& input = data->getPropellant();
    if (engine.getMixture() == nullptr && input.getSpeciesListSize() == 0)
        input.setRatio(alpha, thermo::input::Ratio::ALPHA);
    else
        util::Log::error("THERMO", "Could not set oxidizer excess for mixture!");
}

void SpecificImpulseFinder::run()
{
    TheoreticalPerformance& engine = requirePerformance();
    invalid = false;
    try {
        engine.solve(/*calculateTransport=*/false);
    } catch (const thermo::Exception&) {
        engine.clearForRestart(/*all=*/true);
        invalid = true;
    }
}

void SpecificImpulseFinder::run(double alpha)
{
    setAlpha(alpha);
    run();
}

void SpecificImpulseFinder::start(double alpha)
{
    requireIdle();
    setAlpha(alpha);
    util::Thread::start();
}

void SpecificImpulseFinder::restart(double alpha)
{
    requireIdle();
    setAlpha(alpha);
    util::Thread::restart();
}

// Before the coefficient is touched: it belongs to the run that is going on.
void SpecificImpulseFinder::requireIdle() const
{
    if (isRunning()) throw runtime::Exception(0, "Thread is running");
}

double SpecificImpulseFinder::getIs_v() const
{
    if (invalid || !performance || performance->getExitSection() == nullptr) return 0.0;
    double efficiency = 1.0;
    try {
        efficiency = efficiency::CorrectionFactors(performance.get()).getOverallEfficiency();
    } catch (...) {
        // Outside the correlations the ideal engine is what can be compared.
    }
    return performance->getExitSection()->getIs_v(0.0) * efficiency;
}

} // namespace performance
