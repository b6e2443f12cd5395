#include <ketra/thermo/input/ChamberCooling.h>

#include <unit/thermo_input/CoolingFacts.h>
#include <unit/thermo_input/MemberRows.h>

#include <gtest/gtest.h>

#include <limits>

using ketra_test::expectRow;
using ketra_test::Facts;
using ketra_test::factsOf;
using ketra_test::keysWritten;
using ketra_test::LogCapture;
using ketra_test::readText;
using ketra_test::Settings;
using ketra_test::ValueRow;
using namespace thermo::input;

namespace {

using Keys = std::vector<std::string>;

/// Its parameters know no default of the relations, which their owner gives.
struct Heat : HeatTransferParameters {
    Heat() : HeatTransferParameters(IEVLEV) {}
};

TEST(HeatTransferParameters, MembersAreThoseOfTheTable)
{
    expectRow(ValueRow<Heat, bool>{"applyBLC", false, true, &Heat::isApplyBLC, &Heat::setApplyBLC});
    expectRow(ValueRow<Heat, int>{"numberOfStations", 50, 80, &Heat::getNumberOfStations,
                                  &Heat::setNumberOfStations});
    expectRow(ValueRow<Heat, double>{"wallLayerHeight", 0.05, 0.03, &Heat::getWallLayerHeight,
                                     &Heat::setWallLayerHeight});
    const Heat fresh;
    EXPECT_TRUE(fresh.isRadiationHeatTransfer());
    EXPECT_EQ(fresh.getWallSurfaceEmissivity(), 0.8);
    EXPECT_EQ(HeatTransferParameters(Heat::BARTZ).getRelationsType(), Heat::BARTZ);
}

TEST(HeatTransferParameters, RelationsHaveTheirWords)
{
    struct Case {
        const char* spelling;
        int type;
        const char* raw;
    };
    const Case cases[] = {{"Ievlev", 0, "Ievlev"},     {"ievlev", 0, "Ievlev"},
                          {"Iewlew", 0, "Ievlev"},     {"iewlew", 0, "Ievlev"},
                          {"Bartz", 1, "Bartz"},       {"bartz", 1, "Bartz"},
                          {"combined", 2, "combined"}, {"Combined", 2, "combined"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.spelling);
        const auto type = static_cast<Heat::RELATIONS_TYPE>(c.type);
        EXPECT_EQ(Heat::rawToRelationsType(c.spelling), type);
        EXPECT_STREQ(Heat::relationsTypeToRaw(type), c.raw);
        Heat set, read;
        set.setRawRelationsType(c.spelling);
        EXPECT_EQ(set.getRelationsType(), type);
        EXPECT_STREQ(set.getRawRelationsType(), c.raw);
        readText(read, std::string("relationsType = \"") + c.spelling + "\";");
        EXPECT_EQ(read.getRelationsType(), type);
        Settings whole, sparse;
        read.write(whole.root(), true);
        read.write(sparse.root(), false);
        EXPECT_STREQ(whole["heatTransfer.relationsType"].c_str(), c.raw);
        EXPECT_FALSE(sparse.has("heatTransfer.relationsType"));
    }
    Heat absent;
    absent.setRelationsType(Heat::COMBINED);
    readText(absent, "");
    EXPECT_EQ(absent.getRelationsType(), Heat::IEVLEV);
}

TEST(HeatTransferParameters, UnknownRelationsAreLoggedAndThrown)
{
    for (const std::string text : {"BARTZ", "", "Bartz ", "none"}) {
        SCOPED_TRACE(text);
        const std::string message =
            "Could convert string to heat trasfer relations type: unknown type " + text + "\n";
        Heat parameters;
        const std::function<void()> calls[] = {
            [&] { Heat::rawToRelationsType(text.c_str()); },
            [&] { parameters.setRawRelationsType(text.c_str()); },
            [&] { readText(parameters, "relationsType = \"" + text + "\";"); }};
        for (const auto& call : calls) {
            const LogCapture log;
            KETRA_EXPECT_THROW_MESSAGE(call(), Exception, 4, "Unknown");
            EXPECT_EQ(log.errors(), std::vector<std::string>{message});
            EXPECT_EQ(log.tagOf(message), "THERMO");
        }
        EXPECT_EQ(parameters.getRelationsType(), Heat::IEVLEV);
    }
}

TEST(HeatTransferParameters, RadiationIsThereIfItsGroupIs)
{
    struct Case {
        const char* members;
        bool radiates;
        double emissivity;
    };
    const Case cases[] = {
        {"", false, 0.8}, // though it radiates before a document is read
        {"radiationHeatTransfer = {};", true, 0.8},
        {"radiationHeatTransfer = { hotSideWallSurfaceEmissivity = 0.5; };", true, 0.5},
        {"radiationHeatTransfer = { hotSideWallSurfaceEmissivity = 1; };", true, 0.8},
        {"radiationHeatTransfer = false;", true, 0.8},
        {"hotSideWallSurfaceEmissivity = 0.5;", false, 0.8},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.members);
        Heat parameters;
        readText(parameters, c.members);
        EXPECT_EQ(parameters.isRadiationHeatTransfer(), c.radiates);
        EXPECT_EQ(parameters.getWallSurfaceEmissivity(), c.emissivity);
    }
}

