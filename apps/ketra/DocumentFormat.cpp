#include "DocumentFormat.h"

#include <ketra/thermo/input/Angle.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/Force.h>
#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/MassFlowRate.h>
#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/thermo/input/RotationalSpeed.h>
#include <ketra/thermo/input/Temperature.h>
#include <ketra/thermo/input/ThermalConductivity.h>
#include <ketra/thermo/input/Velocity.h>

#include <algorithm>
#include <cstring>

namespace host {
namespace {

namespace input = thermo::input;

template <class Unit> bool acceptsUnit(const char* word)
try {
    Unit::rawToUnit(word);
    return true;
} catch (const input::Exception&) {
    return false;
}

template <class Unit, int first, int last> std::vector<std::string> unitNames()
{
    std::vector<std::string> names;
    for (int i = first; i <= last; ++i) {
        const std::string name = Unit::unitToRaw(static_cast<typename Unit::UNITS>(i));
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    return names;
}

/// The units of a class of the library: its numbers run from \p first to \p last.
template <class Unit, int first, int last> constexpr Words unitsOf(const char* what)
{
    return {what, acceptsUnit<Unit>, unitNames<Unit, first, last>};
}

constexpr Words pressureUnits = unitsOf<input::Pressure, 0, 5>("unit of pressure");
constexpr Words temperatureUnits = unitsOf<input::Temperature, 0, 2>("unit of temperature");
constexpr Words massFluxUnits = unitsOf<input::MassFlux, 0, 1>("unit of mass flux");
constexpr Words massFlowUnits = unitsOf<input::MassFlowRate, 0, 1>("unit of mass flow rate");
constexpr Words forceUnits = unitsOf<input::Force, 0, 3>("unit of force");
constexpr Words lengthUnits = unitsOf<input::Length, 0, 3>("unit of length");
constexpr Words velocityUnits = unitsOf<input::Velocity, 1, 3>("unit of velocity");
constexpr Words speedUnits = unitsOf<input::RotationalSpeed, 1, 3>("unit of rotational speed");
constexpr Words conductivityUnits =
    unitsOf<input::ThermalConductivity, 0, 2>("unit of thermal conductivity");
constexpr Words angleUnits = unitsOf<input::Angle, 0, 1>("unit of angle");
constexpr Words ratioUnits = unitsOf<input::Ratio, 0, 2>("kind of component ratio");

/// A list of words that stands here, since only documents hold it.
template <const auto& words> constexpr Words wordsOf(const char* what)
{
    return {what,
            [](const char* word) {
                return std::any_of(std::begin(words), std::end(words),
                                   [word](const char* w) { return std::strcmp(w, word) == 0; });
            },
            [] { return std::vector<std::string>(std::begin(words), std::end(words)); }};
}

constexpr const char* relationsWords[] = {"Ievlev", "ievlev", "Iewlew",   "iewlew",
                                          "Bartz",  "bartz",  "combined", "Combined"};
constexpr const char* pressurizationWords[] = {"by stored gas",
                                               "byStoredGas",
                                               "by_stored_gas",
                                               "by vaporized propellant",
                                               "byVaporizedPropellant",
                                               "by_vaporized_propellant",
                                               "by chemically generated gas",
                                               "byChemicallyGeneratedGas",
                                               "by_chemically_generated_gas"};
constexpr const char* cycleWords[] = {"gas generator",
                                      "gasGenerator",
                                      "gas_generator",
                                      "GG",
                                      "staged combustion",
                                      "stagedCombustion",
                                      "staged_combustion",
                                      "SC",
                                      "full-flow staged combustion",
                                      "fullFlowstagedCombustion",
                                      "full_flow_staged_combustion",
                                      "FFSC",
                                      "expander"};
constexpr const char* generatorWords[] = {"oxidizer-rich", "oxidizerRich", "fuel-rich", "fuelRich"};
constexpr const char* turbineWords[] = {"serial", "serial,auto", "serial,ox-fuel", "serial,fuel-ox",
                                        "parallel"};

constexpr Words relationsTypes = wordsOf<relationsWords>("heat transfer relation");
constexpr Words pressurizationTypes = wordsOf<pressurizationWords>("kind of pressurization");
constexpr Words cycleTypes = wordsOf<cycleWords>("engine cycle");
constexpr Words generatorTypes = wordsOf<generatorWords>("kind of gas generator");
constexpr Words turbineTypes = wordsOf<turbineWords>("connection of the turbine");

constexpr Key text(const char* name, Either e = {})
{
    return {name, Kind::TEXT, nullptr, nullptr, e};
}
constexpr Key boolean(const char* name, Either e = {})
{
    return {name, Kind::BOOLEAN, nullptr, nullptr, e};
}
constexpr Key whole(const char* name, Either e = {})
{
    return {name, Kind::WHOLE, nullptr, nullptr, e};
}
constexpr Key real(const char* name, Either e = {})
{
    return {name, Kind::REAL, nullptr, nullptr, e};
}
constexpr Key word(const char* name, const Words& w) { return {name, Kind::WORD, &w, nullptr, {}}; }
constexpr Key quantity(const char* name, const Words& units, Either e = {})
{
    return {name, Kind::QUANTITY, &units, nullptr, e};
}
constexpr Key group(const char* name, const Section& s, Either e = {})
{
    return {name, Kind::GROUP, nullptr, &s, e};
}
constexpr Key list(const char* name, const Section& s, Either e = {})
{
    return {name, Kind::LIST, nullptr, &s, e};
}

// clang-format off

// Flow: what is calculated, and how far.
constexpr Key generalKeys[] = {boolean("multiphase"), boolean("ions"), boolean("flowSeparation")};
constexpr Section generalOptions{generalKeys};

constexpr Key chamberKeys[] = {quantity("pressure", pressureUnits)};
constexpr Section chamberConditions{chamberKeys};

constexpr Key freezingKeys[] = {
    boolean("calculate"),
    real("expansionRatio", {'A', 1}),
    quantity("pressure", pressureUnits, {'A', 2}),
    real("pressureRatio", {'A', 3})};
constexpr Section freezingConditions{freezingKeys};

constexpr Key inletKeys[] = {
    real("contractionAreaRatio", {'A', 1}),
    quantity("massFlux", massFluxUnits, {'A', 2})};
constexpr Section inletConditions{inletKeys};

constexpr Key sectionKeys[] = {
    real("areaRatio", {'A', 1}), boolean("supersonic", {'A', 1}),
    real("pressureRatio", {'A', 2}),
    quantity("pressure", pressureUnits, {'A', 3})};
constexpr Section sectionConditions{sectionKeys};

constexpr Key efficiencyKeys[] = {
    boolean("apply"), real("cycle"), real("reaction"), real("nozzle"), real("nozzleLength"),
    real("nozzleHalfAngle")};
constexpr Section efficiencies{efficiencyKeys};

constexpr Key ambientKeys[] = {
    quantity("pressure", pressureUnits, {'A', 1}),
    quantity("minPressure", pressureUnits, {'A', 2}),
    quantity("maxPressure", pressureUnits, {'A', 2}),
    boolean("calculateDeliveredPerformance")};
constexpr Section ambientConditions{ambientKeys};

constexpr Key throttlingKeys[] = {
    real("flowrate", {'A', 1}), real("minFlowrate", {'A', 2}), real("maxFlowrate", {'A', 2}),
    boolean("calculateDeliveredPerformance")};
constexpr Section throttlingConditions{throttlingKeys};

constexpr Key stationKeys[] = {group("stationConditions", sectionConditions)};
constexpr Section station{stationKeys};

constexpr Key nozzleKeys[] = {
    boolean("calculateNozzleFlow"),
    group("freezingConditions", freezingConditions),
    group("nozzleInletConditions", inletConditions),
    group("nozzleExitConditions", sectionConditions),
    group("efficiencies", efficiencies),
    group("ambientConditions", ambientConditions),
    group("throttlingConditions", throttlingConditions),
    list("nozzleStations", station)};
constexpr Section nozzleFlow{nozzleKeys};

// Propellant.
constexpr Key componentKeys[] = {
    text("name"), real("massFraction"), quantity("T", temperatureUnits),
    quantity("p", pressureUnits)};
constexpr Section component{componentKeys};

constexpr Key ratioKeys[] = {real("value"), word("unit", ratioUnits)};
constexpr Section ratio{ratioKeys};

constexpr Key componentsKeys[] = {
    group("ratio", ratio), list("oxidizer", component), list("fuel", component)};
constexpr Section components{componentsKeys};

constexpr Key mixtureKeys[] = {list("species", component)};
constexpr Section mixture{mixtureKeys};

constexpr Key propellantKeys[] = {
    group("components", components, {'A', 1}), group("mixture", mixture, {'A', 2})};
constexpr Section propellant{propellantKeys};

// Size and contour.
constexpr Key geometryKeys[] = {
    quantity("length", lengthUnits), boolean("characteristicLength"), real("contractionAngle"),
    real("R1_to_Rt_ratio"), real("Rn_to_Rt_ratio"), real("R2_to_R2max_ratio"),
    boolean("TOC"), boolean("TOC_L"), real("initialAngle"), real("exitAngle"), real("Le_to_Lc15"),
    real("Tw_to_T0"), real("Le"), boolean("TOC_applyEfficiency")};
constexpr Section chamberGeometry{geometryKeys};

constexpr Key sizeKeys[] = {
    quantity("thrust", forceUnits), quantity("ambientConditions", pressureUnits),
    quantity("flowrate", massFlowUnits), quantity("throatDiameter", lengthUnits),
    whole("chambersNo"), group("chamberGeometry", chamberGeometry)};
constexpr Section engineSize{sizeKeys};

// Cooling.
constexpr Key radiationKeys[] = {real("hotSideWallSurfaceEmissivity")};
constexpr Section radiationHeatTransfer{radiationKeys};

constexpr Key heatTransferKeys[] = {
    word("relationsType", relationsTypes), boolean("applyBLC"), whole("numberOfStations"),
    group("radiationHeatTransfer", radiationHeatTransfer), real("wallLayerHeight")};
constexpr Section heatTransfer{heatTransferKeys};

#define KETRA_COOLED_WALL                                                                          \
    text("id"), quantity("location", lengthUnits), quantity("length", lengthUnits),                \
    quantity("wallThickness", lengthUnits), text("wallMaterial", {'W', 1}),                        \
    quantity("wallConductivity", conductivityUnits, {'W', 2}),                                     \
    quantity("thermalInsulationConductivity", conductivityUnits),                                  \
    quantity("thermalInsulationThickness", lengthUnits)
#define KETRA_COOLANT                                                                              \
    list("coolant", component, {'K', 1}), text("coolantFrom", {'K', 2}), real("flowrate"),         \
    boolean("oppositeFlow"), boolean("twoPass")

constexpr Key radiationCoolingKeys[] = {KETRA_COOLED_WALL, real("coldSideWallSurfaceEmissivity")};
constexpr Section radiationCooling{radiationCoolingKeys};

constexpr Key slotKeys[] = {KETRA_COOLED_WALL, KETRA_COOLANT, quantity("height", lengthUnits)};
constexpr Section slotJacket{slotKeys};

constexpr Key channelKeys[] = {
    KETRA_COOLED_WALL, KETRA_COOLANT,
    quantity("height1", lengthUnits), quantity("height_min", lengthUnits),
    quantity("height2", lengthUnits), quantity("gamma", angleUnits),
    quantity("a1", lengthUnits), quantity("amin", lengthUnits), quantity("a2", lengthUnits),
    whole("n", {'N', 1}), quantity("b1", lengthUnits, {'N', 2}),
    quantity("bmin", lengthUnits, {'N', 2}), quantity("b2", lengthUnits, {'N', 2}),
    text("ribsMaterial", {'R', 1}), quantity("ribsConductivity", conductivityUnits, {'R', 2})};
constexpr Section channelJacket{channelKeys};

constexpr Key tubularKeys[] = {
    KETRA_COOLED_WALL, KETRA_COOLANT,
    quantity("d", lengthUnits), quantity("dmin", lengthUnits), quantity("d2", lengthUnits),
    whole("n"), boolean("helix")};
constexpr Section tubularJacket{tubularKeys};

#undef KETRA_COOLED_WALL
#undef KETRA_COOLANT

constexpr Key coolingSectionKeys[] = {
    group("tubularJacketDesign", tubularJacket, {'A', 1}),
    group("channelJacketDesign", channelJacket, {'A', 2}),
    group("slotJacketDesign", slotJacket, {'A', 3}),
    group("radiationCooling", radiationCooling, {'A', 4})};
constexpr Section coolingSection{coolingSectionKeys};

constexpr Key filmSlotKeys[] = {
    quantity("location", lengthUnits), list("coolant", component), real("flowrate")};
constexpr Section filmSlot{filmSlotKeys};

constexpr Key coolingKeys[] = {
    group("heatTransfer", heatTransfer), list("chamberCoolingSections", coolingSection),
    list("filmSlots", filmSlot)};
constexpr Section chamberCooling{coolingKeys};

// Feed system.
#define KETRA_LOSSES                                                                               \
    real("pumpEfficiency"), quantity("valvePressureDrop", pressureUnits),                          \
    real("valveResistanceCoefficient"), quantity("coolingPressureDrop", pressureUnits),            \
    quantity("coolingTemperatureRise", temperatureUnits)
#define KETRA_INJECTOR                                                                             \
    quantity("injectorPressureDrop", pressureUnits), real("injectorFlowCoefficient")
#define KETRA_BRANCH                                                                               \
    text("name"), real("flowrate"), quantity("dischargePressure", pressureUnits),                  \
    real("areaRatio"), KETRA_LOSSES, quantity("fixedPressureDrop", pressureUnits),                 \
    real("fixedPressureRatio"), text("connectTo"), text("dischargeTo")

constexpr Key branchKeys[] = {KETRA_BRANCH};
constexpr Section branch{branchKeys};

constexpr Key generatorBranchKeys[] = {
    KETRA_BRANCH, quantity("pipeDp", pressureUnits), KETRA_INJECTOR};
constexpr Section generatorBranch{generatorBranchKeys};

constexpr Key boosterKeys[] = {
    quantity("inletPressure", pressureUnits), quantity("dischargePressure", pressureUnits),
    real("pumpEfficiency"), boolean("hydraulicTurbine"), real("turbinePressureRatio"),
    real("turbineEfficiency"), quantity("rotationalSpeed", speedUnits)};
constexpr Section boosterPump{boosterKeys};

constexpr Key pressurizedSideKeys[] = {
    quantity("inletPressure", pressureUnits), quantity("inletVelocity", velocityUnits),
    KETRA_LOSSES, KETRA_INJECTOR, list("branches", branch)};
constexpr Section pressurizedSide{pressurizedSideKeys};

constexpr Key pumpedSideKeys[] = {
    quantity("inletPressure", pressureUnits), quantity("inletVelocity", velocityUnits),
    KETRA_LOSSES, KETRA_INJECTOR, group("boosterPump", boosterPump), list("branches", branch)};
constexpr Section pumpedSide{pumpedSideKeys};

#undef KETRA_LOSSES
#undef KETRA_INJECTOR
#undef KETRA_BRANCH

constexpr Key generatorKeys[] = {
    word("ggType", generatorTypes), quantity("pressure", pressureUnits), real("sigma"),
    quantity("maxTemperature", temperatureUnits),
    group("oxidizerFeedSystem", generatorBranch), group("fuelFeedSystem", generatorBranch)};
constexpr Section gasGenerator{generatorKeys};

constexpr Key turbineKeys[] = {
    word("ggType", turbineTypes), real("turbinePressureRatio"), real("turbineEfficiency"),
    quantity("rotationalSpeed", speedUnits)};
constexpr Section turbine{turbineKeys};

constexpr Key pressurizedKeys[] = {
    word("type", pressurizationTypes), group("oxidizerFeedSystem", pressurizedSide),
    group("fuelFeedSystem", pressurizedSide)};
constexpr Section pressurizedSystem{pressurizedKeys};

constexpr Key turbopumpKeys[] = {
    word("cycle", cycleTypes), group("oxidizerFeedSystem", pumpedSide),
    group("fuelFeedSystem", pumpedSide), list("gasGenerators", gasGenerator),
    list("turbines", turbine)};
constexpr Section turbopumpSystem{turbopumpKeys};

constexpr Key feedKeys[] = {
    group("gasPressurizedFeedSystem", pressurizedSystem, {'A', 1}),
    group("turbopumpFeedSystem", turbopumpSystem, {'A', 2}),
    boolean("estimateDryMass")};
constexpr Section feedSystem{feedKeys};

// The document.
constexpr Key documentKeys[] = {
    real("version"), text("name"), text("info"),
    group("generalOptions", generalOptions),
    group("combustionChamberConditions", chamberConditions),
    group("nozzleFlow", nozzleFlow),
    group("propellant", propellant),
    group("engineSize", engineSize),
    group("chamberCooling", chamberCooling),
    group("propelantFeedSystem", feedSystem)}; // one l: the format's own spelling

// clang-format on

std::string findBelow(const Section& section, const std::string& path, const std::string& name)
{
    for (const Key& key : section.keys) {
        std::string here = path.empty() ? key.name : path + "." + key.name;
        if (name == key.name) return here;
        if (!key.section) continue;
        std::string below = findBelow(*key.section, here, name);
        if (!below.empty()) return below;
    }
    return {};
}

} // namespace

constexpr const Section documentFormat{documentKeys};

const Key* Section::find(const char* name) const
{
    const auto key = std::find_if(keys.begin(), keys.end(),
                                  [name](const Key& k) { return std::strcmp(k.name, name) == 0; });
    return key == keys.end() ? nullptr : &*key;
}

std::vector<std::string> Section::names() const
{
    std::vector<std::string> result;
    for (const Key& key : keys) result.emplace_back(key.name);
    return result;
}

std::string whereKeyBelongs(const std::string& name) { return findBelow(documentFormat, "", name); }

} // namespace host
