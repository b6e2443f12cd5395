#include <ketra/thermo/input/EngineSize.h>

#include <unit/thermo_input/CoolingFacts.h>
#include <unit/thermo_input/MemberRows.h>

#include <gtest/gtest.h>

using ketra_test::Alternative;
using ketra_test::expectRow;
using ketra_test::factsOf;
using ketra_test::keysWritten;
using ketra_test::QuantityRow;
using ketra_test::readText;
using ketra_test::Settings;
using ketra_test::ValueRow;
using namespace thermo::input;

namespace {

using E = EngineSize;
using G = ChamberGeometry;
using Keys = std::vector<std::string>;

// key, default, accessors, words of the missing member and of its unit
// clang-format off
const QuantityRow<E, Force> thrust{
    "thrust", 1.0, Force::N, &E::getThrust, &E::getThrust, &E::getThrustUnit, &E::setThrust,
    &E::isThrustSet, &E::deleteThrust, "thrust", "thrust unit", nullptr, true};
const QuantityRow<E, Pressure> ambientPressure{
    "ambientConditions", 1.0, Pressure::PA, &E::getAmbientPressure, &E::getAmbientPressure,
    &E::getAmbientPressureUnit, &E::setAmbientPressure, &E::isAmbientPressureSet,
    &E::deleteAmbientPressure, "ambient pressure", "ambient pressure unit", nullptr, true};
const QuantityRow<E, MassFlowRate> flowrate{
    "flowrate", 1.0, MassFlowRate::KG_PER_S, &E::getMdot, &E::getMdot, &E::getMdotUnit,
    &E::setMdot, &E::isMdotSet, &E::deleteMdot, "mass flow rate", "mass flow rate unit", nullptr,
    true};
const QuantityRow<E, Length> throatDiameter{
    "throatDiameter", 1.0, Length::M, &E::getThroatD, &E::getThroatD, &E::getThroatDUnit,
    &E::setThroatD, &E::isThroatDSet, &E::deleteThroatD, "nozzle throat diam",
    "nozzle throat diam unit", nullptr, true};
const ValueRow<E, int> chambersNo{"chambersNo", 1, 4, &E::getChambersNo, &E::setChambersNo};

const QuantityRow<G, Length> length{
    "length", 1.0, Length::M, &G::getChamberLength, &G::getChamberLength, &G::getChamberLengthUnit,
    &G::setChamberLength};

const ValueRow<G, bool> flags[] = {
    {"characteristicLength", true, false, &G::isCharacteristicLength, &G::setCharacteristicLength},
    {"TOC", false, true, &G::isTOC, &G::setTOC},
    {"TOC_L", false, true, &G::isTOC_L, &G::setTOC_L},
    {"TOC_applyEfficiency", false, true, &G::isTOCApplayEfficiency, &G::setTOCApplayEfficiency,
     nullptr, nullptr, nullptr, [](G& s) { s.setTOC(true); }},
};
const ValueRow<G, double> numbers[] = {
    {"contractionAngle", 30.0, 25.5, &G::getContractionAngle, &G::setContractionAngle},
    {"R1_to_Rt_ratio", 1.5, 2.0, &G::getR1ToRtRatio, &G::setR1ToRtRatio},
    {"Rn_to_Rt_ratio", 0.382, 0.5, &G::getRnToRtRatio, &G::setRnToRtRatio},
    {"R2_to_R2max_ratio", 0.5, 0.25, &G::getR2ToR2maxRatio, &G::setR2ToR2maxRatio},
    {"initialAngle", 0.0, 33.5, &G::getParabolicInitialAngle, &G::setParabolicInitialAngle,
     &G::isParabolicInitialAngle, &G::deleteParabolicInitialAngle, "parabola initial angle"},
    {"exitAngle", 0.0, 7.5, &G::getParabolicExitAngle, &G::setParabolicExitAngle,
     &G::isParabolicExitAngle, &G::deleteParabolicExitAngle, "parabola exit angle"},
    {"Le_to_Lc15", 0.0, 0.75, &G::getParabolicLength, &G::setParabolicLength,
     &G::isParabolicLength, &G::deleteParabolicLength, "parabola relative length"},
    {"Tw_to_T0", 0.3, 0.5, &G::getTwToT0, &G::setTwToT0, &G::isTw_to_T0, &G::deleteTwToT0,
     "Tw/T0", [](G& s) { s.setTOC(false); }},
    {"Le", 5.0, 6.5, &G::getLe, &G::setLe, &G::isLe, &G::deleteLe, "Le/Dt",
     [](G& s) { s.setTOC_L(true); }},
};
// clang-format on

TEST(EngineSize, MembersAreThoseOfTheTable)
{
    expectRow(thrust);
    expectRow(ambientPressure);
    expectRow(flowrate);
    expectRow(throatDiameter);
    expectRow(chambersNo);
}

TEST(ChamberGeometry, MembersAreThoseOfTheTable)
{
    expectRow(length);
    for (const auto& row : flags) expectRow(row);
    for (const auto& row : numbers) expectRow(row);
}

TEST(EngineSize, SettersDropTheOtherSizes)
{
    ketra_test::expectExclusions<E>({
        {"thrust",
         [](E& s) { s.setThrust(1, Force::KN, false); },
         [](const E& s) { return s.isThrustSet(); },
         {"flowrate", "throatDiameter"}},
        {"ambientConditions",
         [](E& s) { s.setAmbientPressure(1, Pressure::ATM, false); },
         [](const E& s) { return s.isAmbientPressureSet(); },
         {}},
        {"flowrate",
         [](E& s) { s.setMdot(1, MassFlowRate::LBM_PER_S, false); },
         [](const E& s) { return s.isMdotSet(); },
         {"thrust", "ambientConditions", "throatDiameter"}},
        {"throatDiameter",
         [](E& s) { s.setThroatD(1, Length::IN, false); },
         [](const E& s) { return s.isThroatDSet(); },
         {"thrust", "ambientConditions", "flowrate"}},
    });
}

// A flag is set to true here, so that its presence shows.
std::vector<Alternative<G>> contourMembers()
{
    return {
        {"TOC",
         [](G& s) { s.setTOC(true); },
         [](const G& s) { return s.isTOC(); },
         {"initialAngle", "exitAngle", "TOC_L", "Le"}},
        {"TOC_L",
         [](G& s) { s.setTOC_L(true); },
         [](const G& s) { return s.isTOC_L(); },
         {"initialAngle", "exitAngle", "TOC"}},
        {"initialAngle",
         [](G& s) { s.setParabolicInitialAngle(1); },
         [](const G& s) { return s.isParabolicInitialAngle(); },
         {}},
        {"exitAngle",
         [](G& s) { s.setParabolicExitAngle(1); },
         [](const G& s) { return s.isParabolicExitAngle(); },
         {}},
        {"Le_to_Lc15",
         [](G& s) { s.setParabolicLength(1); },
         [](const G& s) { return s.isParabolicLength(); },
         {}},
        {"Tw_to_T0", [](G& s) { s.setTwToT0(1); }, [](const G& s) { return s.isTw_to_T0(); }, {}},
        {"Le", [](G& s) { s.setLe(1); }, [](const G& s) { return s.isLe(); }, {}},
        {"TOC_applyEfficiency",
         [](G& s) { s.setTOCApplayEfficiency(true); },
         [](const G& s) { return s.isTOCApplayEfficiency(); },
         {}},
    };
}

TEST(ChamberGeometry, SettersOfTheContourDropWhatBelongsToAnother)
{
    ketra_test::expectExclusions<G>(contourMembers());
}

const char* const everyContour =
    "Le = 6.0; Tw_to_T0 = 0.4; Le_to_Lc15 = 0.8; exitAngle = 8.0; TOC_applyEfficiency = true; "
    "initialAngle = 30.0; TOC_L = true; TOC = true;";

TEST(ChamberGeometry, EveryContourIsReadWithoutExclusions)
{
    G geometry;
    readText(geometry, everyContour);
    for (const Alternative<G>& member : contourMembers())
        EXPECT_TRUE(member.isSet(geometry)) << member.name;
}

TEST(ChamberGeometry, DeletingAContourDeletesItsMembers)
{
    struct Case {
        const char* name;
        void (G::*remove)();
        std::vector<std::string> deleted;
    };
    const Case cases[] = {
        {"TOC", &G::deleteTOC, {"TOC", "Tw_to_T0", "TOC_applyEfficiency"}},
        {"TOC_L", &G::deleteTOC_L, {"TOC_L", "Tw_to_T0", "Le", "TOC_applyEfficiency"}},
        {"TOC_applyEfficiency", &G::deleteTOCApplayEfficiency, {"TOC_applyEfficiency"}},
        {"Le", &G::deleteLe, {"Le"}},
        {"Tw_to_T0", &G::deleteTwToT0, {"Tw_to_T0"}},
    };
    for (const Case& c : cases) {
        G geometry;
        readText(geometry, everyContour);
        (geometry.*c.remove)();
        for (const Alternative<G>& member : contourMembers()) {
            SCOPED_TRACE(std::string("delete ") + c.name + ": " + member.name);
            EXPECT_NE(member.isSet(geometry), std::find(c.deleted.begin(), c.deleted.end(),
                                                        member.name) != c.deleted.end());
        }
    }
}

TEST(ChamberGeometry, OneContourIsWritten)
{
    const Keys mandatory = {"length",         "characteristicLength", "contractionAngle",
                            "R1_to_Rt_ratio", "Rn_to_Rt_ratio",       "R2_to_R2max_ratio"};
    struct Case {
        std::string members;
        Keys contour;
    };
    const Case cases[] = {
        {"", {}},
        {everyContour, {"TOC", "Tw_to_T0", "TOC_applyEfficiency"}},
        {"TOC = false; TOC_L = true; Le = 6.0;", {"TOC"}},
        {"TOC = true; Le = 6.0;", {"TOC"}}, // a prescribed length beside a plain contour is lost
        {"TOC_L = true;", {"TOC_L"}},
        {"TOC_applyEfficiency = false; Tw_to_T0 = 0.3; Le = 5.0; TOC_L = false; initialAngle = "
         "1.0;",
         {"TOC_L", "Le", "Tw_to_T0", "TOC_applyEfficiency"}},
        {"Le_to_Lc15 = 0.8; exitAngle = 8.0; initialAngle = 30.0; Le = 6.0; Tw_to_T0 = 0.4; "
         "TOC_applyEfficiency = true;",
         {"initialAngle", "exitAngle", "Le_to_Lc15"}},
        {"exitAngle = 8.0;", {"exitAngle"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.members);
        Keys expected = mandatory;
        expected.insert(expected.end(), c.contour.begin(), c.contour.end());
        EXPECT_EQ(keysWritten<G>(c.members), expected);
    }
}

TEST(ChamberGeometry, ContourThatIsNotThrustOptimisedIsNoSuchContour)
{
    G geometry;
    geometry.setTOC(false);
    EXPECT_FALSE(geometry.isTOC());
    geometry.setTOC_L(false);
    EXPECT_FALSE(geometry.isTOC_L());
    geometry.setTOCApplayEfficiency(false);
    EXPECT_FALSE(geometry.isTOCApplayEfficiency());
}

TEST(ChamberGeometry, ClearLeavesTheKindOfTheLength)
{
    G geometry, expected;
    readText(geometry, std::string(everyContour) +
                           "length = { value = 3.0; unit = \"in\"; }; characteristicLength = "
                           "false; contractionAngle = 20.0; R1_to_Rt_ratio = 1.0; Rn_to_Rt_ratio "
                           "= 1.0; R2_to_R2max_ratio = 1.0;");
    expected.setCharacteristicLength(false);
    geometry.clear();
    EXPECT_EQ(factsOf(geometry), factsOf(expected));
    EXPECT_EQ(geometry.getChamberLengthUnit(false), Length::M);
    EXPECT_NO_THROW(geometry.validate());
}

TEST(EngineSize, DocumentHoldsAllSizesThatItStates)
{
    E size;
    readText(size, "thrust = { value = 180.0; unit = \"kN\"; }; flowrate = { value = 40.0; };"
                   "throatDiameter = { value = 13.0; unit = \"in\"; };"
                   "ambientConditions = { value = 1.0; unit = \"atm\"; };");
    EXPECT_TRUE(size.isThrustSet() && size.isMdotSet() && size.isThroatDSet() &&
                size.isAmbientPressureSet());
    size.setThroatD(0.3, Length::M, false);
    EXPECT_FALSE(size.isThrustSet() || size.isMdotSet() || size.isAmbientPressureSet());
    EXPECT_EQ(size.getThroatD(true), 0.3);
}

TEST(EngineSize, WritesItsMembersInTheOrderOfTheFormat)
{
    const std::string nothing = "chamberGeometry = { contractionAngle = 20.0; };";
    EXPECT_EQ(keysWritten<E>(nothing), (Keys{"chambersNo"}));
    EXPECT_EQ(keysWritten<E>("ambientConditions = { value = 2.0; };" + nothing),
              (Keys{"ambientConditions", "chambersNo"}));
    for (const std::string key : {"thrust", "flowrate", "throatDiameter"})
        EXPECT_EQ(keysWritten<E>(key + " = { value = 2.0; };"),
                  (Keys{key, "chambersNo", "chamberGeometry"}));
    EXPECT_EQ(keysWritten<E>("chamberGeometry = {}; chambersNo = 2; throatDiameter = {}; "
                             "flowrate = {}; ambientConditions = {}; thrust = {};"),
              (Keys{"thrust", "ambientConditions", "flowrate", "throatDiameter", "chambersNo",
                    "chamberGeometry"}));
}

TEST(EngineSize, GeometryMayBeMissingFromADocument)
{
    E size;
    EXPECT_NO_THROW(readText(size, "thrust = { value = 5.0; };"));
    EXPECT_EQ(size.getChamberGeometry().getContractionAngle(), 30.0);
    readText(size, "chamberGeometry = { contractionAngle = 20.0; };");
    EXPECT_EQ(size.getChamberGeometry().getContractionAngle(), 20.0);
}

// The value is the default of the member that the setter brings up.
TEST(EngineSize, SizeOfASetterIsNamedInASparseDocumentWithoutItsValue)
{
    struct Case {
        const char* key;
        void (*set)(E&, double);
    };
    const Case cases[] = {
        {"thrust", [](E& s, double x) { s.setThrust(x, Force::KN, true); }},
        {"ambientConditions", [](E& s, double x) { s.setAmbientPressure(x, Pressure::BAR, true); }},
        {"flowrate", [](E& s, double x) { s.setMdot(x, MassFlowRate::LBM_PER_S, true); }},
        {"throatDiameter", [](E& s, double x) { s.setThroatD(x, Length::FT, true); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        E size;
        c.set(size, 5.0);
        Settings first, second;
        size.write(first.root(), false);
        const std::string path = std::string("engineSize.") + c.key;
        ASSERT_TRUE(first.has(path.c_str()));
        EXPECT_EQ(first[path.c_str()].getLength(), 0);
        c.set(size, 6.0);
        size.write(second.root(), false);
        EXPECT_EQ(static_cast<double>(second[(path + ".value").c_str()]), 6.0);
    }
}

TEST(EngineSize, ClearTakesTheGeometryAlong)
{
    E size;
    readText(size, "thrust = {}; flowrate = {}; throatDiameter = {}; ambientConditions = {}; "
                   "chambersNo = 3; chamberGeometry = { TOC = true; contractionAngle = 20.0; };");
    size.clear();
    EXPECT_EQ(factsOf(size), factsOf(E()));
    EXPECT_NO_THROW(size.validate());
}

} // namespace