TEST(HeatTransferParameters, WritesItsMembersInTheOrderOfTheFormat)
{
    EXPECT_EQ(keysWritten<Heat>("radiationHeatTransfer = {};"),
              (Keys{"relationsType", "applyBLC", "numberOfStations", "radiationHeatTransfer",
                    "wallLayerHeight"}));
    EXPECT_EQ(keysWritten<Heat>(""),
              (Keys{"relationsType", "applyBLC", "numberOfStations", "wallLayerHeight"}));
    EXPECT_EQ(keysWritten<Heat>("radiationHeatTransfer = {};", false),
              (Keys{"radiationHeatTransfer"}));
    Heat parameters;
    parameters.setWallSurfaceEmissivity(0.5);
    Settings settings, without;
    parameters.write(settings.root(), false);
    const char* path = "heatTransfer.radiationHeatTransfer.hotSideWallSurfaceEmissivity";
    EXPECT_EQ(static_cast<double>(settings[path]), 0.5);
    parameters.setRadiationHeatTransfer(false);
    parameters.write(without.root(), true);
    EXPECT_FALSE(without.has(path));
}

TEST(HeatTransferParameters, LayerOfNoHeightGetsTheDefault)
{
    for (const auto& [stated, read] : {std::pair{"0.0", 0.05},
                                       {"-0.0", 0.05},
                                       {"1.0e-300", 1e-300},
                                       {"-0.1", -0.1},
                                       {"0", 0.05}}) {
        Heat parameters;
        readText(parameters, std::string("wallLayerHeight = ") + stated + ";");
        EXPECT_EQ(parameters.getWallLayerHeight(), read) << stated;
    }
    Heat zero;
    zero.setWallLayerHeight(0.0); // stays, until a document is read
    EXPECT_EQ(zero.getWallLayerHeight(), 0.0);
    readText(zero, "");
    EXPECT_EQ(zero.getWallLayerHeight(), 0.05);
}

const std::string heat = "heatTransfer = {}; ";

TEST(ChamberCooling, HasNoSectionsAtFirst)
{
    const ChamberCooling cooling;
    EXPECT_EQ(cooling.getName(), "chamberCooling");
    EXPECT_EQ(cooling.getHeatTransferParameters().getRelationsType(), Heat::IEVLEV);
    EXPECT_EQ(cooling.getSectionListSize(), 0u);
    EXPECT_EQ(cooling.getFilmSlotsListSize(), 0u);
    EXPECT_THROW(cooling.getSection(0), std::out_of_range);
    EXPECT_THROW(cooling.getFilmSlot(0), std::out_of_range);
}

