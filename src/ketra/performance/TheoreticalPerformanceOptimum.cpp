#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/util/Log.h>
#include <ketra/util/concurrent/TaskGroup.h>

#include <algorithm>
#include <cmath>

namespace performance {

using thermo::input::ConfigFile;
using util::concurrent::TaskGroup;

namespace {

constexpr unsigned int unsolvable = 14;

constexpr double scanSteps = 20.0; // from bound to bound, in search of a bound with a solution
constexpr int maxCycles = 50;
// Parts of the golden section: the next point lies nearer to the bound of the higher impulse.
constexpr double shortPart = 0.382;
constexpr double longPart = 0.618;

int signOf(double value) { return (value > 0.0) - (value < 0.0); }

/// A finder on a copy of the document of \p engine, with its settings.
std::unique_ptr<SpecificImpulseFinder> newFinder(const TheoreticalPerformance& engine)
{
    auto finder = std::make_unique<SpecificImpulseFinder>(
        std::make_unique<ConfigFile>(*engine.getData()).release());
    finder->setRelativeTolerance(engine.getRelativeTolerance());
    finder->setPersistent(engine.isPersistent());
    finder->setWarmStart(engine.isWarmStart());
    return finder;
}

/// The search for the maximum of the impulse over the oxidizer excess coefficient. The sign of the
/// slope, from two points \p h apart, tells on which side of a point the maximum lies.
class OptimumSearch
{
public:
    OptimumSearch(const TheoreticalPerformance& engine, double from, double to, double eps)
        : A(newFinder(engine)), B(newFinder(engine)), C(newFinder(engine)), lo(from), hi(to),
          tolerance(eps), h(eps * 0.5)
    {
    }

    /// Moves the bounds inwards to where the engine has a solution, and solves there.
    void bracket();
    /// The impulse is highest at the lower bound.
    bool fallsFromTheStart() const { return !(slope > 0.0) && I_lo > I_hi; }
    /// Narrows the bracket to the tolerance.
    void narrow();
    /// The next point of the bracket, which is the optimum in the end.
    double next() const { return lo + nextStep(); }

private:
    bool isWide() const { return 2.0 * std::abs(hi - lo) / (hi + lo) > tolerance; }
    double nextStep() const { return (hi - lo) * (I_lo > I_hi ? shortPart : longPart); }
    void halve();
    void countUnsolved(const SpecificImpulseFinder& finder);
    void warnOfUnsolved() const;

    std::unique_ptr<SpecificImpulseFinder> A, B, C; // each works alone, so all at the same time
    double lo, hi;                                  // bounds of the bracket
    double tolerance;                               // relative width of the bracket
    double h;
    double I_lo = 0.0, I_hi = 0.0; // impulse at the bounds, m/s
    double slope = 0.0;            // impulse at lo + h less that at lo
    int points = 0;                // of the narrowing
    int unsolved = 0;              // of them, without a solution
};

void OptimumSearch::bracket()
{
    const double step = (hi - lo) / scanSteps;
    do {
        A->run(lo);
        if (A->getIs_v() > 0.0) break;
        lo += step;
    } while (lo < hi);
    do {
        C->run(hi);
        if (C->getIs_v() > 0.0) break;
        hi -= step;
    } while (hi > lo);

    TaskGroup tasks;
    tasks.run([finder = A.get(), alpha = lo] { finder->run(alpha); });
    tasks.run([finder = B.get(), alpha = lo + h] { finder->run(alpha); });
    tasks.runAndWait([finder = C.get(), alpha = hi] { finder->run(alpha); });
    I_lo = A->getIs_v();
    I_hi = C->getIs_v();
    slope = B->getIs_v() - I_lo;
}

void OptimumSearch::narrow()
{
    for (int cycle = 1; isWide(); ++cycle) {
        if (cycle > maxCycles) {
            util::Log::errorf("THERMO",
                              "Could not find optimum oxidizer excess coefficient after %d  "
                              "cycles.",
                              cycle);
            break;
        }
        halve();
    }
    warnOfUnsolved();
}

// A point with the slope of the lower bound lies on the same side of the maximum, and becomes the
// lower bound; else it becomes the upper one.
void OptimumSearch::halve()
{
    const double x = next();
    TaskGroup tasks;
    tasks.run([finder = A.get(), x] { finder->run(x); });
    tasks.runAndWait([finder = B.get(), alpha = x + h] { finder->run(alpha); });
    countUnsolved(*A);
    countUnsolved(*B);
    const double I_x = A->getIs_v();
    const double slopeAtX = B->getIs_v() - I_x;
    if (signOf(slopeAtX) == signOf(slope)) {
        lo = x;
        I_lo = I_x;
        slope = slopeAtX;
    } else {
        hi = x;
        I_hi = I_x;
    }
}

void OptimumSearch::countUnsolved(const SpecificImpulseFinder& finder)
{
    ++points;
    unsolved += finder.isInvalid();
}

// A point without a solution counts as one without impulse, so that the slope beside it says
// nothing about where the maximum lies.
void OptimumSearch::warnOfUnsolved() const
{
    if (unsolved == 0) return;
    util::Log::warnf("THERMO",
                     "Could not solve the engine at %d of %d oxidizer excess coefficients of the "
                     "search: there may be a better one than it has found.%s",
                     unsolved, points, util::eol);
}

} // namespace

double TheoreticalPerformance::optimizeForSpecificImpulse(double a, double b, double eps)
{
    requireSearchable();
    double optimum = 0.0;
    {
        OptimumSearch search(*this, std::min(a, b), std::max(a, b), eps);
        search.bracket();
        if (search.fallsFromTheStart()) {
            util::Log::warnf("THERMO",
                             "The optimum oxidizer excess coefficient is probably located outside "
                             "of specified range %6.4f-%6.4f. Using local optimum %6.4f instead.",
                             a, b, a);
            return a;
        }
        search.narrow();
        optimum = search.next();
    }
    data->getPropellant().setRatio(optimum, thermo::input::Ratio::ALPHA);
    clearForRestart(/*all=*/true);
    solve(/*calculateTransport=*/true);
    optimized = true;
    return optimum;
}

// There is a coefficient to vary and an exit at which the impulse is read.
void TheoreticalPerformance::requireSearchable() const
{
    requireDocument();
    const char* missing = nullptr;
    const thermo::input::NozzleFlowOptions& options = data->getNozzleFlowOptions();
    if (mixture || data->getPropellant().getSpeciesListSize() > 0)
        missing = "a mixture of species has none. Give oxidizer and fuel";
    else if (!options.isCalculateNozzleFlow() || !options.isNozzleExitConditionsSet())
        missing = "there is no specific impulse without a nozzle exit. Set calculateNozzleFlow = "
                  "true and nozzleExitConditions";
    if (missing == nullptr) return;
    util::Log::errorf("THERMO", "Could not find optimum oxidizer excess coefficient: %s.%s",
                      missing, util::eol);
    throw thermo::Exception(unsolvable);
}

} // namespace performance
