#include <documents/DocumentLosses.h>

#include <unit/thermo_input/CoolingFacts.h>

#include <cstdlib>
#include <vector>

namespace ketra_test {

namespace {

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isZero(const std::string& value) { return value == exact(0.0) || value == exact(-0.0); }

void change(std::string& fact, const std::string& to, Losses& losses, const char* reason)
{
    if (fact != to) ++losses[reason];
    fact = to;
}

/// Without the end that it has.
std::string cut(const std::string& path, const std::string& end)
{
    return path.substr(0, path.size() - end.size());
}

/// The paths that end like this.
std::vector<std::string> pathsTo(const Facts& facts, const std::string& end)
{
    std::vector<std::string> paths;
    for (const auto& [path, value] : facts)
        if (endsWith(path, end)) paths.push_back(path);
    return paths;
}

void drop(Facts& facts, const std::string& path, Losses& losses, const char* reason)
{
    if (facts.erase(path) + facts.erase(path + "/value") + facts.erase(path + "/unit") > 0)
        ++losses[reason];
}

// The efficiencies are written as in a sparse document.
void loseEfficiencies(Facts& facts, Losses& losses)
{
    for (const char* key : {"cycle", "reaction", "nozzle", "nozzleLength", "nozzleHalfAngle"}) {
        const std::string path = std::string("nozzleFlow/efficiencies/") + key;
        if (facts.contains(path) && isZero(facts[path]))
            drop(facts, path, losses, "efficiency of 0");
    }
}

// A temperature of 0 or less on its scale is left out. One that is always there is 0 K then, and
// one that may be absent is absent.
void loseColdTemperatures(Facts& facts, Losses& losses)
{
    const auto isCold = [&](const std::string& path) {
        return !(std::strtod(facts[path].c_str(), nullptr) > 0.0);
    };
    for (const std::string& path : pathsTo(facts, "/T/value")) {
        if (!isCold(path)) continue;
        change(facts[path], exact(0.0), losses, "temperature");
        change(facts[cut(path, "value") + "unit"], "0", losses, "scale of a temperature");
    }
    for (const char* member : {"/coolingDt", "/Tmax"})
        for (const std::string& path : pathsTo(facts, std::string(member) + "/value"))
            if (isCold(path))
                drop(facts, cut(path, "/value"), losses, "temperature that may be absent");
}

// The geometry belongs to an engine that has a size, and of the contours the first one is written.
void loseGeometry(Facts& facts, Losses& losses)
{
    const std::string geometry = "engineSize/chamberGeometry/";
    if (!facts.contains("engineSize/thrust/value") &&
        !facts.contains("engineSize/flowrate/value") &&
        !facts.contains("engineSize/throatDiameter/value")) {
        const Facts fresh = factsOf(thermo::input::ChamberGeometry());
        bool lost = false;
        for (const std::string& path : pathsTo(facts, "")) {
            if (path.compare(0, geometry.size(), geometry) != 0) continue;
            const auto kept = fresh.find(path.substr(geometry.size()));
            lost = lost || kept == fresh.end() || kept->second != facts[path];
            facts.erase(path);
        }
        for (const auto& [path, value] : fresh) facts[geometry + path] = value;
        if (lost) ++losses["geometry without a size"];
        return;
    }
    const std::string contour = facts[geometry + "contour"];
    const char* const reason = "another contour";
    const auto dropAll = [&](std::initializer_list<const char*> keys) {
        for (const char* key : keys) drop(facts, geometry + key, losses, reason);
    };
    if (contour == "'TOC'") {
        dropAll({"Le", "initialAngle", "exitAngle", "Le_to_Lc15"});
        change(facts[geometry + "TOC_L"], "false", losses, reason);
    } else if (contour == "'TOC_L'") {
        dropAll({"initialAngle", "exitAngle", "Le_to_Lc15"});
    } else {
        dropAll({"Le", "Tw_to_T0"});
        change(facts[geometry + "TOC_applyEfficiency"], "false", losses, reason);
    }
}

// The least width of a channel is read from the first width, and written over it.
void mixWidths(Facts& facts, bool all, Losses& losses)
{
    for (const std::string& path : pathsTo(facts, "/a1/value")) {
        const std::string a1 = cut(path, "/value"), amin = cut(path, "a1/value") + "amin";
        if (!facts.contains(amin + "/value")) {
            const bool isLeftOut = !all && facts[path] == exact(2.0); // the default of the first
            facts[amin + "/value"] = isLeftOut ? exact(1.0) : facts[path];
            facts[amin + "/unit"] = facts[a1 + "/unit"];
            ++losses["least width gained"];
        } else if (all) {
            change(facts[path], facts[amin + "/value"], losses, "first width");
        }
    }
}

// The resistance of a valve stands under the key of the pump's efficiency, and its own is not
// written.
void mixResistances(Facts& facts, bool all, Losses& losses)
{
    for (const std::string& path : pathsTo(facts, "/valveZeta")) {
        const std::string pump = cut(path, "valveZeta") + "pumpEta";
        if (all || !isZero(facts[path])) {
            const bool had = facts.contains(pump);
            change(facts[pump], facts[path], losses,
                   had ? "pump efficiency" : "pump efficiency gained");
        }
        drop(facts, path, losses, "resistance");
    }
}

/// A member and its default. One that may be absent is absent if it stands there.
struct Default {
    const char* end;
    std::string value;
    bool isOptional;
};

const std::vector<Default>& defaults()
{
    static const std::vector<Default> table = {
        {"Conditions/expansionRatio", exact(0.0), true},
        {"Conditions/pressureRatio", exact(0.0), true},
        {"]/pressureRatio", exact(0.0), true}, // of a station
        {"/contractionAreaRatio", exact(0.0), true},
        {"Conditions/areaRatio", exact(0.0), true},
        {"]/areaRatio", exact(0.0), true},
        {"throttlingConditions/flowrate", exact(0.0), true},
        {"/minFlowrate", exact(0.0), true},
        {"/maxFlowrate", exact(0.0), true},
        {"/massFraction", exact(0.0), false},
        {"combustionChamberConditions/pressure/value", exact(0.0), false},
        {"onditions/pressure/value", exact(0.0), false},
        {"]/pressure/value", exact(0.0), false},
        {"onditions/minPressure/value", exact(0.0), false},
        {"onditions/maxPressure/value", exact(0.0), false},
        {"/massFlux/value", exact(0.0), false},
        {"/ratio/value", exact(0.0), false},
        {"/initialAngle", exact(0.0), true},
        {"/exitAngle", exact(0.0), true},
        {"/Le_to_Lc15", exact(0.0), true},
        {"/Tw_to_T0", exact(0.3), true},
        {"/Le", exact(5.0), true},
        {"/id", "''", true},
        {"/coolantFrom", "''", true},
        {"Design/location/value", exact(0.0), false},
        {"Cooling/location/value", exact(0.0), false},
        {"Design/length/value", exact(0.0), false},
        {"Cooling/length/value", exact(0.0), false},
        {"Design/n", exact(0.0), true},
        {"]/location/value", exact(0.0), false}, // of a slot
        {"]/flowrate", exact(0.0), false},
        {"/pumpEta", exact(0.7), true},
        {"/valveDp/value", exact(0.0), false},
        {"/coolingDp/value", exact(0.0), false},
        {"/injectorDp/value", exact(0.0), false},
        {"/injectorMu", exact(0.0), true},
        {"/hydraulicTurbine", "true", true},
        {"/turbinePi", exact(5.0), true},
        {"/turbineEta", exact(0.7), true},
        {"/rotationalSpeed/value", exact(0.0), false},
        {"/mdot", exact(0.0), true},
        {"]/dischargePressure/value", exact(0.0), false},
        {"zer/dischargePressure/value", exact(0.0), false},
        {"uel/dischargePressure/value", exact(0.0), false},
        {"/Abar", exact(0.0), true},
        {"/fixedDp/value", exact(0.0), false},
        {"/fixedPi", exact(0.0), true},
        {"/connectTo", "''", true},
        {"/dischargeTo", "''", true},
        {"/pipeDp/value", exact(0.0), false},
        {"/self/pressure/value", exact(0.0), false},
        {"/sigma", exact(0.9), true},
        {"/pi", exact(2.0), true},
        {"/eta", exact(0.7), true},
    };
    return table;
}

// The number of tubes is always there; that of the channels may be absent.
bool isTubes(const std::string& path) { return endsWith(path, "/tubularJacketDesign/n"); }

void loseDefaults(Facts& facts, Losses& losses)
{
    for (const Default& member : defaults())
        for (const std::string& path : pathsTo(facts, member.end)) {
            const bool isDefault =
                facts[path] == member.value || (isZero(member.value) && isZero(facts[path]));
            if (!isDefault || isTubes(path)) continue;
            if (member.isOptional)
                drop(facts, path, losses, "optional value at its default");
            else
                change(facts[path], member.value, losses, "sign of 0");
        }
}

/// What a unit is when none is stated: the number of the base unit of the quantity.
const char* assumedUnit(const std::string& path)
{
    const std::pair<std::vector<const char*>, const char*> units[] = {
        {{"/T", "/coolingDt", "/Tmax", "/massFlux", "/ratio", "onductivity", "engineSize/flowrate"},
         "0"},                                 // K, kg/(m2 s), O/F, W/(m K), kg/s
        {{"/gamma", "/rotationalSpeed"}, "1"}, // degree, rad/s
        {{"/thrust", "/throatDiameter", "/location", "/length", "Thickness", "/height", "/height1",
          "/height_min", "/height2", "/a1", "/amin", "/a2", "/b1", "/bmin", "/b2", "/d", "/dmin",
          "/d2", "/inletVelocity"},
         "3"}, // N, m, m/s
    };
    const std::string member = cut(path, "/unit");
    for (const auto& [ends, unit] : units)
        for (const char* end : ends)
            if (endsWith(member, end)) return unit;
    return "4"; // Pa
}

void loseUnits(Facts& facts, Losses& losses)
{
    for (const std::string& path : pathsTo(facts, "/unit")) {
        const bool isMixture = path == "propellant/ratio/unit" && facts[path] == "3";
        if (!isMixture) change(facts[path], assumedUnit(path), losses, "unit");
    }
    for (const char* kind : {"feedSystem/gas/type", "feedSystem/pump/cycle"})
        if (facts.contains(kind)) change(facts[kind], "0", losses, "kind of feed system");
    for (const std::string& path : pathsTo(facts, "/relationsType"))
        change(facts[path], "'Ievlev'", losses, "heat transfer relations");
}

// The side of the throat stands beside an area ratio only.
void loseSideOfTheThroat(Facts& facts, Losses& losses)
{
    for (const std::string& path : pathsTo(facts, "/supersonic"))
        if (!facts.contains(cut(path, "supersonic") + "areaRatio"))
            change(facts[path], "true", losses, "side of the throat");
}

// A flag that says no is left out, and then there is no such contour.
void loseContour(Facts& facts, Losses& losses)
{
    const std::string geometry = "engineSize/chamberGeometry/";
    std::string& contour = facts[geometry + "contour"];
    const std::string flag = contour.substr(1, contour.size() - 2); // without its quotes
    if (flag != "parabola" && facts[geometry + flag] == "false")
        change(contour, "'parabola'", losses, "contour");
}

// Copper is the default of the materials, and a wall without one has a conductivity.
void loseCopper(Facts& facts, Losses& losses)
{
    const std::pair<const char*, const char*> materials[] = {{"wallMaterial", "wallConductivity"},
                                                             {"ribsMaterial", "ribsConductivity"}};
    for (const auto& [material, conductivity] : materials)
        for (const std::string& path : pathsTo(facts, std::string("/") + material)) {
            if (facts[path] != "'copper'") continue;
            drop(facts, path, losses, "copper");
            facts[cut(path, material) + conductivity + "/value"] = exact(360.0);
            facts[cut(path, material) + conductivity + "/unit"] = "0";
        }
}

} // namespace

Facts afterWhole(const Facts& facts, Losses& losses)
{
    Facts after = facts;
    loseEfficiencies(after, losses);
    loseColdTemperatures(after, losses);
    loseGeometry(after, losses);
    mixWidths(after, true, losses);
    mixResistances(after, true, losses);
    return after;
}

Facts afterSparse(const Facts& facts, Losses& losses)
{
    Facts after = facts;
    loseEfficiencies(after, losses);
    loseColdTemperatures(after, losses);
    loseGeometry(after, losses);
    loseContour(after, losses);
    mixWidths(after, false, losses);
    loseCopper(after, losses);
    loseDefaults(after, losses);
    mixResistances(after, false, losses); // which may be the pump's default, and is written
    loseUnits(after, losses);
    loseSideOfTheThroat(after, losses);
    return after;
}

} // namespace ketra_test