TEST(ChamberCooling, AppendsEachDesignAtItsDefaults)
{
    ChamberCooling cooling;
    RadiationCooling& radiation = cooling.addRadiationCoolingSection();
    SlotJacketDesign& slot = cooling.addSlotJacketSection();
    ChannelJacketDesign& channel = cooling.addChannelJacketSection();
    TubularJacketDesign& tubes = cooling.addTubularJacketSection();
    FilmSlot& film = cooling.addFilmSlot();
    ASSERT_EQ(cooling.getSectionListSize(), 4u);
    EXPECT_EQ(&cooling.getSection(0), &radiation);
    EXPECT_EQ(&cooling.getSection(1), &slot);
    EXPECT_EQ(&cooling.getSection(2), &channel);
    EXPECT_EQ(&cooling.getSection(3), &tubes);
    ASSERT_EQ(cooling.getFilmSlotsListSize(), 1u);
    EXPECT_EQ(&cooling.getFilmSlot(0), &film);
    EXPECT_EQ(factsOf(radiation), factsOf(RadiationCooling()));
    EXPECT_EQ(factsOf(slot), factsOf(SlotJacketDesign()));
    EXPECT_EQ(factsOf(channel), factsOf(ChannelJacketDesign()));
    EXPECT_EQ(factsOf(tubes), factsOf(TubularJacketDesign()));
    EXPECT_EQ(factsOf(film), factsOf(FilmSlot()));
    const char* keys[] = {"radiationCooling", "slotJacketDesign", "channelJacketDesign",
                          "tubularJacketDesign"};
    for (unsigned int i = 0; i < 4; ++i) EXPECT_EQ(cooling.getSection(i).getName(), keys[i]);
    EXPECT_NO_THROW(cooling.validate());
    cooling.clearFilmSlotsList();
    EXPECT_EQ(cooling.getFilmSlotsListSize(), 0u);
    cooling.clearSectionsList();
    EXPECT_EQ(cooling.getSectionListSize(), 0u);
}

TEST(ChamberCooling, ResetLeavesTheHeatTransfer)
{
    ChamberCooling cooling, expected;
    for (ChamberCooling* both : {&cooling, &expected})
        both->getHeatTransferParameters().setNumberOfStations(9);
    cooling.addFilmSlot();
    cooling.addSlotJacketSection();
    cooling.reset();
    EXPECT_EQ(factsOf(cooling), factsOf(expected));
}

TEST(ChamberCooling, ReadsSectionsOfEveryDesign)
{
    ChamberCooling cooling;
    readText(cooling, heat + "chamberCoolingSections = ("
                             "  { slotJacketDesign = { id = \"a\"; }; },"
                             "  { radiationCooling = { id = \"b\"; }; },"
                             "  { tubularJacketDesign = { id = \"c\"; }; },"
                             "  { channelJacketDesign = { id = \"d\"; }; } );"
                             "filmSlots = ( { flowrate = 0.5; }, { } );");
    const std::pair<const char*, const char*> sections[] = {{"slotJacketDesign", "a"},
                                                            {"radiationCooling", "b"},
                                                            {"tubularJacketDesign", "c"},
                                                            {"channelJacketDesign", "d"}};
    ASSERT_EQ(cooling.getSectionListSize(), 4u);
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_EQ(cooling.getSection(i).getName(), sections[i].first);
        EXPECT_EQ(cooling.getSection(i).getId(), sections[i].second);
    }
    ASSERT_EQ(cooling.getFilmSlotsListSize(), 2u);
    EXPECT_EQ(cooling.getFilmSlot(0).getMdot(), 0.5);
    EXPECT_EQ(cooling.getFilmSlot(1).getMdot(), 0.0);
}

TEST(ChamberCooling, FirstDesignOfAnElementIsTheOneThatIsRead)
{
    const Keys order = {"tubularJacketDesign", "channelJacketDesign", "slotJacketDesign",
                        "radiationCooling"};
    for (std::size_t first = 0; first < order.size(); ++first) {
        std::string element;
        for (std::size_t i = order.size(); i-- > first;) element += order[i] + " = {}; ";
        ChamberCooling cooling;
        readText(cooling, heat + "chamberCoolingSections = ( { " + element + "} );");
        ASSERT_EQ(cooling.getSectionListSize(), 1u);
        EXPECT_EQ(cooling.getSection(0).getName(), order[first]);
    }
}

