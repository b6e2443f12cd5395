#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/Facts.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

using ketra_test::Facts;
using ketra_test::factsOf;
using ketra_test::LogCapture;
using ketra_test::readText;
using ketra_test::Settings;
using namespace thermo::input;

namespace {

template <class S> using Fill = std::function<void(S&)>;

/// Ways to fill a section, so that each member is set in at least one of them.
template <class S> std::vector<Fill<S>> fillings();

template <> std::vector<Fill<GeneralOptions>> fillings()
{
    return {[](auto& s) { s.setMultiphase(false); }, [](auto& s) { s.setIons(false); },
            [](auto& s) { s.setFlowSeparation(false); }};
}
template <> std::vector<Fill<CombustionChamberConditions>> fillings()
{
    return {[](auto& s) { s.setPressure(7.1, Pressure::BAR, false); },
            [](auto& s) { s.setPressure(9.0, Pressure::ATM, true); }};
}
template <> std::vector<Fill<FreezingConditions>> fillings()
{
    return {[](auto& s) { s.setCalculate(true), s.setExpansionRatio(2.5); },
            [](auto& s) { s.setPressure(2.5, Pressure::PSI, false); },
            [](auto& s) { s.setPressureRatio(0.3); }};
}
template <> std::vector<Fill<NozzleInletConditions>> fillings()
{
    return {[](auto& s) { s.setContractionAreaRatio(3.1); },
            [](auto& s) { s.setMassFlux(200.0, MassFlux::LBM_PER_FT2_S, false); }};
}
template <> std::vector<Fill<NozzleSectionConditions>> fillings()
{
    return {[](auto& s) { s.setAreaRatio(1.7, false); },
            [](auto& s) { s.setAreaRatio(40.0, true); }, [](auto& s) { s.setPressureRatio(100.0); },
            [](auto& s) { s.setPressure(0.4, Pressure::ATM, false); }};
}
template <> std::vector<Fill<AmbientConditions>> fillings()
{
    return {[](auto& s) {
                s.setFixedPressure(1.0, Pressure::ATM, false);
                s.setDeliveredPerformance(false);
            },
            [](auto& s) {
                s.setRangePressureMin(0.1, Pressure::BAR, false);
                s.setRangePressureMax(1.0, Pressure::ATM, true);
            },
            [](auto& s) { s.setRangePressureMin(0.1, Pressure::BAR, false); },
            [](auto& s) { s.setRangePressureMax(0.2, Pressure::BAR, true); }};
}
template <> std::vector<Fill<ThrottlingConditions>> fillings()
{
    return {[](auto& s) { s.setFixedFlowrate(0.7), s.setDeliveredPerformance(false); },
            [](auto& s) { s.setRangeFlowrateMin(0.5), s.setRangeFlowrateMax(1.1); },
            [](auto& s) { s.setRangeFlowrateMin(0.5); },
            [](auto& s) { s.setRangeFlowrateMax(1.1); }};
}
template <> std::vector<Fill<EfficiencyFactors>> fillings()
{
    return {[](auto& s) { s.setApplyEfficiencyFactors(false), s.setCycleEfficiency(0.9); },
            [](auto& s) { s.setReactionEfficiency(0.98), s.setNozzleEfficiency(0.97); },
            [](auto& s) { s.setNozzleLength(0.8), s.setConeHalfAngle(15.0); }};
}
template <> std::vector<Fill<NozzleFlowOptions>> fillings()
{
    return {[](auto& s) {
                s.setCalculateNozzleFlow(false);
                s.setFreezingConditions().setExpansionRatio(3.0);
                s.setNozzleInletConditions().setMassFlux(5.0, MassFlux::KG_PER_M2_S, false);
                s.setNozzleExitConditions().setPressure(1.0, Pressure::BAR, false);
            },
            [](auto& s) {
                s.setEfficiencyFactors().setConeHalfAngle(14.0);
                s.setAmbientConditions().setFixedPressure(1.0, Pressure::ATM, false);
                s.setThrottlingConditions().setRangeFlowrateMax(1.2);
                s.setSection().setAreaRatio(2.0, false);
                s.setSection().setPressure(3.0, Pressure::PSI, false);
            }};
}
template <> std::vector<Fill<Propellant>> fillings()
{
    return {[](auto& s) {
                s.setRatio(4.83, Ratio::KM);
                s.addOxidizer(new Component("O2(L)", 0.9, 90.17));
                s.addOxidizer(new Component("F2(L)", 0.1, -300.0, Temperature::F, 2.0,
                                            Pressure::BAR)); // left out: below the scale's zero
                s.addFuel(new Component("H2(L)", 1.0, 20.27, Temperature::K, 1.0, Pressure::ATM));
                s.getOxidizer(1)->setT(70.0, Temperature::K);
            },
            [](auto& s) {
                s.setRatio(0.0, Ratio::MIXTURE);
                s.addSpecies(new Component("N2H4(L)", 0.6));
                s.addSpecies(
                    new Component("H2O(L)", 0.4, 20.0, Temperature::C, 1.5, Pressure::MPA));
            },
            [](auto& s) { s.setRatio(0.8, Ratio::ALPHA); },
            [](auto& s) { s.setRatio(0.0, Ratio::OPTIMAL); }};
}

// The second oxidizer above comes out of the document without its negative temperature.
void forget(Facts& facts)
{
    const auto value = facts.find("oxidizer[1]/T/value");
    if (value == facts.end() || value->second[0] != '-') return;
    value->second = ketra_test::exact(0.0);
    facts["oxidizer[1]/T/unit"] = "0";
}

template <class S> class Sections : public testing::Test
{
};
using SectionClasses =
    testing::Types<GeneralOptions, CombustionChamberConditions, FreezingConditions,
                   NozzleInletConditions, NozzleSectionConditions, AmbientConditions,
                   ThrottlingConditions, EfficiencyFactors, NozzleFlowOptions, Propellant>;
TYPED_TEST_SUITE(Sections, SectionClasses);

TYPED_TEST(Sections, WholeDocumentIsReadBackAsItWas)
{
    const auto fills = fillings<TypeParam>();
    for (std::size_t i = 0; i < fills.size(); ++i) {
        SCOPED_TRACE(i);
        TypeParam section, again;
        const Facts empty = factsOf(section);
        fills[i](section);
        Settings settings;
        section.write(settings.root(), true);
        again.read(settings.root());
        Facts expected = factsOf(section);
        EXPECT_NE(expected, empty);
        forget(expected);
        EXPECT_EQ(factsOf(again), expected);
    }
}

TYPED_TEST(Sections, FreshSectionIsReadBackAsItWas)
{
    TypeParam section, again;
    Settings settings;
    section.write(settings.root(), true);
    again.read(settings.root());
    EXPECT_EQ(factsOf(again), factsOf(section));
}

TYPED_TEST(Sections, DefaultsAreNotWrittenWithoutDemand)
{
    TypeParam section;
    Settings settings;
    section.write(settings.root(), false);
    EXPECT_TRUE(settings.has(section.getName().c_str()));
    EXPECT_EQ(ketra_test::countScalars(settings.root()), 0);
}

TYPED_TEST(Sections, CopyIsDeep)
{
    for (const auto& fill : fillings<TypeParam>()) {
        auto section = std::make_unique<TypeParam>();
        fill(*section);
        const Facts facts = factsOf(*section);
        TypeParam copy(*section), assigned;
        for (const auto& other : fillings<TypeParam>()) other(assigned);
        assigned = *section;
        bool changed = false;
        for (const auto& other : fillings<TypeParam>()) {
            other(*section);
            changed = changed || factsOf(*section) != facts;
            EXPECT_EQ(factsOf(copy), facts);
            EXPECT_EQ(factsOf(assigned), facts);
        }
        EXPECT_TRUE(changed);
        section.reset();
        EXPECT_EQ(factsOf(copy), facts);
        EXPECT_EQ(factsOf(assigned), facts);
        EXPECT_EQ(copy.getName(), assigned.getName());
    }
}

TYPED_TEST(Sections, SelfAssignmentChangesNothing)
{
    TypeParam section;
    for (const auto& fill : fillings<TypeParam>()) fill(section);
    const Facts facts = factsOf(section);
    section = *&section;
    EXPECT_EQ(factsOf(section), facts);
}

TYPED_TEST(Sections, MissingGroupRaisesTheNotFoundExceptionOfTheLibrary)
{
    Settings settings("other = {};");
    TypeParam section;
    EXPECT_THROW(section.read(settings.root()), libconfig::SettingNotFoundException);
}

TYPED_TEST(Sections, ScalarInPlaceOfTheGroupHoldsNothing)
{
    const LogCapture log;
    TypeParam section;
    Settings settings(section.getName() + " = 5;");
    const Facts facts = factsOf(section);
    if constexpr (std::is_same_v<TypeParam, Propellant>)
        KETRA_EXPECT_THROW_CODE(section.read(settings.root()), Exception, 3);
    else
        EXPECT_NO_THROW(section.read(settings.root()));
    EXPECT_EQ(factsOf(section), facts);
}

TEST(NozzleFlowOptions, WritesEfficienciesAsInASparseDocument)
{
    NozzleFlowOptions options;
    options.setEfficiencyFactors().setCycleEfficiency(0.0);
    options.getEfficiencyFactors().setNozzleEfficiency(0.5);
    Settings settings;
    options.write(settings.root(), true);
    EXPECT_TRUE(settings.has("nozzleFlow.efficiencies.nozzle"));
    EXPECT_FALSE(settings.has("nozzleFlow.efficiencies.cycle"));
    EXPECT_FALSE(settings.has("nozzleFlow.efficiencies.apply"));
    EXPECT_TRUE(settings.has("nozzleFlow.calculateNozzleFlow"));
}

TEST(NozzleFlowOptions, ListOfStationsIsWrittenEvenIfEmpty)
{
    NozzleFlowOptions options;
    Settings settings;
    options.write(settings.root(), false);
    EXPECT_TRUE(settings["nozzleFlow.nozzleStations"].isList());
    EXPECT_EQ(settings["nozzleFlow.nozzleStations"].getLength(), 0);
}

TEST(NozzleFlowOptions, WritesItsSectionsInTheOrderOfTheFormat)
{
    NozzleFlowOptions options;
    options.setThrottlingConditions();
    options.setAmbientConditions();
    options.setEfficiencyFactors();
    options.setNozzleExitConditions();
    options.setNozzleInletConditions();
    options.setFreezingConditions();
    options.setSection().setAreaRatio(2.0, false);
    Settings settings;
    options.write(settings.root(), true);
    const char* keys[] = {"calculateNozzleFlow",  "freezingConditions", "nozzleInletConditions",
                          "nozzleExitConditions", "efficiencies",       "ambientConditions",
                          "throttlingConditions", "nozzleStations"};
    ASSERT_EQ(settings["nozzleFlow"].getLength(), 8);
    for (int i = 0; i < 8; ++i) EXPECT_STREQ(settings["nozzleFlow"][i].getName(), keys[i]);
    EXPECT_TRUE(settings.has("nozzleFlow.nozzleStations.[0].stationConditions.areaRatio"));
}

TEST(NozzleFlowOptions, StationsThatAreNoListAreIgnored)
{
    for (const char* text : {"nozzleStations = { stationConditions = { areaRatio = 2.0; }; };",
                             "nozzleStations = 5;", "nozzleStations = [ 5 ];"}) {
        SCOPED_TRACE(text);
        NozzleFlowOptions options;
        readText(options, text);
        EXPECT_EQ(options.getSectionListSize(), 0u);
    }
}

TEST(NozzleFlowOptions, StationMustHoldItsConditions)
{
    for (const char* text : {"nozzleStations = ( { } );", "nozzleStations = ( 5 );",
                             "nozzleStations = ( { stationConditions = {}; }, { other = 1; } );"}) {
        SCOPED_TRACE(text);
        NozzleFlowOptions options;
        EXPECT_THROW(readText(options, text), libconfig::SettingNotFoundException);
    }
}

TEST(NozzleFlowOptions, StationsAreReadInOrderAndAppended)
{
    NozzleFlowOptions options;
    options.setSection().setPressureRatio(9.0);
    readText(options, "nozzleStations = ( { stationConditions = { areaRatio = 2.0; }; }, "
                      "{ stationConditions = { pressureRatio = 3.0; }; } );");
    ASSERT_EQ(options.getSectionListSize(), 3u);
    EXPECT_EQ(options.getSection(0).getPressureRatio(), 9.0);
    EXPECT_EQ(options.getSection(1).getAreaRatio(), 2.0);
    EXPECT_EQ(options.getSection(2).getPressureRatio(), 3.0);
    EXPECT_EQ(options.getSection(2).getName(), "stationConditions");
    EXPECT_THROW(options.getSection(3), std::out_of_range);
    options.clearSectionList();
    EXPECT_EQ(options.getSectionListSize(), 0u);
}

TEST(NozzleFlowOptions, SetFindsASectionThatIsThere)
{
    NozzleFlowOptions options;
    FreezingConditions& made = options.setFreezingConditions();
    made.setExpansionRatio(2.0);
    EXPECT_EQ(&options.setFreezingConditions(), &made);
    EXPECT_EQ(&options.getFreezingConditions(), &made);
    EXPECT_EQ(options.getFreezingConditions().getExpansionRatio(), 2.0);
}

TEST(NozzleFlowOptions, ResetDeletesSectionsAndStations)
{
    NozzleFlowOptions options;
    for (const auto& fill : fillings<NozzleFlowOptions>()) fill(options);
    options.reset();
    NozzleFlowOptions fresh;
    fresh.setCalculateNozzleFlow(false); // no section, and so not touched
    EXPECT_EQ(factsOf(options), factsOf(fresh));
}

TEST(NozzleFlowOptions, EachSectionIsDeletedAlone)
{
    NozzleFlowOptions options;
    for (const auto& fill : fillings<NozzleFlowOptions>()) fill(options);
    options.deleteFreezingConditions();
    options.deleteNozzleInletConditions();
    options.deleteNozzleExitConditions();
    EXPECT_TRUE(options.isEfficiencyFactorsSet() && options.isAmbientConditionsSet() &&
                options.isThrottlingConditionsSet());
    options.deleteEfficiencyFactors();
    options.deleteAmbientConditions();
    options.deleteThrottlingConditions();
    EXPECT_FALSE(options.isFreezingConditionsSet() || options.isNozzleInletConditionsSet() ||
                 options.isNozzleExitConditionsSet() || options.isEfficiencyFactorsSet() ||
                 options.isAmbientConditionsSet() || options.isThrottlingConditionsSet());
    EXPECT_EQ(options.getSectionListSize(), 2u);
}

TEST(NozzleFlowOptions, AmbientPressureIsTheFixedOne)
{
    NozzleFlowOptions options;
    options.setAmbientConditions().setFixedPressure(2.0, Pressure::BAR, false);
    EXPECT_EQ(options.getAmbientPressure(true), 2e5);
    EXPECT_EQ(options.getAmbientPressure(false), 2.0);
    EXPECT_EQ(options.getAmbientPressureUnit(true), Pressure::PA);
    EXPECT_EQ(options.getAmbientPressureUnit(false), Pressure::BAR);
}

} // namespace
