#include <ketra/performance/TheoreticalPerformance.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/util/Log.h>

#include <cmath>

namespace performance {

using equilibrium::Chamber;
using thermo::input::NozzleFlowOptions;
using Section = equilibrium::NozzleSectionConditions;

namespace {

constexpr unsigned int invalidState = 0;
constexpr unsigned int noSection = 11;

constexpr int withoutTable = -1;              // a section is found without the table of the nozzle
constexpr int maxSeparationPasses = 100;      // beyond the first
constexpr double separationTolerance = 0.001; // relative, of the separation pressure

// A flow of the static pressure p and the Mach number M separates from the wall at the ambient
// pressure pa = 1.6 p (1.88 M - 1)^0.64, [Schmucker1984].
double separationRatio(double mach) { return std::pow(1.88 * mach - 1.0, -0.64); }

bool isFrozen(const NozzleFlowOptions& options)
{
    return options.isFreezingConditionsSet() && options.getFreezingConditions().isCalculate();
}

/// What a section is given by.
struct Condition {
    double value;
    Section::CONDITION_TYPE type;

    const char* label() const
    {
        switch (type) {
        case Section::PRESSURE:
            return "pe";
        case Section::PRESSURE_RATIO:
            return "pc/pe";
        default:
            return "Ae/At";
        }
    }
};

Condition exitCondition(const NozzleFlowOptions& options)
{
    const thermo::input::NozzleSectionConditions& exit = options.getNozzleExitConditions();
    Condition condition{-1.0, Section::AREA_RATIO};
    if (exit.isAreaRatio())
        condition = {exit.getAreaRatio(), Section::AREA_RATIO};
    else if (exit.isPressureRatio())
        condition = {exit.getPressureRatio(), Section::PRESSURE_RATIO};
    else if (exit.isPressure())
        condition = {exit.getPressure(true), Section::PRESSURE};
    if (condition.value < 0.0) {
        util::Log::error("THERMO", "Unknown nozzle exit condition.");
        throw thermo::Exception(invalidState);
    }
    return condition;
}

/// Where the composition freezes.
struct Freezing {
    double value;
    frozen::Chamber::CONDITION_TYPE type;
};

Freezing freezingOf(const thermo::input::FreezingConditions& conditions)
{
    using frozen::Chamber;
    if (conditions.isExpansionRatioSet())
        return {conditions.getExpansionRatio(), Chamber::EXPANSION_RATIO};
    if (conditions.isPressureSet()) return {conditions.getPressure(true), Chamber::PRESSURE};
    if (conditions.isPressureRatioSet())
        return {conditions.getPressureRatio(), Chamber::PRESSURE_RATIO};
    util::Log::errorf("THERMO",
                      "Could not solve theoretical performance problem: the freezing conditions "
                      "state neither an expansion ratio nor a pressure nor a pressure ratio.%s",
                      util::eol);
    throw thermo::Exception(invalidState);
}

template <class Reactants>
std::unique_ptr<Chamber> chamberOf(Reactants& reactants, const thermo::input::ConfigFile& data)
{
    const bool multiphase = data.getGeneralOptions().isMultiphase();
    const bool ions = data.getGeneralOptions().isIons();
    const NozzleFlowOptions& options = data.getNozzleFlowOptions();
    if (!isFrozen(options)) return std::make_unique<Chamber>(reactants, multiphase, ions);
    const Freezing freezing = freezingOf(options.getFreezingConditions());
    return std::make_unique<frozen::Chamber>(reactants, multiphase, ions, freezing.value,
                                             freezing.type);
}

// Whether the chamber has a finite area, which is set then.
bool setArea(Chamber& chamber, const NozzleFlowOptions& options)
{
    if (!options.isNozzleInletConditionsSet()) return false;
    const thermo::input::NozzleInletConditions& inlet = options.getNozzleInletConditions();
    if (inlet.isContractionAreaRatioSet())
        chamber.setFcr(inlet.getContractionAreaRatio());
    else if (inlet.isMassFluxSet())
        chamber.setMr(inlet.getMassFlux(true));
    else
        return false;
    return true;
}

[[noreturn]] void failWithout(const char* missing)
{
    util::Log::errorf("THERMO", "Could not solve nozzle section: there is no %s.%s", missing,
                      util::eol);
    throw thermo::Exception(invalidState);
}

std::unique_ptr<Section> shiftingSection(Chamber& chamber, const Condition& condition,
                                         bool calculateTransport, bool supersonic)
{
    return std::make_unique<Section>(&chamber, condition.value, condition.type, supersonic,
                                     /*expectCondensed=*/false, calculateTransport, withoutTable);
}

std::unique_ptr<Section> frozenSection(frozen::Chamber& chamber, const Condition& condition,
                                       bool calculateTransport)
try {
    return std::make_unique<frozen::NozzleSectionConditions>(&chamber, condition.value,
                                                             condition.type, calculateTransport);
} catch (...) {
    util::Log::errorf("THERMO",
                      "Could not solve frozen equilibrium for nozzle section %s=%.2f.%sPlease "
                      "correct the frozen equilibrium model, moving freezing section upstream of "
                      "the nozzle.%s",
                      condition.label(), condition.value, util::eol, util::eol);
    throw thermo::Exception(noSection);
}

// A section in shifting equilibrium, as the whole flow has it.
std::unique_ptr<Section> newShiftingSection(Chamber& chamber, const Condition& condition,
                                            bool calculateTransport, bool supersonic)
try {
    return shiftingSection(chamber, condition, calculateTransport, supersonic);
} catch (...) {
    util::Log::errorf("THERMO",
                      "Could not solve shifting equilibrium for nozzle section %s=%.2f.%sPlease "
                      "set up the reasonable frozen equilibrium model.%s",
                      condition.label(), condition.value, util::eol, util::eol);
    throw thermo::Exception(noSection);
}

// What the section is given by tells its side of the freezing section, so that no equilibrium need
// be sought where there may be none.
bool isBehindFreezing(const frozen::Chamber& chamber, const Condition& condition)
{
    const Section& freezing = *chamber.getEquilibriumSection();
    switch (condition.type) {
    case Section::PRESSURE:
        return condition.value <= freezing.getP();
    case Section::PRESSURE_RATIO:
        return condition.value >= freezing.getPi();
    case Section::AREA_RATIO:
        break;
    }
    return condition.value >= freezing.getFr();
}

// A section of a flow that freezes. In front of the freezing section it is one in equilibrium; so
// is every section that is not supersonic, and null where it has no solution.
std::unique_ptr<Section> newFreezingSection(frozen::Chamber& chamber, const Condition& condition,
                                            bool calculateTransport, bool supersonic)
{
    if (supersonic && (chamber.isPersistent() || chamber.isWarmStart()))
        return isBehindFreezing(chamber, condition)
                   ? frozenSection(chamber, condition, calculateTransport)
                   : newShiftingSection(chamber, condition, calculateTransport, supersonic);
    std::unique_ptr<Section> section;
    try {
        section = shiftingSection(chamber, condition, calculateTransport, supersonic);
    } catch (...) {
        // So far downstream an equilibrium may not exist, and is not needed.
    }
    if (!supersonic) return section;
    const bool isUpstream = section && chamber.getEquilibriumSection()->getP() < section->getP();
    if (isUpstream) return section;
    section.reset();
    return frozenSection(chamber, condition, calculateTransport);
}

} // namespace

void TheoreticalPerformance::solveNozzleFlow(bool expectCondensed, bool calculateTransport)
{
    solveChamber(expectCondensed, calculateTransport);
    NozzleFlowOptions& options = data->getNozzleFlowOptions();
    if (nozzleSolving && options.isNozzleExitConditionsSet())
        solveNozzleExit(options, data->getGeneralOptions().isFlowSeparation(), calculateTransport);
}

void TheoreticalPerformance::solveChamber(bool expectCondensed, bool calculateTransport)
{
    std::unique_ptr<Chamber> unsolved =
        propellant ? chamberOf(*propellant, *data) : chamberOf(*mixture, *data);
    const double p = data->getCombustionChamberConditions().getPressure(true);
    if (hasH)
        unsolved->setPH(p, H);
    else
        unsolved->setP(p);
    const bool finiteArea = setArea(*unsolved, data->getNozzleFlowOptions());
    unsolved->setRelativeTolerance(relativeTolerance);
    unsolved->setPersistent(persistent);
    unsolved->setWarmStart(warmStart);
    try {
        unsolved->solve(finiteArea, expectCondensed, calculateTransport);
    } catch (...) {
        invalid = true;
        throw;
    }
    chamber = std::move(unsolved);
}

void TheoreticalPerformance::solveNozzleExit(NozzleFlowOptions& options, bool flowSeparation,
                                             bool /*calculateTransport*/)
{
    clearSections();
    const Condition exit = exitCondition(options);
    const bool frozen = isFrozen(options);
    exitSection.reset(solveNozzleSection(exit.value, exit.type, frozen, /*overExpansion=*/false,
                                         0.0, /*calculateTransport=*/true, /*supersonic=*/true));
    PaCrit = exitSection->getP() * 1.6 / separationRatio(exitSection->getMach());

    if (!flowSeparation || !options.isAmbientConditionsSet() ||
        !options.getAmbientConditions().isFixedPressureSet())
        return;
    const double pa = options.getAmbientPressure(true);
    if (!(pa > PaCrit)) return;
    try {
        overExpansionSection.reset(
            solveNozzleSection(exit.value, exit.type, frozen, /*overExpansion=*/true, pa,
                               /*calculateTransport=*/true, /*supersonic=*/true));
    } catch (...) {
        // The exit itself is solved, and the log tells why its flow has no separation point.
    }
}

Section* TheoreticalPerformance::solveNozzleSection(double value, Section::CONDITION_TYPE type,
                                                    bool frozen, bool overExpansion,
                                                    double ambientPressure, bool calculateTransport,
                                                    bool supersonic)
{
    std::unique_ptr<Section> section =
        newSection(value, type, frozen, calculateTransport, supersonic);
    if (!supersonic || !overExpansion || ambientPressure < PaCrit) return section.release();
    std::unique_ptr<Section> separated = separatedSection(*section, frozen, ambientPressure);
    return separated ? separated.release() : section.release();
}

std::unique_ptr<Section> TheoreticalPerformance::newSection(double value,
                                                            Section::CONDITION_TYPE type,
                                                            bool frozen, bool calculateTransport,
                                                            bool supersonic) const
{
    if (!chamber) failWithout("solved chamber");
    const Condition condition{value, type};
    if (!frozen) return newShiftingSection(*chamber, condition, calculateTransport, supersonic);
    auto* const freezing = dynamic_cast<frozen::Chamber*>(chamber.get());
    if (freezing == nullptr) failWithout("freezing section in the chamber");
    return newFreezingSection(*freezing, condition, calculateTransport, supersonic);
}

// The place where an over-expanded flow leaves the wall: p_s = pa (1.88 M - 1)^-0.64 / 1.6, M being
// the Mach number at p_s itself. Null if that is not in front of the exit, or if it is not found.
std::unique_ptr<Section> TheoreticalPerformance::separatedSection(const Section& expanded,
                                                                  bool frozen,
                                                                  double ambientPressure) const
{
    if (!exitSection) failWithout("nozzle exit from which the flow could separate");
    double p = ambientPressure * separationRatio(expanded.getMach()) / 1.6;
    std::unique_ptr<Section> separated;
    int pass = 0;
    for (; pass <= maxSeparationPasses; ++pass) {
        if (!(p > exitSection->getP())) return separated;
        try {
            separated = newSection(p, Section::PRESSURE, frozen, /*calculateTransport=*/true,
                                   /*supersonic=*/true);
        } catch (const thermo::Exception& failure) {
            util::Log::errorf("THERMO", "Could not find nozzle overexpansion condition.%s",
                              util::eol);
            throw thermo::Exception(failure.getType());
        }
        const double next = ambientPressure * separationRatio(separated->getMach()) / 1.6;
        if (std::abs(next - p) / p < separationTolerance) return separated;
        p = next;
    }
    util::Log::warnf("THERMO",
                     "Could not find nozzle overexpansion condition within %d iterations.%s", pass,
                     util::eol);
    return nullptr;
}

void TheoreticalPerformance::propagateChamberBLC()
{
    if (!chamber || !chamber->isBLC() || !exitSection) return;
    if (chamber->getBlcReaction(Chamber::CHAMBER_END) == nullptr ||
        chamber->getBlcDerivatives(Chamber::THROAT) == nullptr) {
        util::Log::errorf("THERMO",
                          "Could not solve boundary layer of nozzle section: the layer of the "
                          "chamber is not solved.%s",
                          util::eol);
        throw thermo::Exception(invalidState);
    }
    for (Section* section : {exitSection.get(), overExpansionSection.get()})
        if (section != nullptr)
            section->blc_solve(chamber.get(), /*supersonic=*/true, /*expectCondensed=*/true,
                               /*calculateTransport=*/true);
}

} // namespace performance
