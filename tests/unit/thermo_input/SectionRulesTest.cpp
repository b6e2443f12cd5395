// The rules of the flow sections and the propellant as tables: what a setter drops, what a document
// must state to be valid, and in which order a section writes its members.

#include <ketra/thermo/input/ConfigFile.h>

#include <unit/thermo_input/MemberRows.h>

#include <gtest/gtest.h>

using ketra_test::expectExclusions;
using ketra_test::expectRow;
using ketra_test::keysWritten;
using ketra_test::LogCapture;
using ketra_test::QuantityRow;
using ketra_test::readMembers;
using ketra_test::ValueRow;
using namespace thermo::input;

namespace {

using Keys = std::vector<std::string>;
using Ambient = AmbientConditions;
using Exit = NozzleSectionConditions;
using Factors = EfficiencyFactors;
using Freezing = FreezingConditions;
using Inlet = NozzleInletConditions;
using Throttling = ThrottlingConditions;
using Chamber = CombustionChamberConditions;

// clang-format off

const QuantityRow<Chamber, Pressure> chamberPressure{
    "pressure", 0.0, Pressure::MPA, &Chamber::getPressure, &Chamber::getPressure,
    &Chamber::getPressureUnit, &Chamber::setPressure};
const QuantityRow<Freezing, Pressure> freezingPressure{
    "pressure", 0.0, Pressure::PA, &Freezing::getPressure, &Freezing::getPressure,
    &Freezing::getPressureUnit, &Freezing::setPressure, &Freezing::isPressureSet,
    &Freezing::deletePressure, "pressure from freezing conditions", ""}; // the unit is silent
const QuantityRow<Inlet, MassFlux> massFlux{
    "massFlux", 0.0, MassFlux::KG_PER_M2_S, &Inlet::getMassFlux, &Inlet::getMassFlux,
    &Inlet::getMassFluxUnit, &Inlet::setMassFlux, &Inlet::isMassFluxSet, &Inlet::deleteMassFlux,
    "mass flux", "mass flux units"};
const QuantityRow<Exit, Pressure> exitPressure{
    "pressure", 0.0, Pressure::PA, &Exit::getPressure, &Exit::getPressure, &Exit::getPressureUnit,
    &Exit::setPressure, &Exit::isPressure, &Exit::deletePressure,
    "pressure for nozzle section conditions", "pressure unit for nozzle section conditions"};
const QuantityRow<Ambient, Pressure> ambientPressure{
    "pressure", 0.0, Pressure::PA, &Ambient::getFixedPressure, &Ambient::getFixedPressure,
    &Ambient::getFixedPressureUnit, &Ambient::setFixedPressure, &Ambient::isFixedPressureSet,
    &Ambient::deleteFixedPressure, "fixed pressure", "fixed pressure unit"};

const ValueRow<GeneralOptions, bool> generalFlags[] = {
    {"multiphase", true, false, &GeneralOptions::isMultiphase, &GeneralOptions::setMultiphase},
    {"ions", true, false, &GeneralOptions::isIons, &GeneralOptions::setIons},
    {"flowSeparation", true, false, &GeneralOptions::isFlowSeparation,
     &GeneralOptions::setFlowSeparation},
};
const ValueRow<Freezing, bool> calculate{
    "calculate", false, true, &Freezing::isCalculate, &Freezing::setCalculate};
const ValueRow<Freezing, double> freezingNumbers[] = {
    {"expansionRatio", 0.0, 2.5, &Freezing::getExpansionRatio, &Freezing::setExpansionRatio,
     &Freezing::isExpansionRatioSet, &Freezing::deleteExpansionRatio,
     "area ratio from freezing conditions"},
    {"pressureRatio", 0.0, 2.5, &Freezing::getPressureRatio, &Freezing::setPressureRatio,
     &Freezing::isPressureRatioSet, &Freezing::deletePressureRatio,
     "pressure ratio from freezing conditions"},
};
const ValueRow<Inlet, double> contraction{
    "contractionAreaRatio", 0.0, 2.5, &Inlet::getContractionAreaRatio,
    &Inlet::setContractionAreaRatio, &Inlet::isContractionAreaRatioSet,
    &Inlet::deleteContractionAreaRatio, "contraction area ratio"};
const ValueRow<Exit, double> exitPressureRatio{
    "pressureRatio", 0.0, 2.5, &Exit::getPressureRatio, &Exit::setPressureRatio,
    &Exit::isPressureRatio, &Exit::deletePressureRatio,
    "pressure ratio for nozzle section conditions"};
const ValueRow<Ambient, bool> ambientDelivered{
    "calculateDeliveredPerformance", true, false, &Ambient::isDeliveredPerformance,
    &Ambient::setDeliveredPerformance};
const ValueRow<Throttling, double> flowrate{
    "flowrate", 0.0, 2.5, &Throttling::getFixedFlowrate, &Throttling::setFixedFlowrate,
    &Throttling::isFixedFlowrateSet, &Throttling::deleteFixedFlowrate,
    "flow rate for throttling conditions"};
const ValueRow<Factors, bool> applyFactors{
    "apply", true, false, &Factors::isApplyEfficiencyFactors, &Factors::setApplyEfficiencyFactors};
const ValueRow<Factors, double> factors[] = {
    {"cycle", 0.0, 0.5, &Factors::getCycleEfficiency, &Factors::setCycleEfficiency,
     &Factors::isCycleEfficiencySet, &Factors::deleteCycleEfficiency,
     "cycle efficiency coefficient"},
    {"reaction", 0.0, 0.5, &Factors::getReactionEfficiency, &Factors::setReactionEfficiency,
     &Factors::isReactionEfficiencySet, &Factors::deleteReactionEfficiency,
     "reaction efficiency coefficient"},
    {"nozzle", 0.0, 0.5, &Factors::getNozzleEfficiency, &Factors::setNozzleEfficiency,
     &Factors::isNozzleEfficiencySet, &Factors::deleteNozzleEfficiency,
     "nozzle efficiency coefficient"},
    {"nozzleLength", 0.0, 0.5, &Factors::getNozzleLength, &Factors::setNozzleLength,
     &Factors::isNozzleLengthSet, &Factors::deleteNozzleLength, "bell nozzle length"},
    {"nozzleHalfAngle", 0.0, 0.5, &Factors::getConeHalfAngle, &Factors::setConeHalfAngle,
     &Factors::isConeHalfAngleSet, &Factors::deleteConeHalfAngle, "conical nozzle half angle"},
};

// clang-format on

TEST(FlowSections, MembersAreThoseOfTheTables)
{
    expectRow(chamberPressure);
    expectRow(freezingPressure);
    expectRow(massFlux);
    expectRow(exitPressure);
    expectRow(ambientPressure);
    for (const auto& row : generalFlags) expectRow(row);
    expectRow(calculate);
    for (const auto& row : freezingNumbers) expectRow(row);
    expectRow(contraction);
    expectRow(exitPressureRatio);
    expectRow(ambientDelivered);
    expectRow(flowrate);
    expectRow(applyFactors);
    for (const auto& row : factors) expectRow(row);
}

/// The getter of one end of a range fails while the end is absent, and tells so.
template <class S> bool has(double (S::*get)() const, const S& s)
{
    const LogCapture log;
    try {
        (s.*get)();
        return true;
    } catch (const Exception&) {
        return false;
    }
}
bool has(double (Ambient::*get)(bool) const, const Ambient& s)
{
    const LogCapture log;
    try {
        (s.*get)(true);
        return true;
    } catch (const Exception&) {
        return false;
    }
}

TEST(FlowSections, SettersDropTheAlternatives)
{
    expectExclusions<Freezing>({
        {"expansionRatio",
         [](Freezing& s) { s.setExpansionRatio(2); },
         [](const Freezing& s) { return s.isExpansionRatioSet(); },
         {"pressure", "pressureRatio"}},
        {"pressure",
         [](Freezing& s) { s.setPressure(2, Pressure::BAR, true); },
         [](const Freezing& s) { return s.isPressureSet(); },
         {"expansionRatio", "pressureRatio"}},
        {"pressureRatio",
         [](Freezing& s) { s.setPressureRatio(2); },
         [](const Freezing& s) { return s.isPressureRatioSet(); },
         {"expansionRatio", "pressure"}},
        {"calculate",
         [](Freezing& s) { s.setCalculate(true); },
         [](const Freezing& s) { return s.isCalculate(); },
         {}},
    });
    expectExclusions<Inlet>({
        {"contractionAreaRatio",
         [](Inlet& s) { s.setContractionAreaRatio(2); },
         [](const Inlet& s) { return s.isContractionAreaRatioSet(); },
         {"massFlux"}},
        {"massFlux",
         [](Inlet& s) { s.setMassFlux(2, MassFlux::KG_PER_M2_S, true); },
         [](const Inlet& s) { return s.isMassFluxSet(); },
         {"contractionAreaRatio"}},
    });
    expectExclusions<Exit>({
        {"areaRatio",
         [](Exit& s) { s.setAreaRatio(2, false); },
         [](const Exit& s) { return s.isAreaRatio(); },
         {"pressureRatio", "pressure"}},
        {"pressureRatio",
         [](Exit& s) { s.setPressureRatio(2); },
         [](const Exit& s) { return s.isPressureRatio(); },
         {"areaRatio", "pressure"}},
        {"pressure",
         [](Exit& s) { s.setPressure(2, Pressure::BAR, true); },
         [](const Exit& s) { return s.isPressure(); },
         {"areaRatio", "pressureRatio"}},
    });
    expectExclusions<Ambient>({
        {"pressure",
         [](Ambient& s) { s.setFixedPressure(2, Pressure::BAR, true); },
         [](const Ambient& s) { return s.isFixedPressureSet(); },
         {"minPressure", "maxPressure"}},
        {"minPressure",
         [](Ambient& s) { s.setRangePressureMin(2, Pressure::BAR, true); },
         [](const Ambient& s) { return has(&Ambient::getRangePressureMin, s); },
         {"pressure"}},
        {"maxPressure",
         [](Ambient& s) { s.setRangePressureMax(2, Pressure::BAR, true); },
         [](const Ambient& s) { return has(&Ambient::getRangePressureMax, s); },
         {"pressure"}},
    });
    expectExclusions<Throttling>({
        {"flowrate",
         [](Throttling& s) { s.setFixedFlowrate(2); },
         [](const Throttling& s) { return s.isFixedFlowrateSet(); },
         {"minFlowrate", "maxFlowrate"}},
        {"minFlowrate",
         [](Throttling& s) { s.setRangeFlowrateMin(2); },
         [](const Throttling& s) { return has(&Throttling::getRangeFlowrateMin, s); },
         {"flowrate"}},
        {"maxFlowrate",
         [](Throttling& s) { s.setRangeFlowrateMax(2); },
         [](const Throttling& s) { return has(&Throttling::getRangeFlowrateMax, s); },
         {"flowrate"}},
    });
}

TEST(FlowSections, EfficienciesExcludeNothing)
{
    std::vector<ketra_test::Alternative<Factors>> members;
    for (const auto& row : factors)
        members.push_back({row.key,
                           [row](Factors& s) { (s.*row.set)(0.5); },
                           [row](const Factors& s) { return (s.*row.isSet)(); },
                           {}});
    expectExclusions(members);
}

TEST(FlowSections, SectionsOfTheNozzleFlowExcludeNothing)
{
    using Flow = NozzleFlowOptions;
    expectExclusions<Flow>({
        {"freezingConditions",
         [](Flow& s) { s.setFreezingConditions(); },
         [](const Flow& s) { return s.isFreezingConditionsSet(); },
         {}},
        {"nozzleInletConditions",
         [](Flow& s) { s.setNozzleInletConditions(); },
         [](const Flow& s) { return s.isNozzleInletConditionsSet(); },
         {}},
        {"nozzleExitConditions",
         [](Flow& s) { s.setNozzleExitConditions(); },
         [](const Flow& s) { return s.isNozzleExitConditionsSet(); },
         {}},
        {"efficiencies",
         [](Flow& s) { s.setEfficiencyFactors(); },
         [](const Flow& s) { return s.isEfficiencyFactorsSet(); },
         {}},
        {"ambientConditions",
         [](Flow& s) { s.setAmbientConditions(); },
         [](const Flow& s) { return s.isAmbientConditionsSet(); },
         {}},
        {"throttlingConditions",
         [](Flow& s) { s.setThrottlingConditions(); },
         [](const Flow& s) { return s.isThrottlingConditionsSet(); },
         {}},
        {"nozzleStations",
         [](Flow& s) { s.setSection(); },
         [](const Flow& s) { return s.getSectionListSize() == 1; },
         {}},
    });
}

/// Members that a document states for a section, and the fault that `validate` finds in it; null
/// for none.
struct Rule {
    const char* members;
    const char* fault;
};

template <class S> void expectRules(const std::vector<Rule>& rules)
{
    for (const Rule& rule : rules) {
        SCOPED_TRACE(rule.members);
        S section;
        readMembers(section, rule.members);
        const LogCapture log;
        if (rule.fault == nullptr) {
            EXPECT_NO_THROW(section.validate());
            EXPECT_TRUE(log.lines().empty());
            continue;
        }
        KETRA_EXPECT_THROW_MESSAGE(section.validate(), Exception, 7, rule.fault);
        const std::string text = std::string(rule.fault) + "\n";
        EXPECT_EQ(log.errors(), Keys{text});
        EXPECT_EQ(log.tagOf(text), "THERMO");
    }
}

constexpr const char* noFreezing =
    "Neither expansion ratio nor pressure is defined within FreezingConditions";
constexpr const char* noInlet =
    "Neither contraction area ratio nor mass flux is defined within NozzleInletConditions";
constexpr const char* noSection = "Neither area ratio, pressure ratio nor pressure is defined "
                                  "within NozzleSectionConditions";
constexpr const char* noAmbient = "Neither fixed ambient pressure nor ambient pressure range is "
                                  "defined within AmbientConditions";
constexpr const char* noThrottling =
    "Neither fixed flow rate nor flow rate range is defined within ThrottlingConditions";
constexpr const char* noFlow = "Neither freezing conditions, nozzle inlet conditions nor nozzle "
                               "exit conditions is defined within NozzleFlowOptions";
constexpr const char* noComponents = "Either oxidizer or fuel is not defined within Propellant";
constexpr const char* noMixture = "Mixture is not defined within Propellant";

TEST(ValidationRules, FlowSections)
{
    expectRules<GeneralOptions>({{"", nullptr}});
    expectRules<Chamber>({{"", nullptr}, {"pressure = { value = -1.0; };", nullptr}});
    expectRules<Factors>({{"", nullptr}, {"cycle = -1.0;", nullptr}});
    expectRules<Freezing>({
        {"", nullptr},
        {"calculate = true;", noFreezing},
        {"calculate = true; expansionRatio = 2.0;", nullptr},
        {"calculate = true; pressure = {};", nullptr},
        {"calculate = true; pressureRatio = 2.0;", noFreezing},
        {"calculate = false; pressureRatio = 2.0;", nullptr},
    });
    expectRules<Inlet>({
        {"", noInlet},
        {"contractionAreaRatio = 2.0;", nullptr},
        {"massFlux = {};", nullptr},
    });
    expectRules<Exit>({
        {"", noSection},
        {"supersonic = true;", noSection},
        {"areaRatio = 2.0;", nullptr},
        {"pressureRatio = 2.0;", nullptr},
        {"pressure = {};", nullptr},
    });
    expectRules<Ambient>({
        {"", noAmbient},
        {"minPressure = {};", noAmbient},
        {"maxPressure = {};", noAmbient},
        {"maxPressure = {}; minPressure = {};", nullptr},
        {"pressure = {};", nullptr},
        {"pressure = {}; minPressure = {};", nullptr},
    });
    expectRules<Throttling>({
        {"", noThrottling},
        {"minFlowrate = 0.5;", noThrottling},
        {"maxFlowrate = 1.0;", noThrottling},
        {"maxFlowrate = 1.0; minFlowrate = 0.5;", nullptr},
        {"flowrate = 1.0;", nullptr},
    });
}

TEST(ValidationRules, NozzleFlow)
{
    expectRules<NozzleFlowOptions>({
        {"", noFlow},
        {"calculateNozzleFlow = false;", nullptr},
        {"ambientConditions = { pressure = {}; }; efficiencies = {}; throttlingConditions = { "
         "flowrate = 1.0; }; nozzleStations = ( { stationConditions = { areaRatio = 2.0; }; } );",
         noFlow},
        {"freezingConditions = {};", nullptr},
        {"freezingConditions = { calculate = true; };", noFreezing},
        {"nozzleInletConditions = { massFlux = {}; };", nullptr},
        {"nozzleInletConditions = {};", noInlet},
        {"calculateNozzleFlow = false; nozzleInletConditions = {};", noInlet},
        {"nozzleExitConditions = { areaRatio = 2.0; };", nullptr},
        {"nozzleExitConditions = {};", noSection},
        {"calculateNozzleFlow = false; ambientConditions = {};", noAmbient},
        {"calculateNozzleFlow = false; throttlingConditions = {};", noThrottling},
        {"calculateNozzleFlow = false; nozzleStations = ( { stationConditions = {}; } );",
         noSection},
        {"calculateNozzleFlow = false; efficiencies = {};", nullptr},
        // The first fault in the order of the sections is the one that is told.
        {"freezingConditions = { calculate = true; }; nozzleInletConditions = {};", noFreezing},
        {"nozzleExitConditions = {}; nozzleInletConditions = {};", noInlet},
        {"ambientConditions = {}; nozzleExitConditions = {};", noSection},
        {"calculateNozzleFlow = false; throttlingConditions = {}; ambientConditions = {};",
         noAmbient},
        {"calculateNozzleFlow = false; nozzleStations = ( { stationConditions = {}; } ); "
         "throttlingConditions = {};",
         noThrottling},
    });
}

TEST(ValidationRules, Propellant)
{
    expectRules<Propellant>({
        {"components = {};", noComponents},
        {"components = { oxidizer = ( {} ); };", noComponents},
        {"components = { fuel = ( {} ); };", noComponents},
        {"components = { fuel = ( {} ); oxidizer = {}; };", noComponents}, // a group is no list
        {"components = { fuel = ( {} ); oxidizer = ( {} ); };", nullptr},
        {"components = { fuel = ( {} ); ratio = { unit = \"alpha\"; }; };", noComponents},
        {"components = { fuel = ( {} ); ratio = { unit = \"km\"; }; };", noComponents},
        {"components = {}; mixture = { species = ( {} ); };", noComponents},
        {"mixture = {};", noMixture},
        {"mixture = { species = (); };", noMixture},
        {"mixture = { species = {}; };", noMixture},
        {"mixture = { species = ( {} ); };", nullptr},
    });
}

TEST(ValidationRules, SizeAndCoolingHaveNone)
{
    expectRules<EngineSize>({{"", nullptr},
                             {"thrust = {}; flowrate = {}; chambersNo = -1;", nullptr},
                             {"chamberGeometry = { TOC = true; TOC_L = true; };", nullptr}});
    expectRules<ChamberGeometry>({{"", nullptr}, {"TOC = true; exitAngle = 1.0;", nullptr}});
    expectRules<ChamberCooling>(
        {{"heatTransfer = {};", nullptr},
         {"heatTransfer = {}; filmSlots = ( {} ); chamberCoolingSections = ( { slotJacketDesign = "
          "{}; }, { radiationCooling = {}; }, { channelJacketDesign = {}; }, { "
          "tubularJacketDesign = {}; } );",
          nullptr}});
}

TEST(WriteOrder, FlowSectionsAndPropellant)
{
    struct Case {
        Keys written;
        Keys expected;
    };
    const Case cases[] = {
        {keysWritten<GeneralOptions>(""), {"multiphase", "ions", "flowSeparation"}},
        {keysWritten<Chamber>(""), {"pressure"}},
        {keysWritten<Freezing>("pressureRatio = 1.0; pressure = {}; expansionRatio = 1.0;"),
         {"calculate", "expansionRatio"}},
        {keysWritten<Freezing>("pressureRatio = 1.0; pressure = {};"), {"calculate", "pressure"}},
        {keysWritten<Freezing>("pressureRatio = 1.0;"), {"calculate", "pressureRatio"}},
        {keysWritten<Freezing>(""), {"calculate"}},
        {keysWritten<Inlet>("massFlux = {}; contractionAreaRatio = 2.0;"),
         {"contractionAreaRatio"}},
        {keysWritten<Inlet>("massFlux = {};"), {"massFlux"}},
        {keysWritten<Inlet>(""), {}},
        {keysWritten<Exit>("pressure = {}; pressureRatio = 1.0; areaRatio = 1.0;"),
         {"areaRatio", "supersonic"}},
        {keysWritten<Exit>("pressure = {}; pressureRatio = 1.0; supersonic = false;"),
         {"pressureRatio"}},
        {keysWritten<Exit>("pressure = {};"), {"pressure"}},
        {keysWritten<Ambient>("maxPressure = {}; minPressure = {}; pressure = {};"),
         {"pressure", "calculateDeliveredPerformance"}},
        {keysWritten<Ambient>("maxPressure = {}; minPressure = {};"),
         {"minPressure", "maxPressure", "calculateDeliveredPerformance"}},
        // The flag is written as in a sparse document.
        {keysWritten<Throttling>("maxFlowrate = 1.0; minFlowrate = 1.0; flowrate = 1.0;"),
         {"flowrate"}},
        {keysWritten<Throttling>("maxFlowrate = 1.0; minFlowrate = 1.0; "
                                 "calculateDeliveredPerformance = false;"),
         {"minFlowrate", "maxFlowrate", "calculateDeliveredPerformance"}},
        {keysWritten<Factors>("nozzleHalfAngle = 1.0; nozzleLength = 1.0; nozzle = 1.0; reaction = "
                              "1.0; cycle = 1.0;"),
         {"apply", "cycle", "reaction", "nozzle", "nozzleLength", "nozzleHalfAngle"}},
        {keysWritten<Propellant>("mixture = {}; components = {};"), {"components"}},
        {keysWritten<Propellant>("mixture = {};"), {"mixture"}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(cases[i].written, cases[i].expected);
    }
}

} // namespace