TEST(ChamberCooling, ElementWithoutADesignIsAFault)
{
    const std::pair<const char*, const char*> elements[] = {
        {"{ }", "an empty group"},
        {"{ slotJacket = { }; }", "slotJacket"},
        {"{ id = \"a\"; RadiationCooling = { }; }", "id, RadiationCooling"},
        {"5", "no group"},
        {"( 5 )", "no group"},
    };
    for (const auto& [element, content] : elements) {
        SCOPED_TRACE(element);
        const LogCapture log;
        ChamberCooling cooling;
        KETRA_EXPECT_THROW_MESSAGE(
            readText(cooling, heat + "chamberCoolingSections = ( { slotJacketDesign = {}; }, " +
                                  element + " );"),
            Exception, 3, "Data not found");
        const std::string message =
            std::string("Could not obtain design of chamber cooling section: ") + content + "\n";
        EXPECT_EQ(log.errors(), std::vector<std::string>{message});
        EXPECT_EQ(log.tagOf(message), "THERMO");
        EXPECT_EQ(cooling.getSectionListSize(), 1u); // those before it
    }
}

TEST(ChamberCooling, SectionsAndSlotsThatAreNoListsAreIgnored)
{
    for (const char* key : {"chamberCoolingSections", "filmSlots"})
        for (const char* value : {"{ slotJacketDesign = {}; }", "5", "[ 5 ]"}) {
            ChamberCooling cooling;
            readText(cooling, heat + key + " = " + value + ";");
            EXPECT_EQ(cooling.getSectionListSize() + cooling.getFilmSlotsListSize(), 0u);
        }
}

TEST(ChamberCooling, HeatTransferMustBeThere)
{
    ChamberCooling cooling;
    EXPECT_THROW(readText(cooling, "filmSlots = ();"), libconfig::SettingNotFoundException);
    Settings settings("other = {};");
    EXPECT_THROW(cooling.read(settings.root()), libconfig::SettingNotFoundException);
}

TEST(ChamberCooling, FaultyElementIsNotAppended)
{
    const LogCapture log;
    ChamberCooling cooling;
    KETRA_EXPECT_THROW_CODE(
        readText(cooling, heat + "chamberCoolingSections = ( { slotJacketDesign = {}; }, "
                                 "{ slotJacketDesign = { height = { unit = \"ell\"; }; }; } );"),
        Exception, 4);
    EXPECT_EQ(cooling.getSectionListSize(), 1u);
    KETRA_EXPECT_THROW_CODE(
        readText(cooling, heat + "filmSlots = ( {}, { location = { unit = \"ell\"; }; } );"),
        Exception, 4);
    EXPECT_EQ(cooling.getFilmSlotsListSize(), 1u);
}

TEST(ChamberCooling, SortsByLocationWhateverItsUnit)
{
    struct Place {
        double location;
        Length::UNITS unit;
        const char* id;
    };
    // 0.3048 m, 0.0254 m, 0.4 m, 0.025 m, 0.0254 m: those of one location keep their order
    const Place places[] = {{1.0, Length::FT, "d"},
                            {1.0, Length::IN, "b"},
                            {0.4, Length::M, "e"},
                            {25.0, Length::MM, "a"},
                            {0.0254, Length::M, "c"}};
    const auto fill = [&](ChamberCooling& cooling) {
        for (const Place& place : places) {
            TubularJacketDesign& section = cooling.addTubularJacketSection();
            section.setId(place.id);
            section.setLocation(place.location, place.unit, false);
            FilmSlot& slot = cooling.addFilmSlot();
            slot.setLocation(place.location, place.unit, false);
            slot.setMdot(*place.id);
        }
    };
    const auto order = [](ChamberCooling& cooling) {
        std::string ids, slots;
        for (unsigned int i = 0; i < cooling.getSectionListSize(); ++i) {
            ids += cooling.getSection(i).getId();
            slots += static_cast<char>(cooling.getFilmSlot(i).getMdot());
        }
        EXPECT_EQ(ids, slots);
        return ids;
    };
    ChamberCooling sorted, written, again;
    fill(sorted);
    EXPECT_EQ(order(sorted), "dbeac");
    sorted.sortSections();
    EXPECT_EQ(order(sorted), "abcde");
    fill(written);
    Settings settings;
    written.write(settings.root(), true);
    EXPECT_EQ(order(written), "abcde"); // the order in memory changes too
    again.read(settings.root());
    EXPECT_EQ(order(again), "abcde");
}

