#pragma once

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/GeneralOptions.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/Propellant.h>

#include <cstdio>
#include <map>
#include <string>

namespace ketra_test {

/// Everything that a document says, member by member: a path and the exact value. A member that is
/// absent has no entry. Two documents are the same when their facts are.
using Facts = std::map<std::string, std::string>;

/// A number with all its bits.
inline std::string exact(double x)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%a", x);
    return buffer;
}

inline std::string exact(bool flag) { return flag ? "true" : "false"; }

/// Collects facts below a path.
class FactWriter
{
public:
    FactWriter(Facts& target, std::string where) : facts(target), path(std::move(where)) {}

    FactWriter below(const std::string& key) const { return {facts, path + key + "/"}; }
    FactWriter below(const std::string& key, unsigned int i) const
    {
        return below(key + "[" + std::to_string(i) + "]");
    }
    void say(const char* key, double x) { facts[path + key] = exact(x); }
    void say(const char* key, bool flag) { facts[path + key] = exact(flag); }
    void say(const char* key, const std::string& text) { facts[path + key] = "'" + text + "'"; }
    void count(const char* key, unsigned int n) { facts[path + key] = std::to_string(n); }
    template <class Units> void say(const char* key, double x, Units unit)
    {
        facts[path + key + "/value"] = exact(x);
        facts[path + key + "/unit"] = std::to_string(static_cast<int>(unit));
    }

private:
    Facts& facts;
    std::string path;
};

inline void tell(FactWriter to, const thermo::input::GeneralOptions& s)
{
    to.say("multiphase", s.isMultiphase());
    to.say("ions", s.isIons());
    to.say("flowSeparation", s.isFlowSeparation());
}

inline void tell(FactWriter to, const thermo::input::CombustionChamberConditions& s)
{
    to.say("pressure", s.getPressure(false), s.getPressureUnit(false));
}

inline void tell(FactWriter to, const thermo::input::FreezingConditions& s)
{
    to.say("calculate", s.isCalculate());
    if (s.isExpansionRatioSet()) to.say("expansionRatio", s.getExpansionRatio());
    if (s.isPressureSet()) to.say("pressure", s.getPressure(false), s.getPressureUnit(false));
    if (s.isPressureRatioSet()) to.say("pressureRatio", s.getPressureRatio());
}

inline void tell(FactWriter to, const thermo::input::NozzleInletConditions& s)
{
    if (s.isContractionAreaRatioSet()) to.say("contractionAreaRatio", s.getContractionAreaRatio());
    if (s.isMassFluxSet()) to.say("massFlux", s.getMassFlux(false), s.getMassFluxUnit(false));
}

inline void tell(FactWriter to, const thermo::input::NozzleSectionConditions& s)
{
    to.say("supersonic", s.isSuperSonicAreaRatio());
    if (s.isAreaRatio()) to.say("areaRatio", s.getAreaRatio());
    if (s.isPressureRatio()) to.say("pressureRatio", s.getPressureRatio());
    if (s.isPressure()) to.say("pressure", s.getPressure(false), s.getPressureUnit(false));
}

// One end of a range can be set without the other; the getters tell by throwing.
template <class Tell> void tellIfSet(Tell tellIt)
{
    try {
        tellIt();
    } catch (const runtime::Exception&) {
    }
}

inline void tell(FactWriter to, const thermo::input::AmbientConditions& s)
{
    to.say("calculateDeliveredPerformance", s.isDeliveredPerformance());
    if (s.isFixedPressureSet())
        to.say("pressure", s.getFixedPressure(false), s.getFixedPressureUnit(false));
    tellIfSet([&] {
        to.say("minPressure", s.getRangePressureMin(false), s.getRangePressureMinUnit(false));
    });
    tellIfSet([&] {
        to.say("maxPressure", s.getRangePressureMax(false), s.getRangePressureMaxUnit(false));
    });
}

