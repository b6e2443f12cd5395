#include "FlowCheck.h"
#include "Text.h"

#include <ketra/thermo/input/Ratio.h>

#include <string>

namespace host {
namespace {

using libconfig::Setting;
using thermo::input::Ratio;

constexpr double leastFrozenArea = 1.1; // a freezing section lies behind the throat
constexpr double leastBell = 60.0;      // per cent; ends of the table of divergence losses
constexpr double longestBell = 100.0;

/// A group below another; null if it is not there.
const Setting* below(const Setting& group, const char* key)
{
    return group.exists(key) && group[key].isGroup() ? &group[key] : nullptr;
}

bool flag(const Setting& group, const char* key, bool otherwise)
{
    group.lookupValue(key, otherwise);
    return otherwise;
}

double number(const Setting& group, const char* key)
{
    double value = 0.0;
    group.lookupValue(key, value);
    return value;
}

bool asksForOptimum(const Setting& root)
{
    const Setting* const propellant = below(root, "propellant");
    const Setting* const components = propellant ? below(*propellant, "components") : nullptr;
    if (!components) return false;
    const Setting* const ratio = below(*components, "ratio");
    if (!ratio) return true;
    std::string unit;
    ratio->lookupValue("unit", unit);
    return !unit.empty() && Ratio::rawToUnit(unit.c_str()) == Ratio::OPTIMAL;
}

} // namespace

void FlowCheck::run()
{
    const Setting& root = document.root();
    const Setting* flow = below(root, "nozzleFlow");
    if (flow && !flag(*flow, "calculateNozzleFlow", true)) flow = nullptr;
    if (asksForOptimum(root)) checkOptimum(flow);
    if (!flow) return;
    if (const Setting* group = below(*flow, "freezingConditions")) checkFreezing(*group);
    if (const Setting* group = below(*flow, "nozzleInletConditions")) {
        requireAbove(*group, "contractionAreaRatio", 1.0, "the chamber is wider than the throat");
        if (const Setting* flux = below(*group, "massFlux"))
            requireAbove(*flux, "value", 0.0, "gas flows through the chamber");
    }
    if (const Setting* group = below(*flow, "nozzleExitConditions")) checkSection(*group);
    if (const Setting* group = below(*flow, "ambientConditions")) checkAmbient(*group);
    if (const Setting* group = below(*flow, "efficiencies")) checkEfficiencies(*group);
}

void FlowCheck::checkOptimum(const Setting* flow)
{
    if (flow && flow->exists("nozzleExitConditions")) return;
    const Setting& root = document.root();
    findings.fail(
        flow ? document.placeOfAbsent(*flow, "nozzleExitConditions")
             : document.placeOfAbsent(root, "nozzleFlow"),
        "the best mixture ratio is that of the highest specific impulse, and without a "
        "nozzle there is none. Add nozzleExitConditions = { areaRatio = 40.0; }; or state "
        "a ratio with ratio = { value = ...; unit = \"O/F\"; };");
}

void FlowCheck::checkFreezing(const Setting& group)
{
    if (!flag(group, "calculate", false)) {
        findings.warn(document.place(group), "has no effect, because \"calculate\" is not true");
        return;
    }
    if (!group.exists("expansionRatio") && !group.exists("pressure") &&
        !group.exists("pressureRatio"))
        findings.fail(document.place(group),
                      "does not say where the composition freezes. Add expansionRatio = 1.1;");
    requireAbove(group, "expansionRatio", 0.0, "an area cannot be less");
    if (group.exists("expansionRatio") && number(group, "expansionRatio") > 0.0 &&
        number(group, "expansionRatio") < leastFrozenArea)
        findings.warn(document.place(group["expansionRatio"]),
                      "the composition freezes behind the throat; " + plainText(leastFrozenArea) +
                          " is taken instead");
    requirePressure(group, "pressure", /*orZero=*/false);
    requireAbove(group, "pressureRatio", 1.0, "the gas expands from the chamber on");
}

void FlowCheck::checkSection(const Setting& group)
{
    if (group.exists("areaRatio") && !(number(group, "areaRatio") >= 1.0))
        findings.fail(document.place(group["areaRatio"]),
                      "the area ratio is " + plainText(number(group, "areaRatio")) +
                          "; nothing is narrower than the throat, so that it must be 1 or more");
    if (!flag(group, "supersonic", true))
        findings.warn(document.place(group["supersonic"]),
                      "is not heeded: the exit of a nozzle lies behind its throat");
    requireAbove(group, "pressureRatio", 1.0, "the gas expands from the chamber on");
    requirePressure(group, "pressure", /*orZero=*/false);
}

void FlowCheck::checkAmbient(const Setting& group)
{
    for (const char* key : {"pressure", "minPressure", "maxPressure"})
        requirePressure(group, key, /*orZero=*/true);
}

void FlowCheck::checkEfficiencies(const Setting& group)
{
    for (const char* key : {"cycle", "reaction", "nozzle"})
        if (group.exists(key) && !(number(group, key) > 0.0 && number(group, key) <= 1.0))
            findings.fail(document.place(group[key]),
                          "an efficiency of " + plainText(number(group, key)) +
                              "; it is a factor, above 0 and at most 1");
    const double length = number(group, "nozzleLength");
    if (group.exists("nozzleLength") && !(length >= leastBell && length <= longestBell))
        findings.warn(document.place(group["nozzleLength"]),
                      "a length of " + plainText(length) +
                          " % of a 15 degree cone is outside the data, which hold from " +
                          plainText(leastBell) + " to " + plainText(longestBell) +
                          "; the nearer end is taken");
    const double angle = number(group, "nozzleHalfAngle");
    if (group.exists("nozzleHalfAngle") && !(angle >= 0.0 && angle < 90.0))
        findings.fail(document.place(group["nozzleHalfAngle"]),
                      "a half angle of " + plainText(angle) +
                          " degrees; it must be from 0 to below 90");
}

void FlowCheck::requireAbove(const Setting& group, const char* key, double least, const char* why)
{
    if (!group.exists(key) || number(group, key) > least) return;
    findings.fail(document.place(group[key]), "is " + plainText(number(group, key)) +
                                                  ", but must be above " + plainText(least) + ": " +
                                                  why);
}

void FlowCheck::requirePressure(const Setting& group, const char* key, bool orZero)
{
    const Setting* const pressure = below(group, key);
    if (!pressure) return;
    const double value = number(*pressure, "value");
    if (value > 0.0 || (orZero && value == 0.0)) return;
    findings.fail(document.place(*pressure), "the pressure is " + plainText(value) + "; it must " +
                                                 (orZero ? "not be below 0" : "be above 0"));
}

} // namespace host