TEST(ChamberCooling, SortsLocationsThatAreNoNumbers)
{
    ChamberCooling cooling;
    const double locations[] = {std::numeric_limits<double>::quiet_NaN(), 2.0, -1.0,
                                std::numeric_limits<double>::infinity(), 1.0};
    for (const double x : locations)
        cooling.addRadiationCoolingSection().setLocation(x, Length::M, false);
    cooling.sortSections();
    EXPECT_EQ(cooling.getSection(0).getLocation(true), -1.0);
    EXPECT_EQ(cooling.getSection(2).getLocation(true), 2.0);
    EXPECT_EQ(cooling.getSection(3).getLocation(true), locations[3]);
}

TEST(ChamberCooling, WritesItsListsAlsoIfTheyAreEmpty)
{
    const Keys keys = {"heatTransfer", "chamberCoolingSections", "filmSlots"};
    for (const bool all : {true, false}) {
        EXPECT_EQ(keysWritten<ChamberCooling>(heat, all), keys);
        ChamberCooling cooling;
        Settings settings;
        cooling.write(settings.root(), all);
        for (const char* key :
             {"chamberCooling.chamberCoolingSections", "chamberCooling.filmSlots"})
            EXPECT_TRUE(settings[key].isList() && settings[key].getLength() == 0);
    }
}

TEST(ChamberCooling, EachSectionIsWrittenIntoAGroupOfItsOwn)
{
    ChamberCooling cooling;
    cooling.addSlotJacketSection().setId("x");
    cooling.addRadiationCoolingSection();
    cooling.addFilmSlot().setMdot(0.5);
    Settings settings;
    cooling.write(settings.root(), false);
    const std::string sections = "chamberCooling.chamberCoolingSections.";
    EXPECT_TRUE(settings.has((sections + "[0].slotJacketDesign.id").c_str()));
    EXPECT_EQ(settings[(sections + "[0]").c_str()].getLength(), 1);
    EXPECT_TRUE(settings.has((sections + "[1].radiationCooling").c_str()));
    EXPECT_TRUE(settings.has("chamberCooling.filmSlots.[0].flowrate"));
}

TEST(ChamberCooling, CopiesKeepTheDesignOfEachSection)
{
    auto source = std::make_unique<ChamberCooling>();
    source->addRadiationCoolingSection().setSurfaceEmissivity(0.5);
    source->addSlotJacketSection().addCoolant(new Component("H2(L)"));
    source->addChannelJacketSection().setBmin(0.7, Length::MM, true);
    source->addTubularJacketSection().setHelix(true);
    source->addFilmSlot().addCoolant(new Component("CH4(L)"));
    const Facts facts = factsOf(*source);
    ChamberCooling copy(*source), assigned, moved;
    assigned.addTubularJacketSection();
    assigned = *source;
    assigned = *&assigned;
    moved = ChamberCooling(*source);
    source->getSection(0).setId("changed");
    source->getFilmSlot(0).getCoolant(0)->setMf(0.1);
    EXPECT_NE(factsOf(*source), facts);
    source.reset();
    for (ChamberCooling* each : {&copy, &assigned, &moved}) {
        EXPECT_EQ(factsOf(*each), facts);
        EXPECT_NE(dynamic_cast<ChannelJacketDesign*>(&each->getSection(2)), nullptr);
    }
    // The key that a member has by its setter is copied too.
    Settings settings;
    copy.write(settings.root(), true);
    EXPECT_TRUE(
        settings.has("chamberCooling.chamberCoolingSections.[2].channelJacketDesign.amin.value"));
}

} // namespace