inline void tell(FactWriter to, const thermo::input::ThrottlingConditions& s)
{
    to.say("calculateDeliveredPerformance", s.isDeliveredPerformance());
    if (s.isFixedFlowrateSet()) to.say("flowrate", s.getFixedFlowrate());
    tellIfSet([&] { to.say("minFlowrate", s.getRangeFlowrateMin()); });
    tellIfSet([&] { to.say("maxFlowrate", s.getRangeFlowrateMax()); });
}

inline void tell(FactWriter to, const thermo::input::EfficiencyFactors& s)
{
    to.say("apply", s.isApplyEfficiencyFactors());
    if (s.isCycleEfficiencySet()) to.say("cycle", s.getCycleEfficiency());
    if (s.isReactionEfficiencySet()) to.say("reaction", s.getReactionEfficiency());
    if (s.isNozzleEfficiencySet()) to.say("nozzle", s.getNozzleEfficiency());
    if (s.isNozzleLengthSet()) to.say("nozzleLength", s.getNozzleLength());
    if (s.isConeHalfAngleSet()) to.say("nozzleHalfAngle", s.getConeHalfAngle());
}

inline void tell(FactWriter to, const thermo::input::NozzleFlowOptions& s)
{
    to.say("calculateNozzleFlow", s.isCalculateNozzleFlow());
    to.say("freezingConditions", s.isFreezingConditionsSet());
    to.say("nozzleInletConditions", s.isNozzleInletConditionsSet());
    to.say("nozzleExitConditions", s.isNozzleExitConditionsSet());
    to.say("efficiencies", s.isEfficiencyFactorsSet());
    to.say("ambientConditions", s.isAmbientConditionsSet());
    to.say("throttlingConditions", s.isThrottlingConditionsSet());
    if (s.isFreezingConditionsSet())
        tell(to.below("freezingConditions"), s.getFreezingConditions());
    if (s.isNozzleInletConditionsSet())
        tell(to.below("nozzleInletConditions"), s.getNozzleInletConditions());
    if (s.isNozzleExitConditionsSet())
        tell(to.below("nozzleExitConditions"), s.getNozzleExitConditions());
    if (s.isEfficiencyFactorsSet()) tell(to.below("efficiencies"), s.getEfficiencyFactors());
    if (s.isAmbientConditionsSet()) tell(to.below("ambientConditions"), s.getAmbientConditions());
    if (s.isThrottlingConditionsSet())
        tell(to.below("throttlingConditions"), s.getThrottlingConditions());
    to.count("nozzleStations", s.getSectionListSize());
    for (unsigned int i = 0; i < s.getSectionListSize(); ++i)
        tell(to.below("nozzleStations", i), s.getSection(i));
}

inline void tell(FactWriter to, const thermo::input::Component& s)
{
    to.say("name", s.getName());
    to.say("massFraction", s.getMf());
    to.say("T", s.getT(false), s.getTUnit());
    to.say("p", s.getP(false), s.getPUnit());
}

inline void tell(FactWriter to, const thermo::input::Propellant& s)
{
    to.say("ratio", s.getRatio(), s.getRatioType());
    to.count("oxidizer", s.getOxidizerListSize());
    to.count("fuel", s.getFuelListSize());
    to.count("species", s.getSpeciesListSize());
    for (unsigned int i = 0; i < s.getOxidizerListSize(); ++i)
        tell(to.below("oxidizer", i), *s.getOxidizer(i));
    for (unsigned int i = 0; i < s.getFuelListSize(); ++i) tell(to.below("fuel", i), *s.getFuel(i));
    for (unsigned int i = 0; i < s.getSpeciesListSize(); ++i)
        tell(to.below("species", i), *s.getSpecies(i));
}

template <class Section> Facts factsOf(const Section& section)
{
    Facts facts;
    tell(FactWriter(facts, ""), section);
    return facts;
}

} // namespace ketra_test
