#include <ketra/thermo/input/ChamberCooling.h>

#include <unit/thermo_input/CoolingFacts.h>
#include <unit/thermo_input/MemberRows.h>

#include <gtest/gtest.h>

#include <limits>

using ketra_test::Alternative;
using ketra_test::expectRow;
using ketra_test::factsOf;
using ketra_test::keysWritten;
using ketra_test::QuantityRow;
using ketra_test::readMembers;
using ketra_test::readText;
using ketra_test::Settings;
using ketra_test::ValueRow;
using namespace thermo::input;

namespace {

using Conductivity = ThermalConductivity;
using Channel = ChannelJacketDesign;
using Tubes = TubularJacketDesign;
using Heat = HeatTransferParameters;
using Keys = std::vector<std::string>;

// key, default, accessors, words of the missing member and of its unit
// clang-format off

template <class S> std::vector<QuantityRow<S, Length>> wallLengths()
{
    return {
        {"location", 0.0, Length::M, &S::getLocation, &S::getLocation, &S::getLocationUnit,
         &S::setLocation},
        {"length", 0.0, Length::M, &S::getLength, &S::getLength, &S::getLengthUnit, &S::setLength},
        {"wallThickness", 0.001, Length::M, &S::getH, &S::getH, &S::getHUnit, &S::setH},
        {"thermalInsulationThickness", 0.0002, Length::M, &S::getInsulationH, &S::getInsulationH,
         &S::getInsulationHUnit, &S::setInsulationH, &S::isInsulationHSet, &S::deleteInsulationH,
         "insulation thickness", "insulation thickness unit"},
    };
}
template <class S> std::vector<QuantityRow<S, Conductivity>> wallConductivities()
{
    return {
        {"wallConductivity", 360.0, Conductivity::W_PER_M_K, &S::getLambda, &S::getLambda,
         &S::getLambdaUnit, &S::setLambda, &S::isLambdaSet, &S::deleteLambda, "lambda",
         "lambda unit"},
        {"thermalInsulationConductivity", 3.0, Conductivity::W_PER_M_K, &S::getInsulationLambda,
         &S::getInsulationLambda, &S::getInsulationLambdaUnit, &S::setInsulationLambda,
         &S::isInsulationLambdaSet, &S::deleteInsulationLambda, "insulation lambda",
         "insulation Lambda unit"}, // with a capital, unlike the value
    };
}
template <class S> std::vector<ValueRow<S, std::string>> wallTexts()
{
    return {
        {"id", "", "S1", &S::getId, &S::setId, &S::isIdSet, &S::deleteId, "section ID"},
        {"wallMaterial", "copper", "steel", &S::getWallMaterialName, &S::setWallMaterialName,
         &S::isWallMaterialNameSet, &S::deleteWallMaterialName, "wall material name"},
    };
}

template <class S> std::vector<ValueRow<S, bool>> coolantFlags()
{
    return {
        {"oppositeFlow", false, true, &S::getOppositeFlow, &S::setOppositeFlow},
        {"twoPass", false, true, &S::getTwoPass, &S::setTwoPass},
    };
}

const QuantityRow<SlotJacketDesign, Length> slotHeight{
    "height", 3.0, Length::MM, &SlotJacketDesign::getHc, &SlotJacketDesign::getHc,
    &SlotJacketDesign::getHcUnit, &SlotJacketDesign::setHc};

const QuantityRow<Channel, Length> channelLengths[] = {
    {"height1", 4.0, Length::MM, &Channel::getHc1, &Channel::getHc1, &Channel::getHc1Unit,
     &Channel::setHc1},
    {"height_min", 4.0, Length::MM, &Channel::getHcmin, &Channel::getHcmin, &Channel::getHcminUnit,
     &Channel::setHcmin, &Channel::isHcminSet, &Channel::deleteHcmin, "hcmin", "hcmin unit"},
    {"height2", 4.0, Length::MM, &Channel::getHc2, &Channel::getHc2, &Channel::getHc2Unit,
     &Channel::setHc2},
    {"a1", 2.0, Length::MM, &Channel::getA1, &Channel::getA1, &Channel::getA1Unit, &Channel::setA1},
    {"a1", 1.0, Length::MM, &Channel::getAmin, &Channel::getAmin, &Channel::getAminUnit,
     &Channel::setAmin, &Channel::isAminSet, &Channel::deleteAmin, "amin", "amin unit", "amin"},
    {"a2", 2.0, Length::MM, &Channel::getA2, &Channel::getA2, &Channel::getA2Unit, &Channel::setA2},
    {"b1", 1.0, Length::MM, &Channel::getB1, &Channel::getB1, &Channel::getB1Unit, &Channel::setB1,
     &Channel::isB1Set, &Channel::deleteB1, "b1", "b1 unit"},
    {"bmin", 1.0, Length::MM, &Channel::getBmin, &Channel::getBmin, &Channel::getBminUnit,
     &Channel::setBmin, &Channel::isBminSet, &Channel::deleteBmin, "bmin", "bmin unit", "amin"},
    {"b2", 1.0, Length::MM, &Channel::getB2, &Channel::getB2, &Channel::getB2Unit, &Channel::setB2,
     &Channel::isB2Set, &Channel::deleteB2, "b2", "b2 unit"},
};
const QuantityRow<Channel, Angle> channelGamma{
    "gamma", 90.0, Angle::DEGREES, &Channel::getGamma, &Channel::getGamma, &Channel::getGammaUnit,
    &Channel::setGamma};
const ValueRow<Channel, int> channelNumber{
    "n", 0, 60, &Channel::getN, &Channel::setN, &Channel::isNSet, &Channel::deleteN, "n"};
const ValueRow<Channel, std::string> ribsMaterial{
    "ribsMaterial", "copper", "steel", &Channel::getRibsMaterialName, &Channel::setRibsMaterialName,
    &Channel::isRibsMaterialNameSet, &Channel::deleteRibsMaterialName, "ribs material name"};
const QuantityRow<Channel, Conductivity> ribsConductivity{
    "ribsConductivity", 360.0, Conductivity::W_PER_M_K, &Channel::getRibsLambda,
    &Channel::getRibsLambda, &Channel::getRibsLambdaUnit, &Channel::setRibsLambda,
    &Channel::isRibsLambdaSet, &Channel::deleteRibsLambda, "ribs lambda", "ribs lambda unit"};

const QuantityRow<Tubes, Length> tubeLengths[] = {
    {"d", 10.0, Length::MM, &Tubes::getD, &Tubes::getD, &Tubes::getDUnit, &Tubes::setD},
    {"d", 10.0, Length::MM, &Tubes::getD1, &Tubes::getD1, &Tubes::getD1Unit, &Tubes::setD1},
    {"dmin", 10.0, Length::MM, &Tubes::getDmin, &Tubes::getDmin, &Tubes::getDminUnit,
     &Tubes::setDmin, &Tubes::isDminSet, &Tubes::deleteDmin, "dmin", "dmin unit"},
    {"d2", 10.0, Length::MM, &Tubes::getD2, &Tubes::getD2, &Tubes::getD2Unit, &Tubes::setD2,
     &Tubes::isD2Set, &Tubes::deleteD2, "d2", "d2 unit"},
};
const ValueRow<Tubes, bool> helix{"helix", false, true, &Tubes::isHelix, &Tubes::setHelix};

const QuantityRow<FilmSlot, Length> filmLocation{
    "location", 0.0, Length::M, &FilmSlot::getLocation, &FilmSlot::getLocation,
    &FilmSlot::getLocationUnit, &FilmSlot::setLocation};
const ValueRow<FilmSlot, double> filmFlowrate{
    "flowrate", 0.0, 0.5, &FilmSlot::getMdot, &FilmSlot::setMdot};

const ValueRow<RadiationCooling, double> coldEmissivity{
    "coldSideWallSurfaceEmissivity", 0.8, 0.5, &RadiationCooling::getSurfaceEmissivity,
    &RadiationCooling::setSurfaceEmissivity};

// clang-format on

template <class S> class CoolingSections : public testing::Test
{
};
using Designs = testing::Types<RadiationCooling, SlotJacketDesign, Channel, Tubes>;
TYPED_TEST_SUITE(CoolingSections, Designs);

TYPED_TEST(CoolingSections, HaveTheMembersOfTheWall)
{
    for (const auto& row : wallLengths<TypeParam>()) expectRow(row);
    for (const auto& row : wallConductivities<TypeParam>()) expectRow(row);
    for (const auto& row : wallTexts<TypeParam>()) expectRow(row);
}

TYPED_TEST(CoolingSections, SettingMaterialOrConductivityDropsTheOther)
{
    using S = TypeParam;
    ketra_test::expectExclusions<S>({
        {"id", [](S& s) { s.setId("a"); }, [](const S& s) { return s.isIdSet(); }, {}},
        {"wallMaterial",
         [](S& s) { s.setWallMaterialName("a"); },
         [](const S& s) { return s.isWallMaterialNameSet(); },
         {"wallConductivity"}},
        {"wallConductivity",
         [](S& s) { s.setLambda(1, Conductivity::W_PER_M_K, true); },
         [](const S& s) { return s.isLambdaSet(); },
         {"wallMaterial"}},
        {"thermalInsulationConductivity",
         [](S& s) { s.setInsulationLambda(1, Conductivity::W_PER_M_K, true); },
         [](const S& s) { return s.isInsulationLambdaSet(); },
         {}},
        {"thermalInsulationThickness",
         [](S& s) { s.setInsulationH(1, Length::MM, true); },
         [](const S& s) { return s.isInsulationHSet(); },
         {}},
    });
}

TYPED_TEST(CoolingSections, StatedMaterialComesBeforeConductivity)
{
    TypeParam both, none, conductivity;
    readText(both, "wallConductivity = { value = 20.0; }; wallMaterial = \"steel\";");
    EXPECT_EQ(both.getWallMaterialName(), "steel");
    EXPECT_FALSE(both.isLambdaSet());
    readText(conductivity, "wallConductivity = { value = 20.0; };");
    EXPECT_EQ(conductivity.getLambda(true), 20.0);
    EXPECT_FALSE(conductivity.isWallMaterialNameSet());
    readText(none, "");
    EXPECT_EQ(none.getLambda(false), 360.0);
    EXPECT_EQ(none.getLambdaUnit(false), Conductivity::W_PER_M_K);
    EXPECT_FALSE(none.isWallMaterialNameSet());
    EXPECT_FALSE(TypeParam().isLambdaSet()); // only a document brings it up
}

TYPED_TEST(CoolingSections, LocationTellsTheTextOfItsUnit)
{
    TypeParam section;
    section.setLocation(2.0, Length::IN, false);
    EXPECT_STREQ(section.getLocationRawUnit(false), "in");
    EXPECT_STREQ(section.getLocationRawUnit(true), "m");
}

TYPED_TEST(CoolingSections, MissingGroupRaisesTheNotFoundExceptionOfTheLibrary)
{
    Settings settings("other = {};");
    TypeParam section;
    EXPECT_THROW(section.read(settings.root()), libconfig::SettingNotFoundException);
}

TEST(RadiationCooling, MembersAreThoseOfTheTable) { expectRow(coldEmissivity); }

template <class S> class ConvectiveSections : public testing::Test
{
};
using ConvectiveDesigns = testing::Types<SlotJacketDesign, Channel, Tubes>;
TYPED_TEST_SUITE(ConvectiveSections, ConvectiveDesigns);

TYPED_TEST(ConvectiveSections, HaveTheMembersOfTheCoolant)
{
    using S = TypeParam;
    for (const auto& row : coolantFlags<S>()) expectRow(row);
    expectRow(ValueRow<S, double>{"flowrate", 1.0, 2.5, &S::getMdot, &S::setMdot});
    expectRow(ValueRow<S, std::string>{"coolantFrom", "", "S1", &S::getCoolantFrom,
                                       &S::setCoolantFrom, &S::isCoolantFromSet, nullptr,
                                       "coolantFrom"});
}

TYPED_TEST(ConvectiveSections, CoolantIsStatedByComponentsOrBySection)
{
    using S = TypeParam;
    ketra_test::expectExclusions<S>({
        {"coolant",
         [](S& s) { s.addCoolant(new Component("H2(L)")); },
         [](const S& s) { return s.isCoolantSet(); },
         {"coolantFrom"}},
        {"coolantFrom",
         [](S& s) { s.setCoolantFrom("a"); },
         [](const S& s) { return s.isCoolantFromSet(); },
         {"coolant"}},
    });
}

TYPED_TEST(ConvectiveSections, ListOfTheDocumentComesBeforeTheSection)
{
    const std::string from = "coolantFrom = \"S1\";";
    TypeParam both, section, scalar;
    readText(both, from + "coolant = ( { name = \"H2(L)\"; massFraction = 0.5; }, { } );");
    ASSERT_EQ(both.getCoolantListSize(), 2u);
    EXPECT_EQ(both.getCoolant(0)->getName(), "H2(L)");
    EXPECT_EQ(both.getCoolant(0)->getMf(), 0.5);
    EXPECT_EQ(both.getCoolant(1)->getName(), "");
    EXPECT_FALSE(both.isCoolantFromSet());
    readText(section, from);
    EXPECT_EQ(section.getCoolantFrom(), "S1");
    EXPECT_FALSE(section.isCoolantSet());
    readText(scalar, from + "coolant = { name = \"H2(L)\"; };"); // the key is there, but no list
    EXPECT_FALSE(scalar.isCoolantSet() || scalar.isCoolantFromSet());
    EXPECT_THROW(both.getCoolant(2), std::out_of_range);
    both.clearCoolantList();
    EXPECT_FALSE(both.isCoolantSet());
    EXPECT_EQ(both.getCoolantListSize(), 0u);
}

TYPED_TEST(ConvectiveSections, NoCoolantIsNoComponent)
{
    TypeParam section;
    section.setCoolantFrom("S1");
    const ketra_test::LogCapture log;
    KETRA_EXPECT_THROW_CODE(section.addCoolant(nullptr), Exception, 2);
    EXPECT_EQ(log.errors(), std::vector<std::string>{"Could not add component: NULL pointer\n"});
    EXPECT_EQ(section.getCoolantFrom(), "S1");
}

TEST(SlotJacketDesign, MembersAreThoseOfTheTable) { expectRow(slotHeight); }

TEST(ChannelJacketDesign, MembersAreThoseOfTheTable)
{
    for (const auto& row : channelLengths) expectRow(row);
    expectRow(channelGamma);
    expectRow(channelNumber);
    expectRow(ribsMaterial);
    expectRow(ribsConductivity);
}

TEST(ChannelJacketDesign, SettersDropTheAlternatives)
{
    using S = Channel;
    ketra_test::expectExclusions<S>({
        {"height_min",
         [](S& s) { s.setHcmin(1, Length::MM, true); },
         [](const S& s) { return s.isHcminSet(); },
         {}},
        {"amin",
         [](S& s) { s.setAmin(1, Length::MM, true); },
         [](const S& s) { return s.isAminSet(); },
         {}},
        {"n", [](S& s) { s.setN(3); }, [](const S& s) { return s.isNSet(); }, {"b1", "bmin", "b2"}},
        {"b1",
         [](S& s) { s.setB1(1, Length::MM, true); },
         [](const S& s) { return s.isB1Set(); },
         {"n"}},
        {"bmin",
         [](S& s) { s.setBmin(1, Length::MM, true); },
         [](const S& s) { return s.isBminSet(); },
         {"n"}},
        {"b2",
         [](S& s) { s.setB2(1, Length::MM, true); },
         [](const S& s) { return s.isB2Set(); },
         {"n"}},
        {"ribsMaterial",
         [](S& s) { s.setRibsMaterialName("a"); },
         [](const S& s) { return s.isRibsMaterialNameSet(); },
         {"ribsConductivity"}},
        {"ribsConductivity",
         [](S& s) { s.setRibsLambda(1, Conductivity::W_PER_M_K, true); },
         [](const S& s) { return s.isRibsLambdaSet(); },
         {"ribsMaterial"}},
    });
}

TEST(ChannelJacketDesign, StatedNumberHidesTheThicknessesOfTheRibs)
{
    const std::string ribs =
        "b1 = { value = 2.0; }; bmin = { value = 1.0; }; b2 = { value = 3.0; };";
    Channel number, thicknesses;
    readText(number, ribs + "n = 80;");
    EXPECT_EQ(number.getN(), 80);
    EXPECT_FALSE(number.isB1Set() || number.isBminSet() || number.isB2Set());
    readText(thicknesses, ribs);
    EXPECT_FALSE(thicknesses.isNSet());
    EXPECT_EQ(thicknesses.getB1(true), 2.0);
    EXPECT_EQ(thicknesses.getBmin(true), 1.0);
    EXPECT_EQ(thicknesses.getB2(true), 3.0);
}

TEST(ChannelJacketDesign, RibsWithoutMaterialGetTheConductivityOfCopper)
{
    Channel none, material, both;
    readText(none, "");
    EXPECT_EQ(none.getRibsLambda(true), 360.0);
    readText(material, "ribsMaterial = \"steel\";");
    EXPECT_FALSE(material.isRibsLambdaSet());
    readText(both, "ribsConductivity = { value = 20.0; }; ribsMaterial = \"steel\";");
    EXPECT_EQ(both.getRibsMaterialName(), "steel");
    EXPECT_FALSE(both.isRibsLambdaSet());
}

// The least width of a document is its first width, and it writes over it.
TEST(ChannelJacketDesign, LeastWidthIsReadUnderTheKeyOfTheFirst)
{
    Channel jacket;
    readText(jacket, "a1 = { value = 3.0; unit = \"mm\"; }; amin = { value = 1.5; };");
    EXPECT_EQ(jacket.getA1(Length::MM), 3.0);
    EXPECT_EQ(jacket.getAmin(false), 3.0);
    EXPECT_EQ(jacket.getAminUnit(false), Length::MM);

    Channel without;
    readText(without, "amin = { value = 1.5; };");
    EXPECT_FALSE(without.isAminSet());

    jacket.setAmin(0.5, Length::IN, false);
    Settings settings;
    jacket.write(settings.root(), true);
    EXPECT_EQ(static_cast<double>(settings["channelJacketDesign.a1.value"]), 0.5);
    EXPECT_STREQ(settings["channelJacketDesign.a1.unit"].c_str(), "in");
    EXPECT_FALSE(settings.has("channelJacketDesign.amin"));
}

TEST(ChannelJacketDesign, LeastWidthsOfSettersAreWrittenUnderOneKeyAndNotFoundAgain)
{
    Channel jacket, again;
    jacket.setA1(3.0, Length::MM, true);
    jacket.setAmin(2.0, Length::MM, true);
    jacket.setBmin(0.5, Length::MM, true);
    Settings settings;
    jacket.write(settings.root(), true);
    EXPECT_EQ(static_cast<double>(settings["channelJacketDesign.a1.value"]), 3.0);
    EXPECT_EQ(static_cast<double>(settings["channelJacketDesign.amin.value"]), 0.5); // the ribs'
    EXPECT_FALSE(settings.has("channelJacketDesign.bmin"));
    again.read(settings.root());
    EXPECT_EQ(again.getAmin(Length::MM), 3.0);
    EXPECT_FALSE(again.isBminSet());
}

TEST(ChannelJacketDesign, LeastThicknessOfADocumentKeepsItsKey)
{
    Channel jacket;
    readText(jacket, "bmin = { value = 2.0; };");
    jacket.setBmin(3.0, Length::M, true);
    Settings settings;
    jacket.write(settings.root(), true);
    EXPECT_EQ(static_cast<double>(settings["channelJacketDesign.bmin.value"]), 3.0);
    EXPECT_FALSE(settings.has("channelJacketDesign.amin"));
    jacket.deleteBmin();
    jacket.setBmin(3.0, Length::M, true); // brought up anew, by the setter
    Settings second;
    jacket.write(second.root(), true);
    EXPECT_TRUE(second.has("channelJacketDesign.amin"));
}

TEST(TubularJacketDesign, MembersAreThoseOfTheTable)
{
    for (const auto& row : tubeLengths) expectRow(row);
    expectRow(helix);
}

TEST(TubularJacketDesign, FirstDiameterIsTheDiameter)
{
    Tubes tubes;
    tubes.setD1(0.5, Length::IN, false);
    EXPECT_EQ(tubes.getD(Length::IN), 0.5);
    EXPECT_EQ(tubes.getDUnit(false), Length::IN);
    tubes.setD(8.0, Length::MM, false);
    EXPECT_EQ(tubes.getD1(false), 8.0);
    EXPECT_EQ(tubes.getD1Unit(false), Length::MM);
}

TEST(TubularJacketDesign, NumberOfTubesIsAWholeOne)
{
    Tubes tubes;
    EXPECT_EQ(tubes.getN(), 100.0);
    readText(tubes, "n = 90.0;"); // a float is no number of tubes
    EXPECT_EQ(tubes.getN(), 100.0);
    readText(tubes, "n = 90;");
    EXPECT_EQ(tubes.getN(), 90.0);
    using Limits = std::numeric_limits<double>;
    const std::pair<double, double> numbers[] = {{120.0, 120.0},
                                                 {120.9, 120.0},
                                                 {-0.5, 0.0},
                                                 {1e300, 2147483647.0},
                                                 {-1e300, -2147483648.0},
                                                 {Limits::quiet_NaN(), 0.0},
                                                 {2147483647.5, 2147483647.0}};
    for (const auto& [given, kept] : numbers) {
        tubes.setN(given);
        EXPECT_EQ(tubes.getN(), kept) << given;
    }
    tubes.setN(64.0);
    Settings settings;
    tubes.write(settings.root(), false);
    EXPECT_EQ(static_cast<int>(settings["tubularJacketDesign.n"]), 64);
}

TEST(FilmSlot, MembersAreThoseOfTheTable)
{
    expectRow(filmLocation);
    expectRow(filmFlowrate);
    FilmSlot slot;
    slot.setLocation(2.0, Length::IN, false);
    EXPECT_STREQ(slot.getLocationRawUnit(false), "in");
    EXPECT_STREQ(slot.getLocationRawUnit(true), "m");
}

TEST(FilmSlot, CoolantIsAListOfComponents)
{
    FilmSlot slot, other;
    readMembers(slot, "coolant = ( { name = \"CH4(L)\"; }, { name = \"H2(L)\"; } );");
    ASSERT_EQ(slot.getCoolantListSize(), 2u);
    EXPECT_EQ(slot.getCoolant(1)->getName(), "H2(L)");
    EXPECT_THROW(slot.getCoolant(2), std::out_of_range);
    slot.addCoolant(new Component("RP-1", 0.5));
    EXPECT_EQ(slot.getCoolantListSize(), 3u);
    slot.clearCoolantList();
    EXPECT_EQ(slot.getCoolantListSize(), 0u);
    readMembers(other, "coolant = { name = \"CH4(L)\"; };");
    EXPECT_EQ(other.getCoolantListSize(), 0u);
    const ketra_test::LogCapture log;
    KETRA_EXPECT_THROW_CODE(slot.addCoolant(nullptr), Exception, 2);
}

const Keys wallKeys = {"location", "length", "wallThickness", "id"};
const Keys insulationKeys = {"thermalInsulationConductivity", "thermalInsulationThickness"};
const std::string wall =
    "thermalInsulationThickness = {}; thermalInsulationConductivity = {}; id = \"x\";";

Keys joined(std::initializer_list<Keys> parts)
{
    Keys all;
    for (const Keys& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(CoolingSection, DesignsWriteTheirMembersInTheOrderOfTheFormat)
{
    const Keys flow = {"flowrate", "oppositeFlow", "twoPass"};
    EXPECT_EQ(
        keysWritten<RadiationCooling>(wall),
        joined(
            {wallKeys, {"wallConductivity"}, insulationKeys, {"coldSideWallSurfaceEmissivity"}}));
    EXPECT_EQ(keysWritten<SlotJacketDesign>(wall + "wallMaterial = \"steel\";"),
              joined({wallKeys, {"wallMaterial"}, insulationKeys, flow, {"height"}}));
    EXPECT_EQ(keysWritten<Tubes>(wall + "coolantFrom = \"a\"; d2 = {}; dmin = {};"),
              joined({wallKeys,
                      {"wallConductivity"},
                      insulationKeys,
                      {"coolantFrom"},
                      flow,
                      {"d", "dmin", "d2", "n", "helix"}}));
    const Keys channel = joined({wallKeys,
                                 {"wallConductivity"},
                                 insulationKeys,
                                 {"coolant"},
                                 flow,
                                 {"height1", "height_min", "height2", "gamma", "a1", "a2"}});
    const std::string members = wall + "coolant = ( {} ); a1 = {}; height_min = {};";
    EXPECT_EQ(keysWritten<Channel>(members + "n = 5; b1 = {};"),
              joined({channel, {"n", "ribsConductivity"}}));
    EXPECT_EQ(keysWritten<Channel>(members + "b2 = {}; bmin = {}; b1 = {}; ribsMaterial = \"x\";"),
              joined({channel, {"b1", "bmin", "b2", "ribsMaterial"}}));
    EXPECT_EQ(keysWritten<FilmSlot>(""), (Keys{"location", "coolant", "flowrate"}));

    Channel jacket; // between its two widths
    jacket.setAmin(1.0, Length::MM, true);
    Settings settings;
    jacket.write(settings.root(), true);
    const libconfig::Setting& group = settings["channelJacketDesign"];
    const int amin = group["amin"].getIndex();
    EXPECT_EQ(group["a1"].getIndex(), amin - 1);
    EXPECT_EQ(group["a2"].getIndex(), amin + 1);
}

TEST(CoolingSection, CoolantOfNothingIsNotWritten)
{
    for (const char* members : {"", "coolant = ();"}) {
        const Keys keys = keysWritten<SlotJacketDesign>(members);
        EXPECT_EQ(std::find(keys.begin(), keys.end(), "coolant"), keys.end());
        EXPECT_EQ(std::find(keys.begin(), keys.end(), "coolantFrom"), keys.end());
    }
}

} // namespace
